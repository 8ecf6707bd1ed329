// The director: configuration, shared render targets and the timeline. The start-up calls the four
// entry points in this order.
#pragma once

#include "fbo.h"
#include "spring.h"
#include "texture.h"

// The city camera's travel point: pos in city units, vel in city units a logic tick.
extern spring_c<glm::vec3> tunnelflyer;

extern fbo_c* orangetex_fbo;    // 128 x 128: generated texture, also the city's
extern fbo_c* orange_fbo;       // 512 x 256: picture on the phone's screen
extern fbo_c* scrollertex_fbo;  // 512 x 64: text strip of the ribbon
extern texture_c screenshottex; // the captured desktop
extern bool die;                // ends the first scene; nothing sets it

// The scenes in the order in which demo_run plays them, each until its own event.
struct scene_s {
    const char* name; // as the chapters of a recording show it
    void (*play)();
};
constexpr int scenecount = 9;
extern const scene_s demo_scenes[scenecount];

// Name of the scene that plays; empty before the first.
extern const char* demo_scene;

// Before anything else: asks for a stencil buffer.
void demo_config();

// With the GL context: first-stage effect set-up, the song and its beat grid.
void demo_init();

// Loads every effect, creates the render targets, installs the quit keys, draws the warm-up frame.
void demo_initgl();

// The show. Never returns.
void demo_run();

// Sets what effects share so that each can be seen alone: the camera of the gear scene,
// pictures on every texture knob. For tools; the show does it scene by scene.
void demo_rehearse();

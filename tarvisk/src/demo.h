// The director: configuration and timeline. The start-up calls the four entry points in this order.
#pragma once

#include <vector>

extern bool die; // ends the first scene; nothing sets it

// The scenes in the order in which demo_run plays them, each until its own event.
struct scene_s {
    const char* name; // as the chapters of a recording show it
    float begins;     // the beat
    void (*play)();
};
extern const std::vector<scene_s> demo_scenes;

// Name of the scene that plays; empty before the first.
extern const char* demo_scene;

constexpr const char* demo_song = "tarvisk.ogg"; // lies where the show is started

// Before anything else: asks for a stencil buffer.
void demo_config();

// With the GL context: first-stage effect set-up, the song and its beat grid.
void demo_init();

// Loads every effect, creates the render targets, installs the quit keys, draws the warm-up frame.
void demo_initgl();

// The show. Never returns.
void demo_run();

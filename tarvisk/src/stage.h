// What scenes and effects share, and none of them owns. The director sets it; who else writes it
// stands beside it.
#pragma once

#include "fbo.h"
#include "spring.h"
#include "texture.h"

#include <glm/glm.hpp>

// Model-view and projection of the phone, the ribbon and the city; identity at start. The phone's
// flight sets them, too.
extern glm::mat4 phone_rotation_mv;
extern glm::mat4 phone_projection;

// The city camera's travel point: pos in city units, vel in city units a logic tick. The phone's
// flight hands it over.
extern spring_c<glm::vec3> tunnelflyer;

// Targets; null until demo_initgl.
extern fbo_c* orangetex_fbo;   // 128 x 128: generated texture, also the city's
extern fbo_c* orange_fbo;      // 512 x 256: picture on the phone's screen
extern fbo_c* scrollertex_fbo; // 512 x 64: text strip of the ribbon

extern texture_c screenshottex; // the captured desktop
extern texture_c nysitex;       // the phone's body, loaded by the phone; the rocket is cut from it

// The stars' depth step in the next draw. The phone's flight writes it, the starfield moves by it
// and resets it.
extern float sf_zchange;

// The city camera's own angles, degrees; written by the city.
extern float camPitch;
extern float camYaw;

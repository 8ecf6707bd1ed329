// The phone: its pose, its screen, and the flags by which the fly-in hands over to the city.
#pragma once

#include "texture.h"

#include <glm/glm.hpp>

// Model-view and projection that the phone, the ribbon and the city share; identity at start. Set
// by the director, and by flyphone while it flies.
extern glm::mat4 phone_rotation_mv;
extern glm::mat4 phone_projection;

// What the phone's screen shows: a GL texture name.
extern GLuint phonescreentex;

// The body's texture.
extern texture_c nysitex;

// Set by flyphone, read by the director: the phone lies on white and shows the city; the camera has
// gone through the screen.
extern bool show_whiteback;
extern bool flyphone_tunnelready;

// Draws the screen quad and the body with the shared matrices and phonescreentex. With `stencil`
// the visible screen leaves 1 in the stencil buffer and the body over it 0 (the stencil test must
// be on).
extern void (*draw_the_phone_ptr)(bool stencil);

// The phone without stencil, for the director.
void phonedraw();

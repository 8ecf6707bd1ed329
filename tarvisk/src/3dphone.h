// The phone's model: what its screen shows, and how it is drawn where phone_rotation_mv says.
#pragma once

#include <GLES2/gl2.h>

// What the phone's screen shows: a GL texture name.
extern GLuint phonescreentex;

// Draws the screen quad and the body with the shared matrices and phonescreentex. With `stencil`
// the visible screen leaves 1 in the stencil buffer and the body over it 0 (the stencil test must
// be on).
extern void (*draw_the_phone_ptr)(bool stencil);

// The phone without stencil, for the director.
void phonedraw();

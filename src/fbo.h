// An off-screen render target: a framebuffer with one RGBA colour texture, no depth, no stencil.
// Never destroyed, never nested. GL thread only.
#pragma once

#include <GLES2/gl2.h>

class fbo_c {
public:
    int width_p;         // pixels
    int height_p;        // pixels
    GLint viewport_p[4]; // the viewport that the last bind found
    GLuint fbohandle;
    GLuint colortex; // what later passes sample

    // Creates a target of width x height pixels whose texture repeats, or clamps with flag 2. Says
    // on standard error whether GL can draw to it, and carries on either way.
    fbo_c(int width, int height, int flags);

    // Draws go to the target, with a viewport of its size, until unbind puts the window's
    // framebuffer and the viewport of before back.
    void bind();
    void unbind() const;

    // Reserved; does nothing.
    void discard();
};

// Flag of fbo_c: the colour texture clamps to its edges instead of repeating.
constexpr int FBO_CLAMP = 2;

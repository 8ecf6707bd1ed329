// EGL for the ports that open GLES contexts themselves: remembers the attributes asked for, picks a
// config, reports what the context has. Does not know windows. Functions that return bool set SDL's
// error on false.
#pragma once

#include "port.h"

#include <EGL/egl.h>
#include <vector>

struct eglcontext_s {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr;
    EGLSurface surface = EGL_NO_SURFACE;
    EGLContext context = EGL_NO_CONTEXT;
};

// The one context of the process.
extern eglcontext_s eglcontext;

// Initialises `display` for OpenGL ES and makes it the context's display.
bool eglcontext_opendisplay(EGLDisplay display);

// The configs that satisfy the attributes asked for, best first, for surfaces of the given type
// (EGL_WINDOW_BIT or EGL_PBUFFER_BIT). Empty when there is none.
std::vector<EGLConfig> eglcontext_configs(EGLint surfacetype);

// Creates the ES 2 context on config and surface and makes it current. `surface` may be
// EGL_NO_SURFACE, in which case SDL's error says that there is none.
bool eglcontext_makecurrent(EGLConfig config, EGLSurface surface);

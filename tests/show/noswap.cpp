// Preloaded into the show: a graphics driver that cannot show what was drawn.
#include <EGL/egl.h>

namespace {

bool failed = false;

} // namespace

EGLBoolean eglSwapBuffers(EGLDisplay, EGLSurface) {
    failed = true;
    return EGL_FALSE;
}

EGLint eglGetError() {
    return failed ? EGL_BAD_SURFACE : EGL_SUCCESS;
}

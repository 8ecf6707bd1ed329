// Preloaded into the show: a graphics driver that has no stencil buffers.
#include <dlfcn.h>
#include <EGL/egl.h>

namespace {

bool wantsstencil(const EGLint* attributes) {
    for (; *attributes != EGL_NONE; attributes += 2)
        if (attributes[0] == EGL_STENCIL_SIZE)
            return attributes[1] > 0;
    return false;
}

} // namespace

EGLBoolean eglChooseConfig(EGLDisplay display, const EGLint* attributes, EGLConfig* configs,
                           EGLint size, EGLint* count) {
    static const auto egl =
        reinterpret_cast<decltype(&eglChooseConfig)>(dlsym(RTLD_NEXT, "eglChooseConfig"));
    if (!wantsstencil(attributes))
        return egl(display, attributes, configs, size, count);
    *count = 0;
    return EGL_TRUE;
}

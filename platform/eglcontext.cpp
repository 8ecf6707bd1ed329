#include "eglcontext.h"

#include <map>

eglcontext_s eglcontext;

namespace {

std::map<port_glattr_t, int> wanted = {
    {PORT_GL_DOUBLEBUFFER, 1},          {PORT_GL_DEPTH_SIZE, 16},
    {PORT_GL_STENCIL_SIZE, 0},          {PORT_GL_RETAINED_BACKING, 0},
    {PORT_GL_CONTEXT_MAJOR_VERSION, 2}, {PORT_GL_CONTEXT_MINOR_VERSION, 0},
};

int attributeerror(const char* what, int attribute) {
    SDL_SetError("%s (attribute %i)", what, attribute);
    return -1;
}

bool eglerror(const char* what) {
    SDL_SetError("%s (EGL error 0x%04x)", what, unsigned(eglGetError()));
    return false;
}

int configattribute(EGLint attribute, int* value) {
    EGLint found = 0;
    if (!eglGetConfigAttrib(eglcontext.display, eglcontext.config, attribute, &found))
        return attributeerror("no current GL config", attribute);
    *value = found;
    return 0;
}

int contextattribute(EGLint attribute, int* value) {
    EGLint found = 0;
    if (!eglQueryContext(eglcontext.display, eglcontext.context, attribute, &found))
        return attributeerror("no current GL context", attribute);
    *value = found;
    return 0;
}

int doublebuffered(int* value) {
    EGLint buffer = EGL_NONE;
    if (contextattribute(EGL_RENDER_BUFFER, &buffer) != 0)
        return -1;
    *value = buffer == EGL_BACK_BUFFER ? 1 : 0;
    return 0;
}

int retained(int* value) {
    EGLint behaviour = 0;
    if (!eglQuerySurface(eglcontext.display, eglcontext.surface, EGL_SWAP_BEHAVIOR, &behaviour))
        return attributeerror("no current GL surface", EGL_SWAP_BEHAVIOR);
    *value = behaviour == EGL_BUFFER_PRESERVED ? 1 : 0;
    return 0;
}

std::vector<EGLConfig> choose(EGLint surfacetype) {
    const EGLint attributes[] = {EGL_RENDERABLE_TYPE,
                                 EGL_OPENGL_ES2_BIT,
                                 EGL_SURFACE_TYPE,
                                 surfacetype,
                                 EGL_RED_SIZE,
                                 5,
                                 EGL_GREEN_SIZE,
                                 5,
                                 EGL_BLUE_SIZE,
                                 5,
                                 EGL_DEPTH_SIZE,
                                 wanted[PORT_GL_DEPTH_SIZE],
                                 EGL_STENCIL_SIZE,
                                 wanted[PORT_GL_STENCIL_SIZE],
                                 EGL_NONE};
    EGLint count = 0;
    if (!eglChooseConfig(eglcontext.display, attributes, nullptr, 0, &count))
        count = 0;
    std::vector<EGLConfig> configs(static_cast<size_t>(count));
    if (count > 0)
        eglChooseConfig(eglcontext.display, attributes, configs.data(), count, &count);
    return configs;
}

} // namespace

int port_setattribute(port_glattr_t attribute, int value) {
    auto entry = wanted.find(attribute);
    if (entry == wanted.end())
        return attributeerror("unknown GL attribute", attribute);
    entry->second = value;
    return 0;
}

int port_getattribute(port_glattr_t attribute, int* value) {
    switch (attribute) {
    case PORT_GL_DEPTH_SIZE:
        return configattribute(EGL_DEPTH_SIZE, value);
    case PORT_GL_STENCIL_SIZE:
        return configattribute(EGL_STENCIL_SIZE, value);
    case PORT_GL_CONTEXT_MAJOR_VERSION:
        return contextattribute(EGL_CONTEXT_CLIENT_VERSION, value);
    case PORT_GL_DOUBLEBUFFER:
        return doublebuffered(value);
    case PORT_GL_RETAINED_BACKING:
        return retained(value);
    default:
        return attributeerror("unknown GL attribute", attribute);
    }
}

bool eglcontext_opendisplay(EGLDisplay display) {
    if (display == EGL_NO_DISPLAY)
        return eglerror("no EGL display");
    if (!eglInitialize(display, nullptr, nullptr))
        return eglerror("EGL does not start");
    if (!eglBindAPI(EGL_OPENGL_ES_API))
        return eglerror("EGL has no OpenGL ES");
    eglcontext.display = display;
    return true;
}

std::vector<EGLConfig> eglcontext_configs(EGLint surfacetype) {
    std::vector<EGLConfig> configs;
    if (wanted[PORT_GL_RETAINED_BACKING])
        configs = choose(surfacetype | EGL_SWAP_BEHAVIOR_PRESERVED_BIT);
    if (configs.empty())
        configs = choose(surfacetype);
    return configs;
}

bool eglcontext_makecurrent(EGLConfig config, EGLSurface surface) {
    if (surface == EGL_NO_SURFACE)
        return eglerror("no EGL surface");
    const EGLint attributes[] = {EGL_CONTEXT_CLIENT_VERSION, wanted[PORT_GL_CONTEXT_MAJOR_VERSION],
                                 EGL_NONE};
    EGLContext context = eglCreateContext(eglcontext.display, config, EGL_NO_CONTEXT, attributes);
    if (context == EGL_NO_CONTEXT)
        return eglerror("no OpenGL ES 2.0 context");
    if (!eglMakeCurrent(eglcontext.display, surface, surface, context))
        return eglerror("the OpenGL ES context cannot be made current");
    eglcontext.config = config;
    eglcontext.surface = surface;
    eglcontext.context = context;
    // Only a hint: where the config cannot keep the back buffer, the surface stays as it is.
    if (wanted[PORT_GL_RETAINED_BACKING])
        eglSurfaceAttrib(eglcontext.display, surface, EGL_SWAP_BEHAVIOR, EGL_BUFFER_PRESERVED);
    return true;
}

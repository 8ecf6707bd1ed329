#include "port.h"

#include "web.h"

#include <cmath>
#include <emscripten.h>
#include <emscripten/html5.h>
#include <GLES2/gl2.h>
#include <initializer_list>
#include <SDL_image.h>

namespace {

constexpr const char* canvas = "#canvas"; // Module.canvas, whatever its name on the page
int stencilbits = 0;

EM_ASYNC_JS(void, awaitframe, (), { await Module.host.frame(); });

EM_ASYNC_JS(void, awaitturn, (), { await Module.host.turn(); });

EM_JS(double, now, (), { return Module.host.now(); });

EmscriptenWebGLContextAttributes contextattributes() {
    EmscriptenWebGLContextAttributes attributes;
    emscripten_webgl_init_context_attributes(&attributes);
    attributes.alpha =
        false; // the page must not shine through where an effect leaves alpha below one
    attributes.depth = true;
    attributes.stencil = stencilbits > 0;
    attributes.antialias = false;
    attributes.preserveDrawingBuffer = true; // what the retained backing asks for
    attributes.powerPreference = EM_WEBGL_POWER_PREFERENCE_HIGH_PERFORMANCE;
    attributes.enableExtensionsByDefault = true;
    return attributes;
}

bool opencontext() {
    EmscriptenWebGLContextAttributes attributes = contextattributes();
    for (int version : {2, 1}) {
        attributes.majorVersion = version;
        const EMSCRIPTEN_WEBGL_CONTEXT_HANDLE context =
            emscripten_webgl_create_context(canvas, &attributes);
        if (context > 0)
            return emscripten_webgl_make_context_current(context) == EMSCRIPTEN_RESULT_SUCCESS;
    }
    SDL_SetError("the browser has no WebGL");
    return false;
}

} // namespace

void web_turn() {
    awaitturn();
}

void port_beforesdl() {}

int port_setattribute(port_glattr_t attribute, int value) {
    if (attribute == PORT_GL_STENCIL_SIZE)
        stencilbits = value;
    return 0;
}

SDL_Surface* port_setvideomode(int width, int height, int, Uint32) {
    if (!opencontext())
        return nullptr;
    if (width == 0)
        emscripten_get_canvas_element_size(canvas, &width, &height);
    else
        emscripten_set_canvas_element_size(canvas, width, height);
    return SDL_CreateRGBSurface(0, width, height, 32, 0, 0, 0, 0);
}

int port_getattribute(port_glattr_t attribute, int* value) {
    switch (attribute) {
    case PORT_GL_DEPTH_SIZE:
        glGetIntegerv(GL_DEPTH_BITS, value);
        return 0;
    case PORT_GL_STENCIL_SIZE:
        glGetIntegerv(GL_STENCIL_BITS, value);
        return 0;
    case PORT_GL_CONTEXT_MAJOR_VERSION:
        *value = 2;
        return 0;
    default:
        *value = 1;
        return 0;
    }
}

bool port_windownumbers(port_windownumbers_s*) {
    return false;
}

bool port_setwindowtype(port_windowtype_t) {
    return false;
}

void port_present() {
    web_runtimers();
    awaitframe();
}

void port_timeofday(struct timeval* time) {
    const long long microseconds = port_awake();
    time->tv_sec = static_cast<time_t>(microseconds / 1000000);
    time->tv_usec = static_cast<suseconds_t>(microseconds % 1000000);
}

// Nobody sets the page's clock, and it rests with the song.
long long port_awake() {
    return std::llround(now() * 1000000.0);
}

long long port_slept() {
    return 0;
}

// The page holds the frame while it is the page's turn.
float port_framehold() {
    return 0.0f;
}

// A page does not see the viewer's desktop.
SDL_Surface* port_grabdesktop(int, int) {
    return IMG_Load("gfx/harmattan-home.png");
}

#include "testport.h"

#include "main/clock.h"
#include "schedule.h"

#include <cstdlib>

testport_s testport;

namespace {

void note(const std::string& call) {
    testport.calls.push_back(call);
}

} // namespace

void testport_startsdl() {
    port_beforesdl();
    SDL_Init(SDL_INIT_VIDEO);
    SDL_SetVideoMode(64, 64, 32, 0);
    // The compatibility library reports its new window: that belongs to no test.
    SDL_Event event;
    while (SDL_PollEvent(&event))
        ;
}

void testport_setbeat(double beats, int skip) {
    beat_first = grid::first;
    beat_last = grid::last;
    beat_lastnum = grid::lastnum;
    timeval = static_cast<float>(0.128 + beats * (5.207 - 0.128) / 8.0);
    beatgrid = static_cast<float>(beats);
    frameskip = skip;
}

void port_beforesdl() {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    note("port_beforesdl()");
}

int port_setattribute(port_glattr_t attribute, int value) {
    note("port_setattribute(" + std::to_string(attribute) + ", " + std::to_string(value) + ")");
    return 0;
}

SDL_Surface* port_setvideomode(int width, int height, int depth, Uint32 flags) {
    note("port_setvideomode(" + std::to_string(width) + ", " + std::to_string(height) + ", " +
         std::to_string(depth) + ", " + std::to_string(flags) + ")");
    if (!testport.haswindow)
        return nullptr;
    return SDL_CreateRGBSurface(SDL_SWSURFACE, testport.width, testport.height, 32, 0, 0, 0, 0);
}

int port_getattribute(port_glattr_t attribute, int* value) {
    note("port_getattribute(" + std::to_string(attribute) + ")");
    if (attribute == testport.attributeerror) {
        SDL_SetError("no such attribute");
        return -1;
    }
    *value = attribute == PORT_GL_CONTEXT_MAJOR_VERSION ? 2
             : attribute == PORT_GL_DEPTH_SIZE          ? 24
             : attribute == PORT_GL_STENCIL_SIZE        ? 8
                                                        : 1;
    return 0;
}

bool port_windownumbers(port_windownumbers_s* numbers) {
    if (testport.windownumbers)
        *numbers = *testport.windownumbers;
    return testport.windownumbers != nullptr;
}

bool port_setwindowtype(port_windowtype_t type) {
    if (testport.windownumbers)
        note(type == PORT_WINDOW_DIALOG ? "port_setwindowtype(dialog)"
                                        : "port_setwindowtype(normal)");
    return testport.windownumbers != nullptr;
}

void port_present() {
    note("port_present()");
    ++testport.presents;
    if (testport.onpresent)
        testport.onpresent();
    testport.now += testport.presentstep;
}

void port_timeofday(struct timeval* now) {
    const long long shown = testport.now + testport.set + testport.slept;
    now->tv_sec = static_cast<time_t>(shown / 1000000);
    now->tv_usec = static_cast<suseconds_t>(shown % 1000000);
    testport.now += testport.readstep;
    if (testport.onread)
        testport.onread();
}

long long port_awake() {
    return testport.now;
}

long long port_slept() {
    return testport.slept;
}

float port_framehold() {
    return testport.framehold;
}

SDL_Surface* port_grabdesktop(int width, int height) {
    note("port_grabdesktop(" + std::to_string(width) + ", " + std::to_string(height) + ")");
    return testport.desktop;
}

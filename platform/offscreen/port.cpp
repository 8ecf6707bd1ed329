// No window: a pbuffer as the default framebuffer, SDL with its dummy drivers, and a clock that
// stands still while a frame is drawn and moves one step when it is presented.
#include "port.h"

#include "eglcontext.h"
#include "framesize.h"
#include "offscreen.h"
#include "standin.h"

#include <cstdlib>
#include <EGL/eglext.h>
#include <GLES2/gl2.h>
#include <string>
#include <utility>

namespace {

int picture_w = frame_w;
int picture_h = frame_h;
long long step_numerator = 1;
long long step_denominator = 50;
long long frames = 0;
std::string desktop;
std::function<void()> presenthook;

EGLDisplay platformdisplay(EGLenum platform, void* native) {
    auto getplatformdisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
        eglGetProcAddress("eglGetPlatformDisplayEXT"));
    return getplatformdisplay ? getplatformdisplay(platform, native, nullptr) : EGL_NO_DISPLAY;
}

// Mesa draws without any device; other drivers want theirs named.
bool opendisplay() {
    if (eglcontext_opendisplay(platformdisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY)))
        return true;
    auto querydevices =
        reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    EGLDeviceEXT device = nullptr;
    EGLint count = 0;
    if (!querydevices || !querydevices(1, &device, &count) || count == 0)
        return false;
    return eglcontext_opendisplay(platformdisplay(EGL_PLATFORM_DEVICE_EXT, device));
}

bool opencontext(int width, int height) {
    if (!opendisplay())
        return false;
    const std::vector<EGLConfig> configs = eglcontext_configs(EGL_PBUFFER_BIT);
    if (configs.empty()) {
        SDL_SetError("no EGL config with the depth and stencil bits that the show needs");
        return false;
    }
    const EGLint size[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    EGLConfig config = configs.front();
    return eglcontext_makecurrent(config,
                                  eglCreatePbufferSurface(eglcontext.display, config, size));
}

} // namespace

void offscreen_setsize(int width, int height) {
    picture_w = width;
    picture_h = height;
}

void offscreen_setstep(long long numerator, long long denominator) {
    step_numerator = numerator;
    step_denominator = denominator;
}

void offscreen_setdesktop(const char* image) {
    desktop = image;
}

void offscreen_onpresent(std::function<void()> hook) {
    presenthook = std::move(hook);
}

bool offscreen_setseen(bool seen) {
    const EGLSurface surface = seen ? eglcontext.surface : EGL_NO_SURFACE;
    return eglMakeCurrent(eglcontext.display, surface, surface, eglcontext.context);
}

void port_beforesdl() {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    // Mesa draws from rand() when it makes its shader cache, and with it from the show's own
    // numbers: the first run on a machine would have other stars than the second.
    setenv("MESA_SHADER_CACHE_DISABLE", "true", 1);
    setenv("SDL_AUDIODRIVER", "dummy", 0);
}

SDL_Surface* port_setvideomode(int width, int height, int, Uint32) {
    SDL_Surface* surface =
        SDL_SetVideoMode(width ? width : picture_w, height ? height : picture_h, 32, 0);
    if (!surface || !opencontext(surface->w, surface->h))
        return nullptr;
    return surface;
}

bool port_windownumbers(port_windownumbers_s*) {
    return false;
}

bool port_setwindowtype(port_windowtype_t) {
    return false;
}

void port_present() {
    if (presenthook)
        presenthook();
    glFlush(); // nobody waits for a frame: the driver would queue them all
    ++frames;
}

void port_timeofday(struct timeval* now) {
    now->tv_sec = static_cast<time_t>(port_awake() / 1000000);
    now->tv_usec = static_cast<suseconds_t>(port_awake() % 1000000);
}

long long port_awake() {
    return frames * 1000000 * step_numerator / step_denominator;
}

long long port_slept() {
    return 0;
}

float port_framehold() {
    return 0.0f;
}

SDL_Surface* port_grabdesktop(int, int) {
    return desktop.empty() ? nullptr : standin_load(desktop.c_str());
}

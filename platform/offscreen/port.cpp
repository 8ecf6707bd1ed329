// No window: a pbuffer as the default framebuffer, SDL with its dummy drivers, and a clock that
// stands still while a frame is drawn and moves one step when it is presented.
#include "port.h"

#include "eglcontext.h"
#include "offscreen.h"

#include <cstdlib>
#include <EGL/eglext.h>
#include <SDL_image.h>
#include <string>
#include <utility>

namespace {

int picture_w = 854;
int picture_h = 480;
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

long long offscreen_frames() {
    return frames;
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

void port_present() {
    if (presenthook)
        presenthook();
    ++frames;
}

void port_timeofday(vxqtime_t* now) {
    const long long microseconds = frames * 1000000 * step_numerator / step_denominator;
    now->tv_sec = static_cast<time_t>(microseconds / 1000000);
    now->tv_usec = static_cast<suseconds_t>(microseconds % 1000000);
}

float port_framehold() {
    return 0.0f;
}

SDL_Surface* port_grabdesktop(int, int) {
    static SDL_Surface* image = nullptr; // kept, as the caller does not free it
    image = desktop.empty() ? nullptr : IMG_Load(desktop.c_str());
    return image;
}

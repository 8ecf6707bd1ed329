// A desktop of today. Its SDL 1.2 knows no GLES, and its window's visual is rarely one that EGL can
// draw to, so GL gets a child window of SDL's with the visual of the EGL config. The child selects
// no input: keys and clicks pass through it to SDL.
#include "port.h"

#include "eglcontext.h"
#include "x11.h"

#include <algorithm>
#include <cstdlib>
#include <SDL_syswm.h>
#include <X11/Xutil.h>

namespace {

int window_w = 0; // of a window instead of the full screen
int window_h = 0;

bool windowinfo(SDL_SysWMinfo* info) {
    SDL_VERSION(&info->version);
    if (SDL_GetWMInfo(info) == 1)
        return true;
    SDL_SetError("SDL has no X11 window");
    return false;
}

int visualdepth(Display* display, VisualID id, Visual** visual) {
    XVisualInfo wanted{};
    wanted.visualid = id;
    int count = 0;
    XVisualInfo* found = XGetVisualInfo(display, VisualIDMask, &wanted, &count);
    if (!found)
        return 0;
    *visual = found->visual;
    const int depth = found->depth;
    XFree(found);
    return depth;
}

VisualID configvisual(EGLConfig config) {
    EGLint id = 0;
    eglGetConfigAttrib(eglcontext.display, config, EGL_NATIVE_VISUAL_ID, &id);
    return static_cast<VisualID>(id);
}

// A config whose visual has the screen's own depth: a 32-bit visual would let a compositor see
// through the show wherever an effect leaves alpha below one.
EGLConfig pickconfig(Display* display, const std::vector<EGLConfig>& configs) {
    const int screendepth = DefaultDepth(display, DefaultScreen(display));
    auto fits = [&](EGLConfig config) {
        Visual* visual = nullptr;
        return visualdepth(display, configvisual(config), &visual) == screendepth;
    };
    auto best = std::find_if(configs.begin(), configs.end(), fits);
    return best != configs.end() ? *best : configs.front();
}

Window openchild(Display* display, Window parent, VisualID id, int width, int height) {
    Visual* visual = nullptr;
    const int depth = visualdepth(display, id, &visual);
    if (depth == 0)
        return 0;
    XSetWindowAttributes attributes{};
    attributes.colormap = XCreateColormap(display, DefaultRootWindow(display), visual, AllocNone);
    attributes.border_pixel = 0; // without it a depth other than the parent's is a bad match
    attributes.event_mask = 0;
    Window child = XCreateWindow(display, parent, 0, 0, static_cast<unsigned>(width),
                                 static_cast<unsigned>(height), 0, depth, InputOutput, visual,
                                 CWColormap | CWBorderPixel | CWEventMask, &attributes);
    XMapRaised(display, child);
    XSync(display, False);
    return child;
}

// The compatibility library leaves its window at 1 x 1 in the middle of the screen when no window
// manager sizes it.
void fillscreen(Display* display, Window window, int width, int height) {
    XWindowAttributes now{};
    if (XGetWindowAttributes(display, window, &now) && now.width >= width && now.height >= height)
        return;
    XMoveResizeWindow(display, window, 0, 0, static_cast<unsigned>(width),
                      static_cast<unsigned>(height));
}

bool opencontext(const SDL_SysWMinfo& info, int width, int height) {
    Display* display = info.info.x11.gfxdisplay;
    if (!eglcontext_opendisplay(eglGetDisplay(display)))
        return false;
    const std::vector<EGLConfig> configs = eglcontext_configs(EGL_WINDOW_BIT);
    if (configs.empty()) {
        SDL_SetError("no EGL config with the depth and stencil bits that the show needs");
        return false;
    }
    EGLConfig config = pickconfig(display, configs);
    fillscreen(display, info.info.x11.window, width, height);
    const Window child =
        openchild(display, info.info.x11.window, configvisual(config), width, height);
    return eglcontext_makecurrent(
        config, eglCreateWindowSurface(eglcontext.display, config, child, nullptr));
}

} // namespace

void x11_setwindow(int width, int height) {
    window_w = width;
    window_h = height;
}

void port_beforesdl() {
    // Under Wayland sessions the compatibility library would pick a driver without X windows.
    setenv("SDL_VIDEODRIVER", "x11", 0);
}

SDL_Surface* port_setvideomode(int width, int height, int depth, Uint32 flags) {
    SDL_Surface* surface = window_w
                               ? SDL_SetVideoMode(window_w, window_h, depth, 0)
                               : SDL_SetVideoMode(width, height, depth, flags & ~PORT_OPENGLES);
    if (!surface)
        return nullptr;
    SDL_SysWMinfo info{};
    if (!windowinfo(&info))
        return nullptr;
    info.info.x11.lock_func();
    const bool open = opencontext(info, surface->w, surface->h);
    info.info.x11.unlock_func();
    return open ? surface : nullptr;
}

void port_present() {
    eglSwapBuffers(eglcontext.display, eglcontext.surface);
}

void port_timeofday(vxqtime_t* now) {
    gettimeofday(now, nullptr);
}

float port_framehold() {
    return 0.02f;
}

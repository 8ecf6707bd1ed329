// A desktop of today. Its SDL 1.2 knows no GLES, and its window's visual is rarely one that EGL can
// draw to, so GL gets a child window of SDL's with the visual of the EGL config. The child selects
// no input: keys and clicks pass through it to SDL.
#include "port.h"

#include "eglcontext.h"
#include "heads.h"
#include "wminfo.h"
#include "x11.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <X11/Xutil.h>

namespace {

int window_w = 0; // of a window instead of the full screen
int window_h = 0;
bool resizable = false;
void (*presenthook)() = nullptr;
Window picture = 0; // GL's own

std::optional<head_s> head; // the one to fill, where there are several

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
    XMoveResizeWindow(display, window, head ? head->x : 0, head ? head->y : 0,
                      static_cast<unsigned>(width), static_cast<unsigned>(height));
}

// The window that its viewer sees and moves; SDL's own may lie in it.
Window outerwindow(const SDL_SysWMinfo& info) {
    return info.info.x11.wmwindow ? info.info.x11.wmwindow : info.info.x11.window;
}

// Asks the window manager to keep the shape.
void keepshape(const SDL_SysWMinfo& info) {
    const auto& x11 = info.info.x11;
    XSizeHints hints{};
    long supplied = 0;
    XGetWMNormalHints(x11.display, outerwindow(info), &hints, &supplied);
    hints.flags |= PAspect;
    hints.min_aspect.x = hints.max_aspect.x = window_w;
    hints.min_aspect.y = hints.max_aspect.y = window_h;
    XSetWMNormalHints(x11.display, outerwindow(info), &hints);
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
    picture = openchild(display, info.info.x11.window, configvisual(config), width, height);
    return eglcontext_makecurrent(
        config, eglCreateWindowSurface(eglcontext.display, config, picture, nullptr));
}

SDL_Surface* openwindow(int width, int height, int depth, Uint32 flags) {
    if (window_w)
        return SDL_SetVideoMode(window_w, window_h, depth, resizable ? SDL_RESIZABLE : 0);
    if (!head)
        return SDL_SetVideoMode(width, height, depth, flags);
    // Classic SDL has a window for the window manager behind the full screen: its frame would be
    // seen on the next monitor.
    return SDL_SetVideoMode(head->width, head->height, depth, flags | SDL_NOFRAME);
}

} // namespace

void x11_setwindow(int width, int height) {
    window_w = width;
    window_h = height;
}

void x11_setresizable(int width, int height) {
    x11_setwindow(width, height);
    resizable = true;
}

bool x11_fitpicture(int* width, int* height) {
    SDL_SysWMinfo info;
    if (!resizable || !wminfo_query(&info))
        return false;
    Display* display = info.info.x11.gfxdisplay;
    XWindowAttributes window{}, now{};
    if (!XGetWindowAttributes(display, outerwindow(info), &window) ||
        !XGetWindowAttributes(display, picture, &now))
        return false;
    if (outerwindow(info) != info.info.x11.window)
        XResizeWindow(display, info.info.x11.window, static_cast<unsigned>(window.width),
                      static_cast<unsigned>(window.height));
    *width = std::max(1, std::min(window.width, window.height * window_w / window_h));
    *height = std::max(1, std::min(window.height, window.width * window_h / window_w));
    const int x = (window.width - *width) / 2, y = (window.height - *height) / 2;
    const bool sizechanges = now.width != *width || now.height != *height;
    if (sizechanges || now.x != x || now.y != y)
        XMoveResizeWindow(display, picture, x, y, static_cast<unsigned>(*width),
                          static_cast<unsigned>(*height));
    return sizechanges;
}

void x11_onpresent(void (*hook)()) {
    presenthook = hook;
}

void port_beforesdl() {
    head = heads_choose();
    // Under Wayland sessions the compatibility library would pick a driver without X windows.
    setenv("SDL_VIDEODRIVER", "x11", 0);
}

SDL_Surface* port_setvideomode(int width, int height, int depth, Uint32 flags) {
    SDL_Surface* surface = openwindow(width, height, depth, flags & ~PORT_OPENGLES);
    if (!surface)
        return nullptr;
    SDL_SysWMinfo info;
    if (!wminfo_query(&info)) {
        SDL_SetError("SDL has no X11 window");
        return nullptr;
    }
    info.info.x11.lock_func();
    const bool open = opencontext(info, surface->w, surface->h);
    if (resizable)
        keepshape(info);
    info.info.x11.unlock_func();
    return open ? surface : nullptr;
}

void port_present() {
    static bool told = false;
    if (!eglSwapBuffers(eglcontext.display, eglcontext.surface) && !told) {
        fprintf(stderr, "frames cannot be shown (EGL error 0x%04x)\n", unsigned(eglGetError()));
        told = true;
    }
    if (presenthook)
        presenthook();
}

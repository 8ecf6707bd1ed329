// What the window manager is told, and what the X window's numbers are: for every SDL with X11.
#include "wminfo.h"
#include "port.h"

#include <X11/Xatom.h>

namespace {

// Not every SDL has a full-screen window of its own.
Window typewindow(const SDL_SysWMinfo& info) {
    return info.info.x11.fswindow ? info.info.x11.fswindow : info.info.x11.window;
}

} // namespace

bool wminfo_query(SDL_SysWMinfo* info) {
    *info = {};
    info->version = {1, 2, 14};
    return SDL_GetWMInfo(info) == 1;
}

bool port_windownumbers(port_windownumbers_s* numbers) {
    SDL_SysWMinfo info;
    if (!wminfo_query(&info))
        return false;
    const auto& x11 = info.info.x11;
    *numbers = {x11.window, x11.fswindow, x11.wmwindow};
    return true;
}

bool port_setwindowtype(port_windowtype_t type) {
    SDL_SysWMinfo info;
    if (!wminfo_query(&info))
        return false;
    const auto& x11 = info.info.x11;
    x11.lock_func();
    Atom atom = XInternAtom(x11.display,
                            type == PORT_WINDOW_DIALOG ? "_NET_WM_WINDOW_TYPE_DIALOG"
                                                       : "_NET_WM_WINDOW_TYPE_NORMAL",
                            False);
    // Where no window manager ever named the property there is none to set.
    if (Atom property = XInternAtom(x11.display, "_NET_WM_WINDOW_TYPE", True))
        XChangeProperty(x11.display, typewindow(info), property, XA_ATOM, 32, PropModeReplace,
                        reinterpret_cast<unsigned char*>(&atom), 1);
    XFlush(x11.display);
    x11.unlock_func();
    return true;
}

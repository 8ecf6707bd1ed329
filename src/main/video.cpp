#include "main/video.h"

#include "main/startup.h"
#include "port.h"

#include <cassert>
#include <cstdio>
#include <GLES2/gl2.h>
#include <SDL_syswm.h>
#include <X11/Xatom.h>

SDL_Surface* screen = nullptr;
int video_w = 0;
int video_h = 0;

namespace {

SDL_SysWMinfo sysinfo;

bool querywminfo() {
    sysinfo.version = {1, 2, 14};
    return SDL_GetWMInfo(&sysinfo) == 1;
}

void setattributes() {
    port_setattribute(PORT_GL_DEPTH_SIZE, 8);
    port_setattribute(PORT_GL_STENCIL_SIZE, config_stencilsize);
    port_setattribute(PORT_GL_DOUBLEBUFFER, 1);
    fprintf(stderr, "initting GLES\n");
    port_setattribute(PORT_GL_CONTEXT_MAJOR_VERSION, 2);
    port_setattribute(PORT_GL_CONTEXT_MINOR_VERSION, 0);
    port_setattribute(PORT_GL_RETAINED_BACKING, 1);
}

void reportattribute(port_glattr_t attribute, const char* label) {
    int value = 0;
    if (port_getattribute(attribute, &value) == 0)
        fprintf(stderr, "%s: %i\n", label, value);
}

void reportversion() {
    int major = 0;
    if (port_getattribute(PORT_GL_CONTEXT_MAJOR_VERSION, &major) == 0)
        fprintf(stderr, "major version: %i\n", major);
    else
        fprintf(stderr, "major version error: %s\n", SDL_GetError());
}

const char* glstring(GLenum name) {
    return reinterpret_cast<const char*>(glGetString(name));
}

void reportglstrings() {
    printf("Vendor     : %s\n", glstring(GL_VENDOR));
    printf("Renderer   : %s\n", glstring(GL_RENDERER));
    printf("Version    : %s\n", glstring(GL_VERSION));
    printf("Extensions : %s\n", glstring(GL_EXTENSIONS));
}

void setviewport() {
    const int h = static_cast<int>(static_cast<float>(config_height) /
                                   static_cast<float>(config_width) * static_cast<float>(video_w));
    const int y = static_cast<int>((video_h - h) * 0.5);
    glViewport(0, y, video_w, h);
}

// Not every SDL has a full-screen window of its own.
Window typewindow() {
    return sysinfo.info.x11.fswindow ? sysinfo.info.x11.fswindow : sysinfo.info.x11.window;
}

} // namespace

int init_gl() {
    SDL_FreeSurface(screen);
    setattributes();
    screen = port_setvideomode(0, 0, 0, SDL_FULLSCREEN | PORT_OPENGLES);
    if (!screen)
        fprintf(stderr, "no window: %s\n", SDL_GetError());
    assert(screen);
    compositor_fix(0);
    SDL_ShowCursor(0);
    reportversion();
    x11info();
    reportattribute(PORT_GL_DEPTH_SIZE, "depth size");
    reportattribute(PORT_GL_STENCIL_SIZE, "stencil size");
    reportattribute(PORT_GL_DOUBLEBUFFER, "doublebuffer");
    fprintf(stderr, "screen res: %i, %i\n", screen->w, screen->h);
    reportglstrings();
    video_w = screen->w;
    video_h = screen->h;
    fprintf(stderr, "viewport should be now %i, %i\n", video_w, video_h);
    setviewport();
    return 0;
}

void x11info() {
    if (!querywminfo())
        return;
    const auto& x11 = sysinfo.info.x11;
    x11.lock_func();
    fprintf(stderr, "our window id: %08X\n", static_cast<unsigned>(x11.window));
    fprintf(stderr, "our fswindow id: %08X\n", static_cast<unsigned>(x11.fswindow));
    fprintf(stderr, "our wmwindow id: %08X\n", static_cast<unsigned>(x11.wmwindow));
    x11.unlock_func();
}

void compositor_fix(int stage) {
    if (!querywminfo())
        return;
    const auto& x11 = sysinfo.info.x11;
    x11.lock_func();
    Atom type = XInternAtom(
        x11.display, stage == 0 ? "_NET_WM_WINDOW_TYPE_DIALOG" : "_NET_WM_WINDOW_TYPE_NORMAL",
        False);
    fprintf(stderr, "setting the hildon atom\n");
    // Where no window manager ever named the property there is none to set.
    if (Atom property = XInternAtom(x11.display, "_NET_WM_WINDOW_TYPE", True))
        XChangeProperty(x11.display, typewindow(), property, XA_ATOM, 32, PropModeReplace,
                        reinterpret_cast<unsigned char*>(&type), 1);
    XFlush(x11.display);
    x11.unlock_func();
}

// The desktop as the X server's root window shows it.
#include "port.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

bool failed = false;

int noteerror(Display*, XErrorEvent*) {
    failed = true;
    return 0;
}

// A root window smaller than the rectangle is an X error, whose default handler ends the process.
XImage* rootimage(Display* display, unsigned width, unsigned height) {
    failed = false;
    XErrorHandler previous = XSetErrorHandler(noteerror);
    XImage* image =
        XGetImage(display, DefaultRootWindow(display), 0, 0, width, height, AllPlanes, ZPixmap);
    XSync(display, False);
    XSetErrorHandler(previous);
    return failed ? nullptr : image;
}

} // namespace

// Neither the connection nor the image is released: the surface wraps the image's pixels, and this
// is called once.
SDL_Surface* port_grabdesktop(int width, int height) {
    Display* display = XOpenDisplay(nullptr);
    if (!display)
        return nullptr;
    XImage* image = rootimage(display, static_cast<unsigned>(width), static_cast<unsigned>(height));
    if (!image)
        return nullptr;
    return SDL_CreateRGBSurfaceFrom(image->data, image->width, image->height, image->bits_per_pixel,
                                    image->bytes_per_line, static_cast<Uint32>(image->red_mask),
                                    static_cast<Uint32>(image->green_mask),
                                    static_cast<Uint32>(image->blue_mask), 0);
}

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

bool isdeep(const XImage* image) {
    return image->bits_per_pixel == 32 && __builtin_popcountl(image->green_mask) > 8;
}

// The highest 8 bits of a channel of more than 8.
Uint32 highbits(Uint32 pixel, unsigned long mask) {
    const int highest = 63 - __builtin_clzl(mask);
    return (pixel & static_cast<Uint32>(mask)) >> (highest - 7) & 0xFF;
}

// SDL 1.2 knows channels of 8 bits at most; a desktop of 30 bits has 10 each.
void flatten(XImage* image) {
    auto* pixels = reinterpret_cast<Uint32*>(image->data);
    const int count = image->bytes_per_line / 4 * image->height;
    for (Uint32* pixel = pixels; pixel < pixels + count; ++pixel)
        *pixel = highbits(*pixel, image->red_mask) << 16 |
                 highbits(*pixel, image->green_mask) << 8 | highbits(*pixel, image->blue_mask);
    image->red_mask = 0xFF0000;
    image->green_mask = 0xFF00;
    image->blue_mask = 0xFF;
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
    if (isdeep(image))
        flatten(image);
    return SDL_CreateRGBSurfaceFrom(image->data, image->width, image->height, image->bits_per_pixel,
                                    image->bytes_per_line, static_cast<Uint32>(image->red_mask),
                                    static_cast<Uint32>(image->green_mask),
                                    static_cast<Uint32>(image->blue_mask), 0);
}

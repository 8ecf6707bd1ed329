// The desktop as the X server's root window shows it.
#include "port.h"
#include "standin.h"

#include <cstdlib>
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
    return image->bits_per_pixel == 32 &&
           __builtin_popcount(static_cast<Uint32>(image->green_mask)) > 8;
}

// The highest 8 bits of a channel of more than 8.
Uint32 highbits(Uint32 pixel, Uint32 mask) {
    const int highest = 31 - __builtin_clz(mask);
    return (pixel & mask) >> (highest - 7) & 0xFF;
}

// SDL 1.2 knows channels of 8 bits at most; a desktop of 30 bits has 10 each.
void flatten(XImage* image) {
    auto* pixels = reinterpret_cast<Uint32*>(image->data);
    const Uint32 red = static_cast<Uint32>(image->red_mask);
    const Uint32 green = static_cast<Uint32>(image->green_mask);
    const Uint32 blue = static_cast<Uint32>(image->blue_mask);
    const int count = image->bytes_per_line / 4 * image->height;
    for (Uint32* pixel = pixels; pixel < pixels + count; ++pixel)
        *pixel =
            highbits(*pixel, red) << 16 | highbits(*pixel, green) << 8 | highbits(*pixel, blue);
    image->red_mask = 0xFF0000;
    image->green_mask = 0xFF00;
    image->blue_mask = 0xFF;
}

// Where another server composes the desktop, the root window that this one shows is black.
bool shownelsewhere(XImage* image) {
    const char* wayland = getenv("WAYLAND_DISPLAY");
    if (!wayland || !*wayland)
        return false;
    const unsigned long colours = image->red_mask | image->green_mask | image->blue_mask;
    for (int y = 0; y < image->height; ++y)
        for (int x = 0; x < image->width; ++x)
            if (XGetPixel(image, x, y) & colours)
                return false;
    return true;
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
    if (shownelsewhere(image))
        return standin_load("gfx/harmattan-home.png");
    if (isdeep(image))
        flatten(image);
    return SDL_CreateRGBSurfaceFrom(image->data, image->width, image->height, image->bits_per_pixel,
                                    image->bytes_per_line, static_cast<Uint32>(image->red_mask),
                                    static_cast<Uint32>(image->green_mask),
                                    static_cast<Uint32>(image->blue_mask), 0);
}

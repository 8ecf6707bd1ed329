#include "saver.h"

#include <X11/Xlib.h>

#include <X11/extensions/dpms.h> // needs the one above

namespace {

bool haspowersaving(Display* display) {
    int event, error;
    return DPMSQueryExtension(display, &event, &error) && DPMSCapable(display);
}

bool powersaving(Display* display) {
    CARD16 level = 0;
    BOOL on = False;
    return haspowersaving(display) && DPMSInfo(display, &level, &on) && on;
}

} // namespace

saver_s saver_read() {
    saver_s saver;
    Display* display = XOpenDisplay(nullptr);
    if (!display)
        return saver;
    saver.known = true;
    XGetScreenSaver(display, &saver.timeout, &saver.interval, &saver.blanking, &saver.exposures);
    saver.powersaving = powersaving(display);
    XCloseDisplay(display);
    return saver;
}

void saver_restore(const saver_s& saver) {
    Display* display = saver.known ? XOpenDisplay(nullptr) : nullptr;
    if (!display)
        return;
    XSetScreenSaver(display, saver.timeout, saver.interval, saver.blanking, saver.exposures);
    if (saver.powersaving && !powersaving(display))
        DPMSEnable(display);
    XCloseDisplay(display);
}

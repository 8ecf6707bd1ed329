// What a program on the desktop may ask of its port beyond port.h.
#pragma once

// Opens a window of this size in pixels instead of the full screen. Call before the show starts.
void x11_setwindow(int width, int height);

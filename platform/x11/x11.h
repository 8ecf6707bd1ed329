// What a program on the desktop may ask of its port beyond port.h.
#pragma once

// Opens a window of this size in pixels instead of the full screen. Call before the show starts.
void x11_setwindow(int width, int height);

// The same, but one that its viewer may resize; it keeps its shape where there is a window manager.
void x11_setresizable(int width, int height);

// In a window that may be resized: makes the picture as large as the window has room for in the
// shape it was opened with, in its middle. True when its size has changed; then width and height
// are the new one. Call between two frames.
bool x11_fitpicture(int* width, int* height);

// Called after each present. Call before the show starts.
void x11_onpresent(void (*hook)());

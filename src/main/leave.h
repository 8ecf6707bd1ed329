// How the show ends, whatever it was doing.
#pragma once

#include <SDL.h>

// From now on the process ends without the threads of sound and timers, however it ends: they must
// not outlive the libraries that they call. Call once, after SDL has started.
void leave_cleanly();

// Whether the process ends because the viewer left; failures end it with the same status.
extern bool viewer_left;

// Whether a viewer asks for the end: by closing the window, a signal, q or Alt+F4.
bool asks_to_leave(const SDL_Event& event);

// Closes SDL and ends the process with status 1: how a viewer leaves. A device that hangs delays
// that by a few seconds at most.
[[noreturn]] void leave_show();

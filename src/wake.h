// Keeps the phone's display awake: asks its mode-control service over the system bus, every 5
// seconds for the whole run, to pause display blanking. Without that service nothing answers, and
// nothing is lost.
#pragma once

#include <SDL.h>

// Connects to the system bus and starts the repeating request, the first one at once. Without a bus
// it says so on standard error and does nothing more. Call once, after SDL's timers have started.
void pysyhereilla();

// SDL timer callback: sends one request. Returns the milliseconds until the next.
Uint32 heratys(Uint32 interval, void* param);

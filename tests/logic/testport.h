// The port of the logic tests: a clock set by hand, a window that is only a surface, a desktop that
// the test makes. SDL itself is real, on its dummy drivers.
#pragma once

#include "port.h"

#include <functional>
#include <string>
#include <vector>

struct testport_s {
    // Microseconds that the machine was awake; presentstep is added at each present, readstep at
    // each reading of the time of day, which shows what was slept and set on top.
    long long now = 0;
    long long slept = 0;
    long long set = 0;
    long long presentstep = 20000;
    long long readstep = 0;
    std::function<void()> onread; // after each reading
    float framehold = 0.0f;

    int width = 854, height = 480;  // of the window
    SDL_Surface* desktop = nullptr; // what is captured
    bool haswindow = true;
    const port_windownumbers_s* windownumbers = nullptr; // what X11 would call its windows
    int attributeerror = -1;                             // the attribute whose query fails

    long long presents = 0;
    std::function<void()> onpresent; // before the clock moves; may throw to leave demo_run
    std::vector<std::string> calls;  // "port_setattribute(6, 8)", in order
};
extern testport_s testport;

// Starts SDL with the dummy drivers and an empty queue, so that events can be pushed and polled.
void testport_startsdl();

// Sets the clock globals to a moment of the show without running the loop service: timeval and
// beatgrid from beats on the show's own grid, and frameskip.
void testport_setbeat(double beats, int skip = 1);

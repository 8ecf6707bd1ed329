// The port of the logic tests: a clock set by hand, a window that is only a surface, a desktop that
// the test makes. SDL itself is real, on its dummy drivers.
#pragma once

#include "port.h"

#include <functional>
#include <string>
#include <vector>

struct testport_s {
    // Microseconds of the clock; presentstep is added at each present, readstep at each reading.
    long long now = 0;
    long long presentstep = 20000;
    long long readstep = 0;
    float framehold = 0.0f;

    int width = 854, height = 480;  // of the window
    SDL_Surface* desktop = nullptr; // what is captured
    bool haswindow = true;
    int attributeerror = -1; // the attribute whose query fails

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

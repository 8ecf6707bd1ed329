// Doubles of the libraries around the show: music, message bus and timers. They record their calls
// in testport.calls, beside the port's, and start nothing. Timers never fire by themselves.
#pragma once

#include <SDL.h>
#include <vector>

struct timer_s {
    Uint32 interval;
    SDL_NewTimerCallback callback;
};

struct services_s {
    bool audio = true;      // Mix_OpenAudio succeeds
    bool song = true;       // Mix_LoadMUS succeeds
    bool bus = false;       // dbus_bus_get succeeds
    bool message = true;    // a D-Bus message can be made
    bool send = true;       // a D-Bus message can be sent
    long long loadedat = 0; // the port's clock at Mix_LoadMUS
    double position = -1.0; // of Mix_SetMusicPosition
    std::vector<timer_s> timers;
};
extern services_s services;

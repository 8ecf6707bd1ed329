// Doubles of the libraries around the show: music, message bus, timers, delays and the mouse. They
// record their calls in testport.calls, beside the port's, and start nothing. Timers never fire by
// themselves, and nothing sleeps. Threads are what a test makes of them.
#pragma once

#include <SDL.h>
#include <vector>

struct timer_s {
    Uint32 interval;
    SDL_NewTimerCallback callback;
};

// What SDL_CreateThread does: nothing, the thread's work before it returns, what it does elsewhere.
enum class threads_t { none, atonce, real };

struct services_s {
    bool audio = true;             // Mix_OpenAudio succeeds
    bool song = true;              // Mix_LoadMUS succeeds
    bool bus = false;              // dbus_bus_get succeeds
    bool message = true;           // a D-Bus message can be made
    bool send = true;              // a D-Bus message can be sent
    long long loadtime = 0;        // microseconds that Mix_LoadMUS takes on the port's clock
    long long playtime = 0;        // that Mix_PlayMusic takes
    long long loadedat = 0;        // the port's clock behind Mix_LoadMUS
    double position = -1.0;        // of Mix_SetMusicPosition
    Uint8 mousebuttons = 0;        // SDL_GetMouseState
    unsigned long long delays = 0; // calls that would have slept
    std::vector<timer_s> timers;
    threads_t threads = threads_t::real; // SDL's own, too
};
extern services_s services;

// The loop service: ends each frame of the director's timeline. Events to the hooks, present, hold
// to at least 20 ms, clock, timed jobs, acknowledgement of the sync events.
#pragma once

#include "main/clock.h"

#include <SDL.h>

extern bool done_hint; // set by Escape or a quit event; nothing here acts on it

// Presented frames and logic ticks since the last rate report; the timer thread zeroes them without
// a lock, and a lost count is accepted.
extern volatile int framecounter;
extern volatile int framecounter_logic;

extern float screenmode_changetime; // timeval when a resize is reported settled
extern bool screenmode_needschange; // a resize is pending

using event_callback_t = void (*)(SDL_Event*);
constexpr int maxeventcallbacks = 10;
extern event_callback_t event_callbacks[maxeventcallbacks];
extern int cb_count;

// The time of day.
void getvxqtime(vxqtime_t* t);

// Makes now the zero of demo time and the start of the first frame.
void time_init();

// Adds a hook that system_crap calls with every event. At most 10; more are ignored.
void set_event_callback(event_callback_t cb);

// Ends a frame.
void system_crap();

// Plays on unseen up to `beat`: from the next frame on each is one tick long and neither drawn into
// the window nor presented, and eachframe is called after it. Then the clock goes on with the time
// of day from where it stands, and there is called. A beat that is past is reached by the next
// frame.
void loop_playunseen(float beat, void (*eachframe)(), void (*there)());

// From now on the loop service knows who asked to leave before anybody looked at events. Call once
// after SDL has started.
void remember_leaving();

// Between two loads: drops pending events and presents. Leaves the show where somebody asked for
// that since remember_leaving.
void system_crap_pre();

// The timed jobs of a frame's end, as system_crap does them.
void sync_dispatcher();

constexpr Uint32 fpsperiod = 2000; // milliseconds between two rate reports

// SDL timer callback, every fpsperiod: prints the rates and zeroes the counters.
Uint32 fps_tick(Uint32 interval, void* param);

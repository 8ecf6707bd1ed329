// The frame clock and the loop service. The one place that reads the time, and the one place where
// seconds meet beats.
//
// The director draws a frame and ends it with system_crap, which shows it, holds it to at least 20
// ms and recomputes the clock globals below. Effects step their motion frameskip times a frame.
#pragma once

#include "port.h"

#include <SDL.h>

extern float timeval;       // seconds since the clock's start, plus timeval_skip
extern float beatgrid;      // beats
extern int frameskip;       // 20 ms logic ticks that the last frame covered; 0 before the first
extern int mouserull[2];    // wheel clicks of the frame: up (button 4), down (button 5)
extern bool done_hint;      // set by Escape or a quit event; nothing here acts on it
extern float frametime;     // seconds from the start to the end of the last frame
extern float frameskiptime; // seconds of logic ticks owed, in (-0.02, 0] after each frame

// Presented frames and logic ticks since the last rate report; the timer thread zeroes them without
// a lock, and a lost count is accepted.
extern volatile int framecounter;
extern volatile int framecounter_logic;

// Calibration of the beat grid: seconds of beat 0, seconds of beat beat_lastnum.
extern float beat_first;
extern float beat_last;
extern float beat_lastnum;

extern vxqtime_t timestart;                       // demo time zero
extern vxqtime_t framestart, framedone, frameend; // of the current frame
extern float screenmode_changetime;               // timeval when a resize is reported settled
extern bool screenmode_needschange;               // a resize is pending

using event_callback_t = void (*)(SDL_Event*);
constexpr int maxeventcallbacks = 10;
extern event_callback_t event_callbacks[maxeventcallbacks];
extern int cb_count;

// Makes now the zero of demo time and the start of the first frame.
void time_init();

// The time of day.
void getvxqtime(vxqtime_t* t);

// result = a - b, with microseconds in 0 .. 999999.
void vxqtimersub(const vxqtime_t* a, const vxqtime_t* b, vxqtime_t* result);

// Seconds of demo time t in beats.
float beatgrid_calc(float t);

// Demo time in seconds of a beat: the way back from beatgrid_calc.
float beatgrid_seconds(float beats);

// Adds a hook that system_crap calls with every event. At most 10; more are ignored.
void set_event_callback(event_callback_t cb);

// Ends a frame: events to the hooks, present, frame hold, clock, timed jobs, sync_ack.
void system_crap();

// Between two loads: drops pending events and presents.
void system_crap_pre();

// The timed jobs of a frame's end, as system_crap does them.
void sync_dispatcher();

// SDL timer callback, every 2000 ms: prints the rates and zeroes the counters.
Uint32 fps_tick(Uint32 interval, void* param);

// The frame clock: time in seconds, in beats and in 20 ms logic ticks. The one place where seconds
// meet beats. Knows neither SDL nor the port; the loop service (loop.h) reads the time and moves
// the clock at the end of each frame, and effects step their motion frameskip times a frame.
#pragma once

#include <sys/time.h>

// Wall time, whole seconds and microseconds, both signed.
using vxqtime_t = struct timeval;

extern float timeval;       // seconds since the clock's start, plus timeval_skip
extern float timeval_skip;  // seconds added to the demo clock; start position of the music
extern float beatgrid;      // beats
extern int frameskip;       // 20 ms logic ticks that the last frame covered; 0 before the first
extern float frametime;     // seconds from the start to the end of the last frame
extern float frameskiptime; // seconds of logic ticks owed, in (-0.02, 0] after each frame
extern int mouserull[2];    // wheel clicks of the frame: up (button 4), down (button 5)

// Calibration of the beat grid: seconds of beat 0, seconds of beat beat_lastnum.
extern float beat_first;
extern float beat_last;
extern float beat_lastnum;

extern vxqtime_t timestart;                       // demo time zero
extern vxqtime_t framestart, framedone, frameend; // of the current frame

// result = a - b, with microseconds in 0 .. 999999.
void vxqtimersub(const vxqtime_t* a, const vxqtime_t* b, vxqtime_t* result);

// Seconds of demo time t in beats.
float beatgrid_calc(float t);

// Demo time in seconds of a beat: the way back from beatgrid_calc.
float beatgrid_seconds(float beats);

// The time of day can be set in mid-show, and it goes on while the machine sleeps; the song knows
// neither. So a second clock watches over it: `awake` are the microseconds of one that nobody sets
// and that rests as the machine does.

// The frame starts, or has just ended and the next one starts, at `awake`.
void clock_startframe(long long awake);

// Whether the time of day at frameend, read just before `awake`, and the second clock differ by
// more than a second over how long the frame has lasted.
bool clock_wasset(long long awake);

// Moves zero and the start of the frame so that it lasts as long as the machine was awake. Returns
// the seconds that zero moved.
double clock_follow(long long awake);

// Sets frametime to what lies between framestart and frameend.
void clock_measure();

// The same for a frame of one logic tick, whatever the time is.
void clock_tick();

// Starts the frame over at `now` and `awake`; demo time goes on from where it stands.
void clock_rejoin(const vxqtime_t& now, long long awake);

// Ends the frame that was measured: counts its ticks, starts the next frame at frameend, and sets
// timeval and beatgrid to it.
void clock_advance();

// What a program without a window may ask of its port beyond port.h: recorder, picture tests,
// benchmarks. Call the setters before the show starts; onpresent at any time.
#pragma once

#include <functional>

// Size of the picture in pixels (854 x 480 unless set).
void offscreen_setsize(int width, int height);

// The clock's step for each presented frame, as the fraction numerator / denominator of a second
// (1 / 50 unless set). Times are rounded to whole microseconds from the exact product, so they
// never drift.
void offscreen_setstep(long long numerator, long long denominator);

// The picture that stands for the captured desktop (an image file, scaled to nothing: its top left
// 854 x 480 are taken). Unless set there is none and the capture is black.
void offscreen_setdesktop(const char* image);

// Called at each present, when the frame is complete and before the clock moves on.
void offscreen_onpresent(std::function<void()> hook);

// While the picture is unseen, what goes to framebuffer 0 is not drawn (GL refuses it) and what it
// held is undefined; render targets and all else go on. Call from the hook above. Returns false,
// and nothing changes, where the driver cannot do without a surface.
bool offscreen_setseen(bool seen);

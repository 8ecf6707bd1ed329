// The one way of making a frame without a screen: plays the show on the offscreen port, as fast as
// the machine goes, and hands out every frame when it is complete. The recorder, the picture tests
// and the benchmarks all make their frames here.
//
// Order of use: playback_load once, then playback_run once.
#pragma once

#include "framesize.h"
#include "moment.h"
#include "rehearsal.h"

#include <functional>
#include <string>

struct playback_s {
    int width = frame_w; // pixels
    int height = frame_h;
    long long step_numerator = 1; // seconds a frame, as a fraction
    long long step_denominator = 50;
    std::string desktop = "gfx/harmattan-home.png"; // stands for the captured desktop
    rehearsal_s rehearsal;                          // one effect alone; none named: the show
    moment_s start;                                 // where the effect's clock starts
};

// Starts SDL and GL and loads the whole show. What the show itself does on a failure happens here
// too: a line on standard error and the end of the process. The effect and its knobs must exist.
void playback_load(const playback_s& playback);

// Called when a frame is complete: the framebuffer holds it, and timeval and beatgrid are the times
// that it was drawn for. Returns whether to go on.
using onframe_t = std::function<bool()>;

// While on, the window's picture is not drawn, all else goes on as in full play, render targets
// too: for getting to a moment fast. Call from onframe; it holds from the next frame on. What the
// window held is lost.
void playback_skim(bool on);

// Pictures are drawn again this long before one that is wanted: it may build on those before it.
constexpr float wakeup_seconds = 0.2f;

// Plays the show, or the one effect that playback_load was told, until onframe returns false. An
// effect alone draws on a cleared target with the depth test on, its knobs set anew for every
// frame.
void playback_run(const onframe_t& onframe);

// The one way of making a frame without a screen: plays the show on the offscreen port, as fast as
// the machine goes, and hands out every frame when it is complete. The recorder, the picture tests
// and the benchmarks all make their frames here.
//
// Order of use: playback_load once, then one playback_show or playback_effect.
#pragma once

#include <functional>
#include <string>

class demoeffect_c;

struct playback_s {
    int width = 854; // pixels
    int height = 480;
    long long step_numerator = 1; // seconds a frame, as a fraction
    long long step_denominator = 50;
    std::string desktop = "gfx/harmattan-home.png"; // stands for the captured desktop
    double start_seconds = 0.0;                     // where the clock starts ("--skip")
};

// Starts SDL and GL and loads the whole show. What the show itself does on a failure happens here
// too: a line on standard error and the end of the process.
void playback_load(const playback_s& playback);

// Called when a frame is complete: the framebuffer holds it, and timeval and beatgrid are the times
// that it was drawn for. Returns whether to go on.
using onframe_t = std::function<bool()>;

// While on, the window's picture is not drawn, all else goes on as in full play: for getting to a
// moment fast. Call from onframe; it holds from the next frame on.
void playback_skim(bool on);

// Plays the show from its start until onframe returns false.
void playback_show(const onframe_t& onframe);

// Plays one effect alone, on a cleared target with the depth test on, until onframe returns false.
void playback_effect(demoeffect_c* effect, const onframe_t& onframe);

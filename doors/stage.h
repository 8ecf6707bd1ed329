// How the launcher puts the show on, beyond what the show's own options know.
#pragma once

#include "moment.h"

#include <optional>

struct stage_s {
    int width = 0; // of a window, pixels; 0 is the full screen
    int height = 0;
    int monitor = 0;    // full screen on this one, from 1; 0 is the pointer's
    int volume = 100;   // percent
    bool trial = false; // says after three seconds how many frames a second it drew, and ends
    std::optional<moment_s> from; // played up to unseen
    int terminal = -1;            // descriptor of what is said to the viewer
    bool loop = false;            // the show begins again when the song has rung out
};

// Plays the show, in a process of its own. Does not return.
void stage_play(const stage_s& stage, int argc, char** argv);

// Whether the show ends to begin again.
bool stage_again();

// The show as a video with sound and chapters, through ffmpeg.
#pragma once

#include "moment.h"
#include "playback.h"

#include <optional>
#include <string>

struct movie_s {
    std::string filename;
    moment_s from;                 // the first frame that has reached it
    std::optional<moment_s> to;    // up to the first frame that has reached it; else the song's end
    long long rate_numerator = 50; // frames a second, as a fraction
    long long rate_denominator = 1;
    int blur = 1;     // sub-frames averaged into a frame, 1 to 4
    int quality = 18; // of x264, 0 lossless to 51
};

// Records the movie; playback's step is set to the movie's sub-frame rate. Progress and errors go
// to the descriptor `report`. Returns the process's exit status: 0 for a complete file, also of a
// recording that Ctrl-C ended early; on failure no file of that name is left behind.
int movie_record(const movie_s& movie, playback_s playback, int report);

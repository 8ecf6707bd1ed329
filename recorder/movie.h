// The show as a video with sound and chapters, through ffmpeg.
#pragma once

#include "encoder.h"
#include "moment.h"
#include "playback.h"

#include <string>

struct movie_s {
    std::string filename;
    moment_s from; // the first frame that has reached it
    moment_s to;   // up to the first frame that has reached it
    format_s format;
    int blur = 1;     // sub-frames averaged into a frame, 1 to 4
    int parallel = 1; // processes that draw at once
};

// The first frame at or after a moment, counted from the start of the show; of an effect alone,
// from where its clock starts.
long long movie_framenumber(const format_s& format, const moment_s& moment);

// Records the movie in processes of their own; the size is playback's, and its step is set to the
// movie's sub-frame rate. Progress and errors go to standard error; the show's own lines, unless
// `verbose`, to nobody. Returns the exit status: 0 for a whole movie. Otherwise a file of that name
// stays what it was, and what was recorded is kept beside it.
int movie_record(const movie_s& movie, const playback_s& playback, bool verbose);

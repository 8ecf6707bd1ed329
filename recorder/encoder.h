// A movie's stretches, each a file of its own that ffmpeg encodes from raw frames, and the movie
// that they make with the song.
#pragma once

#include "process.h"

#include <string>
#include <vector>

// What all frames of a movie have in common.
struct format_s {
    int width = 0; // pixels
    int height = 0;
    long long rate_numerator = 50; // frames a second, as a fraction
    long long rate_denominator = 1;
    int quality = 17; // of x264, 0 lossless to 51
};

struct chapter_s {
    const char* name;
    long long frame; // its first
};

// Starts to encode a stretch, from bytes R, G, B, unused, top row first. Returns false when ffmpeg
// cannot be started.
bool encoder_start(process_c* encoder, const format_s& format, const std::string& target);

// Whether movies are written to files of that name: by its ending, .mp4, .m4v, .mov or .mkv.
bool encoder_knows(const std::string& movie);

struct assembly_s {
    format_s format;
    std::vector<std::string> stretches; // files, in their order
    long long stretchframes = 0;        // of each, but perhaps the last
    long long frames = 0;               // of all
    std::vector<chapter_s> chapters;
    std::string song;         // empty: none
    long long songsample = 0; // at 44,100 a second, where the song goes with the first frame
    std::string folder;       // for what is needed meanwhile
};

// Makes one file of them, as the ending of its name says. On failure returns false and says why on
// the descriptor `report`.
bool encoder_assemble(const assembly_s& assembly, const std::string& target, int report);

// The recorder's command line.
#pragma once

#include "moment.h"
#include "movie.h"
#include "playback.h"

#include <string>
#include <vector>

struct arguments_s {
    playback_s playback;
    movie_s movie;      // unless one of the next two is named
    std::string stills; // folder
    std::string sheet;  // file
    std::vector<moment_s> moments;
    bool verbose = false;
};

// Reads and checks everything that can be known before the show is loaded; what asks only for words
// is answered. On bad arguments says so and ends with status 2, after the words with 0.
arguments_s arguments_read(int argc, char** argv);

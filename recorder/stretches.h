// The frames of a movie, drawn and encoded in stretches of ten seconds, a file each. One process
// draws them all, or several draw every n-th and play the others unseen: the encoder begins anew
// with each stretch, so that the files are the same either way.
#pragma once

#include "movie.h"

#include <string>

// The part of one process in a recording.
struct share_s {
    int number = 0; // of `shares`, from 0
    int shares = 1;
    std::string folder; // for the files
    int news = -1;      // descriptor to write news_s to
    int report = -1;    // descriptor for complaints
};

// Sent for every frame that went into its file.
struct news_s {
    long long frame = 0;     // of the movie
    long long showframe = 0; // of the show
    int scene = -1;          // in demo_scenes; -1: an effect alone
    bool written = true;     // false: its stretch is lost
};

// Frames of a stretch.
long long stretches_frames(const format_s& format);

// Name of the file that holds a frame.
std::string stretches_file(const std::string& folder, const format_s& format, long long frame);

// Plays the show and records this process's share of it. Ends where the movie ends, or early with
// what there is when interrupt_signal says so. Returns whether all was written.
bool stretches_record(const movie_s& movie, playback_s playback, const share_s& share);

// Image files from a folder, decoded ahead of their use on a thread of its own while the GL thread
// compiles and uploads: nearly half of loading is decoding. Nothing depends on it: what has not
// been begun when it is asked for is decoded then and there, by who asks.
#pragma once

#include <SDL.h>

// Starts decoding all PNG and JPEG files of a folder, the largest first. Called once, from the GL
// thread, before it loads. Without a thread (or such a folder) nothing is decoded ahead.
void decoder_begin(const char* folder);

// The image file fn as IMG_Load returns it, which the caller frees: null if it cannot be decoded.
// Waits if it is just being decoded. Each file is decoded ahead for whoever asks first.
SDL_Surface* decoder_load(const char* fn);

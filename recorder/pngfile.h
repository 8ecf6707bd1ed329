// Frames as PNG files.
#pragma once

#include <SDL.h>
#include <string>

// Writes a surface of the frame-grab format (bytes R, G, B, unused; top row first). Returns false
// when the file cannot be written.
bool png_write(const std::string& filename, const SDL_Surface* surface);

// SDL_image as far as the show calls it: PNG and JPEG.
#pragma once

#include <SDL.h>

SDL_Surface* IMG_Load(const char* file);

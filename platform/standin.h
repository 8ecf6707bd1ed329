// A picture that stands for the desktop where there is none to be had.
#pragma once

#include <SDL.h>

// Loads an image file as port_grabdesktop hands desktops out: without blending. Null when there is
// none. It is never freed.
SDL_Surface* standin_load(const char* image);

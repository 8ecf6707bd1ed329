// The desktop captured before the show's window exists, and frame grabs of what was rendered.
#pragma once

#include <SDL.h>

// The desktop, 854 x 480, 32 bits per pixel, bytes R, G, B, unused, bottom row first: upright and
// in its own colours as a GL texture. Black where there was none to capture.
extern SDL_Surface* screenshot_surface;

// Captures the top left 854 x 480 pixels of the desktop into screenshot_surface. Silent when there
// is no display or no image.
void take_screenshot();

// Reads the current framebuffer (video_w x video_h) into a new surface, top row first, bytes R, G,
// B, unused. The caller frees it.
SDL_Surface* get_screenshot();

// Writes the current framebuffer as a BMP file. A file that cannot be written is not reported.
void save_screenshot(char* filename);

// Collects the current framebuffer as sub-frame `frame` of groups of framecount (1 to 4); on the
// last of a group returns their average, which the caller frees, and null before. Call with
// consecutive frames: a slot that is filled twice leaks, and a group that was begun in its middle
// gives null. So do other counts and negative frames.
SDL_Surface* blurredframe(int frame, int framecount);

// The same, with the average, if there is one, written as "ss%08i.bmp", numbered frame /
// framecount, into the working directory.
void screenshot_blur(int frame, int framecount);

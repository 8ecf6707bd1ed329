// The show's one window with its GLES context, and what the window manager is told about it.
#pragma once

#include <SDL.h>

extern SDL_Surface* screen; // the video surface
extern int video_w;         // real screen size, pixels
extern int video_h;

// Opens the full-screen window with config_stencilsize stencil bits, reports what it got on
// standard error (the GL strings on standard output) and sets a viewport over the full width, its
// height by the aspect of config_width x config_height, centred. Returns 0; a window that cannot be
// had aborts.
int init_gl();

// The window has another size now: the viewport follows. Between two frames.
void video_resized(int width, int height);

// While skimming, the window's picture is not drawn, all else goes on as in full play: for getting
// to a moment fast. Between two frames.
void video_skim(bool on);

// Reports the X window numbers; nothing where there are none.
void x11info();

// Sets the window's type: dialog for stage 0 (the phone's swipe gesture then cannot leave the
// show), normal for any other. Silent where there is no X window.
void compositor_fix(int stage);

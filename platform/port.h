// The seam to the machine: all that differs between a phone whose SDL opens GLES windows, a desktop
// of today, and no screen at all. The engine calls these functions and SDL, and nothing below them.
//
// One port is linked into each program:
//   x11/        SDL 1.2 (or its compatibility library) plus EGL in a child window
//   offscreen/  EGL without a window; time moves one fixed step a presented frame
//   phone/      straight through to an SDL 1.2 that opens GLES windows itself, on X11
//   web/        WebGL on a page's canvas; the clock is the song's
//
// Order of use: port_beforesdl, SDL_Init, port_setattribute as often as needed, port_setvideomode
// once, then the rest. port_grabdesktop may be called before all of them. Main thread only.
#pragma once

#include <SDL.h>
#include <sys/time.h>

// GL attributes by the numbers of the phone's SDL, which desktop SDLs do not all know.
enum port_glattr_t {
    PORT_GL_DOUBLEBUFFER = 5,
    PORT_GL_DEPTH_SIZE = 6,
    PORT_GL_STENCIL_SIZE = 7,
    PORT_GL_RETAINED_BACKING = 16,
    PORT_GL_CONTEXT_MAJOR_VERSION = 17,
    PORT_GL_CONTEXT_MINOR_VERSION = 18,
};

// The phone SDL's window flag for OpenGL ES; full screen is SDL's own flag.
constexpr Uint32 PORT_OPENGLES = 0x40;

// Prepares the environment that SDL reads when it starts (which video driver to use).
void port_beforesdl();

// Asks for a GL attribute of the window to come. Returns 0, or -1 with SDL's error set for an
// attribute that the port does not know.
int port_setattribute(port_glattr_t attribute, int value);

// Opens the window (width, height in pixels; 0 x 0 takes the desktop's size), makes its GLES 2.0
// context current and returns SDL's surface, whose w and h are the real size. Returns null with
// SDL's error set when there is no such window. On x11 and offscreen the surface is never drawn
// through and SDL's own flip and update must not be called.
SDL_Surface* port_setvideomode(int width, int height, int depth, Uint32 flags);

// What the context really has. Returns 0 and stores the value, or -1 with SDL's error set.
int port_getattribute(port_glattr_t attribute, int* value);

// Numbers of SDL's windows: its own, the full-screen one, the one that the window manager knows.
// Zero for one that this SDL does not have.
struct port_windownumbers_s {
    unsigned long window, fswindow, wmwindow;
};

// Returns false where windows have no numbers.
bool port_windownumbers(port_windownumbers_s* numbers);

// What the window manager is told that the window is.
enum port_windowtype_t { PORT_WINDOW_DIALOG, PORT_WINDOW_NORMAL };

// Returns false where there is no window manager's window to tell of.
bool port_setwindowtype(port_windowtype_t type);

// Shows the frame that was drawn.
void port_present();

// The time of day; offscreen, presented frames times the step; on a page, the song as it is heard.
void port_timeofday(struct timeval* now);

// Microseconds since some moment, by a clock that nobody sets and that rests while the machine
// sleeps, as the song does. Offscreen, it goes with the time of day.
long long port_awake();

// Microseconds that the machine has slept since some moment; 0 where that is not known.
long long port_slept();

// The shortest time in seconds that a frame is held: 0.02 on a screen, 0 where port_present returns
// when the next frame is due.
float port_framehold();

// The desktop, top row first, as a surface that copies as it is (no alpha blending) and that the
// caller never frees (it may wrap foreign pixels), width x height from the top left corner. Null
// when there is none to be had.
SDL_Surface* port_grabdesktop(int width, int height);

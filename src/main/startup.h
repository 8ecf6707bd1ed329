// Start-up, command line and music. Also the runtime configuration: plain globals that the
// director's hooks and the command line write before the show, and everything else reads.
#pragma once

#include <SDL.h>
#include <SDL_mixer.h>

extern int config_width;       // pixels; with config_height, the aspect of the viewport
extern int config_height;      // pixels
extern int config_videoflags;  // "--fs" sets SDL's full-screen bit; the video mode does not read it
extern int config_otherflags;  // bit 0: play the music
extern int config_stencilsize; // bits asked for
extern float timeval_skip;     // seconds added to the demo clock; start position of the music
extern bool debugmode;         // set by "--skip"
extern const char* demoname;   // window caption
extern const char* song_file;  // null: no music at all
extern Mix_Music* music;       // null when it could not be loaded
extern Uint8* keystate;        // SDL's keyboard state, by key symbol

// Reads the options of the command line into the configuration and reports each on standard error.
// What is not an option is ignored.
void read_arguments(int argc, char** argv);

// Opens the audio device and loads song_file, if one is set. Ends the process with status 1 and a
// line on standard output when there is no audio device; a song that cannot be loaded is reported
// on standard error.
void startmusic();

// Plays the music once, if it is to be played, from timeval_skip seconds on.
void realstartmusic();

// Stops and frees the music. For directors; nothing here calls it.
void stopmusic();

// Start-up in its order, up to the moment that the clock and the music start: window, captured
// desktop, all loading, song.
void load_show(int argc, char** argv);

// The whole show: start-up, then the director's timeline, which does not return. The result is
// the exit status.
int start_show(int argc, char** argv);

// Closes SDL and ends the process with status 1: how a viewer leaves. A device that hangs delays
// that by a few seconds at most.
[[noreturn]] void leave_show();

// The runtime configuration, the command line and the music. The configuration is plain globals
// that the director's hooks and the command line write before the show, and everything else reads.
#pragma once

#include <SDL.h>
#include <SDL_mixer.h>

extern int config_width;       // pixels; with config_height, the aspect of the viewport
extern int config_height;      // pixels
extern int config_videoflags;  // "--fs" sets SDL's full-screen bit; the video mode does not read it
extern int config_otherflags;  // bit 0: play the music
extern int config_stencilsize; // bits asked for
extern bool debugmode;         // set by "--skip"
extern const char* demoname;   // window caption
extern const char* song_file;  // null: no music at all
extern Mix_Music* music;       // null when it could not be loaded
extern Uint8* keystate;        // SDL's keyboard state, by key symbol

// How the sound device is opened.
constexpr int soundrate = 44100; // Hz
constexpr Uint16 soundformat = AUDIO_S16LSB;
constexpr int soundchannels = 2;
constexpr int soundchunk = 4096; // samples

// Reads the options of the command line into the configuration and reports each on standard error.
// What is not an option is ignored.
void read_arguments(int argc, char** argv);

// Opens the audio device and loads song_file, if one is set. Ends the process with status 1 and a
// line on standard output when there is no audio device; a song that cannot be loaded is reported
// on standard error.
void startmusic();

// Plays the music once, if it is to be played, from timeval_skip seconds on.
void realstartmusic();

// The same from the clock's time on, for a clock that has moved while the music did not play.
void rejoinmusic();

// Sets the song to the clock again after the process was stopped, which stopped the sound but not
// the clock. Called every frame; does nothing in all others.
void followstop();

// Stops and frees the music. For directors; nothing here calls it.
void stopmusic();

// SDL_mixer as far as the show calls it: one song.
#pragma once

#include <SDL.h>

struct Mix_Music;

constexpr Uint16 AUDIO_S16LSB = 0x8010;

int Mix_OpenAudio(int frequency, Uint16 format, int channels, int chunk);
Mix_Music* Mix_LoadMUS(const char* file);
int Mix_PlayMusic(Mix_Music* music, int loops);
int Mix_SetMusicPosition(double seconds);
int Mix_HaltMusic();
void Mix_FreeMusic(Mix_Music* music);

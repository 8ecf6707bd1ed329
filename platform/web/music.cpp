// The music. The page fetches, decodes and plays it; who loads it here waits for that.
#include "SDL_mixer.h"

#include "SDL.h"

#include <emscripten.h>

struct Mix_Music {};

namespace {

EM_ASYNC_JS(int, awaitsong, (), { return (await Module.host.song()) ? 1 : 0; });

EM_JS(void, play, (double seconds), { Module.host.play(seconds); });

EM_JS(void, halt, (), { Module.host.halt(); });

Mix_Music song;
bool playing = false;

} // namespace

int Mix_OpenAudio(int, Uint16, int, int) {
    return 0;
}

Mix_Music* Mix_LoadMUS(const char* file) {
    if (awaitsong())
        return &song;
    SDL_SetError("no sound for %s", file);
    return nullptr;
}

int Mix_PlayMusic(Mix_Music* music, int) {
    playing = music;
    if (!playing)
        return -1;
    play(0.0);
    return 0;
}

int Mix_SetMusicPosition(double seconds) {
    if (playing && seconds > 0.0)
        play(seconds);
    return 0;
}

int Mix_HaltMusic() {
    playing = false;
    halt();
    return 0;
}

void Mix_FreeMusic(Mix_Music*) {}

#include "main/startup.h"

#include "framesize.h"
#include "main/clock.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

int config_width = frame_w;
int config_height = frame_h;
int config_videoflags = 0;
int config_otherflags = 1;
int config_stencilsize = 0;
bool debugmode = false;
const char* demoname = nullptr;
const char* song_file = nullptr;
Mix_Music* music = nullptr;
Uint8* keystate = nullptr;

namespace {

constexpr int playmusic = 1; // bit of config_otherflags

volatile sig_atomic_t wasstopped = 0;

void configuresize(const char* message, int width, int height) {
    fprintf(stderr, "%s", message);
    config_width = width;
    config_height = height;
}

void readskip(const char* seconds) {
    timeval_skip = static_cast<float>(atof(seconds));
    fprintf(stderr, "skipping time to %.2f\n", double(timeval_skip));
}

void readoption(const char* option) {
    if (strcmp(option, "--fs") == 0) {
        fprintf(stderr, "fs!\n");
        config_videoflags |= static_cast<int>(SDL_FULLSCREEN);
    }
    if (strcmp(option, "--fullhd") == 0)
        configuresize("fullhd!\n", 1920, 1080);
    if (strcmp(option, "--720p") == 0)
        configuresize("half-hd!\n", 1280, 720);
    if (strcmp(option, "--nomusic") == 0) {
        fprintf(stderr, "no music!\n");
        config_otherflags &= ~playmusic;
    }
}

void playfrom(float seconds) {
    if (config_otherflags & playmusic)
        Mix_PlayMusic(music, 0);
    Mix_SetMusicPosition(static_cast<double>(seconds));
}

} // namespace

void read_arguments(int argc, char** argv) {
    bool skipnext = false;
    for (int i = 1; i < argc; ++i) {
        if (skipnext) {
            readskip(argv[i]);
            skipnext = false;
        } else if (strcmp(argv[i], "--skip") == 0) {
            debugmode = true;
            skipnext = true;
        } else {
            readoption(argv[i]);
        }
    }
}

void startmusic() {
    if (!song_file)
        return;
    fprintf(stderr, "initting music\n");
    if (Mix_OpenAudio(soundrate, soundformat, soundchannels, soundchunk) != 0) {
        printf("Error initializing SDL_mixer: %s\n", SDL_GetError());
        exit(1);
    }
    music = Mix_LoadMUS(song_file);
    if (!music)
        fprintf(stderr, "guess what: %s\n", SDL_GetError());
}

void realstartmusic() {
    signal(SIGCONT, [](int) { wasstopped = 1; });
    playfrom(timeval_skip);
}

void rejoinmusic() {
    playfrom(timeval);
}

void followstop() {
    if (!wasstopped)
        return;
    wasstopped = 0;
    Mix_SetMusicPosition(static_cast<double>(timeval));
}

void stopmusic() {
    Mix_HaltMusic();
    Mix_FreeMusic(music);
}

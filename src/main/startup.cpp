#include "main/startup.h"

#include "demo.h"
#include "main/capture.h"
#include "main/clock.h"
#include "main/video.h"
#include "port.h"
#include "screenshot.h"
#include "wake.h"

#include <cassert>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

int config_width = 854;
int config_height = 480;
int config_videoflags = 0;
int config_otherflags = 1;
int config_stencilsize = 0;
float timeval_skip = 0.0f;
bool debugmode = false;
const char* demoname = nullptr;
const char* song_file = nullptr;
Mix_Music* music = nullptr;
Uint8* keystate = nullptr;

namespace {

constexpr int playmusic = 1;     // bit of config_otherflags
constexpr unsigned patience = 3; // seconds for SDL to close

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

// SDL waits for its audio thread, and that, for ever, for a sound device that hangs.
void endsoon() {
    signal(SIGALRM, [](int) { _exit(1); });
    alarm(patience);
}

// However the process ends, the threads of sound and timers must not outlive the libraries that
// they call.
void stopthreads() {
    endsoon();
    SDL_QuitSubSystem(SDL_INIT_AUDIO | SDL_INIT_TIMER);
    alarm(0); // what else there is to end may take its time
}

void startsdl() {
    port_beforesdl();
    int res = SDL_Init(SDL_INIT_TIMER | SDL_INIT_AUDIO | SDL_INIT_VIDEO);
    if (res != 0)
        fprintf(stderr, "no SDL: %s\n", SDL_GetError());
    assert(res == 0);
    atexit(stopthreads);
}

// The loading time looks like a frozen desktop.
void showcapture() {
    screenshot->init();
    screenshot->draw();
    port_present();
}

void setcaption() {
    if (!demoname)
        demoname = "VXQ Demobase";
    SDL_WM_SetCaption(demoname, demoname);
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
    if (Mix_OpenAudio(44100, AUDIO_S16LSB, 2, 4096) != 0) {
        printf("Error initializing SDL_mixer: %s\n", SDL_GetError());
        exit(1);
    }
    music = Mix_LoadMUS(song_file);
    if (!music)
        fprintf(stderr, "guess what: %s\n", SDL_GetError());
}

void realstartmusic() {
    if (config_otherflags & playmusic)
        Mix_PlayMusic(music, 0);
    Mix_SetMusicPosition(static_cast<double>(timeval_skip));
}

void stopmusic() {
    Mix_HaltMusic();
    Mix_FreeMusic(music);
}

void load_show(int argc, char** argv) {
    demo_config();
    read_arguments(argc, argv);
    take_screenshot();
    startsdl();
    init_gl();
    keystate = SDL_GetKeyState(nullptr);
    showcapture();
    pysyhereilla();
    time_init();
    SDL_AddTimer(2000, fps_tick, nullptr);
    demo_init();
    demo_initgl();
    setcaption();
    startmusic();
    time_init();
    realstartmusic();
}

int start_show(int argc, char** argv) {
    load_show(argc, argv);
    demo_run();
    SDL_Quit();
    return 0;
}

void leave_show() {
    endsoon();
    SDL_Quit();
    exit(1);
}

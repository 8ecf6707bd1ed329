// The show on its display, with a line of tab-separated values for each picture that it presented:
//   when, in seconds of the monotonic clock; when its frame began, in seconds since the clock's
//   zero; demo time; beat; scene, empty while loading
// and one for each file that it loaded: "file", name. And what the show is measured beside: a
// window with nothing in it, one with the show's first frame, and the bare decoding of the same
// files.
#include "demo.h"
#include "framesize.h"
#include "main/capture.h"
#include "main/loop.h"
#include "main/show.h"
#include "main/startup.h"
#include "main/video.h"
#include "port.h"
#include "screenshot.h"
#include "x11.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <GLES2/gl2.h>
#include <iterator>
#include <mutex>
#include <SDL_image.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

constexpr const char* usage = R"(usage: tarvisk-live COMMAND

  show BEAT [OPTION...]     the show with its options, up to a beat
  window FRAMES             frames of 20 ms with nothing in them
  picture FRAMES            frames of 20 ms with the show's first one in them, without a desktop
  decode THREADS FILE...    how long decoding these takes, in seconds
)";

struct presented_s {
    double at;
    double began;
    float time;
    float beat;
    const char* scene;
};

std::vector<presented_s> presented;
std::vector<std::string> files;

double seconds() {
    return double(port_awake()) * 1e-6;
}

// Neither the song nor SDL is waited for.
[[noreturn]] void finish() {
    for (const presented_s& p : presented)
        printf("%.6f\t%.6f\t%.6f\t%.4f\t%s\n", p.at, p.began, double(p.time), double(p.beat),
               p.scene);
    for (const std::string& file : files)
        printf("file\t%s\n", file.c_str());
    fflush(stdout);
    _exit(0);
}

void note() {
    vxqtime_t began;
    vxqtimersub(&framestart, &timestart, &began);
    presented.push_back({seconds(), double(began.tv_sec) + double(began.tv_usec) * 1e-6, timeval,
                         beatgrid, demo_scene});
}

// ---- the show ----

float lastbeat = 0.0f;

void play(float beat, int argc, char** argv) {
    lastbeat = beat;
    x11_onpresent([] {
        note();
        if (*demo_scene && beatgrid >= lastbeat)
            finish();
    });
    start_show(argc, argv);
}

// ---- a window and hardly anything else ----

// As the show opens its own.
void openwindow() {
    demo_config();
    port_beforesdl();
    SDL_Init(SDL_INIT_TIMER | SDL_INIT_AUDIO | SDL_INIT_VIDEO);
    init_gl();
}

void hold(size_t frames, void (*draw)()) {
    SDL_AddTimer(fpsperiod, fps_tick, nullptr);
    time_init();
    x11_onpresent(note);
    while (presented.size() < frames) {
        draw();
        system_crap();
    }
    finish();
}

void holdnothing(size_t frames) {
    openwindow();
    hold(frames, [] { glClear(GL_COLOR_BUFFER_BIT); });
}

void holdpicture(size_t frames) {
    openwindow();
    screenshot_surface = SDL_CreateRGBSurface(0, frame_w, frame_h, 32, 0xFF, 0xFF00, 0xFF0000, 0);
    screenshot->init();
    hold(frames, [] { screenshot->draw(); });
}

// ---- decoding ----

bool hasending(const std::string& name, const char* ending) {
    const size_t length = strlen(ending);
    return name.size() > length && name.compare(name.size() - length, length, ending) == 0;
}

// All numbers of a mesh.
float readnumbers(const std::string& name) {
    std::ifstream file(name);
    std::string text(std::istreambuf_iterator<char>(file), {});
    float sum = 0.0f;
    for (char* at = text.data(); *at;) {
        char* end;
        sum += strtof(at, &end);
        at = end == at ? at + 1 : end;
    }
    return sum;
}

void decode(const std::string& name) {
    if (hasending(name, ".obj"))
        readnumbers(name);
    else if (hasending(name, ".ogg"))
        Mix_FreeMusic(Mix_LoadMUS(name.c_str()));
    else
        SDL_FreeSurface(IMG_Load(name.c_str()));
}

void decode(int threads, const std::vector<std::string>& names) {
    IMG_Init(IMG_INIT_JPG | IMG_INIT_PNG);
    SDL_Init(SDL_INIT_AUDIO);
    Mix_OpenAudio(soundrate, soundformat, soundchannels, soundchunk);
    const double start = seconds();
    std::atomic<size_t> next = 0;
    std::vector<std::thread> workers;
    for (int i = 0; i < threads; ++i)
        workers.emplace_back([&] {
            for (size_t file; (file = next++) < names.size();)
                decode(names[file]);
        });
    for (std::thread& worker : workers)
        worker.join();
    printf("%.6f\n", seconds() - start);
}

} // namespace

// Takes over the system's: the show and its libraries open what they load by it.
FILE* fopen(const char* name, const char* mode) {
    static const auto original =
        reinterpret_cast<FILE* (*)(const char*, const char*)>(dlsym(RTLD_NEXT, "fopen"));
    static std::mutex noting; // files are decoded by several threads
    const std::lock_guard<std::mutex> lock(noting);
    for (const char* ending : {".png", ".jpg", ".obj", ".ogg"})
        if (hasending(name, ending))
            files.push_back(name);
    return original(name, mode);
}

int main(int argc, char** argv) {
    const std::string command = argc > 2 ? argv[1] : "";
    presented.reserve(100000); // or making room would take time
    if (command == "show")
        play(strtof(argv[2], nullptr), argc - 2, argv + 2);
    else if (command == "window")
        holdnothing(strtoul(argv[2], nullptr, 10));
    else if (command == "picture")
        holdpicture(strtoul(argv[2], nullptr, 10));
    else if (command == "decode")
        decode(atoi(argv[2]), {argv + 3, argv + argc});
    else
        fputs(usage, stderr);
    return command.empty() ? 2 : 0;
}

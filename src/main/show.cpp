#include "main/show.h"

#include "demo.h"
#include "main/capture.h"
#include "main/leave.h"
#include "main/loop.h"
#include "main/startup.h"
#include "main/video.h"
#include "port.h"
#include "screenshot.h"
#include "wake.h"

#include <cassert>
#include <cstdio>

namespace {

void startsdl() {
    port_beforesdl();
    int res = SDL_Init(SDL_INIT_TIMER | SDL_INIT_AUDIO | SDL_INIT_VIDEO);
    if (res != 0)
        fprintf(stderr, "no SDL: %s\n", SDL_GetError());
    assert(res == 0);
    leave_cleanly();
    remember_leaving();
}

// The loading time looks like a frozen desktop.
void showcapture() {
    screenshot->init();
    screenshot->draw();
    port_present();
}

void (*arrived)() = nullptr;

void rejoin() {
    rejoinmusic();
    arrived();
}

void setcaption() {
    if (!demoname)
        demoname = "VXQ Demobase";
    SDL_WM_SetCaption(demoname, demoname);
}

} // namespace

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
    SDL_AddTimer(fpsperiod, fps_tick, nullptr);
    demo_init();
    demo_initgl();
    setcaption();
    startmusic();
    time_init();
    realstartmusic();
}

void show_playunseen(float beat, void (*eachframe)(), void (*there)()) {
    arrived = there;
    Mix_HaltMusic();
    loop_playunseen(beat, eachframe, rejoin);
}

int start_show(int argc, char** argv) {
    load_show(argc, argv);
    demo_run();
    SDL_Quit();
    return 0;
}

#include "main/leave.h"

#include <csignal>
#include <cstdlib>
#include <unistd.h>

bool viewer_left = false;

namespace {

constexpr unsigned patience = 3; // seconds for SDL to close

// SDL waits for its audio thread, and that, for ever, for a sound device that hangs.
void endsoon() {
    struct sigaction end = {};
    end.sa_handler = [](int) { _exit(1); };
    sigaction(SIGALRM, &end, nullptr);
    alarm(patience);
}

void stopthreads() {
    endsoon();
    SDL_QuitSubSystem(SDL_INIT_AUDIO | SDL_INIT_TIMER);
    alarm(0); // what else there is to end may take its time
}

} // namespace

void leave_cleanly() {
    atexit(stopthreads);
}

bool asks_to_leave(const SDL_Event& event) {
    if (event.type == SDL_QUIT)
        return true;
    if (event.type != SDL_KEYDOWN)
        return false;
    // Classic SDL takes the keyboard from the window manager, and Alt+F4 with it.
    const SDL_keysym& key = event.key.keysym;
    return key.sym == SDLK_q || (key.sym == SDLK_F4 && key.mod & KMOD_ALT);
}

void leave_show() {
    viewer_left = true;
    endsoon();
    SDL_Quit();
    exit(1);
}

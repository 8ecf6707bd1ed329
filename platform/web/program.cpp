// The show as the program of a page, and what the page may ask of it, between two frames only.
#include "demo.h"
#include "main/clock.h"
#include "main/show.h"
#include "main/startup.h"
#include "main/video.h"
#include "web.h"

#include <emscripten.h>
#include <emscripten/html5.h>

namespace {

constexpr double longestturn = 100.0; // milliseconds between two turns of the page

void giveturns() {
    static double last = 0.0;
    if (emscripten_get_now() - last < longestturn)
        return;
    web_turn();
    last = emscripten_get_now();
}

void drawagain() {
    web_leaveoutwindow(false);
}

} // namespace

extern "C" {

// The beat of the frame that is drawn.
EMSCRIPTEN_KEEPALIVE float web_beat() {
    return beatgrid;
}

EMSCRIPTEN_KEEPALIVE float web_beatat(float seconds) {
    return beatgrid_calc(seconds);
}

EMSCRIPTEN_KEEPALIVE int web_scenecount() {
    return static_cast<int>(demo_scenes.size());
}

EMSCRIPTEN_KEEPALIVE const char* web_scenename(int number) {
    return demo_scenes[static_cast<size_t>(number)].name;
}

EMSCRIPTEN_KEEPALIVE float web_scenebeat(int number) {
    return demo_scenes[static_cast<size_t>(number)].begins;
}

// Plays up to that beat unseen; the page gets turns meanwhile.
EMSCRIPTEN_KEEPALIVE void web_jump(float beat) {
    web_leaveoutwindow(true);
    show_playunseen(beat, giveturns, drawagain);
}

// The next frame is that many pixels wide.
EMSCRIPTEN_KEEPALIVE void web_resize(int width) {
    const int height = width * config_height / config_width;
    emscripten_set_canvas_element_size("#canvas", width, height);
    video_resized(width, height);
}
}

int main(int argc, char** argv) {
    return start_show(argc, argv);
}

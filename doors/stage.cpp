#include "stage.h"

#include "demo.h"
#include "main/clock.h"
#include "main/leave.h"
#include "main/loop.h"
#include "main/show.h"
#include "main/startup.h"
#include "main/video.h"
#include "port.h"
#include "progress.h"
#include "x11.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <GLES2/gl2.h>
#include <string>

namespace {

// The tail of the last chord has faded, and the last words have gone by.
constexpr float songends = 250.0f; // seconds

stage_s stage;
bool again = false;

// The show opens the sound device at full volume and plays at once. It finds the device open here,
// and opening it a second time keeps the volume.
void setvolume() {
    static bool done = false;
    if (done || stage.volume == 100)
        return;
    done = true;
    if (Mix_OpenAudio(soundrate, soundformat, soundchannels, soundchunk) == 0)
        Mix_VolumeMusic(stage.volume * MIX_MAX_VOLUME / 100);
}

// The show's own viewport would take the shape of the last resize, as its rule is.
void fitpicture() {
    static const float shape = float(config_height) / float(config_width); // as it began
    int width, height;
    if (!stage.width || !x11_fitpicture(&width, &height))
        return;
    video_w = width;
    video_h = height;
    const int h = static_cast<int>(shape * float(width));
    glViewport(0, (height - h) / 2, width, h);
}

// The show itself goes on without a word.
void answerescape() {
    static bool told = false;
    if (!told && done_hint)
        dprintf(stage.terminal, "  Escape does not end the show; q does.\n");
    told = done_hint;
}

void beginagain() {
    again = stage.loop && timeval > songends;
    if (again)
        leave_show();
}

// The first second of a scene is not like the rest: textures are handed to the driver.
void tryout() {
    constexpr float settled = 1.0f, length = 3.0f; // seconds
    static int frames = 0;
    static float begun = 0.0f;
    if (!stage.trial || timeval < timeval_skip + settled)
        return;
    if (frames++ == 0)
        begun = timeval;
    if (timeval < begun + length)
        return;
    fprintf(stderr, "trial: %.1f frames a second\n", (frames - 1) / double(timeval - begun));
    leave_show();
}

// ---- the way to where it begins ----

using wallclock = std::chrono::steady_clock;

struct way_s {
    bool on = false; // what is presented meanwhile is no frame of the show
    long long frames = 0;
    long long done = 0;
    std::optional<progress_c> progress;
    wallclock::time_point drawn;
};
way_s way;

// Fills a row of the window from the left; the show finds its state as it was.
void fillrow(int y, int width, int height, float grey) {
    GLfloat colour[4];
    GLint box[4];
    glGetFloatv(GL_COLOR_CLEAR_VALUE, colour);
    glGetIntegerv(GL_SCISSOR_BOX, box);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, y, width, height);
    glClearColor(grey, grey, grey, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
    glScissor(box[0], box[1], box[2], box[3]);
    glClearColor(colour[0], colour[1], colour[2], colour[3]);
}

// The full screen hides the terminal.
void drawway() {
    constexpr std::chrono::milliseconds period(200);
    constexpr int height = 4; // pixels
    if (wallclock::now() - way.drawn < period)
        return;
    way.drawn = wallclock::now();
    fillrow(0, video_w, video_h, 0.0f);
    const double part = double(way.done) / double(way.frames);
    fillrow(video_h / 2, static_cast<int>(part * video_w), height, 0.5f);
    port_present();
}

void onunseen() {
    glFlush(); // between two presents the driver would queue everything
    way.progress->update(++way.done);
    drawway();
}

void arrive() {
    way.progress->finish(way.done);
    way.on = false;
}

void playto(const moment_s& moment) {
    constexpr double framerate = 50.0; // of what is unseen, a second
    const double seconds = moment_seconds(moment) - double(timeval_skip);
    way.on = true;
    way.frames = std::max(1LL, static_cast<long long>(std::ceil(seconds * framerate)));
    way.progress.emplace(stage.terminal, way.frames);
    const auto value = static_cast<float>(moment.value);
    show_playunseen(moment.unit == moment_s::beats ? value : beatgrid_calc(value), onunseen,
                    arrive);
}

void onpresent() {
    if (way.on)
        return;
    tryout();
    setvolume();
    fitpicture();
    answerescape();
    beginagain();
}

} // namespace

void stage_play(const stage_s& wished, int argc, char** argv) {
    stage = wished;
    if (stage.width)
        x11_setresizable(stage.width, stage.height);
    if (stage.monitor)
        setenv("SDL_VIDEO_FULLSCREEN_HEAD", std::to_string(stage.monitor - 1).c_str(), 1);
    x11_onpresent(onpresent);
    load_show(argc, argv);
    if (stage.from)
        playto(*stage.from);
    demo_run();
}

bool stage_again() {
    return again;
}

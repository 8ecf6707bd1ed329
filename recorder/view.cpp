// tarvisk-view: one effect alone in a window, for who works on it.
#include "framesize.h"
#include "main/loop.h"
#include "main/show.h"
#include "rehearsal.h"
#include "shaderedit.h"
#include "x11.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr const char* usage =
    R"(usage: tarvisk-view EFFECT [--from WHEN] [--knob NAME=N ...] [--size WxH]

Shows one effect alone in a window, from a beat (130), a time (82.5s) or an event (stoptunnel) on.
Start it where the show starts, beside gfx/. tarvisk-record --list names effects
and knobs.

  space       pause and go on
  left right  a beat back, a beat on       up down  eight beats on, eight back
  r           read the shaders of the effect's source file again
  q           quit
)";

rehearsal_s rehearsal;
bool paused = false;
bool reload = false;
float jump = 0.0f; // beats still to move

[[noreturn]] void refuse(const char* what, const char* value) {
    fprintf(stderr, "tarvisk-view: %s: %s\nTry tarvisk-view --help.\n", what, value);
    exit(2);
}

void onkey(SDL_Event* event) {
    if (event->type != SDL_KEYDOWN)
        return;
    switch (event->key.keysym.sym) {
    case SDLK_SPACE:
        paused = !paused;
        break;
    case SDLK_LEFT:
        jump -= 1.0f;
        break;
    case SDLK_RIGHT:
        jump += 1.0f;
        break;
    case SDLK_UP:
        jump += 8.0f;
        break;
    case SDLK_DOWN:
        jump -= 8.0f;
        break;
    case SDLK_r:
        reload = true;
        break;
    default:
        break;
    }
}

void moveclock(float seconds) {
    timeval_skip += seconds;
    timeval += seconds;
    beatgrid = beatgrid_calc(timeval);
}

// Time stands still: what the last frame took is taken back, and nothing is stepped.
void holdclock() {
    moveclock(-frametime);
    frameskip = 0;
}

void beforeframe() {
    if (paused)
        holdclock();
    if (jump != 0.0f) {
        moveclock(beatgrid_seconds(jump) - beatgrid_seconds(0.0f));
        jump = 0.0f;
        fprintf(stderr, "beat %.2f\n", double(beatgrid));
    }
    if (reload && shaderedit_read())
        rehearsal_reload(rehearsal);
    reload = false;
}

moment_s readarguments(int argc, char** argv) {
    moment_s start;
    for (int i = 1; i < argc; ++i) {
        const char* value = i + 1 < argc ? argv[i + 1] : "";
        int width = 0, height = 0;
        if (strcmp(argv[i], "--help") == 0) {
            printf("%s", usage);
            exit(0);
        } else if (strcmp(argv[i], "--from") == 0) {
            const std::optional<moment_s> when = moment_parse(value);
            if (!when)
                refuse("neither a beat nor a time nor an event nor a scene", value);
            start = *when;
            ++i;
        } else if (strcmp(argv[i], "--knob") == 0) {
            if (!rehearsal_readknob(value, &rehearsal))
                refuse("not a knob and its value", value);
            ++i;
        } else if (strcmp(argv[i], "--size") == 0) {
            if (sscanf(value, "%dx%d", &width, &height) != 2 || width < 1 || height < 1)
                refuse("not a size", value);
            x11_setwindow(width, height);
            ++i;
        } else {
            rehearsal.effect = argv[i];
        }
    }
    if (!rehearsal_knowseffect(rehearsal.effect))
        refuse("no such effect", rehearsal.effect.c_str());
    return start;
}

} // namespace

int main(int argc, char** argv) {
    x11_setwindow(frame_w, frame_h);
    const moment_s start = readarguments(argc, argv);
    shaderedit_start(rehearsal.effect);
    char nomusic[] = "--nomusic";
    char* arguments[] = {argv[0], nomusic};
    load_show(2, arguments);
    set_event_callback(onkey);
    rehearsal_startclock(start);
    rehearse(rehearsal, beforeframe);
}

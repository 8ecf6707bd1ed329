#include "main/loop.h"

#include "main/leave.h"
#include "main/startup.h"
#include "main/video.h"
#include "port.h"
#include "sync.h"

#include <cmath>
#include <csignal>
#include <cstdio>

bool done_hint = false;
volatile int framecounter = 0;
volatile int framecounter_logic = 0;
float screenmode_changetime = 0.0f;
bool screenmode_needschange = false;
event_callback_t event_callbacks[maxeventcallbacks];
int cb_count = 0;

namespace {

volatile sig_atomic_t leaving = 0; // asked to leave while the events were not looked at

long long sleptbefore = 0; // microseconds

void callhooks(SDL_Event* event) {
    for (int i = 0; i < cb_count; ++i)
        if (event_callbacks[i])
            event_callbacks[i](event);
}

void onkeydown(SDLKey key) {
    if (key == SDLK_z)
        fprintf(stderr, "timeval: %.3f beatgrid: %.3f\n", double(timeval),
                double(beatgrid_calc(timeval)));
    if (key == SDLK_ESCAPE)
        done_hint = true;
}

void onmousebutton(Uint8 button) {
    if (button == SDL_BUTTON_WHEELUP)
        ++mouserull[0];
    if (button == SDL_BUTTON_WHEELDOWN)
        ++mouserull[1];
}

// The viewport stays; only the configuration and two lines follow a resize.
void onresize(const SDL_ResizeEvent& resize) {
    config_width = resize.w;
    config_height = resize.h;
    fprintf(stderr, "resize event.\n");
    screenmode_changetime = timeval + 0.1f;
    screenmode_needschange = true;
}

void onevent(const SDL_Event& event) {
    switch (event.type) {
    case SDL_KEYDOWN:
        onkeydown(event.key.keysym.sym);
        break;
    case SDL_QUIT:
        done_hint = true;
        break;
    case SDL_MOUSEBUTTONDOWN:
        onmousebutton(event.button.button);
        break;
    case SDL_VIDEORESIZE:
        onresize(event.resize);
        break;
    default:
        break;
    }
}

void dispatchevents() {
    SDL_Event event;
    while (SDL_PollEvent(&event)) {
        callhooks(&event);
        onevent(event);
    }
}

long long readclocks() {
    getvxqtime(&frameend);
    return port_awake();
}

// The song did not play what the time of day jumped over: whether the machine slept or somebody set
// the clock, the picture stays with the song.
void followclock(long long awake) {
    const double slept = static_cast<double>(port_slept() - sleptbefore) / 1000000.0;
    const double moved = clock_follow(awake);
    fprintf(stderr, "%s at %.2f: zero moved by %.2f s\n",
            std::fabs(moved - slept) < 1.0 ? "the machine slept" : "the clock was set",
            double(timeval), moved);
    sleptbefore = port_slept();
}

// Busy, not sleeping: the least jitter, at the cost of a core.
void holdframe() {
    long long awake;
    do {
        awake = readclocks();
        if (clock_wasset(awake)) // or the process was stopped between the two readings
            awake = readclocks();
        if (clock_wasset(awake))
            followclock(awake);
        clock_measure();
    } while (frametime < port_framehold());
    clock_startframe(awake);
}

// ---- playing unseen ----

struct unseen_s {
    bool on = false;
    float beat = 0.0f;
    void (*eachframe)() = nullptr;
    void (*there)() = nullptr;
};
unseen_s unseen;

void rejoin() {
    const long long awake = readclocks();
    clock_rejoin(frameend, awake);
    sleptbefore = port_slept();
}

void endunseen() {
    unseen.on = false;
    video_skim(false);
    rejoin();
    unseen.there();
}

void followunseen() {
    if (!unseen.on)
        return;
    unseen.eachframe();
    if (beatgrid >= unseen.beat)
        endunseen();
}

void showframe() {
    port_present();
    holdframe();
}

void countframe() {
    framecounter = framecounter + 1;
    framecounter_logic = framecounter_logic + frameskip;
}

void enableswipe() {
    static bool swipe_disabled = true;
    if (timeval > 2.0f && swipe_disabled) {
        compositor_fix(1);
        swipe_disabled = false;
    }
}

// The line is the whole mode change.
void reportmodechange() {
    if (screenmode_changetime < timeval && screenmode_needschange) {
        fprintf(stderr, "now changing mode.\n");
        screenmode_needschange = false;
    }
}

} // namespace

void getvxqtime(vxqtime_t* t) {
    port_timeofday(t);
}

void time_init() {
    getvxqtime(&timestart);
    getvxqtime(&framestart);
    clock_startframe(port_awake());
    sleptbefore = port_slept();
}

void set_event_callback(event_callback_t cb) {
    if (cb_count < maxeventcallbacks)
        event_callbacks[cb_count++] = cb;
}

void remember_leaving() {
    SDL_SetEventFilter([](const SDL_Event* event) {
        if (asks_to_leave(*event))
            leaving = 1;
        return 1;
    });
}

void system_crap() {
    // A frame that covered no tick keeps the clicks for the next.
    if (frameskip > 0)
        mouserull[0] = mouserull[1] = 0;
    dispatchevents();
    getvxqtime(&framedone);
    if (unseen.on)
        clock_tick();
    else
        showframe();
    clock_advance();
    followstop();
    countframe();
    sync_dispatcher();
    followunseen();
}

void system_crap_pre() {
    SDL_Event event;
    while (SDL_PollEvent(&event)) {
    }
    if (leaving)
        leave_show();
    port_present();
}

void loop_playunseen(float beat, void (*eachframe)(), void (*there)()) {
    unseen = {true, beat, eachframe, there};
    video_skim(true);
}

void sync_dispatcher() {
    enableswipe();
    reportmodechange();
    sync_ack();
}

Uint32 fps_tick(Uint32, void*) {
    const float fps = framecounter * 1000.0f / fpsperiod;
    const float logic = framecounter_logic * 1000.0f / fpsperiod;
    fprintf(stderr, "fps: %.2f (%i) logic: %.2f (%i) time: %.2f beat: %2.f\n", double(fps),
            framecounter, double(logic), framecounter_logic, double(timeval), double(beatgrid));
    framecounter = 0;
    framecounter_logic = 0;
    return fpsperiod;
}

#include "main/clock.h"

#include "main/startup.h"
#include "main/video.h"
#include "sync.h"

#include <cstdio>

float timeval = 0.0f;
float beatgrid = 0.0f;
int frameskip = 0;
int mouserull[2] = {0, 0};
bool done_hint = false;
float frametime = 0.0f;
float frameskiptime = 0.0f;
volatile int framecounter = 0;
volatile int framecounter_logic = 0;
float beat_first = 0.0f;
float beat_last = 10.0f;
float beat_lastnum = 319.0f;
vxqtime_t timestart;
vxqtime_t framestart, framedone, frameend;
float screenmode_changetime = 0.0f;
bool screenmode_needschange = false;
event_callback_t event_callbacks[maxeventcallbacks];
int cb_count = 0;

namespace {

constexpr float logictick = 0.02f; // seconds
constexpr Uint32 fpsperiod = 2000; // milliseconds

// A frame that seems to end before it began or to last longer than this is a clock that was set, or
// a machine that slept, and no frame.
constexpr float longestframe = 10.0f; // seconds

float secondsbetween(const vxqtime_t& end, const vxqtime_t& start) {
    vxqtime_t difference;
    vxqtimersub(&end, &start, &difference);
    return static_cast<float>(static_cast<double>(difference.tv_sec) +
                              static_cast<double>(difference.tv_usec) / 1000000.0);
}

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

bool clockwasset() {
    return frametime < 0.0f || frametime > longestframe;
}

// The clock is the time of day, and that can be set in mid-show. The show goes on from the frame at
// hand: zero moves along with the clock, so that no beat is lost and none comes twice, and the
// frame starts over. The music plays on meanwhile; what the frame had lasted is all that the
// picture is late from then on.
void followclock() {
    vxqtime_t shown;
    vxqtimersub(&framestart, &timestart, &shown);
    vxqtimersub(&frameend, &shown, &timestart);
    framestart = frameend;
    frametime = 0.0f;
}

// Busy, not sleeping: the least jitter, at the cost of a core.
void holdframe() {
    frametime = 0.0f;
    do {
        getvxqtime(&frameend);
        frametime = secondsbetween(frameend, framestart);
        if (clockwasset())
            followclock();
    } while (frametime < port_framehold());
}

void countticks() {
    frameskiptime += frametime;
    frameskip = 0;
    while (frameskiptime > 0.0f) {
        frameskiptime -= logictick;
        ++frameskip;
    }
}

void advanceclock() {
    framestart = frameend;
    framecounter = framecounter + 1;
    framecounter_logic = framecounter_logic + frameskip;
    timeval = secondsbetween(frameend, timestart) + timeval_skip;
    beatgrid = beatgrid_calc(timeval);
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

void time_init() {
    getvxqtime(&timestart);
    getvxqtime(&framestart);
}

void getvxqtime(vxqtime_t* t) {
    port_timeofday(t);
}

void vxqtimersub(const vxqtime_t* a, const vxqtime_t* b, vxqtime_t* result) {
    vxqtime_t difference = {a->tv_sec - b->tv_sec, a->tv_usec - b->tv_usec};
    if (difference.tv_usec < 0) {
        difference.tv_sec -= 1;
        difference.tv_usec += 1000000;
    }
    *result = difference;
}

float beatgrid_calc(float t) {
    return (t - beat_first) * (beat_lastnum / (beat_last - beat_first));
}

float beatgrid_seconds(float beats) {
    return beat_first + beats * ((beat_last - beat_first) / beat_lastnum);
}

void set_event_callback(event_callback_t cb) {
    if (cb_count < maxeventcallbacks)
        event_callbacks[cb_count++] = cb;
}

void system_crap() {
    // A frame that covered no tick keeps the clicks for the next.
    if (frameskip > 0)
        mouserull[0] = mouserull[1] = 0;
    dispatchevents();
    getvxqtime(&framedone);
    port_present();
    holdframe();
    countticks();
    advanceclock();
    sync_dispatcher();
}

void system_crap_pre() {
    SDL_Event event;
    while (SDL_PollEvent(&event)) {
    }
    port_present();
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

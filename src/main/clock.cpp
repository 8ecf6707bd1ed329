#include "main/clock.h"

#include <cstdlib>

float timeval = 0.0f;
float timeval_skip = 0.0f;
float beatgrid = 0.0f;
int frameskip = 0;
float frametime = 0.0f;
float frameskiptime = 0.0f;
int mouserull[2] = {0, 0};
float beat_first = 0.0f;
float beat_last = 10.0f;
float beat_lastnum = 319.0f;
vxqtime_t timestart;
vxqtime_t framestart, framedone, frameend;

namespace {

constexpr int tickmicroseconds = 20000;
constexpr float logictick = tickmicroseconds / 1000000.0f; // seconds

// A balance of days would be counted down wrongly, tick by tick in single precision, or for ever.
constexpr int stretchticks = 5000;
constexpr float stretch = 100.0f; // seconds of so many ticks

constexpr long long second = 1000000; // microseconds

long long awakestart = 0; // the second clock at framestart, microseconds

long long microseconds(const vxqtime_t& t) {
    return t.tv_sec * second + t.tv_usec;
}

vxqtime_t timerecord(long long microseconds) {
    const long long rest = (microseconds % second + second) % second; // before 1970, too
    return {static_cast<time_t>((microseconds - rest) / second), static_cast<suseconds_t>(rest)};
}

// Microseconds by which the frame lasted longer by the time of day than by the second clock.
long long excess(long long awake) {
    return microseconds(frameend) - microseconds(framestart) - (awake - awakestart);
}

float secondsbetween(const vxqtime_t& end, const vxqtime_t& start) {
    vxqtime_t difference;
    vxqtimersub(&end, &start, &difference);
    return static_cast<float>(static_cast<double>(difference.tv_sec) +
                              static_cast<double>(difference.tv_usec) / 1000000.0);
}

void countticks() {
    frameskiptime += frametime;
    frameskip = 0;
    while (frameskiptime > stretch) {
        frameskiptime -= stretch;
        frameskip += stretchticks;
    }
    while (frameskiptime > 0.0f) {
        frameskiptime -= logictick;
        ++frameskip;
    }
}

} // namespace

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

void clock_startframe(long long awake) {
    awakestart = awake;
}

bool clock_wasset(long long awake) {
    return std::llabs(excess(awake)) > second;
}

double clock_follow(long long awake) {
    const long long by = excess(awake);
    timestart = timerecord(microseconds(timestart) + by);
    framestart = timerecord(microseconds(framestart) + by);
    return static_cast<double>(by) / second;
}

void clock_measure() {
    frametime = secondsbetween(frameend, framestart);
}

void clock_tick() {
    frameend = timerecord(microseconds(framestart) + tickmicroseconds);
    clock_measure();
}

void clock_rejoin(const vxqtime_t& now, long long awake) {
    const long long by = microseconds(now) - microseconds(framestart);
    timestart = timerecord(microseconds(timestart) + by);
    framestart = now;
    clock_startframe(awake);
}

void clock_advance() {
    countticks();
    framestart = frameend;
    timeval = secondsbetween(frameend, timestart) + timeval_skip;
    beatgrid = beatgrid_calc(timeval);
}

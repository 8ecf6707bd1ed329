// The clocks of a machine with a screen.
#include "port.h"

#include <ctime>

namespace {

long long microseconds(clockid_t clock) {
    timespec t{};
    clock_gettime(clock, &t);
    return t.tv_sec * 1000000LL + t.tv_nsec / 1000;
}

} // namespace

void port_timeofday(struct timeval* now) {
    gettimeofday(now, nullptr);
}

long long port_awake() {
    return microseconds(CLOCK_MONOTONIC);
}

long long port_slept() {
#ifdef CLOCK_BOOTTIME
    return microseconds(CLOCK_BOOTTIME) - microseconds(CLOCK_MONOTONIC);
#else
    return 0;
#endif
}

float port_framehold() {
    return 0.02f;
}

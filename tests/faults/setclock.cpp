// Preloaded into the show: SIGUSR1 sets the time of day an hour forward, SIGUSR2 an hour back.
#include <csignal>
#include <ctime>
#include <sys/time.h>

namespace {

constexpr long hour = 3600;
volatile sig_atomic_t hours = 0;

[[gnu::constructor]] void listen() {
    signal(SIGUSR1, [](int) { hours = hours + 1; });
    signal(SIGUSR2, [](int) { hours = hours - 1; });
}

} // namespace

extern "C" int gettimeofday(timeval* now, void*) noexcept {
    timespec t;
    clock_gettime(CLOCK_REALTIME, &t);
    now->tv_sec = t.tv_sec + hours * hour;
    now->tv_usec = t.tv_nsec / 1000;
    return 0;
}

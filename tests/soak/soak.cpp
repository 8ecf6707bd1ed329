// The show for hours of its own time, off-screen and unseen: five pictures a second, each of ten
// ticks, on the clock that every frame moves. Watches the memory, the time that a frame takes, the
// events and every number that goes to GL.
#include "glwatch.h"
#include "main/clock.h"
#include "playback.h"
#include "sync.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <GLES2/gl2.h>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr int samples = 60;
constexpr long grownby = 4096; // KiB that the memory may grow in the second half

long residentkib() {
    long pages = 0, resident = 0;
    if (FILE* file = fopen("/proc/self/statm", "r")) {
        if (fscanf(file, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        fclose(file);
    }
    return resident * sysconf(_SC_PAGESIZE) / 1024;
}

// Of this thread alone: how busy the machine is otherwise does not count.
double cpuseconds() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
}

struct sample_s {
    double hours;
    long kib;
    double milliseconds; // of the processor a frame, on average since the last sample
};

class watch_c {
public:
    explicit watch_c(double hours) : every(hours * 3600.0 / samples) {}

    void frame() {
        ++frames;
        countevents();
        if (double(timeval) < every * double(taken.size() + 1))
            return;
        const double now = cpuseconds();
        taken.push_back(
            {double(timeval) / 3600.0, residentkib(), (now - last) * 1000.0 / double(frames)});
        printf("%.3f,%ld,%.3f\n", taken.back().hours, taken.back().kib, taken.back().milliseconds);
        fflush(stdout);
        frames = 0;
        last = now;
    }

    bool done() const { return taken.size() == samples; }

    // The findings, a line each on standard error; how many kinds.
    int findings() const {
        return found("KiB too much that the memory grew",
                     std::max(taken.back().kib - taken[samples / 2].kib - grownby, 0L)) +
               found("events that fired twice", twice) +
               found("uniforms that are no numbers", glwatch_uniforms()) +
               found("vertices that are no numbers", glwatch_vertices()) +
               found("draws from buffers, which nobody looks into", glwatch_buffers());
    }

private:
    static int found(const char* what, long count) {
        if (count)
            fprintf(stderr, "soak: %ld %s\n", count, what);
        return count != 0;
    }

    // An event that is queued anew although it has happened has fired twice.
    void countevents() {
        for (const auto& [name, e] : events) {
            const bool firing = e->happened_queue && !e->happened;
            if (firing && !fired.insert(name).second && !firingnow.count(name))
                ++twice;
            firing ? void(firingnow.insert(name)) : void(firingnow.erase(name));
        }
    }

    double every; // seconds of demo time
    std::vector<sample_s> taken;
    std::set<std::string> fired, firingnow;
    int twice = 0;
    long frames = 0;
    double last = cpuseconds();
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2 || atof(argv[1]) <= 0.0) {
        fprintf(stderr, "usage: soak HOURS > hours,kib,milliseconds.csv\n");
        return 2;
    }
    playback_s playback;
    playback.width = 106;
    playback.height = 60;
    playback.step_denominator = 5;
    playback_load(playback);
    watch_c watch(atof(argv[1]));
    playback_run([&] {
        glViewport(0, 0, 1, 1); // every vertex goes through, hardly a pixel
        glFinish(); // nobody waits for a frame here: the driver would queue them, and its memory
                    // grow
        watch.frame();
        return !watch.done();
    });
    return watch.findings() ? 1 : 0;
}

// The show for hours of its own time, off-screen and unseen: five pictures a second, each of ten
// ticks, on the clock that every frame moves. Watches the memory, the time that a frame takes, the
// events and every number that goes to GL.
#include "main/clock.h"
#include "playback.h"
#include "sync.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <GLES2/gl2.h>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr int samples = 60;
constexpr long grownby = 4096; // KiB that the memory may grow in the second half

long notanumber = 0;

void look(const float* values, long count) {
    for (long i = 0; i < count; ++i)
        if (!std::isfinite(values[i]))
            ++notanumber;
}

// GL's own function under the name that this program has taken.
template<class function_t>
function_t original(function_t, const char* name) {
    return reinterpret_cast<function_t>(dlsym(RTLD_NEXT, name));
}

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

    // The findings, a line each on standard error; how many.
    int findings() const {
        const int grown = taken.back().kib - taken[samples / 2].kib > grownby;
        if (grown)
            fprintf(stderr, "soak: memory grows\n");
        if (twice)
            fprintf(stderr, "soak: %i events fired twice\n", twice);
        if (notanumber)
            fprintf(stderr, "soak: %ld numbers for GL are none\n", notanumber);
        return grown + (twice > 0) + (notanumber > 0);
    }

private:
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

void glUniform1f(GLint location, GLfloat x) {
    static const auto gl = original(&glUniform1f, "glUniform1f");
    look(&x, 1);
    gl(location, x);
}

void glUniform2f(GLint location, GLfloat x, GLfloat y) {
    static const auto gl = original(&glUniform2f, "glUniform2f");
    const float values[] = {x, y};
    look(values, 2);
    gl(location, x, y);
}

void glUniform3f(GLint location, GLfloat x, GLfloat y, GLfloat z) {
    static const auto gl = original(&glUniform3f, "glUniform3f");
    const float values[] = {x, y, z};
    look(values, 3);
    gl(location, x, y, z);
}

void glUniformMatrix3fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat* m) {
    static const auto gl = original(&glUniformMatrix3fv, "glUniformMatrix3fv");
    look(m, 9L * count);
    gl(location, count, transpose, m);
}

void glUniformMatrix4fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat* m) {
    static const auto gl = original(&glUniformMatrix4fv, "glUniformMatrix4fv");
    look(m, 16L * count);
    gl(location, count, transpose, m);
}

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
        playback_skim(true);
        glFinish(); // nobody waits for a frame here: the driver would queue them, and its memory
                    // grow
        watch.frame();
        return !watch.done();
    });
    return watch.findings() ? 1 : 0;
}

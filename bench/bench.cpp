// How long frames take: plays the show off-screen, draws two of every ten frames, leaves the others
// unseen, and times the second, simulation and pixels together. One line of
// tab-separated values for each stretch of beats and scene:
//   first beat, scene, frames, median and 95th percentile of the milliseconds a frame
//
// Times mean something only beside others of the same run: see bench/compare.
#include "demo.h"
#include "main/clock.h"
#include "playback.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <GLES2/gl2.h>
#include <string>
#include <vector>

namespace {

constexpr float lastbeat = 352.0f;
constexpr float stretch = 16.0f; // beats
constexpr int every = 10;        // frames; two of them are drawn, the second is timed

class stopwatch_c {
public:
    void start() { begin = clock::now(); }
    double milliseconds() const {
        return std::chrono::duration<double, std::milli>(clock::now() - begin).count();
    }

private:
    using clock = std::chrono::steady_clock;
    clock::time_point begin;
};

struct stretch_s {
    float beat;
    std::string scene;
    std::vector<double> times; // milliseconds
};

double percentile(std::vector<double> times, size_t percent) {
    const auto at = times.begin() + long(times.size() * percent / 100);
    std::nth_element(times.begin(), at, times.end());
    return *at;
}

void note(std::vector<stretch_s>* stretches, double time) {
    const float beat = float(int(beatgrid / stretch)) * stretch;
    if (stretches->empty() || stretches->back().beat != beat ||
        stretches->back().scene != demo_scene)
        stretches->push_back({beat, demo_scene, {}});
    stretches->back().times.push_back(time);
}

} // namespace

int main(int argc, char** argv) {
    playback_s playback;
    if (argc == 3) {
        playback.width = atoi(argv[1]);
        playback.height = atoi(argv[2]);
    }
    if (argc == 2 || argc > 3 || playback.width < 1 || playback.height < 1) {
        fprintf(stderr, "usage: tarvisk-bench [WIDTH HEIGHT] 2>/dev/null\n");
        return 2;
    }
    playback_load(playback);
    std::vector<stretch_s> stretches;
    stopwatch_c watch;
    long frame = 0;
    playback_run([&] {
        glFinish();
        if (frame % every == 1) // the one before is drawn without being timed: caches and queues
            note(&stretches, watch.milliseconds());
        ++frame;
        playback_skim(frame % every > 1);
        watch.start();
        return beatgrid < lastbeat;
    });
    for (const stretch_s& s : stretches)
        printf("%.0f\t%s\t%zu\t%.3f\t%.3f\n", double(s.beat), s.scene.c_str(), s.times.size(),
               percentile(s.times, 50), percentile(s.times, 95));
}

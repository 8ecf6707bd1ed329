// How long frames take: plays the show off-screen and times frames, simulation and pixels together.
// One line of tab-separated values for each timed frame:
//   start in seconds of the monotonic clock, beat, scene, wall milliseconds, CPU milliseconds (of
//   all threads)
// or, with --effects, one for each effect that the frame draws, from the finished drawing before it
// to its own finished drawing, with the effect's name for the scene's. With --replay, beside the
// scene's frames there are those that the show does not draw itself: the GL calls of one frame,
// made once more without it. They are "replay of" their scene; where such a picture is not the
// show's a line says so, and the end is status 1.
//
// Times mean something only beside others of the same run: see bench/measure and bench/compare.
#include "demo.h"
#include "effects.h"
#include "gltape.h"
#include "main/clock.h"
#include "main/video.h"
#include "playback.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <getopt.h>
#include <GLES2/gl2.h>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr const char* usage = R"(usage: tarvisk-bench [options] 2>/dev/null

  --size WxH    picture in pixels (854x480)
  --from BEAT   first beat that is timed (0)
  --to BEAT     where it ends (352)
  --every N     draw two of every N frames and time the second; 1: draw and time all (10)
  --effects     time each effect by itself
  --replay      time one frame of three and the replay of another, in turns
  --start BEAT  begin the show there, as --skip does, instead of playing up to it
  --frames N    end after so many timed frames
)";

struct options_s {
    playback_s playback;
    float from = 0.0f;
    float to = 352.0f;
    int every = 10;
    bool effects = false;
    bool replay = false;
    moment_s start;
    long frames = 0; // 0: no limit
};

options_s readoptions(int argc, char** argv) {
    const option known[] = {
        {"size", required_argument, nullptr, 's'},
        {"from", required_argument, nullptr, 'f'},
        {"to", required_argument, nullptr, 't'},
        {"every", required_argument, nullptr, 'n'},
        {"effects", no_argument, nullptr, 'e'},
        {"replay", no_argument, nullptr, 'r'},
        {"start", required_argument, nullptr, 'b'},
        {"frames", required_argument, nullptr, 'c'},
        {nullptr, 0, nullptr, 0},
    };
    options_s options;
    playback_s& playback = options.playback;
    int option;
    bool good = true;
    while ((option = getopt_long(argc, argv, "", known, nullptr)) != -1) {
        switch (option) {
        case 's':
            good = sscanf(optarg, "%dx%d", &playback.width, &playback.height) == 2 && good;
            break;
        case 'f':
            options.from = std::strtof(optarg, nullptr);
            break;
        case 't':
            options.to = std::strtof(optarg, nullptr);
            break;
        case 'n':
            options.every = atoi(optarg);
            break;
        case 'e':
            options.effects = true;
            break;
        case 'r':
            options.replay = true;
            break;
        case 'b':
            options.start.value = std::strtod(optarg, nullptr);
            break;
        case 'c':
            options.frames = atol(optarg);
            break;
        default:
            good = false;
        }
    }
    if (!good || optind != argc || options.every < 1 || playback.width < 1 || playback.height < 1) {
        fputs(usage, stderr);
        exit(2);
    }
    return options;
}

double milliseconds(clockid_t clock) {
    timespec now;
    clock_gettime(clock, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) * 1e-6;
}

class stopwatch_c {
public:
    void start() {
        glFinish();
        wall = milliseconds(CLOCK_MONOTONIC);
        cpu = milliseconds(CLOCK_PROCESS_CPUTIME_ID);
    }

    void print(const std::string& name) const {
        glFinish();
        printf("%.6f\t%.3f\t%s\t%.3f\t%.3f\n", wall * 1e-3, double(beatgrid), name.c_str(),
               milliseconds(CLOCK_MONOTONIC) - wall, milliseconds(CLOCK_PROCESS_CPUTIME_ID) - cpu);
    }

private:
    double wall = 0.0;
    double cpu = 0.0;
};

bool timed = false; // the frame that is being drawn, in which each effect is

// Stands in for an effect and times its drawing.
class timedeffect_c : public demoeffect_c {
public:
    timedeffect_c(const effectentry_s& entry) : name(entry.name), effect(entry.effect) {}

    void draw() override {
        if (!timed)
            return effect->draw();
        stopwatch_c watch;
        watch.start();
        effect->draw();
        watch.print(name);
    }

private:
    const char* name;
    demoeffect_c* effect;
};

// After loading: from then on only draw is called.
std::vector<std::unique_ptr<timedeffect_c>> timeeffects() {
    std::vector<std::unique_ptr<timedeffect_c>> stand_ins;
    for (const effectentry_s& entry : effectlist) {
        stand_ins.push_back(std::make_unique<timedeffect_c>(entry));
        entry.effect = stand_ins.back().get();
    }
    return stand_ins;
}

// ---- replaying ----

using picture_t = std::vector<Uint32>;

constexpr Uint32 spoilt = 0xFFFF00FF; // magenta

picture_t readpicture() {
    picture_t picture(size_t(video_w) * size_t(video_h));
    glReadPixels(0, 0, video_w, video_h, GL_RGBA, GL_UNSIGNED_BYTE, picture.data());
    return picture;
}

// So that a replay that draws nothing is found out.
void spoilpicture() {
    GLfloat colour[4];
    glGetFloatv(GL_COLOR_CLEAR_VALUE, colour);
    glClearColor(1.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glClearColor(colour[0], colour[1], colour[2], colour[3]);
}

// Whether the replay drew what the show had drawn. A few frames leave something of the one before.
bool issame(const picture_t& replayed, const picture_t& shown, const picture_t& before) {
    for (size_t i = 0; i < shown.size(); ++i)
        if (replayed[i] != shown[i] && !(replayed[i] == spoilt && shown[i] == before[i]))
            return false;
    return true;
}

// Times the replay of the frame that was recorded; `before` is the picture of the one before it.
// Returns whether it draws the same picture.
bool timereplay(const picture_t& before) {
    const picture_t shown = readpicture();
    spoilpicture();
    gltape_play();
    const bool same = issame(readpicture(), shown, before);
    if (!same)
        printf("beat %.3f: the replay's picture is not the show's\n", double(beatgrid));
    stopwatch_c watch;
    watch.start();
    gltape_play();
    watch.print(std::string("replay of ") + demo_scene);
    return same;
}

// ---- which frames ----

enum class use_t { unseen, drawn, timed, recorded };

// The frame before a timed one is drawn without being timed: caches and queues. So is a replay's.
use_t useof(long frame, const options_s& options) {
    if (options.every == 1 && !options.replay)
        return use_t::timed;
    static const use_t uses[] = {use_t::drawn, use_t::timed, use_t::recorded};
    const long used = options.replay ? 3 : 2;
    const long number = frame % std::max(long(options.every), used);
    return number < used ? uses[number] : use_t::unseen;
}

} // namespace

int main(int argc, char** argv) {
    const options_s options = readoptions(argc, argv);
    playback_load(options.playback);
    const auto stand_ins = options.effects ? timeeffects() : decltype(timeeffects()){};
    if (options.start.value > 0.0)
        rehearsal_startclock(options.start);
    stopwatch_c watch;
    long frame = 0;
    long timedframes = 0;
    bool same = true;
    picture_t before;
    use_t use = use_t::unseen;
    playback_run([&] {
        gltape_stop();
        if (use == use_t::timed && !options.effects)
            watch.print(demo_scene);
        if (use == use_t::recorded)
            same = timereplay(before) && same;
        timedframes += timed;
        use = beatgrid >= options.from ? useof(++frame, options) : use_t::unseen;
        timed = use == use_t::timed;
        playback_skim(use == use_t::unseen);
        if (use == use_t::recorded) {
            before = readpicture();
            gltape_record();
        }
        watch.start();
        return beatgrid < options.to && (!options.frames || timedframes < options.frames);
    });
    return same ? 0 : 1;
}

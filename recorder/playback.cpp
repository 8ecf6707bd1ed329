#include "playback.h"

#include "demo.h"
#include "main/show.h"
#include "offscreen.h"

#include <vector>

namespace {

struct enough_s {};

std::function<void()> timeline;

// The timeline never returns; the hook of the present call is the way out of it.
void play(const onframe_t& onframe) {
    offscreen_onpresent([&] {
        if (!onframe())
            throw enough_s();
    });
    try {
        timeline();
    } catch (const enough_s&) {
    }
    offscreen_onpresent(nullptr);
}

const char* sizeoption(const playback_s& playback) {
    if (playback.width == 1280 && playback.height == 720)
        return "--720p";
    if (playback.width == 1920 && playback.height == 1080)
        return "--fullhd";
    return "";
}

} // namespace

void playback_load(const playback_s& playback) {
    offscreen_setsize(playback.width, playback.height);
    offscreen_setstep(playback.step_numerator, playback.step_denominator);
    offscreen_setdesktop(playback.desktop.c_str());
    std::string size = sizeoption(playback);
    std::string nomusic = "--nomusic";
    std::vector<char*> arguments = {size.data(), size.data(), nomusic.data()};
    load_show(static_cast<int>(arguments.size()), arguments.data());
    timeline = demo_run;
    if (playback.rehearsal.effect.empty())
        return;
    rehearsal_startclock(playback.start);
    timeline = [rehearsal = playback.rehearsal] { rehearse(rehearsal, nullptr); };
}

void playback_skim(bool on) {
    static bool skimming = false;
    if (on != skimming && offscreen_setseen(!on))
        skimming = on;
}

void playback_run(const onframe_t& onframe) {
    play(onframe);
}

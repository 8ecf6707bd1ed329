#include "playback.h"

#include "demo.h"
#include "effects.h"
#include "main/clock.h"
#include "main/startup.h"
#include "offscreen.h"

#include <algorithm>
#include <GLES2/gl2.h>
#include <iterator>
#include <vector>

namespace {

struct enough_s {};

std::function<void()> timeline;

const effectentry_s* findeffect(const std::string& name) {
    auto found = std::find_if(std::begin(effectlist), std::end(effectlist),
                              [&](const effectentry_s& entry) { return entry.name == name; });
    return found != std::end(effectlist) ? found : nullptr;
}

const knob_s* findknob(const std::string& name) {
    auto found = std::find_if(std::begin(knoblist), std::end(knoblist),
                              [&](const knob_s& knob) { return knob.name == name; });
    return found != std::end(knoblist) ? found : nullptr;
}

void turnknobs(const std::map<std::string, float>& values) {
    for (auto& [name, value] : values) {
        const knob_s* knob = findknob(name);
        if (knob->real)
            *knob->real = value;
        else
            *knob->whole = static_cast<int>(value);
    }
}

void rehearse(const playback_s& playback) {
    demoeffect_c* effect = findeffect(playback.effect)->effect;
    demo_rehearse();
    for (;;) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
        turnknobs(playback.knobs);
        effect->draw();
        system_crap();
    }
}

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

// Only after loading is the beat grid what the show's is.
void startclock(const moment_s& start) {
    timeval_skip = static_cast<float>(moment_seconds(start));
    if (timeval_skip == 0.0f)
        return;
    timeval = timeval_skip;
    beatgrid = beatgrid_calc(timeval);
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
    startclock(playback.start);
    timeline = playback.effect.empty() ? std::function<void()>(demo_run)
                                       : [playback] { rehearse(playback); };
}

void playback_skim(bool on) {
    static GLint viewport[4];
    static bool skimming = false;
    if (on == skimming)
        return;
    skimming = on;
    if (on) {
        glGetIntegerv(GL_VIEWPORT, viewport);
        glViewport(0, 0, 1, 1);
    } else {
        glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
    }
}

void playback_run(const onframe_t& onframe) {
    play(onframe);
}

bool playback_knowseffect(const std::string& name) {
    return findeffect(name) != nullptr;
}

bool playback_knowsknob(const std::string& name) {
    return findknob(name) != nullptr;
}

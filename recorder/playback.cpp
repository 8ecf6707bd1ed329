#include "playback.h"

#include "demo.h"
#include "demoeffect.h"
#include "main/clock.h"
#include "main/startup.h"
#include "offscreen.h"

#include <GLES2/gl2.h>
#include <vector>

namespace {

struct enough_s {};

// The timeline never returns; the hook of the present call is the way out of it.
void play(const std::function<void()>& timeline, const onframe_t& onframe) {
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
    std::string skip = "--skip";
    std::string seconds = std::to_string(playback.start_seconds);
    std::vector<char*> arguments = {size.data(), size.data(), nomusic.data()};
    if (playback.start_seconds != 0.0)
        arguments.insert(arguments.end(), {skip.data(), seconds.data()});
    load_show(static_cast<int>(arguments.size()), arguments.data());
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

void playback_show(const onframe_t& onframe) {
    play(demo_run, onframe);
}

void playback_effect(demoeffect_c* effect, const onframe_t& onframe) {
    play(
        [effect] {
            glEnable(GL_DEPTH_TEST);
            for (;;) {
                glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
                effect->draw();
                system_crap();
            }
        },
        onframe);
}

#include "rehearsal.h"

#include "demo.h"
#include "effects.h"
#include "main/clock.h"
#include "main/startup.h"

#include <algorithm>
#include <cstdio>
#include <GLES2/gl2.h>
#include <iterator>

namespace {

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

} // namespace

bool rehearsal_knowseffect(const std::string& name) {
    return findeffect(name) != nullptr;
}

bool rehearsal_readknob(const std::string& text, rehearsal_s* rehearsal) {
    char name[64];
    float value = 0.0f;
    char rest;
    if (sscanf(text.c_str(), "%63[^=]=%f%c", name, &value, &rest) != 2 || !findknob(name))
        return false;
    rehearsal->knobs[name] = value;
    return true;
}

void rehearsal_startclock(const moment_s& start) {
    timeval_skip = static_cast<float>(moment_seconds(start));
    timeval = timeval_skip;
    beatgrid = beatgrid_calc(timeval);
}

void rehearsal_reload(const rehearsal_s& rehearsal) {
    findeffect(rehearsal.effect)->effect->initgl();
}

void rehearse(const rehearsal_s& rehearsal, const std::function<void()>& beforeframe) {
    demoeffect_c* effect = findeffect(rehearsal.effect)->effect;
    demo_rehearse();
    for (;;) {
        if (beforeframe)
            beforeframe();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
        turnknobs(rehearsal.knobs);
        effect->draw();
        system_crap();
    }
}

#include "rehearsal.h"

#include "3dphone.h"
#include "effects.h"
#include "main/loop.h"
#include "stage.h"
#include "util.h"

#include <algorithm>
#include <cstdio>
#include <GLES2/gl2.h>
#include <iterator>
#include <type_traits>
#include <variant>

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
        const auto turn = [value = value](auto* knob) {
            *knob = static_cast<std::decay_t<decltype(*knob)>>(value);
        };
        std::visit(turn, findknob(name)->value);
    }
}

void drawinto(fbo_c* target, demoeffect_c* effect) {
    target->bind();
    effect->draw();
    target->unbind();
}

// A picture on every texture knob.
void hangpictures() {
    static texture_c phonepicture, picture;
    phonepicture.load("gfx/woods.jpg", TEX_RGB);
    picture.load("gfx/whiteback.jpg", TEX_RGB | TEX_REPEAT);
    phonescreentex = phonepicture.textureid;
    texturetesttex = picture.textureid;
    drawinto(scrollertex_fbo, scrollertexgen);
    scrollertex = scrollertex_fbo->colortex;
    drawinto(orangetex_fbo, orangetexgen);
    orangetex = orangetex_fbo->colortex;
}

// Phone, ribbon and city before the camera.
void placecamera() {
    tunnelflyer.pos = {370.0f, -100.0f, -200.0f};
    phone_projection = util::perspective(70.0f, 1.0f, 30000.0f);
    phone_rotation_mv = util::rotate(glm::mat4(1.0f), -190.0f, {0.0f, 1.0f, 0.0f});
    phone_rotation_mv = util::rotate(phone_rotation_mv, -20.0f, {1.0f, 0.0f, 0.0f});
    phone_rotation_mv = util::rotate(phone_rotation_mv, 90.0f, {0.0f, 0.0f, 1.0f});
}

void usedepth() {
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
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
    placecamera();
    hangpictures();
    usedepth();
    for (;;) {
        if (beforeframe)
            beforeframe();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
        turnknobs(rehearsal.knobs);
        effect->draw();
        system_crap();
    }
}

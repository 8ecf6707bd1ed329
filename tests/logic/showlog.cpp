#include "showlog.h"

#include "3dphone.h"
#include "demo.h"
#include "effects.h"
#include "gldouble.h"
#include "main/capture.h"
#include "main/loop.h"
#include "main/startup.h"
#include "main/video.h"
#include "screenshot.h"
#include "services.h"
#include "testport.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <unistd.h>
#include <utility>

namespace showlog {

frame_s loading;
std::vector<frame_s> frames;
std::vector<std::string> setup;
std::function<void(const std::string& effect)> ondraw;

namespace {

frame_s current;

// Diverts standard error into a file and hands out what is new.
class stderrtap_c {
public:
    stderrtap_c() {
        fflush(stderr);
        dup2(fileno(file), STDERR_FILENO);
    }

    std::vector<std::string> newlines() {
        fflush(stderr);
        char buffer[4096];
        for (ssize_t n; (n = pread(fileno(file), buffer, sizeof buffer, offset)) > 0; offset += n)
            rest.append(buffer, static_cast<size_t>(n));
        std::vector<std::string> result;
        for (size_t end; (end = rest.find('\n')) != std::string::npos; rest.erase(0, end + 1))
            result.push_back(rest.substr(0, end));
        return result;
    }

private:
    FILE* file = tmpfile();
    off_t offset = 0;
    std::string rest;
};

std::unique_ptr<stderrtap_c> tap;

knobs_s knobs() {
    return {ylift,          sf_zchange,     starang,           ripsilu_mm,       gravforce,
            orbitradius,    rockety,        citybomb,          horizonbomb,      CityMaxDistance,
            gearAppear,     bumptgt,        scrollertex,       texturetesttex,   orangetex,
            citytex,        phonescreentex, phone_rotation_mv, phone_projection, tunnelflyer.pos,
            tunnelflyer.vel};
}

std::set<GLenum> enabled() {
    std::set<GLenum> result;
    for (GLenum capability : {GL_DEPTH_TEST, GL_STENCIL_TEST, GL_SCISSOR_TEST, GL_BLEND})
        if (gldouble::enabled(capability))
            result.insert(capability);
    return result;
}

// The director's calls since the last step.
void takecalls() {
    for (const std::string& call : gldouble::calls())
        current.steps.push_back(call);
    gldouble::clear();
}

void record(const std::string& name) {
    takecalls();
    if (ondraw)
        ondraw(name);
    current.steps.push_back("draw " + name);
    current.drawings.push_back({name, gldouble::framebuffer(), enabled(), knobs()});
}

class recorder_c : public demoeffect_c {
public:
    recorder_c(std::string effectname, demoeffect_c* realeffect)
        : name(std::move(effectname)), real(realeffect) {}

    void init() override {
        setup.push_back(name + ".init");
        if (real)
            real->init();
    }

    void initgl() override {
        setup.push_back(name + ".initgl");
        if (real)
            real->initgl();
    }

    void draw() override {
        record(name);
        if (real)
            real->draw();
        gldouble::clear();
    }

private:
    std::string name;
    demoeffect_c* real; // null: draws nothing
};

void replaceeffects(const std::set<std::string>& real) {
    for (const effectentry_s& entry : effectlist)
        entry.effect = new recorder_c(entry.name, real.count(entry.name) ? entry.effect : nullptr);
    screenshot = new recorder_c("screenshot", nullptr);
}

void recordphone(bool stencil) {
    record(stencil ? "phone with stencil" : "phone");
}

frame_s endframe() {
    takecalls();
    current.beat = beatgrid;
    current.time = timeval;
    current.ticks = frameskip;
    current.lines = tap->newlines();
    current.knobs = knobs();
    return std::exchange(current, {});
}

std::string targetname(GLuint target) {
    for (auto& [fbo, name] : {std::pair(orangetex_fbo, "orangetex"),
                              {orange_fbo, "orange"},
                              {scrollertex_fbo, "scrollertex"}})
        if (fbo->fbohandle == target)
            return name;
    return "unknown";
}

struct curtain_s {}; // leaves demo_run

} // namespace

std::string frame_s::picture() const {
    std::string text;
    for (const drawing_s& drawing : drawings) {
        text += (text.empty() ? "" : " ") + drawing.effect;
        if (drawing.target)
            text += ">" + targetname(drawing.target);
    }
    return text;
}

const drawing_s& frame_s::drawing(const std::string& effect) const {
    for (const drawing_s& drawing : drawings)
        if (drawing.effect == effect)
            return drawing;
    ADD_FAILURE() << effect << " is not drawn at beat " << beat;
    static const drawing_s nothing{};
    return nothing;
}

void load(const std::set<std::string>& real) {
    static Uint8 keys[SDLK_LAST] = {};
    testport_startsdl();
    if (services.threads == threads_t::real)
        services.threads = threads_t::none; // tests fork to see the show end
    tap = std::make_unique<stderrtap_c>();
    keystate = keys;
    video_w = testport.width;
    video_h = testport.height;
    testport.onpresent = [] { setup.push_back("present"); };
    replaceeffects(real);
    demo_config();
    take_screenshot();
    time_init();
    demo_init();
    demo_initgl();
    loading = endframe();
    draw_the_phone_ptr = recordphone;
}

void play(float endbeat, float skip, size_t limit) {
    testport.onpresent = [=] {
        frames.push_back(endframe());
        if (frames.back().beat >= endbeat || frames.size() >= limit)
            throw curtain_s();
    };
    timeval_skip = skip;
    time_init();
    try {
        demo_run();
    } catch (const curtain_s&) {
    }
}

const frame_s& at(float beat) {
    for (const frame_s& frame : frames)
        if (frame.beat >= beat)
            return frame;
    ADD_FAILURE() << "the show did not reach beat " << beat;
    static const frame_s nothing{};
    return nothing;
}

std::vector<std::string> lines(const std::string& prefix) {
    std::vector<std::string> result;
    for (const frame_s& frame : frames)
        for (const std::string& line : frame.lines)
            if (line.compare(0, prefix.size(), prefix) == 0)
                result.push_back(line);
    return result;
}

} // namespace showlog

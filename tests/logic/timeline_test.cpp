// The whole timeline beside a second telling of it: every call, line and knob of every frame, with
// frames of one tick, of several, of none, and with starts in the middle.
#include "3dphone.h"
#include "demo.h"
#include "effects.h"
#include "main/clock.h"
#include "main/startup.h"
#include "phoneflight.h"
#include "showlog.h"
#include "testport.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdlib>
#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>
#include <map>
#include <set>

namespace {

using glm::vec3;
using showlog::knobs_s;
using texts = std::vector<std::string>;

std::string text(const char* format, ...) {
    char line[200];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    return line;
}

// What the phone does to what it shares with the director, at the beats at which it does.
struct phoneflags_s {
    bool& white;
    bool& ready;
    vec3 &pos, &vel;

    void follow(float beat) const {
        white = white || beat >= 115.5f;
        if (beat < 129.14f || ready)
            return;
        pos = {0.0f, 0.0f, 0.5f};
        vel = {0.0f, 0.0f, 0.84f};
        ready = true;
    }
};

struct spring_s {
    float pos, target, acc, damp, vel;

    void step(int count) {
        for (int i = 0; i < count; ++i) {
            vel =
                (target - pos) * acc * std::min(1.0f, std::max(0.5f, std::fabs(vel))) + vel * damp;
            pos += vel;
        }
    }
};

glm::dmat4 turn(double degrees, double x, double y, double z) {
    return glm::rotate(glm::dmat4(1.0), degrees * 3.14159265358979 / 180.0, glm::dvec3(x, y, z));
}

glm::dmat4 move(double x, double y, double z) {
    return glm::translate(glm::dmat4(1.0), glm::dvec3(x, y, z));
}

// Vertical field of view of 70 degrees, 854 to 480, near 1, far 30000.
glm::mat4 lens() {
    const double f = 1.0 / std::tan(35.0 * 3.14159265358979 / 180.0);
    glm::mat4 m(0.0f);
    m[0][0] = static_cast<float>(f * 480.0 / 854.0);
    m[1][1] = static_cast<float>(f);
    m[2][2] = static_cast<float>(-30001.0 / 29999.0);
    m[2][3] = -1.0f;
    m[3][2] = static_cast<float>(-60000.0 / 29999.0);
    return m;
}

struct told_s {
    texts steps, lines;
    std::vector<knobs_s> draws; // at each draw
    knobs_s end;
};

struct curtain_s {};

// Tells what must happen, frame by frame, with the clock of the frames that were played.
class teller_c {
public:
    std::vector<told_s> told;

    explicit teller_c(const std::vector<showlog::frame_s>& played) : frames(played) {
        srand(1);
        try {
            tell();
        } catch (const curtain_s&) {
        }
    }

private:
    const std::vector<showlog::frame_s>& frames;
    size_t at = 0;
    told_s now;
    // The knobs as everything starts, except those that the warm-up wrote.
    knobs_s k{0.0f,
              0.0f,
              0.0f,
              0.0f,
              1.0f,
              70.0f,
              0.0f,
              0.0f,
              0.0f,
              1000.0f,
              0,
              0,
              0,
              0,
              0,
              0,
              screenshottex.textureid,
              glm::mat4(1.0f),
              glm::mat4(1.0f),
              vec3(0.0f),
              vec3(0.0f)};
    bool white = false, ready = false;
    std::set<std::string> added, queued, happened;

    float beat() const { return frames[at].beat; }
    float time() const { return frames[at].time; }
    int ticks() const { return frames[at].ticks; }

    void present() {
        now.end = k;
        told.push_back(std::exchange(now, {}));
        happened.insert(queued.begin(), queued.end());
        if (++at == frames.size())
            throw curtain_s();
    }

    void call(const std::string& step) { now.steps.push_back(step); }
    void say(const std::string& line) { now.lines.push_back(line); }

    void draw(const std::string& effect) {
        call("draw " + effect);
        if (effect == "flyphone")
            phoneflags_s{white, ready, k.flyerpos, k.flyervel}.follow(beat());
        now.draws.push_back(k);
    }

    void drawinto(const fbo_c* target, const texts& effects) {
        call(text("glBindFramebuffer(GL_FRAMEBUFFER, %u)", target->fbohandle));
        call("glGetIntegerv(GL_VIEWPORT)");
        call(text("glViewport(0, 0, %d, %d)", target->width_p, target->height_p));
        for (const std::string& effect : effects)
            draw(effect);
        call("glViewport(0, 0, 854, 480)");
        call("glBindFramebuffer(GL_FRAMEBUFFER, 0)");
    }

    bool past(const std::string& name, float when) {
        if (added.insert(name).second)
            say(text("adding event '%s' at time %.2f, spawn 0", name.c_str(), double(when)));
        return beat() >= when;
    }

    bool fires(const std::string& name, float when) {
        if (!past(name, when) || happened.count(name))
            return false;
        queued.insert(name);
        say(text("event '%s' happened! %.2f", name.c_str(), double(beat())));
        return true;
    }

    void clear() { call("glClear(COLOR|DEPTH)"); }

    void depth() {
        call("glEnable(GL_DEPTH_TEST)");
        call("glDepthFunc(GL_LESS)");
    }

    void tell() {
        for (const char* picture :
             {"gfx/whiteback.jpg as 9", "gfx/callscreen2.jpg as 1", "gfx/woods.jpg as 1"}) {
            say("no subtexes");
            say(text("loading normal 2D tex %s", picture));
            say("texture bpp: 24");
        }
        phone();
        credits();
        gearcity();
        ripples();
        solid();
        rocket();
        while (clear(), draw("face"), draw("fluid"), !fires("stopduce", 273))
            present();
        spaceflight();
    }

    // Names of the three pictures, which are loaded last of all.
    GLuint whiteback() const { return screenshottex.textureid + 1; }

    int generator = 0;
    bool scrolling = false;
    float revealed = 0.0f;
    spring_s distance{0.0f, 400.0f, 0.0002f, 0.98f, 0.0f};

    void phone() {
        for (;;) {
            call("glDisable(GL_DEPTH_TEST)");
            call("glDisable(GL_STENCIL_TEST)");
            scroller();
            phonescreen();
            if (!ready) {
                flight();
                if (!white) {
                    present();
                    continue;
                }
                for (const char* step :
                     {"glEnable(GL_STENCIL_TEST)", "glStencilFunc(GL_EQUAL, 1, 1)",
                      "glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP)", "glStencilMask(1)"})
                    call(step);
            }
            city();
            if (fires("stoptunnel", 160))
                return;
            present();
        }
    }

    void scroller() {
        scrolling = fires("startorbitscroller", 11) || scrolling;
        if (past("stoporbitscroller-bum", 48))
            k.orbitradius += static_cast<float>(ticks()) * 0.3f;
        if (fires("stoporbitscroller", 53))
            scrolling = false;
        else if (scrolling)
            drawinto(scrollertex_fbo, {"scrollertexgen", "pelvar"});
    }

    void phonescreen() {
        if (fires("phonetex_shot", 0))
            k.phonescreentex = screenshottex.textureid;
        const std::pair<const char*, float> sources[] = {
            {"phonetex_vxqlogo", 8.0f}, {"phonetex_mu", 32.0f}, {"phonetex_orange", 52.0f}};
        for (int i = 0; i < 3; ++i)
            if (fires(sources[i].first, sources[i].second)) {
                k.phonescreentex = orange_fbo->colortex;
                generator = i + 1;
            }
        if (fires("phonetex_callscreen", 104)) {
            generator = 0;
            k.phonescreentex = whiteback() + 1;
        } else if (generator == 1) {
            drawinto(orange_fbo, {"vxqlogo"});
        } else if (generator == 2) {
            drawinto(orange_fbo, {"mujuice"});
        } else if (generator == 3) {
            drawinto(orangetex_fbo, {"orangetexgen"});
            k.orangetex = orangetex_fbo->colortex;
            drawinto(orange_fbo, {"orange", "heart", "lace"});
        }
    }

    void flight() {
        call("glClearColor(0, 0, 0, 0)");
        call("glClear(COLOR|DEPTH|STENCIL)");
        if (white) {
            k.phonescreentex = whiteback() + 2;
            k.texturetesttex = whiteback();
            draw("texturetest");
        } else {
            draw("starfield");
        }
        depth();
        call("glEnable(GL_STENCIL_TEST)");
        draw("flyphone");
        k.scrollertex = scrollertex_fbo->colortex;
        if (scrolling)
            draw("orbitscroller");
    }

    void city() {
        revealed = static_cast<float>(std::min(revealed + ticks() / 480.0, 1.2083334));
        if (revealed < 0.8f) {
            const double height = (revealed + std::sin(time() * 3.0) * 0.04166) * 480;
            call(text("glScissor(0, 0, 854, %d)", static_cast<int>(height)));
            call("glEnable(GL_SCISSOR_TEST)");
        }
        k.citytex = orangetex_fbo->colortex;
        call("glEnable(GL_DEPTH_TEST)");
        k.flyerpos += static_cast<float>(ticks()) * k.flyervel;
        if (fires("tunnelupmove", 156))
            k.flyervel.y -= 1.0f;
        if (ready)
            distance = {distance.pos, 1000.0f, 0.0004f, 0.94f, distance.vel};
        distance.step(ticks());
        k.CityMaxDistance = distance.pos;
        say(text("CityMaxDistance: %.2f", double(distance.pos)));
        draw("zreset");
        draw("tunnel");
        call("glDisable(GL_SCISSOR_TEST)");
    }

    void credits() {
        depth();
        do {
            clear();
            draw("bump");
            present();
            const std::pair<const char*, float> views[] = {
                {"bump1", 165.0f}, {"bump2", 170.0f}, {"bump3", 173.0f}, {"bump4", 178.0f}};
            for (int i = 0; i < 4; ++i)
                if (fires(views[i].first, views[i].second))
                    k.bumptgt = 10 * (i + 1);
        } while (!fires("stopgear", 180));
    }

    void startcity(const vec3& place, const glm::dmat4& pose) {
        k.flyerpos = place;
        k.flyervel = vec3(0.0f);
        k.phone_projection = lens();
        k.phone_rotation_mv = glm::mat4(pose);
        depth();
    }

    void gear(int stage) {
        k.gearAppear = stage;
        draw("gear");
    }

    void gearcity() {
        k.CityMaxDistance = 1000.0f;
        startcity({370.0f, -100.0f, -200.0f},
                  turn(-190, 0, 1, 0) * turn(-20, 1, 0, 0) * turn(90, 0, 0, 1));
        k.gearAppear = 0;
        do {
            clear();
            k.flyerpos.z += static_cast<float>(ticks());
            draw("zreset");
            draw("tunnel");
            gear(1);
            present();
        } while (!fires("stopfly2", 208));
    }

    void ripples() {
        do {
            clear();
            draw("ripsilu");
            gear(1);
            k.ripsilu_mm = std::min(1.0f, std::max(0.0f, beat() - 211.0f));
            present();
        } while (!fires("stopbump", 212));
    }

    void solid() {
        depth();
        do {
            clear();
            draw("pbtausta");
            draw("dode");
            gear(2);
            present();
        } while (!fires("stopdode", 240));
    }

    void rocket() {
        startcity({0.0f, -100.0f, -200.0f}, turn(30, 0, 1, 0) * turn(90, 0, 0, 1));
        do {
            clear();
            k.flyerpos.x += static_cast<float>(ticks());
            k.flyerpos.z += static_cast<float>(ticks()) * 0.1f;
            draw("zreset");
            if (beat() > 248.0f) {
                k.rockety = (beat() - 250.0f) * 0.4f - 1.1f;
                k.citybomb = (beat() - 248.0f) * 0.2f;
                k.horizonbomb = (beat() - 248.0f) * 0.1f;
                k.flyerpos += jolt(static_cast<float>(ticks()) * std::max(0.0f, beat() - 250.0f));
            }
            draw("tunnel");
            present();
        } while (!fires("stopfly3", 256));
    }

    static vec3 jolt(float longest) {
        for (;;) {
            vec3 v;
            for (int i = 0; i < 3; ++i)
                v[i] = (static_cast<float>(rand()) * 0x1p-30f - 1.0f) * longest;
            if (glm::length(v) <= longest)
                return v;
        }
    }

    void pose(double ang, double zepo) {
        k.phone_rotation_mv =
            glm::mat4(turn(ang, 0, 1, 0) * move(0, 0, -70) * move(0, -30, 0) * turn(-110, 0, 1, 0) *
                      move(0, 0, zepo) * turn(-90, 1, 0, 0));
    }

    void spaceflight() {
        k.phone_projection = lens();
        float ang = 0.0f, zepo = 0.0f;
        for (;;) {
            clear();
            draw("starfield2");
            const float fallen = std::max(0.0f, beat() - 279.0f);
            k.ylift = -(fallen * 0.5f * fallen * 0.5f);
            for (int i = k.ylift > -1.0f ? 2 : 1; i > 0; --i)
                draw("face");
            ang = std::sqrt(fallen / 9.0f) * 117.0f;
            zepo = 300.0f - 50.0f * (beat() - 273.0f);
            k.starang = ang - 117.0f;
            pose(ang, zepo);
            draw("phone");
            if (fires("stopspacefly", 288))
                break;
            present();
        }
        finale({ang, ang, 0.01f, 0.94f, 0.02f}, {zepo, zepo + 10.0f, 0.1f, 0.94f, -0.9f});
    }

    void finale(spring_s ang, spring_s zepo) {
        depth();
        k.sf_zchange = 0.1f;
        for (;;) {
            clear();
            zepo.step(ticks());
            ang.step(ticks());
            k.starang = ang.pos - 117.0f;
            pose(ang.pos, zepo.pos);
            k.gravforce = static_cast<float>(std::sin(double(time())) * 0.1 + 1.0 +
                                             std::max(0.0f, beat() - 300.0f) * 0.02);
            draw("starfield2");
            draw("ballspring");
            if (past("textbox", 300))
                draw("textbox");
            draw("phone");
            present();
        }
    }
};

// Names what differs between two states of the knobs; numbers by two millionths of the largest of
// their kind.
texts differences(const knobs_s& got, const knobs_s& told) {
    texts found;
    const auto compare = [&](const char* name, const float* a, const float* b, int count,
                             float tolerance = 2e-6f) {
        float largest = 0.0f, off = 0.0f;
        for (int i = 0; i < count; ++i) {
            largest = std::max({largest, std::fabs(a[i]), std::fabs(b[i])});
            off = std::max(off, std::fabs(a[i] - b[i]));
        }
        if (!(off <= tolerance * std::max(largest, 0.1f)))
            found.push_back(text("%s is %g, not %g", name, double(*a), double(*b)));
    };
#define NUMBER(knob) compare(#knob, &got.knob, &told.knob, 1)
    NUMBER(ylift);
    NUMBER(sf_zchange);
    NUMBER(starang);
    NUMBER(ripsilu_mm);
    NUMBER(gravforce);
    NUMBER(orbitradius);
    NUMBER(rockety);
    NUMBER(citybomb);
    NUMBER(horizonbomb);
    NUMBER(CityMaxDistance);
#undef NUMBER
    compare("phone_rotation_mv", &got.phone_rotation_mv[0][0], &told.phone_rotation_mv[0][0], 16);
    for (int i = 0; i < 16; ++i) // each by its own size
        compare("phone_projection", &got.phone_projection[i / 4][i % 4],
                &told.phone_projection[i / 4][i % 4], 1, 4e-7f);
    compare("tunnelflyer.pos", &got.flyerpos.x, &told.flyerpos.x, 3);
    compare("tunnelflyer.vel", &got.flyervel.x, &told.flyervel.x, 3);
#define NAME(knob)                                                                                 \
    if (got.knob != told.knob)                                                                     \
    found.push_back(text("%s is %d, not %d", #knob, int(got.knob), int(told.knob)))
    NAME(gearAppear);
    NAME(bumptgt);
    NAME(scrollertex);
    NAME(texturetesttex);
    NAME(orangetex);
    NAME(citytex);
    NAME(phonescreentex);
#undef NAME
    return found;
}

struct play_s {
    const char* name;
    float start;            // seconds
    float end;              // beats
    std::vector<int> steps; // of the clock, milliseconds, in turns
};

void PrintTo(const play_s& play, std::ostream* out) {
    *out << play.name;
}

class timeline : public testing::TestWithParam<play_s> {
protected:
    void SetUp() override {
        showlog::load();
        showlog::ondraw = [turns = GetParam().steps,
                           n = size_t(0)](const std::string& name) mutable {
            testport.presentstep = turns[n++ % turns.size()] * 1000;
            if (name == "flyphone")
                phoneflags_s{show_whiteback, flyphone_tunnelready, tunnelflyer.pos, tunnelflyer.vel}
                    .follow(beatgrid);
        };
        srand(1);
        showlog::play(GetParam().end, GetParam().start);
    }
};

TEST_P(timeline, is_as_told_in_every_frame) {
    const teller_c teller(showlog::frames);
    ASSERT_EQ(teller.told.size(), showlog::frames.size());
    for (size_t i = 0; i < teller.told.size(); ++i) {
        SCOPED_TRACE(text("frame %zu, beat %.2f", i, double(showlog::frames[i].beat)));
        const showlog::frame_s& got = showlog::frames[i];
        const told_s& told = teller.told[i];
        const size_t pictures = i == 0 ? got.steps.size() - told.steps.size() : 0; // their loading
        ASSERT_EQ(texts(got.steps.begin() + static_cast<long>(pictures), got.steps.end()),
                  told.steps);
        ASSERT_EQ(got.lines, told.lines);
        for (size_t d = 0; d < told.draws.size(); ++d)
            ASSERT_EQ(differences(got.drawings[d].knobs, told.draws[d]), texts())
                << "at the draw of " << got.drawings[d].effect;
        ASSERT_EQ(differences(got.knobs, told.end), texts());
    }
}

INSTANTIATE_TEST_SUITE_P(
    frames, timeline,
    testing::Values(play_s{"of_a_tick", 0.0f, 320.0f, {20}}, play_s{"of_65_ms", 0.0f, 320.0f, {65}},
                    play_s{"of_changing_length", 0.0f, 320.0f, {3, 20, 41, 8, 65, 12, 130}},
                    play_s{"from_30_s", 30.0f, 60.0f, {20}},
                    play_s{"from_75_s", 75.0f, 130.0f, {20}},
                    play_s{"from_100_s", 100.0f, 165.0f, {33}},
                    play_s{"from_150_s", 150.0f, 242.0f, {65}},
                    play_s{"from_200_s", 200.0f, 330.0f, {20}}),
    [](const auto& info) { return info.param.name; });

} // namespace

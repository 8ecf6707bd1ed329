// The effects that draw one quad, or a few, over the screen: what they load, what their shaders are
// told, what state they draw with and leave behind.
#include "3dphone.h"
#include "effects.h"
#include "gldouble.h"
#include "main/clock.h"
#include "sync.h"
#include "testport.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using floats = std::vector<float>;

const floats unitquad = {0, 0, 1, 0, 0, 1, 1, 0, 1, 1, 0, 1};

const demoeffect_c* loaded = nullptr;

// Draws one frame, as the director would, and acknowledges its events.
void drawat(demoeffect_c* effect, double beat, int skip = 1) {
    if (loaded != effect)
        effect->initgl();
    loaded = effect;
    testport_setbeat(beat, skip);
    gldouble::clear();
    effect->draw();
    sync_ack();
}

const gldouble::draw_s& lastdraw() {
    return gldouble::draws().back();
}

float uniform(const std::string& name) {
    return lastdraw().uniforms.at(name).at(0);
}

bool called(const std::string& text) {
    return !gldouble::calls(text).empty();
}

std::string loadlog(demoeffect_c* effect) {
    testing::internal::CaptureStderr();
    effect->initgl();
    return testing::internal::GetCapturedStderr();
}

// A spring in double precision, written apart from the show's.
struct reference_s {
    double pos, target, acc, damp, vel = 0;

    void step(int count) {
        for (int i = 0; i < count; ++i) {
            vel = (target - pos) * acc * std::min(1.0, std::max(0.5, std::fabs(vel))) + vel * damp;
            pos += vel;
        }
    }
};

// What every member of the family does, in a table.

struct member_s {
    const char* name;
    demoeffect_c*& effect;
    std::vector<std::string> pictures; // "path as flags", in the order of loading
    std::vector<std::string> uniforms; // that its shaders declare, samplers aside
    bool uv;                           // its vertex shader takes texture coordinates
    bool blended;
    int units; // texture units that it binds
};

void PrintTo(const member_s& member, std::ostream* out) {
    *out << member.name;
}

const member_s family[] = {
    {"lace", lace, {"gfx/lacetrace.jpg as 9"}, {"time", "distdist"}, true, true, 1},
    {"texturetest", texturetest, {}, {"time"}, false, false, 1},
    {"pelvar", pelvar, {"gfx/roses.png as 8"}, {"time", "beatgrid", "distdist"}, true, true, 1},
    {"face",
     face,
     {"gfx/face.jpg as 1", "gfx/kallotausta.jpg as 1"},
     {"time", "u_mm", "u_mmx", "ym"},
     false,
     false,
     1},
    {"ripsilu", ripsilu, {"gfx/ripsilu.jpg as 1"}, {"time", "u_mm"}, false, false, 1},
    {"vxqlogo",
     vxqlogo,
     {"gfx/vxqlogo.jpg as 1", "gfx/vxqlogomask.jpg as 1"},
     {"time"},
     false,
     false,
     2},
    {"orangetexgen",
     orangetexgen,
     {"gfx/bubbles.jpg as 9", "gfx/jeans.jpg as 9"},
     {"time", "bubemph"},
     true,
     false,
     2},
    {"gear", gear, {"gfx/gear.png as 0"}, {"time", "ratpos"}, false, true, 1},
    {"orange", orange, {}, {"time", "contract"}, false, false, 1},
    {"mujuice",
     mujuice,
     {"gfx/mujuice.jpg as 1", "gfx/mujuice2.jpg as 1"},
     {"time"},
     false,
     false,
     2},
    {"zreset", zreset, {"gfx/darkmetal.jpg as 1"}, {"bombsize", "u_pitch"}, false, false, 1},
    {"rocket9", rocket9, {}, {"time", "phonepos"}, true, true, 1},
    {"pbtausta", pbtausta, {"gfx/pb.jpg as 1"}, {"time"}, false, false, 1},
    {"heart", heart, {"gfx/heart.png as 0", "gfx/gone.png as 0"}, {"brite", "zoom"}, true, true, 1},
};

class fullscreen : public testing::TestWithParam<member_s> {
protected:
    // Some frames in, with the gear on the screen.
    void SetUp() override {
        gearAppear = 1;
        for (int i = 0; i < 200; ++i)
            drawat(GetParam().effect, 90.5);
    }
};

TEST_P(fullscreen, draws_quads_with_pos_and_where_declared_uv) {
    ASSERT_FALSE(gldouble::draws().empty());
    const auto& draw = gldouble::draws()[0];
    EXPECT_EQ(draw.mode, GLenum(GL_TRIANGLES));
    EXPECT_EQ(draw.first, 0);
    EXPECT_EQ(draw.count, 6);
    EXPECT_EQ(draw.attributes.at("pos"), unitquad);
    EXPECT_EQ(draw.components.at("pos"), 2);
    EXPECT_EQ(draw.attributes.count("uv"), GetParam().uv ? 1u : 0u);
}

TEST_P(fullscreen, sets_the_uniforms_that_its_shaders_declare) {
    for (const std::string& name : GetParam().uniforms)
        EXPECT_EQ(lastdraw().uniforms.count(name), 1u) << name;
}

TEST_P(fullscreen, blends_only_while_it_draws) {
    for (const auto& draw : gldouble::draws()) {
        EXPECT_EQ(draw.enabled.count(GL_BLEND), GetParam().blended ? 1u : 0u);
        if (GetParam().blended) {
            EXPECT_EQ(draw.blendsrc, GLenum(GL_SRC_ALPHA));
            EXPECT_EQ(draw.blenddst, GLenum(GL_ONE_MINUS_SRC_ALPHA));
        }
    }
    EXPECT_FALSE(gldouble::enabled(GL_BLEND));
}

TEST_P(fullscreen, switches_both_arrays_off_whether_it_had_them_or_not) {
    EXPECT_TRUE(called("glDisableVertexAttribArray(pos)"));
    EXPECT_TRUE(called(GetParam().uv ? "glDisableVertexAttribArray(uv)"
                                     : "glDisableVertexAttribArray(-1)"));
    EXPECT_FALSE(gldouble::arrayenabled("pos"));
    EXPECT_FALSE(gldouble::arrayenabled("uv"));
}

TEST_P(fullscreen, leaves_depth_stencil_and_target_alone) {
    EXPECT_FALSE(called("glDepthMask"));
    EXPECT_FALSE(called("glStencil"));
    EXPECT_FALSE(called("glClear"));
    EXPECT_FALSE(called("glViewport"));
    EXPECT_FALSE(called("glBindFramebuffer"));
    EXPECT_EQ(called("glDepthFunc"), GetParam().effect == zreset);
}

TEST_P(fullscreen, gives_units_to_the_samplers_it_names_and_to_no_other) {
    EXPECT_EQ(lastdraw().uniforms.at("tex"), floats{0});
    if (GetParam().units == 2)
        EXPECT_EQ(lastdraw().uniforms.at("tex2"), floats{1});
    else
        EXPECT_EQ(lastdraw().uniforms.count("tex2"), 0u) << "it must go on reading unit 0";
}

TEST_P(fullscreen, writes_every_uniform_without_asking_whether_it_is_there) {
    EXPECT_EQ(called("glUniform1f(-1,"),
              GetParam().effect == orangetexgen || GetParam().effect == zreset);
}

TEST_P(fullscreen, loads_its_pictures_in_order) {
    const std::string log = loadlog(GetParam().effect);
    size_t place = 0, count = 0;
    for (const std::string& picture : GetParam().pictures) {
        const size_t found = log.find("2D tex " + picture + "\n", place);
        ASSERT_NE(found, std::string::npos) << picture << " is not in:\n" << log;
        place = found;
    }
    for (size_t at = log.find("2D tex "); at != std::string::npos; at = log.find("2D tex ", at + 1))
        ++count;
    EXPECT_EQ(count, GetParam().pictures.size());
}

INSTANTIATE_TEST_SUITE_P(family, fullscreen, testing::ValuesIn(family),
                         [](const auto& info) { return info.param.name; });

// What each of them does of its own.

TEST(texturetest, shows_the_texture_of_the_knob_and_repeats_it) {
    texturetesttex = 41;
    drawat(texturetest, 10);
    EXPECT_EQ(lastdraw().textures.at(0), 41u);
    texturetesttex = 42;
    drawat(texturetest, 10);
    EXPECT_EQ(lastdraw().textures.at(0), 42u);
    EXPECT_FLOAT_EQ(uniform("time"), timeval);
}

TEST(pelvar, saws_from_two_to_one_every_two_beats) {
    const std::pair<double, float> saw[] = {
        {0.0, 1.5f},  {0.5, 1.25f}, {0.98, 1.01f}, {1.0, 2.0f},  {2.0, 1.5f},
        {2.5, 1.25f}, {3.0, 2.0f},  {-0.5, 1.75f}, {-1.0, 2.0f}, {20.5, 1.25f}};
    for (const auto& [beat, value] : saw) {
        drawat(pelvar, beat);
        EXPECT_NEAR(uniform("beatgrid"), value, 1e-5) << beat;
    }
}

TEST(pelvar, uncovers_with_the_logic_ticks) {
    drawat(pelvar, 20, 0);
    EXPECT_FLOAT_EQ(uniform("distdist"), 6.0f);
    drawat(pelvar, 20, 1);
    EXPECT_FLOAT_EQ(uniform("distdist"), 5.99f);
    drawat(pelvar, 20, 4);
    EXPECT_FLOAT_EQ(uniform("distdist"), 5.95f);
}

TEST(face, backdrop_comes_from_white_holds_and_fades_to_black) {
    struct {
        double beat;
        float mmx, mm;
    } const moments[] = {{-3, 1, -1},   {0, 1, -1},       {1, 1, -0.5f},
                         {4, 1, 0},     {11.9, 1, 0},     {12, 1, 0},
                         {13, 0.5f, 0}, {13.5, 0.25f, 0}, {13.999, 0.0005f, 0}};
    for (const auto& moment : moments) {
        drawat(face, 256 + moment.beat);
        EXPECT_NEAR(uniform("u_mmx"), moment.mmx, 1e-4) << moment.beat;
        EXPECT_NEAR(uniform("u_mm"), moment.mm, 1e-4) << moment.beat;
        EXPECT_NEAR(uniform("time"), moment.beat, 1e-4);
    }
}

TEST(face, is_fully_black_at_beat_14_and_rises_until_16) {
    drawat(face, 269.9);
    const GLuint backdrop = lastdraw().textures.at(0);
    drawat(face, 270);
    EXPECT_NE(lastdraw().textures.at(0), backdrop);
    const std::pair<double, float> dims[] = {{14, 1.0f}, {15, 0.5f}, {16, 0.0f}, {30, 0.0f}};
    for (const auto& [beat, dim] : dims) {
        drawat(face, 256 + beat);
        EXPECT_FLOAT_EQ(uniform("u_mmx"), 1.0f);
        EXPECT_FLOAT_EQ(uniform("u_mm"), dim) << beat;
    }
}

TEST(face, sits_on_its_knob) {
    ylift = 0;
    drawat(face, 270);
    EXPECT_FLOAT_EQ(lastdraw().uniforms.at("ym").at(0), -1.0f);
    EXPECT_FLOAT_EQ(lastdraw().uniforms.at("ym").at(1), -1.08f);
    ylift = -0.25f;
    drawat(face, 270);
    EXPECT_FLOAT_EQ(lastdraw().uniforms.at("ym").at(1), -0.83f);
}

TEST(ripsilu, hands_its_knob_on) {
    ripsilu_mm = 0.4f;
    drawat(ripsilu, 211.5);
    EXPECT_FLOAT_EQ(uniform("u_mm"), 0.4f);
    EXPECT_FLOAT_EQ(uniform("time"), 51.5f);
}

TEST(orangetexgen, flares_once_at_beat_96) {
    for (int i = 0; i < 20; ++i) {
        drawat(orangetexgen, 95.9);
        EXPECT_FLOAT_EQ(uniform("bubemph"), 1.0f);
    }
    drawat(orangetexgen, 96);
    EXPECT_FLOAT_EQ(uniform("bubemph"), 2.3f);
    reference_s spring{2.3, 1.0, 0.004, 0.96};
    for (int i = 0; i < 300; ++i) {
        drawat(orangetexgen, 96.1, 2);
        spring.step(2);
        ASSERT_NEAR(uniform("bubemph"), spring.pos, 1e-4) << i;
    }
}

TEST(orange, shows_the_texture_of_the_knob) {
    orangetex = 7;
    drawat(orange, 60);
    EXPECT_EQ(lastdraw().textures.at(0), 7u);
}

TEST(orange, sways_and_then_stays_open) {
    for (double seconds : {0.0, 3.0, 10.0, 20.0, 25.0, 60.0}) {
        drawat(orange, (seconds - 0.128) / 0.634875);
        const double m = std::min(1.0, seconds * 0.04);
        EXPECT_NEAR(uniform("contract"), std::sin(seconds) * (1 - m) + m * -1.5, 1e-5) << seconds;
    }
    EXPECT_FLOAT_EQ(uniform("contract"), -1.5f);
}

TEST(vxqlogo, puts_the_mask_on_unit_1) {
    drawat(vxqlogo, 10);
    EXPECT_NE(lastdraw().textures.at(0), lastdraw().textures.at(1));
    EXPECT_FLOAT_EQ(uniform("time"), timeval);
}

TEST(gear, stays_hidden_in_stage_0) {
    gearAppear = 0;
    for (int i = 0; i < 2000; ++i) {
        drawat(gear, 185);
        ASSERT_TRUE(gldouble::draws().empty()) << "frame " << i;
    }
}

// The frames of `count` in which the gear must be seen, and where.
void followgear(reference_s& x, reference_s& y, int count, int skip) {
    for (int i = 0; i < count; ++i) {
        drawat(gear, 190, skip);
        x.step(skip);
        y.step(skip);
        if (std::fabs(x.pos - 1.4) < 1e-5)
            continue;
        ASSERT_EQ(gldouble::draws().size(), x.pos < 1.4 ? 1u : 0u) << i << " at " << x.pos;
        if (gldouble::draws().empty())
            continue;
        ASSERT_NEAR(lastdraw().uniforms.at("ratpos").at(0), x.pos, 1e-4);
        ASSERT_NEAR(lastdraw().uniforms.at("ratpos").at(1), y.pos, 1e-4);
    }
}

TEST(gear, rolls_in_waits_and_leaves_upwards) {
    reference_s x{2.0, 1.5, 0.02, 0.095}, y{0.8, 0.8, 0.02, 0.095};
    gearAppear = 0;
    followgear(x, y, 800, 1);
    EXPECT_NEAR(x.pos, 1.5, 1e-2);
    gearAppear = 1;
    x.target = 0.9;
    followgear(x, y, 400, 2);
    EXPECT_NEAR(x.pos, 0.9, 1e-2);
    EXPECT_FLOAT_EQ(uniform("time"), beatgrid);
    gearAppear = 2;
    x.target = 1.5;
    y.target = 1.2;
    followgear(x, y, 800, 1);
    EXPECT_TRUE(gldouble::draws().empty());
}

TEST(gear, an_unknown_stage_leaves_the_target) {
    gearAppear = 1;
    reference_s x{2.0, 0.9, 0.02, 0.095}, y{0.8, 0.8, 0.02, 0.095};
    followgear(x, y, 50, 1);
    gearAppear = 3;
    followgear(x, y, 400, 1);
    gearAppear = -1;
    followgear(x, y, 400, 1);
    EXPECT_NEAR(x.pos, 0.9, 1e-2);
}

TEST(zreset, overwrites_any_depth_and_puts_the_test_back) {
    drawat(zreset, 120);
    EXPECT_EQ(lastdraw().depthfunc, GLenum(GL_ALWAYS));
    EXPECT_TRUE(lastdraw().depthmask);
    EXPECT_EQ(gldouble::calls("glDepthFunc"),
              (std::vector<std::string>{"glDepthFunc(GL_ALWAYS)", "glDepthFunc(GL_LESS)"}));
}

TEST(zreset, stays_level_and_flashes_by_its_knob) {
    camPitch = 30;
    horizonbomb = 0.7f;
    drawat(zreset, 250);
    EXPECT_EQ(uniform("u_pitch"), 0.0f);
    EXPECT_FLOAT_EQ(uniform("bombsize"), 0.7f);
}

TEST(rocket9, is_cut_from_the_phones_texture) {
    nysitex.textureid = 23;
    rockety = 0.6f;
    drawat(rocket9, 250);
    EXPECT_EQ(lastdraw().textures.at(0), 23u);
    EXPECT_EQ(lastdraw().uniforms.at("phonepos"), (floats{0, 0.6f}));
    EXPECT_EQ(lastdraw().attributes.at("uv"),
              (floats{0, 0.4f, 0.8f, 0.4f, 0, 0.8f, 0.8f, 0.4f, 0.8f, 0.8f, 0, 0.8f}));
    EXPECT_FLOAT_EQ(uniform("time"), 250.0f);
}

TEST(rocket9, flickers_at_its_left_end_by_one_draw_a_frame) {
    drawat(rocket9, 250);
    srand(5);
    const float first = 0.8f + 0.2f * static_cast<float>(rand()) * 0x1p-31f;
    const float second = 0.8f + 0.2f * static_cast<float>(rand()) * 0x1p-31f;
    srand(5);
    for (float glow : {first, second}) {
        drawat(rocket9, 250);
        const floats col = lastdraw().attributes.at("col");
        ASSERT_EQ(col.size(), 6u);
        for (size_t i = 0; i < 6; ++i)
            EXPECT_FLOAT_EQ(col[i], unitquad[i * 2] == 0 ? glow : 0.0f) << i;
    }
    EXPECT_FALSE(gldouble::arrayenabled("col"));
}

int letterquads() {
    int vertices = 0;
    for (size_t i = 1; i < gldouble::draws().size(); ++i)
        vertices += gldouble::draws()[i].count;
    return vertices / 6;
}

TEST(heart, one_more_letter_on_each_beat_after_59) {
    const std::pair<double, int> letters[] = {{-1.0, 0}, {40.0, 0}, {59.5, 0}, {59.99, 0},
                                              {60.0, 1}, {60.9, 1}, {61.2, 2}, {62.5, 3},
                                              {63.0, 4}, {64.0, 4}, {103.7, 4}};
    for (const auto& [beat, count] : letters) {
        drawat(heart, beat);
        EXPECT_EQ(letterquads(), count) << beat;
    }
}

TEST(heart, lays_four_letters_in_a_row) {
    drawat(heart, 70);
    const floats pos = lastdraw().attributes.at("pos"), uv = lastdraw().attributes.at("uv");
    ASSERT_EQ(pos.size(), 48u);
    ASSERT_EQ(uv.size(), 48u);
    for (size_t i = 0; i < 24; ++i) {
        const float letter = static_cast<float>(i / 6);
        const float cx = unitquad[i % 6 * 2], cy = unitquad[i % 6 * 2 + 1];
        EXPECT_NEAR(pos[i * 2], -0.27f + 0.4f * (letter + cx), 1e-6) << i;
        EXPECT_NEAR(pos[i * 2 + 1], 0.4f + 0.35f * cy, 1e-6) << i;
        EXPECT_NEAR(uv[i * 2], 0.01f + 0.262f * (letter + cx), 1e-6) << i;
        EXPECT_NEAR(uv[i * 2 + 1], cy, 1e-6) << i;
    }
    EXPECT_NEAR(uv[44], 1.058f, 1e-6) << "the last letter reaches past the picture";
}

TEST(heart, the_heart_beats_and_the_letters_do_not) {
    reference_s zoom{1.0, 1.0, 0.01, 0.95};
    for (int frame = 0; frame < 200; ++frame) {
        const double beat = 70 + frame * 0.04;
        drawat(heart, beat, 2);
        if (beat - std::floor(beat) < 0.0999)
            zoom.pos = 1.1;
        zoom.step(2);
        ASSERT_NEAR(gldouble::draws()[0].uniforms.at("zoom").at(0), zoom.pos, 1e-4) << beat;
        ASSERT_FLOAT_EQ(gldouble::draws()[1].uniforms.at("zoom").at(0), 1.0f);
    }
}

TEST(heart, both_breathe_at_their_own_rates) {
    drawat(heart, 73.3);
    const auto& draws = gldouble::draws();
    EXPECT_NEAR(draws[0].uniforms.at("brite").at(0), 0.9 + std::sin(timeval * 1.4321) * 0.1, 1e-4);
    EXPECT_NEAR(draws[1].uniforms.at("brite").at(0), 0.9 + std::sin(timeval * 1.2321) * 0.1, 1e-4);
    EXPECT_NE(draws[0].textures.at(0), draws[1].textures.at(0));
    EXPECT_EQ(gldouble::calls("glEnable(").size(), 1u) << "one blend for both";
}

} // namespace

// The two lines of text, the glyph sheet that they read, and the ribbon that wears one of them.
#include "3dphone.h"
#include "effects.h"
#include "gldouble.h"
#include "glyphs.h"
#include "main/clock.h"
#include "testport.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <glm/gtc/type_ptr.hpp>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace {

using floats = std::vector<float>;

const demoeffect_c* loaded = nullptr;

void drawat(demoeffect_c* effect, double beat, int skip = 1) {
    if (loaded != effect)
        effect->initgl();
    loaded = effect;
    testport_setbeat(beat, skip);
    gldouble::clear();
    effect->draw();
}

const gldouble::draw_s& lastdraw() {
    return gldouble::draws().back();
}

// One drawn cell, read back from what GL got.
struct seen_s {
    int slot;
    int glyph;
    double x, y;          // centre, cell space
    double width, height; // height is negative where the first corner lies on top
    floats uv;            // of its six vertices
};

std::vector<seen_s> seen() {
    std::vector<seen_s> cells;
    const floats &pos = lastdraw().attributes.at("pos"), &uv = lastdraw().attributes.at("uv");
    for (int slot = 0; slot < 48; ++slot) {
        const float* p = &pos[static_cast<size_t>(slot) * 12];
        const float* t = &uv[static_cast<size_t>(slot) * 12];
        if (std::all_of(p, p + 12, [](float value) { return value == 0; }))
            continue;
        const int col = static_cast<int>(std::floor(t[0] * 32));
        const int row = static_cast<int>(std::floor(t[5] * 4));
        cells.push_back({slot, (3 - row) * 32 + col, (p[0] + p[2]) / 2.0, (p[1] + p[5]) / 2.0,
                         p[2] - p[0], p[5] - p[1], floats(t, t + 12)});
    }
    return cells;
}

std::string words() {
    std::string text(48, '_');
    for (const seen_s& cell : seen())
        text[static_cast<size_t>(cell.slot)] =
            static_cast<char>(glyphs::font[static_cast<size_t>(cell.glyph)]);
    return text;
}

// Everything that a scroller shows from now until `frames` more are drawn, each character once, as
// it comes in on the right.
std::string readcrawl(demoeffect_c* effect, int frames) {
    std::string text;
    double last = 0;
    for (int i = 0; i < frames; ++i) {
        drawat(effect, 0.5);
        const auto cells = seen();
        const bool rightmost = !cells.empty() && cells.back().slot == 47;
        const double x = cells.empty() ? last : cells.front().x - cells.front().slot;
        if (x > last && !cells.empty())
            text += rightmost
                        ? static_cast<char>(glyphs::font[static_cast<size_t>(cells.back().glyph)])
                        : '_';
        last = x;
    }
    return text;
}

// Frames until the cells read as `text`, having read otherwise before.
int framesuntil(demoeffect_c* effect, const std::string& text) {
    bool elsewhere = false;
    for (int frame = 1; frame < 10000; ++frame) {
        drawat(effect, 0.5);
        const bool there = words().compare(0, text.size(), text) == 0;
        if (there && elsewhere)
            return frame;
        elsewhere = elsewhere || !there;
    }
    return -1;
}

// The sheet.

TEST(glyphs, stand_in_the_order_of_the_sheet) {
    EXPECT_EQ(glyphs::font.size(), 97u);
    const std::pair<char32_t, int> places[] = {
        {U'@', 0},  {U'a', 1},  {U'z', 26}, {U'[', 27}, {U'$', 28},     {U']', 29}, {U'^', 30},
        {U' ', 32}, {U'!', 33}, {U'+', 43}, {U'-', 45}, {U'0', 48},     {U'9', 57}, {U':', 58},
        {U'?', 63}, {U'A', 65}, {U'Z', 90}, {U'|', 93}, {U'\u00A8', 96}};
    for (const auto& [character, place] : places)
        EXPECT_EQ(glyphs::index(character), place) << char(character);
    for (int c = 0x21; c <= 0x3f; ++c)
        EXPECT_EQ(glyphs::index(static_cast<char32_t>(c)), c == '$' ? 28 : c - 0x21 + 33);
    EXPECT_EQ(glyphs::font[31], U'^');
    EXPECT_EQ(glyphs::font[64], U'-');
    EXPECT_EQ(glyphs::font[91], U'+');
}

TEST(glyphs, cells_lie_row_by_row_from_the_top) {
    const glyphs::cell_s at = glyphs::cell(0);
    EXPECT_FLOAT_EQ(at.u_lo, 0.01f / 32);
    EXPECT_FLOAT_EQ(at.u_hi, 0.96f / 32);
    EXPECT_FLOAT_EQ(at.v_lo, 3.04f / 4);
    EXPECT_FLOAT_EQ(at.v_hi, 3.96f / 4);
    const glyphs::cell_s z = glyphs::cell(90);
    EXPECT_FLOAT_EQ(z.u_lo, 26.01f / 32);
    EXPECT_FLOAT_EQ(z.v_lo, 1.04f / 4);
    EXPECT_FLOAT_EQ(glyphs::cell(96).v_hi, 0.96f / 4);
}

TEST(glyphs, an_unknown_character_takes_the_cell_before_the_first) {
    EXPECT_EQ(glyphs::index(U'\u00E9'), -1);
    const glyphs::cell_s cell = glyphs::cell(-1);
    EXPECT_FLOAT_EQ(cell.u_lo, -0.99f / 32);
    EXPECT_NEAR(cell.u_hi, -0.04f / 32, 1e-8);
    EXPECT_FLOAT_EQ(cell.v_lo, 3.04f / 4);
    glyphs::line_c line(std::u32string(48, U'\u00E9'));
    line.put(0, 1.0f, 0.5f, 0.5f);
    EXPECT_FLOAT_EQ(line.uv[0].x, -0.99f / 32);
}

// The line.

TEST(line, wraps_when_its_last_character_has_been_shown) {
    std::u32string text;
    for (char32_t i = 0; i < 51; ++i)
        text += static_cast<char32_t>(1000 + i);
    glyphs::line_c line(text);
    line.advance(0.001);
    for (char32_t first : {0, 1, 2, 3, 0, 1}) {
        EXPECT_EQ(line.at(0), 1000 + first);
        EXPECT_EQ(line.at(47), 1047 + first);
        line.advance(1.0);
    }
}

TEST(line, moves_on_only_beyond_a_whole_character) {
    glyphs::line_c line(std::u32string(50, U'a'));
    line.advance(1.0);
    line.put(0, 1.0f, 0.5f, 0.5f);
    EXPECT_FLOAT_EQ(line.pos[0].x, -1.0f) << "0.5 - 1 - half a width";
    line.clear();
    line.advance(0.25);
    line.put(0, 1.0f, 0.5f, 0.5f);
    EXPECT_FLOAT_EQ(line.pos[0].x, -0.25f);
}

TEST(line, adds_its_steps_in_double_precision) {
    glyphs::line_c line(std::u32string(60, U'a'));
    float ofs = 0.0f;
    for (int i = 0; i < 100; ++i) {
        const double step = 0.23 * (1 + i % 3);
        line.advance(step);
        ofs = static_cast<float>(ofs + step);
        while (ofs > 1.0f)
            ofs -= 1.0f;
        line.put(0, 1.0f, 0.5f, 0.5f);
        ASSERT_EQ(line.pos[0].x, (0.5f - ofs) - 0.5f) << i;
    }
}

// Glyphs of width 1, so that nothing but the scroll places them, over frames of any length.
void followscroll(demoeffect_c* effect, double speed) {
    float ofs = 0.0f;
    for (int i = 0; i < 60; ++i) {
        srand(1); // whose first draws kick nothing
        const int skip = i % 5;
        drawat(effect, 300.5, skip);
        ofs = static_cast<float>(ofs + skip * speed);
        while (ofs > 1.0f)
            ofs -= 1.0f;
        for (const seen_s& cell : seen()) {
            const float centre = static_cast<float>(cell.slot) + (0.5f - ofs);
            ASSERT_EQ(lastdraw().attributes.at("pos")[static_cast<size_t>(cell.slot) * 12],
                      centre - 0.5f)
                << "frame " << i;
            break;
        }
    }
}

TEST(textbox, adds_its_steps_in_double_precision) {
    followscroll(textbox, 0.24);
}

TEST(scrollertexgen, adds_its_steps_in_double_precision) {
    followscroll(scrollertexgen, 0.23);
}

TEST(line, takes_a_frame_of_many_characters) {
    std::u32string text(60, U'a');
    text[7] = U'b';
    glyphs::line_c line(text);
    line.advance(7.5);
    EXPECT_EQ(line.at(0), U'b');
    line.advance(13.0);
    EXPECT_EQ(line.at(0), U'b') << "13 places in all";
}

TEST(line, puts_a_glyph_as_two_triangles_with_its_top_at_the_first_corner) {
    glyphs::line_c line(std::u32string(48, U'@'));
    line.put(2, 1.5f, 0.5f, 0.5f);
    const float l = 2.5f - 0.75f, r = 2.5f + 0.75f, b = -0.25f, t = 1.25f;
    const float pos[] = {l, b, r, b, l, t, r, b, r, t, l, t};
    const glyphs::cell_s c = glyphs::cell(0);
    const float uv[] = {c.u_lo, c.v_hi, c.u_hi, c.v_hi, c.u_lo, c.v_lo,
                        c.u_hi, c.v_hi, c.u_hi, c.v_lo, c.u_lo, c.v_lo};
    for (int i = 0; i < 12; ++i) {
        EXPECT_FLOAT_EQ((&line.pos[12].x)[i], pos[i]) << i;
        EXPECT_FLOAT_EQ((&line.uv[12].x)[i], uv[i]) << i;
    }
    line.clear();
    EXPECT_EQ(line.pos[12], glm::vec2(0.0f));
}

// Both scrollers against a reference of their own: which cells, how large, how many random draws.

struct reference_s {
    double pos, acc, damp, vel = 0;

    void step(int count) {
        for (int i = 0; i < count; ++i) {
            vel = -pos * acc * std::min(1.0, std::max(0.5, std::fabs(vel))) + vel * damp;
            pos += vel;
        }
    }
};

double draw() {
    return rand() * 0x1p-31;
}

void discard(int count) {
    for (int i = 0; i < count; ++i)
        rand();
}

bool onbeat(double beat) {
    return beat - std::floor(beat) < 0.1;
}

void kick(reference_s& spring, bool allowed, double often, double seldom, int skip) {
    if (draw() > often && allowed)
        spring.pos = 1.0;
    if (draw() > seldom)
        spring.pos += 0.1;
    spring.step(skip);
}

// Draws the same random numbers as the frame just drawn did, and gives back the sizes of its cells.
std::vector<double> stripsizes(reference_s& spring, double beat, int skip) {
    std::vector<double> sizes;
    for (const seen_s& cell : seen()) {
        kick(spring, onbeat(beat), 0.9, 0.999, skip);
        discard(12);
        sizes.push_back((std::sin(double(cell.slot + timeval)) * 0.5 + 0.5) * spring.pos + 1.0);
    }
    return sizes;
}

std::vector<double> boxsizes(reference_s& beats, reference_s& wobble, double beat, int skip) {
    std::vector<double> sizes;
    for (const seen_s& cell : seen()) {
        kick(beats, onbeat(beat), 0.9, 0.999, skip);
        kick(wobble, true, 0.999, 0.99, skip);
        discard(12);
        sizes.push_back((std::sin(double(cell.slot + timeval)) * 0.5 + 0.5) * beats.pos +
                        (std::sin((cell.slot + wobble.pos * 20.0) * 0.7) * 0.3 + 0.3) * wobble.pos +
                        1.0);
    }
    return sizes;
}

// Runs a scroller and its reference side by side over the same random numbers.
template<class S>
void followsizes(demoeffect_c* effect, S sizes) {
    drawat(effect, 300.5, 0);
    double largest = 0;
    for (int frame = 0; frame < 1200; ++frame) {
        const double beat = 300.5 + frame * 0.0315;
        const int skip = frame % 3;
        const auto seed = static_cast<unsigned>(1000 + frame);
        srand(seed);
        drawat(effect, beat, skip);
        const int after = rand();
        srand(seed);
        const std::vector<double> expected = sizes(beat, skip);
        ASSERT_EQ(rand(), after) << "another count of random draws in frame " << frame;
        const auto cells = seen();
        for (size_t i = 0; i < cells.size(); ++i) {
            ASSERT_NEAR(cells[i].width, expected[i], 2e-3) << "frame " << frame << " cell " << i;
            largest = std::max(largest, expected[i]);
        }
    }
    EXPECT_GT(largest, 1.5) << "no kick was seen";
}

TEST(scrollertexgen, swells_and_draws_random_numbers_cell_by_cell) {
    reference_s spring{0, 0.001, 0.95};
    followsizes(scrollertexgen,
                [&](double beat, int skip) { return stripsizes(spring, beat, skip); });
}

TEST(textbox, swells_wobbles_and_draws_random_numbers_cell_by_cell) {
    reference_s beats{0, 0.001, 0.95}, wobble{0, 0.001, 0.9};
    followsizes(textbox,
                [&](double beat, int skip) { return boxsizes(beats, wobble, beat, skip); });
}

TEST(scrollertexgen, moves_23_hundredths_of_a_cell_a_tick) {
    drawat(scrollertexgen, 0.5, 400);
    const double before = seen().front().x;
    drawat(scrollertexgen, 0.5, 0);
    EXPECT_NEAR(seen().front().x, before, 1e-5);
    drawat(scrollertexgen, 0.5, 1);
    const double after = seen().front().x;
    EXPECT_NEAR(std::fmod(before - after + 1.0, 1.0), 0.23, 1e-4);
}

TEST(scrollertexgen, starts_empty_and_shows_its_first_letter_after_four_cells) {
    int frame = 0;
    do {
        drawat(scrollertexgen, 0.5);
        ++frame;
    } while (seen().empty() && frame < 100);
    EXPECT_EQ(frame, 18) << "18 x 0.23 is the first beyond 4 cells";
    ASSERT_EQ(seen().size(), 1u);
    EXPECT_EQ(seen()[0].slot, 47);
    EXPECT_EQ(seen()[0].glyph, glyphs::index(U'P'));
}

// 305 places of slot 0 are one round of a text of 352.
TEST(scrollertexgen, a_round_is_352_characters_in_48_cells) {
    framesuntil(scrollertexgen, "PLOIIP_LPSDLFPLPSLD");
    const int round = framesuntil(scrollertexgen, "PLOIIP_LPSDLFPLPSLD");
    EXPECT_GE(round, static_cast<int>(305 / 0.23));
    EXPECT_LE(round, static_cast<int>(305 / 0.23) + 1);
}

TEST(scrollertexgen, skips_blanks_and_says_its_piece) {
    const std::string text = readcrawl(scrollertexgen, static_cast<int>(305 / 0.23));
    EXPECT_NE(text.find("PLOIIP_LPSDLFPLPSLD_F_SSDDDDDDF_LGPLSDFFFF_PGL_KKFISDFKIDFKI_"),
              std::string::npos);
    EXPECT_NE(text.find("_Times_have_surely_gone_by,_and_here_we_are_once_again.____VXQ_is_back!_"
                        "With_a_leftovers_demo,_with_parts_from_2014_and_beyond.__We_hope_you_"
                        "enjoy_the_show!"),
              std::string::npos)
        << text;
}

TEST(scrollertexgen, empty_cells_are_degenerate_and_full_ones_fill_the_height) {
    drawat(scrollertexgen, 0.5, 60);
    drawat(scrollertexgen, 0.5, 0);
    EXPECT_EQ(lastdraw().count, 288);
    ASSERT_FALSE(seen().empty());
    EXPECT_LT(seen().size(), 48u);
    for (const seen_s& cell : seen()) {
        EXPECT_NEAR(cell.y, 0.5, 1e-5);
        EXPECT_NEAR(cell.height, cell.width, 1e-5);
    }
    for (float value : {0, 1, 2, 3})
        EXPECT_EQ(lastdraw().attributes.at("uv").at(static_cast<size_t>(value)), 0.0f);
}

TEST(scrollertexgen, clears_the_colour_of_its_target_before_the_one_draw) {
    drawat(scrollertexgen, 20);
    const auto& calls = gldouble::calls();
    const auto clear = std::find(calls.begin(), calls.end(), "glClear(COLOR)");
    ASSERT_NE(clear, calls.end());
    EXPECT_EQ(*(clear + 1), "glDrawArrays(GL_TRIANGLES, 0, 288)");
    EXPECT_EQ(gldouble::calls("glClear").size(), 1u);
    EXPECT_EQ(gldouble::draws().size(), 1u);
}

TEST(textbox, moves_24_hundredths_of_a_cell_a_tick_and_starts_with_its_first_letter) {
    drawat(textbox, 300.5, 1);
    EXPECT_EQ(words().substr(0, 10), "Hello old ");
    EXPECT_NEAR(seen().front().x, 0.26, 1e-5);
    drawat(textbox, 300.5, 3);
    EXPECT_NEAR(seen().front().x, -0.46, 1e-5);
    drawat(textbox, 300.5, 1);
    EXPECT_EQ(words().substr(0, 9), "ello old ");
    EXPECT_NEAR(seen().front().x, 0.3, 1e-5);
}

// 554 places of slot 0 are one round of a text of 601.
TEST(textbox, a_round_is_601_characters_in_48_cells) {
    framesuntil(textbox, "Hello old friends");
    const int round = framesuntil(textbox, "Hello old friends");
    EXPECT_GE(round, static_cast<int>(554 / 0.24));
    EXPECT_LE(round, static_cast<int>(554 / 0.24) + 1);
}

TEST(textbox, draws_blanks_and_says_its_piece) {
    drawat(textbox, 0.5, 1);
    std::string text = words();
    text += readcrawl(textbox, 1300);
    for (const char* sentence :
         {"Hello old friends, it has been a while.__",
          "Times have surely gone by, but here we are once again._____VXQ is back._____Atleast "
          "shortly between the maeaehhs.______This time with some old routines from 2013 and "
          "beyond...______We hope you have enjoyed the show._____We'll see you again._In another "
          "time, in another space.___"})
        EXPECT_NE(text.find(sentence), std::string::npos) << sentence << "\nin " << text;
}

TEST(textbox, lies_low_and_thin_with_its_first_corners_on_top) {
    drawat(textbox, 300.5);
    ASSERT_FALSE(seen().empty());
    for (const seen_s& cell : seen()) {
        EXPECT_NEAR(cell.y, 0.2, 1e-5);
        EXPECT_NEAR(cell.height, -0.14 * cell.width, 1e-5);
        const glyphs::cell_s c = glyphs::cell(cell.glyph);
        EXPECT_EQ(cell.uv, (floats{c.u_lo, c.v_hi, c.u_hi, c.v_hi, c.u_lo, c.v_lo, c.u_hi, c.v_hi,
                                   c.u_hi, c.v_lo, c.u_lo, c.v_lo}));
    }
}

TEST(textbox, is_one_cell_wide_while_its_springs_rest) {
    srand(1); // whose first draws kick nothing
    drawat(textbox, 300.5);
    EXPECT_NEAR(seen()[0].width, 1.0, 1e-6);
    EXPECT_NEAR(seen()[0].height, -0.14, 1e-6);
}

TEST(textbox, leaves_all_state_of_the_screen_alone) {
    drawat(textbox, 310);
    for (const char* call : {"glClear", "glEnable(", "glDisable(", "glBlendFunc", "glDepth"})
        EXPECT_TRUE(gldouble::calls(call).empty()) << call;
    EXPECT_EQ(lastdraw().count, 288);
}

class textline : public testing::TestWithParam<const effectentry_s*> {};

TEST_P(textline, reads_the_sheet_on_unit_0_and_nothing_on_unit_1) {
    testing::internal::CaptureStderr();
    drawat(GetParam()->effect, 30.5);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("2D tex gfx/chargen.png as 0\n"), std::string::npos);
    EXPECT_NE(lastdraw().textures.at(0), 0u);
    EXPECT_EQ(lastdraw().textures.at(1), 0u);
    EXPECT_EQ(lastdraw().uniforms.at("tex"), floats{0});
    EXPECT_EQ(gldouble::calls("glUniform1i(-1, 1)").size(), 1u);
}

TEST_P(textline, tells_time_writes_what_is_not_there_and_detaches) {
    drawat(GetParam()->effect, 30.5);
    EXPECT_EQ(lastdraw().uniforms.at("time"), floats{timeval});
    EXPECT_EQ(gldouble::calls("glUniform1f(-1, ").size(), 1u);
    EXPECT_EQ(gldouble::calls("glVertexAttribPointer(pos, 2, GL_FLOAT, 0, 8, ptr)").size(), 1u);
    EXPECT_EQ(gldouble::calls("glVertexAttribPointer(uv, 2, GL_FLOAT, 0, 8, ptr)").size(), 1u);
    EXPECT_FALSE(gldouble::arrayenabled("pos"));
    EXPECT_FALSE(gldouble::arrayenabled("uv"));
}

const effectentry_s* entry(const std::string& name) {
    return std::find_if(std::begin(effectlist), std::end(effectlist),
                        [&](const effectentry_s& e) { return e.name == name; });
}

INSTANTIATE_TEST_SUITE_P(both, textline, testing::Values(entry("scrollertexgen"), entry("textbox")),
                         [](const auto& info) { return info.param->name; });

// The ribbon.

constexpr double step = 0.07539822;

struct ribbon_s {
    floats pos, uv;

    glm::vec3 at(int vertex) const {
        const size_t i = static_cast<size_t>(vertex) * 3;
        return {pos[i], pos[i + 1], pos[i + 2]};
    }
    glm::vec2 uvat(int vertex) const {
        const size_t i = static_cast<size_t>(vertex) * 2;
        return {uv[i], uv[i + 1]};
    }
};

ribbon_s ribbonat(double beat) {
    drawat(orbitscroller, beat);
    return {lastdraw().attributes.at("pos"), lastdraw().attributes.at("uv")};
}

TEST(orbitscroller, draws_fifty_segments_from_both_ends_inwards) {
    const ribbon_s ribbon = ribbonat(20);
    EXPECT_EQ(lastdraw().count, 300);
    const int firsts[] = {0, 49, 1, 48, 2, 47};
    for (int k = 0; k < 6; ++k)
        EXPECT_FLOAT_EQ(ribbon.uvat(k * 6).x, static_cast<float>(firsts[k]) / 50) << k;
    EXPECT_FLOAT_EQ(ribbon.uvat(48 * 6).x, 24 / 50.0f);
    EXPECT_FLOAT_EQ(ribbon.uvat(49 * 6).x, 25 / 50.0f);
    std::set<float> all;
    for (int k = 0; k < 50; ++k)
        all.insert(ribbon.uvat(k * 6).x);
    EXPECT_EQ(all.size(), 50u);
}

TEST(orbitscroller, waves_on_an_arc_of_216_degrees) {
    const ribbon_s ribbon = ribbonat(23.7);
    for (int v = 0; v < 300; ++v) {
        const glm::vec2 uv = ribbon.uvat(v);
        const double a = std::round(uv.x * 50) * step - 0.3;
        const double h = std::sin(timeval * -4.3 + a * 7.2) * 0.02 + 0.09;
        EXPECT_NEAR(ribbon.at(v).x, -std::cos(a) * 70, 1e-3) << v;
        EXPECT_NEAR(ribbon.at(v).y, (uv.y == 0 ? h : -h) * 70, 1e-3) << v;
        EXPECT_NEAR(ribbon.at(v).z, std::sin(a) * 70, 1e-3) << v;
    }
}

TEST(orbitscroller, orders_each_segment_as_two_triangles) {
    const ribbon_s ribbon = ribbonat(20);
    const float corners[6][2] = {{0, 0}, {0, 1}, {1, 0}, {1, 1}, {0, 1}, {1, 0}};
    for (int k : {0, 1, 17})
        for (int v = 0; v < 6; ++v) {
            const glm::vec2 from = ribbon.uvat(k * 6), uv = ribbon.uvat(k * 6 + v);
            EXPECT_NEAR((uv.x - from.x) * 50, corners[v][0], 1e-4);
            EXPECT_FLOAT_EQ(uv.y, corners[v][1]);
        }
}

TEST(orbitscroller, is_five_to_eight_units_high_each_way_at_its_first_radius) {
    for (double beat : {11.0, 15.3, 21.9, 40.2}) {
        const ribbon_s ribbon = ribbonat(beat);
        for (int v = 0; v < 300; ++v) {
            EXPECT_GE(std::fabs(ribbon.at(v).y), 4.9f - 1e-4f);
            EXPECT_LE(std::fabs(ribbon.at(v).y), 7.7f + 1e-4f);
        }
    }
}

TEST(orbitscroller, grows_whole_with_its_radius) {
    const ribbon_s small = ribbonat(20);
    orbitradius *= 2;
    const ribbon_s large = ribbonat(20);
    for (int v = 0; v < 300; ++v)
        EXPECT_LT(glm::length(large.at(v) - 2.0f * small.at(v)), 1e-3f);
}

TEST(orbitscroller, shows_the_strip_and_never_its_own_picture) {
    testing::internal::CaptureStderr();
    scrollertex = 0;
    drawat(orbitscroller, 20);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("2D tex gfx/scroller.png as 0\n"),
              std::string::npos);
    EXPECT_EQ(lastdraw().textures.at(0), 0u);
    scrollertex = 19;
    drawat(orbitscroller, 20);
    EXPECT_EQ(lastdraw().textures.at(0), 19u);
}

TEST(orbitscroller, blends_is_depth_tested_and_writes_no_depth) {
    drawat(orbitscroller, 20);
    EXPECT_FALSE(lastdraw().depthmask);
    EXPECT_TRUE(lastdraw().enabled.count(GL_BLEND));
    EXPECT_EQ(lastdraw().blendsrc, GLenum(GL_SRC_ALPHA));
    EXPECT_EQ(lastdraw().blenddst, GLenum(GL_ONE_MINUS_SRC_ALPHA));
    EXPECT_FALSE(gldouble::enabled(GL_BLEND));
    EXPECT_EQ(gldouble::calls("glDepth"),
              (std::vector<std::string>{"glDepthMask(0)", "glDepthMask(1)"}));
    for (const char* name : {"pos", "uv", "nor"})
        EXPECT_FALSE(gldouble::arrayenabled(name)) << name;
}

TEST(orbitscroller, gives_flat_normals_and_leaves_what_nobody_reads_unset) {
    drawat(orbitscroller, 20);
    EXPECT_EQ(lastdraw().attributes.at("nor"), floats(900, 0.0f));
    EXPECT_EQ(lastdraw().components.at("nor"), 3);
    EXPECT_EQ(lastdraw().uniforms.count("mv"), 0u);
    EXPECT_EQ(lastdraw().uniforms.count("eyepos"), 0u);
    EXPECT_EQ(lastdraw().uniforms.at("time"), floats{timeval});
}

// A point of the ring through the matrix that the shader got.
glm::vec4 projected(const glm::vec3& point) {
    const floats& mvp = lastdraw().uniforms.at("mvp");
    return glm::make_mat4(mvp.data()) * glm::vec4(point, 1.0f);
}

TEST(orbitscroller, leans_53_degrees_and_stands_34_units_behind_the_phones_pose) {
    drawat(orbitscroller, 20);
    const double a = 53 * 3.14159265358979 / 180;
    const glm::vec4 point = projected({10, 0, 5});
    EXPECT_NEAR(point.x, 10 * std::cos(a), 1e-4);
    EXPECT_NEAR(point.y, -10 * std::sin(a), 1e-4) << "clockwise";
    EXPECT_NEAR(point.z, -29, 1e-4);
}

TEST(orbitscroller, follows_the_phones_matrices) {
    phone_projection[0][0] = 2.0f;
    phone_rotation_mv[3] = {100, 200, 300, 1};
    drawat(orbitscroller, 20);
    const glm::vec4 point = projected({0, 0, 0});
    EXPECT_NEAR(point.x, 200, 1e-3);
    EXPECT_NEAR(point.y, 200, 1e-3);
    EXPECT_NEAR(point.z, 266, 1e-3);
}

} // namespace

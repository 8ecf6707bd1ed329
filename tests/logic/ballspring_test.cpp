#include "effects.h"
#include "gldouble.h"
#include "main/clock.h"
#include "main/startup.h"
#include "testport.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <glm/glm.hpp>
#include <gtest/gtest.h>

namespace {

constexpr size_t count = 400;

Uint8 keys[SDLK_LAST];

class ball : public testing::Test {
protected:
    void SetUp() override { keystate = keys; }

    static void load(unsigned seed) {
        srand(seed);
        ballspring->initgl();
    }

    static std::vector<glm::vec3> draw(double beat) {
        testport_setbeat(beat);
        gldouble::clear();
        ballspring->draw();
        const std::vector<float>& values = gldouble::draws().back().attributes.at("pos");
        std::vector<glm::vec3> dots;
        for (size_t i = 0; i < count; ++i)
            dots.emplace_back(values[i * 3], values[i * 3 + 1], values[i * 3 + 2]);
        return dots;
    }
};

double u() {
    return static_cast<float>(rand()) * 0x1p-31f;
}

glm::dvec3 random3(double size, double offset) {
    const double x = u() * size - offset;
    const double y = u() * size - offset;
    const double z = u() * size - offset;
    return {x, y, z};
}

// The ball as its description tells it, in double precision. Shares rand() with nobody: run the
// effect first, then this from the same seed.
struct reference_s {
    struct dot_s {
        glm::dvec3 pos, vatt, vspr;
    };
    std::vector<dot_s> dots = std::vector<dot_s>(count);
    double lasttime = 0.0;

    reference_s() {
        for (dot_s& dot : dots) {
            dot.pos = random3(20.0, 10.0);
            dot.vatt = random3(2.0, 1.0);
            dot.vspr = random3(2.0, 1.0);
        }
    }

    void frame(double beat, double force) {
        for (size_t i = 0; i < count; ++i) {
            dot_s& dot = dots[i];
            glm::dvec3 push(0.0);
            for (size_t j = i + 1; j < count; ++j)
                push += (dot.pos - dots[j].pos) / 9.0;
            dot.vatt = dot.vatt * 0.2 + push * (0.0025 * 0.2 * force);
            dot.vspr = dot.vspr * 0.95 + (glm::normalize(dot.pos) * 100.0 - dot.pos) * 0.003;
            dot.pos += dot.vatt + dot.vspr;
        }
        if (std::floor(lasttime) == std::floor(beat))
            return;
        lasttime = beat;
        rand();
        for (dot_s& dot : dots)
            dot.vspr += random3(2.0, 1.0) * 0.1;
    }
};

TEST_F(ball, follows_the_description_for_hundreds_of_frames) {
    constexpr int frames = 400;
    const auto beat = [](int frame) { return 288.0 + frame * 0.0315; };
    const auto force = [](int frame) {
        return static_cast<float>(1.0 + 0.1 * std::sin(frame * 0.02));
    };
    load(21);
    std::vector<std::vector<glm::vec3>> got;
    for (int frame = 0; frame < frames; ++frame) {
        gravforce = force(frame);
        got.push_back(draw(beat(frame)));
    }
    srand(21);
    reference_s reference;
    for (int frame = 0; frame < frames; ++frame) {
        reference.frame(beat(frame), force(frame));
        for (size_t i = 0; i < count; ++i)
            ASSERT_LT(glm::distance(glm::dvec3(got[size_t(frame)][i]), reference.dots[i].pos), 0.05)
                << "dot " << i << " in frame " << frame;
    }
}

TEST_F(ball, only_higher_numbered_dots_push) {
    const auto after = [](float force) {
        load(4);
        gravforce = force;
        for (int i = 0; i < 4; ++i)
            draw(0.5);
        return draw(0.5);
    };
    const std::vector<glm::vec3> weak = after(0.0f);
    const std::vector<glm::vec3> strong = after(4.0f);
    EXPECT_EQ(weak[399], strong[399]) << "nobody pushes the last";
    EXPECT_NE(weak[0], strong[0]);
    EXPECT_NE(weak[398], strong[398]);
}

// Whether a draw at this beat leaves rand() where a kick leaves it.
bool kicks(double beat) {
    srand(8);
    testport_setbeat(beat);
    ballspring->draw();
    const int next = rand();
    srand(8);
    if (next == rand())
        return false;
    for (int i = 0; i < 1 + 3 * int(count) - 1; ++i)
        rand();
    EXPECT_EQ(next, rand()) << "one number nobody uses, then three a dot";
    return true;
}

TEST_F(ball, the_first_frame_kicks_from_beat_1_on) {
    load(1);
    EXPECT_FALSE(kicks(0.99));
    EXPECT_TRUE(kicks(1.0));
}

TEST_F(ball, kicks_once_a_beat) {
    load(1);
    EXPECT_TRUE(kicks(288.2));
    EXPECT_FALSE(kicks(288.9));
    EXPECT_TRUE(kicks(289.0));
    EXPECT_FALSE(kicks(289.5));
}

TEST_F(ball, moves_by_frames_not_by_ticks) {
    const auto aftertwo = [](int ticks) { // frames
        load(4);
        testport_setbeat(0.5, ticks);
        ballspring->draw();
        ballspring->draw();
        return gldouble::draws().back().attributes.at("pos");
    };
    const auto one = aftertwo(1);
    EXPECT_EQ(aftertwo(3), one);
    EXPECT_EQ(aftertwo(0), one);
}

TEST_F(ball, keys_tune_size_and_force_and_say_so) {
    load(1);
    gravforce = 1.0f;
    testing::internal::CaptureStderr();
    draw(0.5);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    keys[SDLK_1] = keys[SDLK_4] = 1;
    testing::internal::CaptureStderr();
    draw(0.5);
    draw(0.5);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "ns: 99.90, gf: 1.10\nns: 99.80, gf: 1.20\n");
    keys[SDLK_1] = keys[SDLK_4] = 0;
    keys[SDLK_2] = keys[SDLK_3] = 1;
    testing::internal::CaptureStderr();
    draw(0.5);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "ns: 99.90, gf: 1.10\n");
}

TEST_F(ball, the_beat_decays_over_two_beats) {
    load(1);
    const auto decay = [](double beat) {
        draw(beat);
        return gldouble::draws().back().uniforms.at("beat")[0];
    };
    EXPECT_FLOAT_EQ(decay(289.0), 1.0f);
    EXPECT_FLOAT_EQ(decay(290.0), 0.125f);
    EXPECT_NEAR(decay(290.99), 0.0f, 1e-5);
    EXPECT_FLOAT_EQ(decay(291.0), 1.0f);
}

TEST_F(ball, tumbles_ten_degrees_a_second_far_in_front) {
    load(1);
    draw(0.5);
    const auto& uniforms = gldouble::draws().back().uniforms;
    glm::mat3 mv;
    std::copy_n(uniforms.at("mv").begin(), 9, &mv[0][0]);
    const glm::vec3 axis = glm::normalize(glm::vec3(1.0f, 0.0f, 0.6f));
    EXPECT_LT(glm::distance(mv * axis, axis), 1e-6f);
    const float angle = glm::radians(timeval * 10.0f);
    EXPECT_NEAR(mv[0][0] + mv[1][1] + mv[2][2], 1.0f + 2.0f * std::cos(angle), 1e-5);
    EXPECT_GT((mv * glm::vec3(0.0f, 1.0f, 0.0f)).z, 0.0f) << "right-handed";
    glm::mat4 mvp;
    std::copy_n(uniforms.at("mvp").begin(), 16, &mvp[0][0]);
    const glm::vec4 centre = mvp[3];
    EXPECT_FLOAT_EQ(centre.w, 1000.0f);
    EXPECT_FLOAT_EQ(centre.x, 0.0f);
    // Straight up in front of the ball, 20 degrees of field of view.
    const glm::vec4 up = mvp * glm::vec4(glm::transpose(mv) * glm::vec3(0.0f, 100.0f, 0.0f), 1.0f);
    EXPECT_NEAR(up.y / up.w, 0.1 / std::tan(glm::radians(10.0)), 1e-4);
}

// Whether GL draws a dot there with the matrix of the last draw.
bool isinsight(const glm::vec3& dot) {
    glm::mat4 mvp;
    std::copy_n(gldouble::draws().back().uniforms.at("mvp").begin(), 16, &mvp[0][0]);
    const glm::vec4 clip = mvp * glm::vec4(dot, 1.0f);
    return glm::all(glm::lessThanEqual(glm::abs(glm::vec3(clip)), glm::vec3(clip.w)));
}

TEST_F(ball, sends_no_dot_out_of_all_numbers) {
    load(4);
    gravforce = 50.0f;
    for (int i = 0; i < 200; ++i)
        draw(0.5);
    for (int seconds = 0; seconds < 36; ++seconds) { // once around
        const std::vector<glm::vec3> dots = draw(0.5 + seconds * 8.0 / 5.079);
        EXPECT_TRUE(isinsight(dots[399])) << "whom nobody pushes";
        EXPECT_FALSE(isinsight(dots[0])) << "whom all have pushed for long";
        for (const glm::vec3& dot : dots)
            ASSERT_TRUE(glm::all(glm::lessThanEqual(glm::abs(dot), glm::vec3(1e30f))));
    }
}

TEST_F(ball, shows_a_dot_where_it_is_however_far) {
    load(4);
    gravforce = 50.0f;
    float farthest = 0.0f;
    for (int i = 0; i < 300 && farthest < 1e29f; ++i) {
        const glm::vec3 dot = draw(0.5)[0];
        const float way = std::max({std::abs(dot.x), std::abs(dot.y), std::abs(dot.z)});
        ASSERT_NE(dot.y, 0.0f) << "put away at " << farthest;
        farthest = way;
    }
    EXPECT_GE(farthest, 1e29f);
}

TEST_F(ball, draws_400_sprites_and_leaves_no_array) {
    load(1);
    draw(0.5);
    const auto& drawn = gldouble::draws().back();
    EXPECT_EQ(drawn.mode, GLenum(GL_POINTS));
    EXPECT_EQ(drawn.count, 400);
    EXPECT_EQ(drawn.components.at("pos"), 3);
    EXPECT_EQ(drawn.uniforms.at("tex")[0], 0.0f);
    EXPECT_EQ(gldouble::image(drawn.textures.at(0)).format, GLenum(GL_RGBA));
    EXPECT_FALSE(gldouble::arrayenabled("pos"));
}

TEST_F(ball, says_when_the_context_has_only_small_points) {
    gldouble::answers.maxpointsize = 249.0f;
    testing::internal::CaptureStderr();
    ballspring->initgl();
    EXPECT_NE(testing::internal::GetCapturedStderr().find(
                  "ballspring cannot draw as it should: GL's points end at 249 pixels, not 250: "
                  "larger ones are drawn as small as that\n"),
              std::string::npos);
    gldouble::answers.maxpointsize = 250.0f;
    testing::internal::CaptureStderr();
    ballspring->initgl();
    EXPECT_EQ(testing::internal::GetCapturedStderr().find("cannot draw"), std::string::npos);
}

} // namespace

#include "effects.h"
#include "gldouble.h"
#include "main/clock.h"
#include "testport.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <glm/glm.hpp>
#include <gtest/gtest.h>

namespace {

struct frame_s {
    glm::dvec2 scale;
    glm::dvec3 lightdir;
};

frame_s draw(double beat, int skip = 1) {
    testport_setbeat(beat, skip);
    gldouble::clear();
    bump->draw();
    const auto& uniforms = gldouble::draws().back().uniforms;
    const auto& scale = uniforms.at("scale");
    const auto& light = uniforms.at("lightdir");
    return {{scale[0], scale[1]}, {light[0], light[1], light[2]}};
}

double r() {
    return rand() / 2147483648.0;
}

// One spring axis in double precision.
struct axis_s {
    double pos, target, acc, damp, vel = 0.0;

    void step() {
        vel = (target - pos) * acc * std::min(1.0, std::max(0.5, std::abs(vel))) + vel * damp;
        pos += vel;
    }
};

// View and light as their description tells them, in double precision.
struct reference_s {
    axis_s view[2] = {{-400, 0, 0.003, 0.95}, {-800, 0, 0.003, 0.95}};
    axis_s light[3] = {{-400, 0, 0.005, 0.91}, {-800, 0, 0.005, 0.91}, {-20, 0, 0.005, 0.91}};

    frame_s frame(int tgt, double time, int skip) {
        const int targets[][3] = {
            {0, -140, -450}, {10, 700, -900}, {20, 450, -942}, {30, 1200, -500}, {40, 2600, -1000}};
        for (auto& t : targets) {
            if (t[0] != tgt)
                continue;
            view[0].target = t[1];
            view[1].target = t[2];
        }
        if (skip > 0) {
            const double a = r() * 6.2831855;
            view[0].vel += std::cos(a);
            view[1].vel += std::sin(a);
        }
        light[0].target = view[0].target + std::cos(time * 10.0) * 370.0;
        light[1].target = view[1].target + std::sin(time * 10.0 * 1.11234) * 370.0;
        light[2].target = -90.08 + std::cos(time * 3.47734) * 30.0;
        if (skip > 0) {
            const double z = 2.0 * r() - 1.0;
            const double b = r() * 6.2831855;
            const double radius = std::sqrt(1.0 - z * z);
            light[0].vel += radius * std::cos(b);
            light[1].vel += radius * std::sin(b);
            light[2].vel += z;
        }
        for (int i = 0; i < skip; ++i) {
            for (axis_s& axis : view)
                axis.step();
            for (axis_s& axis : light)
                axis.step();
        }
        const double jitter = (rand() & 0xFFFF) / 65535.0 * 10.03;
        return {{view[0].pos, view[1].pos},
                {light[0].pos + 520.0, light[1].pos + 200.0, light[2].pos + jitter}};
    }
};

TEST(bump, view_and_light_follow_the_description_for_hundreds_of_frames) {
    constexpr int frames = 500;
    const auto beat = [](int frame) { return 160.0 + frame * 0.04; };
    const auto skip = [](int frame) { return frame % 7 == 3 ? 0 : 1 + frame % 3; };
    const auto tgt = [](int frame) { return frame / 80 * 10; }; // 50 and 60 mean nothing
    bump->initgl();
    std::vector<frame_s> got;
    std::vector<double> times;
    srand(17);
    for (int frame = 0; frame < frames; ++frame) {
        bumptgt = tgt(frame);
        got.push_back(draw(beat(frame), skip(frame)));
        times.push_back(timeval);
    }
    srand(17);
    reference_s reference;
    for (int frame = 0; frame < frames; ++frame) {
        const auto i = static_cast<size_t>(frame);
        const frame_s want = reference.frame(tgt(frame), times[i], skip(frame));
        ASSERT_LT(glm::distance(got[i].scale, want.scale), 0.1) << "frame " << frame;
        ASSERT_LT(glm::distance(got[i].lightdir, want.lightdir), 0.1) << "frame " << frame;
    }
}

TEST(bump, without_ticks_only_the_light_jitters) {
    bump->initgl();
    for (int i = 0; i < 20; ++i)
        draw(165.0);
    srand(2);
    const frame_s first = draw(165.0, 0);
    const frame_s second = draw(165.0, 0);
    const int next = rand();
    EXPECT_EQ(first.scale, second.scale);
    EXPECT_EQ(first.lightdir.x, second.lightdir.x);
    EXPECT_EQ(first.lightdir.y, second.lightdir.y);
    EXPECT_NE(first.lightdir.z, second.lightdir.z);
    srand(2);
    const int bits1 = rand() & 0xFFFF;
    const int bits2 = rand() & 0xFFFF;
    EXPECT_NEAR(first.lightdir.z - second.lightdir.z, (bits1 - bits2) / 65535.0 * 10.03, 1e-4);
    EXPECT_EQ(next, rand()) << "one draw a frame, no more";
}

// Where the view hovers, kicked about as it is.
glm::dvec2 meanview() {
    for (int i = 0; i < 1000; ++i)
        draw(165.0);
    glm::dvec2 sum(0.0);
    for (int i = 0; i < 10000; ++i)
        sum += draw(165.0).scale;
    return sum / 10000.0;
}

TEST(bump, an_unknown_target_keeps_the_last) {
    bump->initgl();
    bumptgt = 30;
    draw(165.0);
    bumptgt = 5;
    EXPECT_LT(glm::distance(meanview(), glm::dvec2(1200.0, -500.0)), 50.0);
}

TEST(bump, an_unknown_target_from_the_start_is_the_origin) {
    bump->initgl();
    bumptgt = 5;
    EXPECT_LT(glm::length(meanview()), 50.0);
}

TEST(bump, wears_repeating_rock_and_a_clamped_picture_on_three_units) {
    testing::internal::CaptureStderr();
    bump->initgl();
    const std::string log = testing::internal::GetCapturedStderr();
    const size_t normals = log.find("gfx/rocknormal.jpg as 9");
    const size_t rock = log.find("gfx/rock.jpg as 9");
    const size_t credits = log.find("gfx/credits.jpg as 1");
    EXPECT_LT(normals, rock);
    EXPECT_LT(rock, credits);
    EXPECT_NE(credits, std::string::npos);
    draw(165.0);
    const auto& drawn = gldouble::draws().back();
    EXPECT_EQ(drawn.uniforms.at("tex")[0], 0.0f);
    EXPECT_EQ(drawn.uniforms.at("texnor")[0], 1.0f);
    EXPECT_EQ(drawn.uniforms.at("texdecal")[0], 2.0f);
    const auto wrap = [&](int unit) {
        return gldouble::image(drawn.textures.at(unit)).parameters.at(GL_TEXTURE_WRAP_S);
    };
    EXPECT_EQ(wrap(0), float(GL_REPEAT));
    EXPECT_EQ(wrap(1), float(GL_REPEAT));
    EXPECT_EQ(wrap(2), float(GL_CLAMP_TO_EDGE));
    EXPECT_LT(drawn.textures.at(1), drawn.textures.at(0)) << "the normals load first";
    EXPECT_LT(drawn.textures.at(0), drawn.textures.at(2));
}

TEST(bump, draws_one_strip_over_the_picture_and_leaves_its_array_on) {
    bump->initgl();
    draw(165.0);
    ASSERT_EQ(gldouble::draws().size(), 1u);
    const auto& drawn = gldouble::draws()[0];
    EXPECT_EQ(drawn.mode, GLenum(GL_TRIANGLE_STRIP));
    EXPECT_EQ(drawn.attributes.at("pos"), std::vector<float>({0, 0, 854, 0, 0, 480, 854, 480}));
    EXPECT_EQ(drawn.components.at("pos"), 2);
    EXPECT_TRUE(gldouble::arrayenabled("pos"));
}

} // namespace

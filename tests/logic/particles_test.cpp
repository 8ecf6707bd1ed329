#include "effects.h"
#include "gldouble.h"
#include "main/clock.h"
#include "testport.h"
#include "texture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <glm/glm.hpp>
#include <gtest/gtest.h>

namespace {

using gldouble::draw_s;

draw_s drawat(demoeffect_c* effect, double beat, int skip = 1) {
    testport_setbeat(beat, skip);
    gldouble::clear();
    effect->draw();
    EXPECT_EQ(gldouble::draws().size(), 1u);
    return gldouble::draws().back();
}

std::vector<glm::vec3> stars(const draw_s& draw) {
    const std::vector<float>& values = draw.attributes.at("pos");
    std::vector<glm::vec3> result;
    for (size_t i = 0; i + 2 < values.size(); i += 3)
        result.emplace_back(values[i], values[i + 1], values[i + 2]);
    return result;
}

float u() {
    return static_cast<float>(rand()) * 0x1p-31f;
}

float n() {
    const float r = u();
    return r + r - 1.0f;
}

// The flow as its description tells it, in double precision. Leaves rand() where the points begin.
struct flow_s {
    static constexpr int particles = 2048, steps = 64;
    struct texel_s {
        int red, green;
    };
    std::vector<texel_s> texels = std::vector<texel_s>(particles * steps);

    static int byte(double value) {
        return static_cast<int>(std::clamp(std::floor(value * 255.0 + 0.5), 0.0, 255.0));
    }

    flow_s() {
        struct particle_s {
            double x, y, vx, vy;
        };
        std::vector<particle_s> swarm;
        for (int i = 0; i < particles; ++i) {
            const double jx = n() * 0.02;
            const double jy = n() * 0.02;
            swarm.push_back({((i % 16) / 16.0 * 2.3 - 1.0 + jx) / 0.5620609,
                             std::floor(i / 16.0) * (2.0 / 128.0) - 1.0 + jy, 0.0, 0.0});
        }
        for (int row = 0; row < steps; ++row) {
            const double cx = n() * 0.1;
            const double cy = n() * 0.1;
            for (int i = 0; i < particles; ++i) {
                particle_s& p = swarm[static_cast<size_t>(i)];
                p.vx += n() * 0.01;
                p.vy += n() * 0.01;
                const double length = std::hypot(cx - p.x, cy - p.y);
                const double dx = (cx - p.x) / length;
                const double dy = (cy - p.y) / length;
                p.vx += dx * 0.3 + dy * 0.03;
                p.x += p.vx * 0.3;
                p.vy += dy * 0.3 + dx * 0.03;
                p.y += p.vy * 0.3;
                texels[static_cast<size_t>(row * particles + i)] = {
                    byte(p.x * 0.5620609 * 0.5 + 0.5), byte(p.y * 0.5 + 0.5)};
            }
        }
    }
};

TEST(fluid, its_texture_holds_the_flow_step_by_step) {
    srand(7);
    fluid->initgl();
    srand(7);
    const flow_s flow;
    const draw_s draw = drawat(fluid, 260.0);
    const gldouble::image_s& image = gldouble::image(draw.textures.at(0));
    ASSERT_EQ(image.width, 2048);
    ASSERT_EQ(image.height, 64);
    ASSERT_EQ(image.format, GLenum(GL_RGBA));
    EXPECT_EQ(image.parameters.at(GL_TEXTURE_MAG_FILTER), float(GL_LINEAR));
    EXPECT_EQ(image.parameters.at(GL_TEXTURE_WRAP_S), float(GL_CLAMP_TO_EDGE));
    int wrong = 0, off = 0;
    for (size_t i = 0; i < flow.texels.size(); ++i) {
        const unsigned char* got = &image.pixels[i * 4];
        wrong += std::abs(got[0] - flow.texels[i].red) > 1 ||
                 std::abs(got[1] - flow.texels[i].green) > 1 || got[2] != 0;
        off += got[0] != flow.texels[i].red || got[1] != flow.texels[i].green;
    }
    // Of 131072; precision tells where a particle passes the target closely.
    EXPECT_LT(wrong, 100);
    EXPECT_LT(off, 300) << "rounded otherwise";
}

TEST(fluid, a_point_carries_the_colour_of_the_spot_where_it_ends) {
    srand(11);
    fluid->initgl();
    srand(11);
    const flow_s flow;
    const draw_s draw = drawat(fluid, 260.0);
    const std::vector<unsigned char>& texels = gldouble::image(draw.textures.at(0)).pixels;
    const unsigned char* lastrow = &texels[2048 * 4 * 63];
    SDL_Surface* face = texture_c::load_image("gfx/face.jpg", GL_RGBA);
    ASSERT_GE(face->h, 500);
    int wrong = 0;
    for (size_t k = 0; k < 10000; ++k) {
        const double t = static_cast<double>(k) / 10000.0 + (u() * 0.2 - 0.1);
        ASSERT_NEAR(draw.attributes.at("pos")[k * 2], t, 1e-6);
        ASSERT_FLOAT_EQ(draw.attributes.at("pos")[k * 2 + 1], 0.0078125f);
        const double x = draw.attributes.at("pos")[k * 2] * 2048.0 - 0.5;
        const int left = std::clamp(static_cast<int>(std::floor(x)), 0, 2047);
        const int right = std::clamp(static_cast<int>(std::ceil(x)), 0, 2047);
        const auto end = [&](int channel) {
            const double f = x - std::floor(x);
            return (lastrow[left * 4 + channel] * (1.0 - f) + lastrow[right * 4 + channel] * f) /
                   255.0;
        };
        const int column = (static_cast<int>(face->w * end(0)) + face->w) % face->w;
        const int row = (static_cast<int>(end(1) * 480.0 + 20.0) + 500) % 500;
        const auto* pixel =
            static_cast<const unsigned char*>(face->pixels) + row * face->pitch + column * 4;
        for (size_t channel = 0; channel < 3; ++channel)
            wrong += std::abs(draw.attributes.at("col")[k * 3 + channel] -
                              pixel[channel] / 255.0f) > 1e-6f;
    }
    SDL_FreeSurface(face);
    // On the border of two pixels single precision may fall the other way.
    EXPECT_LT(wrong, 30);
}

TEST(fluid, waits_white_in_its_grid_before_beat_256) {
    fluid->initgl();
    const draw_s draw = drawat(fluid, 250.0);
    EXPECT_FLOAT_EQ(draw.uniforms.at("poso")[0], 0.0f);
    EXPECT_FLOAT_EQ(draw.uniforms.at("white")[0], 2.5f);
    EXPECT_FLOAT_EQ(draw.uniforms.at("aa")[0], 1.0f);
    EXPECT_FALSE(draw.enabled.count(GL_BLEND));
}

TEST(fluid, flows_for_fifteen_beats_and_fades_for_two) {
    fluid->initgl();
    const auto uniform = [](double beat, const char* name) {
        return drawat(fluid, beat).uniforms.at(name)[0];
    };
    EXPECT_NEAR(uniform(263.5, "poso"), 1.0 - std::pow(0.5, 1.5), 1e-5);
    EXPECT_FLOAT_EQ(uniform(271.0, "poso"), 1.0f);
    EXPECT_FLOAT_EQ(uniform(280.0, "poso"), 1.0f);
    EXPECT_FLOAT_EQ(uniform(257.0, "white"), 0.75f);
    EXPECT_FLOAT_EQ(uniform(261.0, "white"), 0.0f);
    EXPECT_FLOAT_EQ(uniform(271.0, "aa"), 1.0f);
    EXPECT_FLOAT_EQ(uniform(272.0, "aa"), 0.5f);
    EXPECT_FLOAT_EQ(uniform(280.0, "aa"), 0.0f);
}

TEST(fluid, blends_only_while_it_fades) {
    fluid->initgl();
    EXPECT_FALSE(drawat(fluid, 271.0).enabled.count(GL_BLEND));
    EXPECT_TRUE(gldouble::calls("glDisable(").empty());
    for (double beat : {271.022, 271.1, 271.2}) // 0.989, 0.95, 0.9 left
        EXPECT_TRUE(drawat(fluid, beat).enabled.count(GL_BLEND)) << beat;
    EXPECT_FALSE(drawat(fluid, 271.018).enabled.count(GL_BLEND)) << "0.991 left";
    const draw_s fading = drawat(fluid, 271.5);
    EXPECT_TRUE(fading.enabled.count(GL_BLEND));
    EXPECT_EQ(fading.blendsrc, GLenum(GL_SRC_ALPHA));
    EXPECT_EQ(fading.blenddst, GLenum(GL_ONE_MINUS_SRC_ALPHA));
    EXPECT_FALSE(gldouble::enabled(GL_BLEND));
}

TEST(fluid, draws_ten_thousand_points_and_leaves_their_colours_on) {
    fluid->initgl();
    const draw_s draw = drawat(fluid, 260.0);
    EXPECT_EQ(draw.mode, GLenum(GL_POINTS));
    EXPECT_EQ(draw.count, 10000);
    EXPECT_EQ(draw.components.at("pos"), 2);
    EXPECT_EQ(draw.components.at("col"), 3);
    EXPECT_EQ(draw.uniforms.at("tex_pos")[0], 0.0f);
    EXPECT_FALSE(gldouble::arrayenabled("pos"));
    EXPECT_TRUE(gldouble::arrayenabled("col"));
}

TEST(fluid, stays_away_where_vertex_shaders_read_no_textures) {
    srand(3);
    fluid->initgl();
    const int next = rand();
    gldouble::answers.vertextextureunits = 0;
    gldouble::answers.links = false;
    srand(3);
    testing::internal::CaptureStderr();
    fluid->initgl();
    EXPECT_NE(testing::internal::GetCapturedStderr().find(
                  "fluid cannot draw: GL reads no textures in vertex shaders\n"),
              std::string::npos);
    EXPECT_EQ(rand(), next) << "the effects after it would draw other numbers";
    gldouble::clear();
    fluid->draw();
    EXPECT_TRUE(gldouble::calls().empty());
}

TEST(starfield, fills_the_picture_and_a_bit_more_than_its_depth) {
    srand(5);
    starfield->initgl();
    sf_zchange = 0.0f;
    const std::vector<glm::vec3> got = stars(drawat(starfield, 1.0));
    ASSERT_EQ(got.size(), 5000u);
    srand(5);
    for (const glm::vec3& star : got) {
        ASSERT_FLOAT_EQ(star.x, n());
        ASSERT_FLOAT_EQ(star.y, n());
        ASSERT_FLOAT_EQ(star.z, u() * 1.2f);
    }
}

TEST(starfield, approaches_steadily_and_respawns_far_away) {
    starfield->initgl();
    sf_zchange = 0.0f;
    const std::vector<glm::vec3> before = stars(drawat(starfield, 1.0, 3));
    EXPECT_FLOAT_EQ(sf_zchange, -0.012f);
    srand(9);
    const std::vector<glm::vec3> after = stars(drawat(starfield, 1.1, 1));
    EXPECT_FLOAT_EQ(sf_zchange, -0.004f) << "the knob holds for one draw";
    srand(9);
    int respawned = 0;
    for (size_t i = 0; i < after.size(); ++i) {
        if (before[i].z - 0.012f >= 0.0f) {
            ASSERT_EQ(after[i], glm::vec3(before[i].x, before[i].y, before[i].z - 0.012f));
            continue;
        }
        ++respawned;
        ASSERT_FLOAT_EQ(after[i].x, n());
        ASSERT_FLOAT_EQ(after[i].y, n());
        ASSERT_FLOAT_EQ(after[i].z, u() * 0.1f + 1.0f);
    }
    EXPECT_GT(respawned, 0);
}

TEST(starfield, recedes_with_a_positive_knob_and_respawns_behind_the_picture) {
    starfield->initgl();
    sf_zchange = 0.0f;
    const std::vector<glm::vec3> before = stars(drawat(starfield, 1.0));
    sf_zchange = 0.25f;
    srand(9);
    const std::vector<glm::vec3> after = stars(drawat(starfield, 1.1));
    srand(9);
    int respawned = 0;
    for (size_t i = 0; i < after.size(); ++i) {
        if (before[i].z + 0.25f <= 1.0f) {
            ASSERT_EQ(after[i].z, before[i].z + 0.25f);
            continue;
        }
        ++respawned;
        ASSERT_FLOAT_EQ(after[i].x, n());
        ASSERT_FLOAT_EQ(after[i].y, n());
        ASSERT_FLOAT_EQ(after[i].z, u() * 0.1f - 0.2f);
    }
    EXPECT_GT(respawned, 0);
}

TEST(starfield, a_receding_star_at_exactly_1_stays) {
    starfield->initgl();
    sf_zchange = 0.0f;
    const std::vector<glm::vec3> before = stars(drawat(starfield, 1.0));
    const auto chosen = std::find_if(before.begin(), before.end(),
                                     [](const glm::vec3& s) { return s.z > 0.5f && s.z < 1.0f; });
    const size_t i = static_cast<size_t>(chosen - before.begin());
    sf_zchange = 1.0f - chosen->z;
    EXPECT_EQ(stars(drawat(starfield, 1.1))[i].z, 1.0f);
}

TEST(starfield, with_the_knob_at_0_only_stars_behind_the_picture_respawn) {
    starfield->initgl();
    sf_zchange = 0.25f;
    const std::vector<glm::vec3> before = stars(drawat(starfield, 1.0));
    sf_zchange = 0.0f;
    const std::vector<glm::vec3> after = stars(drawat(starfield, 1.1));
    int behind = 0;
    for (size_t i = 0; i < after.size(); ++i) {
        behind += before[i].z < 0.0f;
        if (before[i].z < 0.0f)
            ASSERT_GE(after[i].z, 1.0f);
        else
            ASSERT_EQ(after[i], before[i]);
    }
    EXPECT_GT(behind, 0);
}

TEST(starfield, draws_points_and_leaves_no_array) {
    starfield->initgl();
    const draw_s draw = drawat(starfield, 1.0);
    EXPECT_EQ(draw.mode, GLenum(GL_POINTS));
    EXPECT_EQ(draw.count, 5000);
    EXPECT_EQ(draw.components.at("pos"), 3);
    EXPECT_FALSE(gldouble::arrayenabled("pos"));
}

// In the order x, y, z.
void expectrandom(const glm::vec3& star, float zsize, float znear) {
    ASSERT_FLOAT_EQ(star.x, u() * 200.0f - 100.0f);
    ASSERT_FLOAT_EQ(star.y, u() * 200.0f - 100.0f);
    ASSERT_FLOAT_EQ(star.z, u() * zsize - znear);
}

TEST(starfield2, fills_a_cube_round_the_camera) {
    srand(5);
    starfield2->initgl();
    const std::vector<glm::vec3> got = stars(drawat(starfield2, 273.0, 0));
    ASSERT_EQ(got.size(), 5000u);
    srand(5);
    for (const glm::vec3& star : got)
        expectrandom(star, 200.0f, 100.0f);
}

TEST(starfield2, flies_on_past_the_camera_and_respawns_beyond_100) {
    starfield2->initgl();
    const std::vector<glm::vec3> before = stars(drawat(starfield2, 273.0, 0));
    srand(9);
    const std::vector<glm::vec3> after = stars(drawat(starfield2, 273.1, 5));
    srand(9);
    int respawned = 0, behind = 0;
    for (size_t i = 0; i < after.size(); ++i) {
        if (before[i].z + 2.0f > 100.0f) {
            ++respawned;
            expectrandom(after[i], 20.0f, 120.0f);
        } else {
            behind += after[i].z > 0.0f;
            ASSERT_EQ(after[i], before[i] + glm::vec3(0.0f, 0.0f, 2.0f));
        }
    }
    EXPECT_GT(respawned, 0);
    EXPECT_GT(behind, 2000) << "stars behind the camera are drawn as well";
}

TEST(starfield2, rolls_by_its_knob) {
    starfield2->initgl();
    starang = 90.0f;
    const std::vector<float> mvp = drawat(starfield2, 273.0).uniforms.at("mvp");
    const float f = 1.428148f; // of 70 degrees
    EXPECT_NEAR(mvp[1], f, 1e-5) << "x turns to y";
    EXPECT_NEAR(mvp[4], -f * 480.0f / 854.0f, 1e-5);
    EXPECT_NEAR(mvp[0], 0.0f, 1e-5);
    EXPECT_NEAR(mvp[11], -1.0f, 1e-6);
    EXPECT_NEAR(mvp[10], -100.001f / 99.999f, 5e-7) << "near 0.001, far 100";
    EXPECT_NEAR(mvp[14], -0.2f / 99.999f, 1e-9);
}

TEST(starfield2, draws_points_and_leaves_no_array) {
    starfield2->initgl();
    const draw_s draw = drawat(starfield2, 273.0);
    EXPECT_EQ(draw.mode, GLenum(GL_POINTS));
    EXPECT_EQ(draw.count, 5000);
    EXPECT_FALSE(gldouble::arrayenabled("pos"));
}

} // namespace

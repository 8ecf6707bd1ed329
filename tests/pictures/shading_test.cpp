// The shaders of the full-screen effects and of the text on software GL, pixel by pixel against the
// same arithmetic in C++: which way up, which unit, which formula.
#include "3dphone.h"
#include "effects.h"
#include "glstage.h"
#include "glyphs.h"
#include "main/clock.h"
#include "texture.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>
#include <vector>

namespace {

using glm::vec2;
using glm::vec3;
using glm::vec4;

constexpr int width = glstage_width;
constexpr int height = glstage_height;
const vec4& background = glstage_background;

class shading : public testing::Test {
protected:
    void SetUp() override { glstage_open(); }
};

vec2 flip(vec2 pos) {
    return {pos.x, 1 - pos.y};
}

// Where a pixel lies in a quad that was turned by `a`, squared up, shrunk and moved.
vec2 unplaced(vec2 pos, float a, vec2 centre) {
    const vec2 clip = (pos * 2.0f - 1.0f - centre) / (vec2(480 / 854.0f, 1.0f) * 0.7f);
    return glm::inverse(glm::mat2(std::sin(a), std::cos(a), -std::cos(a), std::sin(a))) * clip;
}

bool inunitsquare(vec2 uv) {
    return uv.x >= 0 && uv.x <= 1 && uv.y >= 0 && uv.y <= 1;
}

TEST_F(shading, texturetest) {
    SDL_Surface* picture = compass();
    texture_c tex{};
    tex.fromsurface(picture);
    texturetesttex = tex.textureid;
    glstage_drawfirst(texturetest, 115);
    glstage_expect(sampler_c(picture));
}

TEST_F(shading, lace) {
    const sampler_c tex("gfx/lacetrace.jpg", true);
    glstage_drawfirst(lace, 81, 100000); // the circle is at rest
    glstage_expect([&](vec2 pos) {
        const vec2 uv = flip(pos) * vec2(3.5f, 2.0f);
        const float dist =
            glm::clamp((glm::length(uv - vec2(1.75f, 1.0f)) - 0.5f) * 3.0f, 0.0f, 1.0f);
        const float alpha = glm::clamp(dist - tex(uv * 0.5f).r, 0.0f, 1.0f);
        return glstage_blended(vec4(0, 0, 0, alpha));
    });
}

TEST_F(shading, pelvar) {
    const sampler_c tex("gfx/roses.png", true);
    glstage_drawfirst(pelvar, 20.3f, 450);
    glstage_expect([&](vec2 pos) {
        const float saw = 2 - glm::fract(0.5f + 20.3f * 0.5f), satur = 1 + std::sin(timeval) * 0.3f;
        const vec2 uv = flip(pos);
        vec4 value = tex(uv * vec2(3, 1) + vec2(0.5f + std::pow(saw - 1, 10.0f), 0));
        value = vec4(glm::pow(vec3(value), vec3(saw)), value.a);
        const float dist = glm::clamp((uv.x * 3.5f - 1.5f) * 3, 0.0f, 1.0f);
        return glstage_blended(glm::clamp(vec4(satur, satur, satur, dist) * value, 0.0f, 1.0f));
    });
}

vec2 onface(vec2 pos) {
    const vec2 clip = pos * 2.0f - 1.0f - vec2(-1.0f, -1.08f - ylift);
    return clip / vec2(2.0f, 2 * 500 / 480.0f);
}

TEST_F(shading, backdrop_of_the_face) {
    const sampler_c tex("gfx/kallotausta.jpg", false);
    glstage_drawfirst(face, 256 + 1);
    glstage_expect([&](vec2 pos) { return tex(onface(pos)) + 0.5f; });
}

TEST_F(shading, face) {
    const sampler_c tex("gfx/face.jpg", false);
    ylift = -0.3f;
    glstage_drawfirst(face, 256 + 15.5f);
    glstage_expect([&](vec2 pos) {
        const vec2 uv = onface(pos);
        return inunitsquare(uv) ? vec4(vec3(tex(uv)) - 0.25f, 1.0f) : background;
    });
}

TEST_F(shading, ripsilu) {
    const sampler_c tex("gfx/ripsilu.jpg", false);
    ripsilu_mm = 0.3f;
    glstage_drawfirst(ripsilu, 211);
    glstage_expect([&](vec2 pos) { return tex(pos) + 0.3f; });
}

TEST_F(shading, vxqlogo) {
    const sampler_c tex("gfx/vxqlogo.jpg", false), mask("gfx/vxqlogomask.jpg", false);
    glstage_drawfirst(vxqlogo, 13.2f);
    glstage_expect([&](vec2 pos) {
        return tex(pos) + (std::sin(timeval * -2 + pos.y * 60) + 2) * mask(pos) * 0.33f;
    });
}

TEST_F(shading, orangetexgen) {
    const sampler_c bubbles("gfx/bubbles.jpg", true), jeans("gfx/jeans.jpg", true);
    glstage_drawfirst(orangetexgen, 8);
    glstage_expect([&](vec2 pos) {
        const float t = timeval, drift = std::sin(t) * t * 0.01f;
        const vec4 sum =
            bubbles(flip(pos) - vec2(t * 0.4f, drift)) + jeans(flip(pos) - vec2(t * 0.6f, drift));
        return sum * 0.5f * vec4(1 + t * 0.009f, 1, 1 - t * 0.092f, 0);
    });
}

TEST_F(shading, gear) {
    const sampler_c tex("gfx/gear.png", false);
    gearAppear = 1;
    glstage_drawfirst(gear, 190.4f, 100000); // at rest
    glstage_expect([&](vec2 pos) {
        const vec2 uv = unplaced(pos, 190.4f * 0.4f, {0.9f, 0.8f}) * 0.5f + 0.5f;
        return inunitsquare(uv) ? glstage_blended(tex(uv)) : background;
    });
}

TEST_F(shading, orange) {
    const sampler_c tex("gfx/bubbles.jpg", true);
    texture_c bubbles{};
    bubbles.load("gfx/bubbles.jpg", TEX_RGB | TEX_REPEAT);
    orangetex = bubbles.textureid;
    glstage_drawfirst(orange, 60);
    glstage_expect([&](vec2 pos) {
        const vec2 uv = (pos * 2.0f - 1.0f) * vec2(854 / 480.0f, 1);
        const float ang = std::atan2(uv.x, uv.y), dst = glm::dot(uv, uv);
        const float col2 = 0.5f + std::sin(ang * 5 - timeval) * 0.5f;
        const float lit = dst - col2 + 1.5f - 0.7f;
        const float pi = 3.14159265f;
        return tex({0.6f + (dst + lit * 0.1f), lit * std::sin(timeval) * -0.1f + ang * (5 / pi)}) *
               lit;
    });
}

TEST_F(shading, mujuice) {
    const sampler_c torn("gfx/mujuice.jpg", false), still("gfx/mujuice2.jpg", false);
    glstage_drawfirst(mujuice, 33.3f);
    glstage_expect([&](vec2 pos) {
        vec2 uv = pos + vec2(glm::fract(pos.y * 40 + timeval) * 0.02f, 0);
        uv += vec2(glm::fract(pos.y * -30 + timeval) * 0.02f, 0);
        return still(pos) + torn(uv) - 0.5f;
    });
}

TEST_F(shading, zreset) {
    const sampler_c tex("gfx/darkmetal.jpg", false);
    horizonbomb = 0.25f;
    glstage_drawfirst(zreset, 250);
    glstage_expect([&](vec2 pos) {
        const vec2 uv = pos * 0.8f + vec2(0.1f, 0);
        const float in =
            glm::clamp((glm::length(uv - vec2(0.5f, 0.2f)) - 0.25f) / -0.1f, 0.0f, 1.0f);
        return tex(uv) + in * in * (3 - 2 * in) * vec4(1.0f, 0.7f, 0.3f, 0) * 4.0f;
    });
}

TEST(shading_depth, zreset_passes_any_depth_and_lies_before_the_far_plane) {
    glstage_open(true);
    glstage_drawfirst(zreset, 120);
    const vec4 plate = glstage_pixel(width / 2, height / 2);
    glClearDepthf(0.0f);
    glstage_clear();
    pbtausta->initgl();
    zreset->draw();
    EXPECT_EQ(glstage_pixel(width / 2, height / 2), plate);
    pbtausta->draw();
    EXPECT_NE(glstage_pixel(width / 2, height / 2), plate)
        << "it left a depth that all others pass";
}

TEST_F(shading, rocket9) {
    const sampler_c tex("gfx/N9_uv.png", false);
    nysitex.load("gfx/N9_uv.png", 0);
    rockety = 0.2f;
    srand(3);
    const float glow = 0.8f + 0.2f * static_cast<float>(rand()) * 0x1p-31f;
    srand(3);
    glstage_drawfirst(rocket9, 250);
    glstage_expect([&](vec2 pos) {
        const vec2 corner = unplaced(pos, 0, {0, 0.2f}) / vec2(1, 0.5f) * 0.5f + 0.5f;
        if (!inunitsquare(corner))
            return background;
        const vec4 body = tex({corner.x * 0.8f, 0.4f + corner.y * 0.4f});
        return glstage_blended(
            glm::clamp(body + glow * (1 - corner.x) * vec4(1.0f, 0.7f, 0.5f, 0), 0.0f, 1.0f));
    });
}

TEST_F(shading, pbtausta) {
    const sampler_c tex("gfx/pb.jpg", false);
    glstage_drawfirst(pbtausta, 220);
    glstage_expect(tex);
}

TEST_F(shading, heart) {
    const sampler_c tex("gfx/heart.png", false);
    glstage_drawfirst(heart, 55.5f);
    const float brite = 0.9f + std::sin(timeval * 1.4321f) * 0.1f;
    glstage_expect([&](vec2 pos) {
        const vec2 uv = (pos * 2.0f - 1.0f) / (vec2(480 / 854.0f, 1) * 0.3f) * 0.5f + 0.5f;
        return inunitsquare(uv) ? glstage_blended(tex(uv) * vec4(brite, brite, brite, 1))
                                : background;
    });
}

// A row of resting glyphs, the first of them at `ofs` widths to the left, between two heights.
vec4 lettering(const sampler_c& sheet, const char32_t* text, vec2 pos, float ofs, float v_from,
               float v_to) {
    const float x = pos.x * 48 + ofs, up = (pos.y - v_from) / (v_to - v_from);
    const glyphs::cell_s cell = glyphs::cell(glyphs::index(text[static_cast<int>(x)]));
    return sheet(
        {glm::mix(cell.u_lo, cell.u_hi, glm::fract(x)), glm::mix(cell.v_lo, cell.v_hi, up)});
}

TEST_F(shading, scrollertexgen) {
    const sampler_c sheet("gfx/chargen.png", false);
    srand(1);                                      // whose first draws kick nothing
    glstage_drawfirst(scrollertexgen, 14.5f, 222); // 51.06 widths: past the lead-in
    const char32_t* text = U"PLOIIP LPSDLFPLPSLD F SSDDDDDDF LGPLSDFFFF PGL KK";
    glstage_expect([&](vec2 pos) {
        if (text[static_cast<int>(pos.x * 48 + 0.06f)] == U' ')
            return background;
        const vec4 t = lettering(sheet, text, pos, 0.06f, 1, 0);
        return vec4(t.z, t.x, t.y, t.w) * vec4(1.7f, 1.7f, 0.9f, 1);
    });
}

TEST_F(shading, textbox) {
    const sampler_c sheet("gfx/chargen.png", false);
    srand(1);
    glstage_drawfirst(textbox, 300.5f, 0);
    const char32_t* text = U"Hello old friends, it has been a "
                           U"while.\u00A8\u00A8\u00A8\u00A8\u00A8\u00A8\u00A8\u00A8\u00A8";
    glstage_expect([&](vec2 pos) {
        const bool empty = text[static_cast<int>(pos.x * 48)] == glyphs::emptycell;
        if (empty || pos.y < 0.13f || pos.y > 0.27f)
            return background;
        const vec4 t = lettering(sheet, text, pos, 0, 0.13f, 0.27f);
        return vec4(t.x, t.x, t.x, t.w) * vec4(0.7f, 1.0f, 0.6f, 1) * 1.1f;
    });
}

// Along the middle of the ribbon, seen from the front: brightness and place in the strip.
TEST_F(shading, orbitscroller) {
    SDL_Surface* picture = compass();
    texture_c tex{};
    tex.fromsurface(picture);
    const sampler_c strip(picture);
    scrollertex = tex.textureid;
    phone_projection = glm::ortho(-80.0f, 80.0f, -80.0f, 80.0f, -200.0f, 200.0f);
    phone_rotation_mv = glm::rotate(glm::mat4(1), glm::radians(53.0f), vec3(0, 0, 1));
    glstage_drawfirst(orbitscroller, 20);
    for (float u = 0.15f; u < 0.9f; u += 0.05f) {
        const float a = u * 50 * 0.07539822f - 0.3f;
        const vec2 clip = vec2(-std::cos(a) * 70, 0) / 80.0f;
        const float zz = glm::clamp(std::sin(a), 0.2f, 1.0f);
        const vec2 uv(u + std::sin(timeval * 2 + 0.5f * 7) * 0.01f, 0.5f);
        const vec3 expected = vec3(strip(uv)) * zz;
        const vec4 got =
            glstage_pixel(static_cast<int>((clip.x * 0.5f + 0.5f) * width), height / 2);
        EXPECT_NEAR(got.r, expected.r, 0.06f) << u;
        EXPECT_NEAR(got.g, expected.g, 0.06f) << u;
    }
}

} // namespace

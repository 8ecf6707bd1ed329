// The shaders of the full-screen effects and of the text on software GL, pixel by pixel against the
// same arithmetic in C++: which way up, which unit, which formula.
#include "3dphone.h"
#include "effects.h"
#include "glyphs.h"
#include "main/clock.h"
#include "main/video.h"
#include "offscreen.h"
#include "port.h"
#include "sync.h"
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

constexpr int width = 427;
constexpr int height = 240;
const vec4 background(0.2f, 0.4f, 0.6f, 1.0f);

// A picture as GL samples it: bottom row first, linear.
class sampler_c {
public:
    sampler_c(const char* file, bool repeating)
        : surface(texture_c::load_image(file, GL_RGBA)), repeats(repeating) {}

    explicit sampler_c(SDL_Surface* pixels) : surface(pixels), repeats(false) {}

    vec4 operator()(vec2 uv) const {
        const vec2 place = uv * vec2(surface->w, surface->h) - 0.5f;
        const vec2 base = glm::floor(place), part = place - base;
        const int x = static_cast<int>(base.x), y = static_cast<int>(base.y);
        return glm::mix(glm::mix(texel(x, y), texel(x + 1, y), part.x),
                        glm::mix(texel(x, y + 1), texel(x + 1, y + 1), part.x), part.y);
    }

private:
    SDL_Surface* surface;
    bool repeats;

    int wrapped(int i, int size) const {
        return repeats ? ((i % size) + size) % size : glm::clamp(i, 0, size - 1);
    }

    vec4 texel(int x, int y) const {
        const auto* row = static_cast<const Uint8*>(surface->pixels) +
                          wrapped(y, surface->h) * surface->pitch + wrapped(x, surface->w) * 4;
        return vec4(row[0], row[1], row[2], row[3]) / 255.0f;
    }
};

// Red grows to the right, green upwards, blue is a mark in the top right corner.
SDL_Surface* compass() {
    SDL_Surface* surface =
        SDL_CreateRGBSurface(SDL_SWSURFACE, 64, 64, 32, 0xff, 0xff00, 0xff0000, 0xff000000);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) {
            Uint8* p = static_cast<Uint8*>(surface->pixels) + y * surface->pitch + x * 4;
            p[0] = static_cast<Uint8>(x * 4);
            p[1] = static_cast<Uint8>(y * 4);
            p[2] = x > 48 && y > 48 ? 255 : 0;
            p[3] = 255;
        }
    return surface;
}

void opengl() {
    offscreen_setsize(width, height);
    port_beforesdl();
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0);
    init_gl();
    glViewport(0, 0, width, height);
}

void setbeat(float beat) {
    beatgrid = beat;
    timeval = 0.128f + beat * 0.634875f;
}

void clear() {
    glClearColor(background.r, background.g, background.b, background.a);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

// Draws the effect's first frame, over which `skip` ticks pass, on the background.
void drawfirst(demoeffect_c* effect, float beat, int skip = 1) {
    effect->initgl();
    setbeat(beat);
    frameskip = skip;
    clear();
    effect->draw();
    sync_ack();
}

vec3 pixel(int x, int y) {
    Uint8 p[4];
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
    return vec3(p[0], p[1], p[2]) / 255.0f;
}

vec4 blended(const vec4& source) {
    return source * source.a + background * (1 - source.a);
}

// Compares the picture with `shade` over the unit square (v = 0 at the bottom). A few pixels may
// differ: those on an edge.
void expectshaded(const std::function<vec4(vec2)>& shade) {
    int compared = 0, wrong = 0;
    std::string first;
    for (int y = 2; y < height; y += 5)
        for (int x = 2; x < width; x += 5) {
            const vec2 pos((x + 0.5f) / width, (y + 0.5f) / height);
            const vec3 expected = glm::clamp(vec3(shade(pos)), 0.0f, 1.0f);
            const vec3 got = pixel(x, y);
            const vec3 off = glm::abs(expected - got);
            ++compared;
            if (std::max({off.r, off.g, off.b}) < 5 / 255.0f)
                continue;
            if (wrong++ == 0)
                first = "at " + std::to_string(x) + ", " + std::to_string(y) + " red " +
                        std::to_string(got.r) + " for " + std::to_string(expected.r);
        }
    EXPECT_LT(wrong, compared / 400) << first;
}

class shading : public testing::Test {
protected:
    void SetUp() override { opengl(); }
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
    drawfirst(texturetest, 115);
    expectshaded(sampler_c(picture));
}

TEST_F(shading, lace) {
    const sampler_c tex("gfx/lacetrace.jpg", true);
    drawfirst(lace, 81, 100000); // the circle is at rest
    expectshaded([&](vec2 pos) {
        const vec2 uv = flip(pos) * vec2(3.5f, 2.0f);
        const float dist =
            glm::clamp((glm::length(uv - vec2(1.75f, 1.0f)) - 0.5f) * 3.0f, 0.0f, 1.0f);
        const float alpha = glm::clamp(dist - tex(uv * 0.5f).r, 0.0f, 1.0f);
        return blended(vec4(0, 0, 0, alpha));
    });
}

TEST_F(shading, pelvar) {
    const sampler_c tex("gfx/roses.png", true);
    drawfirst(pelvar, 20.3f, 450);
    expectshaded([&](vec2 pos) {
        const float saw = 2 - glm::fract(0.5f + 20.3f * 0.5f), satur = 1 + std::sin(timeval) * 0.3f;
        const vec2 uv = flip(pos);
        vec4 value = tex(uv * vec2(3, 1) + vec2(0.5f + std::pow(saw - 1, 10.0f), 0));
        value = vec4(glm::pow(vec3(value), vec3(saw)), value.a);
        const float dist = glm::clamp((uv.x * 3.5f - 1.5f) * 3, 0.0f, 1.0f);
        return blended(glm::clamp(vec4(satur, satur, satur, dist) * value, 0.0f, 1.0f));
    });
}

vec2 onface(vec2 pos) {
    const vec2 clip = pos * 2.0f - 1.0f - vec2(-1.0f, -1.08f - ylift);
    return clip / vec2(2.0f, 2 * 500 / 480.0f);
}

TEST_F(shading, backdrop_of_the_face) {
    const sampler_c tex("gfx/kallotausta.jpg", false);
    drawfirst(face, 256 + 1);
    expectshaded([&](vec2 pos) { return tex(onface(pos)) + 0.5f; });
}

TEST_F(shading, face) {
    const sampler_c tex("gfx/face.jpg", false);
    ylift = -0.3f;
    drawfirst(face, 256 + 15.5f);
    expectshaded([&](vec2 pos) {
        const vec2 uv = onface(pos);
        return inunitsquare(uv) ? tex(uv) - 0.25f : background;
    });
}

TEST_F(shading, ripsilu) {
    const sampler_c tex("gfx/ripsilu.jpg", false);
    ripsilu_mm = 0.3f;
    drawfirst(ripsilu, 211);
    expectshaded([&](vec2 pos) { return tex(pos) + 0.3f; });
}

TEST_F(shading, vxqlogo) {
    const sampler_c tex("gfx/vxqlogo.jpg", false), mask("gfx/vxqlogomask.jpg", false);
    drawfirst(vxqlogo, 13.2f);
    expectshaded([&](vec2 pos) {
        return tex(pos) + (std::sin(timeval * -2 + pos.y * 60) + 2) * mask(pos) * 0.33f;
    });
}

TEST_F(shading, orangetexgen) {
    const sampler_c bubbles("gfx/bubbles.jpg", true), jeans("gfx/jeans.jpg", true);
    drawfirst(orangetexgen, 8);
    expectshaded([&](vec2 pos) {
        const float t = timeval, drift = std::sin(t) * t * 0.01f;
        const vec4 sum =
            bubbles(flip(pos) - vec2(t * 0.4f, drift)) + jeans(flip(pos) - vec2(t * 0.6f, drift));
        return sum * 0.5f * vec4(1 + t * 0.009f, 1, 1 - t * 0.092f, 0);
    });
}

TEST_F(shading, gear) {
    const sampler_c tex("gfx/gear.png", false);
    gearAppear = 1;
    drawfirst(gear, 190.4f, 100000); // at rest
    expectshaded([&](vec2 pos) {
        const vec2 uv = unplaced(pos, 190.4f * 0.4f, {0.9f, 0.8f}) * 0.5f + 0.5f;
        return inunitsquare(uv) ? blended(tex(uv)) : background;
    });
}

TEST_F(shading, orange) {
    const sampler_c tex("gfx/bubbles.jpg", true);
    texture_c bubbles{};
    bubbles.load("gfx/bubbles.jpg", TEX_RGB | TEX_REPEAT);
    orangetex = bubbles.textureid;
    drawfirst(orange, 60);
    expectshaded([&](vec2 pos) {
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
    drawfirst(mujuice, 33.3f);
    expectshaded([&](vec2 pos) {
        vec2 uv = pos + vec2(glm::fract(pos.y * 40 + timeval) * 0.02f, 0);
        uv += vec2(glm::fract(pos.y * -30 + timeval) * 0.02f, 0);
        return still(pos) + torn(uv) - 0.5f;
    });
}

TEST_F(shading, zreset) {
    const sampler_c tex("gfx/darkmetal.jpg", false);
    horizonbomb = 0.25f;
    drawfirst(zreset, 250);
    expectshaded([&](vec2 pos) {
        const vec2 uv = pos * 0.8f + vec2(0.1f, 0);
        const float in =
            glm::clamp((glm::length(uv - vec2(0.5f, 0.2f)) - 0.25f) / -0.1f, 0.0f, 1.0f);
        return tex(uv) + in * in * (3 - 2 * in) * vec4(1.0f, 0.7f, 0.3f, 0) * 4.0f;
    });
}

TEST_F(shading, zreset_passes_any_depth_and_lies_before_the_far_plane) {
    drawfirst(zreset, 120);
    const vec3 plate = pixel(width / 2, height / 2);
    glClearDepthf(0.0f);
    clear();
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    pbtausta->initgl();
    zreset->draw();
    EXPECT_EQ(pixel(width / 2, height / 2), plate);
    pbtausta->draw();
    EXPECT_NE(pixel(width / 2, height / 2), plate) << "it left a depth that all others pass";
}

TEST_F(shading, rocket9) {
    const sampler_c tex("gfx/N9_uv.png", false);
    nysitex.load("gfx/N9_uv.png", 0);
    rockety = 0.2f;
    srand(3);
    const float glow = 0.8f + 0.2f * static_cast<float>(rand()) * 0x1p-31f;
    srand(3);
    drawfirst(rocket9, 250);
    expectshaded([&](vec2 pos) {
        const vec2 corner = unplaced(pos, 0, {0, 0.2f}) / vec2(1, 0.5f) * 0.5f + 0.5f;
        if (!inunitsquare(corner))
            return background;
        const vec4 body = tex({corner.x * 0.8f, 0.4f + corner.y * 0.4f});
        return blended(
            glm::clamp(body + glow * (1 - corner.x) * vec4(1.0f, 0.7f, 0.5f, 0), 0.0f, 1.0f));
    });
}

TEST_F(shading, pbtausta) {
    const sampler_c tex("gfx/pb.jpg", false);
    drawfirst(pbtausta, 220);
    expectshaded(tex);
}

TEST_F(shading, heart) {
    const sampler_c tex("gfx/heart.png", false);
    drawfirst(heart, 55.5f);
    const float brite = 0.9f + std::sin(timeval * 1.4321f) * 0.1f;
    expectshaded([&](vec2 pos) {
        const vec2 uv = (pos * 2.0f - 1.0f) / (vec2(480 / 854.0f, 1) * 0.3f) * 0.5f + 0.5f;
        return inunitsquare(uv) ? blended(tex(uv) * vec4(brite, brite, brite, 1)) : background;
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
    srand(1);                              // whose first draws kick nothing
    drawfirst(scrollertexgen, 14.5f, 222); // 51.06 widths: past the lead-in
    const char32_t* text = U"PLOIIP LPSDLFPLPSLD F SSDDDDDDF LGPLSDFFFF PGL KK";
    expectshaded([&](vec2 pos) {
        if (text[static_cast<int>(pos.x * 48 + 0.06f)] == U' ')
            return background;
        const vec4 t = lettering(sheet, text, pos, 0.06f, 1, 0);
        return vec4(t.z, t.x, t.y, t.w) * vec4(1.7f, 1.7f, 0.9f, 1);
    });
}

TEST_F(shading, textbox) {
    const sampler_c sheet("gfx/chargen.png", false);
    srand(1);
    drawfirst(textbox, 300.5f, 0);
    const char32_t* text = U"Hello old friends, it has been a "
                           U"while.\u00A8\u00A8\u00A8\u00A8\u00A8\u00A8\u00A8\u00A8\u00A8";
    expectshaded([&](vec2 pos) {
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
    drawfirst(orbitscroller, 20);
    for (float u = 0.15f; u < 0.9f; u += 0.05f) {
        const float a = u * 50 * 0.07539822f - 0.3f;
        const vec2 clip = vec2(-std::cos(a) * 70, 0) / 80.0f;
        const float zz = glm::clamp(std::sin(a), 0.2f, 1.0f);
        const vec2 uv(u + std::sin(timeval * 2 + 0.5f * 7) * 0.01f, 0.5f);
        const vec3 expected = vec3(strip(uv)) * zz;
        const vec3 got = pixel(static_cast<int>((clip.x * 0.5f + 0.5f) * width), height / 2);
        EXPECT_NEAR(got.r, expected.r, 0.06f) << u;
        EXPECT_NEAR(got.g, expected.g, 0.06f) << u;
    }
}

} // namespace

// The programs of the effects that draw more than quads, each on a face or a point of the test's
// own: where it lands, how large it is, and its colour by the same arithmetic in C++.
#include "3dphone.h"
#include "effects.h"
#include "glstage.h"
#include "main/startup.h"
#include "texture.h"

#include <algorithm>
#include <cmath>
#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <gtest/gtest.h>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

namespace {

using glm::mat3;
using glm::mat4;
using glm::vec2;
using glm::vec3;
using glm::vec4;

GLuint program = 0;

GLint location(const char* name) {
    return glGetUniformLocation(program, name);
}

void set(const char* name, float value) {
    glUniform1f(location(name), value);
}

void set(const char* name, const vec2& value) {
    glUniform2f(location(name), value.x, value.y);
}

void set(const char* name, const vec3& value) {
    glUniform3f(location(name), value.x, value.y, value.z);
}

void set(const char* name, const mat3& value) {
    glUniformMatrix3fv(location(name), 1, GL_FALSE, glm::value_ptr(value));
}

void set(const char* name, const mat4& value) {
    glUniformMatrix4fv(location(name), 1, GL_FALSE, glm::value_ptr(value));
}

void fix(const char* attribute, const vec3& value) {
    const GLint where = glGetAttribLocation(program, attribute);
    ASSERT_GE(where, 0) << attribute;
    glDisableVertexAttribArray(static_cast<GLuint>(where));
    glVertexAttrib3f(static_cast<GLuint>(where), value.x, value.y, value.z);
}

void feed(const std::string& attribute, int size, const std::vector<float>& values) {
    static std::map<std::string, std::vector<float>> kept; // GL reads them when it draws
    kept[attribute] = values;
    const GLint where = glGetAttribLocation(program, attribute.c_str());
    ASSERT_GE(where, 0) << attribute;
    glVertexAttribPointer(static_cast<GLuint>(where), size, GL_FLOAT, GL_FALSE, 0,
                          kept[attribute].data());
    glEnableVertexAttribArray(static_cast<GLuint>(where));
}

// One colour all over.
GLuint plain(const glm::u8vec4& colour) {
    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, &colour);
    for (GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
    return name;
}

void expectcolour(const vec4& expected, int x = glstage_width / 2, int y = glstage_height / 2 - 1) {
    const vec4 got = glstage_pixel(x, y), wanted = glm::clamp(expected, 0.0f, 1.0f);
    for (int c = 0; c < 4; ++c)
        EXPECT_NEAR(got[c], wanted[c], 0.006f) << "channel " << c;
}

class programs : public testing::Test {
protected:
    void SetUp() override { glstage_open(); }

    // Leaves the effect's program current.
    void take(demoeffect_c* effect) {
        static Uint8 keys[SDLK_LAST] = {};
        keystate = keys;
        glstage_drawfirst(effect, 20.0f, 0);
        current();
    }

    void current() {
        GLint now = 0;
        glGetIntegerv(GL_CURRENT_PROGRAM, &now);
        program = static_cast<GLuint>(now);
        glDisable(GL_BLEND);
        glActiveTexture(GL_TEXTURE0);
    }

    // A sheet over the screen in x and z of the model's space, at height y.
    void sheet(float y) {
        glstage_clear();
        feed("pos", 3, {-1, y, -1, 3, y, -1, -1, y, 3});
        glDrawArrays(GL_TRIANGLES, 0, 3);
    }

    // The number of pixels that one point at `pos` lights. An odd number of rows gives the screen a
    // pixel in its middle.
    int point(const vec3& pos) {
        glViewport(0, 0, glstage_width, glstage_height - 1);
        glstage_clear();
        feed("pos", 3, {pos.x, pos.y, pos.z});
        glDrawArrays(GL_POINTS, 0, 1);
        return lit();
    }

    static int lit() {
        int count = 0;
        for (int y = glstage_height / 2 - 60; y < glstage_height / 2 + 60; ++y)
            for (int x = glstage_width / 2 - 60; x < glstage_width / 2 + 60; ++x)
                count += glm::distance(glstage_pixel(x, y), glstage_background) > 0.02f;
        return count;
    }

    // A square of that many pixels on each side, give or take what lies on its border.
    static void expectsize(int pixels, float side) {
        EXPECT_GE(pixels, std::floor(side) * std::floor(side)) << side;
        EXPECT_LE(pixels, std::ceil(side) * std::ceil(side)) << side;
    }
};

// From x and z of the model to the screen; y goes nowhere, clip z is `depth`.
mat4 fromabove(float depth) {
    return mat4(vec4(1, 0, 0, 0), vec4(0), vec4(0, 1, 0, 0), vec4(0, 0, depth, 1));
}

// A turn of all three axes.
const mat3 turned(glm::rotate(mat4(1.0f), 0.8f, vec3(1, 2, -0.5f)));

TEST_F(programs, phone_is_lit_from_the_viewer_and_never_darker_than_a_fifth) {
    phonescreentex = plain({200, 100, 50, 255});
    take(flyphone);
    set("mvp", fromabove(0.0f));
    set("mv", turned);
    fix("uv", vec3(0.5f));
    for (const vec3& nor : {vec3(0, 0, 1), vec3(0, 1, 0), vec3(1, 0, 0), vec3(0.6f, 0, 0.8f),
                            vec3(0, -0.6f, -0.8f), vec3(-1, 0, 0)}) {
        glBindTexture(GL_TEXTURE_2D, phonescreentex);
        fix("nor", nor);
        sheet(0.0f);
        const float zz = glm::clamp((turned * nor).z, 0.2f, 1.0f);
        expectcolour(vec4(vec3(200, 100, 50) / 255.0f * zz, 1.0f));
    }
}

TEST_F(programs, phone_lies_where_its_matrix_says_with_its_picture_upright) {
    take(flyphone);
    texture_c picture{};
    SDL_Surface* surface = compass();
    picture.fromsurface(surface);
    set("mvp", glm::scale(mat4(1.0f), vec3(0.5f, 1.0f, 1.0f)));
    set("mv", mat3(1.0f));
    fix("nor", vec3(0, 0, 1));
    glstage_clear();
    feed("pos", 3, {-1, -1, 0, 1, -1, 0, -1, 1, 0, 1, 1, 0});
    feed("uv", 2, {0, 0, 1, 0, 0, 1, 1, 1});
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    const sampler_c sampled(surface);
    glstage_expect([&](vec2 pos) {
        const vec2 at((pos.x - 0.25f) * 2.0f, pos.y);
        return at.x < 0 || at.x > 1 ? glstage_background : sampled(at);
    });
}

struct citycase_s {
    vec3 nor;
    float y, depth, dist, bomb;
    glm::u8vec4 texel;
};

TEST_F(programs, city_darkens_to_the_street_and_into_the_distance_and_glows) {
    take(tunnel);
    const vec3 light(0.6666667f, 0.6666667f, 0.33333334f);
    set("mv", turned);
    set("lightdir", light);
    set("bomb2", 0.0f);
    fix("uv", vec3(0.5f));
    const glm::u8vec4 facade(90, 120, 60, 0), window(90, 120, 60, 200);
    const vec3 lit = glm::transpose(turned) * light, dim(glm::transpose(turned) * -light);
    for (const citycase_s& c : std::initializer_list<citycase_s>{
             {lit, 100, 0, 1, 0, facade}, // full light
             {dim, 100, 0, 1, 0, facade}, // a fifth
             {vec3(1, 0, 0), 100, 0, 1, 0, facade},
             {lit, 30, 0, 1, 0, facade},          // near the street
             {lit, -50, 0, 1, 0, facade},         // black
             {lit, 100, 0.3f, 0.6f, 0, facade},   // half-way into the fog
             {lit, 100, 0.7f, 0.6f, 0, facade},   // behind it
             {lit, 20, 0.4f, 0.6f, 0.9f, facade}, // blown up
             {lit, 100, 0, 1, 0, window},
             {dim, -50, 0.7f, 0.6f, 0, window}}) {
        set("mvp", fromabove(c.depth));
        set("u_dist", c.dist);
        set("bomb", c.bomb);
        fix("nor", c.nor);
        plain(c.texel);
        sheet(c.y);
        float zz = glm::clamp(glm::dot(light, turned * c.nor), 0.2f, 1.0f);
        zz *= glm::clamp((c.y + 50.0f) * 0.007f, 0.0f, 1.0f);
        zz *= 1.0f - std::pow(glm::clamp(c.depth / c.dist, 0.0f, 1.0f), 2.0f);
        zz += c.bomb;
        const vec4 colour = vec4(c.texel) / 255.0f * vec4(zz, zz, zz, 0.2f);
        expectcolour(colour + vec4(vec3(1.0f, 1.0f, 0.8f) * colour.a, 0.0f));
    }
}

// Where a small face lands that a bomb has thrown.
TEST_F(programs, city_bursts_along_a_scrambled_mix_of_normal_and_place_in_the_picture) {
    take(tunnel);
    plain({255, 255, 255, 255});
    const vec3 nor(0.1f, 0.2f, 0.3f);
    const vec2 uv(0.4f, -0.15f);
    const float bomb2 = 1.5f;
    set("mvp", fromabove(0.0f));
    set("bomb2", bomb2);
    set("bomb", 1.0f);
    set("u_dist", 1.0f);
    fix("nor", nor);
    fix("uv", vec3(uv, 0));
    glstage_clear();
    const float h = 0.02f;
    feed("pos", 3, {-h, 0, -h, h, 0, -h, -h, 0, h, h, 0, h});
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    const vec3 thrown = (vec3(nor.y, nor.z, nor.x) + vec3(uv.y, uv.x, uv.y)) * bomb2;
    const auto onscreen = [](float clip, int size) {
        return static_cast<int>((clip * 0.5f + 0.5f) * static_cast<float>(size));
    };
    const int x = onscreen(thrown.x, glstage_width), y = onscreen(thrown.z, glstage_height);
    EXPECT_GT(glm::distance(glstage_pixel(x, y), glstage_background), 0.2f);
    for (const glm::ivec2& beside : {glm::ivec2(8, 0), {-8, 0}, {0, 6}, {0, -6}})
        EXPECT_EQ(glstage_pixel(x + beside.x, y + beside.y), glstage_pixel(0, 0))
            << beside.x << ", " << beside.y;
}

TEST_F(programs, solid_is_green_where_lit_and_blue_where_turned_away) {
    take(dode);
    const vec3 light(0.57735026f);
    set("mvp", fromabove(0.0f));
    set("mv", turned);
    set("lightdir", light);
    for (const vec3& nor : {glm::transpose(turned) * light, glm::transpose(turned) * -light,
                            vec3(1, 0, 0), vec3(0, 1, 0), vec3(0, 0.6f, 0.8f)}) {
        fix("nor", nor);
        sheet(0.0f);
        const float lit = glm::clamp(glm::dot(light, turned * nor), 0.0f, 1.0f);
        expectcolour(
            glm::mix(vec4(0.03f, 0.36f, 0.529f, 1.0f), vec4(0.257f, 0.596f, 0.31f, 1.0f), lit));
    }
}

TEST_F(programs, ball_has_dots_that_grow_and_brighten_towards_the_viewer) {
    take(ballspring);
    set("mvp",
        glm::scale(mat4(1.0f), vec3(0.0f)) + mat4(vec4(0), vec4(0), vec4(0), vec4(0, 0, 0, 1)));
    set("mv", turned);
    const glm::u8vec4 texel(255, 200, 100, 255);
    plain(texel);
    for (float z : {100.0f, 40.0f, 0.0f, -60.0f, -100.0f, 150.0f}) {
        const float zz = std::max(0.6f + z * 0.004f, 0.0f);
        const int pixels = point(glm::transpose(turned) * vec3(30, -20, z));
        expectsize(pixels, zz * zz * 50.0f);
        const vec4 col = glm::clamp(vec4(zz * 0.9f, zz * zz * 0.7f, 0.2f, 1.0f), 0.0f, 1.0f);
        expectcolour(vec4(texel) / 255.0f * col);
    }
    EXPECT_LE(point(glm::transpose(turned) * vec3(0, 0, -200)), 1) << "behind all size";
}

TEST_F(programs, ball_shows_the_dots_picture_from_its_top_left) {
    take(ballspring);
    texture_c picture{};
    SDL_Surface* surface = compass();
    picture.fromsurface(surface);
    set("mvp",
        glm::scale(mat4(1.0f), vec3(0.0f)) + mat4(vec4(0), vec4(0), vec4(0), vec4(0, 0, 0, 1)));
    set("mv", mat3(1.0f));
    point(vec3(0, 0, 100)); // 50 pixels
    const sampler_c sampled(surface);
    for (int dx : {-20, -7, 9, 21})
        for (int dy : {-19, 3, 20}) {
            const vec2 coord(0.5f + dx / 50.0f, 0.5f - dy / 50.0f);
            const vec4 got = glstage_pixel(glstage_width / 2 + dx, glstage_height / 2 + dy);
            EXPECT_NEAR(got.r, sampled(coord).r * 0.9f, 0.03f) << dx << ", " << dy;
            EXPECT_NEAR(got.g, sampled(coord).g * 0.7f, 0.03f) << dx << ", " << dy;
        }
}

TEST_F(programs, credits_are_carved_into_lit_rock) {
    take(bump);
    const vec3 light(500.0f, -300.0f, -90.0f);
    const vec2 scale(100.0f, -700.0f);
    set("scale", scale);
    set("lightdir", light);
    SDL_Surface* surface = compass();
    texture_c rock{}, credits{};
    rock.fromsurface(surface, TEX_REPEAT);
    credits.fromsurface(surface);
    glActiveTexture(GL_TEXTURE1);
    plain({178, 102, 240, 255});
    glActiveTexture(GL_TEXTURE2);
    glBindTexture(GL_TEXTURE_2D, credits.textureid);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, rock.textureid);
    glstage_clear();
    feed("pos", 2, {0, 0, 854, 0, 0, 480, 854, 480});
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    const vec3 normal = glm::normalize(vec3(178, 102, 240) / 255.0f - 0.5f);
    const sampler_c pictured(surface);
    glstage_expect([&](vec2 unit) {
        const vec2 wall = unit * vec2(854, 480) + scale;
        const vec2 tile = glm::fract((wall + 0.5f) / 256.0f);
        const vec4 got = glstage_pixel(static_cast<int>(unit.x * glstage_width),
                                       static_cast<int>(unit.y * glstage_height));
        if (std::min({tile.x, tile.y, 1 - tile.x, 1 - tile.y}) < 0.02f)
            return got; // where one tile meets the next
        const float shade =
            0.2f +
            glm::clamp(glm::dot(glm::normalize(vec3(wall, 0) - light), normal), 0.0f, 1.0f) * 1.5f;
        const vec3 carved = pictured((wall + vec2(0, 1024)) / vec2(2048, 1024));
        const vec3 colour = glm::mix(vec3(pictured(tile)), vec3(0.1f, 0.02f, 0.0f), carved) * shade;
        return vec4(colour, got.a); // which nobody writes
    });
}

TEST_F(programs, near_stars_are_six_pixels_and_far_ones_one) {
    take(starfield);
    for (float z : {0.01f, 0.2f, 0.5f, 0.75f, 0.9f, 1.1f}) {
        expectsize(point(vec3(0, 0, z)), glm::clamp(6.0f * (1 - z), 1.0f, 6.0f));
        expectcolour(vec4(1 - z));
    }
    const vec2 off(0.3f, -0.2f);
    point(vec3(off, 0.5f));
    expectcolour(vec4(0.5f), static_cast<int>((off.x / 0.5f * 0.5f + 0.5f) * glstage_width),
                 static_cast<int>((off.y / 0.5f * 0.5f + 0.5f) * (glstage_height - 1)));
}

TEST_F(programs, stars_of_the_flight_shrink_and_darken_with_distance) {
    take(starfield2);
    // Clip z and w are those of the point: w in x, z in y, and the middle of the screen.
    set("mvp", mat4(vec4(0, 0, 0, 1), vec4(0, 0, 1, 0), vec4(0), vec4(0)));
    for (float w : {20.0f, 33.0f, 40.0f, 50.0f, 100.0f, 150.0f, 250.0f}) {
        const float z = std::min(w, 80.0f) * 0.9f;
        expectsize(point(vec3(w, z, 0)), glm::clamp(200.0f / w, 1.0f, 6.0f));
        expectcolour(vec4((100.0f - z) / 100.0f));
    }
}

TEST_F(programs, fluid_has_points_of_ten_pixels_where_the_flow_has_taken_them) {
    take(fluid);
    // One column of two rows: from the left bottom to the middle.
    const glm::u8vec4 flow[] = {{0, 0, 0, 0}, {127, 128, 0, 0}};
    plain({});
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, flow);
    const vec3 colour(0.1f, 0.3f, 0.2f);
    fix("pos", vec3(0.5f, 0.25f, 0));
    set("poso", 0.5f);
    set("aa", 0.7f);
    for (float white : {0.0f, 0.5f}) {
        set("white", white);
        glstage_clear();
        feed("col", 3, {colour.r, colour.g, colour.b});
        glDrawArrays(GL_POINTS, 0, 1);
        EXPECT_NEAR(lit(), 100, 10);
        expectcolour(vec4(colour + white, 0.7f));
    }
}

TEST_F(programs, ribbon_is_bright_in_front_and_dark_all_round_its_back) {
    take(orbitscroller);
    plain({255, 255, 255, 255});
    set("time", 0.0f);
    fix("uv", vec3(0.5f));
    for (float degrees : {0.0f, 30.0f, 60.0f, 80.0f, 90.0f, 120.0f, 180.0f, 225.0f, 300.0f}) {
        const float a = glm::radians(degrees);
        const vec3 place = vec3(std::sin(a), 0.4f, std::cos(a)) * 70.0f;
        // All that is near this place covers the screen.
        const mat4 nearby =
            glm::scale(mat4(1.0f), vec3(20, 20, 0)) * glm::translate(mat4(1.0f), -place);
        set("mvp", nearby);
        glstage_clear();
        std::vector<float> corners;
        for (const vec2& corner : {vec2(-1, -1), vec2(3, -1), vec2(-1, 3)})
            for (float value : {place.x + corner.x * 0.1f, place.y + corner.y * 0.1f, place.z})
                corners.push_back(value);
        feed("pos", 3, corners);
        glDrawArrays(GL_TRIANGLES, 0, 3);
        const float zz = glm::clamp(std::cos(a), 0.2f, 1.0f);
        expectcolour(vec4(zz, zz, zz, 1.0f));
    }
}

TEST_F(programs, ribbon_ripples_sideways_by_its_height_alone) {
    take(orbitscroller);
    texture_c strip{};
    SDL_Surface* surface = compass();
    strip.fromsurface(surface);
    const sampler_c sampled(surface);
    set("mvp", mat4(vec4(0.01f, 0, 0, 0), vec4(0, 0.01f, 0, 0), vec4(0), vec4(0, 0, 0, 1)));
    for (float time : {0.3f, 1.1f}) {
        set("time", time);
        for (const vec2& uv : {vec2(0.3f, 0.2f), vec2(0.3f, 0.8f), vec2(0.7f, 0.5f)}) {
            glstage_clear();
            fix("uv", vec3(uv, 0));
            feed("pos", 3, {-100, -100, 1e6f, 300, -100, 1e6f, -100, 300, 1e6f});
            glDrawArrays(GL_TRIANGLES, 0, 3);
            expectcolour(sampled(uv + vec2(std::sin(time * 2 + uv.y * 7) * 0.01f, 0)));
        }
    }
}

// ---- depth ----

struct place_s {
    demoeffect_c*& effect;
    float beat;
    int skip;
    float z;
    vec2 at; // of the screen, 0 to 1
};

TEST(depths, lie_in_the_order_in_which_things_hide_each_other) {
    glstage_open(true);
    nysitex.load("gfx/N9_uv.png", 0);
    gearAppear = 1;
    const place_s places[] = {
        {gear, 190.4f, 100000, 0.8f, {0.92f, 0.9f}},   {ripsilu, 210.0f, 1, 0.9f, {0.5f, 0.5f}},
        {pbtausta, 220.0f, 1, 0.9f, {0.5f, 0.5f}},     {face, 260.0f, 1, 0.999f, {0.5f, 0.5f}},
        {rocket9, 250.0f, 1, 0.999998f, {0.5f, 0.5f}}, {zreset, 250.0f, 1, 0.999999f, {0.5f, 0.5f}},
        {bump, 170.0f, 1, 0.1f, {0.5f, 0.5f}},         {texturetest, 116.0f, 1, 0.0f, {0.5f, 0.5f}},
        {vxqlogo, 12.0f, 1, 0.0f, {0.5f, 0.5f}},       {mujuice, 40.0f, 1, 0.0f, {0.5f, 0.5f}},
        {orange, 60.0f, 1, 0.0f, {0.5f, 0.5f}},        {orangetexgen, 60.0f, 1, 0.0f, {0.5f, 0.5f}},
        {heart, 60.0f, 1, 0.0f, {0.5f, 0.5f}},         {lace, 90.0f, 1, 0.0f, {0.5f, 0.5f}},
        {pelvar, 20.0f, 1, 0.0f, {0.5f, 0.5f}}};
    for (const place_s& place : places) {
        glstage_drawfirst(place.effect, place.beat, place.skip);
        const float got = glstage_clipdepth(static_cast<int>(place.at.x * glstage_width),
                                            static_cast<int>(place.at.y * glstage_height));
        EXPECT_NEAR(got, place.z, 3e-7f) << "at beat " << place.beat;
    }
}

TEST(depths, of_the_fluid) {
    glstage_open(true);
    glstage_drawfirst(fluid, 257.0f);
    GLint now = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &now);
    program = static_cast<GLuint>(now);
    plain({128, 128, 0, 0});
    glstage_clear();
    feed("col", 3, {1, 1, 1});
    fix("pos", vec3(0.5f));
    glDrawArrays(GL_POINTS, 0, 1);
    EXPECT_NEAR(glstage_clipdepth(glstage_width / 2, glstage_height / 2), 0.9989f, 3e-7f);
}

} // namespace

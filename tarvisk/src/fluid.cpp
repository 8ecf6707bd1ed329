// A grid of coloured points that flows together into the picture of a face. The whole motion is
// simulated once, at load time, into a texture that the vertex shader plays back.
#include "effects.h"
#include "glcaps.h"
#include "main/clock.h"
#include "quad.h"
#include "schedule.h"
#include "shader.h"
#include "texture.h"
#include "util.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace {

constexpr int particlecount = 2048;  // simulated; a column of tex_pos each
constexpr int steps = 64;            // a row of tex_pos each
constexpr int pointcount = 10000;    // drawn, each between two particles
constexpr float aspect = 0.5620609f; // height to width of the picture

// The spots of the face lie in its lowest 500 rows.
constexpr int facerows = 500;

shader_c shader;
texture_c tex_pos; // red, green: a particle's x, y at a step, clip units mapped to 0 .. 1
glm::vec2 points[pointcount]; // column and first row in tex_pos
glm::vec3 cols[pointcount];
bool drawable;

const char vertex_src[] = R"(
precision highp float;
attribute vec2 pos;
attribute vec2 uv;
attribute vec3 col;
varying vec3 v_col;
uniform float poso;
uniform float white;
uniform sampler2D tex_pos;
void main() {
    v_col = col + white;
    vec2 particle_pos = texture2D(tex_pos, pos + vec2(0.0, poso)).xy;
    gl_Position = vec4(particle_pos * 2.0 - vec2(1.0, 1.0), 0.9989, 1.0);
    gl_PointSize = 10.;
}
)";

const char fragment_src[] = R"(
precision highp float;
varying vec3 v_col;
uniform float aa;
void main() {
    gl_FragColor = vec4(v_col, aa);
}
)";

glm::vec2 randomvec2(float size) {
    const float x = util::rnd_n() * size;
    const float y = util::rnd_n() * size;
    return {x, y};
}

SDL_Surface* newsurface(int width, int height) {
    return SDL_CreateRGBSurface(SDL_SWSURFACE, width, height, 32, 0x000000FF, 0x0000FF00,
                                0x00FF0000, 0);
}

Uint8* pixel(SDL_Surface* surf, int column, int row) {
    return static_cast<Uint8*>(surf->pixels) + row * surf->pitch + column * 4;
}

// -1 .. 1 as a colour byte.
Uint8 tobyte(float clip) {
    const float value = std::floor((clip * 0.5f + 0.5f) * 255.0f + 0.5f);
    return static_cast<Uint8>(std::clamp(value, 0.0f, 255.0f));
}

glm::vec2 startpos(int i) {
    const glm::vec2 jitter = randomvec2(0.02f);
    const float x = static_cast<float>(i % 16) / 16.0f * 2.3f - 1.0f + jitter.x;
    const float y = static_cast<float>(i / 16) * (2.0f / 128.0f) - 1.0f + jitter.y;
    return {x / aspect, y};
}

// Pulls a particle towards the target. The cross term has the same sign on both axes: the swarm is
// sheared, not swirled.
void move(glm::vec2& pos, glm::vec2& vel, const glm::vec2& target) {
    vel += randomvec2(0.01f);
    const glm::vec2 d = glm::normalize(target - pos);
    vel.x += d.x * 0.1f * 3.0f + d.y * 0.01f * 3.0f;
    pos.x += vel.x * 0.1f * 3.0f;
    vel.y += d.y * 0.1f * 3.0f + d.x * 0.01f * 3.0f;
    pos.y += vel.y * 0.1f * 3.0f;
}

void storepos(Uint8* texel, const glm::vec2& pos) {
    texel[0] = tobyte(pos.x * aspect);
    texel[1] = tobyte(pos.y);
    texel[2] = texel[3] = 0;
}

// Fills surf with the flow, a time step a row.
void simulate(SDL_Surface* surf) {
    std::array<glm::vec2, particlecount> pos;
    std::array<glm::vec2, particlecount> vel{};
    for (int i = 0; i < particlecount; ++i)
        pos[i] = startpos(i);
    for (int row = 0; row < steps; ++row) {
        const glm::vec2 target = randomvec2(0.1f);
        for (int i = 0; i < particlecount; ++i) {
            move(pos[i], vel[i], target);
            storepos(pixel(surf, i, row), pos[i]);
        }
    }
}

// Where the flow takes a point of texture coordinate t: x, y in 0 .. 1.
glm::vec2 endpos(SDL_Surface* surf, float t) {
    const float x = t * particlecount - 0.5f;
    const float left = std::floor(x);
    const auto lastrow = [surf](float column) {
        const float clamped = std::clamp(column, 0.0f, particlecount - 1.0f);
        const Uint8* texel = pixel(surf, static_cast<int>(clamped), steps - 1);
        return glm::vec2(texel[0], texel[1]) / 255.0f;
    };
    return glm::mix(lastrow(left), lastrow(std::ceil(x)), x - left);
}

glm::vec3 facecolour(SDL_Surface* face, const glm::vec2& spot) {
    const int column = (static_cast<int>(static_cast<float>(face->w) * spot.x) + face->w) % face->w;
    const int row = (static_cast<int>(spot.y * 480.0f + 20.0f) + facerows) % facerows;
    const Uint8* texel = pixel(face, column, std::min(row, face->h - 1));
    return glm::vec3(texel[0], texel[1], texel[2]) / 255.0f;
}

// Every point carries the colour of the spot of the face where it ends.
void makepoints(SDL_Surface* surf, SDL_Surface* face) {
    constexpr float firstrow = 0.5f / steps;
    for (int k = 0; k < pointcount; ++k) {
        const float t = static_cast<float>(k) / pointcount + util::rnd(-0.1f, 0.1f);
        points[k] = {t, firstrow};
        cols[k] = facecolour(face, endpos(surf, t));
    }
}

void crapmaker() {
    SDL_Surface* img = texture_c::load_image("gfx/face.jpg", GL_RGBA);
    fprintf(stderr, "poo: %p\n", static_cast<void*>(img));
    SDL_Surface* surf = newsurface(particlecount, steps);
    simulate(surf);
    tex_pos.fromsurface(surf, 0);
    makepoints(surf, img);
    SDL_FreeSurface(surf);
    SDL_FreeSurface(img);
}

// Beats since the scene's first.
float scenebeats() {
    return beatgrid - beat::face;
}

// The way through the flow, 0 at its first row, slowing down.
float flowpos() {
    constexpr float length = beat::points_rest - beat::face;
    return 1.0f - std::pow(std::clamp(1.0f - scenebeats() / length, 0.0f, 1.0f), 1.5f);
}

// Fades within two beats at the flow's end.
float opacity() {
    return std::clamp((beatgrid - beat::points_rest) * -0.5f + 1.0f, 0.0f, 1.0f);
}

// A flash that dies away over the first four beats.
float whiteness() {
    return std::max(scenebeats() * -0.25f + 1.0f, 0.0f);
}

void drawpoints(bool blended) {
    if (blended)
        quad::blendon();
    glDrawArrays(GL_POINTS, 0, pointcount);
    if (blended)
        quad::blendoff();
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        drawable = glcaps_vertextextures("fluid");
        if (drawable)
            shader.init(vertex_src, fragment_src);
        crapmaker(); // in any case: it draws from rand()
    }

    // Leaves the "col" array on.
    void draw() override {
        if (!drawable)
            return;
        const float aa = opacity();
        shader.use();
        shader.set("poso", flowpos());
        shader.set("aa", aa);
        shader.set("white", whiteness());
        shader.texture("tex_pos", 0, tex_pos);
        shader.array("pos", 2, GL_FLOAT, 0, points);
        shader.array("col", 3, GL_FLOAT, 0, cols);
        drawpoints(aa < 0.99f);
        shader.array("pos", 2, GL_FLOAT, 0, nullptr); // "col" stays on: who needs its index sets it
    }
};

effect_c effect;

} // namespace

demoeffect_c* fluid = &effect;

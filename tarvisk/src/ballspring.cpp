// A slowly tumbling ball of glowing dots: springs hold them on a sphere while they push each other
// about (knob gravforce), and every beat kicks them all.
#include "effects.h"
#include "glcaps.h"
#include "main/clock.h"
#include "main/startup.h"
#include "shader.h"
#include "texture.h"
#include "util.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <glm/gtc/matrix_transform.hpp>

float gravforce = 1.0f;

namespace {

constexpr int particlecount = 400;

// Pixels. What the dots reach up to beat 340; of those that pass the viewer later some are larger.
constexpr float maxpointsize = 250.0f;

struct particle_s {
    glm::vec3 pos;
    glm::vec3 vatt; // velocity from the mutual push
    glm::vec3 vspr; // velocity from the sphere's spring
};

struct vertex_s {
    float x, y, z;
};

shader_c shadi;
texture_c tex;
particle_s part_data[particlecount];
vertex_s vertex_data[particlecount];

const char vertex_shader3_src[] = R"(
attribute vec3 pos;
attribute vec3 nor;
attribute vec2 uv;
varying vec4 col;
varying float intensity;
uniform mat4 mvp;
uniform mat3 mv;
uniform float time;
void main() {
    gl_Position = mvp * vec4(pos, 1.0);
    vec3 pos_out = mv * pos;
    float zz = 0.6 + pos_out.z * 0.004;
    if (zz < 0.0)
        zz = 0.0;
    col = clamp(vec4(zz*0.9, zz * zz * 0.7, 0.2, 1.0), vec4(0.0), vec4(1.0));
    gl_PointSize = zz * zz * 50.0;
}
)";

const char fragment_shader3_src[] = R"(
precision highp float;
varying vec4 col;
varying float intensity;
uniform sampler2D tex;
uniform float beat;
void main() {
    gl_FragColor = texture2D(tex, gl_PointCoord) * col;
}
)";

// Live tuning: 1 and 2 shrink and grow the sphere, 3 and 4 weaken and strengthen the push.
void tune(float& normalsize) {
    if (keystate[SDLK_1])
        normalsize -= 0.1f;
    if (keystate[SDLK_2])
        normalsize += 0.1f;
    if (keystate[SDLK_3])
        gravforce -= 0.1f;
    if (keystate[SDLK_4])
        gravforce += 0.1f;
    if (keystate[SDLK_1] || keystate[SDLK_2] || keystate[SDLK_3] || keystate[SDLK_4])
        fprintf(stderr, "ns: %.2f, gf: %.2f\n", double(normalsize), double(gravforce));
}

// Only the particles behind i push it, and harder the farther away they are: that makes the cloud
// drift lopsidedly.
glm::vec3 push(int i) {
    const glm::vec3 partpos = part_data[i].pos;
    glm::vec3 acc(0.0f);
    for (int j = i + 1; j < particlecount; ++j)
        acc += (partpos - part_data[j].pos) / 9.0f;
    return acc;
}

// Nothing ends the push. Whom it has driven far out of sight waits at a point that is always
// clipped, before its place is a number no more.
vertex_s shown(const glm::vec3& pos) {
    constexpr float far = 1e30f;
    if (glm::all(glm::lessThanEqual(glm::abs(pos), glm::vec3(far)))) // no, of what is no number
        return {pos.x, pos.y, pos.z};
    return {far, 0.0f, 0.0f};
}

void moveparticle(int i, float normalsize) {
    particle_s& part = part_data[i];
    const glm::vec3 partpos = part.pos;
    part.vatt = part.vatt * 0.2f + push(i) * 0.0025f * 0.2f * gravforce;
    const glm::vec3 target_partpos = glm::normalize(partpos) * normalsize;
    const glm::vec3 acc2 = (target_partpos - partpos) * 3.0f * 0.001f;
    part.vspr = acc2 + part.vspr * 0.95f;
    part.pos = partpos + part.vatt + part.vspr;
    vertex_data[i] = shown(part.pos);
}

void kickonbeat() {
    static float lasttime = 0.0f; // the beat of the last kick
    if (std::floor(lasttime) == std::floor(beatgrid))
        return;
    lasttime = beatgrid;
    rand(); // a draw that nothing uses keeps its place in the sequence
    for (particle_s& part : part_data)
        part.vspr += util::rnd_n3() * 0.1f;
}

// Falls from 1 to 0 over two beats.
float beatdecay() {
    const double phase = (beatgrid - 1.0) * 0.5;
    return static_cast<float>(std::pow(1.0 - (phase - std::floor(phase)), 3.0));
}

void setmatrices() {
    const glm::mat4 projection = util::perspective(20.0f, 1.0f, 3000.0f);
    const glm::mat4 position = glm::translate(glm::mat4(1.0f), {0.0f, 0.0f, -1000.0f});
    const glm::mat4 view = util::rotate(glm::mat4(1.0f), timeval * 10.0f, {1.0f, 0.0f, 0.6f});
    const glm::mat4 mvp = projection * position * view;
    const glm::mat3 view3(view);
    shadi.set("mvp", mvp);
    shadi.set("mv", view3);
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        glcaps_pointsize("ballspring", maxpointsize);
        shadi.init(vertex_shader3_src, fragment_shader3_src);
        tex.load("gfx/dot.png", 0);
        for (particle_s& part : part_data) {
            part.pos = {util::rnd(-10.0f, 10.0f), util::rnd(-10.0f, 10.0f),
                        util::rnd(-10.0f, 10.0f)};
            part.vatt = util::rnd_n3();
            part.vspr = util::rnd_n3();
        }
    }

    // The motion runs by drawn frames, not by logic ticks.
    void draw() override {
        static float normalsize = 100.0f; // radius of the sphere
        tune(normalsize);
        for (int i = 0; i < particlecount; ++i)
            moveparticle(i, normalsize);
        kickonbeat();
        shadi.use();
        shadi.set("time", timeval);
        shadi.set("beat", beatdecay());
        setmatrices();
        shadi.texture("tex", 0, tex);
        shadi.array("pos", 3, GL_FLOAT, 0, vertex_data);
        glDrawArrays(GL_POINTS, 0, particlecount);
        shadi.array("pos", 3, GL_FLOAT, 0, nullptr);
    }
};

effect_c effect;

} // namespace

demoeffect_c* ballspring = &effect;

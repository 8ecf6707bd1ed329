// The credits engraved in a wall of rock: the view drifts from name to name (knob bumptgt) and a
// jittery point light circles where it goes.
#include "effects.h"
#include "main/clock.h"
#include "shader.h"
#include "spring.h"
#include "texture.h"
#include "util.h"

#include <cmath>
#include <cstdlib>

int bumptgt = 0;

namespace {

shader_c shader;
texture_c tex;
texture_c texnor;
texture_c texdecal;

const char vertex_src[] = R"(
attribute vec3 pos;
uniform vec2 scale;
varying vec2 v_tc;
varying vec2 v_tc_decal;
varying vec2 v_pp;
varying float intensity;
void main() {
    vec2 pixelpos = pos.xy / vec2(854.0, 480.0);
    gl_Position = vec4(pixelpos * vec2(2.0, 2.0) - vec2(1.0, 1.0), 0.1, 1.0);
    v_tc = (vec2(0.5, 0.5) + pos.xy + scale) / vec2(256.0);
    v_tc_decal = (pos.xy + scale + vec2(0.0, 1024.0)) / vec2(2048.0, 1024.0);
    v_pp = pos.xy + scale;
    intensity = 1.0;
}
)";

const char fragment_src[] = R"(
precision highp float;
varying vec2 v_tc;
varying vec2 v_tc_decal;
varying vec2 v_pp;
varying float intensity;
uniform sampler2D tex;
uniform sampler2D texnor;
uniform sampler2D texdecal;
uniform vec3 lightdir;
void main() {
    vec3 normal = normalize(texture2D(texnor, v_tc).rgb - vec3(0.5));
    vec3 lv = vec3(v_pp, 0.0) - lightdir;
    vec3 ld = normalize(lv);
    float shade = 0.2 + clamp(dot(ld, normal), 0.0, 1.0) * 1.5;
    gl_FragColor.rgb = mix(texture2D(tex, v_tc).rgb, vec3(0.1, 0.02, 0.0), texture2D(texdecal, v_tc_decal).rgb) * shade;
}
)";

// The whole picture, in pixels.
const glm::vec2 screen[4] = {{0, 0}, {854, 0}, {0, 480}, {854, 480}};

constexpr float fullturn = 6.2831855f;

glm::vec2 randomunit2() {
    const float angle = util::rnd() * fullturn;
    return {std::cos(angle), std::sin(angle)};
}

glm::vec3 randomunit3() {
    const float z = util::rnd_n();
    const glm::vec2 around = randomunit2() * std::sqrt(1.0f - z * z);
    return {around, z};
}

// The view offset that a value of bumptgt stands for, in pixels; `otherwise` for values without.
glm::vec2 viewtarget(int tgt, const glm::vec2& otherwise) {
    switch (tgt) {
    case 0:
        return {-140.0f, -450.0f};
    case 10:
        return {700.0f, -900.0f};
    case 20:
        return {450.0f, -942.0f};
    case 30:
        return {1200.0f, -500.0f};
    case 40:
        return {2600.0f, -1000.0f};
    default:
        return otherwise;
    }
}

// A spring step a logic tick, but one kick a frame, and none in a frame without ticks.
template<class T>
void kickandstep(spring_c<T>& spring, T (*kick)()) {
    if (frameskip <= 0)
        return;
    spring.vel += kick();
    spring.iterate(frameskip);
}

// The view offset in pixels.
const spring_c<glm::vec2>& moveview() {
    static spring_c<glm::vec2> mover({-400.0f, -800.0f}, glm::vec2(0.0f), glm::vec2(0.003f),
                                     glm::vec2(0.95f));
    mover.targetpos = viewtarget(bumptgt, mover.targetpos);
    kickandstep(mover, randomunit2);
    return mover;
}

// The light circles where the view is going, not where it is.
glm::vec3 lighttarget(const glm::vec2& viewtarget) {
    return {viewtarget.x + std::cos(timeval * 10.0f) * 370.0f,
            viewtarget.y + std::sin(timeval * 10.0f * 1.11234f) * 370.0f,
            -90.08f + std::cos(timeval * 3.47734f) * 30.0f};
}

// Jitters in z every frame, ticks or not.
glm::vec3 movelight(const glm::vec2& viewtarget) {
    static spring_c<glm::vec3> valomover({-400.0f, -800.0f, -20.0f}, glm::vec3(0.0f),
                                         glm::vec3(0.005f), glm::vec3(0.91f));
    valomover.targetpos = lighttarget(viewtarget);
    kickandstep(valomover, randomunit3);
    const double jitter = (rand() & 0xFFFF) / 65535.0 * 10.03;
    return valomover.pos + glm::vec3(520.0f, 200.0f, jitter);
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        texnor.load("gfx/rocknormal.jpg", TEX_RGB | TEX_REPEAT);
        tex.load("gfx/rock.jpg", TEX_RGB | TEX_REPEAT);
        texdecal.load("gfx/credits.jpg", TEX_RGB);
    }

    // Leaves the "pos" array on.
    void draw() override {
        shader.use();
        shader.texture("tex", 0, tex);
        shader.texture("texnor", 1, texnor);
        shader.texture("texdecal", 2, texdecal);
        const spring_c<glm::vec2>& mover = moveview();
        shader.set("scale", mover.pos);
        shader.set("lightdir", movelight(mover.targetpos));
        shader.array("pos", 2, GL_FLOAT, 0, screen);
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4); // "pos" stays on: who needs its index sets it
    }
};

effect_c effect;

} // namespace

demoeffect_c* bump = &effect;

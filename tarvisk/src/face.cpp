// The face. Its backdrop comes in from white over four beats and fades to black twelve beats in;
// two beats later the face itself rises out of the black.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "shader.h"
#include "texture.h"

#include <algorithm>
#include <cmath>

float ylift = 0.0f;

namespace {

shader_c shader;
texture_c tex;  // the face
texture_c tex2; // the backdrop

const char vertex_src[] = R"(
attribute vec2 pos;
varying vec2 v_uv;
uniform vec2 ym;
void main() {
    gl_Position = vec4(pos * vec2(2.0 / 1.0, 2.0 * 500.0 / 480.0) + ym, 0.999, 1.0);
    v_uv = pos;
}
)";

// Nothing gives tex2 a unit: it reads unit 0.
const char fragment_src[] = R"(
precision highp float;
const float PI = 3.14159265358979323846264;
varying vec2 v_uv;
uniform float time;
uniform float u_mm;
uniform float u_mmx;
uniform sampler2D tex;
uniform sampler2D tex2;
void main() {
    gl_FragColor = vec4(texture2D(tex2, v_uv).rgb * u_mmx - u_mm, 1.0);
}
)";

constexpr float firstbeat = 256.0f;
constexpr float facebeat = 14.0f; // all beats below count from firstbeat

struct look_s {
    const texture_c& picture;
    float gain; // factor on every channel
    float dim;  // subtracted from every channel; below 0 it whitens
};

float fadeout(float beat, float start) {
    return std::clamp(1.0f + (beat - start) * -0.5f, 0.0f, 1.0f);
}

look_s lookat(float beat) {
    if (beat < facebeat)
        return {tex2, fadeout(beat, 12.0f), std::sqrt(std::clamp(beat * 0.25f, 0.0f, 1.0f)) - 1.0f};
    return {tex, 1.0f, fadeout(beat, facebeat)};
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        tex.load("gfx/face.jpg", TEX_RGB);
        tex2.load("gfx/kallotausta.jpg", TEX_RGB);
    }

    void draw() override {
        const float beat = beatgrid - firstbeat;
        const look_s look = lookat(beat);
        shader.use();
        shader.texture("tex", 0, look.picture);
        glUniform1f(shader.uniform("u_mmx"), look.gain);
        glUniform1f(shader.uniform("u_mm"), look.dim);
        glUniform1f(shader.uniform("time"), beat);
        glUniform2f(shader.uniform("ym"), -1.0f, (-1.0f - ylift) - 0.08f);
        quad::draw(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* face = &effect;

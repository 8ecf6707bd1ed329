// Roses strewn over the text strip, uncovered from its right end to its left. On every second beat
// they darken and slide by their own width, fast at first, and clear up until the next.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "shader.h"
#include "texture.h"

#include <cmath>

namespace {

shader_c shader;
texture_c tex;

const char vertex_src[] = QUAD_MAPPINGS R"(
attribute vec2 pos;
attribute vec2 uv;
varying vec2 v_uv;
varying vec2 v_uv2;
uniform float beatgrid;
void main() {
    gl_Position = vec4(flipped(pos), 0.0, 1.0);
    v_uv = uv * vec2(3.5, 2.0);
    v_uv2 = uv * vec2(3.0, 1.0) + vec2(0.5 + pow(beatgrid - 1.0, 10.0), 0.0);
}
)";

const char fragment_src[] = FRAGMENT_HEAD R"(
varying vec2 v_uv2;
uniform float time;
uniform float beatgrid;
uniform float distdist;
uniform sampler2D tex;
void main() {
    vec4 value = texture2D(tex, v_uv2);
    float satur = 1.0 + sin(time) * 0.3;
    value.rgb = pow(value.rgb, vec3(beatgrid));
    float dist = clamp((v_uv.x - distdist) * 3.0, 0.0, 1.0);
    gl_FragColor = vec4(satur, satur, satur, dist) * value;
}
)";

// Uncovers more. The left edge of what is uncovered then; the target is 3.5 wide.
float stepedge() {
    static float disads = 6.0f;
    disads -= 0.01f * frameskip;
    return disads;
}

// A saw from 2 down to 1 every two beats.
float beatsaw() {
    const float phase = 0.5f + beatgrid * 0.5f;
    return 2.0f - (phase - std::floor(phase));
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        tex.load("gfx/roses.png", TEX_REPEAT);
    }

    void draw() override {
        shader.use();
        shader.set("time", timeval);
        shader.set("beatgrid", beatsaw());
        shader.set("distdist", stepedge());
        shader.texture("tex", 0, tex);
        quad::drawblended(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* pelvar = &effect;

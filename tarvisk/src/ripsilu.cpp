// A still picture behind the gear; ripsilu_mm washes it out to white.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "schedule.h"
#include "shader.h"
#include "texture.h"

float ripsilu_mm = 0.0f;

namespace {

shader_c shader;
texture_c tex;

const char vertex_src[] = QUAD_MAPPINGS R"(
attribute vec2 pos;
varying vec2 v_uv;
void main() {
    gl_Position = vec4(upright(pos), 0.9, 1.0);
    v_uv = pos;
}
)";

// Nothing gives tex2 a unit: it reads unit 0.
const char fragment_src[] = FRAGMENT_HEAD R"(
uniform float time;
uniform float u_mm;
uniform sampler2D tex;
uniform sampler2D tex2;
void main() {
    gl_FragColor = vec4(texture2D(tex2, v_uv).rgb + u_mm, 1.0);
}
)";

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        tex.load("gfx/ripsilu.jpg", TEX_RGB);
    }

    void draw() override {
        shader.use();
        shader.set("time", beatgrid - cue::stoptunnel.beat);
        shader.set("u_mm", ripsilu_mm);
        shader.texture("tex", 0, tex);
        quad::draw(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* ripsilu = &effect;

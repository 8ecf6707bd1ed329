// A still whose bright layer is torn sideways by two sets of scan lines running against each other.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "shader.h"
#include "texture.h"

namespace {

shader_c shader;
texture_c tex;  // the torn layer
texture_c tex2; // the still one

const char vertex_src[] = QUAD_MAPPINGS R"(
attribute vec2 pos;
varying vec2 v_uv;
void main() {
    gl_Position = vec4(upright(pos), 0.0, 1.0);
    v_uv = pos;
}
)";

const char fragment_src[] = FRAGMENT_HEAD R"(
uniform float time;
uniform sampler2D tex;
uniform sampler2D tex2;
void main() {
    vec3 t1 = texture2D(tex2, v_uv).rgb;
    vec2 uvx = v_uv + vec2(fract(v_uv.y * 40.0 + time * 1.0) * 0.02, 0.0);
    uvx += vec2(fract(v_uv.y * -30.0 + time * 1.0) * 0.02, 0.0);
    vec3 t2 = texture2D(tex, uvx).rgb;
    gl_FragColor = vec4(t1 + t2 - vec3(0.5), 1.0);
}
)";

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        tex.load("gfx/mujuice.jpg", TEX_RGB);
        tex2.load("gfx/mujuice2.jpg", TEX_RGB);
    }

    void draw() override {
        shader.use();
        shader.set("time", timeval);
        shader.texture("tex", 0, tex);
        shader.texture("tex2", 1, tex2);
        quad::draw(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* mujuice = &effect;

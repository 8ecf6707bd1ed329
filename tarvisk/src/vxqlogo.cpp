// The group's logo; bands of light run up through its masked parts.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "shader.h"
#include "texture.h"

namespace {

shader_c shader;
texture_c tex;
texture_c tex2; // the mask: bright where the light shows

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
    vec3 base = texture2D(tex, v_uv).rgb;
    vec3 mixed = base + (sin(time * -2.0 + v_uv.y * 60.0) + 2.0) * texture2D(tex2, v_uv).rgb * 0.33;
    gl_FragColor = vec4(mixed, 1.0);
}
)";

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        tex.load("gfx/vxqlogo.jpg", TEX_RGB);
        tex2.load("gfx/vxqlogomask.jpg", TEX_RGB);
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

demoeffect_c* vxqlogo = &effect;

// The orange's flesh, drawn into a small target: bubbles drift over cloth and flare up once. The
// city wears the last picture of it.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "schedule.h"
#include "shader.h"
#include "spring.h"
#include "texture.h"
#include "util.h"

namespace {

shader_c shader;
texture_c tex;  // bubbles
texture_c tex2; // cloth

const char vertex_src[] = QUAD_MAPPINGS R"(
attribute vec2 pos;
attribute vec2 uv;
varying vec2 v_uv;
void main() {
    gl_Position = vec4(flipped(pos), 0.0, 1.0);
    v_uv = uv;
}
)";

const char fragment_src[] = FRAGMENT_HEAD R"(
uniform float time;
uniform float bubemph;
uniform sampler2D tex;
uniform sampler2D tex2;
void main() {
    vec4 bubbles = texture2D(tex, v_uv - vec2(time * 0.4, sin(time) * time * 0.01)) * bubemph;
    vec4 cloth = texture2D(tex2, v_uv - vec2(time * 0.6, sin(time) * time * 0.01));
    vec4 tint = 0.5 * vec4(1.0 + time * 0.009, 1.0, 1.0 - time * 0.092, 0.0);
    gl_FragColor = (bubbles + cloth) * tint;
}
)";

// Steps the bubbles' brightness; they flare when the beat of "boom3" comes. Their factor then.
float stepemphasis() {
    static spring_c<float> bubemph(1.0f, 1.0f, 0.004f, 0.96f);
    bubemph.iterate(frameskip);
    if (fires(cue::boom3))
        bubemph.pos = 2.3f;
    return bubemph.pos;
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        tex.load("gfx/bubbles.jpg", TEX_RGB | TEX_REPEAT);
        tex2.load("gfx/jeans.jpg", TEX_RGB | TEX_REPEAT);
    }

    void draw() override {
        shader.use();
        shader.set("time", timeval);
        shader.set("contract", util::contract(timeval));
        shader.set("bubemph", stepemphasis());
        shader.texture("tex", 0, tex);
        shader.texture("tex2", 1, tex2);
        quad::draw(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* orangetexgen = &effect;

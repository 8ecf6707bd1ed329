// Black lace that closes in over the picture: solid outside a circle round the centre that shrinks
// on a spring, with holes where the traced pattern is bright.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "schedule.h"
#include "shader.h"
#include "spring.h"
#include "texture.h"

namespace {

shader_c shader;
texture_c tex;

const char vertex_src[] = QUAD_MAPPINGS R"(
attribute vec2 pos;
attribute vec2 uv;
varying vec2 v_uv;
varying vec2 v_uv2;
void main() {
    gl_Position = vec4(flipped(pos), 0.0, 1.0);
    vec2 lace = uv * vec2(3.5, 2.0);
    v_uv2 = lace - vec2(1.75, 1.0);
    v_uv = lace * 0.5;
}
)";

const char fragment_src[] = FRAGMENT_HEAD R"(
varying vec2 v_uv2;
uniform float time;
uniform sampler2D tex;
uniform float distdist;
void main() {
    float value = texture2D(tex, v_uv).r;
    float dist = clamp((length(v_uv2) - distdist) * 3.0, 0.0, 1.0);
    gl_FragColor = vec4(0.0, 0.0, 0.0, dist - value);
}
)";

// Steps the open circle. Its radius then, in units of half the picture's height.
float stepradius() {
    static spring_c<float> distdist(2.0f, 0.5f, 0.002f, 0.4f);
    if (past(cue::startlacing))
        distdist.iterate(frameskip);
    if (past(cue::startlacing2))
        distdist.targetpos = -1.0f;
    return distdist.pos;
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        tex.load("gfx/lacetrace.jpg", TEX_RGB | TEX_REPEAT);
    }

    void draw() override {
        shader.use();
        shader.set("time", timeval);
        shader.set("distdist", stepradius());
        shader.texture("tex", 0, tex);
        quad::drawblended(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* lace = &effect;

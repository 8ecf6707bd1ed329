// The pattern of an effect, for copying: a disc of light that shrinks on every beat (knob
// templatesize). Compiled and drawn by the logic tests, not by the show.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "shader.h"
#include "spring.h"
#include "util.h"

extern float templatesize; // in an effect's copy: in effects.h, as all knobs
float templatesize = 0.5f; // radius of the disc at rest, half heights of the picture

namespace {

shader_c shader;

const char vertex_src[] = QUAD_MAPPINGS R"(
attribute vec2 pos;
varying vec2 v_uv;
void main() {
    gl_Position = vec4(upright(pos), 0.0, 1.0);
    v_uv = upright(pos) * vec2(854.0 / 480.0, 1.0);
}
)";

const char fragment_src[] = FRAGMENT_HEAD R"(
uniform float radius;
void main() {
    gl_FragColor = vec4(1.0, 0.8, 0.4, clamp((radius - length(v_uv)) * 20.0, 0.0, 1.0));
}
)";

// Steps the disc. Its radius then. The spring starts to live when the effect is first drawn.
float stepradius() {
    static spring_c<float> squeeze(1.0f, 1.0f, 0.01f, 0.95f);
    if (util::onbeat(beatgrid))
        squeeze.pos = 0.8f;
    squeeze.iterate(frameskip);
    return templatesize * squeeze.pos;
}

class effect_c : public demoeffect_c {
public:
    void initgl() override { shader.init(vertex_src, fragment_src); }

    void draw() override {
        shader.use();
        shader.set("radius", stepradius());
        quad::drawblended(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* templateeffect = &effect;

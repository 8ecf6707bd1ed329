// A five-lobed slice of orange that sways and opens.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "shader.h"
#include "texture.h"
#include "util.h"

GLuint orangetex = 0;

namespace {

shader_c shader;
texture_c tex; // whatever orangetex names

const char vertex_src[] = QUAD_MAPPINGS R"(
attribute vec2 pos;
varying vec2 v_uv;
void main() {
    vec2 norpos = flipped(pos);
    gl_Position = vec4(norpos, 0.0, 1.0);
    v_uv = norpos * vec2(854.0 / 480.0, 1.0);
}
)";

const char fragment_src[] = FRAGMENT_HEAD R"(
uniform float time;
uniform float contract;
uniform sampler2D tex;
void main() {
    float ang = atan(v_uv.x, v_uv.y);
    float dst = dot(v_uv, v_uv);
    float col2 = 0.5 + sin(ang * 5.0 - time * 1.0) * 0.5;
    float lit = (dst - col2 - contract) - 0.7;
    gl_FragColor = texture2D(tex, vec2(0.6 + (dst + lit * 0.1),
                                       lit * sin(time) * -0.1 + ang * (5.0 / PI))) * lit;
}
)";

class effect_c : public demoeffect_c {
public:
    void initgl() override { shader.init(vertex_src, fragment_src); }

    void draw() override {
        tex.textureid = orangetex;
        shader.use();
        shader.set("time", timeval);
        shader.set("contract", util::contract(timeval));
        shader.texture("tex", 0, tex);
        quad::draw(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* orange = &effect;

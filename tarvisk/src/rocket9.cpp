// A rocket standing on end, cut from the phone's body texture, its exhaust end flickering. It is
// loaded with the rest, and no scene draws it.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "shader.h"
#include "stage.h"
#include "util.h"

float rockety = 0.0f;

namespace {

shader_c shader;

const char vertex_src[] = QUAD_MAPPINGS QUAD_PLACEMENT R"(
attribute vec2 pos;
attribute vec2 uv;
attribute float col;
varying vec2 v_uv;
varying vec4 v_col;
uniform vec2 phonepos;
void main() {
    vec2 norpos = vec2(1.0, 0.5) * upright(pos);
    gl_Position = vec4(placed(norpos, 0.0) + phonepos, 0.999998, 1.0);
    v_uv = uv;
    v_col = col * vec4(1.0, 0.7, 0.5, 0.0);
}
)";

// Nothing gives tex2 a unit: it reads unit 0.
const char fragment_src[] = FRAGMENT_HEAD R"(
varying vec4 v_col;
uniform float time;
uniform sampler2D tex;
uniform sampler2D tex2;
void main() {
    gl_FragColor = texture2D(tex2, v_uv) + v_col;
}
)";

// The rocket's part of the texture, for the corners of the unit quad.
const glm::vec2 rocket_uv[6] = {{0.0f, 0.4f}, {0.8f, 0.4f}, {0.0f, 0.8f},
                                {0.8f, 0.4f}, {0.8f, 0.8f}, {0.0f, 0.8f}};

void drawrocket(float glow) {
    float col[6];
    for (int i = 0; i < 6; ++i)
        col[i] = quad::unit[i].x == 0.0f ? glow : 0.0f;
    quad::attach(shader, quad::unit, rocket_uv);
    shader.array("col", 1, GL_FLOAT, sizeof(float), col);
    glDrawArrays(GL_TRIANGLES, 0, 6);
    quad::detach(shader);
    shader.array("col", 1, GL_FLOAT, 0, nullptr);
}

class effect_c : public demoeffect_c {
public:
    void initgl() override { shader.init(vertex_src, fragment_src); }

    void draw() override {
        shader.use();
        shader.set("time", beatgrid);
        shader.set("phonepos", {0.0f, rockety});
        shader.texture("tex", 0, nysitex);
        quad::blendon();
        drawrocket(0.8f + 0.2f * util::rnd());
        quad::blendoff();
    }
};

effect_c effect;

} // namespace

demoeffect_c* rocket9 = &effect;

// The city's backdrop, a dark metal plate on which an orange flash grows. It resets the depth of
// all it covers to just short of the far plane: the city is drawn over it without a clear, inside
// the phone's screen as well.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "shader.h"
#include "stage.h"
#include "texture.h"

float horizonbomb = 0.0f;

namespace {

shader_c shader;
texture_c tex;

const char vertex_src[] = QUAD_MAPPINGS R"(
attribute vec2 pos;
varying vec2 v_uv;
uniform float u_pitch;
void main() {
    gl_Position = vec4(upright(pos), 0.999999, 1.0);
    v_uv = pos * 0.8 + vec2(0.1, u_pitch);
}
)";

const char fragment_src[] = FRAGMENT_HEAD R"(
uniform float bombsize;
uniform sampler2D tex;
void main() {
    float bomb = smoothstep(0.0, -0.1, length(v_uv - vec2(0.5, 0.2)) - bombsize);
    gl_FragColor = texture2D(tex, v_uv) + bomb * vec4(1.0, 0.7, 0.3, 0.0) * 4.0;
}
)";

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        tex.load("gfx/darkmetal.jpg", TEX_RGB);
    }

    void draw() override {
        shader.use();
        shader.set("time", timeval);
        shader.set("bombsize", horizonbomb);
        // The plate does not follow the camera, on purpose.
        shader.set("u_pitch", 0.0f * camPitch);
        shader.texture("tex", 0, tex);
        glDepthFunc(GL_ALWAYS);
        quad::draw(shader);
        glDepthFunc(GL_LESS);
    }
};

effect_c effect;

} // namespace

demoeffect_c* zreset = &effect;

#include "screenshot.h"

#include "main/capture.h"
#include "shader.h"
#include "texture.h"

namespace {

shader_c shader;
texture_c shottex;

// Clip space in two triangles, plus one float: the attribute is fetched with three components.
const float ssverts[] = {-1, -1, 1, -1, -1, 1, 1, -1, 1, 1, -1, 1, 0};

const char vertex_src[] = R"(
attribute vec2 pos;
varying vec2 v_uv;
void main() {
    gl_Position = vec4(pos, 0.0, 1.0);
    v_uv = pos * 0.5 + 0.5;
}
)";

const char fragment_src[] = R"(
precision highp float;
varying vec2 v_uv;
uniform sampler2D tex;
void main() {
    gl_FragColor = texture2D(tex, v_uv);
}
)";

class effect_c : public demoeffect_c {
public:
    void init() override {
        shader.init(vertex_src, fragment_src);
        shottex.fromsurface(screenshot_surface);
    }

    void draw() override {
        shader.use();
        shader.texture("tex", 0, shottex);
        shader.array("pos", 3, GL_FLOAT, 2 * sizeof(float), ssverts);
        glDrawArrays(GL_TRIANGLES, 0, 6);
    }
};

effect_c effect;

} // namespace

demoeffect_c* screenshot = &effect;

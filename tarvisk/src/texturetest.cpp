// A texture of the director's choice, upright over the whole target.
#include "texture.h"
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "shader.h"

GLuint texturetesttex = 0;

namespace {

shader_c shader;
texture_c tex;

const char vertex_src[] = QUAD_MAPPINGS R"(
attribute vec2 pos;
varying vec2 v_uv;
void main() {
    gl_Position = vec4(upright(pos), 0.0, 1.0);
    v_uv = pos * vec2(1.0, 1.0);
}
)";

const char fragment_src[] = FRAGMENT_HEAD R"(
uniform float time;
uniform sampler2D tex;
void main() {
    gl_FragColor = texture2D(tex, v_uv);
}
)";

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        tex.flags = TEX_REPEAT;
    }

    void draw() override {
        tex.textureid = texturetesttex;
        shader.use();
        shader.set("time", timeval);
        shader.texture("tex", 0, tex);
        quad::draw(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* texturetest = &effect;

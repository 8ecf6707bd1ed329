// A turning gear that rolls in from the right edge of the screen and leaves upwards.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "shader.h"
#include "spring.h"
#include "texture.h"

#include <iterator>

int gearAppear = 0;

namespace {

shader_c shader;
texture_c tex;

const char vertex_src[] = QUAD_MAPPINGS QUAD_PLACEMENT R"(
attribute vec2 pos;
varying vec2 v_uv;
uniform float time;
uniform vec2 ratpos;
void main() {
    gl_Position = vec4(placed(upright(pos), time * 0.4) + ratpos, 0.8, 1.0);
    v_uv = pos;
}
)";

// Nothing gives tex2 a unit: it reads unit 0.
const char fragment_src[] = FRAGMENT_HEAD R"(
uniform float time;
uniform sampler2D tex;
uniform sampler2D tex2;
void main() {
    gl_FragColor = texture2D(tex2, v_uv);
}
)";

// Where the gear goes, by stage of its entrance, in clip units.
const glm::vec2 targets[] = {{1.5f, 0.8f}, {0.9f, 0.8f}, {1.5f, 1.2f}};
constexpr int stages = std::size(targets);

// Further right than this it is off the screen.
constexpr float lastvisiblex = 1.4f;

// Steps the gear towards its target; where it is then.
glm::vec2 steppos() {
    static spring_c<glm::vec2> ratpos({2.0f, 0.8f}, {2.0f, 0.8f}, glm::vec2(0.02f),
                                      glm::vec2(0.095f));
    if (gearAppear >= 0 && gearAppear < stages)
        ratpos.targetpos = targets[gearAppear];
    ratpos.iterate(frameskip);
    return ratpos.pos;
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        tex.load("gfx/gear.png", 0);
    }

    void draw() override {
        const glm::vec2 ratpos = steppos();
        if (ratpos.x > lastvisiblex)
            return;
        shader.use();
        shader.set("time", beatgrid);
        shader.set("ratpos", ratpos);
        shader.texture("tex", 0, tex);
        quad::drawblended(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* gear = &effect;

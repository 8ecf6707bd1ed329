// A flat starfield in clip space: stars fly out of the middle of the picture past its edges,
// growing and brightening as they near; with sf_zchange above 0, back into it.
#include "effects.h"
#include "main/clock.h"
#include "shader.h"
#include "stage.h"
#include "util.h"

namespace {

constexpr int starcount = 5000;

shader_c shader;
glm::vec3 stars[starcount]; // x, y in clip units, z is the depth that divides them

const char vertex_src[] = R"(
attribute vec3 pos;
varying vec4 v_col;
void main() {
    gl_Position = pos.xyzz;
    gl_PointSize = clamp(6.0 * (1.0 - pos.z), 1.0, 6.0);
    v_col = vec4(1.0, 1.0, 1.0, 1.0) * (1.0 - pos.z);
}
)";

const char fragment_src[] = R"(
precision highp float;
varying vec4 v_col;
void main() {
    gl_FragColor = v_col;
}
)";

void recede() {
    for (glm::vec3& star : stars) {
        star.z += sf_zchange;
        if (star.z > 1.0f)
            star = {util::rnd_n(), util::rnd_n(), util::rnd() * 0.1f - 0.2f};
    }
}

void approach() {
    for (glm::vec3& star : stars) {
        star.z += sf_zchange;
        if (star.z < 0.0f)
            star = {util::rnd_n(), util::rnd_n(), util::rnd() * 0.1f + 1.0f};
    }
}

// The knob holds for one draw; without it the stars approach steadily.
void move() {
    if (sf_zchange > 0.0f)
        recede();
    else
        approach();
    sf_zchange = static_cast<float>(frameskip) * -0.004f;
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        for (glm::vec3& star : stars)
            star = {util::rnd_n(), util::rnd_n(), util::rnd() * 1.2f};
    }

    void draw() override {
        move();
        shader.use();
        shader.set("time", timeval);
        shader.array("pos", 3, GL_FLOAT, 0, stars);
        glDrawArrays(GL_POINTS, 0, starcount);
        shader.array("pos", 3, GL_FLOAT, 0, nullptr);
    }
};

effect_c effect;

} // namespace

demoeffect_c* starfield = &effect;

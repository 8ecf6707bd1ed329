// A flight through a cube of stars that roll about the direction of flight by the knob starang.
#include "effects.h"
#include "main/clock.h"
#include "shader.h"
#include "util.h"

float starang = 0.0f;

namespace {

constexpr int starcount = 5000;

shader_c shader;
glm::vec3 stars[starcount]; // world units; the camera stands at 0 and looks down -z

const char vertex_src[] = R"(
attribute vec3 pos;
uniform mat4 mvp;
varying vec4 v_col;
void main() {
    gl_Position = mvp * vec4(pos, 1.0);
    gl_PointSize = clamp(200. / gl_Position.w, 1.0, 6.0);
    v_col = vec4(1.0, 1.0, 1.0, 1.0) * (100. - gl_Position.z) / 100.0;
}
)";

const char fragment_src[] = R"(
precision highp float;
varying vec4 v_col;
void main() {
    gl_FragColor = v_col;
}
)";

// Stars that have passed the camera fly on to 100 and start anew at the far end.
void move() {
    for (glm::vec3& star : stars) {
        star.z += static_cast<float>(frameskip) * 0.4f;
        if (star.z > 100.0f)
            star = {util::rnd(-100.0f, 100.0f), util::rnd(-100.0f, 100.0f),
                    util::rnd(-120.0f, -100.0f)};
    }
}

glm::mat4 rolledview() {
    return util::rotate(util::perspective(70.0f, 0.001f, 100.0f), starang, {0.0f, 0.0f, 1.0f});
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        for (glm::vec3& star : stars)
            star = {util::rnd(-100.0f, 100.0f), util::rnd(-100.0f, 100.0f),
                    util::rnd(-100.0f, 100.0f)};
    }

    void draw() override {
        move();
        const glm::mat4 mvp = rolledview();
        shader.use();
        shader.set("mvp", mvp);
        shader.set("time", timeval);
        shader.array("pos", 3, GL_FLOAT, 0, stars);
        glDrawArrays(GL_POINTS, 0, starcount);
        shader.array("pos", 3, GL_FLOAT, 0, nullptr);
    }
};

effect_c effect;

} // namespace

demoeffect_c* starfield2 = &effect;

// A heart that beats with the music, and four letters that join it, one on each beat.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "schedule.h"
#include "shader.h"
#include "spring.h"
#include "texture.h"
#include "util.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int letters = 4;

shader_c shader;
texture_c tex;                   // the heart
texture_c tex2;                  // the letters, side by side
glm::vec2 gone_pos[letters * 6]; // six vertices a letter
glm::vec2 gone_uv[letters * 6];

const char vertex_src[] = QUAD_MAPPINGS R"(
attribute vec2 pos;
attribute vec2 uv;
varying vec2 v_uv;
uniform float zoom;
void main() {
    vec2 norpos = upright(pos) * zoom;
    gl_Position = vec4(norpos * 0.3 * vec2(480.0 / 854.0, 1.0), 0.0, 1.0);
    v_uv = uv;
}
)";

const char fragment_src[] = FRAGMENT_HEAD R"(
uniform float brite;
uniform sampler2D tex;
void main() {
    gl_FragColor = texture2D(tex, v_uv) * vec4(brite, brite, brite, 1.0);
}
)";

// The letters in a row, in the upper middle of the heart's space.
void placeletters() {
    for (int i = 0; i < letters * 6; ++i) {
        const auto letter = static_cast<float>(i / 6);
        const glm::vec2 corner = quad::unit[i % 6];
        gone_pos[i] = {letter * 0.4f - 0.27f + corner.x * 0.4f, corner.y * 0.35f + 0.4f};
        gone_uv[i] = {letter * 0.262f + 0.01f + corner.x * 0.262f, corner.y};
    }
}

// Steps the heart, which swells on every beat. Its size then.
float stepzoom() {
    static spring_c<float> zoomer(1.0f, 1.0f, 0.01f, 0.95f);
    if (util::onbeat(beatgrid))
        zoomer.pos = 1.1f;
    zoomer.iterate(frameskip);
    return zoomer.pos;
}

int shownletters() {
    const sync_c gonetextshow(cue::gonetextshow);
    const int beats = static_cast<int>(std::floor(beatgrid) - gonetextshow.beatnum());
    return std::clamp(beats, 0, letters);
}

// The picture breathes at `rate` radians a second.
void setlook(const texture_c& picture, float rate, float zoom) {
    shader.texture("tex", 0, picture);
    shader.set("brite", 0.9f + std::sin(timeval * rate) * 0.1f);
    shader.set("zoom", zoom);
}

void drawquads(const glm::vec2* pos, const glm::vec2* uv, int count) {
    quad::attach(shader, pos, uv);
    glDrawArrays(GL_TRIANGLES, 0, 6 * count);
    quad::detach(shader);
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        tex.load("gfx/heart.png", 0);
        tex2.load("gfx/gone.png", 0);
        placeletters();
    }

    void draw() override {
        shader.use();
        quad::blendon();
        setlook(tex, 1.4321f, stepzoom());
        drawquads(quad::unit, quad::unit, 1);
        setlook(tex2, 1.2321f, 1.0f);
        drawquads(gone_pos, gone_uv, shownletters());
        quad::blendoff();
    }
};

effect_c effect;

} // namespace

demoeffect_c* heart = &effect;

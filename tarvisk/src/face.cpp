// The face. Its backdrop comes in from white over four beats and fades to black twelve beats in;
// two beats later the face itself rises out of the black.
#include "effects.h"
#include "main/clock.h"
#include "quad.h"
#include "schedule.h"
#include "shader.h"
#include "texture.h"

#include <algorithm>
#include <cmath>

float ylift = 0.0f;

namespace {

shader_c shader;
texture_c tex;  // the face
texture_c tex2; // the backdrop

const char vertex_src[] = R"(
attribute vec2 pos;
varying vec2 v_uv;
uniform vec2 ym;
void main() {
    gl_Position = vec4(pos * vec2(2.0 / 1.0, 2.0 * 500.0 / 480.0) + ym, 0.999, 1.0);
    v_uv = pos;
}
)";

// Nothing gives tex2 a unit: it reads unit 0.
const char fragment_src[] = FRAGMENT_HEAD R"(
uniform float time;
uniform float u_mm;
uniform float u_mmx;
uniform sampler2D tex;
uniform sampler2D tex2;
void main() {
    gl_FragColor = vec4(texture2D(tex2, v_uv).rgb * u_mmx - u_mm, 1.0);
}
)";

struct look_s {
    const texture_c& picture;
    float gain; // factor on every channel
    float dim;  // subtracted from every channel; below 0 it whitens
};

// Beats since the scene's first.
float scenebeats() {
    return beatgrid - beat::face;
}

// From 1 down to 0 over two beats.
float fadeout(float start) {
    return std::clamp(1.0f + (beatgrid - start) * -0.5f, 0.0f, 1.0f);
}

float fadein() {
    return std::sqrt(std::clamp(scenebeats() * 0.25f, 0.0f, 1.0f));
}

look_s currentlook() {
    if (beatgrid < beat::face_rises)
        return {tex2, fadeout(beat::backdrop_fades), fadein() - 1.0f};
    return {tex, 1.0f, fadeout(beat::face_rises)};
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(vertex_src, fragment_src);
        tex.load("gfx/face.jpg", TEX_RGB);
        tex2.load("gfx/kallotausta.jpg", TEX_RGB);
    }

    void draw() override {
        const look_s look = currentlook();
        shader.use();
        shader.texture("tex", 0, look.picture);
        shader.set("u_mmx", look.gain);
        shader.set("u_mm", look.dim);
        shader.set("time", scenebeats());
        shader.set("ym", {-1.0f, (-1.0f - ylift) - 0.08f});
        quad::draw(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* face = &effect;

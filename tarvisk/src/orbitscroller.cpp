// The text strip as a waving ribbon on an arc round the phone, bright towards the viewer and dark
// on the far side.
#include "effects.h"
#include "main/clock.h"
#include "model.h"
#include "quad.h"
#include "shader.h"
#include "stage.h"
#include "texture.h"
#include "util.h"

#include <cmath>
#include <glm/gtc/matrix_transform.hpp>

float orbitradius = 70.0f;
GLuint scrollertex = 0;

namespace {

constexpr int segments = 50;
constexpr float step = 0.07539822f; // radians a segment

shader_c scrollershader;
texture_c texttex; // the strip; its image stands in until the first draw

const char vertex_src[] = R"(
attribute vec3 pos;
attribute vec3 nor;
attribute vec2 uv;
uniform mat4 mvp;
uniform mat3 mv;
uniform vec3 eyepos;
uniform float time;
varying vec4 v_col;
varying vec2 v_uv;
void main() {
    gl_Position = mvp * vec4(pos, 1.0);
    vec3 normal = normalize(pos * vec3(1.0, 0.0, 1.0));
    float zz = clamp(dot(normalize(vec3(0.0, 0.0, 1.0)), normal), 0.2, 1.0);
    v_col = vec4(zz, zz, zz, 1.0);
    v_uv = uv + vec2(sin(time * 2.0 + uv.y * 7.0) * 0.01, sin(time * 2.0 + uv.x * 7.0) * 0.0);
}
)";

const char fragment_src[] = R"(
precision highp float;
varying vec4 v_col;
varying vec2 v_uv;
uniform sampler2D tex;
void main() {
    gl_FragColor = texture2D(tex, v_uv) * v_col;
}
)";

struct ribbon_s {
    glm::vec3 pos[segments * 6];
    glm::vec2 uv[segments * 6];
    glm::vec3 nor[segments * 6];
};

// The ribbon across its width at one place along it.
struct rib_s {
    glm::vec3 top, bottom;
};

rib_s ribat(int i) {
    const float a = static_cast<float>(i) * step - 0.3f;
    const float h = std::sin(timeval * -4.3f + a * 7.2f) * 0.02f + 0.09f;
    const float x = -std::cos(a) * orbitradius;
    const float y = h * orbitradius;
    const float z = std::sin(a) * orbitradius;
    return {{x, y, z}, {x, -y, z}};
}

// From both ends towards the middle. Blending is on and depth is not written, so the order shows
// where the arc turns away.
int segmentat(int k) {
    return k % 2 == 0 ? k / 2 : segments - 1 - (k - 1) / 2;
}

void putsegment(ribbon_s& ribbon, int k) {
    const int i = segmentat(k);
    const rib_s r0 = ribat(i), r1 = ribat(i + 1);
    const float u0 = static_cast<float>(i) / segments;
    const float u1 = static_cast<float>(i + 1) / segments;
    const glm::vec3 pos[6] = {r0.top, r0.bottom, r1.top, r1.bottom, r0.bottom, r1.top};
    const glm::vec2 uv[6] = {{u0, 0}, {u0, 1}, {u1, 0}, {u1, 1}, {u0, 1}, {u1, 0}};
    for (int v = 0; v < 6; ++v) {
        ribbon.pos[k * 6 + v] = pos[v];
        ribbon.uv[k * 6 + v] = uv[v];
        ribbon.nor[k * 6 + v] = glm::vec3(0.0f);
    }
}

glm::mat4 ribbonmatrix() {
    const glm::mat4 tilted = util::rotate(phone_rotation_mv, 53.0f, {0, 0, -1});
    return phone_projection * glm::translate(tilted, {0, 0, -34});
}

void attach(const ribbon_s& ribbon) {
    scrollershader.array("pos", 3, GL_FLOAT, 0, ribbon.pos);
    scrollershader.array("uv", 2, GL_FLOAT, 0, ribbon.uv);
    scrollershader.array("nor", 3, GL_FLOAT, 0, ribbon.nor);
}

void drawscroller() {
    texttex.textureid = scrollertex;
    ribbon_s ribbon;
    for (int k = 0; k < segments; ++k)
        putsegment(ribbon, k);
    scrollershader.use();
    scrollershader.set("time", timeval);
    scrollershader.set("mvp", ribbonmatrix());
    scrollershader.texture("tex", 0, texttex);
    attach(ribbon);
    quad::blendon();
    glDrawArrays(GL_TRIANGLES, 0, segments * 6);
    quad::blendoff();
    detachverts(scrollershader);
}

void scrollerinit() {
    scrollershader.init(vertex_src, fragment_src);
    texttex.load("gfx/scroller.png", 0);
}

class effect_c : public demoeffect_c {
public:
    void initgl() override { scrollerinit(); }

    void draw() override {
        glDepthMask(GL_FALSE);
        drawscroller();
        glDepthMask(GL_TRUE);
    }
};

effect_c effect;

} // namespace

demoeffect_c* orbitscroller = &effect;

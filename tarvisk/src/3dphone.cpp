// The phone: a textured model whose screen shows another picture. In the first scene it flies
// (phoneflight), later the director poses it.
#include "3dphone.h"

#include "effects.h"
#include "main/clock.h"
#include "model.h"
#include "phoneflight.h"
#include "shader.h"
#include "stage.h"

#include <glm/gtc/matrix_transform.hpp>

GLuint phonescreentex = 0;
void (*draw_the_phone_ptr)(bool stencil) = nullptr;

namespace {

shader_c shader;
texture_c tex;
model_c* nysi = nullptr;

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
    vec3 normal = mv * nor;
    float zz = clamp(dot(normalize(vec3(0.0, 0.0, 1.0)), normal), 0.2, 1.0);
    v_col = vec4(zz, zz, zz, 1.0);
    v_uv = uv;
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

constexpr glm::vec3 meshcenter(0.0f, 61.55f, 5.4845f); // model units, like all lengths below

// The visible screen. u runs down the phone's long side, so a landscape picture fills it.
constexpr float left = -25.0f, right = 25.0f, top = 106.02917f, bottom = 17.070831f,
                front = 5.4845f;
const glm::vec3 facing(0.0f, 0.0f, 1.0f);
const realvert_s screenverts[6] = {
    {{left, top, front}, {0.0f, 0.0f}, facing},     {{left, bottom, front}, {1.0f, 0.0f}, facing},
    {{right, top, front}, {0.0f, 1.0f}, facing},    {{left, bottom, front}, {1.0f, 0.0f}, facing},
    {{right, bottom, front}, {1.0f, 1.0f}, facing}, {{right, top, front}, {0.0f, 1.0f}, facing},
};

void setmatrices() {
    const glm::mat4 model = glm::translate(phone_rotation_mv, -meshcenter);
    const glm::mat4 mvp = phone_projection * model;
    const glm::mat3 mv(phone_rotation_mv);
    shader.use();
    shader.set("time", timeval);
    shader.set("mvp", mvp);
    shader.set("mv", mv);
}

// What is drawn next leaves `value` in the stencil buffer where it is seen.
void writestencil(GLint value) {
    glStencilFunc(GL_ALWAYS, value, 1);
    glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
}

void drawscreen() {
    tex.textureid = phonescreentex;
    shader.texture("tex", 0, tex);
    attachverts(shader, screenverts);
    glDrawArrays(GL_TRIANGLES, 0, 6);
}

void drawbody() {
    shader.texture("tex", 0, nysitex);
    attachverts(shader, nysi->data);
    glDrawArrays(GL_TRIANGLES, 0, 3 * nysi->fcnt);
}

void draw_the_phone(bool stencil) {
    setmatrices();
    if (stencil) {
        writestencil(1);
        glStencilMask(1);
    }
    drawscreen();
    if (stencil)
        writestencil(0);
    drawbody();
    detachverts(shader);
}

void phoneinit() {
    shader.init(vertex_src, fragment_src);
    tex.load("gfx/harmattan-home.png", TEX_RGB);
    nysi = new model_c("N9_low.obj");
    nysitex.load("gfx/N9_uv.png", 0);
    draw_the_phone_ptr = draw_the_phone;
}

class effect_c : public demoeffect_c {
public:
    void initgl() override { phoneinit(); }

    void draw() override {
        phoneflight_move();
        draw_the_phone(true);
    }
};

effect_c effect;

} // namespace

demoeffect_c* flyphone = &effect;

void phonedraw() {
    draw_the_phone_ptr(false);
}

// A flight through an endless city that fades to black with distance (knob CityMaxDistance), glows
// at its windows and at the end flies apart (knob citybomb). The travel point and the base
// matrices are the director's; the camera's two angles follow cues of their own.
#include "city.h"
#include "effects.h"
#include "main/clock.h"
#include "model.h"
#include "schedule.h"
#include "shader.h"
#include "spring.h"
#include "stage.h"
#include "texture.h"
#include "util.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <glm/gtc/matrix_transform.hpp>

float citybomb = 0.0f;
float CityMaxDistance = 1000.0f;
GLuint citytex = 0;

namespace {

shader_c shader;
texture_c tex;
model_c* city;
citysplit_s blocks;

const char vertex_src[] = R"(
attribute vec3 pos;
attribute vec3 nor;
attribute vec2 uv;
uniform mat4 mvp;
uniform mat3 mv;
uniform vec3 citySpacePos;
uniform vec3 lightdir;
uniform float time;
uniform float beatgrid;
uniform float bomb;
uniform float bomb2;
uniform float u_dist;
varying vec4 v_col;
varying vec2 v_uv;
void main() {
    vec3 pos2 = pos + (nor.yzx + uv.yxy) * bomb2;
    gl_Position = mvp * vec4(pos2, 1.0);
    vec3 direction = normalize(pos2 - citySpacePos);
    vec3 normal = mv * nor;
    float zz = clamp(dot(lightdir, normal) * 1.0, 0.2, 1.0);
    zz *= clamp((pos.y + 50.0) * 0.007, 0.0, 1.0);
    zz *= 1.0 - pow(clamp(gl_Position.z / u_dist, 0.0, 1.0), 2.0);
    zz += bomb;
    v_col = vec4(zz, zz, zz, 0.2);
    v_uv = uv;
}
)";

const char fragment_src[] = FRAGMENT_HEAD R"(
varying vec4 v_col;
uniform sampler2D tex;
void main() {
    gl_FragColor = texture2D(tex, v_uv) * v_col;
    gl_FragColor.rgb += vec3(1.0, 1.0, 0.8) * gl_FragColor.a;
}
)";

// In eye space: the light turns with the camera.
const glm::vec3 lightdir(0.6666667f, 0.6666667f, 0.33333334f);

// The camera's angles follow their cues on springs, in degrees.
void turncamera() {
    static spring_c<float> camang(0.0f, 0.0f, 0.002f, 0.4f);
    static spring_c<float> camang2(0.0f, 0.0f, 0.002f, 0.4f);
    if (fires(cue::tunnel_camdown1)) {
        camang.targetpos = -20.0f;
        camang2.targetpos = 30.0f;
    }
    if (fires(cue::tunnel_camdown2)) {
        camang.targetpos = -40.0f;
        camang2.targetpos = 90.0f;
    }
    if (fires(cue::tunnel_camup1))
        camang.targetpos = 20.0f;
    if (fires(cue::tunnel_camup2))
        camang.targetpos = -10.0f;
    camang.iterate(frameskip);
    camang2.iterate(frameskip);
    camPitch = camang.pos;
    camYaw = camang2.pos;
}

glm::mat4 viewmatrix() {
    glm::mat4 mv = phone_rotation_mv;
    mv = util::rotate(mv, camPitch, {0.0f, 1.0f, 0.0f});
    mv = util::rotate(mv, camYaw, {1.0f, 0.0f, 0.0f});
    mv = util::rotate(mv, -90.0f, {0.0f, 0.0f, 1.0f});
    mv = glm::translate(mv, tunnelflyer.pos - glm::vec3(0.0f, 50.0f, 0.0f));
    return glm::translate(mv, {0.0f, -170.0f, 0.0f});
}

void setuniforms(const glm::mat4& mv) {
    const glm::mat3 view3(mv);
    shader.set("time", timeval);
    shader.set("beatgrid", beatgrid - std::floor(beatgrid));
    shader.set("bomb", citybomb);
    shader.set("bomb2", std::max(citybomb - 1.4f, 0.0f) * 900.0f);
    shader.set("u_dist", std::clamp(CityMaxDistance - 200.0f, 0.0f, 1000.0f));
    shader.set("mv", view3);
    shader.set("lightdir", lightdir);
    shader.texture("tex", 0, tex);
}

// The copy that the camera is in and the eight around it.
void drawcopies(const glm::mat4& mv) {
    const glm::mat4 mv_inv = glm::inverse(mv);
    const glm::vec3 possi(mv_inv[3]);
    glm::vec3 frustumverts[8];
    plane_t frustumplanes[4];
    calc_frustum(phone_projection, mv_inv, frustumverts, frustumplanes);
    const glm::vec3 half(citysize / 2.0f, 0.0f, citysize / 2.0f);
    const glm::vec3 possi2 = glm::floor((possi + half) / citysize) * citysize;
    for (int x = -1; x <= 1; ++x) {
        for (int y = -1; y <= 1; ++y) {
            const glm::vec3 offs = possi2 + citysize * glm::vec3(x, 0, y);
            drawInstance(shader, blocks, mv, offs,
                         constructCitymask(possi, frustumplanes, offs, CityMaxDistance));
        }
    }
}

class effect_c : public demoeffect_c {
public:
    void init() override { puts("init wtf"); }

    void initgl() override {
        shader.init(vertex_src, fragment_src);
        city = new model_c("city08.obj");
        tex.load("gfx/city08_diffuse.png", TEX_REPEAT);
        blocks = split(*city);
    }

    void draw() override {
        turncamera();
        const glm::mat4 mv = viewmatrix();
        shader.use();
        setuniforms(mv);
        attachverts(shader, city->data);
        drawcopies(mv);
        detachverts(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* tunnel = &effect;

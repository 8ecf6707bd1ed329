// The phone: a textured model whose screen shows another picture. It flies in over the desktop,
// jumps a little on every beat, spins twice, and comes so near that the camera passes through its
// screen into the city.
#include "3dphone.h"

#include "demo.h"
#include "effects.h"
#include "main/clock.h"
#include "main/startup.h"
#include "model.h"
#include "shader.h"
#include "spring.h"
#include "sync.h"
#include "util.h"

#include <cmath>
#include <cstdio>
#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <iterator>

glm::mat4 phone_rotation_mv(1.0f);
glm::mat4 phone_projection(1.0f);
GLuint phonescreentex = 0;
texture_c nysitex;
bool show_whiteback = false;
bool flyphone_tunnelready = false;
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

// ---- the model ----

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

void attach(const realvert_s* verts) {
    shader.array("pos", 3, GL_FLOAT, sizeof(realvert_s), &verts->pos);
    shader.array("uv", 2, GL_FLOAT, sizeof(realvert_s), &verts->tc);
    shader.array("nor", 3, GL_FLOAT, sizeof(realvert_s), &verts->nor);
}

void detach() {
    shader.array("pos", 3, GL_FLOAT, 0, nullptr);
    shader.array("uv", 2, GL_FLOAT, 0, nullptr);
    shader.array("nor", 3, GL_FLOAT, 0, nullptr);
}

void setmatrices() {
    const glm::mat4 model = glm::translate(phone_rotation_mv, -meshcenter);
    const glm::mat4 mvp = phone_projection * model;
    const glm::mat3 mv(phone_rotation_mv);
    shader.use();
    glUniform1f(shader.uniform("time"), timeval);
    glUniformMatrix4fv(shader.uniform("mvp"), 1, GL_FALSE, glm::value_ptr(mvp));
    glUniformMatrix3fv(shader.uniform("mv"), 1, GL_FALSE, glm::value_ptr(mv));
}

// What is drawn next leaves `value` in the stencil buffer where it is seen.
void writestencil(GLint value) {
    glStencilFunc(GL_ALWAYS, value, 1);
    glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
    glStencilMask(1);
}

void drawscreen() {
    tex.textureid = phonescreentex;
    shader.texture("tex", 0, tex);
    attach(screenverts);
    glDrawArrays(GL_TRIANGLES, 0, 6);
}

void drawbody() {
    shader.texture("tex", 0, nysitex);
    attach(nysi->data);
    glDrawArrays(GL_TRIANGLES, 0, 3 * nysi->fcnt);
}

void draw_the_phone(bool stencil) {
    setmatrices();
    if (stencil)
        writestencil(1);
    drawscreen();
    if (stencil)
        writestencil(0);
    drawbody();
    detach();
}

void phoneinit() {
    shader.init(vertex_src, fragment_src);
    tex.load("gfx/harmattan-home.png", TEX_RGB);
    nysi = new model_c("N9_low.obj");
    nysitex.load("gfx/N9_uv.png", 0);
    draw_the_phone_ptr = draw_the_phone;
}

// ---- the flight ----

spring_c<float> zfix(0.0f, 0.0f, 0.0015f, 0.974f);      // towards the viewer, model units
spring_c<float> angfix(0.0f, 0.0f, 0.0013f, 0.954532f); // tilt about x, degrees
spring_c<float> angfix2(0.0f, 0.0f, 0.0026f, 0.971f);   // turn about y, degrees
spring_c<float> angfix3(0.0f, 0.0f, 0.0001f, 0.911f);   // roll about z, degrees
float zpos = -35.71f;                                   // where zfix 0 lies, model units

// What the flight is at: an index of the targets below, and a latch for the hand-stepped key.
constexpr int latch = 0x80;
int state = 0;

void spin() {
    angfix.pos -= 360.0f;
}

struct flightevent_s {
    const char* name;
    float beat;
    void (*action)();
};

// The second "phonefly4-2" finds the first, so beat 34 goes to state 3 and at once on to 4.
const flightevent_s flightevents[] = {
    {"phonefly1", 0.0f,
     [] {
         state = 7;
         zfix.acc = 0.0004f;
     }},
    {"phonefly2", 1.0f,
     [] {
         state = 6;
         zfix.acc = 0.0015f;
     }},
    {"phonefly3", 6.5f, [] { state = 4; }},
    {"phonespin1", 4.5f, [] { spin(); }},
    {"phonefly4", 20.0f, [] { state = 2; }},
    {"phonefly4-2", 34.0f, [] { state = 3; }},
    {"phonefly4-2", 37.0f, [] { state = 4; }},
    {"phonefly5", 48.0f, [] { state = 1; }},
    {"phonefly6", 64.0f, [] { state = 0; }},
    {"phonefly7", 110.0f,
     [] {
         state = 5;
         zfix.acc = 0.0015f;
     }},
    {"phonefly8", 112.0f, [] { state = 6; }},
    {"phonefly9", 114.0f,
     [] {
         spin();
         angfix.damp = 0.93f;
         zfix.acc = 0.0015f;
     }},
};

void runevents() {
    for (const flightevent_s& event : flightevents)
        if (sync_c(event.name, event.beat, 0).once())
            event.action();
}

// Half-way through the second spin the desktop gives way to white.
void turnwhite() {
    if (sync_c("phonefly9", 0, 0).past() && angfix.pos > -180.0f)
        show_whiteback = true;
}

void nudgebywheel() {
    const int clicks = mouserull[0] - mouserull[1];
    if (clicks == 0)
        return;
    zpos += clicks * 0.01f;
    fprintf(stderr, "zpos: %.3f\n", double(zpos));
}

// Space or a mouse button steps through states 1 to 4 and back to 0, once a press.
void stepbyhand() {
    if (!keystate[SDLK_SPACE] && SDL_GetMouseState(nullptr, nullptr) == 0) {
        state &= ~latch;
        return;
    }
    if (state & latch)
        return;
    ++state;
    fprintf(stderr, "state is now: %i\n", state);
    state = (state & ~latch) == 5 ? latch : state | latch;
}

// The camera has reached the screen: it flies on through the city at the phone's speed.
void handover() {
    fprintf(stderr, "running at pos %.5f vel %.5f. accfac %.5f\n", double(zfix.pos),
            double(zfix.vel), double(zfix.acc));
    tunnelflyer.pos = glm::vec3(0.0f, 0.0f, zfix.pos);
    tunnelflyer.vel = glm::vec3(0.0f, 0.0f, zfix.vel);
    zfix.pos = zfix.vel = 0.0f;
    flyphone_tunnelready = true;
}

void approachscreen() {
    if (!sync_c("phonefly10", 127, 0).past())
        return;
    state = 0;
    if (zfix.pos > 0.0f)
        handover();
}

struct target_s {
    float z, tilt, turn, sway; // of zfix, angfix, angfix2; times sin(timeval), added to turn
};

const target_s targets[] = {
    {0.0f, 0.0f, 0.0f, 0.0f},     {-10.0f, -20.0f, -10.0f, 8.0f}, {-30.0f, -10.0f, 10.0f, 6.0f},
    {-170.0f, 80.0f, 0.0f, 0.0f}, {-40.0f, 10.0f, 20.0f, 1.0f},   {-160.0f, 0.0f, 0.0f, 0.0f},
    {-50.0f, 0.0f, 0.0f, 0.0f},   {-120.0f, 0.0f, 0.0f, 0.0f},    {-20.0f, 0.0f, 0.0f, 0.0f},
};

void settargets() {
    const size_t index = state & ~latch;
    if (index >= std::size(targets)) // stepped by hand beyond the last
        return;
    const target_s& target = targets[index];
    zfix.targetpos = target.z;
    angfix.targetpos = target.tilt;
    angfix2.targetpos = std::sin(timeval) * target.sway + target.turn;
}

// The phone jumps on every beat, except at rest in state 0; 0 with the latch is no rest.
void clickonbeat() {
    static bool clicker = false;
    const float phase = beatgrid - std::floor(beatgrid);
    if (state == 0)
        return;
    if (phase < 0.1f && !clicker) {
        zfix.pos += 0.3f;
        clicker = true;
    } else if (phase > 0.1f) {
        clicker = false;
    }
}

void stepsprings() {
    for (spring_c<float>* spring : {&zfix, &angfix, &angfix2, &angfix3})
        spring->iterate(frameskip);
}

// From the event on the stars stream with the phone's motion.
void movestars() {
    static float oldzfixpos = 0.0f;
    if (!sync_c("starmover", 132, 0).past())
        return;
    sf_zchange = (oldzfixpos - zfix.pos) * 0.001f;
    oldzfixpos = zfix.pos;
}

void setpose() {
    glm::mat4 mv = glm::translate(glm::mat4(1.0f), {0.0f, 0.0f, zfix.pos + zpos});
    mv = util::rotate(mv, angfix.pos, {1.0f, 0.0f, 0.0f});
    mv = util::rotate(mv, angfix2.pos, {0.0f, 1.0f, 0.0f});
    phone_rotation_mv = util::rotate(mv, angfix3.pos + 90.0f, {0.0f, 0.0f, 1.0f});
}

class effect_c : public demoeffect_c {
public:
    void initgl() override { phoneinit(); }

    void draw() override {
        phone_projection = util::perspective(70.0f, 1.0f, 3000.0f);
        nudgebywheel();
        stepbyhand();
        runevents();
        turnwhite();
        approachscreen();
        settargets();
        clickonbeat();
        stepsprings();
        movestars();
        setpose();
        draw_the_phone(true);
    }
};

effect_c effect;

} // namespace

demoeffect_c* flyphone = &effect;

void phonedraw() {
    draw_the_phone_ptr(false);
}

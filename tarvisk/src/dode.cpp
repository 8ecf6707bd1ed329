// A flat-shaded dodecahedron made of jelly: every vertex is a point mass, every two of them are
// joined by a spring. It trembles, shakes on every beat and wobbles on two cues of its own.
#include "effects.h"
#include "glcaps.h"
#include "main/clock.h"
#include "model.h"
#include "schedule.h"
#include "shader.h"
#include "util.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <glm/gtc/matrix_transform.hpp>
#include <vector>

namespace {

constexpr int maxvertexes = 256;
constexpr int maxpairs = 4096;
constexpr int maxcorners = 1024;

struct vertexpair_s {
    int v1, v2; // v1 < v2
};

shader_c shader;
model_c* dodeobu;

int vertex_count;
glm::vec3 vertexes[maxvertexes];
glm::vec3 vertexes_vel[maxvertexes]; // units a step

// One more than the limit: the table is only found full by the spring after.
int vertexpair_count;
vertexpair_s vertexpairs[maxpairs + 1];
float vertexpair_dist[maxpairs + 1]; // at rest

int polyvert_count;
int polyidx_count;
// Of every corner in this frame.
std::vector<glm::vec3> polyverts;
std::vector<glm::vec3> polynormals;
std::vector<char> normalset;
GLuint polyidx[maxcorners];
int vertex_double[maxcorners]; // a triangle corner's place in vertexes

const glm::vec3 pullpos(0.6f, 0.2f, 0.2f);
const glm::vec3 lightdir(0.57735026f);

const char vertex_src[] = R"(
attribute vec3 pos;
attribute vec3 nor;
attribute vec2 uv;
uniform mat4 mvp;
uniform mat3 mv;
uniform vec3 eyepos;
uniform vec3 lightdir;
varying vec4 v_col;
varying vec2 v_uv;
void main() {
    gl_Position = mvp * vec4(pos, 1.0);
    vec3 normal = mv * nor;
    float zz = 1.0 - pow(clamp(dot(lightdir, normal), 0.0, 1.0), 1.0);
    v_col = mix(vec4(0.257,0.596,0.31,1.0), vec4(0.03,0.36,0.529,1.0), zz);
    v_uv = uv;
}
)";

const char fragment_src[] = R"(
precision highp float;
varying vec4 v_col;
varying vec2 v_uv;
uniform float time;
uniform sampler2D tex;
void main() {
    gl_FragColor = v_col;
}
)";

void loadvertexes() {
    dodeobu = new model_c("dode.obj");
    fprintf(stderr, "vertex count: %i, f %i\n", dodeobu->vcnt, dodeobu->fcnt * 3);
    vertex_count = std::min(dodeobu->vcnt, maxvertexes);
    std::copy_n(dodeobu->verts, vertex_count, vertexes);
}

void loadcorners() {
    const int faces = std::min(dodeobu->fcnt, maxcorners / 3);
    polyvert_count = polyidx_count = faces * 3;
    for (int i = 0; i < faces; ++i) {
        const facei_s& face = dodeobu->faces[i];
        const int corners[3] = {face.v1, face.v2, face.v3};
        for (int k = 0; k < 3; ++k) {
            vertex_double[i * 3 + k] = std::clamp(corners[k], 0, maxvertexes - 1);
            polyidx[i * 3 + k] = static_cast<GLuint>(i * 3 + k);
        }
    }
}

void addpair(int i, int j) {
    const float d = glm::length(vertexes[j] - vertexes[i]);
    if (vertexpair_count > maxpairs) {
        fprintf(stderr, "%i-%i = %.2f\n", i, j, double(d));
        fprintf(stderr, "full.\n");
        exit(1);
    }
    vertexpairs[vertexpair_count] = {i, j};
    vertexpair_dist[vertexpair_count] = d;
    ++vertexpair_count;
}

// All pairs, not only the edges: the solid keeps its volume without any pressure.
void joinpairs() {
    for (int i = 0; i < vertex_count; ++i)
        for (int j = i + 1; j < vertex_count; ++j)
            addpair(i, j);
}

// What disturbs the body, each for a number of frames to come.
enum { app_shake, app_pull, app_wobble, app_count };
using countdowns_t = int[app_count];

void startdisturbances(countdowns_t& app) {
    static int lb = -1; // the last beat seen
    const int beat = static_cast<int>(std::floor(beatgrid));
    if (beat != lb) {
        app[app_shake] += 2;
        lb = beat;
    }
    if (fires(cue::dodebum))
        app[app_wobble] += 10;
    if (fires(cue::dodebum2))
        app[app_wobble] += 2;
}

void tremble(glm::vec3& vel) {
    if (util::rnd() > 0.995f)
        vel += util::rnd_n3() * 0.001f;
}

void shake(glm::vec3& vel) {
    vel += util::rnd_n3() * 0.02f;
}

void pull(const glm::vec3& pos, glm::vec3& vel) {
    const glm::vec3 dd = pullpos - pos;
    const float curlen = glm::length(dd);
    if (curlen > 0.01f)
        vel += 1.0f / curlen * (dd / curlen) * 0.2f;
}

// In and out along x and z, in bands up the body.
void wobble(const glm::vec3& pos, glm::vec3& vel) {
    const float mudi = static_cast<float>(std::sin(pos.y * 9.0 + timeval * 10.0) * 0.05);
    vel.x += mudi * pos.x;
    vel.z += mudi * pos.z;
}

void disturb(const countdowns_t& app) {
    for (int v = 0; v < vertex_count; ++v) {
        tremble(vertexes_vel[v]);
        if (app[app_shake])
            shake(vertexes_vel[v]);
        if (app[app_pull]) // nothing starts it
            pull(vertexes[v], vertexes_vel[v]);
        if (app[app_wobble])
            wobble(vertexes[v], vertexes_vel[v]);
    }
}

void countdown(countdowns_t& app) {
    for (int& frames : app)
        frames -= frames > 0;
}

void pullspring(int p) {
    const auto [v1, v2] = vertexpairs[p];
    const glm::vec3 direction = vertexes[v2] - vertexes[v1];
    const float curlen = glm::length(direction);
    const float acc = (vertexpair_dist[p] - curlen) * 0.003f;
    vertexes_vel[v1] -= acc * direction / curlen;
    vertexes_vel[v2] += acc * direction / curlen;
}

void step() {
    for (int p = 0; p < vertexpair_count; ++p)
        pullspring(p);
    for (int v = 0; v < vertex_count; ++v) {
        vertexes[v] += vertexes_vel[v];
        vertexes_vel[v] *= 0.96f;
    }
}

void recentre() {
    glm::vec3 mid(0.0f);
    for (int v = 0; v < vertex_count; ++v)
        mid += vertexes[v];
    mid /= static_cast<float>(vertex_count);
    for (int v = 0; v < vertex_count; ++v)
        vertexes[v] -= mid;
}

void solve_vertexpairs() {
    static countdowns_t app = {};
    startdisturbances(app);
    disturb(app);
    countdown(app);
    for (int i = 0; i < frameskip; ++i)
        step();
    recentre();
}

void setuniforms() {
    const glm::mat4 proj = util::perspective(55.0f, 1.0f, 30000.0f);
    glm::mat4 mv = glm::translate(glm::mat4(1.0f), {-0.75f, 0.0f, -3.0f});
    mv = util::rotate(mv, timeval * 40.0f, {0.0f, 1.0f, 0.0f});
    mv = util::rotate(mv, timeval * 50.0f, {0.0f, 0.0f, 1.0f});
    const glm::mat4 mvp = proj * mv;
    const glm::mat3 view3(mv);
    shader.set("time", timeval);
    shader.set("mvp", mvp);
    shader.set("mv", view3);
    shader.set("lightdir", lightdir);
}

void placecorners() {
    for (size_t k = 0; k < polyverts.size(); ++k)
        polyverts[k] = vertexes[vertex_double[k]];
}

// The facet's normal at each of its corners, from the body as it is bent now.
void turncorners() {
    std::fill(polynormals.begin(), polynormals.end(), glm::vec3(0.0f));
    std::fill(normalset.begin(), normalset.end(), 0);
    for (int i = 0; i + 2 < polyidx_count; i += 3) {
        const glm::vec3& p0 = polyverts[polyidx[i]];
        const glm::vec3& p1 = polyverts[polyidx[i + 1]];
        const glm::vec3& p2 = polyverts[polyidx[i + 2]];
        const glm::vec3 n = glm::normalize(glm::cross(p1 - p0, p2 - p0));
        for (int k = i; k < i + 3; ++k) {
            polynormals[polyidx[k]] = n;
            normalset[polyidx[k]] = 1;
        }
    }
    for (size_t k = 0; k < normalset.size(); ++k)
        if (!normalset[k])
            fprintf(stderr, "%zu not set\n", k);
}

void drawbody() {
    placecorners();
    turncorners();
    shader.array("pos", 3, GL_FLOAT, sizeof(glm::vec3), polyverts.data());
    shader.array("nor", 3, GL_FLOAT, sizeof(glm::vec3), polynormals.data());
    glDrawElements(GL_TRIANGLES, polyidx_count, GL_UNSIGNED_INT, polyidx);
    detachverts(shader);
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        glcaps_index32("dode");
        shader.init(vertex_src, fragment_src);
        loadvertexes();
        loadcorners();
        joinpairs();
        polyverts.resize(static_cast<size_t>(polyvert_count));
        polynormals.resize(polyverts.size());
        normalset.resize(polyverts.size());
    }

    void draw() override {
        shader.use();
        setuniforms();
        solve_vertexpairs();
        drawbody();
    }
};

effect_c effect;

} // namespace

demoeffect_c* dode = &effect;

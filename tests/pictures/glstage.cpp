#include "glstage.h"

#include "fbo.h"
#include "main/clock.h"
#include "main/startup.h"
#include "main/video.h"
#include "offscreen.h"
#include "port.h"
#include "shader.h"
#include "sync.h"
#include "texture.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <string>

using glm::vec2;
using glm::vec4;

void glstage_open(bool depth) {
    offscreen_setsize(glstage_width, glstage_height);
    port_beforesdl();
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0);
    config_stencilsize = 8; // as the show has it; with it come 24 bits of depth
    init_gl();
    glViewport(0, 0, glstage_width, glstage_height);
    if (depth) {
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_LESS);
    } else {
        (new fbo_c(glstage_width, glstage_height, 0))->bind();
    }
}

void glstage_clear() {
    const vec4& c = glstage_background;
    glClearColor(c.r, c.g, c.b, c.a);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

vec4 glstage_pixel(int x, int y) {
    Uint8 p[4];
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
    return vec4(p[0], p[1], p[2], p[3]) / 255.0f;
}

namespace {

const char probe_vertex_src[] = R"(
attribute vec2 pos;
uniform float z;
void main() { gl_Position = vec4(pos, z, 1.0); }
)";

const char probe_fragment_src[] = R"(
precision highp float;
uniform float grey;
void main() { gl_FragColor = vec4(grey); }
)";

} // namespace

// Halves the interval in which sheets laid over the screen stop to be seen.
float glstage_clipdepth(int x, int y) {
    static const float sheet[] = {-1, -1, 3, -1, -1, 3};
    shader_c probe{};
    probe.init(probe_vertex_src, probe_fragment_src);
    probe.array("pos", 2, GL_FLOAT, 0, sheet);
    glDepthMask(GL_FALSE);
    float near = -1.0f, far = 1.0f;
    for (int i = 0; i < 26; ++i) {
        const float z = (near + far) / 2.0f, grey = i % 2 ? 1.0f : 0.0f;
        glUniform1f(probe.uniform("grey"), 1.0f - grey);
        glDisable(GL_DEPTH_TEST);
        glDrawArrays(GL_TRIANGLES, 0, 3);
        glEnable(GL_DEPTH_TEST);
        glUniform1f(probe.uniform("grey"), grey);
        glUniform1f(probe.uniform("z"), z);
        glDrawArrays(GL_TRIANGLES, 0, 3);
        (glstage_pixel(x, y).r == grey ? near : far) = z;
    }
    glDepthMask(GL_TRUE);
    return far;
}

void glstage_setbeat(float beat) {
    beatgrid = beat;
    timeval = 0.128f + beat * 0.634875f;
}

void glstage_drawfirst(demoeffect_c* effect, float beat, int skip) {
    effect->initgl();
    glstage_setbeat(beat);
    frameskip = skip;
    glstage_clear();
    effect->draw();
    sync_ack();
}

vec4 glstage_blended(const vec4& source) {
    return source * source.a + glstage_background * (1 - source.a);
}

void glstage_expect(const std::function<vec4(vec2)>& shade) {
    int compared = 0, wrong = 0;
    std::string first;
    for (int y = 2; y < glstage_height; y += 5)
        for (int x = 2; x < glstage_width; x += 5) {
            const vec2 pos((x + 0.5f) / glstage_width, (y + 0.5f) / glstage_height);
            const vec4 expected = glm::clamp(shade(pos), 0.0f, 1.0f);
            const vec4 got = glstage_pixel(x, y);
            const vec4 off = glm::abs(expected - got);
            ++compared;
            if (std::max({off.r, off.g, off.b, off.a}) < 5 / 255.0f)
                continue;
            if (wrong++ == 0)
                first = "at " + std::to_string(x) + ", " + std::to_string(y) + " red " +
                        std::to_string(got.r) + " for " + std::to_string(expected.r) + ", alpha " +
                        std::to_string(got.a) + " for " + std::to_string(expected.a);
        }
    EXPECT_LT(wrong, compared / 400) << first;
}

sampler_c::sampler_c(const char* file, bool repeating)
    : surface(texture_c::load_image(file, GL_RGBA)), repeats(repeating) {}

vec4 sampler_c::operator()(vec2 uv) const {
    const vec2 place = uv * vec2(surface->w, surface->h) - 0.5f;
    const vec2 base = glm::floor(place), part = place - base;
    const int x = static_cast<int>(base.x), y = static_cast<int>(base.y);
    return glm::mix(glm::mix(texel(x, y), texel(x + 1, y), part.x),
                    glm::mix(texel(x, y + 1), texel(x + 1, y + 1), part.x), part.y);
}

vec4 sampler_c::texel(int x, int y) const {
    const auto wrapped = [this](int i, int size) {
        return repeats ? ((i % size) + size) % size : glm::clamp(i, 0, size - 1);
    };
    const auto* row = static_cast<const Uint8*>(surface->pixels) +
                      wrapped(y, surface->h) * surface->pitch + wrapped(x, surface->w) * 4;
    return vec4(row[0], row[1], row[2], row[3]) / 255.0f;
}

SDL_Surface* compass() {
    SDL_Surface* surface =
        SDL_CreateRGBSurface(SDL_SWSURFACE, 64, 64, 32, 0xff, 0xff00, 0xff0000, 0xff000000);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) {
            Uint8* p = static_cast<Uint8*>(surface->pixels) + y * surface->pitch + x * 4;
            p[0] = static_cast<Uint8>(x * 4);
            p[1] = static_cast<Uint8>(y * 4);
            p[2] = x > 48 && y > 48 ? 255 : 0;
            p[3] = 255;
        }
    return surface;
}

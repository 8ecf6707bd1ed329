// Software GL for tests that look at pixels: a screen, pictures as GL samples them, one frame of an
// effect, and comparison with arithmetic of the test's own.
#pragma once

#include "demoeffect.h"

#include <functional>
#include <glm/glm.hpp>
#include <SDL.h>
#include <vector>

constexpr int glstage_width = 427;
constexpr int glstage_height = 240;

// What glstage_clear leaves.
const glm::vec4 glstage_background(0.2f, 0.4f, 0.6f, 1.0f);

// Opens the screen. Draws go to a target with alpha and without depth, or, where `depth` is set, to
// the window with depth and no alpha.
void glstage_open(bool depth = false);

void glstage_clear();

// The pixel counted from the bottom left.
glm::vec4 glstage_pixel(int x, int y);

// z in clip space, divided by w, of what was drawn there with the depth test on.
float glstage_clipdepth(int x, int y);

// The clock globals at a beat of the show.
void glstage_setbeat(float beat);

// Draws the effect's first frame, over which `skip` ticks pass, on the background.
void glstage_drawfirst(demoeffect_c* effect, float beat, int skip = 1);

// A colour as blending leaves it on the background.
glm::vec4 glstage_blended(const glm::vec4& source);

// Compares the picture with `shade` over the unit square (v = 0 at the bottom), all four channels.
// A few pixels may differ: those on an edge.
void glstage_expect(const std::function<glm::vec4(glm::vec2)>& shade);

// A picture as GL samples it: bottom row first, linear.
class sampler_c {
public:
    sampler_c(const char* file, bool repeating);
    explicit sampler_c(SDL_Surface* pixels) : surface(pixels), repeats(false) {}

    glm::vec4 operator()(glm::vec2 uv) const;

private:
    SDL_Surface* surface;
    bool repeats;

    glm::vec4 texel(int x, int y) const;
};

// 64 x 64: red grows to the right, green upwards, blue is a mark in the top right corner.
SDL_Surface* compass();

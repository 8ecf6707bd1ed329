// The unit quad that the full-screen effects draw, and its ways onto the screen.
//
// Order of use: draw or drawblended for the unit quad; for other vertices attach, glDrawArrays,
// detach. The program must be current and its uniforms set. GL thread only.
#pragma once

#include "shader.h"

#include <glm/glm.hpp>

// GLSL for vertex shaders: clip position of a point of the unit square.
//   upright  texture coordinate v = 0 at the bottom of the target
//   flipped  v = 0 at the top: a picture, loaded bottom row first, lands upside down
#define QUAD_MAPPINGS                                                                              \
    "vec2 upright(vec2 pos) { return pos * vec2(2.0 / 1.0, 2.0 / 1.0) + vec2(-1.0, -1.0); }\n"     \
    "vec2 flipped(vec2 pos) { return pos * vec2(2.0 / 1.0, -2.0 / 1.0) + vec2(-1.0, 1.0); }\n"

// GLSL for vertex shaders: turns clip position norpos by `a` radians clockwise from standing on its
// left edge, and shrinks it to 0.7 of the screen's height, square.
#define QUAD_PLACEMENT                                                                             \
    "vec2 placed(vec2 norpos, float a) {\n"                                                        \
    "    return mat2(sin(a), cos(a), -cos(a), sin(a)) * norpos * vec2(480. / 854.0, 1.0) * 0.7;\n" \
    "}\n"

namespace quad {

// Two triangles of the unit square: (0,0), (1,0), (0,1), (1,0), (1,1), (0,1).
extern const glm::vec2 unit[6];

// Attributes "pos", and "uv" unless null, from arrays of vec2.
void attach(const shader_c& shader, const glm::vec2* pos, const glm::vec2* uv);

// Switches "pos" and "uv" off.
void detach(const shader_c& shader);

// Draws the unit quad: attribute "pos", and "uv" from the same corners for those shaders that
// declare it. Both are off afterwards.
void draw(const shader_c& shader);

// Alpha blending: source alpha, one minus source alpha.
void blendon();
void blendoff();

// draw between blendon and blendoff.
void drawblended(const shader_c& shader);

} // namespace quad

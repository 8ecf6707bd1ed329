// The city's mesh cut into a grid of blocks, and which blocks of it a camera can see, so that a
// frame pays only for those. The mesh spans 800 x 800 city units in x and z round the origin;
// copies of it, 800 units apart, make the endless city.
//
// Order of use: split once; a frame, calc_frustum, then constructCitymask and drawInstance for each
// copy.
#pragma once

#include "model.h"
#include "shader.h"

#include <cstdint>
#include <glm/glm.hpp>
#include <memory>

constexpr int citycolumns = 4; // of blocks, in x and in z
constexpr int cityblocks = citycolumns * citycolumns;
constexpr float citysize = 800.0f; // of one copy

// A plane of the view frustum; dot(n, x) - d > 0 is outside.
struct plane_t {
    glm::vec3 n; // unit length
    float d;     // dot(n, x) of every point x in the plane
};

// An upright box.
struct box_s {
    glm::vec3 min, max;
};

// Triangles by block. Block b of column x and row y is b = x + 4 y; a city mask has bit 1 << b.
struct citysplit_s {
    std::unique_ptr<uint16_t[]> elements;      // all blocks' indices, back to back
    const uint16_t* blockElements[cityblocks]; // where a block's begin
    int blockElementsCount[cityblocks];        // indices, three a triangle
};

// Lists every triangle of the city in each block that holds one of its corners. At most 65,536
// vertices have an index; those beyond share the indices of the first. Prints its counts on
// standard error.
citysplit_s split(const model_c& city);

// The plane through three points; its normal is that of p1, p2, p3 counter-clockwise.
plane_t tritoplane(const glm::vec3& p1, const glm::vec3& p2, const glm::vec3& p3);

// Corners and side planes (bottom, top, left, right) of a view frustum, in world space: mat is a
// perspective projection, lookmtx_inv the inverse of the view matrix. Bits 0, 1, 2 of a corner's
// number say whether it lies right, up, far.
void calc_frustum(const glm::mat4& mat, const glm::mat4& lookmtx_inv, glm::vec3 frustumverts_out[8],
                  plane_t frustumplanes_out[4]);

// False when the box lies wholly outside one of the planes. A box that touches a plane is inside.
bool testBb(const plane_t frustumplanes[4], const box_s& bb);

// City mask of the copy at offset: its blocks whose centres on the ground are no farther than
// distance from possi and whose boxes pass testBb.
int constructCitymask(const glm::vec3& possi, const plane_t frustumplanes[4],
                      const glm::vec3& offset, float distance);

// Draws the masked blocks of the copy at offset under view matrix mv and phone_projection, with
// the shader current and its attributes pointing at the city's vertices. An empty mask makes no GL
// call.
void drawInstance(const shader_c& shader, const citysplit_s& blocks, const glm::mat4& mv,
                  const glm::vec3& offset, int citymask);

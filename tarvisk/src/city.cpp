#include "city.h"

#include "stage.h"

#include <cstdio>
#include <glm/gtc/matrix_transform.hpp>
#include <vector>

namespace {

constexpr float blocksize = citysize / citycolumns;
constexpr float blockheight = 585.0f;

// What lies outside the mesh's square belongs to the outermost columns.
int column(float coordinate) {
    if (coordinate < -blocksize)
        return 0;
    if (coordinate < 0.0f)
        return 1;
    return coordinate < blocksize ? 2 : 3;
}

int blockof(const glm::vec3& pos) {
    return column(pos.x) + citycolumns * column(pos.z);
}

// One flag for each block and triangle, block by block.
std::vector<bool> markfaces(const model_c& city) {
    const size_t faces = static_cast<size_t>(city.fcnt);
    std::vector<bool> facemask(cityblocks * faces);
    for (size_t corner = 0; corner < faces * 3; ++corner)
        facemask[static_cast<size_t>(blockof(city.data[corner].pos)) * faces + corner / 3] = true;
    return facemask;
}

// Prints how many triangles each block has and returns their sum.
int countfaces(const std::vector<bool>& facemask, int faces) {
    int badcase = 0;
    for (int j = 0; j < cityblocks; ++j) {
        int count = 0;
        for (int i = 0; i < faces; ++i)
            count += facemask[static_cast<size_t>(j * faces + i)];
        fprintf(stderr, "split %i: %i\n", j, count);
        badcase += count;
    }
    return badcase;
}

// The inverse of a perspective projection, from its five elements that are not 0.
glm::mat4 inverseperspective(const glm::mat4& m) {
    glm::mat4 invmat(0.0f);
    invmat[0][0] = 1.0f / m[0][0];
    invmat[1][1] = 1.0f / m[1][1];
    invmat[2][3] = 1.0f / m[3][2];
    invmat[3][2] = 1.0f / m[2][3];
    invmat[3][3] = -m[2][2] / (m[3][2] * m[2][3]);
    return invmat;
}

glm::vec4 clipcorner(int i) {
    return {i & 1 ? 1.0f : -1.0f, i & 2 ? 1.0f : -1.0f, i & 4 ? 1.0f : -1.0f, 1.0f};
}

glm::vec3 blockcentre(const glm::vec3& offset, int x, int y) {
    return offset + glm::vec3(blocksize * static_cast<float>(x) - 300.0f, 0.0f,
                              blocksize * static_cast<float>(y) - 300.0f);
}

box_s blockbox(const glm::vec3& centre) {
    constexpr float half = blocksize / 2.0f;
    return {centre + glm::vec3(-half, 0.0f, -half), centre + glm::vec3(half, blockheight, half)};
}

} // namespace

citysplit_s split(const model_c& city) {
    fprintf(stderr, "city faces: %i\n", city.fcnt);
    const std::vector<bool> facemask = markfaces(city);
    const int badcase = countfaces(facemask, city.fcnt);
    fprintf(stderr, "worst case: %i\n", badcase);
    citysplit_s blocks;
    blocks.elements.reset(new uint16_t[static_cast<size_t>(badcase) * 3]);
    uint16_t* curElem = blocks.elements.get();
    for (int j = 0; j < cityblocks; ++j) {
        blocks.blockElements[j] = curElem;
        for (int i = 0; i < city.fcnt; ++i)
            if (facemask[static_cast<size_t>(j * city.fcnt + i)])
                for (int corner = i * 3; corner < i * 3 + 3; ++corner)
                    *curElem++ = static_cast<uint16_t>(corner);
        blocks.blockElementsCount[j] = static_cast<int>(curElem - blocks.blockElements[j]);
    }
    fprintf(stderr, "poop: %i\n", static_cast<int>(curElem - blocks.elements.get()));
    return blocks;
}

plane_t tritoplane(const glm::vec3& p1, const glm::vec3& p2, const glm::vec3& p3) {
    const glm::vec3 pd1 = p2 - p1;
    const glm::vec3 pd2 = p3 - p1;
    const glm::vec3 nor = glm::normalize(glm::cross(pd1, pd2));
    return {nor, glm::dot(nor, p1)};
}

void calc_frustum(const glm::mat4& mat, const glm::mat4& lookmtx_inv, glm::vec3 frustumverts_out[8],
                  plane_t frustumplanes_out[4]) {
    const glm::mat4 invmat = inverseperspective(mat);
    for (int i = 0; i < 8; ++i) {
        const glm::vec4 tv2 = invmat * clipcorner(i);
        frustumverts_out[i] = glm::vec3(lookmtx_inv * (tv2 / tv2.w));
    }
    // The normals point outwards. Near and far need none: the distance test is the far limit.
    constexpr int triangles[4][3] = {{1, 0, 4}, {2, 3, 6}, {0, 2, 4}, {3, 1, 5}};
    for (int k = 0; k < 4; ++k)
        frustumplanes_out[k] =
            tritoplane(frustumverts_out[triangles[k][0]], frustumverts_out[triangles[k][1]],
                       frustumverts_out[triangles[k][2]]);
}

bool testBb(const plane_t frustumplanes[4], const box_s& bb) {
    for (int j = 0; j < 4; ++j) {
        const plane_t& plane = frustumplanes[j];
        const glm::vec3 innermost =
            glm::mix(bb.max, bb.min, glm::greaterThanEqual(plane.n, glm::vec3(0.0f)));
        if (glm::dot(plane.n, innermost) - plane.d > 0.0f)
            return false;
    }
    return true;
}

int constructCitymask(const glm::vec3& possi, const plane_t frustumplanes[4],
                      const glm::vec3& offset, float distance) {
    int citymask = 0;
    for (int x = 0; x < citycolumns; ++x) {
        for (int y = 0; y < citycolumns; ++y) {
            const glm::vec3 blockOffset = blockcentre(offset, x, y);
            if (distance < glm::length(blockOffset - possi))
                continue;
            if (testBb(frustumplanes, blockbox(blockOffset)))
                citymask |= 1 << (x + citycolumns * y);
        }
    }
    return citymask;
}

void drawInstance(const shader_c& shader, const citysplit_s& blocks, const glm::mat4& mv,
                  const glm::vec3& offset, int citymask) {
    if (citymask == 0)
        return;
    const glm::mat4 omv = glm::translate(mv, offset);
    const glm::mat4 MVP_local = phone_projection * omv;
    const glm::vec3 citySpacePos(glm::inverse(omv) * glm::vec4(0.0f, 0.0f, 0.0f, 1.0f));
    shader.set("mvp", MVP_local);
    shader.set("citySpacePos", citySpacePos);
    for (int b = 0; b < cityblocks; ++b)
        if (citymask & 1 << b)
            glDrawElements(GL_TRIANGLES, blocks.blockElementsCount[b], GL_UNSIGNED_SHORT,
                           blocks.blockElements[b]);
}

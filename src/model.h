// A triangle mesh from a Wavefront OBJ file: exactly three corners a face, each written
// position/texture/normal. Fixed capacity; prints its progress on standard error.
#pragma once

#include <glm/glm.hpp>

class shader_c;

// Zero-based indices of one triangle's corners.
struct facei_s {
    int v1, v2, v3; // positions
    int t1, t2, t3; // texture coordinates
    int n1, n2, n3; // normals
};

// One vertex of the interleaved array, 32 bytes: pos at 0, tc at 12, nor at 20.
struct realvert_s {
    glm::vec3 pos;
    glm::vec2 tc;
    glm::vec3 nor;
};

// Attributes "pos", "uv" and "nor" from vertices in client memory; and off again.
void attachverts(const shader_c& shader, const realvert_s* verts);
void detachverts(const shader_c& shader);

class model_c {
public:
    static constexpr int maxverts = 6000; // also of texture coordinates and normals
    static constexpr int maxfaces = 7000;

    glm::vec3* verts;
    glm::vec2* texcoords;
    glm::vec3* normals;
    facei_s* faces;
    int vcnt, fcnt, tcnt, ncnt; // records read; all but fcnt count on past the capacity
    glm::vec3 center;           // mean of all face corners
    realvert_s* data;           // fcnt * 3 vertices, three a face, for GL_TRIANGLES

    // Loads and finalizes. A file that cannot be opened ends the process with status 1 and a line
    // that names it. Records beyond the capacity are dropped; indices outside it read zeros. When
    // the file ends with a newline its last record counts twice.
    explicit model_c(const char* filename);

    // Parses the text after "f " into face. Fields that are missing keep what they had.
    void parseface(char* text, facei_s* face);

    // Builds data and center and prints the bounds.
    void finalize_data();
};

#include "model.h"

#include "shader.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// Fields of a face in the order of its record's indices.
using faceindex_t = int facei_s::*;
constexpr faceindex_t faceorder[] = {&facei_s::v1, &facei_s::t1, &facei_s::n1,
                                     &facei_s::v2, &facei_s::t2, &facei_s::n2,
                                     &facei_s::v3, &facei_s::t3, &facei_s::n3};

// An empty piece reads as 0 and so becomes -1.
int zerobased(const char* piece) {
    const long index = strtol(piece, nullptr, 10);
    return static_cast<int>(std::clamp<long>(index, INT_MIN + 1L, INT_MAX) - 1);
}

template<class T>
T at(const T* records, int index) {
    return index >= 0 && index < model_c::maxverts ? records[index] : T(0.0f);
}

bool startswith(const char* line, const char* tag) {
    return strncmp(line, tag, strlen(tag)) == 0;
}

void readvec3(const char* text, glm::vec3* v) {
    sscanf(text, "%f %f %f", &v->x, &v->y, &v->z);
}

void printvec3(const char* what, const glm::vec3& v) {
    fprintf(stderr, "%s of model is at %.2f, %.2f, %.2f\n", what, double(v.x), double(v.y),
            double(v.z));
}

FILE* openmesh(const char* filename) {
    FILE* file = fopen(filename, "rb");
    if (!file) {
        fprintf(stderr, "cannot open mesh %s\n", filename);
        exit(1);
    }
    return file;
}

// The record tags of a mesh file and what becomes of each.
void readrecord(model_c* model, facei_s* face, char* line) {
    if (startswith(line, "v ")) {
        if (model->vcnt < model_c::maxverts)
            readvec3(line + 2, &model->verts[model->vcnt]);
        ++model->vcnt;
    } else if (startswith(line, "vt ")) {
        if (model->tcnt < model_c::maxverts) {
            glm::vec2& tc = model->texcoords[model->tcnt];
            sscanf(line + 3, "%f %f", &tc.x, &tc.y);
        } else {
            fprintf(stderr, "too many tc (%i)\n", model->tcnt);
        }
        ++model->tcnt;
    } else if (startswith(line, "vn ")) {
        if (model->ncnt < model_c::maxverts)
            readvec3(line + 2, &model->normals[model->ncnt]);
        ++model->ncnt;
    } else if (startswith(line, "f ")) {
        model->parseface(line + 2, face);
        if (model->fcnt < model_c::maxfaces)
            model->faces[model->fcnt++] = *face;
        else
            fprintf(stderr, "too many faces (%i)\n", model->fcnt);
    }
}

} // namespace

void attachverts(const shader_c& shader, const realvert_s* verts) {
    shader.array("pos", 3, GL_FLOAT, sizeof(realvert_s), &verts->pos);
    shader.array("uv", 2, GL_FLOAT, sizeof(realvert_s), &verts->tc);
    shader.array("nor", 3, GL_FLOAT, sizeof(realvert_s), &verts->nor);
}

void detachverts(const shader_c& shader) {
    for (const char* name : {"pos", "uv", "nor"})
        shader.array(name, 3, GL_FLOAT, 0, nullptr);
}

model_c::model_c(const char* filename)
    : verts(new glm::vec3[maxverts]()), texcoords(new glm::vec2[maxverts]()),
      normals(new glm::vec3[maxverts]()), faces(new facei_s[maxfaces]()), vcnt(0), fcnt(0), tcnt(0),
      ncnt(0), center(0.0f), data(nullptr) {
    fprintf(stderr, "loading %s\n", filename);
    FILE* file = openmesh(filename);
    char line[1001] = "";
    facei_s face{};
    // The end is only seen by the read behind the last line, which leaves the buffer as it was: a
    // last record that ends with a newline counts twice.
    while (!feof(file) && !ferror(file)) {
        if (!fgets(line, sizeof line, file) && !feof(file))
            break;
        readrecord(this, &face, line);
    }
    fclose(file);
    fprintf(stderr, "tc size: %li, vertex size: %li face size: %li. counts: %i %i\n",
            long(sizeof(glm::vec2)), long(sizeof(glm::vec3)), long(sizeof(facei_s)), vcnt, fcnt);
    finalize_data();
}

void model_c::parseface(char* text, facei_s* face) {
    size_t field = 0;
    char* piece = text;
    for (char* c = text;; ++c) {
        const bool end = *c == '\0' || *c == '\n';
        if (!end && *c != '/' && *c != ' ')
            continue;
        *c = '\0';
        if (field < sizeof faceorder / sizeof *faceorder)
            face->*faceorder[field++] = zerobased(piece);
        if (end)
            return;
        piece = c + 1;
    }
}

void model_c::finalize_data() {
    data = new realvert_s[static_cast<size_t>(fcnt) * 3]();
    fprintf(stderr, "data at %p\n", static_cast<void*>(data));
    glm::vec3 min(1e6f), max(-1e6f);
    center = glm::vec3(0.0f);
    realvert_s* out = data;
    for (int i = 0; i < fcnt; ++i) {
        const facei_s& f = faces[i];
        const int corners[3][3] = {{f.v1, f.t1, f.n1}, {f.v2, f.t2, f.n2}, {f.v3, f.t3, f.n3}};
        for (const auto& c : corners) {
            *out = {at(verts, c[0]), at(texcoords, c[1]), at(normals, c[2])};
            center += out->pos;
            min = glm::min(min, out->pos);
            max = glm::max(max, out->pos);
            ++out;
        }
    }
    // The quotient of two zeros has a sign of its own on some processors.
    center = fcnt > 0 ? center / static_cast<float>(fcnt * 3) : glm::vec3(NAN);
    printvec3("center", center);
    printvec3("min", min);
    printvec3("max", max);
    printvec3("realcenter", (min + max) / 2.0f);
}

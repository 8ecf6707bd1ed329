// WebGL takes vertices and indices from buffers only; GLES 2.0, and the show, take them from the
// caller's memory. These definitions stand before those of Emscripten's library. (Its own remedy,
// FULL_ES2, sends too few vertices for glDrawElements.) Each array has a buffer of its own, which
// is sent again only when its bytes have changed: vertices are looked at when they are set, as
// every effect does before it draws, indices at each draw.
#include "web.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <GLES2/gl2.h>
#include <map>
#include <vector>
#include <webgl/webgl1.h>

namespace {

// ---- the window that is not drawn into ----

bool windowleftout = false;
GLuint boundframebuffer = 0;

bool leftout() {
    return windowleftout && boundframebuffer == 0;
}

// ---- copies of the caller's arrays ----

struct copy_s {
    GLuint buffer = 0;
    std::vector<uint8_t> bytes;
    size_t highest = 0; // of indices
};

using copies_t = std::map<const void*, copy_s>;
copies_t vertexcopies;
copies_t indexcopies;

// The C library here compares byte by byte, and the city alone has megabytes to compare.
bool same(const uint8_t* a, const uint8_t* b, size_t size) {
    uint64_t worda, wordb;
    size_t i = 0;
    for (; i + sizeof worda <= size; i += sizeof worda) {
        memcpy(&worda, a + i, sizeof worda);
        memcpy(&wordb, b + i, sizeof wordb);
        if (worda != wordb)
            return false;
    }
    return memcmp(a + i, b + i, size - i) == 0;
}

// Binds the copy of `size` bytes from `data`; returns whether it had to be sent.
bool bindcopy(copy_s* copy, GLenum target, const void* data, size_t size) {
    if (!copy->buffer)
        emscripten_glGenBuffers(1, &copy->buffer);
    emscripten_glBindBuffer(target, copy->buffer);
    const auto* bytes = static_cast<const uint8_t*>(data);
    if (copy->bytes.size() >= size && same(copy->bytes.data(), bytes, size))
        return false;
    copy->bytes.assign(bytes, bytes + size);
    emscripten_glBufferData(target, static_cast<GLsizeiptr>(size), data, GL_DYNAMIC_DRAW);
    return true;
}

// ---- vertices ----

constexpr GLuint maxattributes = 16;

struct attribute_s {
    GLint size;
    GLenum type;
    GLboolean normalized;
    GLsizei stride;
    const void* pointer;
    size_t sent; // bytes in the buffer that are these
    bool enabled;
};
attribute_s attributes[maxattributes];

size_t bytesof(GLenum type) {
    switch (type) {
    case GL_UNSIGNED_BYTE:
    case GL_BYTE:
        return 1;
    case GL_UNSIGNED_SHORT:
    case GL_SHORT:
        return 2;
    default:
        return 4;
    }
}

size_t bytesof(const attribute_s& a, size_t vertices) {
    const size_t element = bytesof(a.type) * static_cast<size_t>(a.size);
    const size_t stride = a.stride ? static_cast<size_t>(a.stride) : element;
    return vertices ? (vertices - 1) * stride + element : 0;
}

void sendattributes(size_t vertices) {
    for (GLuint i = 0; i < maxattributes; ++i) {
        attribute_s& a = attributes[i];
        const size_t size = bytesof(a, vertices);
        if (!a.enabled || !a.pointer || a.sent >= size)
            continue;
        bindcopy(&vertexcopies[a.pointer], GL_ARRAY_BUFFER, a.pointer, size);
        a.sent = size;
        emscripten_glVertexAttribPointer(i, a.size, a.type, a.normalized, a.stride, nullptr);
    }
}

// ---- indices ----

template<class T>
size_t highest(const void* indices, GLsizei count) {
    const T* first = static_cast<const T*>(indices);
    return count > 0 ? *std::max_element(first, first + count) : 0;
}

size_t highest(const void* indices, GLsizei count, GLenum type) {
    switch (bytesof(type)) {
    case 1:
        return highest<uint8_t>(indices, count);
    case 2:
        return highest<uint16_t>(indices, count);
    default:
        return highest<uint32_t>(indices, count);
    }
}

// Returns the highest index.
size_t sendindices(const void* indices, GLsizei count, GLenum type) {
    copy_s& copy = indexcopies[indices];
    const size_t size = static_cast<size_t>(count) * bytesof(type);
    if (bindcopy(&copy, GL_ELEMENT_ARRAY_BUFFER, indices, size))
        copy.highest = highest(indices, count, type);
    return copy.highest;
}

} // namespace

void web_leaveoutwindow(bool on) {
    windowleftout = on;
}

extern "C" {

void glBindFramebuffer(GLenum target, GLuint framebuffer) {
    boundframebuffer = framebuffer;
    emscripten_glBindFramebuffer(target, framebuffer);
}

void glClear(GLbitfield mask) {
    if (!leftout())
        emscripten_glClear(mask);
}

// What GL rejects in silence, browsers complain about.
void glGenerateMipmap(GLenum target) {
    if (target == GL_TEXTURE_2D || target == GL_TEXTURE_CUBE_MAP)
        emscripten_glGenerateMipmap(target);
}

void glScissor(GLint x, GLint y, GLsizei width, GLsizei height) {
    if (width >= 0 && height >= 0)
        emscripten_glScissor(x, y, width, height);
}

void glVertexAttribPointer(GLuint index, GLint size, GLenum type, GLboolean normalized,
                           GLsizei stride, const void* pointer) {
    if (index < maxattributes)
        attributes[index] = {size, type, normalized, stride, pointer, 0, attributes[index].enabled};
}

void glEnableVertexAttribArray(GLuint index) {
    if (index >= maxattributes)
        return;
    attributes[index].enabled = true;
    emscripten_glEnableVertexAttribArray(index);
}

void glDisableVertexAttribArray(GLuint index) {
    if (index >= maxattributes)
        return;
    attributes[index].enabled = false;
    emscripten_glDisableVertexAttribArray(index);
}

void glDrawArrays(GLenum mode, GLint first, GLsizei count) {
    if (leftout())
        return;
    sendattributes(static_cast<size_t>(first + count));
    emscripten_glDrawArrays(mode, first, count);
}

void glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices) {
    if (leftout())
        return;
    sendattributes(sendindices(indices, count, type) + 1);
    emscripten_glDrawElements(mode, count, type, nullptr);
}
}

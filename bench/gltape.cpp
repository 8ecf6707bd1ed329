#include "gltape.h"

#include "glquery.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <GLES2/gl2.h>
#include <map>
#include <tuple>
#include <vector>

using glquery::original;
using glquery::state;

namespace {

using word_t = unsigned long long; // what the tape is made of

// A call as it lies on the tape.
template<class result_t, class... arguments_t>
struct call_s {
    const word_t* (*play)(const word_t*); // makes the call and returns what follows it
    result_t (*gl)(arguments_t...);
    std::tuple<arguments_t...> arguments;
};

bool recording = false;
std::vector<word_t> tape;

template<class result_t, class... arguments_t>
constexpr size_t words = (sizeof(call_s<result_t, arguments_t...>) + sizeof(word_t) - 1) /
                         sizeof(word_t);

template<class result_t, class... arguments_t>
const word_t* play(const word_t* at) {
    const auto& call = *reinterpret_cast<const call_s<result_t, arguments_t...>*>(at);
    std::apply(call.gl, call.arguments);
    return at + words<result_t, arguments_t...>;
}

// The call's place on the tape.
template<class result_t, class... arguments_t>
size_t record(result_t (*gl)(arguments_t...), std::common_type_t<arguments_t>... arguments) {
    const size_t place = tape.size();
    tape.resize(place + words<result_t, arguments_t...>);
    new (&tape[place])
        call_s<result_t, arguments_t...>{play<result_t, arguments_t...>, gl, {arguments...}};
    return place;
}

// ---- what the calls point to ----

// Bytes of the show's, and the copy of them that the tape has.
struct bytes_s {
    const char* begin;
    const char* end;
    const char* copy = nullptr;
};

std::deque<std::vector<char>> copies;
std::vector<bytes_s> copied; // since the tape began

// Whether `part` lies within `whole` and is the same there.
bool ispart(const bytes_s& part, const bytes_s& whole) {
    return whole.begin <= part.begin && part.end <= whole.end &&
           memcmp(part.copy, whole.copy + (part.begin - whole.begin),
                  size_t(part.end - part.begin)) == 0;
}

// The same bytes at the same place are copied once: they stay as near to the processor as the
// show's own.
const char* keep(const char* begin, const char* end) {
    const bytes_s now{begin, end, begin};
    const auto have = std::find_if(copied.rbegin(), copied.rend(),
                                   [&](const bytes_s& bytes) { return ispart(now, bytes); });
    if (have != copied.rend())
        return have->copy + (begin - have->begin);
    copies.emplace_back(begin, end);
    copied.push_back({begin, end, copies.back().data()});
    return copies.back().data();
}

template<class T>
const T* keep(const T* first, size_t count) {
    const char* begin = reinterpret_cast<const char*>(first);
    return reinterpret_cast<const T*>(keep(begin, begin + count * sizeof(T)));
}

template<class T>
T* scratch(T*) {
    static T values[16]; // no query of the show's answers more
    return values;
}

// ---- vertex arrays: GL reads them when it draws ----

using pointer_call_t = call_s<void, GLuint, GLint, GLenum, GLboolean, GLsizei, const void*>;

// The call on the tape that says where an attribute's array is; none, 0, for those before the tape.
struct said_s {
    size_t place = 0;
    bytes_s read{}; // by the draw calls behind it
};
std::map<GLuint, said_s> said;

struct array_s {
    GLuint attribute;
    GLint size, type, normalized, stride;
    bytes_s bytes; // up to the last vertex that is read
};

GLsizei typesize(GLint type) {
    return type == GL_BYTE || type == GL_UNSIGNED_BYTE ? 1 : type == GL_FLOAT ? 4 : 2;
}

array_s askarray(GLuint attribute, size_t vertices) {
    array_s array{attribute,
                  state(attribute, GL_VERTEX_ATTRIB_ARRAY_SIZE),
                  state(attribute, GL_VERTEX_ATTRIB_ARRAY_TYPE),
                  state(attribute, GL_VERTEX_ATTRIB_ARRAY_NORMALIZED),
                  state(attribute, GL_VERTEX_ATTRIB_ARRAY_STRIDE),
                  {glquery::array(attribute), nullptr}};
    const GLsizei vertex = array.size * typesize(array.type);
    array.bytes.end = array.bytes.begin +
                      (vertices - 1) * size_t(array.stride ? array.stride : vertex) +
                      size_t(vertex);
    return array;
}

// Arrays that lie in one another, as interleaved ones do, are kept so: GL then reads them at once.
bytes_s around(const array_s& array, const std::vector<array_s>& all) {
    bytes_s bytes = array.bytes;
    for (size_t before = 0; before != size_t(bytes.end - bytes.begin);) {
        before = size_t(bytes.end - bytes.begin);
        for (const array_s& other : all) {
            if (other.bytes.end <= bytes.begin || bytes.end <= other.bytes.begin)
                continue;
            bytes.begin = std::min(bytes.begin, other.bytes.begin);
            bytes.end = std::max(bytes.end, other.bytes.end);
        }
    }
    return bytes;
}

// Has the call on the tape that says where the array is say where its copy is; where draw calls
// have read something else from there, that takes one more call. `whole` is what the array lies in.
void sayarray(const array_s& array, bytes_s whole) {
    static const auto gl = original(&glVertexAttribPointer, "glVertexAttribPointer");
    said_s& at = said[array.attribute];
    whole.copy = whole.begin;
    if (at.read.copy && ispart(whole, at.read))
        return;
    whole.copy = keep(whole.begin, whole.end);
    if (at.read.copy && !ispart(at.read, whole))
        at = {};
    if (!at.place)
        at.place = record(gl, array.attribute, array.size, GLenum(array.type),
                          GLboolean(array.normalized), array.stride, nullptr);
    at.read = whole;
    auto* call = reinterpret_cast<pointer_call_t*>(&tape[at.place]);
    std::get<5>(call->arguments) = whole.copy + (array.bytes.begin - whole.begin);
}

void recordarrays(size_t vertices) {
    std::vector<array_s> all;
    for (const GLuint attribute : glquery::attributes())
        if (state(attribute, GL_VERTEX_ATTRIB_ARRAY_ENABLED))
            all.push_back(askarray(attribute, vertices));
    for (const array_s& array : all)
        sayarray(array, around(array, all));
}

template<class index_t>
const void* recordelements(const void* indices, GLsizei count) {
    const auto* first = static_cast<const index_t*>(indices);
    recordarrays(size_t(*std::max_element(first, first + count)) + 1);
    return keep(first, size_t(count));
}

} // namespace

void gltape_record() {
    tape.assign(1, 0); // no call lies at place 0
    copies.clear();
    copied.clear();
    said.clear();
    recording = true;
}

void gltape_stop() {
    recording = false;
}

void gltape_play() {
    const word_t* const end = tape.data() + tape.size();
    for (const word_t* at = tape.data() + 1; at != end;)
        at = reinterpret_cast<const call_s<void>*>(at)->play(at);
}

// All functions that the show calls in a frame.

#define TAKE(result, name, parameters, arguments, recorded)                                        \
    result name parameters {                                                                       \
        static const auto gl = original(&name, #name);                                             \
        if (recording)                                                                             \
            record recorded;                                                                       \
        return gl arguments;                                                                       \
    }

TAKE(void, glActiveTexture, (GLenum unit), (unit), (gl, unit))
TAKE(void, glBindFramebuffer, (GLenum target, GLuint id), (target, id), (gl, target, id))
TAKE(void, glBindTexture, (GLenum target, GLuint id), (target, id), (gl, target, id))
TAKE(void, glBlendFunc, (GLenum from, GLenum to), (from, to), (gl, from, to))
TAKE(void, glClear, (GLbitfield mask), (mask), (gl, mask))
TAKE(void, glClearColor, (GLfloat r, GLfloat g, GLfloat b, GLfloat a), (r, g, b, a),
     (gl, r, g, b, a))
TAKE(void, glDepthFunc, (GLenum function), (function), (gl, function))
TAKE(void, glDepthMask, (GLboolean on), (on), (gl, on))
TAKE(void, glDisable, (GLenum what), (what), (gl, what))
TAKE(void, glDisableVertexAttribArray, (GLuint attribute), (attribute), (gl, attribute))
TAKE(void, glEnable, (GLenum what), (what), (gl, what))
TAKE(void, glEnableVertexAttribArray, (GLuint attribute), (attribute), (gl, attribute))
TAKE(void, glFlush, (), (), (gl))
TAKE(GLint, glGetAttribLocation, (GLuint program, const GLchar* name), (program, name),
     (gl, program, keep(name, strlen(name) + 1)))
TAKE(void, glGetIntegerv, (GLenum what, GLint* values), (what, values), (gl, what, scratch(values)))
TAKE(GLint, glGetUniformLocation, (GLuint program, const GLchar* name), (program, name),
     (gl, program, keep(name, strlen(name) + 1)))
TAKE(void, glScissor, (GLint x, GLint y, GLsizei w, GLsizei h), (x, y, w, h), (gl, x, y, w, h))
TAKE(void, glStencilFunc, (GLenum function, GLint reference, GLuint mask),
     (function, reference, mask), (gl, function, reference, mask))
TAKE(void, glStencilMask, (GLuint mask), (mask), (gl, mask))
TAKE(void, glStencilOp, (GLenum stencil, GLenum depth, GLenum pass), (stencil, depth, pass),
     (gl, stencil, depth, pass))
TAKE(void, glUniform1f, (GLint at, GLfloat x), (at, x), (gl, at, x))
TAKE(void, glUniform1i, (GLint at, GLint x), (at, x), (gl, at, x))
TAKE(void, glUniform2f, (GLint at, GLfloat x, GLfloat y), (at, x, y), (gl, at, x, y))
TAKE(void, glUniform3f, (GLint at, GLfloat x, GLfloat y, GLfloat z), (at, x, y, z),
     (gl, at, x, y, z))
TAKE(void, glUniformMatrix3fv, (GLint at, GLsizei count, GLboolean transpose, const GLfloat* m),
     (at, count, transpose, m), (gl, at, count, transpose, keep(m, 9 * size_t(count))))
TAKE(void, glUniformMatrix4fv, (GLint at, GLsizei count, GLboolean transpose, const GLfloat* m),
     (at, count, transpose, m), (gl, at, count, transpose, keep(m, 16 * size_t(count))))
TAKE(void, glUseProgram, (GLuint program), (program), (gl, program))
TAKE(void, glViewport, (GLint x, GLint y, GLsizei w, GLsizei h), (x, y, w, h), (gl, x, y, w, h))

void glDrawArrays(GLenum mode, GLint first, GLsizei count) {
    static const auto gl = original(&glDrawArrays, "glDrawArrays");
    if (recording) {
        if (count > 0)
            recordarrays(size_t(first + count));
        record(gl, mode, first, count);
    }
    gl(mode, first, count);
}

void glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices) {
    static const auto gl = original(&glDrawElements, "glDrawElements");
    if (recording)
        record(gl, mode, count, type,
               type == GL_UNSIGNED_SHORT ? recordelements<GLushort>(indices, count)
                                         : recordelements<GLuint>(indices, count));
    gl(mode, count, type, indices);
}

void glVertexAttribPointer(GLuint attribute, GLint size, GLenum type, GLboolean normalized,
                           GLsizei stride, const void* pointer) {
    static const auto gl = original(&glVertexAttribPointer, "glVertexAttribPointer");
    if (recording)
        said[attribute] = {record(gl, attribute, size, type, normalized, stride, pointer)};
    gl(attribute, size, type, normalized, stride, pointer);
}

#include "glwatch.h"

#include <cmath>
#include <dlfcn.h>
#include <GLES2/gl2.h>
#include <map>
#include <vector>

namespace {

long uniforms = 0;
long vertices = 0;
long buffers = 0;

// GL's own function under the name that this program has taken.
template<class function_t>
function_t original(function_t, const char* name) {
    return reinterpret_cast<function_t>(dlsym(RTLD_NEXT, name));
}

long nonumbers(const float* values, long count) {
    long found = 0;
    for (long i = 0; i < count; ++i)
        found += !std::isfinite(values[i]);
    return found;
}

void look(const float* values, long count) {
    uniforms += nonumbers(values, count);
}

GLuint currentprogram() {
    GLint program = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    return static_cast<GLuint>(program);
}

std::vector<GLuint> askattributes(GLuint program) {
    GLint count = 0;
    glGetProgramiv(program, GL_ACTIVE_ATTRIBUTES, &count);
    std::vector<GLuint> found;
    for (GLuint i = 0; i < static_cast<GLuint>(count); ++i) {
        char name[256];
        GLint size = 0;
        GLenum type = 0;
        glGetActiveAttrib(program, i, sizeof name, nullptr, &size, &type, name);
        found.push_back(static_cast<GLuint>(glGetAttribLocation(program, name)));
    }
    return found;
}

// The attributes that the current program reads. Others may be on, with arrays long gone.
const std::vector<GLuint>& attributes() {
    static std::map<GLuint, std::vector<GLuint>> known;
    const GLuint program = currentprogram();
    const auto found = known.find(program);
    return found != known.end() ? found->second : known[program] = askattributes(program);
}

GLint state(GLuint attribute, GLenum what) {
    GLint value = 0;
    glGetVertexAttribiv(attribute, what, &value);
    return value;
}

GLint bound(GLenum what) {
    GLint buffer = 0;
    glGetIntegerv(what, &buffer);
    return buffer;
}

// indexof(i) is the vertex that is drawn i-th.
template<class index_t>
void lookatarray(GLuint attribute, GLsizei count, index_t indexof) {
    if (!state(attribute, GL_VERTEX_ATTRIB_ARRAY_ENABLED) ||
        state(attribute, GL_VERTEX_ATTRIB_ARRAY_TYPE) != GL_FLOAT)
        return;
    if (state(attribute, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING)) {
        ++buffers;
        return;
    }
    void* first = nullptr;
    glGetVertexAttribPointerv(attribute, GL_VERTEX_ATTRIB_ARRAY_POINTER, &first);
    const GLint size = state(attribute, GL_VERTEX_ATTRIB_ARRAY_SIZE);
    const GLint stride = state(attribute, GL_VERTEX_ATTRIB_ARRAY_STRIDE);
    const long step = stride ? stride : size * long(sizeof(float));
    for (GLsizei i = 0; i < count; ++i) {
        const char* vertex = static_cast<const char*>(first) + step * long(indexof(i));
        vertices += nonumbers(reinterpret_cast<const float*>(vertex), size);
    }
}

template<class index_t>
void lookatdraw(GLsizei count, index_t indexof) {
    for (const GLuint attribute : attributes())
        lookatarray(attribute, count, indexof);
}

} // namespace

long glwatch_uniforms() {
    return uniforms;
}

long glwatch_vertices() {
    return vertices;
}

long glwatch_buffers() {
    return buffers;
}

void glUniform1f(GLint location, GLfloat x) {
    static const auto gl = original(&glUniform1f, "glUniform1f");
    look(&x, 1);
    gl(location, x);
}

void glUniform2f(GLint location, GLfloat x, GLfloat y) {
    static const auto gl = original(&glUniform2f, "glUniform2f");
    const float values[] = {x, y};
    look(values, 2);
    gl(location, x, y);
}

void glUniform3f(GLint location, GLfloat x, GLfloat y, GLfloat z) {
    static const auto gl = original(&glUniform3f, "glUniform3f");
    const float values[] = {x, y, z};
    look(values, 3);
    gl(location, x, y, z);
}

void glUniformMatrix3fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat* m) {
    static const auto gl = original(&glUniformMatrix3fv, "glUniformMatrix3fv");
    look(m, 9L * count);
    gl(location, count, transpose, m);
}

void glUniformMatrix4fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat* m) {
    static const auto gl = original(&glUniformMatrix4fv, "glUniformMatrix4fv");
    look(m, 16L * count);
    gl(location, count, transpose, m);
}

void glDrawArrays(GLenum mode, GLint first, GLsizei count) {
    static const auto gl = original(&glDrawArrays, "glDrawArrays");
    lookatdraw(count, [first](GLsizei i) { return first + i; });
    gl(mode, first, count);
}

void glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices) {
    static const auto gl = original(&glDrawElements, "glDrawElements");
    if (bound(GL_ELEMENT_ARRAY_BUFFER_BINDING))
        ++buffers;
    else if (type == GL_UNSIGNED_SHORT)
        lookatdraw(count,
                   [indices](GLsizei i) { return static_cast<const GLushort*>(indices)[i]; });
    else
        lookatdraw(count, [indices](GLsizei i) { return static_cast<const GLuint*>(indices)[i]; });
    gl(mode, count, type, indices);
}

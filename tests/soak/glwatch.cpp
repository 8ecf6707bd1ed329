#include "glwatch.h"

#include "../../bench/glquery.h"

#include <cmath>
#include <GLES2/gl2.h>

using glquery::original;
using glquery::state;

namespace {

long uniforms = 0;
long vertices = 0;
long buffers = 0;

long nonumbers(const float* values, long count) {
    long found = 0;
    for (long i = 0; i < count; ++i)
        found += !std::isfinite(values[i]);
    return found;
}

void look(const float* values, long count) {
    uniforms += nonumbers(values, count);
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
    const char* const first = glquery::array(attribute);
    const GLint size = state(attribute, GL_VERTEX_ATTRIB_ARRAY_SIZE);
    const GLint stride = state(attribute, GL_VERTEX_ATTRIB_ARRAY_STRIDE);
    const long step = stride ? stride : size * long(sizeof(float));
    for (GLsizei i = 0; i < count; ++i) {
        const char* vertex = first + step * long(indexof(i));
        vertices += nonumbers(reinterpret_cast<const float*>(vertex), size);
    }
}

template<class index_t>
void lookatdraw(GLsizei count, index_t indexof) {
    for (const GLuint attribute : glquery::attributes())
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
    if (state(GL_ELEMENT_ARRAY_BUFFER_BINDING))
        ++buffers;
    else if (type == GL_UNSIGNED_SHORT)
        lookatdraw(count,
                   [indices](GLsizei i) { return static_cast<const GLushort*>(indices)[i]; });
    else
        lookatdraw(count, [indices](GLsizei i) { return static_cast<const GLuint*>(indices)[i]; });
    gl(mode, count, type, indices);
}

#include "shader.h"

#include "texture.h"

#include <cassert>
#include <cstdio>
#include <glm/gtc/type_ptr.hpp>

const char* (*shader_sourcehook)(GLenum type, const char* src) = nullptr;

namespace {

GLuint compile_shader(GLenum type, const char* src) {
    GLuint shader = glCreateShader(type);
    assert(shader != 0);
    if (shader_sourcehook)
        src = shader_sourcehook(type, src);
    glShaderSource(shader, 1, &src, nullptr);
    glCompileShader(shader);
    GLint compiled = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    char infolog[512] = "";
    glGetShaderInfoLog(shader, sizeof infolog, nullptr, infolog);
    if (infolog[0] != '\0')
        fprintf(stderr, "%s (src: '%s')", infolog, src);
    assert(compiled);
    return shader;
}

} // namespace

void shader_c::init(const char* vp, const char* fp) {
    GLuint vertex_shader = compile_shader(GL_VERTEX_SHADER, vp);
    GLuint fragment_shader = compile_shader(GL_FRAGMENT_SHADER, fp);
    GLuint tempprogram = glCreateProgram();
    assert(tempprogram);
    glAttachShader(tempprogram, vertex_shader);
    glAttachShader(tempprogram, fragment_shader);
    glLinkProgram(tempprogram);
    GLint linked = 0;
    glGetProgramiv(tempprogram, GL_LINK_STATUS, &linked);
    assert(linked);
    programid = tempprogram;
    use();
}

void shader_c::use() const {
    glUseProgram(programid);
}

void shader_c::set(const char* name, float value) const {
    glUniform1f(uniform(name), value);
}

void shader_c::set(const char* name, const glm::vec2& value) const {
    glUniform2f(uniform(name), value.x, value.y);
}

void shader_c::set(const char* name, const glm::vec3& value) const {
    glUniform3f(uniform(name), value.x, value.y, value.z);
}

void shader_c::set(const char* name, const glm::mat3& value) const {
    glUniformMatrix3fv(uniform(name), 1, GL_FALSE, glm::value_ptr(value));
}

void shader_c::set(const char* name, const glm::mat4& value) const {
    glUniformMatrix4fv(uniform(name), 1, GL_FALSE, glm::value_ptr(value));
}

GLint shader_c::uniform(const char* name) const {
    return glGetUniformLocation(programid, name);
}

GLint shader_c::attrib(const char* name) const {
    return glGetAttribLocation(programid, name);
}

void shader_c::array(const char* name, GLint size, GLenum type, GLsizei stride,
                     const GLvoid* pointer) const {
    // An unknown name gives -1, which GL rejects with an error that nobody reads.
    GLuint id = static_cast<GLuint>(attrib(name));
    if (!pointer) {
        glDisableVertexAttribArray(id);
        return;
    }
    glVertexAttribPointer(id, size, type, GL_FALSE, stride, pointer);
    glEnableVertexAttribArray(id);
}

void shader_c::texture(const char* name, int texunit, const texture_c& tex) const {
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(texunit));
    tex.bind();
    glUniform1i(uniform(name), texunit);
}

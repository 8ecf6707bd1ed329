// For programs that take the place of some of GL's functions: GL's own ones, and what GL will read
// when it draws. The questions are GL's own functions too, so whoever took their names sees none.
#pragma once

#include <dlfcn.h>
#include <GLES2/gl2.h>
#include <map>
#include <vector>

namespace glquery {

// GL's own function under the name that this program has taken.
template<class function_t>
function_t original(function_t, const char* name) {
    return reinterpret_cast<function_t>(dlsym(RTLD_NEXT, name));
}

inline GLint state(GLenum what) {
    static const auto gl = original(&glGetIntegerv, "glGetIntegerv");
    GLint value = 0;
    gl(what, &value);
    return value;
}

inline GLint state(GLuint attribute, GLenum what) {
    GLint value = 0;
    glGetVertexAttribiv(attribute, what, &value);
    return value;
}

// Where the attribute's array begins.
inline char* array(GLuint attribute) {
    void* first = nullptr;
    glGetVertexAttribPointerv(attribute, GL_VERTEX_ATTRIB_ARRAY_POINTER, &first);
    return static_cast<char*>(first);
}

inline std::vector<GLuint> attributes(GLuint program) {
    static const auto location = original(&glGetAttribLocation, "glGetAttribLocation");
    GLint count = 0;
    glGetProgramiv(program, GL_ACTIVE_ATTRIBUTES, &count);
    std::vector<GLuint> found;
    for (GLuint i = 0; i < static_cast<GLuint>(count); ++i) {
        char name[256];
        GLint size = 0;
        GLenum type = 0;
        glGetActiveAttrib(program, i, sizeof name, nullptr, &size, &type, name);
        found.push_back(static_cast<GLuint>(location(program, name)));
    }
    return found;
}

// Those that the current program reads, asked once a program. Others may be on, with arrays long
// gone.
inline const std::vector<GLuint>& attributes() {
    static std::map<GLuint, std::vector<GLuint>> known;
    const GLuint program = static_cast<GLuint>(state(GL_CURRENT_PROGRAM));
    const auto found = known.find(program);
    return found != known.end() ? found->second : known[program] = attributes(program);
}

} // namespace glquery

// One linked GLSL ES program and the few calls through which effects feed it. No caching, no error
// recovery, no clean-up: a broken shader stops the program at start-up, which is what a timed show
// wants. GL thread only.
//
// Order of use: init once (from an effect's initgl); then per frame use, set and texture,
// array for every attribute of the draw, the draw call, array with a null pointer to switch off.
#pragma once

#include <GLES2/gl2.h>
#include <glm/glm.hpp>

class texture_c;

// How most fragment shaders begin.
#define FRAGMENT_HEAD                                                                              \
    "precision highp float;\n"                                                                     \
    "const float PI = 3.14159265358979323846264;\n"                                                \
    "varying vec2 v_uv;\n"

// For tools that edit shaders while they run: when set, called with every source text before it is
// compiled, and what it returns is compiled instead.
extern const char* (*shader_sourcehook)(GLenum type, const char* src);

class shader_c {
public:
    GLuint programid; // 0 until init

    // Compiles and links vertex source vp and fragment source fp and leaves the program current.
    // Compiler logs go to standard error; a failure aborts.
    void init(const char* vp, const char* fp);

    // Makes the program current.
    void use() const;

    // Sets a uniform, looked up afresh; without effect when the program does not have it. The
    // program must be current.
    void set(const char* name, float value) const;
    void set(const char* name, const glm::vec2& value) const;
    void set(const char* name, const glm::vec3& value) const;
    void set(const char* name, const glm::mat3& value) const;
    void set(const char* name, const glm::mat4& value) const;

    // Location of a uniform, looked up afresh; -1 when the program does not have it (GL ignores
    // writes to -1).
    GLint uniform(const char* name) const;

    // Location of an attribute, looked up afresh; -1 when the program does not have it.
    GLint attrib(const char* name) const;

    // Points attribute `name` at client memory: size components of `type`, stride in bytes between
    // vertices (0 = tightly packed), never normalised, and enables it. A null pointer disables it.
    void array(const char* name, GLint size, GLenum type, GLsizei stride,
               const GLvoid* pointer) const;

    // Binds tex to texture unit texunit, which stays active, and points sampler `name` at it. The
    // program must be current.
    void texture(const char* name, int texunit, const texture_c& tex) const;
};

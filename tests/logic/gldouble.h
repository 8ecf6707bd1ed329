// A recording double of the GL calls that the show makes, linked in place of GLESv2. It keeps the
// state that tests ask for, invents object names (1, 2, 3 ... per kind) and locations (by the
// declarations in the shader sources, so an undeclared name gives -1), and draws nothing.
#pragma once

#include <GLES2/gl2.h>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace gldouble {

// What a draw call saw.
struct draw_s {
    GLenum mode = 0;
    GLint first = 0;
    GLsizei count = 0;
    bool elements = false;         // glDrawElements
    std::vector<unsigned> indices; // of glDrawElements
    GLuint program = 0;
    GLuint framebuffer = 0;
    std::vector<int> viewport; // x, y, width, height
    std::set<GLenum> enabled;  // glEnable capabilities
    GLenum depthfunc = 0;
    bool depthmask = true;
    GLenum blendsrc = 0, blenddst = 0;
    std::map<std::string, std::vector<float>> uniforms; // of the program, as last set
    std::map<std::string, std::vector<float>>
        attributes;                        // enabled arrays: floats of vertices 0 .. last used
    std::map<std::string, int> components; // per vertex, of those arrays
    std::map<int, GLuint> textures;        // texture bound to each unit
};

// Calls since the last clear, one text a call: "glUniform1f(brite, 0.9)", "glEnable(GL_BLEND)".
// Locations print as the names they stand for, pointers as "ptr" or "null".
const std::vector<std::string>& calls();

// The calls whose text starts with `prefix`.
std::vector<std::string> calls(const std::string& prefix);

// Draw calls since the last clear.
const std::vector<draw_s>& draws();

// Forgets calls and draws; objects and state stay.
void clear();

// State.
GLuint program();
GLuint framebuffer();
GLuint texture(int unit); // bound to 2D or cube map, whichever came last
int activeunit();
bool enabled(GLenum capability);
bool arrayenabled(const std::string& attribute);     // of the current program
std::vector<float> uniform(const std::string& name); // of the current program; empty if never set
std::string shadersource(GLuint program, GLenum type);

// Level 0 of a texture as last uploaded.
struct image_s {
    int width = 0, height = 0;
    GLenum format = 0;
    std::vector<unsigned char> pixels; // rows padded to 4 bytes as given; empty for null
    std::map<GLenum, float> parameters;
};
const image_s& image(GLuint texture);

// Failures to play, and answers to queries.
struct answers_s {
    bool createshader = true;
    bool compiles = true;
    bool createprogram = true;
    bool links = true;
    std::string infolog;
    GLenum framebufferstatus = GL_FRAMEBUFFER_COMPLETE;
    GLint vertextextureunits = 16;
    float maxpointsize = 256.0f;
    bool strings = true; // glGetString answers
    std::string extensions = "GL_OES_element_index_uint";
    std::vector<unsigned char> framebuffer; // what glReadPixels gives, RGBA rows bottom first
};
extern answers_s answers;

} // namespace gldouble

#include "gldouble.h"

#include <algorithm>
#include <cstring>
#include <regex>
#include <sstream>

namespace gldouble {

answers_s answers;

namespace {

struct array_s {
    bool enabled = false;
    GLint size = 4;
    GLenum type = GL_FLOAT;
    GLsizei stride = 0;
    const void* pointer = nullptr;
};

struct shader_s {
    GLenum type = 0;
    std::string source;
};

struct program_s {
    std::vector<GLuint> shaders;
    std::vector<std::string> attributes;
    std::vector<std::string> uniforms;
    std::map<std::string, std::vector<float>> values;
};

std::vector<std::string> calllog;
std::vector<draw_s> drawlog;
std::map<GLuint, shader_s> shaders;
std::map<GLuint, program_s> programs;
std::map<GLuint, image_s> images;
std::map<GLuint, array_s> arrays;
std::map<int, GLuint> bound;
std::set<GLenum> capabilities;
GLuint currentprogram = 0;
GLuint currentframebuffer = 0;
int unit = 0;
GLint viewportbox[4] = {0, 0, 854, 480};
GLenum depthfunc = GL_LESS;
bool depthmask = true;
GLenum blendsrc = GL_ONE, blenddst = GL_ZERO;
GLuint lastshader = 0, lastprogram = 0, lasttexture = 0, lastframebuffer = 0;

#define NAME(e) std::pair(e, #e)
const std::map<GLenum, const char*> enumnames = {
    NAME(GL_BLEND),
    NAME(GL_DEPTH_TEST),
    NAME(GL_STENCIL_TEST),
    NAME(GL_SCISSOR_TEST),
    NAME(GL_CULL_FACE),
    NAME(GL_LESS),
    NAME(GL_ALWAYS),
    NAME(GL_EQUAL),
    NAME(GL_KEEP),
    NAME(GL_REPLACE),
    NAME(GL_SRC_ALPHA),
    NAME(GL_ONE_MINUS_SRC_ALPHA),
    NAME(GL_TEXTURE_2D),
    NAME(GL_TEXTURE_CUBE_MAP),
    NAME(GL_FRAMEBUFFER),
    NAME(GL_COLOR_ATTACHMENT0),
    NAME(GL_RGB),
    NAME(GL_RGBA),
    NAME(GL_UNSIGNED_BYTE),
    NAME(GL_UNSIGNED_SHORT),
    NAME(GL_UNSIGNED_INT),
    NAME(GL_FLOAT),
    NAME(GL_TEXTURE_MIN_FILTER),
    NAME(GL_TEXTURE_MAG_FILTER),
    NAME(GL_TEXTURE_WRAP_S),
    NAME(GL_TEXTURE_WRAP_T),
    NAME(GL_LINEAR),
    NAME(GL_NEAREST),
    NAME(GL_REPEAT),
    NAME(GL_CLAMP_TO_EDGE),
    NAME(GL_VERTEX_SHADER),
    NAME(GL_FRAGMENT_SHADER),
    NAME(GL_COMPILE_STATUS),
    NAME(GL_LINK_STATUS),
    NAME(GL_VIEWPORT),
    NAME(GL_TEXTURE_CUBE_MAP_POSITIVE_X),
    NAME(GL_TEXTURE_CUBE_MAP_NEGATIVE_X),
    NAME(GL_TEXTURE_CUBE_MAP_POSITIVE_Y),
    NAME(GL_TEXTURE_CUBE_MAP_NEGATIVE_Y),
    NAME(GL_TEXTURE_CUBE_MAP_POSITIVE_Z),
    NAME(GL_TEXTURE_CUBE_MAP_NEGATIVE_Z),
};
#undef NAME

std::string named(GLenum value) {
    auto found = enumnames.find(value);
    return found != enumnames.end() ? found->second : std::to_string(value);
}

// Small values mean modes or bits depending on the call.
std::string mode(GLenum value) {
    static const char* names[] = {"GL_POINTS",      "GL_LINES",     "GL_LINE_LOOP",
                                  "GL_LINE_STRIP",  "GL_TRIANGLES", "GL_TRIANGLE_STRIP",
                                  "GL_TRIANGLE_FAN"};
    return value < 7 ? names[value] : std::to_string(value);
}

std::string bits(GLbitfield mask) {
    std::string text;
    const std::pair<GLbitfield, const char*> names[] = {{GL_COLOR_BUFFER_BIT, "COLOR"},
                                                        {GL_DEPTH_BUFFER_BIT, "DEPTH"},
                                                        {GL_STENCIL_BUFFER_BIT, "STENCIL"}};
    for (auto& [bit, name] : names)
        if (mask & bit)
            text += (text.empty() ? "" : "|") + std::string(name);
    return text;
}

const char* pointer(const void* p) {
    return p ? "ptr" : "null";
}

template<class... T>
void log(const char* name, const T&... args) {
    std::ostringstream text;
    text << name << '(';
    [[maybe_unused]] const char* separator = "";
    ((text << separator << args, separator = ", "), ...);
    text << ')';
    calllog.push_back(text.str());
}

std::vector<std::string> declarations(const program_s& program, const char* qualifier) {
    std::vector<std::string> names;
    std::regex pattern(std::string("\\b") + qualifier + R"(\s+(?:\w+p\s+)?\w+\s+([\w\s,\[\]]+);)");
    for (GLuint id : program.shaders) {
        const std::string& source = shaders[id].source;
        for (std::sregex_iterator it(source.begin(), source.end(), pattern), end; it != end; ++it) {
            std::regex word(R"(\w+)");
            const std::string list = (*it)[1];
            for (std::sregex_iterator w(list.begin(), list.end(), word); w != end; ++w)
                if (std::find(names.begin(), names.end(), w->str()) == names.end())
                    names.push_back(w->str());
        }
    }
    return names;
}

GLint location(const std::vector<std::string>& names, const char* name) {
    auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? -1 : static_cast<GLint>(found - names.begin());
}

std::string uniformname(GLint where) {
    auto& names = programs[currentprogram].uniforms;
    return where >= 0 && where < static_cast<GLint>(names.size())
               ? names[static_cast<size_t>(where)]
               : std::to_string(where);
}

std::string attributename(GLuint where) {
    auto& names = programs[currentprogram].attributes;
    return where < names.size() ? names[where] : std::to_string(static_cast<int>(where));
}

template<class... T>
void setuniform(const char* call, GLint where, T... values) {
    log(call, uniformname(where), values...);
    if (where >= 0)
        programs[currentprogram].values[uniformname(where)] = {static_cast<float>(values)...};
}

void setmatrix(const char* call, GLint where, GLsizei count, GLboolean transpose,
               const GLfloat* value, int elements) {
    log(call, uniformname(where), count, int(transpose), "ptr");
    if (where >= 0)
        programs[currentprogram].values[uniformname(where)] =
            std::vector<float>(value, value + elements);
}

size_t typesize(GLenum type) {
    return type == GL_UNSIGNED_BYTE ? 1 : type == GL_UNSIGNED_SHORT ? 2 : 4;
}

std::vector<float> fetch(const array_s& array, size_t vertices) {
    std::vector<float> values;
    const size_t step = array.stride ? static_cast<size_t>(array.stride)
                                     : static_cast<size_t>(array.size) * typesize(array.type);
    for (size_t v = 0; v < vertices; ++v) {
        const char* p = static_cast<const char*>(array.pointer) + v * step;
        for (int c = 0; c < array.size; ++c) {
            float value;
            memcpy(&value, p + static_cast<size_t>(c) * sizeof value, sizeof value);
            values.push_back(value);
        }
    }
    return values;
}

draw_s snapshot(GLenum drawmode, GLsizei count, size_t vertices) {
    draw_s draw;
    draw.mode = drawmode;
    draw.count = count;
    draw.program = currentprogram;
    draw.framebuffer = currentframebuffer;
    draw.viewport.assign(viewportbox, viewportbox + 4);
    draw.enabled = capabilities;
    draw.depthfunc = depthfunc;
    draw.depthmask = depthmask;
    draw.blendsrc = blendsrc;
    draw.blenddst = blenddst;
    draw.uniforms = programs[currentprogram].values;
    draw.textures = bound;
    auto& names = programs[currentprogram].attributes;
    for (size_t i = 0; i < names.size(); ++i) {
        const array_s& array = arrays[static_cast<GLuint>(i)];
        if (!array.enabled || !array.pointer || array.type != GL_FLOAT)
            continue;
        draw.attributes[names[i]] = fetch(array, vertices);
        draw.components[names[i]] = array.size;
    }
    return draw;
}

void store(GLint level, GLint w, GLint h, GLenum format, const void* pixels) {
    if (level != 0)
        return;
    image_s& stored = images[bound[unit]];
    stored.width = w;
    stored.height = h;
    stored.format = format;
    const size_t pitch = (static_cast<size_t>(w) * (format == GL_RGB ? 3 : 4) + 3) / 4 * 4;
    const auto* bytes = static_cast<const unsigned char*>(pixels);
    stored.pixels.clear();
    if (bytes)
        stored.pixels.assign(bytes, bytes + pitch * static_cast<size_t>(h));
}

void parameter(const char* call, GLenum target, GLenum name, float value) {
    log(call, named(target), named(name), named(static_cast<GLenum>(value)));
    images[bound[unit]].parameters[name] = value;
}

} // namespace

const std::vector<std::string>& calls() {
    return calllog;
}

std::vector<std::string> calls(const std::string& prefix) {
    std::vector<std::string> matching;
    for (auto& text : calllog)
        if (text.compare(0, prefix.size(), prefix) == 0)
            matching.push_back(text);
    return matching;
}

const std::vector<draw_s>& draws() {
    return drawlog;
}

void clear() {
    calllog.clear();
    drawlog.clear();
}

GLuint program() {
    return currentprogram;
}

GLuint framebuffer() {
    return currentframebuffer;
}

GLuint texture(int which) {
    return bound[which];
}

int activeunit() {
    return unit;
}

bool enabled(GLenum capability) {
    return capabilities.count(capability) != 0;
}

bool arrayenabled(const std::string& attribute) {
    const GLint where = location(programs[currentprogram].attributes, attribute.c_str());
    return where >= 0 && arrays[static_cast<GLuint>(where)].enabled;
}

std::vector<float> uniform(const std::string& name) {
    auto& values = programs[currentprogram].values;
    auto found = values.find(name);
    return found == values.end() ? std::vector<float>() : found->second;
}

std::string shadersource(GLuint id, GLenum type) {
    for (GLuint shader : programs[id].shaders)
        if (shaders[shader].type == type)
            return shaders[shader].source;
    return "";
}

const image_s& image(GLuint id) {
    return images[id];
}

} // namespace gldouble

using namespace gldouble;

void glActiveTexture(GLenum texture) {
    log("glActiveTexture", texture - GL_TEXTURE0);
    unit = static_cast<int>(texture - GL_TEXTURE0);
}

void glAttachShader(GLuint program, GLuint shader) {
    log("glAttachShader", program, shader);
    programs[program].shaders.push_back(shader);
}

void glBindFramebuffer(GLenum target, GLuint framebuffer) {
    log("glBindFramebuffer", named(target), framebuffer);
    currentframebuffer = framebuffer;
}

void glBindTexture(GLenum target, GLuint texture) {
    log("glBindTexture", named(target), texture);
    bound[unit] = texture;
}

void glBlendFunc(GLenum source, GLenum destination) {
    log("glBlendFunc", named(source), named(destination));
    blendsrc = source;
    blenddst = destination;
}

GLenum glCheckFramebufferStatus(GLenum target) {
    log("glCheckFramebufferStatus", named(target));
    return answers.framebufferstatus;
}

void glClear(GLbitfield mask) {
    log("glClear", bits(mask));
}

void glClearColor(GLfloat r, GLfloat g, GLfloat b, GLfloat a) {
    log("glClearColor", r, g, b, a);
}

void glCompileShader(GLuint shader) {
    log("glCompileShader", shader);
}

GLuint glCreateProgram() {
    log("glCreateProgram");
    return answers.createprogram ? ++lastprogram : 0;
}

GLuint glCreateShader(GLenum type) {
    log("glCreateShader", named(type));
    if (!answers.createshader)
        return 0;
    shaders[++lastshader].type = type;
    return lastshader;
}

void glDepthFunc(GLenum function) {
    log("glDepthFunc", named(function));
    depthfunc = function;
}

void glDepthMask(GLboolean mask) {
    log("glDepthMask", int(mask));
    depthmask = mask;
}

void glDisable(GLenum capability) {
    log("glDisable", named(capability));
    capabilities.erase(capability);
}

void glDisableVertexAttribArray(GLuint index) {
    log("glDisableVertexAttribArray", attributename(index));
    arrays[index].enabled = false;
}

void glDrawArrays(GLenum drawmode, GLint first, GLsizei count) {
    log("glDrawArrays", mode(drawmode), first, count);
    draw_s draw = snapshot(drawmode, count, count > 0 ? static_cast<size_t>(first + count) : 0);
    draw.first = first;
    drawlog.push_back(std::move(draw));
}

void glDrawElements(GLenum drawmode, GLsizei count, GLenum type, const void* indices) {
    log("glDrawElements", mode(drawmode), count, named(type), pointer(indices));
    std::vector<unsigned> used;
    unsigned last = 0;
    for (GLsizei i = 0; i < count; ++i) {
        const unsigned index = type == GL_UNSIGNED_SHORT ? static_cast<const GLushort*>(indices)[i]
                                                         : static_cast<const GLuint*>(indices)[i];
        used.push_back(index);
        last = std::max(last, index);
    }
    draw_s draw = snapshot(drawmode, count, count > 0 ? last + 1 : 0);
    draw.elements = true;
    draw.indices = std::move(used);
    drawlog.push_back(std::move(draw));
}

void glEnable(GLenum capability) {
    log("glEnable", named(capability));
    capabilities.insert(capability);
}

void glEnableVertexAttribArray(GLuint index) {
    log("glEnableVertexAttribArray", attributename(index));
    arrays[index].enabled = true;
}

void glFramebufferTexture2D(GLenum target, GLenum attachment, GLenum textarget, GLuint texture,
                            GLint level) {
    log("glFramebufferTexture2D", named(target), named(attachment), named(textarget), texture,
        level);
}

void glGenFramebuffers(GLsizei n, GLuint* names) {
    log("glGenFramebuffers", n);
    for (GLsizei i = 0; i < n; ++i)
        names[i] = ++lastframebuffer;
}

void glGenTextures(GLsizei n, GLuint* names) {
    log("glGenTextures", n);
    for (GLsizei i = 0; i < n; ++i)
        names[i] = ++lasttexture;
}

void glGenerateMipmap(GLenum target) {
    log("glGenerateMipmap", target);
}

GLint glGetAttribLocation(GLuint program, const GLchar* name) {
    log("glGetAttribLocation", program, name);
    return location(programs[program].attributes, name);
}

GLenum glGetError() {
    return GL_NO_ERROR;
}

void glGetFloatv(GLenum name, GLfloat* values) {
    log("glGetFloatv", named(name));
    if (name == GL_ALIASED_POINT_SIZE_RANGE) {
        values[0] = 1.0f;
        values[1] = answers.maxpointsize;
    }
}

void glGetIntegerv(GLenum name, GLint* values) {
    log("glGetIntegerv", named(name));
    if (name == GL_VIEWPORT)
        memcpy(values, viewportbox, sizeof viewportbox);
    if (name == GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS)
        *values = answers.vertextextureunits;
}

void glGetProgramiv(GLuint program, GLenum name, GLint* value) {
    log("glGetProgramiv", program, named(name));
    *value = answers.links;
}

void glGetShaderInfoLog(GLuint shader, GLsizei size, GLsizei*, GLchar* infolog) {
    log("glGetShaderInfoLog", shader, size);
    strncpy(infolog, answers.infolog.c_str(), static_cast<size_t>(size) - 1);
    infolog[size - 1] = '\0';
}

void glGetShaderiv(GLuint shader, GLenum name, GLint* value) {
    log("glGetShaderiv", shader, named(name));
    *value = answers.compiles;
}

const GLubyte* glGetString(GLenum name) {
    if (!answers.strings)
        return nullptr;
    const char* text = name == GL_VENDOR       ? "double"
                       : name == GL_RENDERER   ? "recording double"
                       : name == GL_VERSION    ? "OpenGL ES 2.0 double"
                       : name == GL_EXTENSIONS ? answers.extensions.c_str()
                                               : "";
    return reinterpret_cast<const GLubyte*>(text);
}

GLint glGetUniformLocation(GLuint program, const GLchar* name) {
    log("glGetUniformLocation", program, name);
    return location(programs[program].uniforms, name);
}

void glLinkProgram(GLuint id) {
    log("glLinkProgram", id);
    program_s& program = programs[id];
    program.attributes = declarations(program, "attribute");
    program.uniforms = declarations(program, "uniform");
}

void glReadPixels(GLint x, GLint y, GLsizei w, GLsizei h, GLenum format, GLenum type,
                  void* pixels) {
    log("glReadPixels", x, y, w, h, named(format), named(type));
    memcpy(
        pixels, answers.framebuffer.data(),
        std::min(answers.framebuffer.size(), static_cast<size_t>(w) * static_cast<size_t>(h) * 4));
}

void glScissor(GLint x, GLint y, GLsizei w, GLsizei h) {
    log("glScissor", x, y, w, h);
}

void glShaderSource(GLuint shader, GLsizei count, const GLchar* const* source, const GLint*) {
    log("glShaderSource", shader, count);
    shaders[shader].source = *source;
}

void glStencilFunc(GLenum function, GLint reference, GLuint mask) {
    log("glStencilFunc", named(function), reference, mask);
}

void glStencilMask(GLuint mask) {
    log("glStencilMask", mask);
}

void glStencilOp(GLenum fail, GLenum depthfail, GLenum pass) {
    log("glStencilOp", named(fail), named(depthfail), named(pass));
}

void glTexImage2D(GLenum target, GLint level, GLint internalformat, GLsizei w, GLsizei h,
                  GLint border, GLenum format, GLenum type, const void* pixels) {
    log("glTexImage2D", named(target), level, named(static_cast<GLenum>(internalformat)), w, h,
        border, named(format), named(type), pointer(pixels));
    store(level, w, h, format, pixels);
}

void glTexParameterf(GLenum target, GLenum name, GLfloat value) {
    parameter("glTexParameterf", target, name, value);
}

void glTexParameteri(GLenum target, GLenum name, GLint value) {
    parameter("glTexParameteri", target, name, static_cast<float>(value));
}

void glTexSubImage2D(GLenum target, GLint level, GLint x, GLint y, GLsizei w, GLsizei h,
                     GLenum format, GLenum type, const void* pixels) {
    log("glTexSubImage2D", named(target), level, x, y, w, h, named(format), named(type),
        pointer(pixels));
    store(level, w, h, format, pixels);
}

void glUniform1f(GLint where, GLfloat x) {
    setuniform("glUniform1f", where, x);
}

void glUniform1i(GLint where, GLint x) {
    setuniform("glUniform1i", where, x);
}

void glUniform2f(GLint where, GLfloat x, GLfloat y) {
    setuniform("glUniform2f", where, x, y);
}

void glUniform2fv(GLint where, GLsizei, const GLfloat* v) {
    setuniform("glUniform2fv", where, v[0], v[1]);
}

void glUniform3f(GLint where, GLfloat x, GLfloat y, GLfloat z) {
    setuniform("glUniform3f", where, x, y, z);
}

void glUniform3fv(GLint where, GLsizei, const GLfloat* v) {
    setuniform("glUniform3fv", where, v[0], v[1], v[2]);
}

void glUniform4f(GLint where, GLfloat x, GLfloat y, GLfloat z, GLfloat w) {
    setuniform("glUniform4f", where, x, y, z, w);
}

void glUniform4fv(GLint where, GLsizei, const GLfloat* v) {
    setuniform("glUniform4fv", where, v[0], v[1], v[2], v[3]);
}

void glUniformMatrix3fv(GLint where, GLsizei count, GLboolean transpose, const GLfloat* value) {
    setmatrix("glUniformMatrix3fv", where, count, transpose, value, 9);
}

void glUniformMatrix4fv(GLint where, GLsizei count, GLboolean transpose, const GLfloat* value) {
    setmatrix("glUniformMatrix4fv", where, count, transpose, value, 16);
}

void glUseProgram(GLuint program) {
    log("glUseProgram", program);
    currentprogram = program;
}

void glVertexAttribPointer(GLuint index, GLint size, GLenum type, GLboolean normalized,
                           GLsizei stride, const void* p) {
    log("glVertexAttribPointer", attributename(index), size, named(type), int(normalized), stride,
        pointer(p));
    array_s& array = arrays[index];
    array.size = size;
    array.type = type;
    array.stride = stride;
    array.pointer = p;
}

void glViewport(GLint x, GLint y, GLsizei w, GLsizei h) {
    log("glViewport", x, y, w, h);
    const GLint box[4] = {x, y, w, h};
    memcpy(viewportbox, box, sizeof box);
}

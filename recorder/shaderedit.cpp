#include "shaderedit.h"

#include "shader.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <list>
#include <vector>

namespace {

struct source_s {
    GLenum type;
    std::string text;
};

std::string sourcefile;
std::vector<std::string> compiledin; // the literals when the viewer started
std::vector<std::string> current;    // the literals that take their places
std::vector<source_s> seen;          // shaders that contain one of them, as compiled in
std::list<std::string> handedout;    // edited texts, which GL reads after the hook has returned

std::string readfile(const std::string& name) {
    std::ifstream file(name);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string findsource(const std::string& effect) {
    for (const auto& file : std::filesystem::directory_iterator(EFFECT_SOURCES))
        if (readfile(file.path()).find("demoeffect_c* " + effect + " =") != std::string::npos)
            return file.path();
    return "";
}

std::vector<std::string> literals(const std::string& text) {
    const std::string open = "R\"(", close = ")\"";
    std::vector<std::string> found;
    for (size_t at = text.find(open); at != std::string::npos; at = text.find(open, at)) {
        at += open.size();
        const size_t end = text.find(close, at);
        if (end == std::string::npos)
            break;
        found.push_back(text.substr(at, end - at));
    }
    return found;
}

// The text with its literal replaced; false when it has none of this effect's.
bool edit(std::string* text, const std::vector<std::string>& replacements) {
    for (size_t i = 0; i < compiledin.size(); ++i) {
        const size_t at = text->find(compiledin[i]);
        if (at == std::string::npos)
            continue;
        text->replace(at, compiledin[i].size(), replacements[i]);
        return true;
    }
    return false;
}

const char* hook(GLenum type, const char* src) {
    std::string text = src;
    if (!edit(&text, current))
        return src;
    if (current == compiledin)
        seen.push_back({type, src});
    handedout.push_back(text);
    return handedout.back().c_str();
}

bool compiles(const source_s& source) {
    const char* text = source.text.c_str();
    const GLuint shader = glCreateShader(source.type);
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    GLint good = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &good);
    char infolog[512] = "";
    glGetShaderInfoLog(shader, sizeof infolog, nullptr, infolog);
    if (!good)
        fprintf(stderr, "%s", infolog);
    glDeleteShader(shader);
    return good;
}

} // namespace

void shaderedit_start(const std::string& effect) {
    sourcefile = findsource(effect);
    compiledin = current = literals(readfile(sourcefile));
    shader_sourcehook = hook;
}

bool shaderedit_read() {
    const std::vector<std::string> edited = literals(readfile(sourcefile));
    if (edited.size() != compiledin.size() || edited.empty()) {
        fprintf(stderr, "%s has shaders more or less than before: build again\n",
                sourcefile.c_str());
        return false;
    }
    for (source_s source : seen)
        if (edit(&source.text, edited) && !compiles(source))
            return false;
    current = edited;
    return true;
}

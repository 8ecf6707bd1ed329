#include "glcaps.h"

#include <cstdio>
#include <cstring>

const char* glcaps_string(GLenum name) {
    const GLubyte* text = glGetString(name);
    return text ? reinterpret_cast<const char*>(text) : "";
}

bool glcaps_index32(const char* effect) {
    // The core of ES 3, where the context is one.
    const bool there = strstr(glcaps_string(GL_EXTENSIONS), "GL_OES_element_index_uint") ||
                       strstr(glcaps_string(GL_VERSION), "OpenGL ES 3.");
    if (!there)
        fprintf(stderr, "%s cannot draw: GL takes no 32-bit element indices\n", effect);
    return there;
}

bool glcaps_vertextextures(const char* effect) {
    GLint units = 0;
    glGetIntegerv(GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS, &units);
    if (units <= 0)
        fprintf(stderr, "%s cannot draw: GL reads no textures in vertex shaders\n", effect);
    return units > 0;
}

bool glcaps_pointsize(const char* effect, float pixels) {
    GLfloat range[2] = {0.0f, 0.0f};
    glGetFloatv(GL_ALIASED_POINT_SIZE_RANGE, range);
    if (range[1] < pixels)
        fprintf(stderr,
                "%s cannot draw as it should: GL's points end at %g pixels, not %g: larger "
                "ones are drawn as small as that\n",
                effect, double(range[1]), double(pixels));
    return range[1] >= pixels;
}

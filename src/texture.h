// A GL texture from image files or SDL surfaces, and the optional companion list of sub-textures
// beside the image ("<image path>.txt"). No clean-up: textures live as long as the process.
// GL thread only. Messages go to standard error.
//
// A companion file is plain text, every line ended by a newline. For an atlas: a name, one blank,
// then x, y, width, height in texture coordinates. For a cube map: six image paths in the order
// +X, -X, +Y, -Y, +Z, -Z.
#pragma once

#include <GLES2/gl2.h>
#include <glm/glm.hpp>
#include <SDL.h>

// Flags of a texture; what a clear bit means stands behind the colon.
enum texflag_t {
    TEX_RGB = 1,     // 24-bit RGB : 32-bit RGBA
    TEX_CUBE = 2,    // cube map : 2D
    TEX_NEAREST = 4, // nearest filtering : linear
    TEX_REPEAT = 8,  // repeats (2D only) : clamps to the edge
};

class texture_c {
public:
    int subtexnum;     // lines in subtexdata
    char** subtexdata; // one string per companion line, never freed
    int flags;         // texflag_t bits
    GLuint textureid;  // 0 until loaded

    // Loads image fn (and its companion) with texflag_t bits. An image that cannot be decoded ends
    // the process with status 1 after "couldn't load!"; a cube map without exactly six companion
    // lines is not made.
    void load(const char* fn, int texflags);

    // Decodes image fn into a new surface, bottom row first, for GL_RGB (24 bits) or GL_RGBA
    // (32 bits). The caller frees it. Null for any other format.
    static SDL_Surface* load_image(const char* fn, GLenum internalformat);

    // Reads the companion of image path fn into subtexnum and subtexdata; without one both stay.
    void checksubtex(const char* fn);

    // Makes a new 2D texture of a 24- or 32-bit surface as it lies in memory (no flip): linear and
    // clamped, or by the filter and wrap bits of surfflags. Surfaces of other depths are refused.
    void fromsurface(SDL_Surface* surf);
    void fromsurface(SDL_Surface* surf, int surfflags);

    // Overwrites level 0 from (0, 0) with the surface.
    void fromsurface_subtex(SDL_Surface* surf);

    // Binds to the active unit as what its flags say.
    void bind() const;

    // Rectangle (x0, y0, x1, y1) of companion line num, or of the first line that starts with
    // name. Zeros, with a message, when there is none.
    glm::vec4 getsubtex(int num) const;
    glm::vec4 getsubtex(const char* name) const;
};

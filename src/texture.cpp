#include "texture.h"

#include "decoder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr Uint32 red_mask = 0x000000FF;
constexpr Uint32 green_mask = 0x0000FF00;
constexpr Uint32 blue_mask = 0x00FF0000;
constexpr Uint32 alpha_mask = 0xFF000000;

constexpr size_t maxsubtexes = 1000;
constexpr int cubefaces = 6;

GLenum pixelformat(int flags) {
    return flags & TEX_RGB ? GL_RGB : GL_RGBA;
}

GLint filter(int flags) {
    return flags & TEX_NEAREST ? GL_NEAREST : GL_LINEAR;
}

GLint wrap(int flags) {
    return flags & TEX_REPEAT ? GL_REPEAT : GL_CLAMP_TO_EDGE;
}

GLuint newtexture(GLenum target) {
    GLuint id = 0;
    glGenTextures(1, &id);
    glBindTexture(target, id);
    return id;
}

GLuint newtexture2d(int flags) {
    GLuint id = newtexture(GL_TEXTURE_2D);
    const GLfloat filtering = static_cast<GLfloat>(filter(flags));
    const GLfloat wrapping = static_cast<GLfloat>(wrap(flags));
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filtering);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filtering);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrapping);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrapping);
    return id;
}

GLuint newcubemap(int flags) {
    GLuint id = newtexture(GL_TEXTURE_CUBE_MAP);
    glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER, filter(flags));
    glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER, filter(flags));
    return id;
}

void upload(GLenum target, GLenum format, SDL_Surface* surf) {
    glTexImage2D(target, 0, static_cast<GLint>(format), surf->w, surf->h, 0, format,
                 GL_UNSIGNED_BYTE, surf->pixels);
}

void uploadimage(GLenum target, GLenum format, const char* fn) {
    SDL_Surface* surf = texture_c::load_image(fn, format);
    upload(target, format, surf);
    SDL_FreeSurface(surf);
}

// The name where a target belongs: GL rejects it, so every texture has level 0 only, as it must.
void refusemipmaps(GLuint id) {
    glGenerateMipmap(id);
}

SDL_Surface* newimagesurface(int w, int h, GLenum format) {
    if (format == GL_RGBA)
        return SDL_CreateRGBSurface(SDL_SRCALPHA, w, h, 32, red_mask, green_mask, blue_mask,
                                    alpha_mask);
    if (format == GL_RGB)
        return SDL_CreateRGBSurface(0, w, h, 24, red_mask, green_mask, blue_mask, 0);
    return nullptr;
}

bool isalready(const SDL_Surface* surf, GLenum format) {
    const SDL_PixelFormat& pixel = *surf->format;
    const bool alpha = format == GL_RGBA;
    return (alpha || format == GL_RGB) && pixel.BitsPerPixel == (alpha ? 32 : 24) &&
           pixel.Rmask == red_mask && pixel.Gmask == green_mask && pixel.Bmask == blue_mask &&
           pixel.Amask == (alpha ? alpha_mask : 0) && !(surf->flags & SDL_SRCCOLORKEY);
}

void flip(SDL_Surface* surf) {
    std::vector<Uint8> row(surf->pitch);
    auto* top = static_cast<Uint8*>(surf->pixels);
    for (Uint8* bottom = top + (surf->h - 1) * surf->pitch; top < bottom; bottom -= surf->pitch) {
        memcpy(row.data(), top, row.size());
        memcpy(top, bottom, row.size());
        memcpy(bottom, row.data(), row.size());
        top += surf->pitch;
    }
}

void blitflipped(SDL_Surface* from, SDL_Surface* to) {
    for (int y = 0; y < from->h; ++y) {
        SDL_Rect source = {0, static_cast<Sint16>(y), static_cast<Uint16>(from->w), 1};
        SDL_Rect target = {0, static_cast<Sint16>(from->h - 1 - y), 0, 0};
        SDL_BlitSurface(from, &source, to, &target);
    }
}

// No surface where there was no memory for one; GL would read beyond the pixels of other depths.
bool isuploadable(const SDL_Surface* surf) {
    if (!surf)
        return false;
    const int bits = surf->format->BitsPerPixel;
    if (bits == 24 || bits == 32)
        return true;
    fprintf(stderr, "no texture from %i bits a pixel\n", bits);
    return false;
}

// The end is only seen by the read behind the last line, which stores the buffer once more; so the
// last entry always goes, and with it a last line that has no newline.
std::vector<char*> readlines(FILE* file) {
    std::vector<char*> lines;
    char line[1000] = "";
    while (!feof(file) && lines.size() < maxsubtexes) {
        if (!fgets(line, sizeof line, file) && !feof(file))
            return lines; // what cannot be read is no line, and the one before it was
        line[strcspn(line, "\n")] = '\0';
        lines.push_back(strdup(line));
    }
    if (!lines.empty()) {
        free(lines.back());
        lines.pop_back();
    }
    return lines;
}

// x0, y0, x1, y1 of "x y width height".
glm::vec4 parserectangle(const char* text) {
    float x = 0, y = 0, w = 0, h = 0;
    sscanf(text, "%f %f %f %f", &x, &y, &w, &h);
    return {x, y, x + w, y + h};
}

} // namespace

void texture_c::load(const char* fn, int texflags) {
    flags = texflags;
    checksubtex(fn);
    const GLenum format = pixelformat(flags);
    GLuint id = 0;
    if (flags & TEX_CUBE) {
        fprintf(stderr, "loading cubemap %s as %i\n", fn, flags);
        if (subtexnum != cubefaces) {
            fprintf(stderr, "no subtexes.\n");
            return;
        }
        id = newcubemap(flags);
        for (int i = 0; i < cubefaces; ++i) {
            fprintf(stderr, "noin: %i\n", i);
            uploadimage(GL_TEXTURE_CUBE_MAP_POSITIVE_X + static_cast<GLenum>(i), format,
                        subtexdata[i]);
        }
    } else {
        fprintf(stderr, "loading normal 2D tex %s as %i\n", fn, flags);
        id = newtexture2d(flags);
        uploadimage(GL_TEXTURE_2D, format, fn);
    }
    refusemipmaps(id);
    textureid = id;
}

SDL_Surface* texture_c::load_image(const char* fn, GLenum internalformat) {
    SDL_Surface* image = decoder_load(fn);
    if (!image) {
        fprintf(stderr, "couldn't load!\n");
        exit(1);
    }
    fprintf(stderr, "texture bpp: %i\n", image->format->BitsPerPixel);
    // Nearly every picture: fresh memory for another one would take most of the time.
    if (isalready(image, internalformat)) {
        flip(image);
        return image;
    }
    SDL_SetAlpha(image, 0, 255); // or the blit would blend instead of copying alpha
    SDL_Surface* converted = newimagesurface(image->w, image->h, internalformat);
    if (converted)
        blitflipped(image, converted);
    SDL_FreeSurface(image);
    return converted;
}

void texture_c::checksubtex(const char* fn) {
    const std::string companion = std::string(fn) + ".txt";
    FILE* file = fopen(companion.c_str(), "rt");
    if (!file) {
        fprintf(stderr, "no subtexes\n");
        return;
    }
    const std::vector<char*> lines = readlines(file);
    fclose(file);
    fprintf(stderr, "%i texes\n", static_cast<int>(lines.size()));
    subtexnum = static_cast<int>(lines.size());
    subtexdata = new char*[lines.size()];
    std::copy(lines.begin(), lines.end(), subtexdata);
}

void texture_c::fromsurface(SDL_Surface* surf) {
    fromsurface(surf, 0);
}

void texture_c::fromsurface(SDL_Surface* surf, int surfflags) {
    if (!isuploadable(surf))
        return;
    flags = surfflags & ~TEX_RGB;
    if (surf->format->BitsPerPixel == 24)
        flags |= TEX_RGB;
    fprintf(stderr, "loading normal 2D surface to tex %i\n", flags);
    textureid = newtexture2d(flags);
    upload(GL_TEXTURE_2D, pixelformat(flags), surf);
    refusemipmaps(textureid);
}

void texture_c::fromsurface_subtex(SDL_Surface* surf) {
    if (!isuploadable(surf))
        return;
    glBindTexture(GL_TEXTURE_2D, textureid);
    const GLenum format = surf->format->BitsPerPixel == 24 ? GL_RGB : GL_RGBA;
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, surf->w, surf->h, format, GL_UNSIGNED_BYTE,
                    surf->pixels);
}

void texture_c::bind() const {
    glBindTexture(flags & TEX_CUBE ? GL_TEXTURE_CUBE_MAP : GL_TEXTURE_2D, textureid);
}

glm::vec4 texture_c::getsubtex(int num) const {
    if (num > subtexnum) {
        fprintf(stderr, "subtex %i too much.\n", num);
        return glm::vec4(0.0f);
    }
    const char* line = num >= 0 && num < subtexnum ? subtexdata[num] : "";
    const char* blank = *line ? strchr(line + 1, ' ') : nullptr;
    if (!blank) {
        fprintf(stderr, "wtf\n");
        return glm::vec4(0.0f);
    }
    return parserectangle(blank);
}

glm::vec4 texture_c::getsubtex(const char* name) const {
    const size_t length = strlen(name);
    for (int i = 0; i < subtexnum; ++i) {
        if (strncmp(subtexdata[i], name, length) != 0)
            continue;
        const glm::vec4 r = parserectangle(subtexdata[i] + length);
        fprintf(stderr, "found subtex '%s' at pos %i. %.2f %.2f %.2f %.2f\n", name, i, double(r.x),
                double(r.y), double(r.z), double(r.w));
        return r;
    }
    fprintf(stderr, "can't find subtex '%s'\n", name);
    return glm::vec4(0.0f);
}

// SDL 1.2 as far as the show calls it. Pixels are copied, never blended: the show switches SDL's
// blending off before every blit.
#include "SDL.h"

#include "SDL_image.h"
#include "web.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <emscripten.h>
#include <string>
#include <vector>

#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_JPEG
#define STBI_ONLY_PNG
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Weverything"
#include <stb_image.h>
#pragma clang diagnostic pop

namespace {

char error[200] = "";
Uint8 keys[SDLK_LAST];
SDL_EventFilter filter = nullptr;

struct timer_s {
    double due; // milliseconds
    SDL_NewTimerCallback callback;
    void* param;
};
std::vector<timer_s> timers;

EM_JS(int, nextevent, (int* out), {
    const event = Module.host.events.shift();
    if (!event)
        return 0;
    HEAP32.set(event, out >> 2);
    return 1;
});

EM_JS(int, mousebuttons, (), { return Module.host.buttons; });

void notekey(const SDL_Event& event) {
    if (event.key.keysym.sym < SDLK_LAST)
        keys[event.key.keysym.sym] = event.type == SDL_KEYDOWN;
}

Uint8 shiftof(Uint32 mask) {
    return mask ? static_cast<Uint8>(__builtin_ctz(mask)) : 0;
}

Uint32 readpixel(const Uint8* at, int bytes) {
    Uint32 pixel = 0;
    memcpy(&pixel, at, static_cast<size_t>(bytes));
    return pixel;
}

// The pixel in the other format; alpha goes along where both have it.
Uint32 convert(Uint32 pixel, const SDL_PixelFormat& from, const SDL_PixelFormat& to) {
    Uint8 r, g, b;
    SDL_GetRGB(pixel, &from, &r, &g, &b);
    const Uint32 colour = SDL_MapRGB(&to, r, g, b);
    if (!from.Amask || !to.Amask)
        return colour;
    return (colour & ~to.Amask) | (pixel & from.Amask) >> from.Ashift << to.Ashift;
}

void convertrow(const Uint8* in, const SDL_PixelFormat& from, Uint8* out, const SDL_PixelFormat& to,
                int width) {
    for (int x = 0; x < width; ++x, in += from.BytesPerPixel, out += to.BytesPerPixel) {
        const Uint32 pixel = convert(readpixel(in, from.BytesPerPixel), from, to);
        memcpy(out, &pixel, to.BytesPerPixel);
    }
}

Uint8* pixelat(SDL_Surface* surface, int x, int y) {
    return static_cast<Uint8*>(surface->pixels) + y * surface->pitch +
           x * surface->format->BytesPerPixel;
}

// Pixels of a picture, three or four channels of 8 bits; null when stb_image cannot read it.
struct picture_s {
    stbi_uc* pixels = nullptr;
    int w = 0, h = 0, channels = 0;
};

picture_s readpicture(const char* file) {
    picture_s picture;
    int infile = 0;
    if (!stbi_info(file, &picture.w, &picture.h, &infile))
        return picture;
    picture.channels = infile == 2 || infile == 4 ? 4 : 3;
    picture.pixels = stbi_load(file, &picture.w, &picture.h, &infile, picture.channels);
    return picture;
}

// The alpha of a picture may lie beside it, as a grey picture of its own (see pack).
void addalpha(picture_s* picture, const char* file) {
    int w = 0, h = 0, ignored = 0;
    stbi_uc* alpha = stbi_load((std::string(file) + ".alpha").c_str(), &w, &h, &ignored, 1);
    if (!alpha)
        return;
    const size_t count = static_cast<size_t>(w) * static_cast<size_t>(h);
    auto* both = static_cast<stbi_uc*>(malloc(count * 4));
    for (size_t i = 0; i < count; ++i) {
        memcpy(both + i * 4, picture->pixels + i * 3, 3);
        both[i * 4 + 3] = alpha[i];
    }
    stbi_image_free(alpha);
    stbi_image_free(picture->pixels);
    picture->pixels = both;
    picture->channels = 4;
}

SDL_Surface* newsurface(const picture_s& picture) {
    const bool alpha = picture.channels == 4;
    SDL_Surface* surface =
        SDL_CreateRGBSurface(alpha ? SDL_SRCALPHA : 0, picture.w, picture.h, picture.channels * 8,
                             0xFF, 0xFF00, 0xFF0000, alpha ? 0xFF000000 : 0);
    const size_t row = static_cast<size_t>(picture.w * picture.channels);
    for (int y = 0; y < picture.h; ++y)
        memcpy(pixelat(surface, 0, y), picture.pixels + static_cast<size_t>(y) * row, row);
    return surface;
}

} // namespace

int SDL_Init(Uint32) {
    return 0;
}

void SDL_QuitSubSystem(Uint32) {}

void SDL_Quit() {}

void SDL_SetError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(error, sizeof error, format, arguments);
    va_end(arguments);
}

char* SDL_GetError() {
    return error;
}

SDL_TimerID SDL_AddTimer(Uint32 interval, SDL_NewTimerCallback callback, void* param) {
    timers.push_back({emscripten_get_now() + interval, callback, param});
    return nullptr;
}

void web_runtimers() {
    const double now = emscripten_get_now();
    for (timer_s& timer : timers)
        if (now >= timer.due)
            timer.due = now + timer.callback(0, timer.param); // a pause is not caught up
}

int SDL_PollEvent(SDL_Event* event) {
    int raw[2]; // type, number
    if (!nextevent(raw))
        return 0;
    *event = {};
    event->type = static_cast<Uint8>(raw[0]);
    switch (event->type) {
    case SDL_KEYDOWN:
    case SDL_KEYUP:
        event->key.keysym.sym = static_cast<SDLKey>(raw[1]);
        notekey(*event);
        break;
    case SDL_MOUSEBUTTONDOWN:
        event->button.button = static_cast<Uint8>(raw[1]);
        break;
    default:
        break;
    }
    return !filter || filter(event) ? 1 : SDL_PollEvent(event);
}

void SDL_SetEventFilter(SDL_EventFilter newfilter) {
    filter = newfilter;
}

Uint8* SDL_GetKeyState(int*) {
    return keys;
}

Uint8 SDL_GetMouseState(int*, int*) {
    return static_cast<Uint8>(mousebuttons());
}

int SDL_ShowCursor(int) {
    return 0;
}

void SDL_WM_SetCaption(const char*, const char*) {}

SDL_Surface* SDL_CreateRGBSurface(Uint32 flags, int w, int h, int bits, Uint32 r, Uint32 g,
                                  Uint32 b, Uint32 a) {
    auto* format = new SDL_PixelFormat{static_cast<Uint8>(bits),
                                       static_cast<Uint8>(bits / 8),
                                       shiftof(r),
                                       shiftof(g),
                                       shiftof(b),
                                       shiftof(a),
                                       r,
                                       g,
                                       b,
                                       a};
    const int pitch = (w * bits / 8 + 3) & ~3;
    void* pixels = calloc(static_cast<size_t>(h), static_cast<size_t>(pitch));
    return new SDL_Surface{flags, format, w, h, static_cast<Uint16>(pitch), pixels};
}

void SDL_FreeSurface(SDL_Surface* surface) {
    if (!surface)
        return;
    free(surface->pixels);
    delete surface->format;
    delete surface;
}

int SDL_SetAlpha(SDL_Surface* surface, Uint32 flag, Uint8) {
    surface->flags = flag;
    return 0;
}

void SDL_GetRGB(Uint32 pixel, const SDL_PixelFormat* f, Uint8* r, Uint8* g, Uint8* b) {
    *r = static_cast<Uint8>((pixel & f->Rmask) >> f->Rshift);
    *g = static_cast<Uint8>((pixel & f->Gmask) >> f->Gshift);
    *b = static_cast<Uint8>((pixel & f->Bmask) >> f->Bshift);
}

Uint32 SDL_MapRGB(const SDL_PixelFormat* f, Uint8 r, Uint8 g, Uint8 b) {
    return Uint32(r) << f->Rshift | Uint32(g) << f->Gshift | Uint32(b) << f->Bshift | f->Amask;
}

int SDL_BlitSurface(SDL_Surface* from, SDL_Rect* source, SDL_Surface* to, SDL_Rect* target) {
    const int w = std::min({int(source->w), from->w - source->x, to->w - target->x});
    const int h = std::min({int(source->h), from->h - source->y, to->h - target->y});
    for (int y = 0; y < h; ++y)
        convertrow(pixelat(from, source->x, source->y + y), *from->format,
                   pixelat(to, target->x, target->y + y), *to->format, w);
    return 0;
}

// A page has no folder to write to.
SDL_RWops* SDL_RWFromFile(const char*, const char*) {
    return nullptr;
}

int SDL_SaveBMP_RW(SDL_Surface*, SDL_RWops*, int) {
    return -1;
}

SDL_Surface* IMG_Load(const char* file) {
    picture_s picture = readpicture(file);
    if (!picture.pixels) {
        SDL_SetError("%s: %s", file, stbi_failure_reason());
        return nullptr;
    }
    if (picture.channels == 3)
        addalpha(&picture, file);
    SDL_Surface* surface = newsurface(picture);
    stbi_image_free(picture.pixels);
    return surface;
}

// SDL 1.2 as far as the show calls it. Same names, same numbers, same meaning.
#pragma once

#include <cstdint>

using Uint8 = uint8_t;
using Uint16 = uint16_t;
using Sint16 = int16_t;
using Uint32 = uint32_t;

constexpr Uint32 SDL_INIT_TIMER = 1, SDL_INIT_AUDIO = 0x10, SDL_INIT_VIDEO = 0x20;
constexpr Uint32 SDL_SWSURFACE = 0, SDL_SRCALPHA = 0x00010000, SDL_SRCCOLORKEY = 0x1000,
                 SDL_FULLSCREEN = 0x80000000;
constexpr Uint8 SDL_ALPHA_OPAQUE = 255;

// ---- surfaces ----

struct SDL_Rect {
    Sint16 x, y;
    Uint16 w, h;
};

struct SDL_PixelFormat {
    Uint8 BitsPerPixel, BytesPerPixel;
    Uint8 Rshift, Gshift, Bshift, Ashift;
    Uint32 Rmask, Gmask, Bmask, Amask;
};

struct SDL_Surface {
    Uint32 flags;
    SDL_PixelFormat* format;
    int w, h;
    Uint16 pitch;
    void* pixels;
};

SDL_Surface* SDL_CreateRGBSurface(Uint32 flags, int w, int h, int bits, Uint32 r, Uint32 g,
                                  Uint32 b, Uint32 a);
void SDL_FreeSurface(SDL_Surface* surface);
int SDL_SetAlpha(SDL_Surface* surface, Uint32 flag, Uint8 alpha);
int SDL_BlitSurface(SDL_Surface* from, SDL_Rect* source, SDL_Surface* to, SDL_Rect* target);
void SDL_GetRGB(Uint32 pixel, const SDL_PixelFormat* format, Uint8* r, Uint8* g, Uint8* b);
Uint32 SDL_MapRGB(const SDL_PixelFormat* format, Uint8 r, Uint8 g, Uint8 b);

struct SDL_RWops;
SDL_RWops* SDL_RWFromFile(const char* file, const char* mode);
int SDL_SaveBMP_RW(SDL_Surface* surface, SDL_RWops* file, int close);

// ---- events ----

enum SDLKey : int {
    SDLK_ESCAPE = 27,
    SDLK_SPACE = 32,
    SDLK_1 = 49,
    SDLK_2,
    SDLK_3,
    SDLK_4,
    SDLK_q = 113,
    SDLK_s = 115,
    SDLK_z = 122,
    SDLK_F4 = 285,
    SDLK_LAST = 323,
};

enum {
    SDL_NOEVENT = 0,
    SDL_KEYDOWN = 2,
    SDL_KEYUP = 3,
    SDL_MOUSEBUTTONDOWN = 5,
    SDL_MOUSEBUTTONUP = 6,
    SDL_QUIT = 12,
    SDL_VIDEORESIZE = 16,
};

enum { SDL_BUTTON_WHEELUP = 4, SDL_BUTTON_WHEELDOWN = 5 };

constexpr int KMOD_ALT = 0x0300;

struct SDL_keysym {
    SDLKey sym;
    int mod;
};

struct SDL_KeyboardEvent {
    Uint8 type;
    SDL_keysym keysym;
};

struct SDL_MouseButtonEvent {
    Uint8 type, button;
};

struct SDL_ResizeEvent {
    Uint8 type;
    int w, h;
};

union SDL_Event {
    Uint8 type;
    SDL_KeyboardEvent key;
    SDL_MouseButtonEvent button;
    SDL_ResizeEvent resize;
};

int SDL_PollEvent(SDL_Event* event);

// Asked of each event when it is polled; one that gets no is dropped.
using SDL_EventFilter = int (*)(const SDL_Event*);
void SDL_SetEventFilter(SDL_EventFilter filter);
Uint8* SDL_GetKeyState(int* count);
Uint8 SDL_GetMouseState(int* x, int* y);

// ---- the rest ----

// Callbacks come at a present, on the main thread.
using SDL_TimerID = struct sdltimer_s*;
using SDL_NewTimerCallback = Uint32 (*)(Uint32, void*);
SDL_TimerID SDL_AddTimer(Uint32 interval, SDL_NewTimerCallback callback, void* param);

int SDL_Init(Uint32 flags);
void SDL_QuitSubSystem(Uint32 flags);
void SDL_Quit();
void SDL_SetError(const char* format, ...);
char* SDL_GetError();
int SDL_ShowCursor(int toggle);
void SDL_WM_SetCaption(const char* title, const char* icon);

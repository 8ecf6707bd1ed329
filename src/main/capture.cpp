#include "main/capture.h"

#include "framesize.h"
#include "main/video.h"
#include "port.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <GLES2/gl2.h>

SDL_Surface* screenshot_surface = nullptr;

namespace {

constexpr int maxshots = 4;
SDL_Surface* shots[maxshots];

// Bytes R, G, B, unused: the order in which GL reads and writes pixels. SDL's own default is the
// other way round and would swap red and blue.
SDL_Surface* newsurface(int w, int h) {
    return SDL_CreateRGBSurface(SDL_SWSURFACE, w, h, 32, 0xFF, 0xFF00, 0xFF0000, 0);
}

SDL_Surface* newreadback() {
    return newsurface(video_w, video_h);
}

Uint8* row(SDL_Surface* surface, int y) {
    return static_cast<Uint8*>(surface->pixels) + y * surface->pitch;
}

Uint32* pixel(SDL_Surface* surface, int x, int y) {
    return reinterpret_cast<Uint32*>(row(surface, y)) + x;
}

void savebmp(SDL_Surface* surface, const char* filename) {
    if (SDL_RWops* file = SDL_RWFromFile(filename, "wb"))
        SDL_SaveBMP_RW(surface, file, 1);
}

Uint32 averagepixel(SDL_Surface* out, int x, int y, int framecount) {
    unsigned red = 0, green = 0, blue = 0;
    for (int i = 0; i < framecount; ++i) {
        Uint8 r, g, b;
        SDL_GetRGB(*pixel(shots[i], x, y), shots[i]->format, &r, &g, &b);
        red += r;
        green += g;
        blue += b;
    }
    const unsigned n = static_cast<unsigned>(framecount);
    return SDL_MapRGB(out->format, static_cast<Uint8>(red / n), static_cast<Uint8>(green / n),
                      static_cast<Uint8>(blue / n));
}

bool iscomplete(int framecount) {
    return std::find(shots, shots + framecount, nullptr) == shots + framecount;
}

void freeshots(int framecount) {
    std::for_each(shots, shots + framecount, SDL_FreeSurface);
    std::fill_n(shots, framecount, nullptr);
}

SDL_Surface* averageshots(int framecount) {
    SDL_Surface* out = newreadback();
    for (int y = 0; y < out->h; ++y)
        for (int x = 0; x < out->w; ++x)
            *pixel(out, x, y) = averagepixel(out, x, y, framecount);
    return out;
}

} // namespace

void take_screenshot() {
    screenshot_surface = newsurface(frame_w, frame_h);
    SDL_Surface* desktop = port_grabdesktop(frame_w, frame_h);
    if (!desktop)
        return;
    for (int y = 0; y < frame_h; ++y) {
        SDL_Rect from = {0, static_cast<Sint16>(y), frame_w, 1};
        SDL_Rect to = {0, static_cast<Sint16>(frame_h - 1 - y), frame_w, 1};
        SDL_BlitSurface(desktop, &from, screenshot_surface, &to);
    }
}

SDL_Surface* get_screenshot() {
    SDL_Surface* upsidedown = newreadback();
    glReadPixels(0, 0, video_w, video_h, GL_RGBA, GL_UNSIGNED_BYTE, upsidedown->pixels);
    SDL_Surface* shot = newreadback();
    for (int y = 0; y < video_h; ++y)
        memcpy(row(shot, y), row(upsidedown, video_h - 1 - y), static_cast<size_t>(video_w) * 4);
    SDL_FreeSurface(upsidedown);
    return shot;
}

void save_screenshot(char* filename) {
    SDL_Surface* shot = get_screenshot();
    savebmp(shot, filename);
    SDL_FreeSurface(shot);
}

SDL_Surface* blurredframe(int frame, int framecount) {
    if (frame < 0 || framecount < 1 || framecount > maxshots)
        return nullptr;
    const int seq = frame % framecount;
    shots[seq] = get_screenshot();
    if (seq != framecount - 1)
        return nullptr;
    SDL_Surface* average = iscomplete(framecount) ? averageshots(framecount) : nullptr;
    freeshots(framecount);
    return average;
}

void screenshot_blur(int frame, int framecount) {
    SDL_Surface* average = blurredframe(frame, framecount);
    if (!average)
        return;
    char filename[32];
    snprintf(filename, sizeof filename, "ss%08i.bmp", frame / framecount);
    savebmp(average, filename);
    SDL_FreeSurface(average);
}

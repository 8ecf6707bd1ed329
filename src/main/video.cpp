#include "main/video.h"

#include "glcaps.h"
#include "main/startup.h"
#include "port.h"

#include <cassert>
#include <cstdio>
#include <GLES2/gl2.h>

SDL_Surface* screen = nullptr;
int video_w = 0;
int video_h = 0;

namespace {

bool skimming = false;
GLint seen[4]; // the viewport of what is not skimmed over

void setattributes() {
    port_setattribute(PORT_GL_DEPTH_SIZE, 8);
    port_setattribute(PORT_GL_STENCIL_SIZE, config_stencilsize);
    port_setattribute(PORT_GL_DOUBLEBUFFER, 1);
    fprintf(stderr, "initting GLES\n");
    port_setattribute(PORT_GL_CONTEXT_MAJOR_VERSION, 2);
    port_setattribute(PORT_GL_CONTEXT_MINOR_VERSION, 0);
    port_setattribute(PORT_GL_RETAINED_BACKING, 1);
}

void reportattribute(port_glattr_t attribute, const char* label) {
    int value = 0;
    if (port_getattribute(attribute, &value) == 0)
        fprintf(stderr, "%s: %i\n", label, value);
}

void reportversion() {
    int major = 0;
    if (port_getattribute(PORT_GL_CONTEXT_MAJOR_VERSION, &major) == 0)
        fprintf(stderr, "major version: %i\n", major);
    else
        fprintf(stderr, "major version error: %s\n", SDL_GetError());
}

void reportglstrings() {
    printf("Vendor     : %s\n", glcaps_string(GL_VENDOR));
    printf("Renderer   : %s\n", glcaps_string(GL_RENDERER));
    printf("Version    : %s\n", glcaps_string(GL_VERSION));
    printf("Extensions : %s\n", glcaps_string(GL_EXTENSIONS));
}

void setviewport() {
    const int h = static_cast<int>(static_cast<float>(config_height) /
                                   static_cast<float>(config_width) * static_cast<float>(video_w));
    const int y = static_cast<int>((video_h - h) * 0.5);
    glViewport(0, y, video_w, h);
}

void hideviewport() {
    glGetIntegerv(GL_VIEWPORT, seen);
    glViewport(0, 0, 1, 1);
}

} // namespace

int init_gl() {
    SDL_FreeSurface(screen);
    setattributes();
    screen = port_setvideomode(0, 0, 0, SDL_FULLSCREEN | PORT_OPENGLES);
    if (!screen)
        fprintf(stderr, "no window: %s\n", SDL_GetError());
    assert(screen);
    compositor_fix(0);
    SDL_ShowCursor(0);
    reportversion();
    x11info();
    reportattribute(PORT_GL_DEPTH_SIZE, "depth size");
    reportattribute(PORT_GL_STENCIL_SIZE, "stencil size");
    reportattribute(PORT_GL_DOUBLEBUFFER, "doublebuffer");
    fprintf(stderr, "screen res: %i, %i\n", screen->w, screen->h);
    reportglstrings();
    fprintf(stderr, "viewport should be now %i, %i\n", screen->w, screen->h);
    video_resized(screen->w, screen->h);
    return 0;
}

void video_resized(int width, int height) {
    video_w = width;
    video_h = height;
    setviewport();
    if (skimming)
        hideviewport();
}

void video_skim(bool on) {
    if (on == skimming)
        return;
    skimming = on;
    if (on)
        hideviewport();
    else
        glViewport(seen[0], seen[1], seen[2], seen[3]);
}

void x11info() {
    port_windownumbers_s numbers;
    if (!port_windownumbers(&numbers))
        return;
    fprintf(stderr, "our window id: %08X\n", static_cast<unsigned>(numbers.window));
    fprintf(stderr, "our fswindow id: %08X\n", static_cast<unsigned>(numbers.fswindow));
    fprintf(stderr, "our wmwindow id: %08X\n", static_cast<unsigned>(numbers.wmwindow));
}

void compositor_fix(int stage) {
    if (port_setwindowtype(stage == 0 ? PORT_WINDOW_DIALOG : PORT_WINDOW_NORMAL))
        fprintf(stderr, "setting the hildon atom\n");
}

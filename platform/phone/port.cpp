// An SDL 1.2 that opens GLES windows itself: straight through.
#include "port.h"

void port_beforesdl() {}

int port_setattribute(port_glattr_t attribute, int value) {
    return SDL_GL_SetAttribute(static_cast<SDL_GLattr>(attribute), value);
}

SDL_Surface* port_setvideomode(int width, int height, int depth, Uint32 flags) {
    return SDL_SetVideoMode(width, height, depth, flags);
}

int port_getattribute(port_glattr_t attribute, int* value) {
    return SDL_GL_GetAttribute(static_cast<SDL_GLattr>(attribute), value);
}

void port_present() {
    SDL_GL_SwapBuffers();
}

#include "standin.h"

#include <SDL_image.h>

SDL_Surface* standin_load(const char* image) {
    static SDL_Surface* loaded = nullptr; // kept, as nobody frees it
    loaded = IMG_Load(image);
    if (loaded)
        SDL_SetAlpha(loaded, 0, SDL_ALPHA_OPAQUE);
    return loaded;
}

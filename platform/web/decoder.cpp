// The page has one thread.
#include "decoder.h"

#include <SDL_image.h>

void decoder_begin(const char*) {}

SDL_Surface* decoder_load(const char* fn) {
    return IMG_Load(fn);
}

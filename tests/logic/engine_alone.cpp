// The engine with all its objects and a port, but neither effects nor director: that this links is
// the test. Beside that it plays three frames.
#include "main/loop.h"

#include <cstdio>
#include <SDL.h>

int main() {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    if (SDL_Init(SDL_INIT_VIDEO) != 0)
        return 1;
    time_init();
    for (int i = 0; i < 3; ++i)
        system_crap();
    printf("%.2f s, %i frames\n", double(timeval), framecounter);
    return timeval == 0.06f && framecounter == 3 ? 0 : 1;
}

// SDL's X11 windows, for the ports that have them.
#pragma once

#include <SDL_syswm.h>

// Returns false where SDL has no X11 window.
bool wminfo_query(SDL_SysWMinfo* info);

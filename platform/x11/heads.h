// The monitors that lie side by side on one screen.
#pragma once

#include <optional>

struct head_s {
    int x, y, width, height; // pixels of the screen
};

// Where there are several, chooses the one that the show fills, and tells SDL: that of the pointer,
// or the one that SDL was told of already, by number, in SDL_VIDEO_FULLSCREEN_HEAD. Call before SDL
// starts. Nothing where there is only one.
std::optional<head_s> heads_choose();

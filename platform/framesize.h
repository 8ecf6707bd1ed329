// The screen that the show was made for: the size of the captured desktop, and of the picture where
// nobody asks for another. Shaders repeat its shape.
#pragma once

constexpr int frame_w = 854; // pixels
constexpr int frame_h = 480;

// Two pictures side by side, with the tolerance that software GL needs between kinds of processor.
#pragma once

#include <string>
#include <vector>

struct picture_s {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> rgb; // rows top first
};

// An empty picture when the file cannot be read.
picture_s picture_read(const std::string& filename);

// The picture in the current framebuffer.
picture_s picture_grab();

// Share of the pixels, 0 to 1, of which some channel is off by more than the tolerance; 1 when the
// sizes differ.
double picture_difference(const picture_s& a, const picture_s& b);

// Whether they are the same picture: all but a small budget of pixels within the tolerance.
bool picture_matches(const picture_s& a, const picture_s& b);

// Writes expected, got and their difference (eight times as strong) beside one another as a PNG.
void picture_writemismatch(const std::string& filename, const picture_s& expected,
                           const picture_s& got);

#include "compare.h"

#include "main/capture.h"

#include <algorithm>
#include <cstdlib>
#include <png.h>

namespace {

constexpr int tolerance = 3;    // per channel, of 255
constexpr double budget = 0.01; // of the pixels

bool off(const unsigned char* a, const unsigned char* b) {
    for (int c = 0; c < 3; ++c)
        if (std::abs(a[c] - b[c]) > tolerance)
            return true;
    return false;
}

png_image rgbimage(int width, int height) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGB;
    return image;
}

picture_s difference(const picture_s& a, const picture_s& b) {
    picture_s d = a;
    for (size_t i = 0; i < std::min(a.rgb.size(), b.rgb.size()); ++i)
        d.rgb[i] = static_cast<unsigned char>(std::min(255, 8 * std::abs(a.rgb[i] - b.rgb[i])));
    return d;
}

void appendrow(std::vector<unsigned char>* out, const picture_s& picture, int y, int width) {
    const size_t stride = static_cast<size_t>(picture.width) * 3;
    if (y < picture.height)
        out->insert(out->end(), picture.rgb.begin() + static_cast<long>(stride) * y,
                    picture.rgb.begin() + static_cast<long>(stride) * (y + 1));
    else
        out->resize(out->size() + static_cast<size_t>(width) * 3);
}

} // namespace

picture_s picture_read(const std::string& filename) {
    picture_s picture;
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, filename.c_str()))
        return picture;
    image.format = PNG_FORMAT_RGB;
    picture.width = static_cast<int>(image.width);
    picture.height = static_cast<int>(image.height);
    picture.rgb.resize(PNG_IMAGE_SIZE(image));
    png_image_finish_read(&image, nullptr, picture.rgb.data(), 0, nullptr);
    return picture;
}

picture_s picture_grab() {
    SDL_Surface* shot = get_screenshot();
    picture_s picture = {shot->w, shot->h, {}};
    for (int y = 0; y < shot->h; ++y) {
        const auto* row = static_cast<const unsigned char*>(shot->pixels) + y * shot->pitch;
        for (int x = 0; x < shot->w; ++x)
            picture.rgb.insert(picture.rgb.end(), row + x * 4, row + x * 4 + 3);
    }
    SDL_FreeSurface(shot);
    return picture;
}

double picture_difference(const picture_s& a, const picture_s& b) {
    if (a.width != b.width || a.height != b.height || a.rgb.empty())
        return 1.0;
    size_t count = 0;
    for (size_t i = 0; i < a.rgb.size(); i += 3)
        count += off(&a.rgb[i], &b.rgb[i]);
    return static_cast<double>(count) * 3.0 / static_cast<double>(a.rgb.size());
}

bool picture_matches(const picture_s& a, const picture_s& b) {
    return picture_difference(a, b) <= budget;
}

void picture_writemismatch(const std::string& filename, const picture_s& expected,
                           const picture_s& got) {
    const picture_s diff = difference(expected, got);
    std::vector<unsigned char> rows;
    for (int y = 0; y < std::max(expected.height, got.height); ++y) {
        appendrow(&rows, expected, y, expected.width);
        appendrow(&rows, got, y, got.width);
        appendrow(&rows, diff, y, diff.width);
    }
    png_image image =
        rgbimage(expected.width + got.width + diff.width, std::max(expected.height, got.height));
    png_image_write_to_file(&image, filename.c_str(), 0, rows.data(), 0, nullptr);
}

#include "pngfile.h"

#include <png.h>
#include <vector>

bool png_write(const std::string& filename, const SDL_Surface* surface) {
    std::vector<png_byte> rgb;
    rgb.reserve(static_cast<size_t>(surface->w) * static_cast<size_t>(surface->h) * 3);
    for (int y = 0; y < surface->h; ++y) {
        const auto* row = static_cast<const png_byte*>(surface->pixels) + y * surface->pitch;
        for (int x = 0; x < surface->w; ++x)
            rgb.insert(rgb.end(), row + x * 4, row + x * 4 + 3);
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(surface->w);
    image.height = static_cast<png_uint_32>(surface->h);
    image.format = PNG_FORMAT_RGB;
    return png_image_write_to_file(&image, filename.c_str(), 0, rgb.data(), 0, nullptr) != 0;
}

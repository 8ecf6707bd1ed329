#include "texture.h"

#include "gldouble.h"
#include "printed.h"
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <SDL_image.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using texts = std::vector<std::string>;
using bytes = std::vector<unsigned char>;

// A picture file, `bits` (24 or 32) a pixel, given top row first as R, G, B and, for 32, A.
void writepicture(const std::string& name, int w, int h, int bits, const bytes& pixels) {
    std::string tga(18, '\0');
    tga[2] = 2; // true colour, not compressed
    tga[12] = static_cast<char>(w);
    tga[14] = static_cast<char>(h);
    tga[16] = static_cast<char>(bits);
    tga[17] = static_cast<char>(0x20 | (bits == 32 ? 8 : 0)); // top row first, alpha bits
    for (size_t i = 0; i < pixels.size(); i += static_cast<size_t>(bits) / 8) {
        for (size_t c : {2, 1, 0})
            tga += static_cast<char>(pixels[i + c]);
        if (bits == 32)
            tga += static_cast<char>(pixels[i + 3]);
    }
    writefile(name, tga);
}

// 1 wide, 2 high: red over green.
void writeredovergreen(const std::string& name) {
    writepicture(name, 1, 2, 24, {255, 0, 0, 0, 255, 0});
}

SDL_Surface* surface(int w, int h, int bits) {
    return SDL_CreateRGBSurface(0, w, h, bits, 0xFF, 0xFF00, 0xFF0000, bits == 32 ? 0xFF000000 : 0);
}

TEST(texture, loads_rgba_linear_clamped_by_default) {
    scratch_c scratch;
    writeredovergreen("a.tga");
    texture_c tex{};
    EXPECT_EQ(printed([&] { tex.load("a.tga", 0); }),
              "no subtexes\nloading normal 2D tex a.tga as 0\ntexture bpp: 24\n");
    EXPECT_EQ(gldouble::calls(),
              (texts{"glGenTextures(1)", "glBindTexture(GL_TEXTURE_2D, 1)",
                     "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                     "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
                     "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
                     "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)",
                     "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, "
                     "ptr)",
                     "glGenerateMipmap(1)"}));
    EXPECT_EQ(tex.flags, 0);
    EXPECT_EQ(tex.textureid, 1u);
    EXPECT_EQ(gldouble::texture(0), 1u) << "stays bound";
}

TEST(texture, asks_for_mipmaps_of_its_own_name_which_gl_refuses) {
    scratch_c scratch;
    writeredovergreen("a.tga");
    GLuint before[4];
    glGenTextures(4, before);
    texture_c tex{};
    tex.load("a.tga", 0);
    EXPECT_EQ(gldouble::calls("glGenerateMipmap"), texts{"glGenerateMipmap(5)"});
}

TEST(texture, flags_choose_filter_and_wrap) {
    scratch_c scratch;
    writeredovergreen("a.tga");
    texture_c tex{};
    tex.load("a.tga", TEX_NEAREST | TEX_REPEAT);
    auto parameters = gldouble::image(tex.textureid).parameters;
    EXPECT_EQ(parameters[GL_TEXTURE_MAG_FILTER], float(GL_NEAREST));
    EXPECT_EQ(parameters[GL_TEXTURE_MIN_FILTER], float(GL_NEAREST));
    EXPECT_EQ(parameters[GL_TEXTURE_WRAP_S], float(GL_REPEAT));
    EXPECT_EQ(parameters[GL_TEXTURE_WRAP_T], float(GL_REPEAT));
}

TEST(texture, loaded_images_are_upright_with_the_bottom_row_first) {
    scratch_c scratch;
    writeredovergreen("a.tga");
    texture_c tex{};
    tex.load("a.tga", TEX_RGB);
    EXPECT_EQ(gldouble::image(tex.textureid).pixels, (bytes{0, 255, 0, 0, 255, 0, 0, 0}))
        << "rows padded to four bytes";
}

TEST(texture, a_24_bit_image_becomes_opaque_rgba) {
    scratch_c scratch;
    writepicture("a.tga", 1, 1, 24, {10, 20, 30});
    texture_c tex{};
    tex.load("a.tga", 0);
    EXPECT_EQ(gldouble::image(tex.textureid).pixels, (bytes{10, 20, 30, 255}));
}

TEST(texture, a_32_bit_image_keeps_colour_and_alpha_as_they_are) {
    scratch_c scratch;
    writepicture("a.tga", 2, 1, 32, {10, 20, 30, 40, 50, 60, 70, 0});
    texture_c tex{};
    tex.load("a.tga", 0);
    EXPECT_EQ(gldouble::image(tex.textureid).pixels, (bytes{10, 20, 30, 40, 50, 60, 70, 0}));
}

TEST(texture, a_32_bit_image_loaded_as_rgb_loses_its_alpha) {
    scratch_c scratch;
    writepicture("a.tga", 1, 1, 32, {10, 20, 30, 40});
    texture_c tex{};
    EXPECT_EQ(printed([&] { tex.load("a.tga", TEX_RGB); }),
              "no subtexes\nloading normal 2D tex a.tga as 1\ntexture bpp: 32\n");
    EXPECT_EQ(gldouble::image(tex.textureid).format, GLenum(GL_RGB));
    EXPECT_EQ(gldouble::image(tex.textureid).pixels, (bytes{10, 20, 30, 0}));
}

TEST(texture, load_image_knows_two_formats) {
    scratch_c scratch;
    writeredovergreen("a.tga");
    SDL_Surface* rgba = texture_c::load_image("a.tga", GL_RGBA);
    SDL_Surface* rgb = texture_c::load_image("a.tga", GL_RGB);
    EXPECT_EQ(texture_c::load_image("a.tga", GL_ALPHA), nullptr);
    EXPECT_EQ(rgba->format->BitsPerPixel, 32);
    EXPECT_EQ(rgba->format->Rmask, 0xFFu);
    EXPECT_EQ(rgba->format->Amask, 0xFF000000u);
    EXPECT_TRUE(rgba->flags & SDL_SRCALPHA);
    EXPECT_EQ(rgb->format->BitsPerPixel, 24);
    EXPECT_EQ(rgb->format->Rmask, 0xFFu);
    EXPECT_EQ(rgb->format->Amask, 0u);
    SDL_FreeSurface(rgba);
    SDL_FreeSurface(rgb);
}

// By copying row for row, as SDL converts pixels.
SDL_Surface* turnedover(const char* fn, GLenum format) {
    SDL_Surface* image = IMG_Load(fn);
    SDL_SetAlpha(image, 0, 255);
    SDL_Surface* copy = surface(image->w, image->h, format == GL_RGBA ? 32 : 24);
    for (int y = 0; y < image->h; ++y) {
        SDL_Rect from = {0, Sint16(y), Uint16(image->w), 1},
                 to = {0, Sint16(image->h - 1 - y), 0, 0};
        SDL_BlitSurface(image, &from, copy, &to);
    }
    SDL_FreeSurface(image);
    return copy;
}

bytes pixelsof(const SDL_Surface* surf) {
    const auto* first = static_cast<const unsigned char*>(surf->pixels);
    const size_t row = size_t(surf->w) * surf->format->BytesPerPixel;
    bytes result;
    for (int y = 0; y < surf->h; ++y)
        result.insert(result.end(), first + y * surf->pitch, first + y * surf->pitch + row);
    return result;
}

TEST(texture, load_image_gives_the_same_with_a_conversion_and_without) {
    for (const char* fn : {"gfx/gear.png", "gfx/face.jpg"}) // 32 bits; 24, rows padded
        for (const GLenum format : {GL_RGBA, GL_RGB}) {
            SDL_Surface* expected = turnedover(fn, format);
            SDL_Surface* loaded = texture_c::load_image(fn, format);
            ASSERT_NE(loaded, nullptr);
            EXPECT_EQ(loaded->pitch, expected->pitch);
            EXPECT_EQ(loaded->format->Amask, expected->format->Amask);
            EXPECT_EQ(loaded->format->BitsPerPixel, expected->format->BitsPerPixel);
            EXPECT_EQ(!(loaded->flags & SDL_SRCALPHA), format == GL_RGB) << fn;
            EXPECT_TRUE(pixelsof(loaded) == pixelsof(expected)) << fn;
            SDL_FreeSurface(expected);
            SDL_FreeSurface(loaded);
        }
}

TEST(texture, load_image_turns_an_odd_number_of_rows_over) {
    scratch_c scratch;
    writefile("a.ppm", std::string("P6 1 3 255\n") + "abcdefghi");
    SDL_Surface* loaded = texture_c::load_image("a.ppm", GL_RGB);
    EXPECT_EQ(pixelsof(loaded), (bytes{'g', 'h', 'i', 'd', 'e', 'f', 'a', 'b', 'c'}));
    SDL_FreeSurface(loaded);
}

// A PNG of two pixels, of which the upper is the transparent colour: SDL copies all others.
TEST(texture, load_image_leaves_a_transparent_colour_out) {
    scratch_c scratch;
    const unsigned char png[] = {
        0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49,
        0x48, 0x44, 0x52, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x02, 0x08, 0x02,
        0x00, 0x00, 0x00, 0x16, 0xe3, 0x21, 0x70, 0x00, 0x00, 0x00, 0x06, 0x74, 0x52,
        0x4e, 0x53, 0x00, 0x0a, 0x00, 0x14, 0x00, 0x1e, 0xc5, 0x36, 0x29, 0xff, 0x00,
        0x00, 0x00, 0x10, 0x49, 0x44, 0x41, 0x54, 0x78, 0x9c, 0x63, 0xe0, 0x12, 0x91,
        0x63, 0xd0, 0x30, 0xb2, 0x01, 0x00, 0x02, 0x74, 0x00, 0xd3, 0x7e, 0x4c, 0x63,
        0x1a, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};
    writefile("a.png", std::string(png, png + sizeof png));
    SDL_Surface* loaded = texture_c::load_image("a.png", GL_RGB);
    EXPECT_EQ(pixelsof(loaded), (bytes{40, 50, 60, 0, 0, 0}));
    SDL_FreeSurface(loaded);
}

TEST(texture_death, an_image_that_cannot_be_had_ends_the_show) {
    texture_c tex{};
    EXPECT_EXIT(tex.load("nosuch.png", 0), testing::ExitedWithCode(1), "couldn't load!\n$");
}

// ---- cube maps ----

TEST(texture, makes_a_cube_map_from_six_companion_lines) {
    scratch_c scratch;
    std::string companion;
    for (int face = 0; face < 6; ++face) { // each as wide as its number, from 1
        const std::string name = "face" + std::to_string(face) + ".tga";
        const bytes pixels(3 * (static_cast<size_t>(face) + 1), static_cast<unsigned char>(face));
        writepicture(name, face + 1, 1, 24, pixels);
        companion += name + "\n";
    }
    writefile("cube.txt", companion);
    texture_c tex{};
    const std::string said = printed([&] { tex.load("cube", TEX_CUBE | TEX_RGB | TEX_NEAREST); });
    EXPECT_EQ(said.substr(0, said.find("noin: 2")),
              "6 texes\nloading cubemap cube as 7\nnoin: 0\ntexture bpp: 24\nnoin: 1\n"
              "texture bpp: 24\n");
    EXPECT_NE(said.find("noin: 5\n"), std::string::npos);
    const texts calls = gldouble::calls();
    EXPECT_EQ(texts(calls.begin(), calls.begin() + 4),
              (texts{"glGenTextures(1)", "glBindTexture(GL_TEXTURE_CUBE_MAP, 1)",
                     "glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
                     "glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER, GL_NEAREST)"}));
    const char* faces[] = {"POSITIVE_X", "NEGATIVE_X", "POSITIVE_Y",
                           "NEGATIVE_Y", "POSITIVE_Z", "NEGATIVE_Z"};
    for (size_t face = 0; face < 6; ++face)
        EXPECT_EQ(calls[4 + face], std::string("glTexImage2D(GL_TEXTURE_CUBE_MAP_") + faces[face] +
                                       ", 0, GL_RGB, " + std::to_string(face + 1) +
                                       ", 1, 0, GL_RGB, GL_UNSIGNED_BYTE, ptr)");
    EXPECT_EQ(gldouble::image(tex.textureid).pixels[0], 5) << "the last face";
    EXPECT_EQ(tex.textureid, 1u);
}

TEST(texture, makes_no_cube_map_from_five_companion_lines) {
    scratch_c scratch;
    writefile("cube.txt", "a\nb\nc\nd\ne\n");
    texture_c tex{};
    EXPECT_EQ(printed([&] { tex.load("cube", TEX_CUBE); }),
              "5 texes\nloading cubemap cube as 2\nno subtexes.\n");
    EXPECT_EQ(tex.textureid, 0u);
    EXPECT_TRUE(gldouble::calls().empty());
}

TEST(texture, makes_no_cube_map_from_seven_companion_lines) {
    scratch_c scratch;
    writeredovergreen("a.tga");
    writefile("cube.txt", "a.tga\na.tga\na.tga\na.tga\na.tga\na.tga\na.tga\n");
    texture_c tex{};
    EXPECT_EQ(printed([&] { tex.load("cube", TEX_CUBE); }),
              "7 texes\nloading cubemap cube as 2\nno subtexes.\n");
    EXPECT_EQ(tex.textureid, 0u);
    EXPECT_TRUE(gldouble::calls().empty());
}

TEST(texture, makes_no_cube_map_without_a_companion) {
    texture_c tex{};
    EXPECT_EQ(printed([&] { tex.load("nosuch", TEX_CUBE); }),
              "no subtexes\nloading cubemap nosuch as 2\nno subtexes.\n");
    EXPECT_EQ(tex.textureid, 0u);
}

TEST(texture, binds_by_its_flags) {
    texture_c tex{};
    tex.textureid = 3;
    tex.bind();
    tex.flags = TEX_CUBE | TEX_RGB;
    tex.bind();
    EXPECT_EQ(gldouble::calls(),
              (texts{"glBindTexture(GL_TEXTURE_2D, 3)", "glBindTexture(GL_TEXTURE_CUBE_MAP, 3)"}));
}

// ---- companion files ----

texture_c companion(const std::string& content) {
    writefile("a.png.txt", content);
    texture_c tex{};
    tex.checksubtex("a.png");
    return tex;
}

texts lines(const texture_c& tex) {
    return {tex.subtexdata, tex.subtexdata + tex.subtexnum};
}

TEST(subtextures, before_a_read_error_are_all_there) {
    scratch_c scratch;
    ASSERT_EQ(mkfifo("picture.txt", 0600), 0);
    struct sigaction interrupt = {};
    interrupt.sa_handler = [](int) {};
    sigaction(SIGUSR1, &interrupt, nullptr); // not restarting: the read fails
    const pthread_t reader = pthread_self();
    std::atomic<bool> done = false;
    std::thread writer([&] {
        const int fd = open("picture.txt", O_WRONLY);
        const std::string lines = "a 0 0 1 1\nb 0 0 1 1\n";
        EXPECT_EQ(write(fd, lines.data(), lines.size()), ssize_t(lines.size()));
        int unread = 1;
        while (unread > 0)
            ioctl(fd, FIONREAD, &unread);
        for (; !done; usleep(1000))
            pthread_kill(reader, SIGUSR1);
        close(fd);
    });
    texture_c tex{};
    EXPECT_EQ(printed([&] { tex.checksubtex("picture"); }), "2 texes\n");
    done = true;
    writer.join();
    ASSERT_EQ(tex.subtexnum, 2);
    EXPECT_STREQ(tex.subtexdata[1], "b 0 0 1 1");
}

TEST(subtextures, are_the_lines_of_the_companion) {
    scratch_c scratch;
    texture_c tex{};
    EXPECT_EQ(printed([&] { tex = companion("a 0 0 0.5 0.5\nb 0.5 0 0.5 0.5\n"); }), "2 texes\n");
    EXPECT_EQ(lines(tex), (texts{"a 0 0 0.5 0.5", "b 0.5 0 0.5 0.5"}));
}

TEST(subtextures, are_found_by_name_with_a_line_that_says_so) {
    scratch_c scratch;
    const texture_c tex = companion("a 0 0 0.5 0.5\nb 0.5 0 0.5 0.5\n");
    glm::vec4 r;
    EXPECT_EQ(printed([&] { r = tex.getsubtex("b"); }),
              "found subtex 'b' at pos 1. 0.50 0.00 1.00 0.50\n");
    EXPECT_EQ(r, glm::vec4(0.5f, 0.0f, 1.0f, 0.5f));
}

TEST(subtextures, are_found_by_the_first_name_that_starts_so) {
    scratch_c scratch;
    const texture_c tex = companion("rocknormal 0.25 0 0.5 0.5\nrock 0 0 1 1\n");
    EXPECT_EQ(printed([&] { EXPECT_EQ(tex.getsubtex("rock"), glm::vec4(0.0f)); }),
              "found subtex 'rock' at pos 0. 0.00 0.00 0.00 0.00\n")
        << "the numbers are read right behind the name asked for";
}

TEST(subtextures, that_are_missing_are_zero_with_a_line_that_says_so) {
    scratch_c scratch;
    const texture_c tex = companion("a 1 2 3 4\n");
    EXPECT_EQ(printed([&] { EXPECT_EQ(tex.getsubtex("c"), glm::vec4(0.0f)); }),
              "can't find subtex 'c'\n");
    const texture_c none{};
    EXPECT_EQ(printed([&] { EXPECT_EQ(none.getsubtex("c"), glm::vec4(0.0f)); }),
              "can't find subtex 'c'\n");
}

TEST(subtextures, lose_a_last_line_without_newline) {
    scratch_c scratch;
    texture_c tex{};
    EXPECT_EQ(printed([&] { tex = companion("a 0 0 0.5 0.5\nb 0.5 0 0.5 0.5"); }), "1 texes\n");
    EXPECT_EQ(lines(tex), texts{"a 0 0 0.5 0.5"});
}

TEST(subtextures, of_an_empty_companion_are_none) {
    scratch_c scratch;
    texture_c tex{};
    EXPECT_EQ(printed([&] { tex = companion(""); }), "0 texes\n");
    EXPECT_EQ(tex.subtexnum, 0);
}

TEST(subtextures, stop_at_999) {
    scratch_c scratch;
    std::string many;
    for (int i = 0; i < 1500; ++i)
        many += "name" + std::to_string(i) + " 0 0 1 1\n";
    texture_c tex{};
    EXPECT_EQ(printed([&] { tex = companion(many); }), "999 texes\n");
    EXPECT_STREQ(tex.subtexdata[998], "name998 0 0 1 1");
    const std::string exactly(many, 0, many.find("name999"));
    EXPECT_EQ(printed([&] { tex = companion(exactly); }), "999 texes\n");
    const std::string one_more(many, 0, many.find("name1000"));
    EXPECT_EQ(printed([&] { tex = companion(one_more); }), "999 texes\n");
}

TEST(subtextures, break_long_lines_after_999_characters) {
    scratch_c scratch;
    const texture_c tex = companion(std::string(1500, 'x') + "\nb 1 2 3 4\n");
    EXPECT_EQ(lines(tex), (texts{std::string(999, 'x'), std::string(501, 'x'), "b 1 2 3 4"}));
}

TEST(subtextures, stay_as_they_were_without_a_companion) {
    scratch_c scratch;
    texture_c tex = companion("a 1 2 3 4\n");
    EXPECT_EQ(printed([&] { tex.checksubtex("other.png"); }), "no subtexes\n");
    EXPECT_EQ(tex.subtexnum, 1);
}

TEST(subtextures, by_index_are_refused_only_above_the_count) {
    scratch_c scratch;
    const texture_c tex = companion("a 0 0 0.5 0.5\nb 0.5 0 0.5 0.5\n");
    auto rectangle = [&](int num) {
        glm::vec4 r;
        EXPECT_EQ(printed([&] { r = tex.getsubtex(num); }), "");
        return r;
    };
    EXPECT_EQ(rectangle(0), glm::vec4(0.0f, 0.0f, 0.5f, 0.5f));
    EXPECT_EQ(rectangle(1), glm::vec4(0.5f, 0.0f, 1.0f, 0.5f));
    EXPECT_EQ(printed([&] { EXPECT_EQ(tex.getsubtex(3), glm::vec4(0.0f)); }),
              "subtex 3 too much.\n");
    EXPECT_EQ(printed([&] { EXPECT_EQ(tex.getsubtex(2), glm::vec4(0.0f)); }), "wtf\n")
        << "the index that equals the count reads an empty line";
    EXPECT_EQ(printed([&] { EXPECT_EQ(tex.getsubtex(-1), glm::vec4(0.0f)); }), "wtf\n");
}

TEST(subtextures, by_index_need_a_blank_behind_the_first_character) {
    scratch_c scratch;
    const texture_c tex = companion("noblank\n 1 2 3 4\n\nx 1 2\n");
    EXPECT_EQ(printed([&] { EXPECT_EQ(tex.getsubtex(0), glm::vec4(0.0f)); }), "wtf\n");
    EXPECT_EQ(tex.getsubtex(1), glm::vec4(2, 3, 6, 3)) << "the blank in front is the name";
    EXPECT_EQ(printed([&] { EXPECT_EQ(tex.getsubtex(2), glm::vec4(0.0f)); }), "wtf\n");
    EXPECT_EQ(tex.getsubtex(3), glm::vec4(1, 2, 1, 2)) << "missing numbers are 0";
}

// ---- surfaces ----

TEST(fromsurface, uploads_32_bits_as_they_lie) {
    SDL_Surface* surf = surface(1, 2, 32);
    const bytes content{1, 2, 3, 4, 5, 6, 7, 8};
    memcpy(surf->pixels, content.data(), content.size());
    texture_c tex{};
    EXPECT_EQ(printed([&] { tex.fromsurface(surf); }), "loading normal 2D surface to tex 0\n");
    EXPECT_EQ(tex.flags, 0);
    EXPECT_EQ(tex.textureid, 1u);
    EXPECT_EQ(gldouble::image(1).format, GLenum(GL_RGBA));
    EXPECT_EQ(gldouble::image(1).pixels, content) << "neither flipped nor converted";
    EXPECT_EQ(gldouble::image(1).parameters.at(GL_TEXTURE_WRAP_S), float(GL_CLAMP_TO_EDGE));
    EXPECT_EQ(gldouble::image(1).parameters.at(GL_TEXTURE_MIN_FILTER), float(GL_LINEAR));
    EXPECT_EQ(gldouble::calls("glGenerateMipmap"), texts{"glGenerateMipmap(1)"});
    SDL_FreeSurface(surf);
}

TEST(fromsurface, takes_filter_and_wrap_from_the_flags_and_the_format_from_the_surface) {
    SDL_Surface* deep = surface(1, 1, 32);
    SDL_Surface* shallow = surface(1, 1, 24);
    texture_c tex{};
    EXPECT_EQ(printed([&] { tex.fromsurface(deep, TEX_RGB | TEX_NEAREST | TEX_REPEAT); }),
              "loading normal 2D surface to tex 12\n");
    EXPECT_EQ(tex.flags, TEX_NEAREST | TEX_REPEAT);
    EXPECT_EQ(gldouble::image(1).format, GLenum(GL_RGBA));
    EXPECT_EQ(gldouble::image(1).parameters.at(GL_TEXTURE_MAG_FILTER), float(GL_NEAREST));
    EXPECT_EQ(gldouble::image(1).parameters.at(GL_TEXTURE_WRAP_T), float(GL_REPEAT));
    EXPECT_EQ(printed([&] { tex.fromsurface(shallow, 0); }),
              "loading normal 2D surface to tex 1\n");
    EXPECT_EQ(tex.flags, TEX_RGB);
    EXPECT_EQ(gldouble::image(2).format, GLenum(GL_RGB));
    SDL_FreeSurface(deep);
    SDL_FreeSurface(shallow);
}

TEST(fromsurface, of_no_surface_makes_nothing) {
    texture_c tex{};
    EXPECT_EQ(printed([&] {
                  tex.fromsurface(nullptr);
                  tex.fromsurface_subtex(nullptr);
              }),
              "");
    EXPECT_EQ(tex.textureid, 0u);
    EXPECT_TRUE(gldouble::calls().empty());
}

TEST(fromsurface, refuses_a_depth_that_gl_does_not_have) {
    SDL_Surface* surf = SDL_CreateRGBSurface(0, 2, 1, 16, 0xF800, 0x07E0, 0x001F, 0);
    texture_c tex{};
    EXPECT_EQ(printed([&] {
                  tex.fromsurface(surf);
                  tex.fromsurface_subtex(surf);
              }),
              "no texture from 16 bits a pixel\nno texture from 16 bits a pixel\n");
    EXPECT_EQ(tex.textureid, 0u);
    EXPECT_TRUE(gldouble::calls().empty());
    SDL_FreeSurface(surf);
}

TEST(fromsurface, subtex_overwrites_the_texture_in_place_without_a_word) {
    SDL_Surface* surf = surface(2, 1, 32);
    texture_c tex{};
    tex.fromsurface(surf);
    static_cast<Uint8*>(surf->pixels)[5] = 99;
    gldouble::clear();
    EXPECT_EQ(printed([&] { tex.fromsurface_subtex(surf); }), "");
    EXPECT_EQ(gldouble::calls(),
              (texts{"glBindTexture(GL_TEXTURE_2D, 1)",
                     "glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 2, 1, GL_RGBA, GL_UNSIGNED_BYTE, "
                     "ptr)"}));
    EXPECT_EQ(gldouble::image(1).pixels[5], 99);
    SDL_Surface* shallow = surface(2, 1, 24);
    gldouble::clear();
    tex.fromsurface_subtex(shallow);
    EXPECT_EQ(gldouble::calls("glTexSubImage2D"),
              texts{"glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 2, 1, GL_RGB, GL_UNSIGNED_BYTE, "
                    "ptr)"});
    SDL_FreeSurface(shallow);
    SDL_FreeSurface(surf);
}

} // namespace

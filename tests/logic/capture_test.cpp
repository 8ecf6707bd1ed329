#include "main/capture.h"

#include "gldouble.h"
#include "main/video.h"
#include "printed.h"
#include "testport.h"

#include <algorithm>

namespace {

using texts = std::vector<std::string>;
using bytes = std::vector<unsigned char>;

Uint32* pixel(SDL_Surface* surface, int x, int y) {
    return reinterpret_cast<Uint32*>(static_cast<Uint8*>(surface->pixels) + y * surface->pitch) + x;
}

std::vector<int> colour(SDL_Surface* surface, int x, int y) {
    Uint8 r, g, b;
    Uint32 value = 0;
    memcpy(&value,
           static_cast<Uint8*>(surface->pixels) + y * surface->pitch +
               x * surface->format->BytesPerPixel,
           surface->format->BytesPerPixel);
    SDL_GetRGB(value, surface->format, &r, &g, &b);
    return {r, g, b};
}

// A desktop as X servers give it: red in the high byte, no alpha.
SDL_Surface* desktop(int w, int h) {
    return SDL_CreateRGBSurface(SDL_SWSURFACE, w, h, 32, 0xFF0000, 0xFF00, 0xFF, 0);
}

TEST(capture, is_854_by_480_with_32_bits) {
    take_screenshot();
    EXPECT_EQ(screenshot_surface->w, 854);
    EXPECT_EQ(screenshot_surface->h, 480);
    EXPECT_EQ(screenshot_surface->format->BitsPerPixel, 32);
    EXPECT_EQ(testport.calls, texts{"port_grabdesktop(854, 480)"});
}

TEST(capture, is_silent_and_black_without_a_desktop) {
    EXPECT_EQ(printed(take_screenshot), "");
    for (int y = 0; y < 480; ++y)
        for (int x = 0; x < 854; ++x)
            ASSERT_EQ(colour(screenshot_surface, x, y), (std::vector<int>{0, 0, 0}));
}

TEST(capture, holds_the_bottom_row_first) {
    testport.desktop = desktop(854, 480);
    for (int y = 0; y < 480; ++y)
        for (int x = 0; x < 854; ++x)
            *pixel(testport.desktop, x, y) =
                static_cast<Uint32>((x & 0xFF) << 16 | (x >> 8) << 8 | (y & 0xFF));
    take_screenshot();
    for (int y = 0; y < 480; ++y)
        for (int x = 0; x < 854; x += 7)
            ASSERT_EQ(colour(screenshot_surface, x, 479 - y),
                      (std::vector<int>{x & 0xFF, x >> 8, y & 0xFF}));
}

TEST(capture, has_its_bytes_in_the_order_that_gl_reads) {
    testport.desktop = desktop(854, 480);
    *pixel(testport.desktop, 0, 479) = 0x112233;
    take_screenshot();
    const Uint8* first = static_cast<const Uint8*>(screenshot_surface->pixels);
    EXPECT_EQ(bytes(first, first + 3), (bytes{0x11, 0x22, 0x33}));
}

TEST(capture, converts_a_16_bit_desktop) {
    testport.desktop = SDL_CreateRGBSurface(SDL_SWSURFACE, 854, 480, 16, 0xF800, 0x07E0, 0x1F, 0);
    static_cast<Uint16*>(testport.desktop->pixels)[3] = 0xF800;
    take_screenshot();
    const auto red = colour(screenshot_surface, 3, 479);
    EXPECT_GT(red[0], 240);
    EXPECT_EQ(red[1] + red[2], 0);
}

TEST(capture, takes_the_top_left_of_a_larger_desktop_and_leaves_the_rest_black_of_a_smaller) {
    testport.desktop = desktop(1000, 600);
    *pixel(testport.desktop, 853, 479) = 0xFF0000;
    *pixel(testport.desktop, 854, 0) = 0x00FF00;
    take_screenshot();
    EXPECT_EQ(colour(screenshot_surface, 853, 0), (std::vector<int>{255, 0, 0}));
    SDL_FreeSurface(testport.desktop);
    SDL_FreeSurface(screenshot_surface);
    testport.desktop = desktop(100, 100);
    *pixel(testport.desktop, 99, 99) = 0xFF0000;
    take_screenshot();
    EXPECT_EQ(colour(screenshot_surface, 99, 380), (std::vector<int>{255, 0, 0}));
    EXPECT_EQ(colour(screenshot_surface, 853, 0), (std::vector<int>{0, 0, 0}));
}

// ---- frame grabs ----

// A framebuffer 2 wide and 2 high, as GL gives it: bottom row first, R, G, B, A.
void setframebuffer(const bytes& rgba) {
    video_w = 2;
    video_h = 2;
    gldouble::answers.framebuffer = rgba;
}

const bytes fourcolours{0, 0, 255, 9, 255, 255, 255, 9, 255, 0, 0, 9, 0, 255, 0, 9};

void setgrey(int value) {
    setframebuffer(bytes(16, static_cast<unsigned char>(value)));
}

TEST(grab, reads_the_framebuffer_top_row_first) {
    setframebuffer(fourcolours);
    SDL_Surface* shot = get_screenshot();
    EXPECT_EQ(gldouble::calls(), texts{"glReadPixels(0, 0, 2, 2, GL_RGBA, GL_UNSIGNED_BYTE)"});
    EXPECT_EQ(shot->format->BitsPerPixel, 32);
    EXPECT_EQ(shot->format->Rmask, 0xFFu);
    EXPECT_EQ(shot->format->Gmask, 0xFF00u);
    EXPECT_EQ(shot->format->Bmask, 0xFF0000u);
    EXPECT_EQ(shot->format->Amask, 0u);
    EXPECT_EQ(colour(shot, 0, 0), (std::vector<int>{255, 0, 0}));
    EXPECT_EQ(colour(shot, 1, 0), (std::vector<int>{0, 255, 0}));
    EXPECT_EQ(colour(shot, 0, 1), (std::vector<int>{0, 0, 255}));
    EXPECT_EQ(colour(shot, 1, 1), (std::vector<int>{255, 255, 255}));
    SDL_FreeSurface(shot);
}

TEST(grab, saves_the_framebuffer_as_a_picture) {
    scratch_c scratch;
    setframebuffer(fourcolours);
    char name[] = "shot.bmp";
    save_screenshot(name);
    SDL_Surface* saved = SDL_LoadBMP("shot.bmp");
    ASSERT_NE(saved, nullptr);
    EXPECT_EQ(saved->w, 2);
    EXPECT_EQ(colour(saved, 0, 0), (std::vector<int>{255, 0, 0}));
    EXPECT_EQ(colour(saved, 1, 0), (std::vector<int>{0, 255, 0}));
    EXPECT_EQ(colour(saved, 0, 1), (std::vector<int>{0, 0, 255}));
    SDL_FreeSurface(saved);
}

TEST(grab, does_not_notice_that_it_cannot_save) {
    scratch_c scratch;
    setframebuffer(fourcolours);
    char name[] = "nosuch/shot.bmp";
    EXPECT_EQ(printed([&] { save_screenshot(name); }), "");
}

texts pictures() {
    texts names;
    for (auto& entry : std::filesystem::directory_iterator("."))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

int grey(const char* name) {
    SDL_Surface* saved = SDL_LoadBMP(name);
    if (!saved)
        return -1;
    const int value = colour(saved, 1, 1)[0];
    SDL_FreeSurface(saved);
    return value;
}

TEST(blur, of_four_averages_every_four_frames_into_one_numbered_picture) {
    scratch_c scratch;
    const int values[] = {0, 1, 2, 4, 100, 100, 200, 203};
    for (int frame = 0; frame < 8; ++frame) {
        setgrey(values[frame]);
        screenshot_blur(frame, 4);
        EXPECT_EQ(pictures().size(), static_cast<size_t>((frame + 1) / 4));
    }
    EXPECT_EQ(pictures(), (texts{"ss00000000.bmp", "ss00000001.bmp"}));
    EXPECT_EQ(grey("ss00000000.bmp"), 1) << "7 / 4, cut";
    EXPECT_EQ(grey("ss00000001.bmp"), 150) << "603 / 4, cut";
}

TEST(blur, of_one_writes_each_frame_under_its_own_number) {
    scratch_c scratch;
    for (int frame : {0, 1, 12345678}) {
        setgrey(frame % 256);
        screenshot_blur(frame, 1);
    }
    EXPECT_EQ(pictures(), (texts{"ss00000000.bmp", "ss00000001.bmp", "ss12345678.bmp"}));
    EXPECT_EQ(grey("ss12345678.bmp"), 12345678 % 256);
}

TEST(blur, of_two_and_three_count_their_own_groups) {
    scratch_c scratch;
    for (int frame = 0; frame < 6; ++frame) {
        setgrey(10 * frame);
        screenshot_blur(frame, 3);
    }
    EXPECT_EQ(grey("ss00000000.bmp"), 10);
    EXPECT_EQ(grey("ss00000001.bmp"), 40);
    for (int frame = 4; frame < 6; ++frame) {
        setgrey(frame);
        screenshot_blur(frame, 2);
    }
    EXPECT_EQ(grey("ss00000002.bmp"), 4) << "9 / 2, cut";
}

TEST(blur, of_a_group_begun_in_its_middle_writes_nothing_and_starts_again) {
    scratch_c scratch;
    for (int frame = 2; frame < 8; ++frame) {
        setgrey(10 * frame);
        screenshot_blur(frame, 4);
    }
    EXPECT_EQ(pictures(), texts{"ss00000001.bmp"});
    EXPECT_EQ(grey("ss00000001.bmp"), 55);
    screenshot_blur(11, 4);
    EXPECT_EQ(pictures().size(), 1u) << "what was averaged is gone";
}

TEST(blur, of_counts_and_frames_that_cannot_be_does_nothing) {
    scratch_c scratch;
    for (int framecount : {0, -1, 5, 1000})
        for (int frame = 0; frame < 6; ++frame)
            screenshot_blur(frame, framecount);
    screenshot_blur(-1, 4);
    screenshot_blur(-1, 1);
    EXPECT_TRUE(pictures().empty());
}

TEST(blur, averages_each_colour_of_each_pixel_and_keeps_the_picture_upright) {
    scratch_c scratch;
    setframebuffer(fourcolours);
    screenshot_blur(0, 2);
    setframebuffer({0, 0, 0, 0, 0, 0, 0, 0, 255, 100, 0, 0, 0, 0, 0, 0});
    screenshot_blur(1, 2);
    SDL_Surface* saved = SDL_LoadBMP("ss00000000.bmp");
    ASSERT_NE(saved, nullptr);
    EXPECT_EQ(colour(saved, 0, 0), (std::vector<int>{255, 50, 0}));
    EXPECT_EQ(colour(saved, 1, 0), (std::vector<int>{0, 127, 0}));
    EXPECT_EQ(colour(saved, 0, 1), (std::vector<int>{0, 0, 127}));
    SDL_FreeSurface(saved);
}

} // namespace

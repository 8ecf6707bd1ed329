#include "decoder.h"

#include "../scratch.h"
#include "effects.h"
#include "services.h"
#include "showlog.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mutex>
#include <SDL_image.h>
#include <thread>

namespace {

using namespace testing;
using showlog::frames;

void (*ondecode)(const std::string& fn) = nullptr;
std::mutex noting;
std::vector<std::string> decoded;

} // namespace

extern "C" SDL_Surface* IMG_Load(const char* fn) {
    if (ondecode)
        ondecode(fn);
    static const auto original =
        reinterpret_cast<decltype(&IMG_Load)>(dlsym(RTLD_NEXT, "IMG_Load"));
    SDL_Surface* surface = original(fn);
    const std::lock_guard<std::mutex> lock(noting);
    decoded.push_back(fn);
    return surface;
}

namespace {

// A picture as wide as its file is to be large; SDL_image looks at the content, not at the name.
void writepicture(const char* fn, int width) {
    SDL_Surface* surface = SDL_CreateRGBSurface(0, width, 1, 24, 0, 0, 0, 0);
    SDL_SaveBMP(surface, fn);
    SDL_FreeSurface(surface);
}

void writefolder() {
    std::filesystem::create_directory("pictures");
    writepicture("pictures/a.png", 20);
    writepicture("pictures/b.jpg", 50);
    writepicture("pictures/c.png", 30);
    writepicture("pictures/d.bmp", 40);
}

int widthof(const char* fn) {
    SDL_Surface* surface = decoder_load(fn);
    const int width = surface ? surface->w : 0;
    SDL_FreeSurface(surface);
    return width;
}

TEST(decoder, decodes_the_pictures_of_a_folder_the_largest_first) {
    scratch_c scratch;
    writefolder();
    services.threads = threads_t::atonce;
    decoder_begin("pictures");
    EXPECT_THAT(decoded, ElementsAre("pictures/b.jpg", "pictures/c.png", "pictures/a.png"));
    std::filesystem::remove_all("pictures");
    EXPECT_EQ(widthof("pictures/a.png"), 20);
    EXPECT_EQ(widthof("pictures/b.jpg"), 50);
    EXPECT_EQ(widthof("pictures/c.png"), 30);
    EXPECT_EQ(decoded.size(), 3u);
}

TEST(decoder, gives_each_picture_once_as_whoever_asks_frees_it) {
    scratch_c scratch;
    writefolder();
    services.threads = threads_t::atonce;
    decoder_begin("pictures");
    SDL_Surface* first = decoder_load("pictures/a.png");
    SDL_Surface* second = decoder_load("pictures/a.png");
    EXPECT_EQ(second->w, 20);
    EXPECT_NE(first, second);
    SDL_FreeSurface(first);
    SDL_FreeSurface(second);
    EXPECT_EQ(decoded.size(), 4u);
}

TEST(decoder, decodes_what_is_asked_for_where_there_is_no_thread) {
    scratch_c scratch;
    writefolder();
    services.threads = threads_t::none;
    decoder_begin("pictures");
    EXPECT_TRUE(decoded.empty());
    EXPECT_EQ(widthof("pictures/a.png"), 20);
    EXPECT_EQ(widthof("pictures/d.bmp"), 40);
}

TEST(decoder, does_without_a_folder) {
    scratch_c scratch;
    writepicture("a.png", 20);
    decoder_begin("pictures");
    EXPECT_EQ(widthof("a.png"), 20);
    EXPECT_EQ(widthof("pictures/a.png"), 0);
}

TEST(decoder, says_of_what_is_no_picture_that_it_is_none) {
    scratch_c scratch;
    std::filesystem::create_directories("pictures/folder.png");
    std::filesystem::create_symlink("nowhere", "pictures/gone.jpg");
    services.threads = threads_t::atonce;
    decoder_begin("pictures");
    EXPECT_THAT(decoded, UnorderedElementsAre("pictures/folder.png", "pictures/gone.jpg"));
    EXPECT_EQ(widthof("pictures/gone.jpg"), 0);
    EXPECT_EQ(widthof("pictures/folder.png"), 0);
}

std::atomic<bool> begun, asked;

TEST(decoder, does_not_wait_for_the_thread_but_for_what_it_is_at) {
    scratch_c scratch;
    writefolder();
    ondecode = [](const std::string& fn) {
        if (fn != "pictures/b.jpg")
            return;
        begun = true;
        while (!asked)
            std::this_thread::yield();
    };
    decoder_begin("pictures");
    while (!begun)
        std::this_thread::yield();
    EXPECT_EQ(widthof("pictures/a.png"), 20);
    EXPECT_THAT(decoded, ElementsAre("pictures/a.png"));
    asked = true;
    EXPECT_EQ(widthof("pictures/b.jpg"), 50);
    EXPECT_EQ(widthof("pictures/c.png"), 30);
    EXPECT_EQ(decoded.size(), 3u);
}

TEST(decoder, ends_before_the_process) {
    scratch_c scratch;
    writefolder();
    ondecode = [](const std::string& fn) {
        begun = true;
        const auto start = std::chrono::steady_clock::now(); // nothing sleeps in these tests
        while (std::chrono::steady_clock::now() - start < std::chrono::milliseconds(100))
            std::this_thread::yield();
        if (fn == "pictures/a.png")
            fprintf(stderr, "the last\n");
    };
    EXPECT_EXIT(
        {
            decoder_begin("pictures");
            while (!begun)
                std::this_thread::yield();
            exit(3);
        },
        ExitedWithCode(3), "the last");
}

TEST(decoder, decodes_the_shows_pictures_ahead_and_none_in_vain) {
    services.threads = threads_t::atonce;
    std::set<std::string> all;
    for (const effectentry_s& entry : effectlist)
        all.insert(entry.name);
    showlog::load(all);
    EXPECT_EQ(decoded.at(0), "gfx/city08_diffuse.png") << "the largest, not the first to load";
    showlog::play(0.0f);
    std::vector<std::string> lines = showlog::loading.lines;
    lines.insert(lines.end(), frames.front().lines.begin(), frames.front().lines.end());
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string& line) { return line.find("texture bpp") == 0; }),
              static_cast<std::ptrdiff_t>(decoded.size()));
}

} // namespace

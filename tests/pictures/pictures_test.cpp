// Plays the show once and compares it with the blessed pictures. A picture's file name is its beat:
// to bless one, look at it and keep it (see bless).
#include "compare.h"
#include "main/clock.h"
#include "playback.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>

namespace {

constexpr float wakeup_beats = 0.3f;    // drawn this long before a picture is compared
constexpr float neighbour_beats = 1.0f; // a moment later that must look different

// Who draws slowly, such as an emulated processor, names the beats in TARVISK_BEATS.
bool isasked(const std::string& beat) {
    const char* asked = std::getenv("TARVISK_BEATS");
    return !asked || (" " + std::string(asked) + " ").find(" " + beat + " ") != std::string::npos;
}

std::map<float, picture_s> blessedpictures() {
    std::map<float, picture_s> blessed;
    for (const auto& file : std::filesystem::directory_iterator(PICTURE_FOLDER))
        if (file.path().extension() == ".png" && isasked(file.path().stem()))
            blessed[std::stof(file.path().stem())] = picture_read(file.path());
    return blessed;
}

playback_s small() {
    playback_s playback;
    playback.width = 427;
    playback.height = 240;
    return playback;
}

void expectmatch(float beat, const picture_s& expected, const picture_s& got) {
    const double different = picture_difference(expected, got);
    if (picture_matches(expected, got))
        return;
    const std::string file = std::string(MISMATCH_FOLDER) + "/" + std::to_string(beat) + ".png";
    std::filesystem::create_directories(MISMATCH_FOLDER);
    picture_writemismatch(file, expected, got);
    ADD_FAILURE() << "beat " << beat << ": " << different * 100
                  << " % of the pixels differ; expected, got and difference in " << file;
}

TEST(pictures, show_what_was_blessed) {
    const std::map<float, picture_s> blessed = blessedpictures();
    ASSERT_GE(blessed.size(), 3u);
    playback_load(small());
    auto next = blessed.begin();
    playback_run([&] {
        if (beatgrid >= next->first) {
            expectmatch(next->first, next->second, picture_grab());
            ++next;
        }
        playback_skim(next != blessed.end() && beatgrid < next->first - wakeup_beats);
        return next != blessed.end();
    });
}

// The comparison can fail: a beat later, the first few blessed moments look different.
TEST(pictures, tell_a_neighbouring_beat_apart) {
    std::map<float, picture_s> blessed = blessedpictures();
    blessed.erase(blessed.lower_bound(40.0f), blessed.end());
    ASSERT_GE(blessed.size(), 3u);
    playback_load(small());
    auto next = blessed.begin();
    playback_run([&] {
        if (beatgrid >= next->first + neighbour_beats) {
            EXPECT_FALSE(picture_matches(next->second, picture_grab())) << "beat " << next->first;
            ++next;
        }
        return next != blessed.end();
    });
}

} // namespace

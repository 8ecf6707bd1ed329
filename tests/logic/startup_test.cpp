#include "main/startup.h"

#include "effects.h"
#include "gldouble.h"
#include "main/loop.h"
#include "main/show.h"
#include "printed.h"
#include "services.h"
#include "testport.h"
#include "wake.h"

#include <algorithm>
#include <csignal>
#include <unistd.h>

namespace {

using texts = std::vector<std::string>;

// ---- command line ----

std::string read(texts arguments) {
    arguments.insert(arguments.begin(), "tarvisk");
    std::vector<char*> argv;
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    return printed([&] { read_arguments(static_cast<int>(argv.size()), argv.data()); });
}

TEST(arguments, defaults) {
    EXPECT_EQ(read({}), "");
    EXPECT_EQ(config_width, 854);
    EXPECT_EQ(config_height, 480);
    EXPECT_EQ(config_videoflags, 0);
    EXPECT_EQ(config_otherflags, 1);
    EXPECT_EQ(config_stencilsize, 0);
    EXPECT_EQ(timeval_skip, 0.0f);
    EXPECT_FALSE(debugmode);
    EXPECT_EQ(demoname, nullptr);
    EXPECT_EQ(song_file, nullptr);
    EXPECT_EQ(music, nullptr);
    EXPECT_EQ(keystate, nullptr);
    EXPECT_EQ(beat_first, 0.0f);
    EXPECT_EQ(beat_last, 10.0f);
    EXPECT_EQ(beat_lastnum, 319.0f);
}

TEST(arguments, fs_sets_the_full_screen_bit) {
    config_videoflags = 4;
    EXPECT_EQ(read({"--fs"}), "fs!\n");
    EXPECT_EQ(static_cast<unsigned>(config_videoflags), 0x80000004u);
}

TEST(arguments, fullhd) {
    EXPECT_EQ(read({"--fullhd"}), "fullhd!\n");
    EXPECT_EQ(config_width, 1920);
    EXPECT_EQ(config_height, 1080);
}

TEST(arguments, half_hd) {
    EXPECT_EQ(read({"--720p"}), "half-hd!\n");
    EXPECT_EQ(config_width, 1280);
    EXPECT_EQ(config_height, 720);
}

TEST(arguments, the_later_size_wins) {
    EXPECT_EQ(read({"--fullhd", "--720p"}), "fullhd!\nhalf-hd!\n");
    EXPECT_EQ(config_width, 1280);
    EXPECT_EQ(config_height, 720);
}

TEST(arguments, nomusic_clears_its_bit_alone) {
    config_otherflags = 7;
    EXPECT_EQ(read({"--nomusic"}), "no music!\n");
    EXPECT_EQ(config_otherflags, 6);
}

TEST(arguments, skip_takes_the_next_argument_as_seconds) {
    EXPECT_EQ(read({"--skip", "30", "--nomusic"}), "skipping time to 30.00\nno music!\n");
    EXPECT_EQ(timeval_skip, 30.0f);
    EXPECT_EQ(config_otherflags & 1, 0);
    EXPECT_TRUE(debugmode);
}

TEST(arguments, skip_swallows_an_option) {
    EXPECT_EQ(read({"--skip", "--fs"}), "skipping time to 0.00\n");
    EXPECT_EQ(timeval_skip, 0.0f);
    EXPECT_EQ(config_videoflags, 0);
    EXPECT_TRUE(debugmode);
}

TEST(arguments, skip_swallows_another_skip) {
    EXPECT_EQ(read({"--skip", "--skip", "12"}), "skipping time to 0.00\n");
    EXPECT_EQ(timeval_skip, 0.0f);
}

TEST(arguments, skip_reads_as_c_does) {
    EXPECT_EQ(read({"--skip", " -1.255e1x"}), "skipping time to -12.55\n");
    EXPECT_EQ(read({"--skip", ""}), "skipping time to 0.00\n");
    EXPECT_EQ(read({"--skip", "5", "--skip", "7.125"}),
              "skipping time to 5.00\nskipping time to 7.12\n");
    EXPECT_EQ(timeval_skip, 7.125f);
}

TEST(arguments, skip_at_the_end_only_sets_debugmode) {
    EXPECT_EQ(read({"--skip"}), "");
    EXPECT_TRUE(debugmode);
    EXPECT_EQ(timeval_skip, 0.0f);
}

TEST(arguments, unknown_ones_are_ignored_silently) {
    EXPECT_EQ(read({"-x", "--FS", "--fs=1", "--fullhd ", " --720p", "--nomusi", "", "30", "--"}),
              "");
    EXPECT_EQ(config_videoflags, 0);
    EXPECT_EQ(config_width, 854);
    EXPECT_EQ(config_otherflags, 1);
    EXPECT_FALSE(debugmode);
}

// ---- music ----

TEST(song, is_opened_and_loaded_then_played_from_the_skip) {
    song_file = "tarvisk.ogg";
    timeval_skip = 30.0f;
    EXPECT_EQ(printed(startmusic), "initting music\n");
    EXPECT_EQ(testport.calls,
              (texts{"Mix_OpenAudio(44100, 32784, 2, 4096)", "Mix_LoadMUS(tarvisk.ogg)"}));
    EXPECT_NE(music, nullptr);
    testport.calls.clear();
    EXPECT_EQ(printed(realstartmusic), "");
    EXPECT_EQ(testport.calls, (texts{"Mix_PlayMusic(song, 0)", "Mix_SetMusicPosition()"}));
    EXPECT_EQ(services.position, 30.0);
}

TEST(song, is_loaded_but_not_played_with_nomusic) {
    song_file = "tarvisk.ogg";
    read({"--nomusic", "--skip", "12.5"});
    startmusic();
    EXPECT_NE(music, nullptr);
    testport.calls.clear();
    realstartmusic();
    EXPECT_EQ(testport.calls, texts{"Mix_SetMusicPosition()"});
    EXPECT_EQ(services.position, 12.5);
}

TEST(song, that_is_missing_is_reported_and_played_as_nothing) {
    song_file = "tarvisk.ogg";
    services.song = false;
    EXPECT_EQ(printed(startmusic), "initting music\nguess what: no such song\n");
    EXPECT_EQ(music, nullptr);
    testport.calls.clear();
    realstartmusic();
    EXPECT_EQ(testport.calls, (texts{"Mix_PlayMusic(null, 0)", "Mix_SetMusicPosition()"}));
}

TEST(song, that_is_not_configured_opens_no_device) {
    EXPECT_EQ(printed(startmusic), "");
    EXPECT_TRUE(testport.calls.empty());
    realstartmusic();
    EXPECT_EQ(testport.calls, (texts{"Mix_PlayMusic(null, 0)", "Mix_SetMusicPosition()"}));
    EXPECT_EQ(services.position, 0.0);
}

TEST(song, follows_the_clock_again_after_the_process_was_stopped) {
    song_file = "tarvisk.ogg";
    startmusic();
    realstartmusic();
    testport.calls.clear();
    timeval = 81.5f;
    followstop();
    EXPECT_TRUE(testport.calls.empty());
    raise(SIGCONT);
    followstop();
    followstop();
    EXPECT_EQ(testport.calls, texts{"Mix_SetMusicPosition()"});
    EXPECT_EQ(services.position, 81.5);
}

TEST(song_death, without_a_device_ends_the_show_with_a_line_on_standard_output) {
    song_file = "tarvisk.ogg";
    services.audio = false;
    auto swapped = [] { // standard output becomes what the death test reads, and the other way
        const int out = dup(1);
        dup2(2, 1);
        dup2(out, 2);
        startmusic();
    };
    EXPECT_EXIT(swapped(), testing::ExitedWithCode(1),
                "^Error initializing SDL_mixer: no such device\n$");
}

TEST(song, stops_by_halting_and_freeing) {
    song_file = "tarvisk.ogg";
    startmusic();
    testport.calls.clear();
    stopmusic();
    EXPECT_EQ(testport.calls, (texts{"Mix_HaltMusic()", "Mix_FreeMusic(song)"}));
}

// ---- the whole start ----

struct curtain_s {}; // thrown to leave the show, which never returns

// Starts the show and leaves it at its first frame. Returns what it said on standard error.
std::string start(texts arguments) {
    arguments.insert(arguments.begin(), "tarvisk");
    std::vector<char*> argv;
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    testport.onpresent = [] {
        if (testport.presents ==
            std::size(effectlist) + 1) // the capture, then one between two loads
            throw curtain_s();
    };
    return printed(
        [&] { EXPECT_THROW(start_show(static_cast<int>(argv.size()), argv.data()), curtain_s); });
}

// Where `call` stands among the recorded calls; at their end when it is not there.
long at(const std::string& call) {
    return std::find(testport.calls.begin(), testport.calls.end(), call) - testport.calls.begin();
}

TEST(start, goes_in_its_order) {
    start({});
    const texts calls = testport.calls;
    const texts order{"port_grabdesktop(854, 480)",
                      "port_beforesdl()",
                      "port_setvideomode(0, 0, 0, 2147483712)",
                      "port_present()",
                      "dbus_bus_get(1, error)",
                      "SDL_AddTimer(2000)",
                      "Mix_OpenAudio(44100, 32784, 2, 4096)",
                      "Mix_LoadMUS(tarvisk.ogg)",
                      "Mix_PlayMusic(song, 0)",
                      "Mix_SetMusicPosition()"};
    for (size_t i = 0; i < order.size(); ++i) {
        EXPECT_LT(at(order[i]), static_cast<long>(calls.size())) << order[i];
        if (i > 0) {
            EXPECT_LT(at(order[i - 1]), at(order[i])) << order[i];
        }
    }
    EXPECT_EQ(calls.back(), "port_present()") << "the show's first frame";
}

TEST(start, presents_after_the_capture_and_between_two_loads) {
    start({});
    const auto loaded = testport.calls.begin() + at("Mix_OpenAudio(44100, 32784, 2, 4096)");
    EXPECT_EQ(std::count(testport.calls.begin(), loaded, "port_present()"), std::size(effectlist));
    const auto timer = testport.calls.begin() + at("SDL_AddTimer(2000)");
    EXPECT_EQ(std::count(testport.calls.begin(), timer, "port_present()"), 1);
}

TEST(start, shows_the_capture_before_anything_else_is_drawn) {
    testport.onpresent = [] {
        ASSERT_EQ(gldouble::draws().size(), 1u);
        EXPECT_EQ(gldouble::image(gldouble::draws()[0].textures.at(0)).height, 480);
        EXPECT_EQ(gldouble::image(gldouble::draws()[0].textures.at(0)).width, 854);
        EXPECT_TRUE(services.timers.empty());
        throw curtain_s();
    };
    char name[] = "tarvisk";
    char* argv[] = {name};
    EXPECT_THROW(start_show(1, argv), curtain_s);
}

TEST(start, reads_the_options_over_the_directors_configuration_before_the_window) {
    const std::string said = start({"--skip", "75", "--nomusic", "--fullhd"});
    EXPECT_EQ(said.substr(0, said.find("major version")),
              "skipping time to 75.00\nno music!\nfullhd!\ninitting GLES\n");
    EXPECT_LT(at("port_setattribute(7, 8)"), at("port_setvideomode(0, 0, 0, 2147483712)"));
    EXPECT_EQ(services.position, 75.0);
    EXPECT_EQ(at("Mix_PlayMusic(song, 0)"), static_cast<long>(testport.calls.size()));
}

// What the process has at the moment when it first shows something.
TEST(start, has_the_keyboard_and_no_pointer_when_it_shows_the_capture) {
    testport.onpresent = [] {
        EXPECT_EQ(keystate, SDL_GetKeyState(nullptr));
        EXPECT_EQ(SDL_ShowCursor(SDL_QUERY), 0);
        throw curtain_s();
    };
    char name[] = "tarvisk";
    char* argv[] = {name};
    EXPECT_THROW(start_show(1, argv), curtain_s);
}

TEST(start, starts_timers_sound_and_video_and_no_other_part_of_sdl) {
    start({});
    const Uint32 parts = SDL_INIT_TIMER | SDL_INIT_AUDIO | SDL_INIT_VIDEO;
    EXPECT_EQ(SDL_WasInit(parts), parts);
    EXPECT_EQ(SDL_WasInit(SDL_INIT_CDROM | SDL_INIT_JOYSTICK), 0u);
}

long long microseconds(const vxqtime_t& time) {
    return time.tv_sec * 1000000LL + time.tv_usec;
}

TEST(start, starts_the_clock_before_it_loads) {
    static long long shown;
    testport.onpresent = [] {
        if (testport.presents == 1)
            shown = testport.now += 700000; // the capture takes its time
        if (testport.presents == 2) {
            EXPECT_EQ(microseconds(timestart), shown + testport.presentstep);
            EXPECT_EQ(microseconds(framestart), microseconds(timestart));
            throw curtain_s();
        }
    };
    char name[] = "tarvisk";
    char* argv[] = {name};
    EXPECT_THROW(start_show(1, argv), curtain_s);
}

TEST(start, starts_the_clock_behind_the_loading_and_before_the_song) {
    services.loadtime = 3000000;
    services.playtime = 400000;
    start({});
    EXPECT_EQ(microseconds(timestart), services.loadedat);
    EXPECT_EQ(microseconds(framestart), services.loadedat);
}

// Plays unseen from the first frame on; ends with the first frame that is shown again.
void startunseen(float beat) {
    testport.onpresent = [=] {
        const long long loaded = static_cast<long long>(std::size(effectlist)) + 1;
        if (testport.presents == loaded)
            show_playunseen(
                beat, [] {}, [] { testport.calls.push_back("there"); });
        if (testport.presents == loaded + 1)
            throw curtain_s();
    };
    char name[] = "tarvisk";
    char* argv[] = {name};
    EXPECT_THROW(start_show(1, argv), curtain_s);
}

TEST(start, after_playing_unseen_the_music_goes_on_where_the_picture_does) {
    startunseen(40.0f);
    EXPECT_GE(beatgrid, 40.0f);
    EXPECT_FLOAT_EQ(static_cast<float>(services.position), timeval);
    const auto halted = testport.calls.begin() + at("Mix_HaltMusic()");
    EXPECT_EQ(texts(halted, testport.calls.end()),
              (texts{"Mix_HaltMusic()", "Mix_PlayMusic(song, 0)", "Mix_SetMusicPosition()", "there",
                     "port_present()"}));
}

TEST(start, counts_no_loading_time_as_show_time) {
    start({});
    EXPECT_GT(services.loadedat, 0);
    const long long zero = timestart.tv_sec * 1000000LL + timestart.tv_usec;
    EXPECT_EQ(zero, services.loadedat);
    EXPECT_EQ(framestart.tv_usec, timestart.tv_usec);
}

TEST(start, has_the_songs_grid_and_name) {
    start({});
    EXPECT_STREQ(song_file, "tarvisk.ogg");
    EXPECT_EQ(beat_first, 0.128f);
    EXPECT_EQ(beat_last, 5.207f);
    EXPECT_EQ(beat_lastnum, 8.0f);
}

TEST(start, names_the_window) {
    start({});
    char *title = nullptr, *icon = nullptr;
    SDL_WM_GetCaption(&title, &icon);
    EXPECT_STREQ(title, "VXQ Demobase");
    EXPECT_STREQ(icon, "VXQ Demobase");
}

TEST(start, keeps_a_name_that_was_given) {
    demoname = "another";
    start({});
    char *title = nullptr, *icon = nullptr;
    SDL_WM_GetCaption(&title, &icon);
    EXPECT_STREQ(title, "another");
}

TEST(start, reports_rates_every_two_seconds_and_keeps_awake) {
    services.bus = true;
    start({});
    ASSERT_EQ(services.timers.size(), 2u);
    EXPECT_EQ(services.timers[0].callback, heratys);
    EXPECT_EQ(services.timers[1].interval, 2000u);
    EXPECT_EQ(services.timers[1].callback, fps_tick);
}

TEST(start, hands_out_the_keyboard) {
    start({});
    EXPECT_EQ(keystate, SDL_GetKeyState(nullptr));
}

} // namespace

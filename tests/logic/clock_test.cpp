#include "main/loop.h"

#include "gldouble.h"
#include "main/startup.h"
#include "main/video.h"
#include "printed.h"
#include "services.h"
#include "sync.h"
#include "testport.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <gmock/gmock.h>

namespace {

using testing::MatchesRegex;
using texts = std::vector<std::string>;

// A running clock at zero whose frames take `step` microseconds.
void startclock(long long step = 20000) {
    testport_startsdl();
    testport.presentstep = step;
    beat_first = 0.128f;
    beat_last = 5.207f;
    beat_lastnum = 8.0f;
    time_init();
}

void frame(long long microseconds) {
    testport.presentstep = microseconds;
    system_crap();
}

void push(Uint8 type) {
    SDL_Event event{};
    event.type = type;
    SDL_PushEvent(&event);
}

void pushkey(SDLKey key, Uint8 type = SDL_KEYDOWN) {
    SDL_Event event{};
    event.type = type;
    event.key.keysym.sym = key;
    SDL_PushEvent(&event);
}

void pushbutton(Uint8 button, Uint8 type = SDL_MOUSEBUTTONDOWN) {
    SDL_Event event{};
    event.type = type;
    event.button.button = button;
    SDL_PushEvent(&event);
}

void pushresize(int w, int h) {
    SDL_Event event{};
    event.type = SDL_VIDEORESIZE;
    event.resize.w = w;
    event.resize.h = h;
    SDL_PushEvent(&event);
}

int count(const std::string& text, const std::string& line) {
    int found = 0;
    for (size_t at = text.find(line); at != std::string::npos; at = text.find(line, at + 1))
        ++found;
    return found;
}

// ---- time ----

TEST(clock, time_init_makes_now_the_start) {
    testport.now = 7123456;
    time_init();
    EXPECT_EQ(timestart.tv_sec, 7);
    EXPECT_EQ(timestart.tv_usec, 123456);
    EXPECT_EQ(framestart.tv_sec, 7);
    EXPECT_EQ(framestart.tv_usec, 123456);
}

TEST(clock, vxqtimersub_borrows_a_second) {
    const vxqtime_t a{10, 100}, b{8, 200};
    vxqtime_t result;
    vxqtimersub(&a, &b, &result);
    EXPECT_EQ(result.tv_sec, 1);
    EXPECT_EQ(result.tv_usec, 999900);
    vxqtimersub(&b, &a, &result);
    EXPECT_EQ(result.tv_sec, -2);
    EXPECT_EQ(result.tv_usec, 100);
    vxqtimersub(&a, &a, &result);
    EXPECT_EQ(result.tv_sec, 0);
    EXPECT_EQ(result.tv_usec, 0);
}

TEST(clock, starts_before_any_frame_at_zero) {
    EXPECT_EQ(timeval, 0.0f);
    EXPECT_EQ(beatgrid, 0.0f);
    EXPECT_EQ(frameskip, 0);
}

TEST(clock, a_65_ms_frame_is_four_ticks_and_owes_15_ms) {
    startclock();
    frame(65000);
    EXPECT_EQ(frameskip, 4);
    EXPECT_FLOAT_EQ(frametime, 0.065f);
    EXPECT_NEAR(frameskiptime, -0.015f, 1e-7f);
}

TEST(clock, the_balance_carries_over) {
    startclock();
    frame(65000);
    frame(14000);
    EXPECT_EQ(frameskip, 0);
    frame(2000);
    EXPECT_EQ(frameskip, 1);
}

TEST(clock, the_ticks_add_up_to_the_time) {
    startclock();
    long long elapsed = 0, ticks = 0;
    for (int i = 0; i < 5000; ++i) {
        const long long length = 20000 + (i * 7919) % 33000;
        frame(length);
        elapsed += length;
        ticks += frameskip;
        EXPECT_GE(frameskip, 1);
        EXPECT_GT(frameskiptime, -0.02f);
        EXPECT_LE(frameskiptime, 0.0f);
    }
    EXPECT_NEAR(static_cast<double>(ticks), static_cast<double>(elapsed) / 20000.0, 2.0);
}

TEST(clock, frames_of_exactly_20_ms_are_one_tick_each) {
    startclock();
    for (int i = 0; i < 3000; ++i) {
        frame(20000);
        ASSERT_EQ(frameskip, 1) << "frame " << i;
    }
}

TEST(clock, holds_a_frame_until_20_ms_have_passed_since_the_last) {
    startclock();
    testport.framehold = 0.02f;
    testport.readstep = 1000;
    const long long before = testport.now;
    frame(5000);
    EXPECT_GE(frametime, 0.02f);
    EXPECT_LT(frametime, 0.0225f);
    EXPECT_GE(testport.now - before, 20000);
    EXPECT_LT(testport.now - before, 23000);
}

TEST(clock, holds_a_frame_by_asking_for_the_time_and_never_sleeps) {
    startclock();
    testport.framehold = 0.02f;
    testport.readstep = 10;
    testport.calls.clear();
    frame(5000);
    EXPECT_EQ(services.delays, 0);
    EXPECT_EQ(testport.calls, texts{"port_present()"});
}

TEST(clock, does_not_hold_a_slow_frame) {
    startclock();
    testport.framehold = 0.02f;
    testport.readstep = 1;
    frame(30000);
    EXPECT_LT(frametime, 0.0301f);
}

TEST(clock, measures_frames_from_end_of_hold_to_end_of_hold) {
    startclock();
    testport.now += 30000; // drawing
    frame(10000);          // presenting
    EXPECT_FLOAT_EQ(frametime, 0.04f);
    EXPECT_EQ(frameskip, 2);
    EXPECT_EQ(framestart.tv_usec, frameend.tv_usec);
}

// ---- a clock that is set in mid-show ----

constexpr long long hour = 3600 * 1000000LL;

// A minute of the show, then a step of the clock while a frame is presented, then another minute:
// the ticks and the demo time of the whole.
struct stepped_s {
    long long ticks = 0;
    int mostskip = 0;
    float end = 0.0f;
    std::string said;
};

stepped_s playacross(long long step) {
    testport.now = 50 * hour;
    startclock();
    testport.framehold = 0.02f;
    testport.readstep = 100;
    stepped_s result;
    result.said = printed([&] {
        for (int i = 0; i < 6000; ++i) {
            const float before = timeval;
            if (i == 3000)
                testport.set += step;
            frame(1000);
            EXPECT_GE(timeval, before);
            EXPECT_LT(timeval, before + 0.05f);
            EXPECT_GE(frameskip, 1);
            result.ticks += frameskip;
            result.mostskip = std::max(result.mostskip, frameskip);
        }
    });
    result.end = timeval;
    return result;
}

void expectunbroken(const stepped_s& played) {
    EXPECT_NEAR(played.end, 120.0f, 1.0f);
    EXPECT_NEAR(static_cast<float>(played.ticks), played.end * 50.0f, 3.0f);
    EXPECT_LE(played.mostskip, 2);
}

TEST(clock, goes_on_where_it_was_when_set_back_by_an_hour) {
    const stepped_s played = playacross(-hour);
    expectunbroken(played);
    EXPECT_THAT(played.said,
                MatchesRegex("the clock was set at 6.\\...: zero moved by -3600.00 s\n"));
}

TEST(clock, goes_on_where_it_was_when_set_forward_by_an_hour) {
    const stepped_s played = playacross(hour);
    expectunbroken(played);
    EXPECT_THAT(played.said,
                MatchesRegex("the clock was set at 6.\\...: zero moved by 3600.00 s\n"));
}

TEST(clock, goes_on_when_set_back_between_two_readings_of_the_hold) {
    testport.now = 50 * hour;
    startclock();
    testport.framehold = 0.02f;
    testport.readstep = 100;
    frame(1000);
    const float before = timeval;
    int readings = 0;
    testport.onread = [&] {
        if (++readings == 5)
            testport.set = -hour;
    };
    EXPECT_NE(printed([] { frame(1000); }), "");
    EXPECT_GE(frametime, 0.02f);
    EXPECT_LT(frametime, 0.03f);
    EXPECT_NEAR(timeval, before + 0.02f, 0.005f);
}

TEST(clock, set_before_the_epoch_goes_on) {
    testport.now = hour;
    startclock();
    frame(20000);
    testport.set = -3 * hour - 300000;
    frame(20000);
    EXPECT_EQ(frameskip, 1);
    EXPECT_FLOAT_EQ(timeval, 0.04f);
    EXPECT_LT(timestart.tv_sec, 0);
    EXPECT_GE(timestart.tv_usec, 0);
    EXPECT_LT(timestart.tv_usec, 1000000);
}

TEST(clock, set_by_less_than_a_second_is_not_told_from_a_slow_frame) {
    startclock();
    frame(20000);
    testport.set = 900000;
    EXPECT_EQ(printed([] { frame(20000); }), "");
    EXPECT_FLOAT_EQ(timeval, 0.94f);
}

TEST(clock, counts_a_slow_frame_whatever_its_length) {
    startclock();
    EXPECT_EQ(printed([] { frame(13000000); }), "");
    EXPECT_EQ(frameskip, 650);
    EXPECT_FLOAT_EQ(timeval, 13.0f);
    EXPECT_EQ(printed([] { frame(5 * hour); }), "");
    EXPECT_NEAR(frameskip, 5 * 3600 * 50, 5);
    EXPECT_FLOAT_EQ(timeval, 18013.0f);
    frame(30 * 24 * hour);
    EXPECT_NEAR(frameskip, 30 * 24 * 3600 * 50, 50);
    EXPECT_GT(frameskiptime, -0.02f);
    EXPECT_LE(frameskiptime, 0.0f);
}

TEST(clock, counts_a_stop_between_the_readings_of_two_clocks) {
    startclock();
    testport.framehold = 0.02f;
    testport.readstep = 100;
    frame(1000);
    int readings = 0;
    testport.onread = [&] {
        if (++readings == 5)
            testport.now += 13000000;
    };
    EXPECT_EQ(printed([] { frame(1000); }), "");
    EXPECT_NEAR(timeval, 13.02f, 0.01f);
    EXPECT_GE(frameskip, 650);
}

TEST(clock, does_not_play_the_hours_that_the_machine_slept) {
    startclock();
    frame(20000);
    testport.slept = 5 * hour;
    EXPECT_EQ(printed([] { frame(20000); }),
              "the machine slept at 0.02: zero moved by 18000.00 s\n");
    EXPECT_EQ(frameskip, 1);
    EXPECT_FLOAT_EQ(timeval, 0.04f);
    testport.set = 5 * hour;
    EXPECT_EQ(printed([] { frame(20000); }),
              "the clock was set at 0.04: zero moved by 18000.00 s\n");
    EXPECT_EQ(frameskip, 1);
    EXPECT_FLOAT_EQ(timeval, 0.06f);
}

TEST(clock, takes_its_time_after_drawing_and_after_presenting) {
    startclock();
    frame(20000);
    EXPECT_EQ(framedone.tv_usec, 0);
    EXPECT_EQ(frameend.tv_usec, 20000);
}

TEST(clock, counts_seconds_and_beats) {
    startclock();
    frame(128000);
    EXPECT_FLOAT_EQ(timeval, 0.128f);
    EXPECT_NEAR(beatgrid, 0.0f, 1e-6f);
    frame(5079000);
    EXPECT_FLOAT_EQ(timeval, 5.207f);
    EXPECT_FLOAT_EQ(beatgrid, 8.0f);
    EXPECT_EQ(beatgrid, beatgrid_calc(timeval));
}

TEST(clock, is_negative_in_beats_before_the_first) {
    startclock();
    frame(20000);
    EXPECT_LT(beatgrid, 0.0f);
    EXPECT_FLOAT_EQ(beatgrid, (0.02f - 0.128f) * (8.0f / (5.207f - 0.128f)));
}

TEST(clock, the_grids_own_calibration_is_320_beats_or_so_in_ten_seconds) {
    EXPECT_FLOAT_EQ(beatgrid_calc(10.0f), 319.0f);
    EXPECT_EQ(beatgrid_calc(0.0f), 0.0f);
}

TEST(clock, divides_before_it_multiplies) {
    startclock();
    const float rate = beat_lastnum / (beat_last - beat_first);
    for (float t = 0.0f; t < 220.0f; t += 0.02f)
        ASSERT_EQ(beatgrid_calc(t), (t - beat_first) * rate) << t;
}

TEST(clock, a_skip_is_added) {
    startclock();
    timeval_skip = 30.0f;
    frame(20000);
    EXPECT_FLOAT_EQ(timeval, 30.02f);
    EXPECT_FLOAT_EQ(beatgrid, static_cast<float>((30.02 - 0.128) * 8 / 5.079));
}

TEST(clock, goes_on_from_where_it_was_when_the_time_of_day_is_set) {
    for (long long step : {-3600000000LL, 3600000000LL, -30000LL, 86400000000LL}) {
        startclock();
        testport.framehold = 0.02f;
        testport.readstep = 1000;
        for (int i = 0; i < 50; ++i)
            frame(19000);
        const float before = timeval;
        testport.set += step;
        frame(19000);
        EXPECT_GE(timeval, before) << step;
        EXPECT_LT(timeval, before + 0.05f) << step;
        EXPECT_LE(frameskip, 3) << step;
        frame(19000);
        EXPECT_LT(timeval, before + 0.1f) << step;
        EXPECT_GT(timeval, before + 0.02f) << step;
    }
}

// ---- the loop service ----

TEST(loop, handles_events_then_presents_then_moves_the_clock) {
    startclock();
    frame(20000);
    static float atevent, atpresent;
    static long long presentsbefore;
    set_event_callback([](SDL_Event*) {
        atevent = timeval;
        presentsbefore = testport.presents;
    });
    testport.onpresent = [] { atpresent = timeval; };
    pushkey(SDLK_a);
    frame(20000);
    EXPECT_EQ(presentsbefore, 1);
    EXPECT_EQ(testport.presents, 2);
    EXPECT_FLOAT_EQ(atevent, 0.02f);
    EXPECT_FLOAT_EQ(atpresent, 0.02f);
    EXPECT_FLOAT_EQ(timeval, 0.04f);
}

TEST(loop, acknowledges_events_last) {
    startclock();
    const sync_c e("e", -1.0f, 0);
    ASSERT_TRUE(e.once());
    testport.onpresent = [] { EXPECT_FALSE(events["e"]->happened); };
    frame(20000);
    EXPECT_TRUE(events["e"]->happened);
}

TEST(loop, counts_frames_and_ticks_for_the_report) {
    startclock();
    frame(65000);
    frame(20000);
    EXPECT_EQ(framecounter, 2);
    EXPECT_EQ(framecounter_logic, 5);
}

TEST(loop, reports_rates_over_two_seconds_and_starts_counting_again) {
    framecounter = 87;
    framecounter_logic = 99;
    timeval = 76.951f;
    beatgrid = 121.0f;
    Uint32 next = 0;
    EXPECT_EQ(printed([&] { next = fps_tick(1234, nullptr); }),
              "fps: 43.50 (87) logic: 49.50 (99) time: 76.95 beat: 121\n");
    EXPECT_EQ(next, 2000u);
    EXPECT_EQ(framecounter, 0);
    EXPECT_EQ(framecounter_logic, 0);
    timeval = 0.5f;
    beatgrid = -0.2f;
    EXPECT_EQ(printed([] { fps_tick(2000, nullptr); }),
              "fps: 0.00 (0) logic: 0.00 (0) time: 0.50 beat: -0\n");
}

TEST(loop, z_prints_the_clock_of_the_last_pass) {
    startclock();
    frame(1000000);
    pushkey(SDLK_z);
    EXPECT_EQ(printed([] { frame(500000); }), "timeval: 1.000 beatgrid: 1.373\n");
    pushkey(SDLK_z, SDL_KEYUP);
    EXPECT_EQ(printed([] { frame(20000); }), "");
}

TEST(loop, escape_and_quit_only_set_a_hint) {
    startclock();
    frame(20000);
    EXPECT_FALSE(done_hint);
    pushkey(SDLK_ESCAPE);
    EXPECT_EQ(printed([] { frame(20000); }), "");
    EXPECT_TRUE(done_hint);
    done_hint = false;
    push(SDL_QUIT);
    frame(20000);
    EXPECT_TRUE(done_hint);
    done_hint = false;
    pushkey(SDLK_ESCAPE, SDL_KEYUP);
    pushkey(SDLK_q);
    pushresize(1, 1);
    frame(20000);
    EXPECT_FALSE(done_hint);
}

TEST(loop, counts_wheel_clicks_of_the_frame) {
    startclock();
    frame(20000);
    for (Uint8 button : {4, 4, 5, 1, 2, 3, 6})
        pushbutton(button);
    pushbutton(4, SDL_MOUSEBUTTONUP);
    frame(20000);
    EXPECT_EQ(mouserull[0], 2);
    EXPECT_EQ(mouserull[1], 1);
    frame(20000);
    EXPECT_EQ(mouserull[0], 0);
    EXPECT_EQ(mouserull[1], 0);
}

TEST(loop, a_frame_without_a_tick_keeps_the_clicks_for_the_next) {
    startclock();
    frame(21000); // two ticks, one nearly spent in advance
    pushbutton(4);
    frame(10000);
    EXPECT_EQ(frameskip, 0);
    EXPECT_EQ(mouserull[0], 1);
    pushbutton(4);
    frame(10000);
    EXPECT_EQ(mouserull[0], 2);
}

TEST(loop, a_resize_is_stored_and_reported_twice) {
    startclock();
    frame(20000);
    pushresize(640, 400);
    EXPECT_EQ(printed([] { frame(20000); }), "resize event.\n");
    EXPECT_EQ(config_width, 640);
    EXPECT_EQ(config_height, 400);
    EXPECT_TRUE(screenmode_needschange);
    EXPECT_EQ(printed([] { frame(79000); }), "") << "0.099 s after the event";
    EXPECT_EQ(printed([] { frame(20000); }), "now changing mode.\n");
    EXPECT_FALSE(screenmode_needschange);
    EXPECT_EQ(printed([] { frame(500000); }), "");
}

TEST(loop, two_resizes_within_a_tenth_of_a_second_change_the_mode_once) {
    startclock();
    frame(20000);
    pushresize(640, 400);
    std::string said = printed([] { frame(60000); });
    pushresize(320, 200);
    said += printed([] {
        for (int i = 0; i < 20; ++i)
            frame(20000);
    });
    EXPECT_EQ(count(said, "resize event.\n"), 2);
    EXPECT_EQ(count(said, "now changing mode.\n"), 1);
    EXPECT_EQ(config_width, 320);
}

TEST(loop, a_resize_does_not_touch_the_video_mode) {
    startclock();
    pushresize(640, 400);
    testport.calls.clear();
    frame(200000);
    frame(200000);
    EXPECT_EQ(testport.calls, (texts{"port_present()", "port_present()"}));
    EXPECT_EQ(gldouble::calls(), texts()) << "nor the viewport";
}

TEST(loop, tells_the_window_manager_once_behind_two_seconds) {
    const port_windownumbers_s numbers{};
    testport.windownumbers = &numbers;
    startclock();
    frame(1999000);
    frame(1000);
    EXPECT_FLOAT_EQ(timeval, 2.0f);
    EXPECT_EQ(
        std::count(testport.calls.begin(), testport.calls.end(), "port_setwindowtype(normal)"), 0);
    frame(1000);
    EXPECT_EQ(testport.calls.back(), "port_setwindowtype(normal)");
    for (int i = 0; i < 200; ++i)
        frame(20000);
    EXPECT_EQ(
        std::count(testport.calls.begin(), testport.calls.end(), "port_setwindowtype(normal)"), 1);
}

TEST(loop, moves_the_song_to_a_stopped_frames_end) {
    startclock();
    song_file = "tarvisk.ogg";
    realstartmusic();
    testport.onpresent = [] { raise(SIGCONT); };
    frame(13000000);
    EXPECT_FLOAT_EQ(static_cast<float>(services.position), 13.0f);
}

// ---- hooks ----

texts hookcalls;

TEST(hooks, get_every_event_in_the_order_of_their_registration) {
    startclock();
    set_event_callback([](SDL_Event* e) { hookcalls.push_back("a" + std::to_string(e->type)); });
    set_event_callback([](SDL_Event* e) { hookcalls.push_back("b" + std::to_string(e->type)); });
    pushkey(SDLK_a);
    pushkey(SDLK_a, SDL_KEYUP);
    frame(20000);
    EXPECT_EQ(hookcalls, (texts{"a2", "b2", "a3", "b3"}));
}

TEST(hooks, come_before_the_loop_services_own_reaction) {
    startclock();
    set_event_callback([](SDL_Event*) { hookcalls.push_back(done_hint ? "after" : "before"); });
    pushkey(SDLK_ESCAPE);
    frame(20000);
    EXPECT_EQ(hookcalls, texts{"before"});
}

TEST(hooks, may_be_null) {
    startclock();
    set_event_callback(nullptr);
    set_event_callback([](SDL_Event*) { hookcalls.push_back("called"); });
    pushkey(SDLK_a);
    frame(20000);
    EXPECT_EQ(hookcalls, texts{"called"});
    EXPECT_EQ(cb_count, 2);
}

TEST(hooks, registered_by_a_hook_are_called_for_the_same_event) {
    startclock();
    set_event_callback([](SDL_Event*) {
        hookcalls.push_back("first");
        if (cb_count == 1)
            set_event_callback([](SDL_Event*) { hookcalls.push_back("second"); });
    });
    pushkey(SDLK_a);
    frame(20000);
    EXPECT_EQ(hookcalls, (texts{"first", "second"}));
}

TEST(hooks, beyond_ten_are_ignored) {
    for (int i = 0; i < 12; ++i)
        set_event_callback([](SDL_Event*) {});
    EXPECT_EQ(cb_count, 10);
}

// ---- unseen ----

int unseenframes = 0;
std::vector<float> arrivals; // beats

void countunseen() {
    ++unseenframes;
}

void notearrival() {
    arrivals.push_back(beatgrid);
}

void playunseen(float beat) {
    loop_playunseen(beat, countunseen, notearrival);
    while (arrivals.empty())
        system_crap();
}

TEST(unseen, frames_are_one_tick_long_whatever_the_time_and_are_not_presented) {
    startclock();
    frame(65000);
    testport.readstep = 1234567;
    loop_playunseen(40.0f, countunseen, notearrival);
    const float before = timeval;
    for (int i = 1; i <= 100; ++i) {
        system_crap();
        EXPECT_EQ(frameskip, 1);
        EXPECT_NEAR(timeval, before + 0.02f * static_cast<float>(i), 1e-4f);
    }
    EXPECT_EQ(unseenframes, 100);
    EXPECT_EQ(testport.presents, 1);
    EXPECT_TRUE(arrivals.empty());
}

TEST(unseen, ends_at_the_first_frame_past_the_beat_and_goes_on_with_the_time_of_day) {
    startclock();
    frame(20000);
    playunseen(40.0f);
    ASSERT_EQ(arrivals.size(), 1u);
    EXPECT_GE(arrivals[0], 40.0f);
    EXPECT_LT(arrivals[0], 40.1f);
    const float there = timeval;
    frame(30000);
    EXPECT_NEAR(timeval, there + 0.03f, 1e-4f);
    EXPECT_EQ(testport.presents, 2);
    EXPECT_EQ(arrivals.size(), 1u);
}

TEST(unseen, frames_are_drawn_into_one_pixel_of_the_window) {
    startclock();
    init_gl();
    gldouble::clear();
    playunseen(3.0f);
    EXPECT_EQ(gldouble::calls("glViewport"),
              (texts{"glViewport(0, 0, 1, 1)", "glViewport(0, 0, 854, 480)"}));
}

TEST(unseen, events_still_reach_the_show) {
    startclock();
    pushkey(SDLK_ESCAPE);
    playunseen(1.0f);
    EXPECT_TRUE(done_hint);
}

TEST(unseen, a_beat_that_is_past_is_reached_by_the_next_frame) {
    startclock();
    frame(5000000);
    playunseen(1.0f);
    EXPECT_EQ(unseenframes, 1);
}

// ---- between loads ----

TEST(loading, drops_events_unseen_and_presents) {
    startclock();
    set_event_callback([](SDL_Event*) { hookcalls.push_back("called"); });
    pushkey(SDLK_ESCAPE);
    pushresize(1, 1);
    system_crap_pre();
    EXPECT_EQ(testport.presents, 1);
    EXPECT_FALSE(done_hint);
    EXPECT_EQ(config_width, 854);
    frame(20000);
    EXPECT_TRUE(hookcalls.empty());
    EXPECT_EQ(framecounter, 1) << "only frames of the show count";
}

TEST(loading_death, ends_once_it_can_for_who_asked_to_leave_meanwhile) {
    startclock();
    remember_leaving();
    const auto asked = [] {
        raise(SIGTERM);
        system_crap_pre();
    };
    EXPECT_EXIT(asked(), testing::ExitedWithCode(1), "^$");
}

} // namespace

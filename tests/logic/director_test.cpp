#include "3dphone.h"
#include "demo.h"
#include "effects.h"
#include "gldouble.h"
#include "main/capture.h"
#include "main/loop.h"
#include "main/startup.h"
#include "phoneflight.h"
#include "showlog.h"
#include "testport.h"
#include "util.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <glm/gtc/matrix_transform.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace testing;
using showlog::at;
using showlog::frames;

constexpr float framebeats = 0.0316f; // beats of one frame, rounded up

// The flags that the phone sets, at the beats at which it does.
void flyphone_standin(const std::string& effect) {
    if (effect != "flyphone")
        return;
    show_whiteback = beatgrid >= 115.5f;
    if (beatgrid >= 129.14f && !flyphone_tunnelready) {
        tunnelflyer.pos = {0.0f, 0.0f, 0.5f};
        tunnelflyer.vel = {0.0f, 0.0f, 0.84f};
        flyphone_tunnelready = true;
    }
}

void play(float endbeat, float skip = 0.0f) {
    showlog::load();
    showlog::ondraw = flyphone_standin;
    showlog::play(endbeat, skip);
}

// The show's pictures and the beat at which each begins.
std::vector<std::pair<float, std::string>> cuts() {
    std::vector<std::pair<float, std::string>> result;
    for (const auto& frame : frames)
        if (result.empty() || result.back().second != frame.picture())
            result.emplace_back(frame.beat, frame.picture());
    return result;
}

// The frames whose picture is `picture`.
std::vector<const showlog::frame_s*> showing(const std::string& picture) {
    std::vector<const showlog::frame_s*> result;
    for (const auto& frame : frames)
        if (frame.picture() == picture)
            result.push_back(&frame);
    return result;
}

MATCHER_P(IsMatrix, expected, "") {
    for (int column = 0; column < 4; ++column)
        for (int row = 0; row < 4; ++row)
            if (std::abs(arg[column][row] - expected[column][row]) > 1e-3f)
                return false;
    return true;
}

glm::mat4 widelens() {
    glm::mat4 m(0.0f);
    m[0][0] = 0.8027061f;
    m[1][1] = 1.428148f;
    m[2][2] = -1.0000666f;
    m[2][3] = -1.0f;
    m[3][2] = -2.0000668f;
    return m;
}

constexpr glm::vec3 xaxis(1, 0, 0), yaxis(0, 1, 0), zaxis(0, 0, 1);

glm::mat4 turn(float degrees, const glm::vec3& axis) {
    return glm::rotate(glm::mat4(1.0f), glm::radians(degrees), axis);
}

glm::mat4 move(float x, float y, float z) {
    return glm::translate(glm::mat4(1.0f), glm::vec3(x, y, z));
}

glm::mat4 spacepose(float ang, float zepo) {
    return turn(ang, yaxis) * move(0, 0, -70) * move(0, -30, 0) * turn(-110, yaxis) *
           move(0, 0, zepo) * turn(-90, xaxis);
}

// ---- configuration and loading ----

TEST(director_setup, asks_for_eight_bits_of_stencil) {
    demo_config();
    EXPECT_EQ(config_stencilsize, 8);
}

TEST(director_setup, starts_with_a_camera_at_rest_and_no_targets) {
    for (const glm::vec3& v : {tunnelflyer.targetpos, tunnelflyer.acc, tunnelflyer.damp,
                               tunnelflyer.pos, tunnelflyer.vel})
        EXPECT_EQ(v, glm::vec3(0.0f));
    EXPECT_EQ(orangetex_fbo, nullptr);
    EXPECT_EQ(orange_fbo, nullptr);
    EXPECT_EQ(scrollertex_fbo, nullptr);
    EXPECT_FALSE(die);
}

TEST(director_setup, loads_every_effect_in_order_and_presents_between) {
    showlog::load();
    const char* order[] = {
        "orange",    "orangetexgen", "texturetest",   "heart",      "scrollertexgen",
        "fluid",     "flyphone",     "orbitscroller", "tunnel",     "zreset",
        "starfield", "lace",         "pelvar",        "vxqlogo",    "mujuice",
        "face",      "pbtausta",     "dode",          "ripsilu",    "gear",
        "rocket9",   "ballspring",   "bump",          "starfield2", "textbox"};
    std::vector<std::string> expected = {"orange.init", "orangetexgen.init"};
    for (const char* effect : order) {
        expected.push_back(effect + std::string(".initgl"));
        expected.push_back("present");
    }
    expected.pop_back(); // none after the last
    EXPECT_EQ(showlog::setup, expected);
}

TEST(director_setup, names_the_song_and_its_beats) {
    showlog::load();
    EXPECT_STREQ(song_file, "tarvisk.ogg");
    EXPECT_EQ(beat_first, 0.128f);
    EXPECT_EQ(beat_last, 5.207f);
    EXPECT_EQ(beat_lastnum, 8.0f);
    EXPECT_NEAR(beatgrid_calc(0.128f + 0.634875f), 1.0, 1e-5);
}

TEST(scenes, begin_at_their_beats) {
    std::vector<std::pair<std::string, float>> begun;
    showlog::load();
    showlog::ondraw = [&](const std::string& effect) {
        flyphone_standin(effect);
        if (begun.empty() || begun.back().first != demo_scene)
            begun.emplace_back(demo_scene, beatgrid);
    };
    showlog::play(290.0f);
    ASSERT_EQ(begun.size(), demo_scenes.size());
    for (size_t i = 0; i < begun.size(); ++i) {
        EXPECT_EQ(begun[i].first, demo_scenes[i].name);
        EXPECT_NEAR(begun[i].second, demo_scenes[i].begins, i ? framebeats : 0.3f)
            << begun[i].first;
    }
}

TEST(director_setup, makes_the_targets_in_order) {
    showlog::load();
    struct {
        fbo_c* fbo;
        int width, height;
        float wrap;
    } expected[] = {{orangetex_fbo, 128, 128, GL_REPEAT},
                    {orange_fbo, 512, 256, GL_REPEAT},
                    {scrollertex_fbo, 512, 64, GL_CLAMP_TO_EDGE}};
    GLuint lasthandle = 0;
    for (const auto& target : expected) {
        EXPECT_GT(target.fbo->fbohandle, lasthandle);
        lasthandle = target.fbo->fbohandle;
        EXPECT_EQ(target.fbo->width_p, target.width);
        EXPECT_EQ(target.fbo->height_p, target.height);
        EXPECT_EQ(gldouble::image(target.fbo->colortex).parameters.at(GL_TEXTURE_WRAP_S),
                  target.wrap);
        EXPECT_EQ(gldouble::image(target.fbo->colortex).parameters.at(GL_TEXTURE_WRAP_T),
                  target.wrap);
    }
}

TEST(director_setup, warms_two_effects_up_into_the_phones_picture) {
    showlog::load();
    EXPECT_EQ(showlog::loading.picture(), "starfield>orange flyphone>orange");
    EXPECT_EQ(showlog::loading.drawing("flyphone").knobs.phonescreentex, screenshottex.textureid);
    EXPECT_EQ(gldouble::framebuffer(), 0u);
}

TEST(director_setup, the_warm_up_registers_and_fires_the_phones_first_event) {
    showlog::load({"flyphone"});
    EXPECT_THAT(showlog::loading.lines, Contains("event 'phonefly1' happened! 0.00"));
    EXPECT_THAT(showlog::loading.lines,
                Contains("adding event 'starmover' at time 132.00, spawn 0"));
}

TEST(director_setup, without_a_desktop_the_capture_is_black) {
    showlog::load();
    const auto& image = gldouble::image(screenshottex.textureid);
    EXPECT_EQ(image.width, 854);
    EXPECT_EQ(image.height, 480);
    ASSERT_FALSE(image.pixels.empty());
    EXPECT_THAT(image.pixels, Each(0));
}

// ---- quitting ----

void push(Uint8 type, SDLKey key = SDLK_UNKNOWN, SDLMod mod = KMOD_NONE) {
    SDL_Event event{};
    event.type = type;
    event.key.keysym.sym = key;
    event.key.keysym.mod = mod;
    SDL_PushEvent(&event);
}

TEST(director_quit, the_q_key_ends_with_status_1) {
    showlog::load();
    push(SDL_KEYDOWN, SDLK_q);
    testport.onpresent = nullptr;
    EXPECT_EXIT(system_crap(), ExitedWithCode(1), "");
}

TEST(director_quit, closing_the_window_ends_with_status_1) {
    showlog::load();
    push(SDL_QUIT);
    testport.onpresent = nullptr;
    EXPECT_EXIT(system_crap(), ExitedWithCode(1), "");
}

TEST(director_quit, either_alt_with_f4_ends_with_status_1) {
    showlog::load();
    testport.onpresent = nullptr;
    for (SDLMod alt : {KMOD_LALT, KMOD_RALT}) {
        const auto quit = [=] { // what one process pushes stays in its queue
            push(SDL_KEYDOWN, SDLK_F4, alt);
            system_crap();
        };
        EXPECT_EXIT(quit(), ExitedWithCode(1), "");
    }
}

TEST(director_quit, closes_sdl_first) {
    showlog::load();
    push(SDL_KEYDOWN, SDLK_q);
    testport.onpresent = nullptr;
    const auto quit = [] {
        atexit([] { fprintf(stderr, SDL_WasInit(SDL_INIT_VIDEO) ? "left open" : "closed"); });
        system_crap();
    };
    EXPECT_EXIT(quit(), ExitedWithCode(1), "closed$");
}

TEST(director_quit, no_other_key_ends_the_show) {
    showlog::load();
    push(SDL_KEYUP, SDLK_q);
    push(SDL_MOUSEBUTTONDOWN);
    for (int key = SDLK_FIRST; key < SDLK_LAST; ++key) {
        if (key == SDLK_q)
            continue;
        push(SDL_KEYDOWN, static_cast<SDLKey>(key));
        if (key % 64 == 0)
            system_crap();
    }
    system_crap();
    EXPECT_EQ(cb_count, 1);
}

// ---- the whole show ----

TEST(director_show, cuts_from_picture_to_picture_on_the_beat) {
    play(320.0f);
    const std::vector<std::pair<float, std::string>> expected = {
        {0.0f, "starfield flyphone"},
        {8.0f, "vxqlogo>orange starfield flyphone"},
        {11.0f, "scrollertexgen>scrollertex pelvar>scrollertex vxqlogo>orange starfield flyphone "
                "orbitscroller"},
        {32.0f, "scrollertexgen>scrollertex pelvar>scrollertex mujuice>orange starfield flyphone "
                "orbitscroller"},
        {52.0f, "scrollertexgen>scrollertex pelvar>scrollertex orangetexgen>orangetex "
                "orange>orange heart>orange lace>orange starfield flyphone orbitscroller"},
        {53.0f, "orangetexgen>orangetex orange>orange heart>orange lace>orange starfield flyphone"},
        {104.0f, "starfield flyphone"},
        {115.5f, "starfield flyphone zreset tunnel"}, // the white comes with the next pass
        {115.53f, "texturetest flyphone zreset tunnel"},
        {129.15f, "zreset tunnel"},
        {160.0f, "zreset tunnel bump"}, // the city's last pass is not presented
        {160.03f, "bump"},
        {180.0f, "zreset tunnel gear"},
        {208.0f, "ripsilu gear"},
        {212.0f, "pbtausta dode gear"},
        {240.0f, "zreset tunnel"},
        {256.0f, "face fluid"},
        {273.0f, "face fluid starfield2 face face phone"}, // nor is the fluid's
        {273.03f, "starfield2 face face phone"},
        {281.0f, "starfield2 face phone"},
        {288.0f, "starfield2 face phone starfield2 ballspring phone"}, // nor the flight's
        {288.03f, "starfield2 ballspring phone"},
        {300.0f, "starfield2 ballspring textbox phone"},
    };
    const auto got = cuts();
    ASSERT_EQ(got.size(), expected.size());
    for (size_t i = 0; i < got.size(); ++i) {
        EXPECT_EQ(got[i].second, expected[i].second) << "picture " << i;
        EXPECT_NEAR(got[i].first, expected[i].first, framebeats) << expected[i].second;
    }
}

TEST(director_show, fires_its_events_in_order) {
    showlog::load({"flyphone"});
    showlog::play(310.0f);
    const std::vector<std::pair<std::string, float>> expected = {{"phonetex_shot", 0},
                                                                 {"phonefly1", 0},
                                                                 {"phonefly2", 1},
                                                                 {"phonespin1", 4.5},
                                                                 {"phonefly3", 6.5},
                                                                 {"phonetex_vxqlogo", 8},
                                                                 {"startorbitscroller", 11},
                                                                 {"phonefly4", 20},
                                                                 {"phonetex_mu", 32},
                                                                 {"phonefly4-2", 34},
                                                                 {"phonefly4-2", 34},
                                                                 {"phonefly5", 48},
                                                                 {"phonetex_orange", 52},
                                                                 {"stoporbitscroller", 53},
                                                                 {"phonefly6", 64},
                                                                 {"phonetex_callscreen", 104},
                                                                 {"phonefly7", 110},
                                                                 {"phonefly8", 112},
                                                                 {"phonefly9", 114},
                                                                 {"tunnelupmove", 156},
                                                                 {"stoptunnel", 160},
                                                                 {"bump1", 165},
                                                                 {"bump2", 170},
                                                                 {"bump3", 173},
                                                                 {"bump4", 178},
                                                                 {"stopgear", 180},
                                                                 {"stopfly2", 208},
                                                                 {"stopbump", 212},
                                                                 {"stopdode", 240},
                                                                 {"stopfly3", 256},
                                                                 {"stopduce", 273},
                                                                 {"stopspacefly", 288}};
    const std::vector<std::string> got = showlog::lines("event '");
    ASSERT_EQ(got.size(), expected.size());
    for (size_t i = 0; i < got.size(); ++i) {
        char name[40];
        float beat = -1.0f;
        ASSERT_EQ(sscanf(got[i].c_str(), "event '%39[^']' happened! %f", name, &beat), 2) << got[i];
        EXPECT_EQ(name, expected[i].first);
        EXPECT_GE(beat, expected[i].second - 0.005f) << name;
        EXPECT_LE(beat, expected[i].second + framebeats + 0.005f) << name;
    }
}

TEST(director_show, adds_its_events_with_the_beats_of_the_schedule) {
    play(301.0f);
    std::vector<std::string> added;
    for (const std::string& line : showlog::lines("adding event '"))
        added.push_back(line.substr(strlen("adding event ")));
    EXPECT_THAT(
        added,
        ElementsAre(
            "'startorbitscroller' at time 11.00, spawn 0",
            "'stoporbitscroller-bum' at time 48.00, spawn 0",
            "'stoporbitscroller' at time 53.00, spawn 0", "'phonetex_shot' at time 0.00, spawn 0",
            "'phonetex_vxqlogo' at time 8.00, spawn 0", "'phonetex_mu' at time 32.00, spawn 0",
            "'phonetex_orange' at time 52.00, spawn 0",
            "'phonetex_callscreen' at time 104.00, spawn 0",
            "'tunnelupmove' at time 156.00, spawn 0", "'stoptunnel' at time 160.00, spawn 0",
            "'bump1' at time 165.00, spawn 0", "'bump2' at time 170.00, spawn 0",
            "'bump3' at time 173.00, spawn 0", "'bump4' at time 178.00, spawn 0",
            "'stopgear' at time 180.00, spawn 0", "'stopfly2' at time 208.00, spawn 0",
            "'stopbump' at time 212.00, spawn 0", "'stopdode' at time 240.00, spawn 0",
            "'stopfly3' at time 256.00, spawn 0", "'stopduce' at time 273.00, spawn 0",
            "'stopspacefly' at time 288.00, spawn 0", "'textbox' at time 300.00, spawn 0"));
}

TEST(director_show, hands_the_camera_over_through_the_phones_screen) {
    showlog::load({"flyphone"});
    showlog::play(131.0f);
    const auto city = showing("texturetest flyphone zreset tunnel");
    ASSERT_FALSE(city.empty());
    EXPECT_NEAR(city.front()->beat, 115.5, 2 * framebeats);
    const auto handover = showlog::lines("running at pos");
    ASSERT_EQ(handover.size(), 1u);
    float pos = 0, vel = 0, accfac = 0;
    ASSERT_EQ(
        sscanf(handover[0].c_str(), "running at pos %f vel %f. accfac %f", &pos, &vel, &accfac), 3);
    EXPECT_NEAR(pos, 0.543, 0.002);
    EXPECT_NEAR(vel, 0.838, 0.002);
    EXPECT_EQ(accfac, 0.0015f);
    for (const auto& frame : frames)
        if (!frame.lines.empty() && frame.lines[0] == handover[0]) {
            EXPECT_NEAR(frame.beat, 129.15, framebeats);
            // The city already draws from the hand-over's point, one pass on.
            EXPECT_NEAR(frame.drawing("tunnel").knobs.flyerpos.z, pos + vel, 1e-4);
            EXPECT_NEAR(frame.drawing("tunnel").knobs.flyervel.z, vel, 1e-4);
        }
}

// ---- late starts ----

TEST(director_skip, reaches_the_phone_at_30_seconds) {
    play(48.0f, 30.0f);
    EXPECT_EQ(frames[0].picture(), "starfield flyphone") << "the clock still stands at 0";
    EXPECT_EQ(frames[0].beat, 0.0f);
    EXPECT_NEAR(frames[1].beat, (30.02 - 0.128) * 8 / 5.079, 1e-3);
    EXPECT_EQ(frames[1].picture(), "scrollertexgen>scrollertex pelvar>scrollertex mujuice>orange "
                                   "starfield flyphone orbitscroller");
}

TEST(director_skip, reaches_the_city_at_100_seconds) {
    showlog::load({"flyphone"});
    showlog::play(158.0f, 100.0f);
    // The first pass with the clock flies through every event of the phone, into the hand-over.
    EXPECT_EQ(frames[1].picture(), "starfield flyphone");
    EXPECT_THAT(frames[1].lines, Contains(StartsWith("running at pos 0.3")));
    EXPECT_EQ(frames[2].picture(), "zreset tunnel");
    EXPECT_EQ(frames.back().picture(), "zreset tunnel");
}

TEST(director_skip, reaches_the_dodecahedron_at_150_seconds) {
    showlog::load({"flyphone"});
    showlog::play(237.0f, 150.0f);
    const std::vector<std::string> expected = {"starfield flyphone", "starfield flyphone",
                                               "zreset tunnel bump", "zreset tunnel gear",
                                               "ripsilu gear",       "pbtausta dode gear"};
    std::vector<std::string> got;
    for (const auto& [beat, picture] : cuts())
        got.push_back(picture);
    got.insert(got.begin(), frames[1].picture()); // equal neighbours are one cut
    EXPECT_EQ(got, expected);
    EXPECT_EQ(frames[5].picture(), "pbtausta dode gear") << "a pass for each scene before";
}

TEST(director_skip, reaches_the_finale_at_200_seconds) {
    showlog::load({"flyphone"});
    showlog::play(316.0f, 200.0f);
    EXPECT_EQ(frames[6].picture(), "zreset tunnel");
    EXPECT_EQ(frames[7].picture(),
              "face fluid starfield2 face phone starfield2 ballspring textbox phone");
    EXPECT_EQ(frames[8].picture(), "starfield2 ballspring textbox phone");
}

TEST(director_skip, fires_what_lies_behind_on_the_first_pass_in_the_order_of_the_checks) {
    play(117.0f, 75.0f); // one pass on the clock
    EXPECT_THAT(showlog::lines("event '"),
                ElementsAre(EndsWith("'phonetex_shot' happened! 0.00"),
                            StartsWith("event 'startorbitscroller' happened!"),
                            StartsWith("event 'stoporbitscroller' happened!"),
                            StartsWith("event 'phonetex_vxqlogo' happened!"),
                            StartsWith("event 'phonetex_mu' happened!"),
                            StartsWith("event 'phonetex_orange' happened!"),
                            StartsWith("event 'phonetex_callscreen' happened!")));
    EXPECT_EQ(frames[1].picture(), "starfield flyphone zreset tunnel")
        << "and renders none of them";
}

TEST(director_skip, events_of_later_scenes_wait_for_their_scene) {
    play(315.0f, 200.0f);
    EXPECT_EQ(frames[1].picture(), "starfield flyphone zreset tunnel bump");
    EXPECT_THAT(frames[1].lines, Contains(StartsWith("event 'stoptunnel' happened!")));
    EXPECT_THAT(frames[1].lines, Not(Contains(HasSubstr("'bump1'"))));
    EXPECT_EQ(frames[2].picture(), "zreset tunnel gear");
    EXPECT_THAT(frames[2].lines, Contains(StartsWith("event 'bump1' happened!")));
    EXPECT_THAT(frames[2].lines, Contains(StartsWith("event 'stopgear' happened!")));
    EXPECT_THAT(frames[2].lines, Not(Contains(HasSubstr("'stopfly2'"))));
    EXPECT_EQ(frames[3].picture(), "ripsilu gear");
    EXPECT_THAT(frames[3].lines, ElementsAre(StartsWith("adding event 'stopfly2'"),
                                             StartsWith("event 'stopfly2' happened!")));
}

// ---- scene 1 ----

TEST(director_phone, shows_the_pictures_of_the_schedule_on_its_screen) {
    play(120.0f);
    const GLuint desktop = screenshottex.textureid;
    const GLuint rendered = orange_fbo->colortex;
    const GLuint white = at(118).drawing("texturetest").knobs.texturetesttex;
    const GLuint call = at(110).knobs.phonescreentex;
    EXPECT_EQ(at(4).knobs.phonescreentex, desktop);
    EXPECT_EQ(at(9).knobs.phonescreentex, rendered);
    EXPECT_EQ(at(33).knobs.phonescreentex, rendered);
    EXPECT_EQ(at(60).knobs.phonescreentex, rendered);
    EXPECT_EQ(call, white + 1) << "the second of the three pictures loaded";
    EXPECT_EQ(at(118).drawing("flyphone").knobs.phonescreentex, white + 2) << "the third";
    EXPECT_EQ(gldouble::image(white).parameters.at(GL_TEXTURE_WRAP_S), float(GL_REPEAT));
    EXPECT_EQ(gldouble::image(call).parameters.at(GL_TEXTURE_WRAP_S), float(GL_CLAMP_TO_EDGE));
    EXPECT_EQ(gldouble::image(call).format, GLenum(GL_RGB));
}

TEST(director_phone, hands_each_targets_texture_to_who_samples_it) {
    play(130.0f);
    EXPECT_EQ(at(12).drawing("orbitscroller").knobs.scrollertex, scrollertex_fbo->colortex);
    EXPECT_EQ(at(60).drawing("orange").knobs.orangetex, orangetex_fbo->colortex);
    EXPECT_EQ(at(117).drawing("tunnel").knobs.citytex, orangetex_fbo->colortex);
}

TEST(director_phone, flies_over_the_stars_in_these_steps) {
    play(5.0f);
    EXPECT_THAT(at(4).steps,
                ElementsAre("glDisable(GL_DEPTH_TEST)", "glDisable(GL_STENCIL_TEST)",
                            "glClearColor(0, 0, 0, 0)", "glClear(COLOR|DEPTH|STENCIL)",
                            "draw starfield", "glEnable(GL_DEPTH_TEST)", "glDepthFunc(GL_LESS)",
                            "glEnable(GL_STENCIL_TEST)", "draw flyphone"));
}

TEST(director_phone, lies_on_white_with_the_city_in_its_screen_in_these_steps) {
    play(118.0f);
    EXPECT_THAT(at(117).steps,
                ElementsAre("glDisable(GL_DEPTH_TEST)", "glDisable(GL_STENCIL_TEST)",
                            "glClearColor(0, 0, 0, 0)", "glClear(COLOR|DEPTH|STENCIL)",
                            "draw texturetest", "glEnable(GL_DEPTH_TEST)", "glDepthFunc(GL_LESS)",
                            "glEnable(GL_STENCIL_TEST)", "draw flyphone",
                            "glEnable(GL_STENCIL_TEST)", "glStencilFunc(GL_EQUAL, 1, 1)",
                            "glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP)", "glStencilMask(1)",
                            StartsWith("glScissor(0, 0, 854, "), "glEnable(GL_SCISSOR_TEST)",
                            "glEnable(GL_DEPTH_TEST)", "draw zreset", "draw tunnel",
                            "glDisable(GL_SCISSOR_TEST)"));
}

TEST(director_phone, fills_the_screen_with_the_city_in_these_steps) {
    play(136.0f);
    EXPECT_THAT(at(135).steps, ElementsAre("glDisable(GL_DEPTH_TEST)", "glDisable(GL_STENCIL_TEST)",
                                           "glEnable(GL_DEPTH_TEST)", "draw zreset", "draw tunnel",
                                           "glDisable(GL_SCISSOR_TEST)"));
}

TEST(director_phone, widens_the_scrollers_ring_from_beat_48_to_the_scenes_end) {
    play(161.0f);
    EXPECT_EQ(at(47).knobs.orbitradius, 70.0f);
    EXPECT_FLOAT_EQ(at(48).knobs.orbitradius, 70.3f);
    const auto& last = at(159.9f);
    EXPECT_NEAR(last.knobs.orbitradius, 70.3f + 0.3f * (&last - &at(48)), 0.1f);
    EXPECT_NEAR(frames.back().knobs.orbitradius, at(160).knobs.orbitradius, 1e-6f);
}

TEST(director_phone, the_held_s_key_lays_the_desktop_over_the_phone) {
    showlog::load();
    keystate[SDLK_s] = 1;
    showlog::play(13.0f);
    EXPECT_EQ(at(4).picture(), "starfield flyphone screenshot");
    EXPECT_EQ(at(12).picture(), "scrollertexgen>scrollertex pelvar>scrollertex vxqlogo>orange "
                                "starfield flyphone screenshot orbitscroller");
}

TEST(director_phone, ends_when_it_dies) {
    showlog::load();
    showlog::ondraw = [](const std::string&) { die = beatgrid > 5.0f; };
    showlog::play(6.0f);
    EXPECT_EQ(at(5.1f).picture(), "bump");
}

// The heights of the city's scissor boxes, frame by frame.
std::vector<int> revealed() {
    std::vector<int> heights;
    for (const auto& frame : frames)
        for (const std::string& step : frame.steps) {
            int width = 0, height = 0;
            if (sscanf(step.c_str(), "glScissor(0, 0, %d, %d)", &width, &height) == 2)
                heights.push_back(height);
        }
    return heights;
}

TEST(director_city, rises_wobbling_from_the_bottom) {
    play(130.0f);
    const auto heights = revealed();
    ASSERT_EQ(heights.size(), 383u) << "0.8 of a revealed height of 480 ticks";
    const auto* first = &at(115.5f);
    for (size_t i = 0; i < heights.size(); ++i)
        EXPECT_NEAR(heights[i], ((i + 1) / 480.0 + sin(first[i].time * 3.0) * 0.04166) * 480.0,
                    1.01);
    EXPECT_TRUE(first[0].drawing("tunnel").enabled.count(GL_SCISSOR_TEST));
    EXPECT_FALSE(first[383].drawing("tunnel").enabled.count(GL_SCISSOR_TEST));
}

TEST(director_city, reports_its_view_distance_on_every_pass) {
    play(162.0f);
    spring_c<float> distance(0.0f, 400.0f, 0.0002f, 0.98f);
    size_t passes = 0;
    for (const auto& frame : frames) {
        std::vector<std::string> reports;
        for (const std::string& line : frame.lines)
            if (line.compare(0, 16, "CityMaxDistance:") == 0)
                reports.push_back(line);
        if (frame.picture().find("tunnel") == std::string::npos) {
            EXPECT_TRUE(reports.empty());
            continue;
        }
        ++passes;
        if (frame.beat > 129.14f)
            distance = {distance.pos, 1000.0f, 0.0004f, 0.94f, distance.vel};
        distance.iterate(frame.ticks);
        char expected[60];
        snprintf(expected, sizeof expected, "CityMaxDistance: %.2f", double(distance.pos));
        ASSERT_THAT(reports, ElementsAre(expected)) << frame.beat;
        EXPECT_EQ(frame.knobs.CityMaxDistance, distance.pos);
    }
    EXPECT_NEAR(passes, (160 - 115.5) * 0.634875 * 50, 2);
}

TEST(director_city, flies_on_at_the_phones_speed_and_rises_from_beat_156) {
    play(158.0f);
    const auto* moving = &at(135);
    EXPECT_NEAR(moving[1].knobs.flyerpos.z - moving[0].knobs.flyerpos.z, 0.84f, 1e-3f);
    const auto* rise = &at(156);
    EXPECT_EQ(rise[0].knobs.flyervel.y, -1.0f);
    EXPECT_EQ(rise[0].knobs.flyerpos.y, 0.0f) << "moved before the kick";
    EXPECT_EQ(rise[1].knobs.flyerpos.y, -1.0f);
    EXPECT_EQ(rise[2].knobs.flyervel.y, -1.0f) << "one kick only";
}

// ---- scenes 2 to 7 ----

TEST(director_scenes, each_clears_colour_and_depth_and_draws) {
    play(305.0f);
    const std::pair<float, std::vector<std::string>> scenes[] = {
        {170, {"bump"}},
        {190, {"zreset", "tunnel", "gear"}},
        {210, {"ripsilu", "gear"}},
        {220, {"pbtausta", "dode", "gear"}},
        {250, {"zreset", "tunnel"}},
        {260, {"face", "fluid"}},
        {275, {"starfield2", "face", "face", "phone"}},
        {304, {"starfield2", "ballspring", "textbox", "phone"}}};
    for (const auto& [beat, effects] : scenes) {
        std::vector<std::string> steps = {"glClear(COLOR|DEPTH)"};
        for (const std::string& effect : effects)
            steps.push_back("draw " + effect);
        EXPECT_EQ(at(beat).steps, steps) << beat;
        for (const auto& drawing : at(beat).drawings)
            EXPECT_THAT(drawing.enabled, ElementsAre(GL_DEPTH_TEST)) << drawing.effect;
    }
}

TEST(director_scenes, depth_is_on_with_less_before_those_that_need_it) {
    play(290.0f);
    for (float beat : {160.0f, 180.0f, 212.0f, 240.0f, 288.0f}) {
        const auto& steps = at(beat).steps;
        const auto depth = std::find(steps.begin(), steps.end(), "glEnable(GL_DEPTH_TEST)");
        EXPECT_THAT(steps, Contains("glEnable(GL_DEPTH_TEST)")) << beat;
        EXPECT_THAT(std::vector<std::string>(depth, steps.end()), Contains("glDepthFunc(GL_LESS)"));
    }
}

TEST(director_credits, moves_the_view_on_four_beats) {
    play(181.0f);
    const auto view = [](float beat) { return at(beat).drawing("bump").knobs.bumptgt; };
    EXPECT_EQ(view(164.9f), 0);
    EXPECT_EQ(view(165), 10) << "asked after the loop service, seen by the same beat's draw";
    EXPECT_EQ(view(169.9f), 10);
    EXPECT_EQ(view(170), 20);
    EXPECT_EQ(view(173), 30);
    EXPECT_EQ(view(178), 40);
}

TEST(director_gear, starts_at_its_place_in_the_city) {
    play(190.0f);
    const auto& first = *showing("zreset tunnel gear").front();
    EXPECT_NEAR(first.beat, 180.0, 2 * framebeats);
    const auto& start = first.drawing("zreset").knobs;
    EXPECT_EQ(start.flyerpos, glm::vec3(370.0f, -100.0f, -199.0f)) << "a tick on";
    EXPECT_EQ(start.flyervel, glm::vec3(0.0f));
    EXPECT_EQ(start.CityMaxDistance, 1000.0f);
    EXPECT_THAT(start.phone_projection, IsMatrix(widelens()));
    EXPECT_THAT(start.phone_rotation_mv,
                IsMatrix(turn(-190, yaxis) * turn(-20, xaxis) * turn(90, zaxis)));
    EXPECT_EQ(start.gearAppear, 0);
    EXPECT_EQ(first.drawing("gear").knobs.gearAppear, 1);
    EXPECT_EQ((&first)[10].knobs.flyerpos, glm::vec3(370.0f, -100.0f, -189.0f));
}

TEST(director_ripples, fade_to_white_over_the_last_beat_from_the_next_pass_on) {
    play(214.0f);
    const auto* frame = &at(211.5f);
    EXPECT_EQ(at(210).drawing("ripsilu").knobs.ripsilu_mm, 0.0f);
    EXPECT_FLOAT_EQ(frame[0].knobs.ripsilu_mm, frame[0].beat - 211.0f);
    EXPECT_EQ(frame[1].drawing("ripsilu").knobs.ripsilu_mm, frame[0].knobs.ripsilu_mm);
    EXPECT_EQ(frame[0].drawing("gear").knobs.gearAppear, 1);
    EXPECT_NEAR(at(213).knobs.ripsilu_mm, 1.0f, framebeats);
}

TEST(director_dode, sends_the_gear_away) {
    play(220.0f);
    EXPECT_EQ(showing("pbtausta dode gear").front()->drawing("dode").knobs.gearAppear, 1);
    EXPECT_EQ(at(215).drawing("gear").knobs.gearAppear, 2);
}

TEST(director_rocket, starts_at_its_place_in_the_city) {
    play(247.0f);
    const auto* scene = &at(241.0f);
    while (scene[-1].picture() == "zreset tunnel")
        --scene;
    EXPECT_NEAR(scene->beat, 240.0, 2 * framebeats);
    const auto& start = scene->drawing("zreset").knobs;
    EXPECT_EQ(start.flyerpos, glm::vec3(1.0f, -100.0f, -199.9f)) << "a tick on";
    EXPECT_EQ(start.flyervel, glm::vec3(0.0f));
    EXPECT_THAT(start.phone_projection, IsMatrix(widelens()));
    EXPECT_THAT(start.phone_rotation_mv, IsMatrix(turn(30, yaxis) * turn(90, zaxis)));
    const glm::vec3 later = scene[99].knobs.flyerpos;
    EXPECT_NEAR(glm::distance(later, glm::vec3(100.0f, -100.0f, -190.0f)), 0.0f, 1e-2f);
    EXPECT_EQ(at(246).knobs.citybomb, 0.0f);
    EXPECT_EQ(at(246).knobs.rockety, 0.0f);
}

TEST(director_rocket, bursts_the_city_after_beat_248) {
    play(256.0f);
    const auto& frame = at(252.0f);
    EXPECT_NEAR(frame.knobs.rockety, (frame.beat - 250.0f) * 0.4f - 1.1f, 1e-5f);
    EXPECT_NEAR(frame.knobs.citybomb, (frame.beat - 248.0f) * 0.2f, 1e-5f);
    EXPECT_NEAR(frame.knobs.horizonbomb, (frame.beat - 248.0f) * 0.1f, 1e-5f);
    EXPECT_EQ(frame.drawing("zreset").knobs.horizonbomb, (&frame)[-1].knobs.horizonbomb)
        << "set behind the horizon's draw";
    EXPECT_EQ(frame.drawing("tunnel").knobs.citybomb, frame.knobs.citybomb);
}

struct jolt_s {
    glm::vec3 move; // of the camera, beyond its steady way
    int nextrandom;
};

// Plays scene 6 with the clock set to `beat` and the random numbers restarted in one pass shortly
// before that beat, and says what this pass did to the camera.
jolt_s joltat(float beat) {
    static jolt_s jolt;
    showlog::load();
    showlog::ondraw = [=, before = glm::vec3(0.0f),
                       set = false](const std::string& effect) mutable {
        flyphone_standin(effect);
        if (effect == "zreset" && !set && beatgrid > beat - 0.3f && beatgrid < beat) {
            set = true;
            beatgrid = beat;
            srand(7);
            before = tunnelflyer.pos;
        } else if (effect == "tunnel" && beatgrid == beat) {
            jolt = {tunnelflyer.pos - before, rand()};
        }
    };
    showlog::play(beat + 0.5f, 152.6f);
    return jolt;
}

TEST(director_rocket, is_quiet_at_beat_248_exactly) {
    const jolt_s jolt = joltat(248.0f);
    EXPECT_EQ(jolt.move, glm::vec3(0.0f));
    EXPECT_EQ(at(248.0f).knobs.rockety, 0.0f);
    srand(7);
    EXPECT_EQ(jolt.nextrandom, rand()) << "no number drawn";
}

TEST(director_rocket, draws_a_jolt_of_no_length_until_beat_250) {
    const jolt_s jolt = joltat(249.0f);
    EXPECT_EQ(jolt.move, glm::vec3(0.0f));
    EXPECT_NEAR(at(249.0f).knobs.rockety, -1.5f, 1e-5f);
    srand(7);
    util::rnd_n3();
    EXPECT_EQ(jolt.nextrandom, rand());
}

TEST(director_rocket, shakes_by_the_beats_since_250) {
    const jolt_s jolt = joltat(254.0f);
    srand(7);
    const glm::vec3 expected = util::vecRand3(0.0f, 4.0f);
    EXPECT_NEAR(glm::distance(jolt.move, expected), 0.0f, 1e-3f);
    EXPECT_GT(glm::length(jolt.move), 0.0f);
    EXPECT_EQ(jolt.nextrandom, rand());
}

// ---- scenes 8 and 9 ----

TEST(director_space, flies_the_phone_round_the_viewer) {
    play(288.0f);
    for (float beat : {274.0f, 278.5f, 281.0f, 285.0f, 287.9f}) {
        const auto& frame = at(beat);
        const float ang = std::sqrt(std::max(0.0f, frame.beat - 279.0f) / 9.0f) * 117.0f;
        const auto& phone = frame.drawing("phone").knobs;
        EXPECT_THAT(phone.phone_projection, IsMatrix(widelens()));
        EXPECT_THAT(phone.phone_rotation_mv,
                    IsMatrix(spacepose(ang, 300.0f - 50.0f * (frame.beat - 273.0f))))
            << beat;
        EXPECT_NEAR(frame.knobs.starang, ang - 117.0f, 1e-4f);
    }
}

TEST(director_space, drops_the_face_from_beat_279_and_draws_it_twice_until_281) {
    play(288.0f);
    EXPECT_EQ(at(278).knobs.ylift, 0.0f);
    EXPECT_TRUE(std::signbit(at(278).knobs.ylift));
    const auto& falling = at(280.5f);
    const float half = (falling.beat - 279.0f) * 0.5f;
    EXPECT_NEAR(falling.drawing("face").knobs.ylift, -half * half, 1e-5f);
    for (const auto& frame : frames)
        if (frame.beat > 273.1f && frame.beat < 287.9f) {
            EXPECT_EQ(frame.picture(), frame.knobs.ylift > -1.0f ? "starfield2 face face phone"
                                                                 : "starfield2 face phone")
                << frame.beat;
        }
    EXPECT_NEAR(showing("starfield2 face phone").front()->beat, 281.0, framebeats);
}

TEST(director_finale, coasts_on_springs_from_where_the_flight_ended) {
    play(300.0f);
    const auto* scene = &at(288.0f);
    const float ang = std::sqrt((scene->beat - 279.0f) / 9.0f) * 117.0f;
    const float zepo = 300.0f - 50.0f * (scene->beat - 273.0f);
    spring_c<float> zepo_s(zepo, zepo + 10.0f, 0.1f, 0.94f);
    zepo_s.vel = -0.9f;
    spring_c<float> ang_s(ang, ang, 0.01f, 0.94f);
    ang_s.vel = 0.02f;
    EXPECT_EQ(scene->drawing("ballspring").knobs.sf_zchange, 0.1f);
    for (int i = 0; i < 300; ++i) {
        zepo_s.iterate(1);
        ang_s.iterate(1);
        EXPECT_THAT(scene[i].knobs.phone_rotation_mv, IsMatrix(spacepose(ang_s.pos, zepo_s.pos)));
        EXPECT_NEAR(scene[i].knobs.starang, ang_s.pos - 117.0f, 1e-4f);
    }
    EXPECT_THAT(scene->knobs.phone_projection, IsMatrix(widelens()));
}

TEST(director_finale, pushes_harder_after_beat_300) {
    play(312.0f);
    for (float beat : {290.0f, 299.0f, 305.0f, 311.0f}) {
        const auto& frame = at(beat);
        EXPECT_NEAR(frame.drawing("ballspring").knobs.gravforce,
                    sin(frame.time) * 0.1 + 1.0 + std::max(0.0, frame.beat - 300.0) * 0.02, 1e-4);
    }
}

// ---- a clock that stands still ----

class director_standstill : public TestWithParam<float> {};

TEST_P(director_standstill, moves_nothing_without_ticks) {
    const float beat = GetParam();
    showlog::load();
    showlog::ondraw = [=](const std::string& effect) {
        flyphone_standin(effect);
        if (beatgrid >= beat)
            testport.presentstep = 0;
    };
    showlog::play(400.0f, (beat - 0.5f) * 0.634875f + 0.128f, 60);
    ASSERT_EQ(frames.size(), 60u);
    ASSERT_EQ(frames.back().ticks, 0);
    const auto& last = at(beat);
    ASSERT_EQ(last.ticks, 1);
    EXPECT_NE(memcmp(&last.knobs, &(&last)[-1].knobs, sizeof last.knobs), 0) << "it did move";
    for (const auto& frame : frames)
        if (frame.ticks == 0 && frame.beat >= beat) {
            EXPECT_EQ(memcmp(&frame.knobs, &last.knobs, sizeof last.knobs), 0);
        }
}

INSTANTIATE_TEST_SUITE_P(scenes, director_standstill,
                         Values(50.0f,    // the ring widens
                                140.0f,   // the city flies
                                190.0f,   // the gear's city
                                247.0f,   // the rocket's city
                                290.0f)); // springs

} // namespace

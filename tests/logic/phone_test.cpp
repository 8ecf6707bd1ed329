#include "3dphone.h"
#include "demo.h"
#include "effects.h"
#include "gldouble.h"
#include "main/clock.h"
#include "main/startup.h"
#include "model.h"
#include "phoneflight.h"
#include "services.h"
#include "showlog.h"
#include "sync.h"
#include "testport.h"

#include <cmath>
#include <cstddef>
#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>

namespace {

using namespace testing;

constexpr float restpos = -35.71f; // of the phone with all springs at 0
Uint8 keys[SDLK_LAST];

void load() {
    testport_startsdl();
    keystate = keys;
    flyphone->initgl();
    gldouble::clear();
}

// One frame of the flight. Returns what it printed.
std::string fly(double beat, int ticks = 0) {
    testport_setbeat(beat, ticks);
    gldouble::clear();
    testing::internal::CaptureStderr();
    flyphone->draw();
    const std::string lines = testing::internal::GetCapturedStderr();
    sync_ack();
    return lines;
}

// The state of the springs, read from the pose.
float zfix() {
    return phone_rotation_mv[3][2] - restpos;
}

float tilt() {
    return glm::degrees(std::atan2(-phone_rotation_mv[2][1], phone_rotation_mv[2][2]));
}

float turn() {
    return glm::degrees(std::asin(phone_rotation_mv[2][0]));
}

// Lets the springs come to rest on the targets of a moment between two clicks.
void settle(double beat) {
    fly(beat);
    fly(beat, 20000);
}

// ---- the model ----

TEST(phone_model, starts_with_identity_matrices_and_nothing_to_show) {
    EXPECT_EQ(phone_rotation_mv, glm::mat4(1.0f));
    EXPECT_EQ(phone_projection, glm::mat4(1.0f));
    EXPECT_EQ(phonescreentex, 0u);
    EXPECT_FALSE(show_whiteback);
    EXPECT_FALSE(flyphone_tunnelready);
    EXPECT_EQ(draw_the_phone_ptr, nullptr);
}

TEST(phone_model, draws_the_screen_then_the_body) {
    load();
    const model_c mesh("N9_low.obj");
    phonescreentex = 77;
    phonedraw();
    ASSERT_EQ(gldouble::draws().size(), 2u);
    const auto& screen = gldouble::draws()[0];
    const auto& body = gldouble::draws()[1];
    EXPECT_EQ(screen.mode, GLenum(GL_TRIANGLES));
    EXPECT_EQ(screen.count, 6);
    EXPECT_EQ(screen.textures.at(0), 77u);
    EXPECT_EQ(body.mode, GLenum(GL_TRIANGLES));
    EXPECT_EQ(body.count, mesh.fcnt * 3);
    EXPECT_EQ(body.textures.at(0), nysitex.textureid);
    for (const char* attribute : {"pos", "uv", "nor"})
        EXPECT_FALSE(gldouble::arrayenabled(attribute)) << attribute;
}

TEST(phone_model, the_screen_is_a_quad_with_u_down_the_long_side) {
    load();
    phonedraw();
    const auto& attributes = gldouble::draws()[0].attributes;
    const float top = 106.02917f, bottom = 17.070831f, z = 5.4845f;
    EXPECT_THAT(attributes.at("pos"),
                Pointwise(FloatEq(), {-25.f, top, z, -25.f, bottom, z, 25.f, top, z, //
                                      -25.f, bottom, z, 25.f, bottom, z, 25.f, top, z}));
    EXPECT_THAT(attributes.at("uv"), ElementsAre(0, 0, 1, 0, 0, 1, 1, 0, 1, 1, 0, 1));
    EXPECT_THAT(attributes.at("nor"),
                ElementsAre(0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1));
}

TEST(phone_model, the_body_is_the_mesh) {
    load();
    const model_c mesh("N9_low.obj");
    phonedraw();
    const auto& attributes = gldouble::draws()[1].attributes;
    const auto corners = static_cast<size_t>(mesh.fcnt) * 3;
    ASSERT_EQ(attributes.at("pos").size(), corners * 3);
    ASSERT_EQ(attributes.at("uv").size(), corners * 2);
    ASSERT_EQ(attributes.at("nor").size(), corners * 3);
    for (size_t i = 0; i < corners; ++i) {
        const realvert_s& corner = mesh.data[i];
        ASSERT_EQ(glm::make_vec3(&attributes.at("pos")[i * 3]), corner.pos);
        ASSERT_EQ(glm::make_vec2(&attributes.at("uv")[i * 2]), corner.tc);
        ASSERT_EQ(glm::make_vec3(&attributes.at("nor")[i * 3]), corner.nor);
    }
    EXPECT_THAT(gldouble::calls("glVertexAttribPointer(nor"),
                Each(HasSubstr(", " + std::to_string(sizeof(realvert_s)) + ",")));
}

TEST(phone_model, is_centred_and_lit_by_the_shared_matrices) {
    load();
    testport_setbeat(3.0);
    phone_projection = glm::perspective(1.0f, 1.5f, 1.0f, 100.0f);
    phone_rotation_mv = glm::rotate(glm::mat4(1.0f), 0.7f, glm::vec3(1.0f, 2.0f, 3.0f));
    phone_rotation_mv[3] = glm::vec4(4.0f, 5.0f, 6.0f, 1.0f);
    phonedraw();
    const auto& uniforms = gldouble::draws()[1].uniforms;
    const glm::mat4 mvp = glm::make_mat4(uniforms.at("mvp").data());
    const glm::mat3 mv = glm::make_mat3(uniforms.at("mv").data());
    const glm::vec4 center = mvp * glm::vec4(0.0f, 61.55f, 5.4845f, 1.0f);
    const glm::vec4 expected = phone_projection * glm::vec4(4.0f, 5.0f, 6.0f, 1.0f);
    EXPECT_NEAR(glm::distance(center, expected), 0.0f, 1e-4f);
    EXPECT_EQ(mv, glm::mat3(phone_rotation_mv));
    EXPECT_FLOAT_EQ(uniforms.at("time").at(0), timeval);
}

TEST(phone_model, marks_its_visible_screen_in_the_stencil) {
    load();
    draw_the_phone_ptr(true);
    std::vector<std::string> steps;
    for (const std::string& call : gldouble::calls())
        if (call.find("Stencil") != std::string::npos || call.find("glDraw") == 0)
            steps.push_back(call);
    EXPECT_THAT(steps,
                ElementsAre("glStencilFunc(GL_ALWAYS, 1, 1)",
                            "glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE)", "glStencilMask(1)",
                            "glDrawArrays(GL_TRIANGLES, 0, 6)", "glStencilFunc(GL_ALWAYS, 0, 1)",
                            "glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE)",
                            StartsWith("glDrawArrays(GL_TRIANGLES, 0, ")));
}

TEST(phone_model, leaves_the_stencil_alone_for_the_director) {
    load();
    phonedraw();
    EXPECT_THAT(gldouble::calls("glStencil"), IsEmpty());
}

TEST(phone_model, the_director_draws_through_the_pointer) {
    static int calls = 0;
    draw_the_phone_ptr = [](bool stencil) {
        EXPECT_FALSE(stencil);
        ++calls;
    };
    phonedraw();
    EXPECT_EQ(calls, 1);
}

// ---- the flight ----

struct target_s {
    double beat;
    int state;
    float z, tilt, turn, sway;
};

std::ostream& operator<<(std::ostream& out, const target_s& target) {
    return out << "state " << target.state << " at beat " << target.beat;
}

class phone_targets : public TestWithParam<target_s> {};

TEST_P(phone_targets, are_those_of_the_last_event) {
    const target_s& target = GetParam();
    load();
    settle(target.beat);
    EXPECT_NEAR(zfix(), target.z, 0.01f);
    EXPECT_NEAR(tilt(), target.tilt, 0.01f);
    EXPECT_NEAR(turn(), target.turn + target.sway * std::sin(timeval), 0.01f);
    EXPECT_NEAR(phone_rotation_mv[0][2], 0.0f, 1.0f);
}

INSTANTIATE_TEST_SUITE_P(
    states, phone_targets,
    Values(target_s{0.5, 7, -120, 0, 0, 0}, //
           target_s{1.5, 6, -50, 0, 0, 0},  //
           target_s{6.6, 4, -40, 10, 20, 1}, target_s{20.5, 2, -30, -10, 10, 6},
           target_s{34.5, 4, -40, 10, 20, 1},                                  // not 3
           target_s{48.5, 1, -10, -20, -10, 8}, target_s{64.5, 0, 0, 0, 0, 0}, //
           target_s{110.5, 5, -160, 0, 0, 0}, target_s{112.5, 6, -50, 0, 0, 0}));

TEST(phone_flight, shows_the_landscape_screen_upright_at_rest) {
    load();
    settle(64.5);
    // The long side, y of the mesh, lies along the viewer's x; the screen faces the viewer.
    EXPECT_NEAR(glm::distance(glm::vec3(phone_rotation_mv[1]), glm::vec3(-1, 0, 0)), 0, 1e-5);
    EXPECT_NEAR(glm::distance(glm::vec3(phone_rotation_mv[2]), glm::vec3(0, 0, 1)), 0, 1e-5);
    EXPECT_NEAR(phone_rotation_mv[3][2], restpos, 1e-4);
    EXPECT_NEAR(phone_projection[0][0], 0.8027061f, 1e-6f);
    EXPECT_NEAR(phone_projection[1][1], 1.428148f, 2e-6f) << "70 degrees";
    EXPECT_NEAR(phone_projection[2][2], -3001.0f / 2999.0f, 1e-6f) << "near 1, far 3000";
    EXPECT_NEAR(phone_projection[3][2], -6000.0f / 2999.0f, 1e-6f);
    EXPECT_EQ(phone_projection[2][3], -1.0f);
}

// A flight at 50 frames a second; numbers by a model of its own.
TEST(phone_flight, follows_the_worked_numbers) {
    showlog::load({"flyphone"});
    showlog::play(127.0f);
    const struct {
        float beat, z, tilt, turn;
    } expected[] = {{2.51f, -49.73f, 0.0f, 0.0f},      {5.50f, -55.46f, -225.98f, 0.0f},
                    {10.51f, -37.75f, 22.03f, 22.30f}, {25.50f, -28.76f, -9.47f, 10.29f},
                    {40.53f, -39.81f, 9.87f, 19.88f},  {60.50f, -9.51f, -20.01f, -7.10f},
                    {90.52f, 0.0f, 0.0f, 0.0f},        {111.51f, -135.24f, 0.0f, 0.0f},
                    {113.52f, -113.57f, 0.0f, 0.0f},   {114.53f, -21.33f, -319.10f, 0.0f},
                    {116.51f, -18.67f, -76.36f, 0.0f}, {120.52f, -56.73f, -5.75f, 0.0f},
                    {126.50f, -50.10f, -0.71f, 0.0f}};
    for (const auto& point : expected) {
        phone_rotation_mv = showlog::at(point.beat - 0.01f).knobs.phone_rotation_mv;
        EXPECT_NEAR(zfix(), point.z, 0.05f) << point.beat;
        EXPECT_NEAR(std::remainder(tilt() - point.tilt, 360.0f), 0.0f, 0.2f) << point.beat;
        EXPECT_NEAR(turn(), point.turn, 0.05f) << point.beat;
    }
}

TEST(phone_flight, takes_one_event_twice_at_beat_34) {
    load();
    fly(33.9);
    EXPECT_EQ(fly(34.2),
              "event 'phonefly4-2' happened! 34.20\nevent 'phonefly4-2' happened! 34.20\n");
    EXPECT_EQ(fly(37.2), "");
}

TEST(phone_flight, registers_its_events_in_the_order_of_the_checks) {
    load();
    EXPECT_EQ(fly(0.0), "adding event 'phonefly1' at time 0.00, spawn 0\n"
                        "event 'phonefly1' happened! 0.00\n"
                        "adding event 'phonefly2' at time 1.00, spawn 0\n"
                        "adding event 'phonefly3' at time 6.50, spawn 0\n"
                        "adding event 'phonespin1' at time 4.50, spawn 0\n"
                        "adding event 'phonefly4' at time 20.00, spawn 0\n"
                        "adding event 'phonefly4-2' at time 34.00, spawn 0\n"
                        "adding event 'phonefly5' at time 48.00, spawn 0\n"
                        "adding event 'phonefly6' at time 64.00, spawn 0\n"
                        "adding event 'phonefly7' at time 110.00, spawn 0\n"
                        "adding event 'phonefly8' at time 112.00, spawn 0\n"
                        "adding event 'phonefly9' at time 114.00, spawn 0\n"
                        "adding event 'phonefly10' at time 127.00, spawn 0\n"
                        "adding event 'starmover' at time 132.00, spawn 0\n");
}

TEST(phone_flight, turns_white_half_way_through_the_second_spin) {
    load();
    settle(113.5); // both spins' springs at rest
    EXPECT_FALSE(show_whiteback);
    fly(114.0);
    EXPECT_FALSE(show_whiteback) << "spun back to -360";
    float last = -360.0f;
    while (!show_whiteback) {
        last = std::remainder(tilt(), 360.0f);
        last -= last > 0.0f ? 360.0f : 0.0f;
        fly(115.2, 1);
        ASSERT_GT(tilt(), -181.0f);
    }
    EXPECT_GT(last, -180.0f);
    EXPECT_LT(last, -160.0f);
}

// ---- clicks ----

TEST(phone_click, jumps_once_on_every_beat) {
    load();
    fly(64.5); // state 0 comes with the events; 0 does not click
    fly(110.5);
    const float before = zfix();
    fly(111.02);
    EXPECT_NEAR(zfix(), before + 0.3f, 1e-4f);
    fly(111.05);
    EXPECT_NEAR(zfix(), before + 0.3f, 1e-4f) << "once";
    fly(111.5);
    fly(112.01);
    EXPECT_NEAR(zfix(), before + 0.6f, 1e-4f);
}

TEST(phone_click, needs_the_rest_of_the_beat_between_two) {
    load();
    fly(110.5);
    fly(111.02);
    const float clicked = zfix();
    fly(112.02);
    EXPECT_NEAR(zfix(), clicked, 1e-4f);
}

TEST(phone_click, rests_in_state_0) {
    load();
    fly(64.5);
    const float before = zfix();
    fly(65.02);
    EXPECT_NEAR(zfix(), before, 1e-4f);
}

TEST(phone_click, comes_in_state_0_with_the_latch) {
    load();
    fly(6.6); // state 4
    keys[SDLK_SPACE] = 1;
    EXPECT_EQ(fly(6.7), "state is now: 5\n");
    const float before = zfix();
    fly(7.02);
    EXPECT_NEAR(zfix(), before + 0.3f, 1e-4f);
    settle(7.5);
    EXPECT_NEAR(zfix(), 0.0f, 0.01f) << "the targets of state 0";
    keys[SDLK_SPACE] = 0;
    fly(7.6);
    const float released = zfix();
    fly(8.02);
    EXPECT_NEAR(zfix(), released, 1e-4f) << "without the latch it rests";
}

// ---- by hand ----

TEST(phone_hand, space_steps_once_a_press) {
    load();
    fly(64.5); // state 0
    for (const char* line : {"state is now: 1\n", "state is now: 2\n", "state is now: 3\n",
                             "state is now: 4\n", "state is now: 5\n", "state is now: 1\n"}) {
        keys[SDLK_SPACE] = 1;
        EXPECT_EQ(fly(64.6), line);
        EXPECT_EQ(fly(64.6), "") << "held";
        keys[SDLK_SPACE] = 0;
        EXPECT_EQ(fly(64.6), "");
    }
}

TEST(phone_hand, every_mouse_button_steps_like_space) {
    load();
    fly(64.5);
    int state = 0;
    for (Uint8 button : {1, 2, 4, 0x10}) {
        services.mousebuttons = button;
        EXPECT_EQ(fly(64.6), "state is now: " + std::to_string(++state) + "\n");
        EXPECT_EQ(fly(64.6), "") << "held";
        services.mousebuttons = 0;
        EXPECT_EQ(fly(64.6), "");
    }
}

TEST(phone_hand, a_latched_state_flies_to_its_own_targets) {
    load();
    fly(64.5);
    keys[SDLK_SPACE] = 1;
    settle(64.5);
    EXPECT_NEAR(zfix(), -10.0f, 0.01f);
    EXPECT_NEAR(tilt(), -20.0f, 0.01f);
}

TEST(phone_hand, steps_to_the_states_that_no_event_reaches) {
    load();
    fly(20.5); // state 2
    keys[SDLK_SPACE] = 1;
    settle(20.5);
    EXPECT_NEAR(zfix(), -170.0f, 0.01f);
    EXPECT_NEAR(tilt(), 80.0f, 0.01f);
    EXPECT_NEAR(turn(), 0.0f, 0.01f);
}

TEST(phone_hand, beyond_the_last_state_the_targets_stay) {
    load();
    fly(0.5); // state 7
    for (int state = 8; state < 128; ++state) {
        keys[SDLK_SPACE] = 1;
        EXPECT_EQ(fly(0.5), "state is now: " + std::to_string(state) + "\n");
        keys[SDLK_SPACE] = 0;
        fly(0.5);
    }
    settle(0.5);
    EXPECT_NEAR(zfix(), -20.0f, 0.01f) << "of state 8";
}

TEST(phone_hand, the_wheel_moves_the_phone) {
    load();
    fly(64.5);
    const float before = zfix();
    mouserull[0] = 3;
    mouserull[1] = 1;
    EXPECT_EQ(fly(64.5), "zpos: -35.690\n");
    EXPECT_NEAR(zfix(), before + 0.02f, 1e-4f);
    mouserull[0] = 1;
    EXPECT_EQ(fly(64.5), "") << "as many up as down";
}

// ---- the hand-over ----

TEST(phone_handover, takes_place_and_speed_to_the_city) {
    load();
    fly(0.0); // clicks to 0.3
    tunnelflyer.pos = tunnelflyer.vel = glm::vec3(9.0f);
    EXPECT_THAT(fly(127.5), EndsWith("running at pos 0.30000 vel 0.00000. accfac 0.00150\n"));
    EXPECT_TRUE(flyphone_tunnelready);
    EXPECT_EQ(tunnelflyer.pos, glm::vec3(0.0f, 0.0f, 0.3f));
    EXPECT_EQ(tunnelflyer.vel, glm::vec3(0.0f));
    EXPECT_NEAR(zfix(), 0.0f, 1e-4f);
}

TEST(phone_handover, waits_until_the_phone_is_near_enough) {
    load();
    settle(112.5); // at -50
    EXPECT_THAT(fly(127.2, 1), Not(HasSubstr("running")));
    EXPECT_FALSE(flyphone_tunnelready);
    std::string lines;
    int frames = 0;
    while (!flyphone_tunnelready && frames < 1000) {
        ASSERT_LE(zfix(), 0.0f + 2.0f);
        lines = fly(127.3, 1);
        ++frames;
    }
    EXPECT_GT(frames, 10);
    float pos = 0.0f, vel = 0.0f;
    ASSERT_EQ(sscanf(lines.c_str(), "running at pos %f vel %f.", &pos, &vel), 2) << lines;
    EXPECT_GT(pos, 0.0f);
    EXPECT_LE(pos - vel, 0.0f) << "in the first frame past the screen";
    EXPECT_GT(vel, 0.1f);
    EXPECT_EQ(tunnelflyer.pos.x, 0.0f);
    EXPECT_EQ(tunnelflyer.vel.y, 0.0f);
    EXPECT_NEAR(tunnelflyer.pos.z, pos, 1e-4f);
    EXPECT_NEAR(tunnelflyer.vel.z, vel, 1e-4f);
    EXPECT_NEAR(zfix(), 0.0f, 1e-4f) << "the phone itself has come to rest";
}

TEST(phone_handover, from_beat_132_on_the_stars_stream_with_the_phone) {
    load();
    settle(112.5); // at -50
    sf_zchange = 5.0f;
    fly(131.9);
    EXPECT_EQ(sf_zchange, 5.0f);
    fly(132.1);
    EXPECT_NEAR(sf_zchange, (0.0f - -50.0f) * 0.001f, 1e-4f);
    const float before = zfix();
    fly(132.2, 3);
    EXPECT_NEAR(sf_zchange, (before - zfix()) * 0.001f, 1e-6f);
    EXPECT_NE(sf_zchange, 0.0f);
}

} // namespace

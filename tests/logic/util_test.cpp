#include "util.h"

#include "spring.h"

#include <cmath>
#include <cstdlib>
#include <deque>
#include <gtest/gtest.h>
#include <limits>

namespace {

std::deque<int> forced; // what rand() gives next, before its own numbers
int drawn = 0;

} // namespace

// glibc's rand() is random(); standing in for it lets the tests choose the extremes and count.
extern "C" int rand() noexcept {
    ++drawn;
    if (forced.empty())
        return static_cast<int>(random());
    const int value = forced.front();
    forced.pop_front();
    return value;
}

namespace {

using glm::vec2;
using glm::vec3;
using glm::vec4;

TEST(util, rnd_is_rand_scaled_to_one) {
    forced = {0, 1 << 30, 1 << 29};
    EXPECT_EQ(util::rnd(), 0.0f);
    EXPECT_EQ(util::rnd(), 0.5f);
    EXPECT_EQ(util::rnd(), 0.25f);
    EXPECT_EQ(drawn, 3);
}

TEST(util, rnd_scales_by_exactly_two_to_the_minus_31) {
    for (int value : {1, 3, 1000003, 123456 << 8, 0x7fffff80}) {
        forced = {value};
        EXPECT_EQ(util::rnd(), std::ldexp(static_cast<float>(value), -31)) << value;
    }
}

TEST(util, rnd_and_rnd_n_never_return_one) {
    forced = {RAND_MAX, RAND_MAX, RAND_MAX - 63};
    EXPECT_LT(util::rnd(), 1.0f);
    EXPECT_LT(util::rnd_n(), 1.0f);
    EXPECT_LT(util::rnd(), 1.0f);
}

TEST(util, rnd_n_reaches_from_minus_one) {
    forced = {0, 1 << 30};
    EXPECT_EQ(util::rnd_n(), -1.0f);
    EXPECT_EQ(util::rnd_n(), 0.0f);
}

TEST(util, rnd_between_two_values) {
    forced = {0, 1 << 30};
    EXPECT_EQ(util::rnd(2.0f, 6.0f), 2.0f);
    EXPECT_EQ(util::rnd(2.0f, 6.0f), 4.0f);
    EXPECT_EQ(drawn, 2);
}

TEST(util, rnd_n3_draws_x_then_y_then_z) {
    forced = {0, 1 << 30, 3 << 29};
    EXPECT_EQ(util::rnd_n3(), vec3(-1.0f, 0.0f, 0.5f));
}

TEST(util, vecRand3_draws_three_numbers_an_attempt_until_the_length_fits) {
    // Too long (a corner of the cube), too short (its middle), then a fit on an axis.
    forced = {0, 0, 0, 1 << 30, 1 << 30, 1 << 30, 0, 1 << 30, 1 << 30};
    EXPECT_EQ(util::vecRand3(1.0f, 2.0f), vec3(-2.0f, 0.0f, 0.0f));
    EXPECT_EQ(drawn, 9);
}

TEST(util, vecRand3_takes_lengths_at_both_limits) {
    forced = {0, 1 << 30, 1 << 30, 1 << 30, 3 << 29, 1 << 30};
    EXPECT_EQ(util::vecRand3(0.5f, 1.0f), vec3(-1.0f, 0.0f, 0.0f));
    EXPECT_EQ(util::vecRand3(0.5f, 1.0f), vec3(0.0f, 0.5f, 0.0f));
    EXPECT_EQ(drawn, 6);
}

TEST(util, vecRand3_of_no_radius_draws_once) {
    EXPECT_EQ(util::vecRand3(0.0f, 0.0f), vec3(0.0f));
    EXPECT_EQ(drawn, 3);
}

TEST(util, vecRand3_of_a_radius_beyond_single_precision_still_ends) {
    for (float radius : {2e19f, 1e30f, std::numeric_limits<float>::infinity()}) {
        forced = {0, 0, 0, 0, 0, 0};
        drawn = 0;
        EXPECT_LT(util::vecRand3(0.0f, radius).x, 0.0f) << radius;
        EXPECT_EQ(drawn, 3) << radius;
    }
}

TEST(util_death, vecRand3_aborts_on_crossed_limits) {
    EXPECT_DEATH(util::vecRand3(2.0f, 1.0f), "MinRadius <= MaxRadius");
}

TEST(util, rotates_in_degrees_from_the_right) {
    const glm::mat4 moved(vec4(1, 0, 0, 0), vec4(0, 1, 0, 0), vec4(0, 0, 1, 0), vec4(5, 0, 0, 1));
    const vec4 p = util::rotate(moved, 90.0f, vec3(0, 0, 1)) * vec4(1, 0, 0, 1);
    EXPECT_NEAR(p.x, 5.0f, 1e-6f) << "turned first, then moved";
    EXPECT_NEAR(p.y, 1.0f, 1e-6f);
}

TEST(util, perspective_is_the_shows_lens) {
    const glm::mat4 lens = util::perspective(70.0f, 1.0f, 30000.0f);
    EXPECT_NEAR(lens[0][0], 0.8027061f, 1e-6f);
    EXPECT_NEAR(lens[1][1], 1.428148f, 1e-6f);
    EXPECT_NEAR(lens[2][2], -1.0000666f, 1e-6f);
    EXPECT_EQ(lens[2][3], -1.0f);
    EXPECT_NEAR(lens[3][2], -2.0000668f, 1e-6f);
    EXPECT_EQ(lens[0][1] + lens[1][0] + lens[3][3] + lens[2][0] + lens[3][0], 0.0f);
}

// ---- springs ----

TEST(spring, four_values_are_position_target_pull_damping) {
    const spring_c<float> spring(2.0f, 0.5f, 0.002f, 0.4f);
    EXPECT_EQ(spring.pos, 2.0f);
    EXPECT_EQ(spring.targetpos, 0.5f);
    EXPECT_EQ(spring.acc, 0.002f);
    EXPECT_EQ(spring.damp, 0.4f);
    EXPECT_EQ(spring.vel, 0.0f);
}

TEST(spring, init_sets_all_five_again) {
    spring_c<float> spring(2.0f, 0.5f, 0.002f, 0.4f);
    spring.vel = 9.0f;
    spring.init(1.0f, 3.0f, 0.01f, 0.95f);
    EXPECT_EQ(spring.pos, 1.0f);
    EXPECT_EQ(spring.targetpos, 3.0f);
    EXPECT_EQ(spring.acc, 0.01f);
    EXPECT_EQ(spring.damp, 0.95f);
    EXPECT_EQ(spring.vel, 0.0f);
}

TEST(spring, is_at_zero_by_default) {
    const spring_c<vec3> spring;
    EXPECT_EQ(spring.pos, vec3(0.0f));
    EXPECT_EQ(spring.vel, vec3(0.0f));
    EXPECT_EQ(spring.targetpos, vec3(0.0f));
}

TEST(spring, five_values_are_those_and_a_speed) {
    const spring_c<float> spring(2.0f, 0.5f, 0.002f, 0.4f, 0.7f);
    EXPECT_EQ(spring.pos, 2.0f);
    EXPECT_EQ(spring.targetpos, 0.5f);
    EXPECT_EQ(spring.acc, 0.002f);
    EXPECT_EQ(spring.damp, 0.4f);
    EXPECT_EQ(spring.vel, 0.7f);
}

TEST(spring, three_values_are_a_place_of_rest_pull_and_damping) {
    const spring_c<float> spring(2.0f, 0.002f, 0.4f);
    EXPECT_EQ(spring.pos, 2.0f);
    EXPECT_EQ(spring.targetpos, 2.0f);
    EXPECT_EQ(spring.acc, 0.002f);
    EXPECT_EQ(spring.damp, 0.4f);
    EXPECT_EQ(spring.vel, 0.0f);
}

TEST(spring, five_and_three_values_are_floats_for_vectors_too) {
    const spring_c<vec3> five(2.0f, 0.5f, 0.002f, 0.4f, 0.7f);
    EXPECT_EQ(five.pos, vec3(2.0f));
    EXPECT_EQ(five.targetpos, vec3(0.5f));
    EXPECT_EQ(five.acc, vec3(0.002f));
    EXPECT_EQ(five.damp, vec3(0.4f));
    EXPECT_EQ(five.vel, vec3(0.7f));
    const spring_c<vec2> three(2.0f, 0.002f, 0.4f);
    EXPECT_EQ(three.pos, vec2(2.0f));
    EXPECT_EQ(three.targetpos, vec2(2.0f));
    EXPECT_EQ(three.acc, vec2(0.002f));
    EXPECT_EQ(three.damp, vec2(0.4f));
    EXPECT_EQ(three.vel, vec2(0.0f));
}

TEST(spring, pulls_at_half_strength_from_rest) {
    spring_c<float> spring(2.0f, 0.5f, 0.002f, 0.4f);
    spring.iterate(1);
    EXPECT_FLOAT_EQ(spring.vel, -0.0015f);
    EXPECT_FLOAT_EQ(spring.pos, 1.9985f);
}

float velocityafter(float vel) {
    spring_c<float> spring(0.0f, 1.0f, 0.1f, 0.0f);
    spring.vel = vel;
    spring.iterate(1);
    return spring.vel;
}

TEST(spring, pulls_by_its_speed_between_a_half_and_one) {
    EXPECT_FLOAT_EQ(velocityafter(0.4f), 0.05f);
    EXPECT_FLOAT_EQ(velocityafter(0.5f), 0.05f);
    EXPECT_FLOAT_EQ(velocityafter(0.75f), 0.075f);
    EXPECT_FLOAT_EQ(velocityafter(-0.75f), 0.075f);
    EXPECT_FLOAT_EQ(velocityafter(1.0f), 0.1f);
    EXPECT_FLOAT_EQ(velocityafter(-3.0f), 0.1f);
}

TEST(spring, keeps_the_damped_part_of_its_velocity) {
    spring_c<float> spring(1.0f, 1.0f, 0.5f, 0.25f);
    spring.vel = 2.0f;
    spring.iterate(1);
    EXPECT_EQ(spring.vel, 0.5f);
    EXPECT_EQ(spring.pos, 1.5f);
}

TEST(spring, three_steps_at_once_are_three_steps) {
    spring_c<float> once(2.0f, 0.5f, 0.02f, 0.9f), often = once;
    once.iterate(3);
    for (int i = 0; i < 3; ++i)
        often.iterate(1);
    EXPECT_EQ(once.pos, often.pos);
    EXPECT_EQ(once.vel, often.vel);
}

TEST(spring, does_not_step_for_counts_of_zero_or_less) {
    spring_c<float> spring(2.0f, 0.5f, 0.002f, 0.4f);
    spring.iterate(0);
    spring.iterate(-5);
    EXPECT_EQ(spring.pos, 2.0f);
    EXPECT_EQ(spring.vel, 0.0f);
}

TEST(spring, steps_vectors_component_by_component) {
    spring_c<vec2> spring(vec2(0.0f), vec2(1.0f), vec2(0.1f), vec2(0.0f));
    spring.vel = vec2(0.1f, 2.0f);
    spring.iterate(1);
    EXPECT_FLOAT_EQ(spring.vel.x, 0.05f) << "by its own speed, not the vector's length";
    EXPECT_FLOAT_EQ(spring.vel.y, 0.1f);
}

} // namespace

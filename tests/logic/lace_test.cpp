#include "effects.h"
#include "gldouble.h"
#include "main/clock.h"
#include "testport.h"

#include <gtest/gtest.h>

namespace {

float radius() {
    return gldouble::draws().back().uniforms.at("distdist").at(0);
}

void drawat(double beat) {
    testport_setbeat(beat);
    gldouble::clear();
    lace->draw();
}

TEST(lace, stands_still_before_its_beat) {
    lace->initgl();
    for (int i = 0; i < 10; ++i)
        drawat(79.9);
    EXPECT_FLOAT_EQ(radius(), 2.0f);
}

TEST(lace, closes_in_from_beat_80) {
    lace->initgl();
    drawat(80.0);
    EXPECT_FLOAT_EQ(radius(), 1.9985f);
}

TEST(lace, covers_everything_some_time_after_beat_105) {
    lace->initgl();
    drawat(105.0);
    const float first = radius();
    EXPECT_FLOAT_EQ(first, 1.9985f) << "the new target holds from the next frame on";
    for (int i = 0; i < 5000; ++i)
        drawat(110.0);
    EXPECT_NEAR(radius(), -1.0f, 0.01f);
}

TEST(lace, blends_one_quad_and_leaves_no_state) {
    lace->initgl();
    drawat(90.0);
    ASSERT_EQ(gldouble::draws().size(), 1u);
    const auto& draw = gldouble::draws()[0];
    EXPECT_EQ(draw.mode, GLenum(GL_TRIANGLES));
    EXPECT_EQ(draw.count, 6);
    EXPECT_TRUE(draw.enabled.count(GL_BLEND));
    EXPECT_EQ(draw.blendsrc, GLenum(GL_SRC_ALPHA));
    EXPECT_EQ(draw.blenddst, GLenum(GL_ONE_MINUS_SRC_ALPHA));
    EXPECT_EQ(draw.attributes.at("uv"), draw.attributes.at("pos"));
    EXPECT_FALSE(gldouble::enabled(GL_BLEND));
    EXPECT_FALSE(gldouble::arrayenabled("pos"));
    EXPECT_FALSE(gldouble::arrayenabled("uv"));
}

} // namespace

#include "demoeffect.h"
#include "gldouble.h"
#include "testport.h"

#include <gtest/gtest.h>

extern demoeffect_c* templateeffect;
extern float templatesize;

namespace {

const gldouble::draw_s& drawat(double beat, int ticks) {
    testport_setbeat(beat, ticks);
    gldouble::clear();
    templateeffect->draw();
    return gldouble::draws().back();
}

TEST(templateeffect, draws_a_blended_quad_and_leaves_no_state) {
    templateeffect->initgl();
    const auto& draw = drawat(3.5, 1);
    EXPECT_EQ(draw.count, 6);
    EXPECT_TRUE(draw.enabled.count(GL_BLEND));
    EXPECT_FALSE(gldouble::enabled(GL_BLEND));
    EXPECT_FALSE(gldouble::arrayenabled("pos"));
}

TEST(templateeffect, is_as_large_as_its_knob_says_and_shrinks_on_the_beat) {
    templateeffect->initgl();
    templatesize = 0.25f;
    EXPECT_FLOAT_EQ(drawat(3.5, 1).uniforms.at("radius")[0], 0.25f);
    EXPECT_FLOAT_EQ(drawat(4.0, 0).uniforms.at("radius")[0], 0.25f * 0.8f);
    EXPECT_GT(drawat(4.5, 1).uniforms.at("radius")[0], 0.25f * 0.8f);
}

} // namespace

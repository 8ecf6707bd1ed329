// What HACKING.md promises about every effect.
#include "effects.h"
#include "gldouble.h"
#include "main/startup.h"
#include "testport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>

namespace {

using namespace testing;

class contract : public TestWithParam<int> {
protected:
    const effectentry_s& entry = effectlist[GetParam()];

    void SetUp() override {
        static Uint8 keys[SDLK_LAST] = {};
        testport_startsdl();
        keystate = keys;
        entry.effect->init();
        entry.effect->initgl();
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_LESS);
        glEnable(GL_STENCIL_TEST);
        glViewport(1, 2, 512, 64);
        glBindFramebuffer(GL_FRAMEBUFFER, 42);
    }

    // Moments all over the show, with frames that cover no tick, one and many.
    template<class check_t>
    void ateverymoment(check_t check) {
        int ticks = 0;
        for (double beat : {0.0, 20.5, 80.0, 110.0, 170.2, 215.0, 250.3, 265.0, 290.0, 305.0}) {
            SCOPED_TRACE(beat);
            testport_setbeat(beat, ticks);
            ticks = (ticks + 1) % 4;
            gldouble::clear();
            entry.effect->draw();
            check();
        }
    }
};

// The attributes whose arrays have been switched on last, not off.
std::vector<std::string> arrayslefton() {
    std::map<std::string, bool> arrays;
    for (const std::string& call : gldouble::calls()) {
        const std::string name = call.substr(call.find('(') + 1);
        if (call.find("glEnableVertexAttribArray(") == 0)
            arrays[name] = true;
        if (call.find("glDisableVertexAttribArray(") == 0)
            arrays[name] = false;
    }
    std::vector<std::string> on;
    for (const auto& [name, enabled] : arrays)
        if (enabled)
            on.push_back(name);
    return on;
}

// What two effects leave on, as their files say.
std::vector<std::string> arraysmeanttostay(const demoeffect_c* effect) {
    if (effect == fluid)
        return {"col)"};
    if (effect == bump)
        return {"pos)"};
    return {};
}

// The last call of that name; empty when there was none.
std::string last(const std::string& function) {
    const std::vector<std::string> calls = gldouble::calls(function + "(");
    return calls.empty() ? "" : calls.back();
}

TEST_P(contract, switches_back_what_it_switches) {
    ateverymoment([&] {
        EXPECT_TRUE(gldouble::enabled(GL_DEPTH_TEST));
        EXPECT_TRUE(gldouble::enabled(GL_STENCIL_TEST));
        EXPECT_FALSE(gldouble::enabled(GL_BLEND));
        EXPECT_FALSE(gldouble::enabled(GL_SCISSOR_TEST));
        EXPECT_FALSE(gldouble::enabled(GL_CULL_FACE));
        EXPECT_THAT(last("glDepthFunc"), AnyOf("", "glDepthFunc(GL_LESS)"));
        EXPECT_THAT(last("glDepthMask"), AnyOf("", "glDepthMask(1)"));
        EXPECT_EQ(arrayslefton(), arraysmeanttostay(entry.effect));
    });
}

TEST_P(contract, draws_into_the_target_that_is_bound_and_leaves_it) {
    ateverymoment([&] {
        for (const char* call : {"glBindFramebuffer", "glViewport", "glScissor"})
            EXPECT_EQ(last(call), "");
        EXPECT_EQ(last("glClear"), entry.effect == scrollertexgen ? "glClear(COLOR)" : "");
        EXPECT_EQ(testport.presents, 0);
    });
}

TEST_P(contract, touches_the_stencil_only_as_the_phone) {
    ateverymoment(
        [&] { EXPECT_EQ(gldouble::calls("glStencil").empty(), entry.effect != flyphone); });
}

TEST_P(contract, loads_nothing_while_it_draws) {
    ateverymoment([] {
        for (const char* call : {"glGenTextures", "glTexImage2D", "glCompileShader",
                                 "glLinkProgram", "glGenFramebuffers"})
            EXPECT_EQ(last(call), "");
    });
}

TEST(effectlist, names_every_effect_once) {
    std::set<std::string> names;
    std::set<const demoeffect_c*> effects;
    for (const effectentry_s& entry : effectlist) {
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
        EXPECT_TRUE(effects.insert(entry.effect).second) << entry.name;
    }
}

INSTANTIATE_TEST_SUITE_P(effects, contract, Range(0, static_cast<int>(std::size(effectlist))),
                         [](const TestParamInfo<int>& info) {
                             return std::string(effectlist[info.param].name);
                         });

} // namespace

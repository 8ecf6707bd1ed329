#include "fbo.h"

#include "gldouble.h"
#include "printed.h"

namespace {

using texts = std::vector<std::string>;

std::vector<int> viewport() {
    GLint box[4];
    glGetIntegerv(GL_VIEWPORT, box);
    return {box, box + 4};
}

TEST(fbo, is_a_colour_texture_in_a_framebuffer) {
    const fbo_c target(128, 64, 0);
    EXPECT_EQ(gldouble::calls(),
              (texts{"glGenFramebuffers(1)", "glGenTextures(1)",
                     "glBindFramebuffer(GL_FRAMEBUFFER, 1)", "glBindTexture(GL_TEXTURE_2D, 1)",
                     "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 128, 64, 0, GL_RGBA, "
                     "GL_UNSIGNED_BYTE, null)",
                     "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
                     "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                     "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
                     "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT)",
                     "glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, "
                     "1, 0)",
                     "glCheckFramebufferStatus(GL_FRAMEBUFFER)",
                     "glBindFramebuffer(GL_FRAMEBUFFER, 0)"}));
    EXPECT_EQ(target.width_p, 128);
    EXPECT_EQ(target.height_p, 64);
    EXPECT_EQ(target.fbohandle, 1u);
    EXPECT_EQ(target.colortex, 1u);
    EXPECT_EQ(gldouble::texture(0), target.colortex) << "stays bound";
}

class wrapping : public testing::TestWithParam<std::pair<int, GLenum>> {};

TEST_P(wrapping, follows_bit_2_alone) {
    const auto [flags, wrap] = GetParam();
    const fbo_c target(8, 8, flags);
    auto parameters = gldouble::image(target.colortex).parameters;
    EXPECT_EQ(parameters[GL_TEXTURE_WRAP_S], static_cast<float>(wrap));
    EXPECT_EQ(parameters[GL_TEXTURE_WRAP_T], static_cast<float>(wrap));
}

INSTANTIATE_TEST_SUITE_P(fbo, wrapping,
                         testing::Values(std::pair<int, GLenum>{0, GL_REPEAT},
                                         std::pair<int, GLenum>{1, GL_REPEAT},
                                         std::pair<int, GLenum>{2, GL_CLAMP_TO_EDGE},
                                         std::pair<int, GLenum>{3, GL_CLAMP_TO_EDGE},
                                         std::pair<int, GLenum>{4, GL_REPEAT},
                                         std::pair<int, GLenum>{-3, GL_REPEAT}));

TEST(fbo, says_what_gl_thinks_of_it_and_carries_on) {
    auto verdict = [](GLenum status) {
        gldouble::answers.framebufferstatus = status;
        return printed([] { fbo_c(8, 8, 0); });
    };
    EXPECT_EQ(verdict(GL_FRAMEBUFFER_COMPLETE), "fbo ok!\n");
    EXPECT_EQ(verdict(GL_FRAMEBUFFER_UNSUPPORTED), "fbo unsup!\n");
    EXPECT_EQ(verdict(GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT), "fbo problem!\n");
    EXPECT_EQ(verdict(0), "fbo problem!\n");
}

TEST(fbo, bind_saves_the_viewport_and_unbind_restores_it) {
    fbo_c target(128, 64, 0);
    glViewport(0, -80, 854, 640);
    gldouble::clear();
    target.bind();
    EXPECT_EQ(gldouble::calls(),
              (texts{"glBindFramebuffer(GL_FRAMEBUFFER, 1)", "glGetIntegerv(GL_VIEWPORT)",
                     "glViewport(0, 0, 128, 64)"}));
    EXPECT_EQ(gldouble::framebuffer(), target.fbohandle);
    gldouble::clear();
    target.unbind();
    EXPECT_EQ(gldouble::calls(),
              (texts{"glViewport(0, -80, 854, 640)", "glBindFramebuffer(GL_FRAMEBUFFER, 0)"}));
    EXPECT_EQ(viewport(), (std::vector<int>{0, -80, 854, 640}));
}

TEST(fbo, a_second_bind_saves_the_first_targets_viewport) {
    fbo_c first(128, 64, 0), second(512, 256, 0);
    glViewport(0, 0, 854, 480);
    first.bind();
    second.bind();
    second.unbind();
    EXPECT_EQ(viewport(), (std::vector<int>{0, 0, 128, 64}));
    EXPECT_EQ(gldouble::framebuffer(), 0u) << "never back to another target";
}

TEST(fbo, discard_does_nothing) {
    fbo_c target(8, 8, 0);
    gldouble::clear();
    target.discard();
    EXPECT_TRUE(gldouble::calls().empty());
}

} // namespace

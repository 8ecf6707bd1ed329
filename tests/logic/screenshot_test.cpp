#include "screenshot.h"

#include "gldouble.h"
#include "main/capture.h"
#include "testport.h"

#include <gtest/gtest.h>

namespace {

using texts = std::vector<std::string>;
using floats = std::vector<float>;

TEST(screenshot, sets_up_in_init_from_the_capture) {
    take_screenshot();
    static_cast<Uint8*>(screenshot_surface->pixels)[0] = 77;
    screenshot->init();
    EXPECT_NE(gldouble::program(), 0u);
    const auto& image = gldouble::image(gldouble::texture(0));
    EXPECT_EQ(image.width, 854);
    EXPECT_EQ(image.height, 480);
    EXPECT_EQ(image.format, GLenum(GL_RGBA));
    EXPECT_EQ(image.pixels[0], 77) << "the first stored row is the texture's bottom";
    gldouble::clear();
    screenshot->initgl();
    screenshot->quit();
    EXPECT_TRUE(gldouble::calls().empty());
}

TEST(screenshot, fills_the_target_with_the_texture) {
    take_screenshot();
    screenshot->init();
    gldouble::clear();
    screenshot->draw();
    EXPECT_EQ(
        gldouble::calls(),
        (texts{"glUseProgram(1)", "glActiveTexture(0)", "glBindTexture(GL_TEXTURE_2D, 1)",
               "glGetUniformLocation(1, tex)", "glUniform1i(tex, 0)", "glGetAttribLocation(1, pos)",
               "glVertexAttribPointer(pos, 3, GL_FLOAT, 0, 8, ptr)",
               "glEnableVertexAttribArray(pos)", "glDrawArrays(GL_TRIANGLES, 0, 6)"}));
    const floats corners = {-1, -1, 1, -1, -1, 1, 1, -1, 1, 1, -1, 1};
    const floats fetched = gldouble::draws().at(0).attributes.at("pos");
    for (size_t vertex = 0; vertex < 6; ++vertex) {
        EXPECT_EQ(fetched[vertex * 3], corners[vertex * 2]);
        EXPECT_EQ(fetched[vertex * 3 + 1], corners[vertex * 2 + 1]);
    }
}

TEST(screenshot, maps_the_bottom_left_of_the_target_to_texture_zero) {
    take_screenshot();
    screenshot->init();
    const std::string vertex = gldouble::shadersource(gldouble::program(), GL_VERTEX_SHADER);
    EXPECT_NE(vertex.find("gl_Position = vec4(pos, 0.0, 1.0);"), std::string::npos);
    EXPECT_NE(vertex.find("v_uv = pos * 0.5 + 0.5;"), std::string::npos);
}

} // namespace

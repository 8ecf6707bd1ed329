#include "newsbox.h"

#include "gldouble.h"
#include "shader.h"

#include <gtest/gtest.h>
#include <memory>

namespace {

using floats = std::vector<float>;
using texts = std::vector<std::string>;

struct stage_s {
    shader_c shader{};
    newsbox_render_c batch;
    newsbox_c box{};

    stage_s() {
        shader.init("attribute vec2 pos; attribute vec2 uv; void main() {}", "void main() {}");
        batch.shader = &shader;
        batch.texsize_x = 64.0f;
        batch.texsize_y = 32.0f;
        box.renderer = &batch;
        gldouble::clear();
    }
};

floats positions(const newsbox_c& box) {
    floats all;
    for (const newsvert_s& corner : box.coords)
        all.insert(all.end(), {corner.x, corner.y});
    return all;
}

floats texcoords(const newsbox_c& box) {
    floats all;
    for (const newsvert_s& corner : box.coords)
        all.insert(all.end(), {corner.u, corner.v});
    return all;
}

TEST(newsbox, starts_as_an_empty_batch) {
    EXPECT_EQ(newsbox_render_c().boxcount, 0);
}

TEST(newsbox, resize_lays_two_triangles_and_keeps_the_texture_coordinates) {
    stage_s stage;
    stage.box.settex(16, 8, 32, 16);
    const floats before = texcoords(stage.box);
    stage.box.resize(10, 20);
    EXPECT_EQ(positions(stage.box), (floats{0, 0, 10, 0, 0, 20, 10, 0, 10, 20, 0, 20}));
    EXPECT_EQ(texcoords(stage.box), before);
    EXPECT_EQ(stage.box.cs_x, 10.0f);
    EXPECT_EQ(stage.box.cs_y, 20.0f);
}

TEST(newsbox, settex_divides_texels_by_the_batchs_texture_size) {
    stage_s stage;
    stage.box.resize(1, 1);
    stage.box.settex(16, 8, 32, 16);
    EXPECT_EQ(texcoords(stage.box), (floats{0.25f, 0.25f, 0.5f, 0.25f, 0.25f, 0.5f, 0.5f, 0.25f,
                                            0.5f, 0.5f, 0.25f, 0.5f}));
    EXPECT_EQ(positions(stage.box), (floats{0, 0, 1, 0, 0, 1, 1, 0, 1, 1, 0, 1}));
}

TEST(newsbox, settex_comes_before_any_size) {
    stage_s stage;
    stage.box.settex(0, 0, 64, 32);
    EXPECT_EQ(texcoords(stage.box), (floats{0, 0, 1, 0, 0, 1, 1, 0, 1, 1, 0, 1}));
}

TEST(newsbox, set_shows_a_texel_rectangle_at_its_own_size_untinted) {
    stage_s stage;
    stage.box.setcol(0, 0, 0, 0);
    stage.box.set(16, 8, 32, 24);
    EXPECT_EQ(stage.box.cs_x, 16.0f);
    EXPECT_EQ(stage.box.cs_y, 16.0f);
    EXPECT_EQ(positions(stage.box), (floats{0, 0, 16, 0, 0, 16, 16, 0, 16, 16, 0, 16}));
    EXPECT_EQ(stage.box.coords[0].u, 0.25f);
    EXPECT_EQ(stage.box.coords[4].v, 0.75f);
    EXPECT_EQ(floats(stage.box.color, stage.box.color + 4), (floats{1, 1, 1, 1}));
}

TEST(newsbox, reversed_corners_mirror_the_picture_in_a_box_of_the_same_size) {
    stage_s straight, reversed;
    straight.box.set(0, 0, 10, 20);
    reversed.box.set(10, 20, 0, 0);
    EXPECT_EQ(positions(reversed.box), positions(straight.box));
    EXPECT_EQ(reversed.box.cs_x, 10.0f);
    EXPECT_EQ(reversed.box.cs_y, 20.0f);
    EXPECT_EQ(reversed.box.coords[0].u, 10.0f / 64.0f);
    EXPECT_EQ(reversed.box.coords[0].v, 20.0f / 32.0f);
    EXPECT_EQ(reversed.box.coords[4].u, 0.0f);
    EXPECT_EQ(reversed.box.coords[4].v, 0.0f);
}

TEST(newsbox, setcol_keeps_the_tint) {
    stage_s stage;
    stage.box.setcol(0.1f, 0.2f, 0.3f, 0.4f);
    EXPECT_EQ(floats(stage.box.color, stage.box.color + 4), (floats{0.1f, 0.2f, 0.3f, 0.4f}));
}

TEST(newsbox, draw_appends_six_vertices_at_an_offset) {
    stage_s stage;
    stage.box.set(0, 0, 10, 20);
    stage.box.draw(100, 200);
    stage.box.draw(-5, 0.5f);
    EXPECT_EQ(stage.batch.boxcount, 12);
    EXPECT_EQ(stage.batch.coordbuffer[4].x, 110.0f);
    EXPECT_EQ(stage.batch.coordbuffer[4].y, 220.0f);
    EXPECT_EQ(stage.batch.coordbuffer[4].u, 10.0f / 64.0f);
    EXPECT_EQ(stage.batch.coordbuffer[4].v, 20.0f / 32.0f);
    EXPECT_EQ(stage.batch.coordbuffer[6].x, -5.0f);
    EXPECT_EQ(stage.batch.coordbuffer[6].y, 0.5f);
    EXPECT_TRUE(gldouble::calls().empty()) << "drawing waits for the flush";
}

TEST(newsbox, flush_draws_the_batch_once_and_empties_it) {
    stage_s stage;
    stage.box.set(0, 0, 10, 20);
    stage.box.draw(1, 2);
    stage.box.draw(3, 4);
    stage.batch.flush();
    EXPECT_EQ(
        gldouble::calls(),
        (texts{"glGetAttribLocation(1, pos)", "glVertexAttribPointer(pos, 2, GL_FLOAT, 0, 16, ptr)",
               "glEnableVertexAttribArray(pos)", "glGetAttribLocation(1, uv)",
               "glVertexAttribPointer(uv, 2, GL_FLOAT, 0, 16, ptr)",
               "glEnableVertexAttribArray(uv)", "glDrawArrays(GL_TRIANGLES, 0, 12)"}));
    const auto& draw = gldouble::draws().at(0);
    const floats& pos = draw.attributes.at("pos");
    EXPECT_EQ(floats(pos.begin() + 12, pos.begin() + 16), (floats{3, 4, 13, 4}));
    const floats& uv = draw.attributes.at("uv");
    EXPECT_EQ(floats(uv.begin(), uv.begin() + 4), (floats{0, 0, 10.0f / 64.0f, 0}));
    EXPECT_EQ(stage.batch.boxcount, 0);
}

TEST(newsbox, flush_of_nothing_makes_no_gl_call) {
    stage_s stage;
    stage.batch.flush();
    stage.box.draw(0, 0);
    stage.batch.flush();
    gldouble::clear();
    stage.batch.flush();
    EXPECT_TRUE(gldouble::calls().empty());
}

TEST(newsbox, takes_166_whole_boxes_and_leaves_out_what_does_not_fit) {
    auto stage = std::make_unique<stage_s>();
    stage->box.set(0, 0, 10, 20);
    for (int i = 0; i < 166; ++i)
        stage->box.draw(static_cast<float>(i), 0);
    EXPECT_EQ(stage->batch.boxcount, 996);
    EXPECT_EQ(stage->batch.coordbuffer[990].x, 165.0f);
    shader_c* const behind = stage->batch.shader; // the field that an overflow would reach
    for (int i = 0; i < 10; ++i)
        stage->box.draw(999, 999);
    EXPECT_EQ(stage->batch.boxcount, 996);
    EXPECT_EQ(stage->batch.shader, behind);
    EXPECT_EQ(stage->batch.texsize_x, 64.0f);
    stage->batch.flush();
    EXPECT_EQ(gldouble::draws().at(0).count, 996);
}

} // namespace

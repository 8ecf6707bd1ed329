#include "model.h"

#include "printed.h"

#include <cstring>
#include <glm/glm.hpp>

namespace {

using glm::vec2;
using glm::vec3;

model_c loaded(const std::string& content) {
    writefile("a.obj", content);
    return model_c("a.obj");
}

const std::string triangle = "v 0 0 0\nv 2 0 0\nv 0 4 -6\nvt 0 0\nvt 1 0\nvt 0 1\nvn 0 0 1\n"
                             "vn 0 1 0\nvn 1 0 0\n";

std::vector<int> indices(const facei_s& f) {
    return {f.v1, f.v2, f.v3, f.t1, f.t2, f.t3, f.n1, f.n2, f.n3};
}

TEST(model, has_the_layout_that_the_attribute_arrays_take) {
    EXPECT_EQ(sizeof(realvert_s), 32u);
    EXPECT_EQ(offsetof(realvert_s, tc), 12u);
    EXPECT_EQ(offsetof(realvert_s, nor), 20u);
    EXPECT_EQ(sizeof(facei_s), 36u);
}

TEST(model, reads_records_and_expands_three_vertices_a_face) {
    scratch_c scratch;
    const model_c model = loaded(triangle + "f 1/1/1 2/2/2 3/3/3\n# end\n");
    EXPECT_EQ(model.vcnt, 3);
    EXPECT_EQ(model.tcnt, 3);
    EXPECT_EQ(model.ncnt, 3);
    ASSERT_EQ(model.fcnt, 1);
    EXPECT_EQ(indices(model.faces[0]), (std::vector<int>{0, 1, 2, 0, 1, 2, 0, 1, 2}));
    EXPECT_EQ(model.data[1].pos, vec3(2, 0, 0));
    EXPECT_EQ(model.data[1].tc, vec2(1, 0));
    EXPECT_EQ(model.data[1].nor, vec3(0, 1, 0));
    EXPECT_EQ(model.data[2].pos, vec3(0, 4, -6));
}

TEST(model, takes_each_corner_as_position_texture_normal) {
    scratch_c scratch;
    const model_c model = loaded("f 1/2/3 4/5/6 7/8/9\n#\n");
    EXPECT_EQ(indices(model.faces[0]), (std::vector<int>{0, 3, 6, 1, 4, 7, 2, 5, 8}));
}

TEST(model, reports_its_way) {
    scratch_c scratch;
    const std::string said = printed([] { loaded(triangle + "f 1/1/1 2/2/2 3/3/3\n#\n"); });
    EXPECT_EQ(said.substr(0, said.find("data at")),
              "loading a.obj\n"
              "tc size: 8, vertex size: 12 face size: 36. counts: 3 1\n");
    EXPECT_EQ(said.substr(said.find("center of")), "center of model is at 0.67, 1.33, -2.00\n"
                                                   "min of model is at 0.00, 0.00, -6.00\n"
                                                   "max of model is at 2.00, 4.00, 0.00\n"
                                                   "realcenter of model is at 1.00, 2.00, -3.00\n");
}

TEST(model, does_not_move_the_mesh_and_keeps_its_center) {
    scratch_c scratch;
    const model_c model = loaded(triangle + "f 1/1/1 2/2/2 3/3/3\n#\n");
    EXPECT_EQ(model.data[0].pos, vec3(0.0f));
    EXPECT_FLOAT_EQ(model.center.y, 4.0f / 3.0f);
}

TEST(model, counts_a_last_face_with_newline_twice) {
    scratch_c scratch;
    const model_c model = loaded(triangle + "f 3/1/2 2/2/1 1/3/3\n");
    ASSERT_EQ(model.fcnt, 2);
    EXPECT_EQ(indices(model.faces[1]), indices(model.faces[0]));
    EXPECT_EQ(model.data[5].pos, model.data[2].pos);
}

TEST(model, counts_a_last_face_without_newline_once) {
    scratch_c scratch;
    EXPECT_EQ(loaded(triangle + "f 1/1/1 2/2/2 3/3/3").fcnt, 1);
}

TEST(model, counts_a_last_vertex_with_newline_twice) {
    scratch_c scratch;
    EXPECT_EQ(loaded("v 1 2 3\n").vcnt, 2);
}

TEST(model, ignores_every_other_line) {
    scratch_c scratch;
    const model_c model = loaded("# v 1 2 3\no thing\ng group\ns 1\nusemtl paint\nvp 1 2\nv\n"
                                 "f\n\n v 1 2 3\n#\n");
    EXPECT_EQ(model.vcnt + model.tcnt + model.ncnt + model.fcnt, 0);
}

TEST(model, leaves_what_a_record_does_not_say_at_zero) {
    scratch_c scratch;
    const model_c model = loaded("v 5\nvt 6\nvn 7 8\n#\n");
    EXPECT_EQ(model.verts[0], vec3(5, 0, 0));
    EXPECT_EQ(model.texcoords[0], vec2(6, 0));
    EXPECT_EQ(model.normals[0], vec3(7, 8, 0));
}

// A vertex record of that many characters, of which the last is its z.
std::string vertexline(size_t length) {
    return "v 7 8" + std::string(length - strlen("v 7 8") - 1, ' ') + "9\n";
}

TEST(model, reads_lines_of_a_thousand_characters_whole) {
    scratch_c scratch;
    for (size_t length : {999, 1000})
        EXPECT_EQ(loaded(vertexline(length) + "#\n").verts[0], vec3(7, 8, 9)) << length;
    const model_c longer = loaded(vertexline(1001) + "#\n");
    EXPECT_EQ(longer.verts[0], vec3(7, 8, 0)) << "its last character is a line of its own";
    EXPECT_EQ(longer.vcnt, 1);
}

TEST(model, reads_numbers_that_look_octal_as_tens) {
    scratch_c scratch;
    EXPECT_EQ(indices(loaded("f 010/011/007 0x9/08/1 2/2/2\n#\n").faces[0]),
              (std::vector<int>{9, -1, 1, 10, 7, 1, 6, 0, 1}));
}

TEST(model, keeps_6000_vertices_and_counts_on_without_a_word) {
    scratch_c scratch;
    std::string many;
    for (int i = 1; i <= 6001; ++i)
        many += "v " + std::to_string(i) + " 0 0\n";
    writefile("a.obj", many + "#\n");
    const std::string said = printed([] {
        const model_c model("a.obj");
        EXPECT_EQ(model.vcnt, 6001);
        EXPECT_EQ(model.verts[5999].x, 6000.0f);
    });
    EXPECT_EQ(said.find("too many"), std::string::npos);
}

TEST(model, keeps_6000_normals_and_counts_on_without_a_word) {
    scratch_c scratch;
    std::string many;
    for (int i = 1; i <= 6001; ++i)
        many += "vn " + std::to_string(i) + " 0 0\n";
    writefile("a.obj", many + "#\n");
    const std::string said = printed([] {
        const model_c model("a.obj");
        EXPECT_EQ(model.ncnt, 6001);
        EXPECT_EQ(model.normals[5999].x, 6000.0f);
    });
    EXPECT_EQ(said.find("too many"), std::string::npos);
}

TEST(model, reports_every_texture_coordinate_beyond_6000_and_counts_on) {
    scratch_c scratch;
    std::string many;
    for (int i = 0; i < 6002; ++i)
        many += "vt 1 2\n";
    writefile("a.obj", many + "#\n");
    const std::string said = printed([] { EXPECT_EQ(model_c("a.obj").tcnt, 6002); });
    EXPECT_NE(said.find("too many tc (6000)\ntoo many tc (6001)\n"), std::string::npos);
}

TEST(model, reports_and_drops_every_face_beyond_7000) {
    scratch_c scratch;
    std::string many;
    for (int i = 0; i < 7002; ++i)
        many += "f 1/1/1 2/2/2 3/3/3\n";
    writefile("a.obj", many + "#\n");
    const std::string said = printed([] { EXPECT_EQ(model_c("a.obj").fcnt, 7000); });
    EXPECT_NE(said.find("too many faces (7000)\ntoo many faces (7000)\n"), std::string::npos);
}

TEST(model, without_faces_has_no_center_and_untouched_bounds) {
    scratch_c scratch;
    const std::string said = printed([] { loaded("v 1 2 3\n#\n"); });
    EXPECT_EQ(said.substr(said.find("center of")),
              "center of model is at nan, nan, nan\n"
              "min of model is at 1000000.00, 1000000.00, 1000000.00\n"
              "max of model is at -1000000.00, -1000000.00, -1000000.00\n"
              "realcenter of model is at 0.00, 0.00, 0.00\n");
}

TEST(model, keeps_the_previous_face_where_fields_are_missing) {
    scratch_c scratch;
    const model_c model = loaded("f 1/2/3 4/5/6 7/8/9\nf 11/12/13 14\n#\n");
    EXPECT_EQ(indices(model.faces[1]), (std::vector<int>{10, 13, 6, 11, 4, 7, 12, 5, 8}));
}

TEST(model, reads_an_empty_index_as_minus_one_and_ignores_a_fourth_corner) {
    scratch_c scratch;
    const model_c model = loaded("f 1//3 4/5/6 7/8/9 10/11/12\n#\n");
    EXPECT_EQ(indices(model.faces[0]), (std::vector<int>{0, 3, 6, -1, 4, 7, 2, 5, 8}));
    EXPECT_EQ(model.fcnt, 1);
}

TEST(model, parseface_splits_at_slashes_blanks_and_the_end_of_the_line) {
    scratch_c scratch;
    model_c model = loaded("#\n");
    facei_s face{};
    char text[] = "1/2/3 4/5/6 7/8/9\n99/99/99";
    model.parseface(text, &face);
    EXPECT_EQ(indices(face), (std::vector<int>{0, 3, 6, 1, 4, 7, 2, 5, 8}));
}

TEST(model, reads_zeros_for_indices_outside_its_arrays) {
    scratch_c scratch;
    const model_c model = loaded(triangle + "f 0/0/0 -9/-9/-9 6001/999999999/99999999999999999999\n"
                                            "f -2147483648/1/1 2147483647/1/1 x/y/z\n#\n");
    ASSERT_EQ(model.fcnt, 2);
    for (int i : {0, 1, 2}) {
        EXPECT_EQ(model.data[i].pos, vec3(0.0f));
        EXPECT_EQ(model.data[i].tc, vec2(0.0f));
        EXPECT_EQ(model.data[i].nor, vec3(0.0f));
    }
}

TEST(model, reads_files_with_carriage_returns) {
    scratch_c scratch;
    const model_c model = loaded("v 1 2 3\r\nf 1/1/1 1/1/1 1/1/1\r\n#\r\n");
    EXPECT_EQ(model.verts[0], vec3(1, 2, 3));
    EXPECT_EQ(model.data[2].pos, vec3(1, 2, 3));
}

TEST(model, is_empty_where_the_file_is_a_directory) {
    scratch_c scratch;
    std::filesystem::create_directory("a.obj");
    EXPECT_EQ(model_c("a.obj").fcnt, 0);
}

TEST(model_death, a_mesh_that_cannot_be_opened_ends_the_show_with_its_name) {
    EXPECT_EXIT(model_c("nosuch.obj"), testing::ExitedWithCode(1),
                "loading nosuch.obj\n.*nosuch.obj");
}

} // namespace

#include "shader.h"

#include "gldouble.h"
#include "printed.h"
#include "texture.h"

namespace {

using texts = std::vector<std::string>;

const char vertex_src[] = "attribute vec2 pos; void main() {}";
const char fragment_src[] = "uniform sampler2D tex; uniform float brite; void main() {}";

shader_c made() {
    shader_c shader{};
    shader.init(vertex_src, fragment_src);
    gldouble::clear();
    return shader;
}

TEST(shader, compiles_vertex_then_fragment_links_and_leaves_the_program_current) {
    shader_c shader{};
    EXPECT_EQ(shader.programid, 0u);
    shader.init(vertex_src, fragment_src);
    EXPECT_EQ(
        gldouble::calls(),
        (texts{"glCreateShader(GL_VERTEX_SHADER)", "glShaderSource(1, 1)", "glCompileShader(1)",
               "glGetShaderiv(1, GL_COMPILE_STATUS)", "glGetShaderInfoLog(1, 512)",
               "glCreateShader(GL_FRAGMENT_SHADER)", "glShaderSource(2, 1)", "glCompileShader(2)",
               "glGetShaderiv(2, GL_COMPILE_STATUS)", "glGetShaderInfoLog(2, 512)",
               "glCreateProgram()", "glAttachShader(1, 1)", "glAttachShader(1, 2)",
               "glLinkProgram(1)", "glGetProgramiv(1, GL_LINK_STATUS)", "glUseProgram(1)"}));
    EXPECT_EQ(shader.programid, 1u);
    EXPECT_EQ(gldouble::program(), 1u);
    EXPECT_EQ(gldouble::shadersource(1, GL_VERTEX_SHADER), vertex_src);
    EXPECT_EQ(gldouble::shadersource(1, GL_FRAGMENT_SHADER), fragment_src);
}

TEST(shader, prints_warnings_with_their_source_and_goes_on) {
    gldouble::answers.infolog = "careful";
    shader_c shader{};
    EXPECT_EQ(printed([&] { shader.init("A", "B"); }), "careful (src: 'A')careful (src: 'B')");
    EXPECT_NE(shader.programid, 0u);
}

TEST(shader, prints_the_first_511_characters_of_a_long_log) {
    gldouble::answers.infolog = std::string(2000, 'w');
    shader_c shader{};
    EXPECT_EQ(printed([&] { shader.init("A", "B"); }),
              std::string(511, 'w') + " (src: 'A')" + std::string(511, 'w') + " (src: 'B')");
}

TEST(shader, says_nothing_without_a_log) {
    shader_c shader{};
    EXPECT_EQ(printed([&] { shader.init("A", "B"); }), "");
}

TEST(shader_death, aborts_when_it_does_not_compile_after_printing_the_log) {
    gldouble::answers.compiles = false;
    gldouble::answers.infolog = "syntax error";
    shader_c shader{};
    EXPECT_DEATH(shader.init("A", "B"), "^syntax error \\(src: 'A'\\).*src/shader.*compiled");
}

TEST(shader_death, aborts_without_a_shader_object) {
    gldouble::answers.createshader = false;
    shader_c shader{};
    EXPECT_DEATH(shader.init("A", "B"), "src/shader.*shader != 0");
}

TEST(shader_death, aborts_without_a_program_object) {
    gldouble::answers.createprogram = false;
    shader_c shader{};
    EXPECT_DEATH(shader.init("A", "B"), "src/shader.*tempprogram");
}

TEST(shader_death, aborts_when_it_does_not_link) {
    gldouble::answers.links = false;
    shader_c shader{};
    EXPECT_DEATH(shader.init("A", "B"), "src/shader.*linked");
}

TEST(shader, use_makes_it_current) {
    const shader_c first = made(), second = made();
    first.use();
    EXPECT_EQ(gldouble::program(), first.programid);
    second.use();
    EXPECT_EQ(gldouble::program(), second.programid);
}

TEST(shader, looks_names_up_afresh_on_every_call) {
    const shader_c shader = made();
    EXPECT_EQ(shader.uniform("brite"), shader.uniform("brite"));
    EXPECT_EQ(shader.uniform("nosuch"), -1);
    EXPECT_EQ(gldouble::calls(),
              (texts{"glGetUniformLocation(1, brite)", "glGetUniformLocation(1, brite)",
                     "glGetUniformLocation(1, nosuch)"}));
    gldouble::clear();
    EXPECT_EQ(shader.attrib("pos"), shader.attrib("pos"));
    EXPECT_EQ(shader.attrib("nosuch"), -1);
    EXPECT_EQ(gldouble::calls().size(), 3u);
}

TEST(shader, array_points_the_attribute_and_then_enables_it) {
    const shader_c shader = made();
    const float corners[] = {0, 0, 1, 0};
    shader.array("pos", 2, GL_FLOAT, 8, corners);
    EXPECT_EQ(gldouble::calls(), (texts{"glGetAttribLocation(1, pos)",
                                        "glVertexAttribPointer(pos, 2, GL_FLOAT, 0, 8, ptr)",
                                        "glEnableVertexAttribArray(pos)"}));
    EXPECT_TRUE(gldouble::arrayenabled("pos"));
}

TEST(shader, array_without_a_pointer_only_disables) {
    const shader_c shader = made();
    shader.array("pos", 2, GL_FLOAT, 8, nullptr);
    EXPECT_EQ(gldouble::calls(),
              (texts{"glGetAttribLocation(1, pos)", "glDisableVertexAttribArray(pos)"}));
}

TEST(shader, texture_binds_on_its_unit_and_leaves_that_active) {
    const shader_c shader = made();
    texture_c tex{};
    tex.textureid = 7;
    shader.texture("tex", 1, tex);
    EXPECT_EQ(gldouble::calls(), (texts{"glActiveTexture(1)", "glBindTexture(GL_TEXTURE_2D, 7)",
                                        "glGetUniformLocation(1, tex)", "glUniform1i(tex, 1)"}));
    EXPECT_EQ(gldouble::activeunit(), 1);
    EXPECT_EQ(gldouble::texture(1), 7u);
}

TEST(shader, texture_binds_on_any_unit) {
    const shader_c shader = made();
    texture_c tex{};
    for (int unit : {0, 2, 7}) {
        tex.textureid = static_cast<GLuint>(20 + unit);
        shader.texture("tex", unit, tex);
        EXPECT_EQ(gldouble::activeunit(), unit);
        EXPECT_EQ(gldouble::texture(unit), tex.textureid);
        EXPECT_EQ(gldouble::uniform("tex"), std::vector<float>{static_cast<float>(unit)});
    }
}

TEST(shader, texture_binds_cube_maps_as_such) {
    const shader_c shader = made();
    texture_c tex{};
    tex.textureid = 7;
    tex.flags = TEX_CUBE;
    shader.texture("tex", 0, tex);
    EXPECT_EQ(gldouble::calls("glBindTexture"), texts{"glBindTexture(GL_TEXTURE_CUBE_MAP, 7)"});
}

} // namespace

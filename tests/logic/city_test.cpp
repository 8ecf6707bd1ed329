#include "city.h"

#include "3dphone.h"
#include "demo.h"
#include "effects.h"
#include "gldouble.h"
#include "main/clock.h"
#include "sync.h"
#include "testport.h"
#include "util.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace {

constexpr int allblocks = 0xFFFF;

std::string capture(const std::function<void()>& action) {
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

// A mesh of triangles, three positions each.
model_c makemesh(const std::vector<glm::vec3>& corners) {
    const std::string file = testing::TempDir() + "city_" +
                             testing::UnitTest::GetInstance()->current_test_info()->name() + ".obj";
    std::ofstream out(file);
    for (const glm::vec3& p : corners)
        out << "v " << p.x << ' ' << p.y << ' ' << p.z << '\n';
    out << "vt 0 0\nvn 0 1 0\n";
    for (size_t i = 1; i + 2 <= corners.size(); i += 3)
        out << "f " << i << "/1/1 " << i + 1 << "/1/1 " << i + 2 << "/1/1\n";
    out << "# end\n";
    out.close();
    model_c mesh(file.c_str());
    std::filesystem::remove(file);
    return mesh;
}

std::vector<int> elements(const citysplit_s& blocks, int b) {
    return {blocks.blockElements[b], blocks.blockElements[b] + blocks.blockElementsCount[b]};
}

// The blocks that a triangle with one corner here, and the others in the same place, is listed in.
std::set<int> blocksat(float x, float z) {
    const citysplit_s blocks = split(makemesh({{x, 0, z}, {x, 1, z}, {x, 2, z}}));
    std::set<int> listed;
    for (int b = 0; b < cityblocks; ++b)
        if (blocks.blockElementsCount[b])
            listed.insert(b);
    return listed;
}

// Planes that nothing is outside of.
const plane_t anywhere[4] = {
    {{1, 0, 0}, 1e9f}, {{1, 0, 0}, 1e9f}, {{1, 0, 0}, 1e9f}, {{1, 0, 0}, 1e9f}};

struct camera_s {
    glm::mat4 projection, view, inverse;
    glm::vec3 verts[8];
    plane_t planes[4];

    camera_s(const glm::mat4& p, const glm::mat4& v)
        : projection(p), view(v), inverse(glm::inverse(v)) {
        calc_frustum(projection, inverse, verts, planes);
    }

    glm::vec3 position() const { return glm::vec3(inverse[3]); }
};

class random_c {
public:
    float operator()(float a, float b) {
        return std::uniform_real_distribution<float>(a, b)(engine);
    }

    glm::vec3 vector(float a, float b) {
        const float x = (*this)(a, b), y = (*this)(a, b), z = (*this)(a, b);
        return {x, y, z};
    }

    camera_s camera() {
        glm::mat4 view(1.0f);
        for (int axis = 0; axis < 3; ++axis) {
            glm::vec3 direction(0.0f);
            direction[axis] = 1.0f;
            view = util::rotate(view, (*this)(-180.0f, 180.0f), direction);
        }
        const glm::vec3 eye((*this)(-400.0f, 400.0f), (*this)(-100.0f, 700.0f),
                            (*this)(-400.0f, 400.0f));
        return {util::perspective((*this)(20.0f, 100.0f), 1.0f, 30000.0f),
                glm::translate(view, -eye)};
    }

private:
    std::mt19937 engine{12345};
};

bool onscreen(const camera_s& camera, const glm::vec3& p) {
    const glm::vec4 clip = camera.projection * camera.view * glm::vec4(p, 1.0f);
    return clip.w > 1.0f && std::abs(clip.x) <= clip.w && std::abs(clip.y) <= clip.w;
}

TEST(split, a_triangle_over_three_blocks_is_listed_in_all_three) {
    citysplit_s blocks;
    const model_c mesh = makemesh({{-300, 0, -300},
                                   {-100, 0, -300},
                                   {-300, 0, 100}, // 0, 1, 8
                                   {310, 0, 310},
                                   {320, 0, 310},
                                   {310, 0, 320}}); // 15
    const std::string log = capture([&] { blocks = split(mesh); });
    EXPECT_EQ(elements(blocks, 0), std::vector<int>({0, 1, 2}));
    EXPECT_EQ(elements(blocks, 1), std::vector<int>({0, 1, 2}));
    EXPECT_EQ(elements(blocks, 8), std::vector<int>({0, 1, 2}));
    EXPECT_EQ(elements(blocks, 15), std::vector<int>({3, 4, 5}));
    EXPECT_EQ(log.substr(0, log.find("split 2")), "city faces: 2\nsplit 0: 1\nsplit 1: 1\n");
    EXPECT_EQ(log.substr(log.find("split 15")), "split 15: 1\nworst case: 4\npoop: 12\n");
}

TEST(split, borders_belong_to_the_higher_column_and_the_outside_to_the_outermost) {
    using set = std::set<int>;
    EXPECT_EQ(blocksat(-200, -400), set({1}));
    EXPECT_EQ(blocksat(-200.01f, -400), set({0}));
    EXPECT_EQ(blocksat(0, -400), set({2}));
    EXPECT_EQ(blocksat(-0.01f, -400), set({1}));
    EXPECT_EQ(blocksat(200, -400), set({3}));
    EXPECT_EQ(blocksat(199.99f, -400), set({2}));
    EXPECT_EQ(blocksat(-400, -200), set({4}));
    EXPECT_EQ(blocksat(-400, 0), set({8}));
    EXPECT_EQ(blocksat(-400, 200), set({12}));
    EXPECT_EQ(blocksat(9999, -9999), set({3}));
    EXPECT_EQ(blocksat(-9999, 9999), set({12}));
}

TEST(split, lists_of_the_show_s_city_are_what_a_search_finds) {
    const model_c mesh("city08.obj");
    const citysplit_s blocks = split(mesh);
    const auto column = [](float c) { return c < -200 ? 0 : c < 0 ? 1 : c < 200 ? 2 : 3; };
    int total = 0;
    for (int b = 0; b < cityblocks; ++b) {
        std::vector<int> want;
        for (int corner = 0; corner < mesh.fcnt * 3; corner += 3) {
            const auto inside = [&](const realvert_s& v) {
                return column(v.pos.x) + 4 * column(v.pos.z) == b;
            };
            if (std::any_of(mesh.data + corner, mesh.data + corner + 3, inside))
                want.insert(want.end(), {corner, corner + 1, corner + 2});
        }
        EXPECT_EQ(elements(blocks, b), want) << "block " << b;
        EXPECT_EQ(blocks.blockElements[b], blocks.elements.get() + total) << "back to back";
        total += blocks.blockElementsCount[b];
    }
    EXPECT_GE(total, mesh.fcnt * 3);
}

TEST(split, an_empty_city_has_sixteen_empty_blocks) {
    citysplit_s blocks;
    const model_c mesh = makemesh({});
    const std::string log = capture([&] { blocks = split(mesh); });
    for (int count : blocks.blockElementsCount)
        EXPECT_EQ(count, 0);
    EXPECT_NE(log.find("worst case: 0\npoop: 0\n"), std::string::npos);
}

TEST(split, a_mesh_beyond_16_bit_indices_wraps_them) {
    model_c mesh = makemesh({});
    mesh.fcnt = 30000;
    std::vector<realvert_s> vertices(90000);
    mesh.data = vertices.data();
    const citysplit_s blocks = split(mesh);
    ASSERT_EQ(blocks.blockElementsCount[10], 90000);
    EXPECT_EQ(blocks.blockElements[10][65535], 65535);
    EXPECT_EQ(blocks.blockElements[10][65536], 0);
}

TEST(tritoplane, lies_through_its_points_with_a_counterclockwise_normal) {
    const plane_t floor = tritoplane({0, 5, 0}, {0, 5, 7}, {3, 5, 0});
    EXPECT_EQ(floor.n, glm::vec3(0, 1, 0));
    EXPECT_FLOAT_EQ(floor.d, 5.0f);
    const plane_t turned = tritoplane({0, 5, 0}, {3, 5, 0}, {0, 5, 7});
    EXPECT_EQ(turned.n, glm::vec3(0, -1, 0));
    EXPECT_FLOAT_EQ(turned.d, -5.0f);
    random_c random;
    for (int i = 0; i < 1000; ++i) {
        const glm::vec3 p1 = random.vector(-9, 9), p2 = random.vector(-9, 9),
                        p3 = random.vector(-9, 9);
        const plane_t plane = tritoplane(p1, p2, p3);
        for (const glm::vec3& p : {p1, p2, p3})
            ASSERT_NEAR(glm::dot(plane.n, p), plane.d, 1e-3);
        ASSERT_NEAR(glm::length(plane.n), 1.0f, 1e-5);
    }
}

TEST(calc_frustum, corners_are_those_of_the_picture) {
    random_c random;
    for (int i = 0; i < 200; ++i) {
        // A near far plane: what lies 30000 units away is hard to find back in single precision.
        camera_s camera = random.camera();
        camera = camera_s(util::perspective(70.0f, 1.0f, 1000.0f), camera.view);
        for (int c = 0; c < 8; ++c) {
            const glm::vec4 clip =
                camera.projection * camera.view * glm::vec4(camera.verts[c], 1.0f);
            const glm::vec3 ndc = glm::vec3(clip) / clip.w;
            ASSERT_NEAR(ndc.x, c & 1 ? 1.0 : -1.0, 5e-3);
            ASSERT_NEAR(ndc.y, c & 2 ? 1.0 : -1.0, 5e-3);
            ASSERT_NEAR(ndc.z, c & 4 ? 1.0 : -1.0, 5e-3);
        }
    }
}

TEST(calc_frustum, planes_are_bottom_top_left_right_and_face_outwards) {
    const camera_s camera(util::perspective(70.0f, 1.0f, 30000.0f), glm::mat4(1.0f));
    const auto outside = [&](int plane, const glm::vec3& p) {
        return glm::dot(camera.planes[plane].n, p) - camera.planes[plane].d > 0.0f;
    };
    const glm::vec3 points[4] = {{0, -90, -100}, {0, 90, -100}, {-190, 0, -100}, {190, 0, -100}};
    for (int plane = 0; plane < 4; ++plane) {
        EXPECT_FALSE(outside(plane, {0, 0, -100}));
        EXPECT_FALSE(outside(plane, {0, 0, -90000})) << "there is no far plane";
        for (int point = 0; point < 4; ++point)
            EXPECT_EQ(outside(plane, points[point]), plane == point);
    }
}

TEST(testBb, a_box_that_touches_a_plane_is_inside) {
    const plane_t planes[4] = {anywhere[0], {{0, 1, 0}, 10.0f}, {{-1, 0, 0}, 5.0f}, anywhere[3]};
    EXPECT_TRUE(testBb(planes, {{0, 10, 0}, {1, 20, 1}}));
    EXPECT_FALSE(testBb(planes, {{0, 10.001f, 0}, {1, 20, 1}}));
    EXPECT_TRUE(testBb(planes, {{-9, 0, 0}, {-5, 1, 1}}));
    EXPECT_FALSE(testBb(planes, {{-9, 0, 0}, {-5.001f, 1, 1}}));
}

TEST(testBb, is_false_exactly_when_one_plane_has_all_corners_outside) {
    random_c random;
    int outside = 0;
    for (int i = 0; i < 5000; ++i) {
        const camera_s camera = random.camera();
        const glm::vec3 min = random.vector(-400, 400);
        const box_s box = {min, min + random.vector(1, 200)};
        bool want = true;
        for (const plane_t& plane : camera.planes) {
            bool allout = true;
            for (int c = 0; c < 8; ++c) {
                const glm::vec3 corner(c & 1 ? box.max.x : box.min.x, c & 2 ? box.max.y : box.min.y,
                                       c & 4 ? box.max.z : box.min.z);
                allout = allout && glm::dot(plane.n, corner) - plane.d > 0.0f;
            }
            want = want && !allout;
        }
        ASSERT_EQ(testBb(camera.planes, box), want);
        outside += !want;
    }
    EXPECT_GT(outside, 500);
    EXPECT_LT(outside, 4500);
}

TEST(constructCitymask, a_block_exactly_at_the_distance_is_kept) {
    const glm::vec3 offset(800, 0, -1600);
    const glm::vec3 above = offset + glm::vec3(-300, 100, -300); // block 0
    EXPECT_EQ(constructCitymask(above, anywhere, offset, 100.0f), 1);
    EXPECT_EQ(constructCitymask(above, anywhere, offset, 99.99f), 0);
    EXPECT_EQ(constructCitymask(above, anywhere, offset, 1e6f), allblocks);
}

TEST(constructCitymask, numbers_blocks_by_column_of_x_plus_four_times_column_of_z) {
    for (int x = 0; x < 4; ++x)
        for (int y = 0; y < 4; ++y)
            EXPECT_EQ(constructCitymask({x * 200.0f - 300.0f, 10, y * 200.0f - 300.0f}, anywhere,
                                        {0, 0, 0}, 50.0f),
                      1 << (x + 4 * y));
}

TEST(constructCitymask, takes_a_block_s_height_into_account) {
    plane_t planes[4] = {anywhere[0], anywhere[1], anywhere[2], {{0, -1, 0}, -585.0f}};
    EXPECT_EQ(constructCitymask({0, 0, 0}, planes, {0, 0, 0}, 1e6f), allblocks)
        << "touches y = 585";
    planes[3].d = -585.1f;
    EXPECT_EQ(constructCitymask({0, 0, 0}, planes, {0, 0, 0}, 1e6f), 0);
}

TEST(constructCitymask, never_culls_a_block_that_has_a_vertex_on_screen) {
    const model_c mesh("city08.obj");
    const int vertices = mesh.fcnt * 3;
    random_c random;
    long seen = 0, culled = 0;
    for (int i = 0; i < 3000; ++i) {
        const camera_s camera = random.camera();
        const float distance = random(100.0f, 1500.0f);
        const glm::vec3 offset = 800.0f * glm::vec3(i % 3 - 1, 0, i / 3 % 3 - 1);
        const int mask = constructCitymask(camera.position(), camera.planes, offset, distance);
        for (int v = i % 31; v < vertices; v += 31) {
            const glm::vec3& p = mesh.data[v].pos;
            const auto column = [](float c) { return c < -200 ? 0 : c < 0 ? 1 : c < 200 ? 2 : 3; };
            const int x = column(p.x), y = column(p.z);
            const glm::vec3 centre = offset + glm::vec3(x * 200 - 300, 0, y * 200 - 300);
            if (glm::distance(centre, camera.position()) > distance ||
                !onscreen(camera, p + offset))
                continue;
            ++seen;
            ASSERT_TRUE(mask & 1 << (x + 4 * y)) << "camera " << i << ", vertex " << v;
        }
        for (int b = 0; b < cityblocks; ++b)
            culled += !(mask & 1 << b);
    }
    EXPECT_GT(seen, 10000);
    EXPECT_GT(culled, 10000);
}

TEST(city, fits_the_boxes_that_its_blocks_are_tested_by) {
    const model_c mesh("city08.obj");
    ASSERT_LE(mesh.fcnt * 3, 65536);
    for (int v = 0; v < mesh.fcnt * 3; ++v) {
        const glm::vec3& p = mesh.data[v].pos;
        ASSERT_LE(std::abs(p.x), 400.001f);
        ASSERT_LE(std::abs(p.z), 400.001f);
        ASSERT_GE(p.y, 0.0f);
        ASSERT_LE(p.y, 585.0f);
    }
}

class instance : public testing::Test {
protected:
    void SetUp() override {
        shader.init("attribute vec3 pos; uniform mat4 mvp; uniform vec3 citySpacePos;", "");
        shader.array("pos", 3, GL_FLOAT, sizeof(realvert_s), &mesh.data->pos);
        phone_projection = util::perspective(70.0f, 1.0f, 30000.0f);
        gldouble::clear();
    }

    shader_c shader{};
    model_c mesh = makemesh({{-300, 0, -300},
                             {-100, 0, -300},
                             {-300, 0, 100}, // 0, 1, 8
                             {310, 0, 310},
                             {320, 0, 310},
                             {310, 0, 320}}); // 15
    citysplit_s blocks = split(mesh);
};

TEST_F(instance, an_empty_mask_makes_no_call) {
    drawInstance(shader, blocks, glm::mat4(1.0f), {0, 0, 0}, 0);
    EXPECT_TRUE(gldouble::calls().empty());
}

TEST_F(instance, draws_its_blocks_in_ascending_order) {
    drawInstance(shader, blocks, glm::mat4(1.0f), {0, 0, 0}, 1 << 15 | 1 << 8 | 1 << 2);
    ASSERT_EQ(gldouble::draws().size(), 3u);
    EXPECT_EQ(gldouble::draws()[0].count, 0) << "block 2 is empty";
    EXPECT_EQ(gldouble::draws()[1].indices, std::vector<unsigned>({0, 1, 2}));
    EXPECT_EQ(gldouble::draws()[2].indices, std::vector<unsigned>({3, 4, 5}));
    EXPECT_EQ(gldouble::calls("glDrawElements")[1],
              "glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, ptr)");
    EXPECT_EQ(gldouble::calls("glUniform").size(), 2u);
}

TEST_F(instance, moves_the_copy_and_knows_where_the_eye_is_in_it) {
    const glm::vec3 eye(10, 20, 30), offset(800, 0, -800);
    const glm::mat4 mv = glm::translate(util::rotate(glm::mat4(1.0f), 30.0f, {0, 1, 0}), -eye);
    drawInstance(shader, blocks, mv, offset, 1);
    const auto& uniforms = gldouble::draws()[0].uniforms;
    const auto& place = uniforms.at("citySpacePos");
    EXPECT_LT(glm::distance(glm::vec3(place[0], place[1], place[2]), eye - offset), 1e-3f);
    glm::mat4 mvp;
    std::copy_n(uniforms.at("mvp").begin(), 16, &mvp[0][0]);
    const glm::vec4 got = mvp * glm::vec4(1, 2, 3, 1);
    const glm::vec4 want = phone_projection * mv * glm::vec4(offset + glm::vec3(1, 2, 3), 1);
    EXPECT_LT(glm::distance(got, want), 1e-2f);
}

// The whole effect, flying level along -z of the city's own axes.
class flight : public testing::Test {
protected:
    void SetUp() override {
        tunnel->initgl();
        phone_projection = util::perspective(70.0f, 1.0f, 30000.0f);
        phone_rotation_mv = util::rotate(glm::mat4(1.0f), 90.0f, {0, 0, 1});
        place({0, 300, 0});
    }

    // Puts the camera at p in city units.
    static void place(const glm::vec3& p) { tunnelflyer.pos = glm::vec3(0, 220, 0) - p; }

    static void draw(double beat, int skip = 1) {
        testport_setbeat(beat, skip);
        gldouble::clear();
        tunnel->draw();
        sync_ack();
    }

    static std::vector<float> uniform(const std::string& name) {
        return gldouble::draws().back().uniforms.at(name);
    }

    // The eye in each drawn copy's own coordinates, in the order of the copies.
    static std::vector<glm::vec3> eyes() {
        std::vector<glm::vec3> result;
        for (const auto& drawn : gldouble::draws()) {
            const auto& e = drawn.uniforms.at("citySpacePos");
            const glm::vec3 eye(e[0], e[1], e[2]);
            if (result.empty() || glm::distance(result.back(), eye) > 1.0f)
                result.push_back(eye);
        }
        return result;
    }
};

TEST_F(flight, says_hello_on_standard_output) {
    testing::internal::CaptureStdout();
    tunnel->init();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "init wtf\n");
}

TEST_F(flight, repeats_the_city_round_the_camera) {
    phone_projection = util::perspective(179.0f, 1.0f, 30000.0f);
    CityMaxDistance = 3000.0f;
    for (const glm::vec3& p :
         {glm::vec3(0, 300, 0), {399, 300, -399}, {401, 300, -401}, {-5000, 300, 12345}}) {
        place(p);
        draw(130.0);
        const std::vector<glm::vec3> drawn = eyes();
        ASSERT_GE(drawn.size(), 4u);
        bool home = false;
        for (const glm::vec3& eye : drawn) {
            EXPECT_LE(std::abs(eye.x), 1201.0f);
            EXPECT_LE(std::abs(eye.z), 1201.0f);
            EXPECT_NEAR(eye.y, 300.0f, 0.5f);
            home = home || (std::abs(eye.x) <= 401.0f && std::abs(eye.z) <= 401.0f);
            EXPECT_NEAR(std::remainder(eye.x - p.x, 800.0f), 0.0f, 0.5f);
            EXPECT_NEAR(std::remainder(eye.z - p.z, 800.0f), 0.0f, 0.5f);
        }
        EXPECT_TRUE(home);
    }
}

TEST_F(flight, draws_copies_column_by_column) {
    phone_projection = util::perspective(179.0f, 1.0f, 30000.0f);
    CityMaxDistance = 3000.0f;
    draw(130.0);
    const std::vector<glm::vec3> drawn = eyes();
    for (size_t i = 1; i < drawn.size(); ++i) {
        const bool nextcolumn = drawn[i].x < drawn[i - 1].x - 1.0f;
        const bool samecolumn = std::abs(drawn[i].x - drawn[i - 1].x) < 1.0f;
        EXPECT_TRUE(nextcolumn || (samecolumn && drawn[i].z < drawn[i - 1].z)) << "copy " << i;
    }
}

TEST_F(flight, follows_the_camera_upwards_in_steps_of_800) {
    phone_projection = util::perspective(179.0f, 1.0f, 30000.0f);
    CityMaxDistance = 3000.0f;
    place({0, 850, 0});
    draw(130.0);
    ASSERT_FALSE(eyes().empty());
    EXPECT_NEAR(eyes()[0].y, 50.0f, 0.5f);
}

TEST_F(flight, fog_follows_the_view_distance_within_limits) {
    const auto fog = [](float distance) {
        CityMaxDistance = distance;
        draw(130.0);
        return gldouble::uniform("u_dist")[0];
    };
    EXPECT_FLOAT_EQ(fog(1000.0f), 800.0f);
    EXPECT_FLOAT_EQ(fog(150.0f), 0.0f);
    EXPECT_FLOAT_EQ(fog(200.0f), 0.0f);
    EXPECT_FLOAT_EQ(fog(1200.0f), 1000.0f);
    const size_t near = gldouble::draws().size();
    EXPECT_FLOAT_EQ(fog(2400.0f), 1000.0f);
    EXPECT_GT(gldouble::draws().size(), near) << "the cull keeps growing";
}

TEST_F(flight, a_bomb_brightens_and_from_1_4_on_bursts) {
    const auto burst = [](float bomb) {
        citybomb = bomb;
        draw(130.0);
        EXPECT_FLOAT_EQ(uniform("bomb")[0], bomb);
        return uniform("bomb2")[0];
    };
    EXPECT_FLOAT_EQ(burst(0.7f), 0.0f);
    EXPECT_FLOAT_EQ(burst(1.4f), 0.0f);
    EXPECT_NEAR(burst(1.6f), 180.0f, 1e-2);
    EXPECT_NEAR(burst(2.4f), 900.0f, 1e-2);
}

TEST_F(flight, out_of_sight_draws_and_uploads_nothing_per_copy) {
    CityMaxDistance = 1.0f;
    draw(130.0);
    EXPECT_TRUE(gldouble::draws().empty());
    EXPECT_TRUE(gldouble::calls("glUniformMatrix4fv").empty());
}

TEST_F(flight, reads_its_vertices_from_the_mesh_and_leaves_no_array) {
    draw(130.25);
    ASSERT_FALSE(gldouble::draws().empty());
    const auto& drawn = gldouble::draws().back();
    EXPECT_EQ(drawn.components.at("pos"), 3);
    EXPECT_EQ(drawn.components.at("uv"), 2);
    EXPECT_EQ(drawn.components.at("nor"), 3);
    const model_c mesh("city08.obj");
    const unsigned v = drawn.indices[0];
    EXPECT_EQ(drawn.attributes.at("pos")[v * 3 + 1], mesh.data[v].pos.y);
    EXPECT_EQ(drawn.attributes.at("uv")[v * 2 + 1], mesh.data[v].tc.y);
    EXPECT_EQ(drawn.attributes.at("nor")[v * 3 + 1], mesh.data[v].nor.y);
    EXPECT_NEAR(drawn.uniforms.at("beatgrid")[0], 0.25f, 1e-5);
    EXPECT_EQ(drawn.uniforms.at("lightdir"),
              std::vector<float>({0.6666667f, 0.6666667f, 0.33333334f}));
    EXPECT_EQ(gldouble::image(drawn.textures.at(0)).parameters.at(GL_TEXTURE_WRAP_T),
              float(GL_REPEAT));
    EXPECT_EQ(gldouble::image(drawn.textures.at(0)).format, GLenum(GL_RGBA));
    for (const char* name : {"pos", "uv", "nor"})
        EXPECT_FALSE(gldouble::arrayenabled(name));
}

TEST_F(flight, the_camera_s_angles_follow_its_four_cues) {
    CityMaxDistance = 1.0f; // nothing to draw
    const auto settle = [](double beat) {
        for (int i = 0; i < 200; ++i)
            draw(beat, 100);
        return glm::vec2(camPitch, camYaw);
    };
    EXPECT_EQ(settle(136.9), glm::vec2(0, 0));
    EXPECT_LT(glm::distance(settle(137.0), glm::vec2(-20, 30)), 0.1f);
    EXPECT_LT(glm::distance(settle(150.0), glm::vec2(-40, 90)), 0.1f);
    EXPECT_LT(glm::distance(settle(176.0), glm::vec2(20, 90)), 0.1f);
    EXPECT_LT(glm::distance(settle(192.0), glm::vec2(-10, 90)), 0.1f);
    EXPECT_LT(glm::distance(settle(300.0), glm::vec2(-10, 90)), 0.1f);
}

TEST_F(flight, an_angle_eases_in_on_its_spring) {
    draw(136.0);
    draw(137.0);
    EXPECT_FLOAT_EQ(camPitch, -20.0f * 0.002f * 0.5f);
    EXPECT_FLOAT_EQ(camYaw, 30.0f * 0.002f * 0.5f);
    draw(137.1, 0);
    EXPECT_FLOAT_EQ(camYaw, 30.0f * 0.002f * 0.5f) << "no ticks, no step";
}

TEST_F(flight, turns_about_y_by_pitch_and_about_x_by_yaw) {
    CityMaxDistance = 1.0f; // nothing to draw
    for (int i = 0; i < 200; ++i)
        draw(150.0, 100); // -40 and 90 degrees
    glm::mat4 want = phone_rotation_mv;
    want = util::rotate(want, camPitch, {0, 1, 0});
    want = util::rotate(want, camYaw, {1, 0, 0});
    want = util::rotate(want, -90.0f, {0, 0, 1});
    glm::mat3 mv;
    const std::vector<float> got = gldouble::uniform("mv");
    std::copy_n(got.begin(), 9, &mv[0][0]);
    for (int c = 0; c < 3; ++c)
        EXPECT_LT(glm::distance(mv[c], glm::vec3(want[c])), 1e-5f);
}

} // namespace

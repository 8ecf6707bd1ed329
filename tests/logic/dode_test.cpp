#include "effects.h"
#include "gldouble.h"
#include "main/clock.h"
#include "model.h"
#include "sync.h"
#include "testport.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <glm/glm.hpp>
#include <gtest/gtest.h>

namespace {

using positions_t = std::vector<glm::dvec3>;

std::vector<glm::vec3> drawcorners(double beat, int skip = 1) {
    testport_setbeat(beat, skip);
    gldouble::clear();
    dode->draw();
    sync_ack();
    const std::vector<float>& values = gldouble::draws().back().attributes.at("pos");
    std::vector<glm::vec3> corners;
    for (size_t i = 0; i + 2 < values.size(); i += 3)
        corners.emplace_back(values[i], values[i + 1], values[i + 2]);
    return corners;
}

// The mesh, and the way back from drawn corners to its positions.
struct mesh_s {
    model_c model = model_c("dode.obj");

    std::vector<int> cornerindices() const {
        std::vector<int> indices;
        for (int i = 0; i < model.fcnt; ++i)
            for (int v : {model.faces[i].v1, model.faces[i].v2, model.faces[i].v3})
                indices.push_back(v);
        return indices;
    }

    positions_t positions(const std::vector<glm::vec3>& corners) const {
        positions_t result(static_cast<size_t>(model.vcnt));
        const std::vector<int> indices = cornerindices();
        for (size_t k = 0; k < indices.size(); ++k)
            result[static_cast<size_t>(indices[k])] = corners[k];
        return result;
    }
};

// The body as its description tells it, in double precision; from the same seed it must see the
// same random numbers, so it compares those as the floats that they are.
struct reference_s {
    positions_t pos, vel;
    std::vector<std::vector<double>> rest;
    int lastbeat = -1;
    int app[3] = {0, 0, 0};
    bool bum1 = false, bum2 = false;

    explicit reference_s(const model_c& model) {
        for (int i = 0; i < model.vcnt; ++i)
            pos.push_back(model.verts[i]);
        vel.resize(pos.size());
        for (const glm::dvec3& a : pos) {
            rest.emplace_back();
            for (const glm::dvec3& b : pos)
                rest.back().push_back(glm::distance(a, b));
        }
    }

    static float u() { return static_cast<float>(rand()) * 0x1p-31f; }

    static glm::dvec3 random3() {
        const double x = 2.0 * u() - 1.0;
        const double y = 2.0 * u() - 1.0;
        const double z = 2.0 * u() - 1.0;
        return {x, y, z};
    }

    void cues(double beat) {
        if (static_cast<int>(std::floor(beat)) != lastbeat)
            app[0] += 2;
        lastbeat = static_cast<int>(std::floor(beat));
        if (beat >= 224.0 && !bum1)
            app[2] += 10;
        if (beat >= 232.5 && !bum2)
            app[2] += 2;
        bum1 = beat >= 224.0;
        bum2 = beat >= 232.5;
    }

    void kicks(double time) {
        for (size_t v = 0; v < pos.size(); ++v) {
            if (u() > 0.995f)
                vel[v] += random3() * 0.001;
            if (app[0])
                vel[v] += random3() * 0.02;
            if (app[2]) {
                const double mudi = std::sin(pos[v].y * 9.0 + time * 10.0) * 0.05;
                vel[v].x += mudi * pos[v].x;
                vel[v].z += mudi * pos[v].z;
            }
        }
        for (int& frames : app)
            if (frames > 0)
                --frames;
    }

    void step() {
        for (size_t i = 0; i < pos.size(); ++i) {
            for (size_t j = i + 1; j < pos.size(); ++j) {
                const glm::dvec3 along = pos[j] - pos[i];
                const glm::dvec3 pull =
                    (rest[i][j] - glm::length(along)) * 0.003 * glm::normalize(along);
                vel[i] -= pull;
                vel[j] += pull;
            }
        }
        for (size_t v = 0; v < pos.size(); ++v) {
            pos[v] += vel[v];
            vel[v] *= 0.96;
        }
    }

    void recentre() {
        glm::dvec3 mid(0.0);
        for (const glm::dvec3& p : pos)
            mid += p;
        for (glm::dvec3& p : pos)
            p -= mid / static_cast<double>(pos.size());
    }

    const positions_t& frame(double beat, double time, int skip) {
        cues(beat);
        kicks(time);
        for (int i = 0; i < skip; ++i)
            step();
        recentre();
        return pos;
    }
};

double farthest(const positions_t& a, const positions_t& b) {
    double worst = 0.0;
    for (size_t i = 0; i < a.size(); ++i)
        worst = std::max(worst, glm::distance(a[i], b[i]));
    return worst;
}

struct moment_s {
    double beat;
    int skip;
};

// Draws the moments and returns how far the body ever was from the reference's, which may be
// tampered with before each frame.
double deviation(const std::vector<moment_s>& moments,
                 const std::function<void(reference_s&, size_t)>& tamper = nullptr) {
    const mesh_s mesh;
    std::vector<positions_t> got;
    std::vector<double> times;
    srand(31);
    dode->initgl();
    for (const moment_s& m : moments) {
        got.push_back(mesh.positions(drawcorners(m.beat, m.skip)));
        times.push_back(timeval);
    }
    srand(31);
    reference_s reference(mesh.model);
    double worst = 0.0;
    for (size_t i = 0; i < moments.size(); ++i) {
        if (tamper)
            tamper(reference, i);
        worst = std::max(
            worst, farthest(got[i], reference.frame(moments[i].beat, times[i], moments[i].skip)));
    }
    return worst;
}

std::vector<moment_s> standing(double beat, size_t frames) {
    return std::vector<moment_s>(frames, {beat, 1});
}

TEST(dode, squirms_as_described_through_beats_and_both_cues) {
    std::vector<moment_s> moments;
    for (int i = 0; i < 500; ++i)
        moments.push_back({220.0 + i * 0.0315, 1 + i % 2});
    EXPECT_LT(deviation(moments), 1e-3);
}

TEST(dode, without_ticks_kicks_gather_and_nothing_moves) {
    dode->initgl();
    const mesh_s mesh;
    const positions_t rest = mesh.positions(drawcorners(212.0, 0));
    for (int i = 0; i < 5; ++i)
        EXPECT_LT(farthest(mesh.positions(drawcorners(213.0 + i, 0)), rest), 1e-6);
    EXPECT_GT(farthest(mesh.positions(drawcorners(217.0, 1)), rest), 0.02);
}

TEST(dode, gathers_exactly_the_kicks_of_the_frames_without_ticks) {
    std::vector<moment_s> moments;
    for (int i = 0; i < 60; ++i)
        moments.push_back({212.0 + i * 0.25, i % 3 ? 0 : 2});
    EXPECT_LT(deviation(moments), 1e-4);
}

TEST(dode, both_cues_in_one_frame_make_twelve_frames_of_wobble) {
    EXPECT_LT(deviation(standing(240.0, 30)), 1e-4);
}

TEST(dode, a_thirteenth_would_show) {
    const auto onemore = [](reference_s& reference, size_t frame) {
        if (frame == 5)
            ++reference.app[2];
    };
    EXPECT_GT(deviation(standing(240.0, 30), onemore), 1e-3);
}

TEST(dode, the_first_frame_counts_as_a_beat) {
    const auto nobeat = [](reference_s& reference, size_t frame) {
        if (frame == 0)
            reference.lastbeat = 212;
    };
    EXPECT_GT(deviation(standing(212.5, 5), nobeat), 1e-2);
}

TEST(dode, stays_centred) {
    const mesh_s mesh;
    dode->initgl();
    for (int i = 0; i < 200; ++i) {
        glm::dvec3 mid(0.0);
        const positions_t body = mesh.positions(drawcorners(220.0 + i * 0.1));
        for (const glm::dvec3& p : body)
            mid += p;
        ASSERT_LT(glm::length(mid / double(body.size())), 1e-6);
    }
}

TEST(dode, keeps_its_facets_flat) {
    dode->initgl();
    std::vector<glm::vec3> corners;
    for (int i = 0; i < 40; ++i)
        corners = drawcorners(224.0 + i * 0.03);
    const std::vector<float>& normals = gldouble::draws().back().attributes.at("nor");
    ASSERT_EQ(normals.size(), corners.size() * 3);
    for (size_t i = 0; i < corners.size(); i += 3) {
        const glm::vec3 n =
            glm::normalize(glm::cross(corners[i + 1] - corners[i], corners[i + 2] - corners[i]));
        for (size_t k = i; k < i + 3; ++k)
            ASSERT_LT(
                glm::distance(n, glm::vec3(normals[k * 3], normals[k * 3 + 1], normals[k * 3 + 2])),
                1e-4f);
    }
}

TEST(dode, draws_every_corner_once_with_32_bit_indices) {
    testing::internal::CaptureStderr();
    dode->initgl();
    const std::string log = testing::internal::GetCapturedStderr();
    const mesh_s mesh;
    const int corners = mesh.model.fcnt * 3;
    EXPECT_NE(log.find("vertex count: 20, f " + std::to_string(corners) + "\n"), std::string::npos);
    drawcorners(212.0);
    EXPECT_EQ(gldouble::calls("glDrawElements"),
              std::vector<std::string>({"glDrawElements(GL_TRIANGLES, " + std::to_string(corners) +
                                        ", GL_UNSIGNED_INT, ptr)"}));
    const auto& draw = gldouble::draws().back();
    for (size_t i = 0; i < draw.indices.size(); ++i)
        ASSERT_EQ(draw.indices[i], i);
    EXPECT_FALSE(gldouble::arrayenabled("pos"));
    EXPECT_FALSE(gldouble::arrayenabled("nor"));
    EXPECT_FALSE(gldouble::arrayenabled("uv"));
}

TEST(dode, stands_left_of_the_middle_and_turns) {
    dode->initgl();
    drawcorners(212.0);
    const auto& uniforms = gldouble::draws().back().uniforms;
    glm::mat4 mvp;
    std::copy_n(uniforms.at("mvp").begin(), 16, &mvp[0][0]);
    EXPECT_FLOAT_EQ(mvp[3].w, 3.0f);
    EXPECT_NEAR(mvp[3].x, -0.75 / std::tan(glm::radians(27.5)) * 480.0 / 854.0, 1e-5);
    glm::mat3 mv;
    std::copy_n(uniforms.at("mv").begin(), 9, &mv[0][0]);
    const double y = glm::radians(timeval * 40.0f), z = glm::radians(timeval * 50.0f);
    const glm::dvec3 ex(std::cos(y) * std::cos(z), std::sin(z), -std::sin(y) * std::cos(z));
    EXPECT_LT(glm::distance(glm::dvec3(mv[0]), ex), 1e-4);
    EXPECT_FLOAT_EQ(uniforms.at("lightdir")[0], 0.57735026f);
}

TEST(dode, the_mesh_has_no_two_vertices_in_one_place) {
    const mesh_s mesh;
    ASSERT_EQ(mesh.model.vcnt, 20);
    for (int i = 0; i < 20; ++i)
        for (int j = i + 1; j < 20; ++j)
            EXPECT_GT(glm::distance(mesh.model.verts[i], mesh.model.verts[j]), 0.1f);
}

TEST(dode, says_when_the_context_takes_no_32_bit_indices) {
    gldouble::answers.extensions = "GL_OES_depth24";
    testing::internal::CaptureStderr();
    dode->initgl();
    EXPECT_NE(testing::internal::GetCapturedStderr().find(
                  "dode cannot draw: GL takes no 32-bit element indices\n"),
              std::string::npos);
    drawcorners(212.0);
}

// Other meshes in place of the show's.
class otherdode : public testing::Test {
protected:
    void SetUp() override {
        home = std::filesystem::current_path();
        room = testing::TempDir() + "dode_" +
               testing::UnitTest::GetInstance()->current_test_info()->name();
        std::filesystem::create_directories(room);
        std::filesystem::current_path(room);
    }

    void TearDown() override {
        std::filesystem::current_path(home);
        std::filesystem::remove_all(room);
    }

    // Vertices on a helix, so that no two coincide; faces over the first of them.
    static void write(int vertices, int faces, const char* face = "1/1/1 2/1/1 3/1/1") {
        std::ofstream out("dode.obj");
        for (int i = 0; i < vertices; ++i)
            out << "v " << std::cos(i * 0.5) << ' ' << i * 0.01 << ' ' << std::sin(i * 0.5) << '\n';
        for (int i = 0; i < faces; ++i)
            out << "f " << face << '\n';
        out << "# end\n";
    }

    std::filesystem::path home;
    std::string room;
};

TEST_F(otherdode, ninety_one_vertices_fill_the_table) {
    write(91, 4);
    dode->initgl();
    EXPECT_EQ(drawcorners(212.0).size(), 12u);
}

TEST_F(otherdode, one_more_ends_the_process_at_the_first_spring_too_many) {
    write(92, 4);
    // Springs 0 to 4096 are stored before the table counts as full.
    int first = 0, second = 0;
    for (int i = 0, springs = 0; i < 92; ++i)
        for (int j = i + 1; j < 92; ++j)
            if (springs++ == 4097) {
                first = i;
                second = j;
            }
    EXPECT_EXIT(dode->initgl(), testing::ExitedWithCode(1),
                std::to_string(first) + "-" + std::to_string(second) + " = [0-9.]+\nfull\\.\n");
}

TEST_F(otherdode, hundreds_of_vertices_end_the_process_as_well) {
    write(700, 4);
    EXPECT_EXIT(dode->initgl(), testing::ExitedWithCode(1), "full\\.\n");
}

TEST_F(otherdode, triangles_beyond_the_corner_table_are_dropped) {
    write(20, 400);
    dode->initgl();
    EXPECT_EQ(drawcorners(212.0).size(), 1023u);
}

TEST_F(otherdode, corners_outside_the_mesh_stay_inside_the_arrays) {
    write(20, 2, "5000/1/1 -7/1/1 3/1/1");
    dode->initgl();
    EXPECT_EQ(drawcorners(212.0).size(), 6u);
}

TEST_F(otherdode, an_empty_mesh_draws_nothing) {
    write(0, 0);
    dode->initgl();
    testport_setbeat(212.0);
    gldouble::clear();
    dode->draw();
    EXPECT_EQ(gldouble::draws().back().count, 0);
}

} // namespace

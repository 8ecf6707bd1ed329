// Flies the show's camera through the shipped city, copies and all, and measures how near it comes
// to a wall.
#include "effects.h"
#include "gldouble.h"
#include "main/clock.h"
#include "model.h"
#include "schedule.h"
#include "showlog.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <map>

namespace {

using glm::vec3;

constexpr float copysize = 800.0f;             // city units
constexpr float clearance = 40.0f;             // to every wall
constexpr float feltspeed = 60.0f;             // some wall is nearer than this in each flight
constexpr float lastbeat = cue::stopfly3.beat; // of the last flight
const std::array<float, 3> flightends = {cue::stoptunnel.beat, cue::stopfly2.beat, lastbeat};

struct eye_s {
    float beat;
    vec3 pos; // in the copy that it is over
};

std::vector<eye_s> eyes;

// Draws the city and notes where it was seen from.
class watcher_c : public demoeffect_c {
public:
    explicit watcher_c(demoeffect_c* effect) : city(effect) {}

    void initgl() override { city->initgl(); }

    void draw() override {
        city->draw();
        const std::vector<float> pos = gldouble::uniform("citySpacePos");
        if (pos.size() == 3)
            eyes.push_back({beatgrid, {pos[0], pos[1], pos[2]}});
    }

private:
    demoeffect_c* city;
};

// A folder to run in whose city is one small triangle a block: what the effect draws costs nothing,
// where it looks from stays the same.
void gosomewherelight() {
    namespace fs = std::filesystem;
    const fs::path home = fs::current_path();
    std::string name = (fs::temp_directory_path() / "cityflight.XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    fs::current_path(name);
    for (const char* content : {"gfx", "N9_low.obj", "dode.obj"})
        fs::create_symlink(home / content, content);
    std::ofstream city("city08.obj");
    city << "vt 0 0\nvn 0 1 0\n";
    int corner = 0;
    for (int x = -300; x <= 300; x += 200) {
        for (int z = -300; z <= 300; z += 200) {
            city << "v " << x << " 0 " << z << "\nv " << x << " 0 " << z + 1 << "\nv " << x + 1
                 << " 0 " << z << "\nf";
            for (int i = 0; i < 3; ++i)
                city << " " << ++corner << "/1/1";
            city << "\n";
        }
    }
    city << "# end\n";
}

// Plays the flights; the seed decides how the camera shakes in the last one.
void fly(unsigned seed) {
    gosomewherelight();
    for (const effectentry_s& entry : effectlist)
        if (entry.name == std::string("tunnel"))
            entry.effect = new watcher_c(entry.effect);
    showlog::load({"flyphone", "tunnel"});
    srand(seed);
    showlog::play(lastbeat + 1.0f);
    std::filesystem::remove_all(std::filesystem::current_path());
}

float distancetosegment(vec3 p, vec3 a, vec3 b) {
    const vec3 along = b - a;
    const float t = glm::dot(p - a, along) / glm::dot(along, along);
    return glm::distance(p, a + glm::clamp(t, 0.0f, 1.0f) * along);
}

float distancetotriangle(vec3 p, vec3 a, vec3 b, vec3 c) {
    const vec3 n = glm::normalize(glm::cross(b - a, c - a));
    const bool over = glm::dot(glm::cross(b - a, p - a), n) >= 0.0f &&
                      glm::dot(glm::cross(c - b, p - b), n) >= 0.0f &&
                      glm::dot(glm::cross(a - c, p - c), n) >= 0.0f;
    if (over)
        return std::abs(glm::dot(p - a, n));
    return std::min(
        {distancetosegment(p, a, b), distancetosegment(p, b, c), distancetosegment(p, c, a)});
}

// How far the nearest wall is, or `far` when none is as near.
float nearestwall(const model_c& city, vec3 eye, float far) {
    for (int i = 0; i < city.fcnt; ++i) {
        const vec3 a = city.data[3 * i].pos, b = city.data[3 * i + 1].pos,
                   c = city.data[3 * i + 2].pos;
        const vec3 low = glm::min(a, glm::min(b, c)) - far,
                   high = glm::max(a, glm::max(b, c)) + far;
        if (glm::all(glm::lessThan(low, eye)) && glm::all(glm::lessThan(eye, high)))
            far = std::min(far, distancetotriangle(eye, a, b, c));
    }
    return far;
}

float nearestwallofcopies(const model_c& city, vec3 eye, float far) {
    const vec3 home = eye - copysize * glm::floor(eye / copysize + 0.5f) * vec3(1, 0, 1);
    for (int x = -1; x <= 1; ++x)
        for (int z = -1; z <= 1; ++z)
            far = nearestwall(city, home + copysize * vec3(x, 0, z), far);
    return far;
}

class cityflight : public testing::TestWithParam<unsigned> {};

TEST_P(cityflight, keeps_clear_of_the_walls_and_passes_some_closely) {
    const model_c city("city08.obj");
    ASSERT_GT(city.fcnt, 0);
    fly(GetParam());
    ASSERT_GT(eyes.size(), 2000u);
    std::map<float, float> nearest; // by the end of the flight
    for (float end : flightends)
        nearest[end] = feltspeed;
    for (size_t i = 0; i < eyes.size(); i += 2) {
        float& far = nearest.lower_bound(eyes[i].beat)->second;
        far = nearestwallofcopies(city, eyes[i].pos, far);
        ASSERT_GE(far, clearance) << "at beat " << eyes[i].beat;
    }
    for (auto [end, distance] : nearest)
        EXPECT_LT(distance, feltspeed) << "in the flight that ends at beat " << end;
}

INSTANTIATE_TEST_SUITE_P(shakes, cityflight, testing::Values(1u, 2u, 3u));

} // namespace

#include "util.h"

#include "framesize.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdlib>
#include <glm/gtc/matrix_transform.hpp>

namespace util {

float rnd() {
    // The topmost draws round to 1.0 in single precision.
    constexpr float below_one = 0x1.fffffep-1f;
    return std::min(static_cast<float>(rand()) * 0x1p-31f, below_one);
}

float rnd(float a, float b) {
    return a + (b - a) * rnd();
}

float rnd_n() {
    const float r = rnd();
    return r + r - 1.0f;
}

glm::vec3 rnd_n3() {
    const float x = rnd_n();
    const float y = rnd_n();
    const float z = rnd_n();
    return {x, y, z};
}

glm::vec3 vecRand3(float MinRadius, float MaxRadius) {
    assert(MinRadius <= MaxRadius);
    for (;;) {
        const glm::vec3 v = rnd_n3() * MaxRadius;
        const float length = glm::length(v);
        const bool toolong = !std::isfinite(length); // for single precision, however often drawn
        if (toolong || (length >= MinRadius && length <= MaxRadius))
            return v;
    }
}

glm::mat4 rotate(const glm::mat4& m, float degrees, const glm::vec3& axis) {
    return glm::rotate(m, glm::radians(degrees), axis);
}

glm::mat4 perspective(float fovy_degrees, float near, float far) {
    return glm::perspective(glm::radians(fovy_degrees),
                            static_cast<float>(frame_w) / static_cast<float>(frame_h), near, far);
}

bool onbeat(float beats) {
    return beats - std::floor(beats) < 0.1f;
}

float contract(float seconds) {
    const double m = std::min(1.0, seconds * 0.04);
    return static_cast<float>(std::sin(double(seconds)) * (1 - m) + m * -1.5);
}

} // namespace util

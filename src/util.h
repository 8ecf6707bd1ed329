// Random numbers, matrices and curves that the effects share.
//
// All randomness comes from the C library's rand(), never seeded, so every run draws the same
// sequence. Who draws, how often and in which order is part of the show.
#pragma once

#include <glm/glm.hpp>

namespace util {

// One rand() call: uniform in [0, 1).
float rnd();

// One rand() call: uniform in [a, b).
float rnd(float a, float b);

// One rand() call: uniform in [-1, 1).
float rnd_n();

// Three rnd_n() calls, x then y then z.
glm::vec3 rnd_n3();

// A random vector whose length lies in [minradius, maxradius]: three rand() calls an attempt, x
// then y then z uniform in [-maxradius, maxradius), until the length fits. Aborts unless minradius
// <= maxradius.
glm::vec3 vecRand3(float minradius, float maxradius);

// m times the rotation by `degrees` about axis.
glm::mat4 rotate(const glm::mat4& m, float degrees, const glm::vec3& axis);

// Perspective of the show's picture, 854 to 480, with a vertical field of view in degrees.
glm::mat4 perspective(float fovy_degrees, float near, float far);

// Whether `beats` lies in the first tenth of a beat: when things kick.
bool onbeat(float beats);

// How far the orange is closed, `seconds` into the show: sways between -1 and 1 at first and
// settles at -1.5, wide open, after 25 s.
float contract(float seconds);

} // namespace util

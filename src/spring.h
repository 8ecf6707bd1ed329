// A damped spring over float, vec2 or vec3: set targetpos (or kick pos) at any time, step it by the
// logic ticks of the frame, read pos.
#pragma once

#include <cmath>
#include <glm/glm.hpp>

template<class T>
class spring_c {
public:
    T targetpos{}; // where the spring is pulled to
    T acc{};       // pull per step and unit of distance
    T damp{};      // fraction of the velocity kept from step to step
    T pos{};       // what effects read
    T vel{};       // position change of the last step

    spring_c() = default;

    // At p with target pt, pull a and damping d, at rest.
    spring_c(T p, T pt, T a, T d) { init(p, pt, a, d); }

    // The same in every component, with a starting velocity v.
    spring_c(float p, float pt, float a, float d, float v) {
        init(T(p), T(pt), T(a), T(d));
        vel = T(v);
    }

    // In every component at rest on its own target p, with pull a and damping d.
    spring_c(float p, float a, float d) { init(T(p), T(p), T(a), T(d)); }

    void init(T p, T pt, T a, T d) {
        pos = p;
        targetpos = pt;
        acc = a;
        damp = d;
        vel = T(0.0f);
    }

    // Advances by `count` steps; none when count is 0 or less.
    void iterate(int count) {
        for (int i = 0; i < count; ++i)
            step();
    }

private:
    // A spring at rest pulls at half strength, one that moves a unit a step or more at full: large
    // moves snap, small settles are soft. Vectors do this component by component.
    void step() {
        vel = (targetpos - pos) * acc * glm::clamp(glm::abs(vel), T(0.5f), T(1.0f)) + vel * damp;
        pos += vel;
    }
};

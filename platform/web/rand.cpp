// The C library's random numbers of the desktop, never seeded: the same show everywhere. (An
// additive generator over the last 31 words, each new word the sum of those 3 and 31 back; the
// lowest bit is dropped.)
#include <cstdint>
#include <cstdlib>

namespace {

constexpr int degree = 31;
constexpr int separation = 3;

class generator_c {
public:
    generator_c() {
        int64_t word = 1;
        for (uint32_t& place : state) {
            place = static_cast<uint32_t>(word);
            word = word * 16807 % 2147483647;
        }
        for (int i = 0; i < degree * 10; ++i)
            next();
    }

    uint32_t next() {
        uint32_t& place = state[front];
        place += state[(front + degree - separation) % degree];
        front = (front + 1) % degree;
        return place >> 1;
    }

private:
    uint32_t state[degree];
    int front = separation;
};

} // namespace

extern "C" int rand() {
    static generator_c generator;
    return static_cast<int>(generator.next());
}

// Plays the whole show into nothing and counts what the show's own code allocates in each frame:
// that must be nothing, but in those frames that register an event.
#include "demo.h"
#include "main/clock.h"
#include "main/show.h"
#include "sync.h"
#include "testport.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <map>
#include <new>
#include <string>

namespace {

long made = 0;

struct over_s {}; // leaves the show, which never returns

struct tally_s {
    long frames = 0;
    long allocations = 0;
};

constexpr float end = 330.0f;           // beats: some way into the finale
constexpr long long step = 100 * 1000;  // microseconds a frame
std::map<std::string, tally_s> tallies; // by scene

void countframe() {
    static size_t known = 0;
    const long count = made;
    if (events.size() == known && *demo_scene) {
        tally_s& tally = tallies[demo_scene];
        ++tally.frames;
        tally.allocations += count;
    }
    known = events.size();
    if (beatgrid > end)
        throw over_s();
    made = 0;
}

} // namespace

void* operator new(size_t size) {
    ++made;
    if (void* memory = malloc(size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    free(memory);
}

void operator delete(void* memory, size_t) noexcept {
    free(memory);
}

int main(int, char** argv) {
    testport.presentstep = step;
    testport.onpresent = countframe;
    testport.calls.reserve(10000); // or noting a call would count
    try {
        start_show(1, argv);
    } catch (const over_s&) {
    }
    bool clean = tallies.size() == std::size(demo_scenes);
    for (const auto& [scene, tally] : tallies) {
        printf("%-20s %5ld frames %5ld allocations\n", scene.c_str(), tally.frames,
               tally.allocations);
        clean = clean && tally.allocations == 0;
    }
    return clean ? 0 : 1;
}

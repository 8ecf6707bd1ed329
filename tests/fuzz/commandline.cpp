// The command line: every line of the input is an argument.
#include "demo.h"
#include "effects.h"
#include "main/capture.h"
#include "main/clock.h"
#include "main/startup.h"
#include "main/video.h"
#include "port.h"
#include "wake.h"

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

// The rest of the start, which reading the arguments must not touch.
demoeffect_c* screenshot = nullptr;
void demo_config() {
    abort();
}
void demo_init() {
    abort();
}
void demo_initgl() {
    abort();
}
void demo_run() {
    abort();
}
void take_screenshot() {
    abort();
}
int init_gl() {
    abort();
}
void time_init() {
    abort();
}
Uint32 fps_tick(Uint32, void*) {
    abort();
}
void pysyhereilla() {
    abort();
}
void port_beforesdl() {
    abort();
}
void port_present() {
    abort();
}

namespace {

bool oneof(int w, int h) {
    return (w == 854 && h == 480) || (w == 1280 && h == 720) || (w == 1920 && h == 1080);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::istringstream lines(std::string(data, data + size));
    std::vector<std::string> words = {"tarvisk"};
    for (std::string line; std::getline(lines, line);)
        words.push_back(line);
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    read_arguments(static_cast<int>(arguments.size()), arguments.data());
    if (!oneof(config_width, config_height) || (config_otherflags & ~1))
        abort();
    return 0;
}

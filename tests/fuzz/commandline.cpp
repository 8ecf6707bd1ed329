// The command line: every line of the input is an argument.
#include "main/startup.h"

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

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

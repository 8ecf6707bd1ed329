// tarvisk-record: the show to stills.
#include "main/capture.h"
#include "main/clock.h"
#include "moment.h"
#include "playback.h"
#include "pngfile.h"

#include <algorithm>
#include <cstdio>
#include <getopt.h>
#include <string>
#include <vector>

namespace {

struct options_s {
    std::string stills; // folder
    std::vector<moment_s> moments;
    playback_s playback;
};

options_s readoptions(int argc, char** argv) {
    options_s options;
    const option longoptions[] = {{"stills", required_argument, nullptr, 'S'},
                                  {"desktop", required_argument, nullptr, 'd'},
                                  {"skip", required_argument, nullptr, 'k'},
                                  {nullptr, 0, nullptr, 0}};
    for (int c; (c = getopt_long(argc, argv, "", longoptions, nullptr)) != -1;) {
        if (c == 'S')
            options.stills = optarg;
        if (c == 'd')
            options.playback.desktop = optarg;
        if (c == 'k')
            options.playback.start_seconds = atof(optarg);
    }
    for (int i = optind; i < argc; ++i)
        options.moments.push_back(moment_parse(argv[i]));
    return options;
}

void writestills(const options_s& options) {
    std::vector<moment_s> left = options.moments;
    playback_show([&] {
        auto here = std::partition(left.begin(), left.end(),
                                   [](const moment_s& m) { return !moment_reached(m); });
        for (auto it = here; it != left.end(); ++it) {
            SDL_Surface* shot = get_screenshot();
            png_write(options.stills + "/" + it->name + ".png", shot);
            SDL_FreeSurface(shot);
        }
        left.erase(here, left.end());
        return !left.empty();
    });
}

} // namespace

int main(int argc, char** argv) {
    const options_s options = readoptions(argc, argv);
    playback_load(options.playback);
    writestills(options);
    return 0;
}

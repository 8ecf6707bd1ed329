#include "stills.h"

#include "interrupt.h"
#include "main/capture.h"
#include "pngfile.h"

#include <algorithm>
#include <cstdio>

namespace {

// Writes those that have come and takes them off the list. Returns false when one cannot be
// written.
bool writereached(const std::string& folder, std::vector<moment_s>* left, int report) {
    const auto reached = std::stable_partition(
        left->begin(), left->end(), [](const moment_s& m) { return !moment_reached(m); });
    for (auto it = reached; it != left->end(); ++it) {
        const std::string file = still_file(folder, *it);
        const bool ok = still_save(file);
        dprintf(report, ok ? "%s\n" : "cannot write %s\n", file.c_str());
        if (!ok)
            return false;
    }
    left->erase(reached, left->end());
    return true;
}

} // namespace

int stills_write(const std::string& folder, const std::vector<moment_s>& moments,
                 const playback_s& playback, int report) {
    playback_load(playback);
    std::vector<moment_s> left = moments;
    bool ok = true;
    playback_run([&] {
        ok = writereached(folder, &left, report);
        playback_skim(std::none_of(left.begin(), left.end(), still_near));
        return ok && !left.empty() && !interrupt_signal();
    });
    return ok && left.empty() ? 0 : 1;
}

std::string still_file(const std::string& folder, const moment_s& moment) {
    return folder + "/" + moment.name + ".png";
}

bool still_save(const std::string& file) {
    SDL_Surface* shot = get_screenshot();
    const bool ok = png_write(file, shot);
    SDL_FreeSurface(shot);
    return ok;
}

bool still_near(const moment_s& moment) {
    return moment_reached(moment, wakeup_seconds);
}

#include "moment.h"

#include "cuelist.h"
#include "demo.h"
#include "main/clock.h"
#include "schedule.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

std::optional<moment_s> parseevent(const std::string& name) {
    auto found = std::find_if(cuelist.begin(), cuelist.end(),
                              [&](const cue_t& cue) { return cue.name == name; });
    if (found == cuelist.end())
        return std::nullopt;
    return moment_s{moment_s::beats, double(found->beat), name, true};
}

std::optional<moment_s> parsescene(const std::string& name) {
    auto found = std::find_if(demo_scenes.begin(), demo_scenes.end(),
                              [&](const scene_s& scene) { return scene.name == name; });
    if (found == demo_scenes.end())
        return std::nullopt;
    return moment_s{moment_s::beats, double(found->begins), name};
}

} // namespace

std::optional<moment_s> moment_parse(const std::string& text) {
    char* end = nullptr;
    const double value = strtod(text.c_str(), &end);
    const std::string unit = end;
    const bool number = end != text.c_str() && std::isfinite(value);
    if (number && unit.empty())
        return moment_s{moment_s::beats, value, text};
    if (number && unit == "s")
        return moment_s{moment_s::seconds, value, text};
    const std::optional<moment_s> event = parseevent(text);
    return event ? event : parsescene(text);
}

bool moment_reached(const moment_s& moment, float lead) {
    const float seconds = timeval + lead;
    const float beats = lead == 0.0f ? beatgrid : beatgrid_calc(seconds);
    return (moment.unit == moment_s::beats ? beats : seconds) >= static_cast<float>(moment.value);
}

double moment_seconds(const moment_s& moment) {
    if (moment.value <= 0.0) // the first frame, though the grid's beat 0 comes a little later
        return 0.0;
    if (moment.unit == moment_s::seconds)
        return moment.value;
    return double(grid::first) +
           moment.value * ((double(grid::last) - double(grid::first)) / double(grid::lastnum));
}

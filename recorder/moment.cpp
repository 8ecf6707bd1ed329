#include "moment.h"

#include "main/clock.h"
#include "sync.h"

#include <cstdlib>

moment_s moment_parse(const std::string& text) {
    char* end = nullptr;
    const double value = strtod(text.c_str(), &end);
    const std::string unit = end;
    const bool number = end != text.c_str();
    if (number && unit.empty())
        return {moment_s::beats, value, text};
    if (number && unit == "s")
        return {moment_s::seconds, value, text};
    return {moment_s::event, 0.0, text};
}

bool moment_reached(const moment_s& moment, float lead) {
    const float seconds = timeval + lead;
    const float beats = lead == 0.0f ? beatgrid : beatgrid_calc(seconds);
    switch (moment.kind) {
    case moment_s::beats:
        return beats >= static_cast<float>(moment.value);
    case moment_s::seconds:
        return seconds >= static_cast<float>(moment.value);
    default: {
        auto found = events.find(moment.name);
        return found != events.end() && beats >= found->second->beatnum;
    }
    }
}

double moment_seconds(const moment_s& moment) {
    if (moment.value <= 0.0) // the first frame, though the grid's beat 0 comes a little later
        return 0.0;
    if (moment.kind == moment_s::seconds)
        return moment.value;
    return beatgrid_seconds(static_cast<float>(moment.value));
}

// Moments of the show as people name them: beats, seconds or events.
#pragma once

#include <string>

struct moment_s {
    enum kind_t { beats, seconds, event };
    kind_t kind = beats;
    double value = 0.0; // beats or seconds
    std::string name;   // as it was given; of an event, its name
};

// "130" is a beat, "82.5s" a time, anything else the name of an event.
moment_s moment_parse(const std::string& text);

// Whether the show's clock has come to it, or will have in `lead` seconds. An event that is not
// registered yet is still to come.
bool moment_reached(const moment_s& moment, float lead = 0.0f);

// Demo time in seconds of a beat or a time; 0 up to beat 0, which is where the clock starts, a
// little before the grid does. Not for events.
double moment_seconds(const moment_s& moment);

// Moments of the show as people name them: beats, seconds, events or scenes.
#pragma once

#include <optional>
#include <string>

struct moment_s {
    enum unit_t { beats, seconds };
    unit_t unit = beats;
    double value = 0.0;
    std::string name;     // as it was given
    bool isevent = false; // that is an event's
};

// "130" is a beat, "82.5s" a time, the name of an event the event's beat, that of a scene the beat
// on which it begins. Nothing when it is none of them.
std::optional<moment_s> moment_parse(const std::string& text);

// Whether the show's clock has come to it, or will have in `lead` seconds.
bool moment_reached(const moment_s& moment, float lead = 0.0f);

// Demo time in seconds; 0 up to beat 0, which is where the clock starts, a little before the grid
// does. Known before the show is loaded.
double moment_seconds(const moment_s& moment);

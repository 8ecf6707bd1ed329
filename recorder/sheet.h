// Stills and contact sheets.
#pragma once

#include "moment.h"
#include "playback.h"

#include <string>
#include <vector>

// Writes a PNG of each moment into the folder, named by the moment as it was given. Returns the
// exit status.
int stills_write(const std::string& folder, const std::vector<moment_s>& moments,
                 const playback_s& playback, int report);

// Writes one labelled sheet (beat, scene and event of each picture) of the moments, or, when there
// are none, of the show's telling moments: shortly after every event and scene change up to beat
// sheetend_beats, and where nothing happens for long, in between. Returns the exit status.
int sheet_write(const std::string& filename, const std::vector<moment_s>& moments,
                const playback_s& playback, int report);

// Plays the show unseen and prints every event with its beat. Returns the exit status.
int events_list(const playback_s& playback, int report);

constexpr float sheetend_beats = 340.0f;

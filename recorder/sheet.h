// Contact sheets.
#pragma once

#include "moment.h"
#include "playback.h"

#include <string>
#include <vector>

// Writes one labelled sheet (beat, scene and event of each picture) of the moments, or, when there
// are none, of the show's telling moments: shortly after every event and scene change up to beat
// sheetend_beats, and where nothing happens for long, in between. Progress and errors go to the
// descriptor `report`. Returns the exit status.
int sheet_write(const std::string& filename, const std::vector<moment_s>& moments,
                const playback_s& playback, int report);

constexpr float sheetend_beats = 340.0f;

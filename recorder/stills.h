// Stills.
#pragma once

#include "moment.h"
#include "playback.h"

#include <string>
#include <vector>

// Writes a PNG of each moment into the folder, named by the moment as it was given; their names and
// errors go to the descriptor `report`. Returns the exit status.
int stills_write(const std::string& folder, const std::vector<moment_s>& moments,
                 const playback_s& playback, int report);

// The file of a moment.
std::string still_file(const std::string& folder, const moment_s& moment);

// Writes the frame at hand as a PNG. Returns false when the file cannot be written.
bool still_save(const std::string& file);

// Whether a moment comes so soon that drawing has to begin.
bool still_near(const moment_s& moment);

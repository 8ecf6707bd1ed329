// Every event of the schedule, in its order there.
#pragma once

#include "sync.h"

#include <vector>

extern const std::vector<cue_t> cuelist;

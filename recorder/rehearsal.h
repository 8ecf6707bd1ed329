// One effect alone: on a cleared target with the depth test on, with what it shares with others set
// so that it can be seen, its knobs set anew for every frame.
#pragma once

#include "moment.h"

#include <functional>
#include <map>
#include <string>

struct rehearsal_s {
    std::string effect;
    std::map<std::string, float> knobs;
};

// Whether there is such an effect.
bool rehearsal_knowseffect(const std::string& name);

// Reads "NAME=NUMBER" into the knobs. Returns false when it is neither.
bool rehearsal_readknob(const std::string& text, rehearsal_s* rehearsal);

// Sets the running clock to a beat or a time. Only after loading is the beat grid the show's.
void rehearsal_startclock(const moment_s& start);

// Loads the effect's shaders, textures and meshes again.
void rehearsal_reload(const rehearsal_s& rehearsal);

// Draws it for ever, calling beforeframe, if there is one, before each frame. The effect must
// exist.
[[noreturn]] void rehearse(const rehearsal_s& rehearsal, const std::function<void()>& beforeframe);

#include "effects.h"

float rockety = 0.0f;

namespace {

class effect_c : public demoeffect_c {};

effect_c effect;

} // namespace

demoeffect_c* rocket9 = &effect;

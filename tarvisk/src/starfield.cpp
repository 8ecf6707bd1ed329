#include "effects.h"

float sf_zchange = 0.0f;

namespace {

class effect_c : public demoeffect_c {};

effect_c effect;

} // namespace

demoeffect_c* starfield = &effect;

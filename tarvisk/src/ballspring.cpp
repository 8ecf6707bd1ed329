#include "effects.h"

float gravforce = 1.0f;

namespace {

class effect_c : public demoeffect_c {};

effect_c effect;

} // namespace

demoeffect_c* ballspring = &effect;

#include "effects.h"

int gearAppear = 0;

namespace {

class effect_c : public demoeffect_c {};

effect_c effect;

} // namespace

demoeffect_c* gear = &effect;

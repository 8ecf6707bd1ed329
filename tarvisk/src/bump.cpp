#include "effects.h"

int bumptgt = 0;

namespace {

class effect_c : public demoeffect_c {};

effect_c effect;

} // namespace

demoeffect_c* bump = &effect;

#include "effects.h"

float orbitradius = 70.0f;
GLuint scrollertex = 0;

namespace {

class effect_c : public demoeffect_c {};

effect_c effect;

} // namespace

demoeffect_c* orbitscroller = &effect;

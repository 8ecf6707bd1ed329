#include "effects.h"

GLuint texturetesttex = 0;

namespace {

class effect_c : public demoeffect_c {};

effect_c effect;

} // namespace

demoeffect_c* texturetest = &effect;

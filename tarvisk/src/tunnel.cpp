#include "effects.h"

float citybomb = 0.0f;
float CityMaxDistance = 1000.0f;
GLuint citytex = 0;
float camPitch = 0.0f;
float camYaw = 0.0f;

namespace {

class effect_c : public demoeffect_c {};

effect_c effect;

} // namespace

demoeffect_c* tunnel = &effect;

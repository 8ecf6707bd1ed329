// Shows the desktop that was captured at start-up, filling the target. Its whole set-up is init():
// it is drawn before the director loads anything.
#pragma once

#include "demoeffect.h"

extern demoeffect_c* screenshot;

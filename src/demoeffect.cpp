#include "demoeffect.h"

void demoeffect_c::init() {}

void demoeffect_c::initgl() {}

void demoeffect_c::draw() {}

void demoeffect_c::quit() {}

#include "wake.h"

void pysyhereilla() {}

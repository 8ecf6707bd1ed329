// The page itself keeps the screen awake while the show plays.
#include "wake.h"

void pysyhereilla() {}

Uint32 heratys(Uint32 interval, void*) {
    return interval;
}

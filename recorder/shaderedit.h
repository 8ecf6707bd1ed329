// Shaders edited while the viewer runs: the raw string literals of an effect's source file, as they
// are now, take the place of those that were compiled in.
#pragma once

#include <string>

// Starts to watch the shaders of the effect's source file. Call before the effect loads.
void shaderedit_start(const std::string& effect);

// Reads the source file again. True when every shader of the effect compiles with its texts as they
// are now, so that loading the effect again will use them; else says on standard error why not, and
// nothing changes.
bool shaderedit_read();

// Ctrl-C, a kill, a terminal that closes: remembered, so that a long job can end in order.
#pragma once

// From here on these signals are remembered and nothing else. Call before the show is loaded: SDL
// leaves handlers alone that are there before its own. A reader that goes away is no signal then.
void interrupt_catch();

// The signal that came first, 0 when none has.
int interrupt_signal();

// The exit status that says so.
int interrupt_status();

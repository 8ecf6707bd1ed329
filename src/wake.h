// Keeps the phone's display awake: asks its mode-control service over the system bus, every 5
// seconds for the whole run, to pause display blanking.
#pragma once

// Connects and starts the repeating request. Without a system bus it says so on standard error and
// does nothing more. Call once, after SDL's timers have started.
void pysyhereilla();

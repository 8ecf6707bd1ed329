// Keeps a desktop of today from dimming, locking or suspending while the show plays, by a call on
// the session bus. (The show itself asks the phone's service, which no desktop has.)
#pragma once

// Asks the desktop; silent where there is no session bus or nobody on it who could. What was asked
// holds until inhibit_end or the end of this process, however it ends.
void inhibit_start();

void inhibit_end();

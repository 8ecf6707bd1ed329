// The X server's own screen saver and the display's power saving. SDL 1.2 switches both off for a
// full-screen window, and leaves them off when it is killed.
#pragma once

struct saver_s {
    bool known = false; // false where no display answers
    int timeout, interval, blanking, exposures;
    bool powersaving = false;
};

saver_s saver_read();

// Puts back what saver_read found. Nothing where there was nothing, or where the display is gone.
void saver_restore(const saver_s& saver);

// The GL calls of a frame on a tape, and the same calls again without the show: what the frame
// costs the driver alone. This program's GL functions are taken over for that; while nothing is
// recorded they only pass on.
#pragma once

// Forgets the tape and records all calls from here on that a frame may make, with copies of what
// they point to.
void gltape_record();

void gltape_stop();

// Makes the recorded calls. Answers to queries are dropped.
void gltape_play();

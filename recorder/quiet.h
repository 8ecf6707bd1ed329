// The show's own lines, kept from the terminal while the recorder speaks there.
#pragma once

// From here on standard output and standard error go to a file, and back to the terminal only when
// the show ends the process. Returns the descriptor to speak through.
int quiet_start();

// The process ends as it should: the show's lines are not needed.
void quiet_forget();

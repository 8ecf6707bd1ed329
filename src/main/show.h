// The whole show, from the first line of main to its end: what stands above the director.
#pragma once

// Start-up in its order, up to the moment that the clock and the music start: window, captured
// desktop, all loading, song.
void load_show(int argc, char** argv);

// From the next frame on plays the show unseen and silent up to `beat`, as fast as the machine goes
// and as it would have come to there by itself; then picture and music go on together, and there is
// called. eachframe is called after each frame that was not shown. The show must have started.
void show_playunseen(float beat, void (*eachframe)(), void (*there)());

// The whole show: start-up, then the director's timeline, which does not return. The result is
// the exit status.
int start_show(int argc, char** argv);

// A web page: WebGL on a canvas of the page, the song through the browser's own sound, pictures by
// stb_image, and the few calls of SDL 1.2 that the show makes (sdl/). The show runs as it does on a
// desktop: it blocks. Where it waits, for the next frame or for the song, its stack is put aside
// (Asyncify) and the page has its turn.
//
// The page is the object Module.host. What the port asks of it:
//   frame()     a promise: the frame is complete, go on when the next is wanted
//   turn()      a promise: go on as soon as the page has had a turn
//   now()       the show's clock in seconds: the song as it is heard, where one plays
//   song()      a promise of whether there is a song to play, once it may be played
//   play(at)    plays the song from `at` seconds on; halt() stops it
//   events      keys and clicks since the last look, each [type, number] as SDL numbers them
//   buttons     mouse buttons that are held, one bit each
//   print(line) a line of the show
// What it finds in the module to ask of the show: see program.cpp.
#pragma once

// Gives the page a turn.
void web_turn();

// While on, nothing is drawn into the window; all else goes on.
void web_leaveoutwindow(bool on);

// Calls the timers that SDL was asked for and that are due. At each present.
void web_runtimers();

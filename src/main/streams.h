// Standard output and standard error, made safe to print to from anywhere in the show.
#pragma once

// Call before anything opens a file: a closed stream becomes /dev/null, so that no file or
// connection opened later takes its number and gets the show's lines. A pipe or a socket that
// nobody reads loses lines, but neither stops the show nor ends it. Every line is written as soon
// as it is complete.
void streams_secure();

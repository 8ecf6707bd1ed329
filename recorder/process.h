// Other people's programs, run without a shell: ffmpeg and montage.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

// A running program. Its standard error is kept for the day it fails.
class process_c {
public:
    ~process_c();

    // Starts `command` (program and arguments; the program is looked up in PATH), with a pipe to
    // its standard input or, without one, nothing to read there. Returns false when it cannot be
    // started.
    bool start(const std::vector<std::string>& command, bool piped);

    // Writes all bytes to its standard input. Returns false when it has stopped reading.
    bool write(const void* bytes, size_t size);

    // Closes its standard input: it has got everything.
    void closeinput();

    // Closes its standard input, waits for its end and returns whether it ended well.
    bool finish();

    // The last few lines that it wrote to standard error.
    std::string lastlines() const;

private:
    pid_t pid = -1;
    int input = -1;
    int errors = -1;
};

// Runs a program to its end. On failure returns false and writes its name and its last lines to the
// descriptor `report`.
bool process_run(const std::vector<std::string>& command, int report);

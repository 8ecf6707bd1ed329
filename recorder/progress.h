// How far a long job is: a bar on a terminal, a plain line every few seconds otherwise.
#pragma once

#include <chrono>

class progress_c {
public:
    // For `total` steps; 0 when that is not known. Writes to the descriptor, which stays open.
    progress_c(int descriptor, long long total);

    // So many steps are done. Cheap to call for every step.
    void update(long long done);

    // The last state, and on a terminal the end of the line.
    void finish(long long done);

private:
    using clock = std::chrono::steady_clock;

    void print(long long done);

    int descriptor;
    long long total;
    bool terminal;
    clock::time_point started = clock::now();
    clock::time_point printed = started;
};

// What a piece of the show says, and files for it to read.
#pragma once

#include "../scratch.h"

#include <fstream>
#include <gtest/gtest.h>
#include <string>

// Standard error of `action`.
template<class T>
std::string printed(T action) {
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

// Standard output of `action`.
template<class T>
std::string printedout(T action) {
    testing::internal::CaptureStdout();
    action();
    fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

inline void writefile(const std::string& name, const std::string& content) {
    std::ofstream(name, std::ios::binary) << content;
}

inline std::string readfile(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

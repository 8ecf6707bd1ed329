// What a piece of the show says, and a folder for what it writes.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

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

// An empty folder that is the working directory for as long as the object lives.
class scratch_c {
public:
    scratch_c()
        : before(std::filesystem::current_path()),
          folder(std::filesystem::temp_directory_path() /
                 ("tarvisk-test-" + std::to_string(getpid()))) {
        std::filesystem::create_directories(folder);
        std::filesystem::current_path(folder);
    }

    ~scratch_c() {
        std::filesystem::current_path(before);
        std::filesystem::remove_all(folder);
    }

    scratch_c(const scratch_c&) = delete;
    scratch_c& operator=(const scratch_c&) = delete;

private:
    std::filesystem::path before, folder;
};

inline void writefile(const std::string& name, const std::string& content) {
    std::ofstream(name, std::ios::binary) << content;
}

inline std::string readfile(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A folder for what a test writes.
#pragma once

#include <filesystem>
#include <string>
#include <unistd.h>

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

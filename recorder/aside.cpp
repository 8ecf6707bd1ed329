#include "aside.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

std::string aside_name(const std::string& filename) {
    const std::filesystem::path path = filename;
    return path.parent_path() / (path.stem().string() + ".part" + path.extension().string());
}

bool aside_writable(const std::string& filename) {
    if (std::filesystem::is_directory(filename))
        return false;
    const std::string name = aside_name(filename);
    int fd = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd >= 0)
        unlink(name.c_str());
    else if (errno == EEXIST)
        fd = open(name.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd >= 0)
        close(fd);
    return fd >= 0;
}

bool aside_replace(const std::string& filename) {
    return rename(aside_name(filename).c_str(), filename.c_str()) == 0;
}

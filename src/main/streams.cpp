#include "main/streams.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// open gives the lowest free number: in ascending order, the closed one itself.
void fillclosed(int fd) {
    if (fcntl(fd, F_GETFD) == -1 && open("/dev/null", O_RDWR) != fd)
        perror("/dev/null");
}

bool ispipe(int fd) {
    struct stat status;
    return fstat(fd, &status) == 0 && S_ISFIFO(status.st_mode);
}

// Opened anew, because the flag would otherwise hold for all who write to this pipe.
void neverwait(int fd) {
    if (!ispipe(fd))
        return;
    const std::string name = "/proc/self/fd/" + std::to_string(fd);
    const int anew = open(name.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (anew == -1)
        return;
    dup2(anew, fd);
    close(anew);
}

} // namespace

void streams_secure() {
    for (int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        fillclosed(fd);
    neverwait(STDOUT_FILENO);
    neverwait(STDERR_FILENO);
    signal(SIGPIPE, SIG_IGN);
}

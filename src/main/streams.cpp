#include "main/streams.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
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

bool issocket(int fd) {
    struct stat status;
    return fstat(fd, &status) == 0 && S_ISSOCK(status.st_mode);
}

// The number may lead into a file since.
ssize_t sendsome(void* cookie, const char* text, size_t size) {
    const int fd = static_cast<int>(reinterpret_cast<intptr_t>(cookie));
    if (send(fd, text, size, MSG_DONTWAIT | MSG_NOSIGNAL) == -1 && errno == ENOTSOCK)
        return write(fd, text, size);
    return static_cast<ssize_t>(size); // what does not fit is lost
}

// A socket cannot be opened anew, but can be told with every line.
FILE* neverwaitsocket(int fd, FILE* stream) {
    FILE* sending = fopencookie(reinterpret_cast<void*>(static_cast<intptr_t>(fd)), "w",
                                {nullptr, sendsome, nullptr, nullptr});
    return sending ? sending : stream;
}

// Opened anew, because the flag would otherwise hold for all who write to this pipe.
void neverwaitpipe(int fd) {
    const std::string name = "/proc/self/fd/" + std::to_string(fd);
    const int anew = open(name.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (anew == -1)
        return;
    dup2(anew, fd);
    close(anew);
}

// A line that cannot be written at once is lost.
void neverwait(int fd, FILE*& stream) {
    if (ispipe(fd))
        neverwaitpipe(fd);
    if (issocket(fd))
        stream = neverwaitsocket(fd, stream);
}

} // namespace

void streams_secure() {
    for (int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        fillclosed(fd);
    neverwait(STDOUT_FILENO, stdout);
    neverwait(STDERR_FILENO, stderr);
    // What was said is out, however the process ends.
    setvbuf(stdout, nullptr, _IOLBF, 0);
    setvbuf(stderr, nullptr, _IONBF, 0);
    signal(SIGPIPE, SIG_IGN);
}

#include "process.h"

#include <cstdio>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

constexpr off_t lastlinesbytes = 1500;
constexpr int pipebytes = 1 << 20; // the most that anybody may ask for

int temporaryfile() {
    FILE* file = tmpfile();
    const int fd = file ? fcntl(fileno(file), F_DUPFD_CLOEXEC, 3) : -1;
    if (file)
        fclose(file);
    return fd;
}

std::vector<char*> argumentlist(const std::vector<std::string>& command) {
    std::vector<char*> list;
    for (const std::string& word : command)
        list.push_back(const_cast<char*>(word.c_str()));
    list.push_back(nullptr);
    return list;
}

} // namespace

process_c::~process_c() {
    finish();
    if (errors >= 0)
        close(errors);
}

bool process_c::start(const std::vector<std::string>& command, bool piped) {
    int ends[2] = {open("/dev/null", O_RDONLY | O_CLOEXEC), -1};
    if (piped && (close(ends[0]), pipe2(ends, O_CLOEXEC)) != 0)
        return false;
    // Most of a frame: while it is read the next one is drawn. Where that is not allowed, less is.
    if (piped)
        fcntl(ends[1], F_SETPIPE_SZ, pipebytes);
    errors = temporaryfile();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
    // Ctrl-C at the terminal reaches the whole group; the recorder alone decides how to end.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    const int failed = posix_spawnp(&pid, command[0].c_str(), &actions, &attributes,
                                    argumentlist(command).data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[0]);
    input = ends[1];
    if (failed)
        pid = -1;
    return !failed;
}

bool process_c::write(const void* bytes, size_t size) {
    const char* next = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t written = ::write(input, next, size);
        if (written <= 0)
            return false;
        next += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

void process_c::closeinput() {
    if (input >= 0)
        close(input);
    input = -1;
}

bool process_c::finish() {
    closeinput();
    if (pid < 0)
        return false;
    int status = 0;
    waitpid(pid, &status, 0);
    pid = -1;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string process_c::lastlines() const {
    const off_t end = lseek(errors, 0, SEEK_END);
    if (end <= 0) // nothing was said, or there was no room for it
        return "";
    const off_t begin = end > lastlinesbytes ? end - lastlinesbytes : 0;
    std::string text(static_cast<size_t>(end - begin), '\0');
    const ssize_t got = pread(errors, text.data(), text.size(), begin);
    text.resize(got > 0 ? static_cast<size_t>(got) : 0);
    return text;
}

bool process_run(const std::vector<std::string>& command, int report) {
    process_c process;
    if (!process.start(command, false)) {
        dprintf(report, "%s cannot be started: is it installed?\n", command[0].c_str());
        return false;
    }
    if (process.finish())
        return true;
    dprintf(report, "%s failed:\n%s\n", command[0].c_str(), process.lastlines().c_str());
    return false;
}

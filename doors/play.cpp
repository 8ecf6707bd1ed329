// tarvisk-play: the show as a process of its own, and around it what a desktop of today expects: it
// stays awake for the show, gets back what the show leaves behind, and hears why it ended.
#include "inhibit.h"
#include "main/leave.h"
#include "main/startup.h"
#include "main/streams.h"
#include "moment.h"
#include "saver.h"
#include "stage.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr const char* usage =
    R"(usage: tarvisk-play [options] [options of the show]

Plays the show from the folder of its pictures. ./run and the installed tarvisk
start it.

  --windowed [WxH]  in a window (854x480)
  --monitor NUMBER  full screen on that one of several, counted from 1 (the
                    pointer's)
  --volume PERCENT  of the music, 0 to 100 (100)
  --from WHEN       from a beat, a time, an event or a scene on, played up to unseen
  --loop            begin again when the song has rung out
  --trial           say after three seconds how many frames a second, and end
  --log FILE        where the show's lines go (the terminal)
  --mend TEXT       how to bring a missing file of the show back

The exit status is 1 when the viewer quits, 2 when the show could not go on.
)";

constexpr int left = 1;   // exit status of a show that the viewer has left
constexpr int failed = 2; // of one that ended by itself
constexpr int again = 3;  // of one that is to begin again

struct options_s {
    stage_s stage;
    std::string log;
    std::string mend;
    std::vector<char*> show; // the show's own arguments, its name in front
};

[[noreturn]] void refuse(const char* what, const char* value) {
    fprintf(stderr, "! %s: %s\n", what, value);
    exit(failed);
}

bool readsize(const char* text, stage_s* stage) {
    int width, height;
    char rest;
    if (sscanf(text, "%dx%d%c", &width, &height, &rest) != 2)
        return false;
    if (width < 1 || height < 1 || width > 16384 || height > 16384)
        refuse("not a window's size", text);
    stage->width = width;
    stage->height = height;
    return true;
}

int readnumber(const char* text, long least, long most, const char* what) {
    char* end = nullptr;
    const long value = strtol(text, &end, 10);
    if (end == text || *end || value < least || value > most)
        refuse(what, text);
    return static_cast<int>(value);
}

moment_s readmoment(const char* text) {
    const std::optional<moment_s> moment = moment_parse(text);
    if (!moment)
        refuse("neither a beat nor a time nor an event nor a scene", text);
    return *moment;
}

// Reads the launcher's option at `i`, if it is one, and returns how many arguments it takes.
int readoption(int argc, char** argv, int i, options_s* options) {
    const auto is = [&](const char* name) { return strcmp(argv[i], name) == 0; };
    const char* value = i + 1 < argc ? argv[i + 1] : "";
    if (is("--windowed")) {
        options->stage.width = config_width;
        options->stage.height = config_height;
        return readsize(value, &options->stage) ? 2 : 1;
    }
    if (is("--volume"))
        return options->stage.volume = readnumber(value, 0, 100, "not a volume from 0 to 100"), 2;
    if (is("--monitor"))
        return options->stage.monitor = readnumber(value, 1, 99, "not a monitor's number"), 2;
    if (is("--from"))
        return options->stage.from = readmoment(value), 2;
    if (is("--loop"))
        return options->stage.loop = true, 1;
    if (is("--trial"))
        return options->stage.trial = true, 1;
    if (is("--log"))
        return options->log = value, 2;
    if (is("--mend"))
        return options->mend = value, 2;
    return 0;
}

options_s readoptions(int argc, char** argv) {
    options_s options;
    options.show.push_back(argv[0]);
    for (int i = 1; i < argc;) {
        if (strcmp(argv[i], "--help") == 0) {
            printf("%s", usage);
            exit(0);
        }
        int taken = readoption(argc, argv, i, &options);
        const int shown = taken > 0 ? 0 : strcmp(argv[i], "--skip") == 0 ? 2 : 1; // with its value
        for (; taken < shown && i + taken < argc; ++taken)
            options.show.push_back(argv[i + taken]);
        i += taken;
    }
    return options;
}

// --- the show's process ---

void sendlinesto(const std::string& log) {
    const int fd = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0666);
    if (fd == -1)
        return perror(log.c_str());
    dup2(fd, STDOUT_FILENO);
    dup2(fd, STDERR_FILENO);
    setvbuf(stdout, nullptr, _IOLBF, 0); // in the order in which they were said
}

// The show ends with status 1 whatever the reason; here the reasons part.
void tellapart() {
    fflush(nullptr);
    _exit(stage_again() ? again : viewer_left ? left : failed);
}

[[noreturn]] void perform(options_s options) {
    streams_secure();
    options.stage.terminal = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO);
    if (!options.log.empty())
        sendlinesto(options.log);
    atexit(tellapart); // first registered, so last to be called
    options.show.push_back(nullptr);
    stage_play(options.stage, static_cast<int>(options.show.size()) - 1, options.show.data());
    exit(failed);
}

// --- the process around it ---

sigset_t watched() {
    sigset_t signals;
    sigemptyset(&signals);
    for (int number : {SIGINT, SIGTERM, SIGHUP, SIGCHLD})
        sigaddset(&signals, number);
    return signals;
}

pid_t startshow(const options_s& options) {
    const pid_t parent = getpid();
    const pid_t show = fork();
    if (show != 0)
        return show;
    prctl(PR_SET_PDEATHSIG, SIGTERM); // it never outlives this process
    if (getppid() != parent)
        _exit(failed);
    const sigset_t signals = watched();
    sigprocmask(SIG_UNBLOCK, &signals, nullptr);
    perform(options);
}

// Waits for the end of the show and returns its wait status. A signal is handed on again and again:
// while it loads, the show has no ear for it.
int waitfor(pid_t show) {
    const sigset_t signals = watched();
    const timespec moment = {0, 250'000'000}, long_ = {3600, 0};
    bool asked = false;
    int status = 0;
    while (waitpid(show, &status, WNOHANG) == 0) {
        const int number = sigtimedwait(&signals, nullptr, asked ? &moment : &long_);
        asked = asked || (number > 0 && number != SIGCHLD);
        if (asked)
            kill(show, SIGTERM);
    }
    // Asked before it could listen, it dies of the signal; that is leaving, too. So is a signal
    // that comes while it ends to begin again.
    const bool died = WIFSIGNALED(status) && (asked || WTERMSIG(status) == SIGINT);
    const bool begins = asked && WIFEXITED(status) && WEXITSTATUS(status) == again;
    return died || begins ? W_EXITCODE(left, 0) : status;
}

std::string lastlines(const std::string& log) {
    constexpr std::streamoff length = 600;
    std::ifstream file(log, std::ios::binary | std::ios::ate);
    const std::streamoff size = file.tellg();
    std::string text;
    if (size > length) {
        file.seekg(size - length);
        std::getline(file, text); // the rest of a line
    } else {
        file.seekg(0);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

// What the viewer can do about an end that the show's last lines tell of.
void advise(const options_s& options, const std::string& said) {
    const auto tells = [&](const char* words) {
        return options.log.empty() || said.find(words) != std::string::npos;
    };
    const bool content = tells("couldn't load!") || tells("cannot open mesh");
    const bool sound = tells("SDL_mixer");
    if (content && !options.mend.empty())
        fprintf(stderr, "  A file of the show is missing or broken: %s\n", options.mend.c_str());
    if (sound)
        fprintf(stderr, "  To play it without sound, put SDL_AUDIODRIVER=dummy in front.\n");
    if (options.log.empty() || !(content || sound))
        fprintf(stderr, "  If it is the graphics driver, put LIBGL_ALWAYS_SOFTWARE=1 in front.\n");
}

int report(const options_s& options, int status) {
    if (WIFEXITED(status) && WEXITSTATUS(status) == left)
        return left;
    const std::string said = lastlines(options.log);
    fprintf(stderr, "\n! The show could not go on.");
    if (WIFSIGNALED(status))
        fprintf(stderr, " (%s)", strsignal(WTERMSIG(status)));
    if (!said.empty())
        fprintf(stderr, " It said last:\n%s", said.c_str());
    fprintf(stderr, "\n");
    advise(options, said);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : failed;
}

} // namespace

int main(int argc, char** argv) {
    const options_s options = readoptions(argc, argv);
    const sigset_t signals = watched();
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    const saver_s saver = saver_read();
    const pid_t show = startshow(options);
    inhibit_start();
    int status = waitfor(show);
    while (WIFEXITED(status) && WEXITSTATUS(status) == again)
        status = waitfor(startshow(options));
    inhibit_end();
    saver_restore(saver);
    return report(options, status);
}

#include "movie.h"

#include "aside.h"
#include "demo.h"
#include "interrupt.h"
#include "main/startup.h"
#include "progress.h"
#include "quiet.h"
#include "stretches.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

// What has come in from the processes that draw.
struct recording_s {
    std::vector<news_s> frames; // written or not yet
    long long done = 0;
    long long lost = -1;      // a frame whose stretch was not written
    long long showframe = -1; // of the movie's first frame
};

void note(recording_s* recording, const news_s& news) {
    if (!news.written) {
        recording->lost = recording->lost < 0 ? news.frame : std::min(recording->lost, news.frame);
        return;
    }
    const auto at = static_cast<size_t>(news.frame);
    if (recording->frames.size() <= at)
        recording->frames.resize(at + 1, {0, 0, -1, false});
    recording->frames[at] = news;
    recording->showframe = news.showframe - news.frame;
    ++recording->done;
}

// Frames from the first on without a gap, in files that are whole.
long long usableframes(const recording_s& recording, const format_s& format) {
    const auto gap = std::find_if(recording.frames.begin(), recording.frames.end(),
                                  [](const news_s& news) { return !news.written; });
    const long long frames = gap - recording.frames.begin();
    if (recording.lost < 0)
        return frames;
    const long long stretch = stretches_frames(format);
    return std::min(frames, recording.lost / stretch * stretch);
}

std::vector<chapter_s> chapters(const recording_s& recording, long long frames) {
    std::vector<chapter_s> found;
    int scene = -1;
    for (long long i = 0; i < frames; ++i) {
        const int now = recording.frames[static_cast<size_t>(i)].scene;
        if (now != scene)
            found.push_back({demo_scenes[static_cast<size_t>(now)].name, i});
        scene = now;
    }
    return found;
}

// ---- the processes ----

// Each of several draws on its share of the cores.
void sharecores(int shares) {
    const int cores = static_cast<int>(std::thread::hardware_concurrency());
    if (shares > 1)
        setenv("LP_NUM_THREADS", std::to_string(std::max(1, cores / shares)).c_str(), 0);
}

[[noreturn]] void play(const movie_s& movie, const playback_s& playback, share_s share,
                       bool verbose) {
    sharecores(share.shares);
    share.report = verbose ? STDERR_FILENO : quiet_start();
    const bool ok = stretches_record(movie, playback, share);
    quiet_forget();
    exit(ok ? 0 : 1);
}

std::vector<pid_t> startprocesses(const movie_s& movie, const playback_s& playback,
                                  const std::string& folder, int news[2], bool verbose) {
    std::vector<pid_t> processes;
    for (int i = 0; i < movie.parallel; ++i) {
        const pid_t pid = fork();
        if (pid == 0) {
            close(news[0]);
            play(movie, playback, {i, movie.parallel, folder, news[1], -1}, verbose);
        }
        if (pid > 0)
            processes.push_back(pid);
    }
    close(news[1]);
    return processes;
}

void stopall(const std::vector<pid_t>& processes) {
    for (pid_t pid : processes)
        kill(pid, SIGTERM);
}

// Until the last of them has ended, or closed its end at least.
void follow(const std::vector<pid_t>& processes, int news, recording_s* recording,
            progress_c* progress) {
    bool stopped = false;
    for (news_s next; read(news, &next, sizeof next) == sizeof next;) {
        note(recording, next);
        progress->update(recording->done);
        if (!stopped && (interrupt_signal() || !next.written)) {
            stopall(processes);
            stopped = true;
        }
    }
    progress->finish(recording->done);
}

// Returns whether all went well.
bool waitfor(const std::vector<pid_t>& processes) {
    bool ok = true;
    for (pid_t pid : processes) {
        int status = 0;
        waitpid(pid, &status, 0);
        if (WIFSIGNALED(status))
            fprintf(stderr, "the show broke off: %s\n", strsignal(WTERMSIG(status)));
        ok = ok && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
    return ok;
}

bool drawframes(const movie_s& movie, const playback_s& playback, const std::string& folder,
                bool verbose, recording_s* recording) {
    int news[2];
    if (pipe2(news, O_CLOEXEC) != 0)
        return false;
    const std::vector<pid_t> processes = startprocesses(movie, playback, folder, news, verbose);
    progress_c progress(STDERR_FILENO, movie_framenumber(movie.format, movie.to) -
                                           movie_framenumber(movie.format, movie.from));
    follow(processes, news[0], recording, &progress);
    close(news[0]);
    return waitfor(processes) && processes.size() == static_cast<size_t>(movie.parallel);
}

// ---- the file ----

std::string readablesong() {
    if (access(demo_song, R_OK) == 0)
        return demo_song;
    fprintf(stderr, "%s cannot be read: the movie is silent\n", demo_song);
    return "";
}

// An effect's clock starts late without having played.
long long songsample(const movie_s& movie, const playback_s& playback, long long showframe) {
    const long long start = std::llround(soundrate * moment_seconds(playback.start));
    return start +
           soundrate * showframe * movie.format.rate_denominator / movie.format.rate_numerator;
}

// Returns whether the file is there; `sounding` says whether with its song.
bool assemble(assembly_s assembly, const std::string& target, bool* sounding) {
    *sounding = encoder_assemble(assembly, target, STDERR_FILENO);
    if (*sounding || assembly.song.empty())
        return *sounding;
    fprintf(stderr, "trying it without the song ...\n");
    assembly.song.clear();
    return encoder_assemble(assembly, target, STDERR_FILENO);
}

void report(const std::string& filename, const assembly_s& assembly) {
    fprintf(stderr, "%s: %lld frames, %.3f s\n", filename.c_str(), assembly.frames,
            double(assembly.frames) * double(assembly.format.rate_denominator) /
                double(assembly.format.rate_numerator));
}

// The stretches stay, if there is anything in them.
void leavestretches(const std::string& folder) {
    for (const auto& file : std::filesystem::directory_iterator(folder))
        if (file.file_size() > 0) {
            fprintf(stderr,
                    "%s holds what was recorded, ten seconds a file, until the next recording\n",
                    folder.c_str());
            return;
        }
    std::filesystem::remove_all(folder);
}

// Makes the movie of what there is; only a whole one takes its place. Returns whether it is whole.
bool keep(const movie_s& movie, const assembly_s& assembly, bool whole) {
    const std::string part = aside_name(movie.filename);
    bool sounding = false;
    if (!assemble(assembly, part, &sounding)) {
        std::filesystem::remove(part);
        leavestretches(assembly.folder);
        return false;
    }
    std::filesystem::remove_all(assembly.folder);
    whole = whole && sounding && aside_replace(movie.filename);
    report(whole ? movie.filename : part, assembly);
    return whole;
}

assembly_s assembly(const movie_s& movie, const playback_s& playback, const recording_s& recording,
                    const std::string& folder, const std::string& song) {
    assembly_s all;
    all.format = movie.format;
    all.stretchframes = stretches_frames(movie.format);
    all.frames = usableframes(recording, movie.format);
    for (long long frame = 0; frame < all.frames; frame += all.stretchframes)
        all.stretches.push_back(stretches_file(folder, movie.format, frame));
    all.chapters = chapters(recording, all.frames);
    all.song = song;
    all.songsample = songsample(movie, playback, recording.showframe);
    all.folder = folder;
    return all;
}

} // namespace

long long movie_framenumber(const format_s& format, const moment_s& moment) {
    return std::llround(std::ceil(moment_seconds(moment) * double(format.rate_numerator) /
                                  double(format.rate_denominator)));
}

int movie_record(const movie_s& movie, const playback_s& playback, bool verbose) {
    const std::string folder = movie.filename + ".part";
    const std::string song = readablesong();
    std::error_code error;
    std::filesystem::remove_all(folder, error);
    if (!std::filesystem::create_directory(folder, error)) {
        fprintf(stderr, "cannot write into %s\n", folder.c_str());
        return 1;
    }
    interrupt_catch();
    recording_s recording;
    const bool drawn = drawframes(movie, playback, folder, verbose, &recording);
    const assembly_s all = assembly(movie, playback, recording, folder, song);
    if (interrupt_signal())
        fprintf(stderr, "interrupted\n");
    bool whole = false;
    if (all.frames > 0)
        whole = keep(movie, all, drawn && !interrupt_signal());
    else
        leavestretches(folder);
    if (interrupt_signal())
        return interrupt_status();
    return whole ? 0 : 1;
}

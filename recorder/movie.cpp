#include "movie.h"

#include "demo.h"
#include "main/capture.h"
#include "main/clock.h"
#include "main/startup.h"
#include "main/video.h"
#include "process.h"
#include "progress.h"
#include "sync.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <SDL.h>
#include <unistd.h>
#include <vector>

namespace {

// The song's last chord has rung out here; the show itself has no end.
constexpr double defaultend_beats = 392.0;

// Pictures are drawn again this long before the first that is written.
constexpr float wakeup_seconds = 0.2f;

volatile sig_atomic_t interrupted = 0;

void interrupt(int) {
    interrupted = 1;
}

struct chapter_s {
    const char* name;
    long long frame; // its first frame
};

struct recording_s {
    long long passes = 0; // of the timeline so far, sub-frames each
    long long first = -1; // pass of the first recorded sub-frame
    long long frames = 0; // written
    std::vector<chapter_s> chapters;
};

std::string fraction(long long numerator, long long denominator) {
    return std::to_string(numerator) + "/" + std::to_string(denominator);
}

std::string seconds(long long frames, const movie_s& movie) {
    char text[32];
    snprintf(text, sizeof text, "%.6f",
             double(frames) * double(movie.rate_denominator) / double(movie.rate_numerator));
    return text;
}

std::string partname(const movie_s& movie, const char* what) {
    return movie.filename + what;
}

std::vector<std::string> encodecommand(const movie_s& movie, const std::string& target) {
    return {"ffmpeg",
            "-hide_banner",
            "-nostdin",
            "-loglevel",
            "error",
            "-y",
            "-f",
            "rawvideo",
            "-pixel_format",
            "rgb0",
            "-video_size",
            std::to_string(video_w) + "x" + std::to_string(video_h),
            "-framerate",
            fraction(movie.rate_numerator, movie.rate_denominator),
            "-i",
            "pipe:0",
            "-an",
            "-c:v",
            "libx264",
            "-preset",
            "medium",
            "-crf",
            std::to_string(movie.quality),
            "-pix_fmt",
            "yuv420p",
            "-colorspace",
            "bt709",
            "-color_primaries",
            "bt709",
            "-color_trc",
            "bt709",
            "-vf",
            "scale=out_color_matrix=bt709",
            "-f",
            "matroska",
            target};
}

// The sound starts where the first picture's clock stood, to the sample, and is as long as the
// picture; behind the song's end there is silence.
std::vector<std::string> muxcommand(const movie_s& movie, const recording_s& recording,
                                    const std::string& video, const std::string& chapters,
                                    const std::string& target) {
    const long long startsample =
        44100 * (recording.first / movie.blur) * movie.rate_denominator / movie.rate_numerator;
    const std::string length = seconds(recording.frames, movie);
    const std::string sound = "[1:a]atrim=start_sample=" + std::to_string(startsample) +
                              ",asetpts=PTS-STARTPTS,apad,atrim=end=" + length + "[a]";
    return {"ffmpeg",
            "-hide_banner",
            "-nostdin",
            "-loglevel",
            "error",
            "-y",
            "-i",
            video,
            "-i",
            song_file,
            "-i",
            chapters,
            "-filter_complex",
            sound,
            "-map",
            "0:v",
            "-map",
            "[a]",
            "-map_metadata",
            "2",
            "-map_chapters",
            "2",
            "-c:v",
            "copy",
            "-c:a",
            "aac",
            "-b:a",
            "224k",
            "-movflags",
            "+faststart",
            "-f",
            "mp4",
            target};
}

bool writechapters(const movie_s& movie, const recording_s& recording,
                   const std::string& filename) {
    FILE* file = fopen(filename.c_str(), "wt");
    if (!file)
        return false;
    fprintf(file, ";FFMETADATA1\ntitle=tarvisk\nartist=VXQ\n");
    for (size_t i = 0; i < recording.chapters.size(); ++i) {
        const bool last = i + 1 == recording.chapters.size();
        const long long end = last ? recording.frames : recording.chapters[i + 1].frame;
        fprintf(file, "[CHAPTER]\nTIMEBASE=%lld/%lld\nSTART=%lld\nEND=%lld\ntitle=%s\n",
                movie.rate_denominator, movie.rate_numerator, recording.chapters[i].frame, end,
                recording.chapters[i].name);
    }
    return fclose(file) == 0;
}

void notechapter(recording_s* recording) {
    if (recording->chapters.empty() || recording->chapters.back().name != demo_scene)
        recording->chapters.push_back({demo_scene, recording->frames});
}

// The first frame at or after a moment, counted from the start of the show.
long long framenumber(const movie_s& movie, const moment_s& moment) {
    return std::llround(std::ceil(moment_seconds(moment) * double(movie.rate_numerator) /
                                  double(movie.rate_denominator)));
}

// Frames when both ends are numbers, 0 where an event decides.
long long expectedframes(const movie_s& movie, const moment_s& to) {
    if (movie.from.kind == moment_s::event || to.kind == moment_s::event)
        return 0;
    return framenumber(movie, to) - framenumber(movie, movie.from);
}

// Whether this frame is no longer part of the movie. An event that has not been heard of when the
// song is over will not come.
bool ended(const moment_s& to) {
    if (interrupted || moment_reached(to))
        return true;
    return beatgrid >= static_cast<float>(defaultend_beats) && to.kind == moment_s::event &&
           events.find(to.name) == events.end();
}

// A frame of the movie, once its last sub-frame is drawn; null before.
SDL_Surface* collectframe(const movie_s& movie, long long pass) {
    if (movie.blur == 1)
        return get_screenshot();
    return blurredframe(static_cast<int>(pass), movie.blur);
}

// Sends the frames between the movie's two ends. Returns false when the encoder stopped.
bool playframes(const movie_s& movie, const moment_s& to, process_c* encoder,
                recording_s* recording, progress_c* progress) {
    bool encoding = true;
    playback_run([&] {
        const long long pass = recording->passes++;
        const bool newframe = pass % movie.blur == 0;
        if (newframe && ended(to))
            return false;
        if (recording->first < 0 && newframe && moment_reached(movie.from))
            recording->first = pass;
        if (recording->first < 0) {
            playback_skim(!moment_reached(movie.from, wakeup_seconds));
            return true;
        }
        if (newframe)
            notechapter(recording);
        if (SDL_Surface* frame = collectframe(movie, pass)) {
            encoding = encoder->write(frame->pixels, static_cast<size_t>(frame->pitch) *
                                                         static_cast<size_t>(frame->h));
            SDL_FreeSurface(frame);
            progress->update(++recording->frames);
        }
        return encoding;
    });
    return encoding;
}

bool encode(const movie_s& movie, const std::string& video, recording_s* recording, int report) {
    process_c encoder;
    if (!encoder.start(encodecommand(movie, video), true)) {
        dprintf(report, "ffmpeg cannot be started: is it installed?\n");
        return false;
    }
    const moment_s to = movie.to.value_or(moment_s{moment_s::beats, defaultend_beats, "the end"});
    progress_c progress(report, expectedframes(movie, to));
    const bool taken = playframes(movie, to, &encoder, recording, &progress);
    progress.finish(recording->frames);
    if (encoder.finish() && taken)
        return true;
    dprintf(report, "ffmpeg failed:\n%s\n", encoder.lastlines().c_str());
    return false;
}

bool mux(const movie_s& movie, const recording_s& recording, const std::string& video) {
    const std::string chapters = partname(movie, ".part-chapters");
    const std::string whole = partname(movie, ".part-movie");
    const bool ok = writechapters(movie, recording, chapters) &&
                    process_run(muxcommand(movie, recording, video, chapters, whole)) &&
                    rename(whole.c_str(), movie.filename.c_str()) == 0;
    unlink(chapters.c_str());
    unlink(whole.c_str());
    return ok;
}

void catchinterrupts() {
    struct sigaction action {};
    action.sa_handler = interrupt;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    signal(SIGPIPE, SIG_IGN); // an encoder that stops is told by its pipe
}

} // namespace

int movie_record(const movie_s& movie, playback_s playback, int report) {
    playback.step_numerator = movie.rate_denominator;
    playback.step_denominator = movie.rate_numerator * movie.blur;
    playback_load(playback);
    catchinterrupts(); // SDL has installed handlers of its own
    recording_s recording;
    const std::string video = partname(movie, ".part-video");
    bool ok = encode(movie, video, &recording, report);
    if (ok && recording.frames == 0) {
        dprintf(report, "there is no frame between the two ends (--events lists the events)\n");
        ok = false;
    }
    ok = ok && mux(movie, recording, video);
    unlink(video.c_str());
    if (ok)
        dprintf(report, "%s: %lld frames, %s s\n", movie.filename.c_str(), recording.frames,
                seconds(recording.frames, movie).c_str());
    return ok ? 0 : 1;
}

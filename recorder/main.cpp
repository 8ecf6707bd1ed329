// tarvisk-record: the show to video, stills and contact sheets, without a screen.
#include "demo.h"
#include "effects.h"
#include "movie.h"
#include "sheet.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <getopt.h>
#include <unistd.h>

namespace {

constexpr const char* usage =
    R"(usage: tarvisk-record [options] MOVIE.mp4            the show as a video with sound
       tarvisk-record [options] --stills DIR WHEN... a PNG of each moment
       tarvisk-record [options] --sheet FILE [WHEN...] a labelled contact sheet
       tarvisk-record --list                         effects, knobs and scenes by name
       tarvisk-record --events                       events and their beats (plays the show unseen)

WHEN is a beat (130), a time (82.5s) or the name of an event (stoptunnel).

  --size WxH       picture in pixels, or 720p or fullhd (854x480)
  --rate R         frames a second: 50, 25, 60 or a fraction such as 60000/1001 (50)
  --from WHEN      first frame; the show before it is played but not written (0)
  --to WHEN        where the video ends (when the song has rung out)
  --quality Q      of H.264: 0 lossless, 18 very good, 51 worst (18)
  --blur N         average N sub-frames, 1 to 4, into each frame (1)
  --desktop IMAGE  picture that stands for the desktop (gfx/harmattan-home.png)
  --effect NAME    one effect alone, from --from (a beat or a time) on
  --knob NAME=N    with --effect: set a knob; as often as needed
  --verbose        let the show print what it prints
)";

struct options_s {
    playback_s playback;
    movie_s movie;
    std::string stills;
    std::string sheet;
    std::vector<moment_s> moments;
    bool events = false;
    bool verbose = false;
};

[[noreturn]] void refuse(const char* what, const char* value) {
    fprintf(stderr, "tarvisk-record: %s: %s\nTry tarvisk-record --help.\n", what, value);
    exit(2);
}

void readsize(const char* text, playback_s* playback) {
    if (strcmp(text, "720p") == 0)
        text = "1280x720";
    if (strcmp(text, "fullhd") == 0)
        text = "1920x1080";
    char rest;
    if (sscanf(text, "%dx%d%c", &playback->width, &playback->height, &rest) != 2 ||
        playback->width < 1 || playback->height < 1)
        refuse("not a size", text);
}

void readrate(const char* text, movie_s* movie) {
    char rest;
    const int read =
        sscanf(text, "%lld/%lld%c", &movie->rate_numerator, &movie->rate_denominator, &rest);
    if (read == 1)
        movie->rate_denominator = 1;
    if (read < 1 || read > 2 || movie->rate_numerator < 1 || movie->rate_denominator < 1)
        refuse("not a frame rate", text);
}

int readnumber(const char* what, const char* text, int least, int most) {
    char* end = nullptr;
    const long value = strtol(text, &end, 10);
    if (end == text || *end || value < least || value > most)
        refuse(what, text);
    return static_cast<int>(value);
}

[[noreturn]] void list() {
    printf("effects:\n");
    for (const effectentry_s& entry : effectlist)
        printf("  %s\n", entry.name);
    printf("knobs:\n");
    for (const knob_s& knob : knoblist)
        printf("  %s\n", knob.name);
    printf("scenes:\n");
    for (const scene_s& scene : demo_scenes)
        printf("  %s\n", scene.name);
    exit(0);
}

[[noreturn]] void help() {
    printf("%s", usage);
    exit(0);
}

void readeffect(const char* name, playback_s* playback) {
    if (!rehearsal_knowseffect(name))
        refuse("no such effect (see --list)", name);
    playback->rehearsal.effect = name;
}

void readknob(const char* text, playback_s* playback) {
    if (!rehearsal_readknob(text, &playback->rehearsal))
        refuse("not a knob and its value (see --list)", text);
}

void readoption(int option, const char* value, options_s* options) {
    switch (option) {
    case 's':
        return readsize(value, &options->playback);
    case 'r':
        return readrate(value, &options->movie);
    case 'f':
        options->movie.from = moment_parse(value);
        return;
    case 't':
        options->movie.to = moment_parse(value);
        return;
    case 'q':
        options->movie.quality = readnumber("not a quality", value, 0, 51);
        return;
    case 'b':
        options->movie.blur = readnumber("not a number of sub-frames", value, 1, 4);
        return;
    case 'd':
        options->playback.desktop = value;
        return;
    case 'S':
        options->stills = value;
        return;
    case 'C':
        options->sheet = value;
        return;
    case 'e':
        return readeffect(value, &options->playback);
    case 'k':
        return readknob(value, &options->playback);
    case 'E':
        options->events = true;
        return;
    case 'v':
        options->verbose = true;
        return;
    case 'l':
        list();
    case 'h':
        help();
    default:
        exit(2);
    }
}

// An effect alone starts its clock here: what came before is not played.
moment_s effectstart(const moment_s& from) {
    if (from.kind == moment_s::event)
        refuse("with --effect, --from takes a beat or a time", from.name.c_str());
    return from;
}

options_s readoptions(int argc, char** argv) {
    const option longoptions[] = {
        {"size", required_argument, nullptr, 's'},    {"rate", required_argument, nullptr, 'r'},
        {"from", required_argument, nullptr, 'f'},    {"to", required_argument, nullptr, 't'},
        {"quality", required_argument, nullptr, 'q'}, {"blur", required_argument, nullptr, 'b'},
        {"desktop", required_argument, nullptr, 'd'}, {"stills", required_argument, nullptr, 'S'},
        {"sheet", required_argument, nullptr, 'C'},   {"effect", required_argument, nullptr, 'e'},
        {"knob", required_argument, nullptr, 'k'},    {"events", no_argument, nullptr, 'E'},
        {"verbose", no_argument, nullptr, 'v'},       {"list", no_argument, nullptr, 'l'},
        {"help", no_argument, nullptr, 'h'},          {nullptr, 0, nullptr, 0}};
    options_s options;
    for (int c; (c = getopt_long(argc, argv, "", longoptions, nullptr)) != -1;)
        readoption(c, optarg, &options);
    if (!options.playback.rehearsal.effect.empty())
        options.playback.start = effectstart(options.movie.from);
    const bool movie = options.stills.empty() && options.sheet.empty() && !options.events;
    if (movie && optind + 1 != argc)
        refuse("one movie to write, please", optind < argc ? argv[optind + 1] : "none named");
    // The colours of H.264 lie on every second pixel.
    if (movie && (options.playback.width % 2 || options.playback.height % 2))
        refuse("a movie needs an even width and height", argv[optind]);
    if (movie)
        options.movie.filename = argv[optind];
    else
        for (int i = optind; i < argc; ++i)
            options.moments.push_back(moment_parse(argv[i]));
    return options;
}

int hiddenlines = -1;
int reportto = STDERR_FILENO;
bool finished = false;

// What the show said last, for when it ended the process itself.
void showlastlines() {
    if (finished)
        return;
    fflush(nullptr);
    char text[1000];
    const off_t end = lseek(hiddenlines, 0, SEEK_END);
    const ssize_t got =
        pread(hiddenlines, text, sizeof text, std::max<off_t>(0, end - off_t(sizeof text)));
    dprintf(reportto, "the show ended early; it said:\n%.*s", got > 0 ? int(got) : 0, text);
}

// The show's own lines would tear the progress bar: they go to a file that is shown only when the
// show ends the process. From here on the recorder speaks through reportto.
void quietshow() {
    reportto = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    FILE* hidden = tmpfile();
    if (!hidden)
        return;
    hiddenlines = fileno(hidden);
    dup2(hiddenlines, STDERR_FILENO);
    dup2(hiddenlines, STDOUT_FILENO);
    setvbuf(stdout, nullptr, _IOLBF, 0); // in the order in which they were said
    atexit(showlastlines);
}

int run(const options_s& options) {
    if (options.events)
        return events_list(options.playback, reportto);
    if (!options.stills.empty())
        return stills_write(options.stills, options.moments, options.playback, reportto);
    if (!options.sheet.empty())
        return sheet_write(options.sheet, options.moments, options.playback, reportto);
    return movie_record(options.movie, options.playback, reportto);
}

} // namespace

int main(int argc, char** argv) {
    const options_s options = readoptions(argc, argv);
    if (!options.verbose)
        quietshow();
    const int status = run(options);
    finished = true;
    return status;
}

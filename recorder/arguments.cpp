#include "arguments.h"

#include "cuelist.h"
#include "demo.h"
#include "effects.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <getopt.h>
#include <unistd.h>

namespace {

constexpr const char* usage =
    R"(usage: tarvisk-record [options] MOVIE.mp4            the show as a video with sound
       tarvisk-record [options] --stills DIR WHEN... a PNG of each moment
       tarvisk-record [options] --sheet FILE [WHEN...] a labelled contact sheet
       tarvisk-record --list                         effects, knobs and scenes by name
       tarvisk-record --events                       events and their beats

WHEN is a beat (130), a time (82.5s) or the name of an event (stoptunnel) or of
a scene (gear city).
A movie whose name ends in .mkv is a Matroska file. A file of that name stays
until the new one is whole; what there is of a recording that breaks off, or
that Ctrl-C ends, is kept beside it as MOVIE.part.mp4.

)";

// The song's last chord has rung out here; the show itself has no end.
constexpr double songend_beats = 392.0;

[[noreturn]] void refuse(const char* what, const std::string& value) {
    fprintf(stderr, "tarvisk-record: %s: %s\nTry tarvisk-record --help.\n", what, value.c_str());
    exit(2);
}

moment_s readmoment(const char* text) {
    const std::optional<moment_s> moment = moment_parse(text);
    if (!moment)
        refuse("neither a beat nor a time nor an event nor a scene (see --events, --list)", text);
    return *moment;
}

int readnumber(const char* what, const char* text, int least, int most) {
    char* end = nullptr;
    const long value = strtol(text, &end, 10);
    if (end == text || *end || value < least || value > most)
        refuse(what, text);
    return static_cast<int>(value);
}

// ---- the options ----

void readsize(const char* text, arguments_s* arguments) {
    const char* size = text;
    if (strcmp(text, "720p") == 0)
        size = "1280x720";
    if (strcmp(text, "fullhd") == 0)
        size = "1920x1080";
    playback_s& playback = arguments->playback;
    char rest;
    if (sscanf(size, "%dx%d%c", &playback.width, &playback.height, &rest) != 2 ||
        playback.width < 1 || playback.height < 1)
        refuse("not a size", text);
}

void readrate(const char* text, arguments_s* arguments) {
    format_s& format = arguments->movie.format;
    char rest;
    const int read =
        sscanf(text, "%lld/%lld%c", &format.rate_numerator, &format.rate_denominator, &rest);
    if (read == 1)
        format.rate_denominator = 1;
    if (read < 1 || read > 2 || format.rate_numerator < 1 || format.rate_denominator < 1)
        refuse("not a frame rate", text);
}

void readfrom(const char* text, arguments_s* arguments) {
    arguments->movie.from = readmoment(text);
}

void readto(const char* text, arguments_s* arguments) {
    arguments->movie.to = readmoment(text);
}

void readquality(const char* text, arguments_s* arguments) {
    arguments->movie.format.quality = readnumber("not a quality", text, 0, 51);
}

void readblur(const char* text, arguments_s* arguments) {
    arguments->movie.blur = readnumber("not a number of sub-frames", text, 1, 4);
}

void readparallel(const char* text, arguments_s* arguments) {
    arguments->movie.parallel = readnumber("not a number of processes", text, 1, 64);
}

void readdesktop(const char* text, arguments_s* arguments) {
    if (access(text, R_OK) != 0)
        refuse("cannot be read", text);
    arguments->playback.desktop = text;
}

void readeffect(const char* name, arguments_s* arguments) {
    if (!rehearsal_knowseffect(name))
        refuse("no such effect (see --list)", name);
    arguments->playback.rehearsal.effect = name;
}

void readknob(const char* text, arguments_s* arguments) {
    if (!rehearsal_readknob(text, &arguments->playback.rehearsal))
        refuse("not a knob and its value (see --list)", text);
}

void readstills(const char* folder, arguments_s* arguments) {
    arguments->stills = folder;
}

void readsheet(const char* file, arguments_s* arguments) {
    arguments->sheet = file;
}

void readverbose(const char*, arguments_s* arguments) {
    arguments->verbose = true;
}

[[noreturn]] void list(const char*, arguments_s*) {
    printf("effects:\n");
    for (const effectentry_s& entry : effectlist)
        printf("  %s\n", entry.name);
    printf("knobs:\n");
    for (const knob_s& knob : knoblist)
        printf("  %-16s %5g .. %-5g %-14s %s\n", knob.name, double(knob.from), double(knob.to),
               knob.unit, knob.meaning);
    printf("scenes:\n");
    for (const scene_s& scene : demo_scenes)
        printf("  %s\n", scene.name);
    exit(0);
}

[[noreturn]] void listevents(const char*, arguments_s*) {
    std::vector<cue_t> cues = cuelist;
    std::stable_sort(cues.begin(), cues.end(),
                     [](const cue_t& a, const cue_t& b) { return a.beat < b.beat; });
    for (const cue_t& cue : cues)
        printf("%8.2f  %s\n", double(cue.beat), cue.name);
    exit(0);
}

[[noreturn]] void help(const char*, arguments_s*);

struct option_s {
    const char* name;
    const char* value; // what it is called in the help; empty: it takes none
    const char* meaning;
    void (*read)(const char* value, arguments_s* arguments);
};

// One a line: ./record reads their help from here.
constexpr option_s options[] = {
    {"size", "WxH", "picture in pixels, or 720p or fullhd (854x480)", readsize},
    {"rate", "R", "frames a second: 50, 25, 60 or as 60000/1001 (50)", readrate},
    {"from", "WHEN", "first frame; the show before it is played unseen (0)", readfrom},
    {"to", "WHEN", "where the video ends (when the song has rung out)", readto},
    {"quality", "Q", "of H.264: 0 lossless, 17 very good, 51 worst (17)", readquality},
    {"blur", "N", "average N sub-frames, 1 to 4, into each frame (1)", readblur},
    {"parallel", "N", "draw with N processes at once: the same movie (1)", readparallel},
    {"desktop", "IMAGE", "picture that stands for the desktop", readdesktop},
    {"effect", "NAME", "one effect alone; its clock starts at --from", readeffect},
    {"knob", "NAME=N", "with --effect: set a knob; as often as needed", readknob},
    {"stills", "DIR", "write stills; the folder is made", readstills},
    {"sheet", "FILE", "write a contact sheet", readsheet},
    {"verbose", "", "let the show print what it prints", readverbose},
    {"list", "", "name effects, knobs and scenes", list},
    {"events", "", "name the events with their beats", listevents},
    {"help", "", "say this", help},
};

[[noreturn]] void help(const char*, arguments_s*) {
    printf("%s", usage);
    for (const option_s& option : options)
        printf("  --%-15s %s\n", (std::string(option.name) + " " + option.value).c_str(),
               option.meaning);
    exit(0);
}

// Returns the index of the first argument that belongs to no option.
int readoptions(int argc, char** argv, arguments_s* arguments) {
    std::vector<option> longoptions;
    for (const option_s& o : options)
        longoptions.push_back({o.name, *o.value ? required_argument : no_argument, nullptr, 0});
    longoptions.push_back({nullptr, 0, nullptr, 0});
    int which = 0;
    for (int c; (c = getopt_long(argc, argv, "", longoptions.data(), &which)) != -1;) {
        if (c != 0)
            exit(2);
        options[which].read(optarg, arguments);
    }
    return optind;
}

// ---- what only shows when all is read ----

void checkmovie(movie_s* movie, const playback_s& playback) {
    if (!encoder_knows(movie->filename))
        refuse("a movie's name ends in .mp4, .m4v, .mov or .mkv", movie->filename);
    // The colours of H.264 lie on every second pixel.
    if (playback.width % 2 || playback.height % 2)
        refuse("a movie needs an even width and height", movie->filename);
    if (movie_framenumber(movie->format, movie->to) <=
        movie_framenumber(movie->format, movie->from))
        refuse("it ends before it begins", movie->filename);
    movie->format.width = playback.width;
    movie->format.height = playback.height;
}

} // namespace

arguments_s arguments_read(int argc, char** argv) {
    arguments_s arguments;
    arguments.movie.to = {moment_s::beats, songend_beats, "the end"};
    const int rest = readoptions(argc, argv, &arguments);
    const rehearsal_s& rehearsal = arguments.playback.rehearsal;
    if (!rehearsal.effect.empty())
        arguments.playback.start = arguments.movie.from;
    else if (!rehearsal.knobs.empty())
        refuse("a knob needs its --effect", rehearsal.knobs.begin()->first);
    if (!arguments.stills.empty() || !arguments.sheet.empty()) {
        for (int i = rest; i < argc; ++i)
            arguments.moments.push_back(readmoment(argv[i]));
        if (!arguments.stills.empty() && arguments.moments.empty())
            refuse("moments, please, for the stills in", arguments.stills);
        return arguments;
    }
    if (rest + 1 != argc)
        refuse("one movie to write, please", rest < argc ? argv[rest + 1] : "none named");
    arguments.movie.filename = argv[rest];
    checkmovie(&arguments.movie, arguments.playback);
    return arguments;
}

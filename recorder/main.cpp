// tarvisk-record: the show to video, stills and contact sheets, without a screen.
#include "arguments.h"
#include "aside.h"
#include "interrupt.h"
#include "process.h"
#include "quiet.h"
#include "sheet.h"
#include "stills.h"

#include <cstdio>
#include <filesystem>
#include <unistd.h>

namespace {

// What can go wrong with the files is said before anything is played.

bool haswriter(const std::string& file, const char* program) {
    if (!aside_writable(file)) {
        fprintf(stderr, "cannot write %s\n", file.c_str());
        return false;
    }
    return process_run({program, "-version"}, STDERR_FILENO);
}

bool makefolder(const arguments_s& arguments) {
    std::error_code error;
    std::filesystem::create_directories(arguments.stills, error);
    if (!error && aside_writable(still_file(arguments.stills, arguments.moments.front())))
        return true;
    fprintf(stderr, "cannot write into %s\n", arguments.stills.c_str());
    return false;
}

bool prepare(const arguments_s& arguments) {
    if (!arguments.stills.empty())
        return makefolder(arguments);
    if (!arguments.sheet.empty())
        return haswriter(arguments.sheet, "montage");
    return haswriter(arguments.movie.filename, "ffmpeg");
}

int writepictures(const arguments_s& arguments) {
    interrupt_catch();
    const int report = arguments.verbose ? STDERR_FILENO : quiet_start();
    const int status =
        arguments.sheet.empty()
            ? stills_write(arguments.stills, arguments.moments, arguments.playback, report)
            : sheet_write(arguments.sheet, arguments.moments, arguments.playback, report);
    quiet_forget();
    if (!interrupt_signal())
        return status;
    dprintf(report, "interrupted\n");
    return interrupt_status();
}

} // namespace

int main(int argc, char** argv) {
    const arguments_s arguments = arguments_read(argc, argv);
    if (!prepare(arguments))
        return 1;
    if (arguments.movie.filename.empty())
        return writepictures(arguments);
    return movie_record(arguments.movie, arguments.playback, arguments.verbose);
}

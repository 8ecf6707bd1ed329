#include "progress.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds barperiod(200);
constexpr std::chrono::seconds lineperiod(5);
constexpr int barwidth = 24;

std::string minutes(double seconds) {
    char text[32];
    const int whole = static_cast<int>(seconds);
    snprintf(text, sizeof text, "%d:%02d", whole / 60, whole % 60);
    return text;
}

std::string bar(double part) {
    const int full = static_cast<int>(part * barwidth);
    return "[" + std::string(static_cast<size_t>(full), '#') +
           std::string(static_cast<size_t>(barwidth - full), '.') + "] ";
}

} // namespace

progress_c::progress_c(int fd, long long steps)
    : descriptor(fd), total(steps), terminal(isatty(fd) != 0) {}

void progress_c::update(long long done) {
    const auto now = clock::now();
    if (now - printed < (terminal ? barperiod : std::chrono::milliseconds(lineperiod)))
        return;
    printed = now;
    print(done);
}

void progress_c::finish(long long done) {
    print(done);
    if (terminal)
        dprintf(descriptor, "\n");
}

void progress_c::print(long long done) {
    const double elapsed = std::chrono::duration<double>(clock::now() - started).count();
    const double rate = elapsed > 0 ? done / elapsed : 0;
    std::string text = std::to_string(done);
    if (total > 0) {
        const double part = std::min(1.0, double(done) / double(total));
        char percent[16];
        snprintf(percent, sizeof percent, "%3.0f%%", part * 100);
        text = (terminal ? bar(part) : "") + percent + "  frame " + text + " of " +
               std::to_string(total);
        if (rate > 0)
            text += "  " + minutes(std::max(0.0, double(total - done) / rate)) + " left";
    } else {
        text = "frame " + text;
    }
    char speed[32];
    snprintf(speed, sizeof speed, "  %.1f frames/s", rate);
    text += speed;
    dprintf(descriptor, terminal ? "\r%s\033[K" : "%s\n", text.c_str());
}

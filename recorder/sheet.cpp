#include "sheet.h"

#include "aside.h"
#include "demo.h"
#include "interrupt.h"
#include "main/clock.h"
#include "process.h"
#include "stills.h"
#include "sync.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>

namespace {

// A picture is telling a little after its cause, when it has come to be seen.
constexpr float settle_beats = 0.9f;
// Events closer than this share a picture; gaps longer than the other get one more.
constexpr float nearest_beats = 2.0f;
constexpr float farthest_beats = 12.0f;

constexpr const char* columns = "6x";
constexpr const char* cell = "284x160+5+5";

struct picture_s {
    std::string file;
    std::string label;
};

std::string beatlabel(const std::string& cause) {
    char text[160];
    snprintf(text, sizeof text, "beat %.1f  %s%s%s", double(beatgrid), demo_scene,
             cause.empty() ? "" : "\n", cause.c_str());
    return text;
}

std::string temporaryfolder() {
    std::string name = std::filesystem::temp_directory_path() / "tarvisk-sheet-XXXXXX";
    return mkdtemp(name.data()) ? name : "";
}

bool montage(const std::string& filename, const std::vector<picture_s>& pictures, int report) {
    std::vector<std::string> command = {"montage",     "-font",      "DejaVu-Sans",
                                        "-background", "#101216",    "-fill",
                                        "#d8dde4",     "-pointsize", "13"};
    for (const picture_s& picture : pictures)
        command.insert(command.end(), {"-label", picture.label, picture.file});
    command.insert(command.end(), {"-tile", columns, "-geometry", cell, filename});
    return process_run(command, report);
}

// Which frames go on the sheet, decided while the show plays.
class chooser_c {
public:
    explicit chooser_c(const std::vector<moment_s>& moments)
        : left(moments), given(!left.empty()) {}

    // Whether this frame goes on the sheet, and why.
    bool choose(std::string* cause) { return given ? chooselisted(cause) : choosetelling(cause); }

    // Whether there may be such a frame so soon that drawing has to begin.
    bool near() const {
        if (given)
            return std::any_of(left.begin(), left.end(), still_near);
        return pictureof(beatgrid_calc(timeval + wakeup_seconds));
    }

    bool done() const { return given ? left.empty() : beatgrid >= sheetend_beats; }

private:
    bool chooselisted(std::string* cause) {
        auto here = std::find_if(left.begin(), left.end(),
                                 [](const moment_s& m) { return moment_reached(m); });
        if (here == left.end())
            return false;
        *cause = here->isevent ? here->name : "";
        left.erase(here);
        return true;
    }

    bool choosetelling(std::string* cause) {
        notehappened();
        if (!pictureof(beatgrid))
            return false;
        *cause = pending;
        pending.clear();
        lastbeat = beatgrid;
        return true;
    }

    // Whether what has happened up to now asks for a picture at that beat.
    bool pictureof(float beat) const {
        if (pending.empty() || beat < pendingbeat + settle_beats)
            return beat >= lastbeat + farthest_beats;
        return pending == scenechange || beat >= lastbeat + nearest_beats;
    }

    void notehappened() {
        if (scene != demo_scene) {
            scene = demo_scene;
            notepending(scenechange);
        }
        for (auto& [name, e] : events)
            if (e->happened && seen.insert(name).second && pending != scenechange)
                notepending(name);
    }

    void notepending(const std::string& cause) {
        pending = cause;
        pendingbeat = beatgrid;
    }

    static constexpr const char* scenechange = "new scene";

    std::vector<moment_s> left;
    bool given;
    std::set<std::string> seen;
    const char* scene = "";
    std::string pending;
    float pendingbeat = 0.0f;
    float lastbeat = -farthest_beats;
};

} // namespace

int sheet_write(const std::string& filename, const std::vector<moment_s>& moments,
                const playback_s& playback, int report) {
    const std::string folder = temporaryfolder();
    playback_load(playback);
    chooser_c chooser(moments);
    std::vector<picture_s> pictures;
    bool ok = true;
    playback_run([&] {
        std::string cause;
        if (chooser.choose(&cause)) {
            pictures.push_back(
                {folder + "/" + std::to_string(pictures.size()) + ".png", beatlabel(cause)});
            ok = still_save(pictures.back().file);
            dprintf(report, "picture %zu, beat %.1f\n", pictures.size(), double(beatgrid));
        }
        playback_skim(!chooser.near());
        return ok && !chooser.done() && !interrupt_signal();
    });
    if (!ok)
        dprintf(report, "cannot write into %s\n", folder.c_str());
    ok = ok && !interrupt_signal() && montage(aside_name(filename), pictures, report) &&
         aside_replace(filename);
    std::filesystem::remove_all(folder);
    if (ok)
        dprintf(report, "%s: %zu pictures\n", filename.c_str(), pictures.size());
    return ok ? 0 : 1;
}

#include "stretches.h"

#include "demo.h"
#include "interrupt.h"
#include "main/capture.h"
#include "process.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <SDL.h>
#include <unistd.h>

namespace {

constexpr long long stretch_seconds = 10;

int currentscene() {
    const auto scene = std::find_if(demo_scenes.begin(), demo_scenes.end(),
                                    [](const scene_s& s) { return s.name == demo_scene; });
    return scene == demo_scenes.end() ? -1 : static_cast<int>(scene - demo_scenes.begin());
}

// A stretch on its way into its file.
struct stretch_s {
    process_c encoder;
    long long frame = 0; // any of it
};

class player_c {
public:
    player_c(const movie_s& what, const share_s& mine)
        : movie(what), share(mine), stretchframes(stretches_frames(what.format)),
          lead(std::llround(std::ceil(double(wakeup_seconds) * double(what.format.rate_numerator) /
                                      double(what.format.rate_denominator)))) {}

    // The hook of every pass: a frame of the movie is `blur` of them.
    bool onpass() {
        const long long pass = passes++;
        if (pass % movie.blur == 0 && !beginframe(pass / movie.blur))
            return false;
        if (isours(frame))
            if (SDL_Surface* picture = collectframe(pass))
                writeframe(picture);
        playback_skim(!isours(frame) && !isours(frameahead()));
        return allwritten;
    }

    // Ends the files. Returns whether all was written.
    bool finish() {
        endstretch(std::move(ending));
        endstretch(std::move(current));
        return allwritten;
    }

private:
    // Returns whether the movie goes on.
    bool beginframe(long long number) {
        if (interrupt_signal() || moment_reached(movie.to))
            return false;
        showframe = number;
        if (first < 0 && moment_reached(movie.from))
            first = showframe;
        frame = first < 0 ? -1 : showframe - first;
        return true;
    }

    bool isours(long long number) const {
        return number >= 0 && number / stretchframes % share.shares == share.number;
    }

    // The frame that the drawing must be ready for.
    long long frameahead() const {
        if (first >= 0)
            return frame + lead;
        return moment_reached(movie.from, wakeup_seconds) ? 0 : -1;
    }

    // A frame of the movie, once its last sub-frame is drawn; null before.
    SDL_Surface* collectframe(long long pass) const {
        if (movie.blur == 1)
            return get_screenshot();
        return blurredframe(static_cast<int>(pass), movie.blur);
    }

    void writeframe(SDL_Surface* picture) {
        if (!current)
            startstretch();
        const size_t size = static_cast<size_t>(picture->pitch) * static_cast<size_t>(picture->h);
        if (allwritten && current->encoder.write(picture->pixels, size))
            tell({frame, showframe, currentscene(), true});
        else
            endstretch(std::move(current));
        SDL_FreeSurface(picture);
        if (current && (frame + 1) % stretchframes == 0)
            leavestretch();
    }

    void startstretch() {
        current = std::make_unique<stretch_s>();
        current->frame = frame;
        if (encoder_start(&current->encoder, movie.format,
                          stretches_file(share.folder, movie.format, frame)))
            return;
        dprintf(share.report, "ffmpeg cannot be started: is it installed?\n");
        allwritten = false;
    }

    // The encoder still has some seconds of it to do: that need not be waited for.
    void leavestretch() {
        current->encoder.closeinput();
        endstretch(std::move(ending));
        ending = std::move(current);
    }

    void endstretch(std::unique_ptr<stretch_s> stretch) {
        if (!stretch || stretch->encoder.finish())
            return;
        dprintf(share.report, "ffmpeg failed:\n%s\n", stretch->encoder.lastlines().c_str());
        tell({stretch->frame, showframe, -1, false});
        allwritten = false;
    }

    // Nobody who listens any more: nobody who wants it.
    void tell(const news_s& news) {
        if (write(share.news, &news, sizeof news) != sizeof news)
            allwritten = false;
    }

    const movie_s& movie;
    const share_s& share;
    const long long stretchframes;
    const long long lead; // frames from the first that is drawn to the first that is wanted
    long long passes = 0;
    long long showframe = 0;
    long long first = -1; // the show's frame that is the movie's first; -1 before it
    long long frame = -1; // of the movie; -1 before the first
    std::unique_ptr<stretch_s> current, ending;
    bool allwritten = true;
};

} // namespace

long long stretches_frames(const format_s& format) {
    return (stretch_seconds * format.rate_numerator + format.rate_denominator - 1) /
           format.rate_denominator;
}

std::string stretches_file(const std::string& folder, const format_s& format, long long frame) {
    return folder + "/" + std::to_string(frame / stretches_frames(format)) + ".nut";
}

bool stretches_record(const movie_s& movie, playback_s playback, const share_s& share) {
    playback.step_numerator = movie.format.rate_denominator;
    playback.step_denominator = movie.format.rate_numerator * movie.blur;
    playback_load(playback);
    player_c player(movie, share);
    playback_run([&] { return player.onpass(); });
    return player.finish();
}

#include "heads.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>
#include <X11/extensions/Xinerama.h>
#include <X11/Xlib.h>

namespace {

constexpr const char* choice = "SDL_VIDEO_FULLSCREEN_HEAD";

using heads_t = std::vector<XineramaScreenInfo>;

heads_t list(Display* display) {
    int count = 0;
    XineramaScreenInfo* found = XineramaQueryScreens(display, &count);
    if (!found)
        return {};
    heads_t heads(found, found + count);
    XFree(found);
    return heads;
}

heads_t::const_iterator ofpointer(Display* display, const heads_t& heads) {
    Window root, child;
    int x = 0, y = 0, inside;
    unsigned buttons;
    XQueryPointer(display, DefaultRootWindow(display), &root, &child, &x, &y, &inside, &inside,
                  &buttons);
    const auto found =
        std::find_if(heads.begin(), heads.end(), [&](const XineramaScreenInfo& head) {
            return x >= head.x_org && x < head.x_org + head.width && y >= head.y_org &&
                   y < head.y_org + head.height;
        });
    return found != heads.end() ? found : heads.begin();
}

heads_t::const_iterator chosen(Display* display, const heads_t& heads) {
    if (const char* number = getenv(choice)) {
        const auto named = static_cast<size_t>(atoi(number));
        if (named < heads.size())
            return heads.begin() + static_cast<std::ptrdiff_t>(named);
    }
    return ofpointer(display, heads);
}

std::optional<head_s> choose(Display* display) {
    const heads_t heads = list(display);
    if (heads.size() < 2)
        return {};
    const auto head = chosen(display, heads);
    setenv(choice, std::to_string(head - heads.begin()).c_str(), 1);
    // Classic SDL would give the first monitor a mode of that size, whichever is filled.
    setenv("SDL_VIDEO_X11_VIDMODE", "0", 1);
    return head_s{head->x_org, head->y_org, head->width, head->height};
}

} // namespace

std::optional<head_s> heads_choose() {
    Display* display = XOpenDisplay(nullptr);
    if (!display)
        return {};
    const std::optional<head_s> head = choose(display);
    XCloseDisplay(display);
    return head;
}

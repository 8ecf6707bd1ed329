// The start of the show on the phone's port, with doubles of the phone's SDL window and of what
// lies around the show.
#include "effects.h"
#include "main/show.h"
#include "testport.h"

#include <gmock/gmock.h>
#include <SDL_syswm.h>
#include <X11/Xlib.h>

testport_s testport; // only its list of calls

namespace {

using namespace testing;
using texts = std::vector<std::string>;

struct curtain_s {}; // leaves the show, which never returns

int swaps = 0;

} // namespace

extern "C" {

int SDL_GL_SetAttribute(SDL_GLattr attribute, int value) {
    testport.calls.push_back("set " + std::to_string(attribute) + " " + std::to_string(value));
    return 0;
}

int SDL_GL_GetAttribute(SDL_GLattr attribute, int* value) {
    testport.calls.push_back("get " + std::to_string(attribute));
    *value = 8;
    return 0;
}

SDL_Surface* SDL_SetVideoMode(int width, int height, int depth, Uint32 flags) {
    EXPECT_EQ(width + height + depth, 0);
    EXPECT_EQ(flags, 0x80000040);
    testport.calls.push_back("window");
    return SDL_CreateRGBSurface(SDL_SWSURFACE, 854, 480, 32, 0, 0, 0, 0);
}

void SDL_GL_SwapBuffers() {
    testport.calls.push_back("swap");
    if (++swaps == int(std::size(effectlist)) + 1) // the capture, then one between two loads
        throw curtain_s();
}

int SDL_GetWMInfo(SDL_SysWMinfo* info) {
    info->info.x11.lock_func = info->info.x11.unlock_func = [] {};
    return 1;
}

Display* XOpenDisplay(const char*) {
    testport.calls.push_back("capture");
    return nullptr;
}

Atom XInternAtom(Display*, const char*, Bool) {
    return 1;
}

int XChangeProperty(Display*, Window, Atom, Atom, int, int, const unsigned char*, int) {
    testport.calls.push_back("window type");
    return 1;
}

int XFlush(Display*) {
    return 1;
}
}

namespace {

TEST(phone, starts_the_show) {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    char name[] = "tarvisk";
    char* argv[] = {name, nullptr};
    EXPECT_THROW(start_show(1, argv), curtain_s);
    EXPECT_EQ(texts(testport.calls.begin(), testport.calls.begin() + 14),
              (texts{"capture", "set 6 8", "set 7 8", "set 5 1", "set 17 2", "set 18 0", "set 16 1",
                     "window", "window type", "get 17", "get 6", "get 7", "get 5", "swap"}));
    EXPECT_EQ(testport.calls.back(), "swap") << "the show's first frame";
}

} // namespace

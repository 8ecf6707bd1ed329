#include "port.h"

#include <gmock/gmock.h>
#include <SDL_syswm.h>
#include <X11/Xatom.h>

namespace {

using namespace testing;
using texts = std::vector<std::string>;

texts calls;
bool haswindow = true;
bool property_is_named = true;
Window fswindow = 22;

} // namespace

extern "C" {

int SDL_GetWMInfo(SDL_SysWMinfo* info) {
    calls.push_back("SDL_GetWMInfo " + std::to_string(info->version.major) + "." +
                    std::to_string(info->version.minor) + "." +
                    std::to_string(info->version.patch));
    info->info.x11.window = 11;
    info->info.x11.fswindow = fswindow;
    info->info.x11.wmwindow = 33;
    info->info.x11.lock_func = [] { calls.push_back("lock"); };
    info->info.x11.unlock_func = [] { calls.push_back("unlock"); };
    return haswindow ? 1 : 0;
}

Atom XInternAtom(Display*, const char* name, Bool onlyifthere) {
    calls.push_back(std::string("XInternAtom ") + name + (onlyifthere ? " if there" : ""));
    return !onlyifthere ? strlen(name) : property_is_named ? 7 : None;
}

int XChangeProperty(Display*, Window window, Atom property, Atom type, int format, int mode,
                    const unsigned char* data, int count) {
    EXPECT_EQ(property, 7u);
    EXPECT_EQ(type, XA_ATOM);
    EXPECT_EQ(format, 32);
    EXPECT_EQ(mode, PropModeReplace);
    EXPECT_EQ(count, 1);
    calls.push_back("XChangeProperty of " + std::to_string(window) + " to " +
                    std::to_string(*reinterpret_cast<const Atom*>(data)));
    return 1;
}

int XFlush(Display*) {
    calls.push_back("XFlush");
    return 1;
}
}

namespace {

TEST(port, holds_a_frame_for_20_ms) {
    EXPECT_EQ(port_framehold(), 0.02f);
}

TEST(port, knows_the_numbers_of_its_windows) {
    port_windownumbers_s numbers{};
    EXPECT_TRUE(port_windownumbers(&numbers));
    EXPECT_EQ(numbers.window, 11u);
    EXPECT_EQ(numbers.fswindow, 22u);
    EXPECT_EQ(numbers.wmwindow, 33u);
    EXPECT_EQ(calls[0], "SDL_GetWMInfo 1.2.14");
    haswindow = false;
    EXPECT_FALSE(port_windownumbers(&numbers));
}

TEST(port, sets_the_type_of_the_full_screen_window) {
    EXPECT_TRUE(port_setwindowtype(PORT_WINDOW_DIALOG));
    const std::string dialog = "_NET_WM_WINDOW_TYPE_DIALOG", normal = "_NET_WM_WINDOW_TYPE_NORMAL";
    ASSERT_EQ(dialog.size(), normal.size()) << "or their atoms would differ, too";
    EXPECT_EQ(calls, (texts{"SDL_GetWMInfo 1.2.14", "lock", "XInternAtom " + dialog,
                            "XInternAtom _NET_WM_WINDOW_TYPE if there",
                            "XChangeProperty of 22 to " + std::to_string(dialog.size()), "XFlush",
                            "unlock"}));
    calls.clear();
    EXPECT_TRUE(port_setwindowtype(PORT_WINDOW_NORMAL));
    EXPECT_THAT(calls, Contains("XInternAtom " + normal));
    EXPECT_THAT(calls, Not(Contains("XInternAtom " + dialog)));
}

TEST(port, sets_the_type_of_its_only_window_where_there_is_no_other) {
    fswindow = 0;
    EXPECT_TRUE(port_setwindowtype(PORT_WINDOW_DIALOG));
    EXPECT_THAT(calls, Contains(StartsWith("XChangeProperty of 11 ")));
}

TEST(port, sets_no_property_that_nobody_ever_named) {
    property_is_named = false;
    EXPECT_TRUE(port_setwindowtype(PORT_WINDOW_DIALOG));
    EXPECT_THAT(calls, Not(Contains(StartsWith("XChangeProperty"))));
    EXPECT_EQ(calls.back(), "unlock");
}

TEST(port, tells_no_window_manager_without_a_window) {
    haswindow = false;
    EXPECT_FALSE(port_setwindowtype(PORT_WINDOW_DIALOG));
    EXPECT_THAT(calls, SizeIs(1));
}

} // namespace

#include "main/video.h"

#include "gldouble.h"
#include "main/startup.h"
#include "printed.h"
#include "testport.h"

namespace {

using texts = std::vector<std::string>;

// The viewport call of a window of that size with the configured logical size.
std::string viewport(int width, int height, int logical_width, int logical_height) {
    testport.width = width;
    testport.height = height;
    config_width = logical_width;
    config_height = logical_height;
    gldouble::clear();
    init_gl();
    return gldouble::calls("glViewport").at(0);
}

TEST(video, asks_for_attributes_in_their_order_and_then_for_the_desktops_mode) {
    config_stencilsize = 8;
    config_videoflags = 0x1234; // not consulted
    init_gl();
    EXPECT_EQ(
        texts(testport.calls.begin(), testport.calls.begin() + 7),
        (texts{"port_setattribute(6, 8)", "port_setattribute(7, 8)", "port_setattribute(5, 1)",
               "port_setattribute(17, 2)", "port_setattribute(18, 0)", "port_setattribute(16, 1)",
               "port_setvideomode(0, 0, 0, 2147483712)"}));
}

TEST(video, asks_what_it_got_in_the_order_of_the_report) {
    init_gl();
    EXPECT_EQ(texts(testport.calls.begin() + 7, testport.calls.end()),
              (texts{"port_getattribute(17)", "port_getattribute(6)", "port_getattribute(7)",
                     "port_getattribute(5)"}));
}

TEST(video, reports_what_it_got) {
    testport.width = 1000;
    testport.height = 700;
    EXPECT_EQ(printed([] { EXPECT_EQ(init_gl(), 0); }),
              "initting GLES\nmajor version: 2\ndepth size: 24\nstencil size: 8\n"
              "doublebuffer: 1\nscreen res: 1000, 700\nviewport should be now 1000, 700\n");
    EXPECT_EQ(video_w, 1000);
    EXPECT_EQ(video_h, 700);
    EXPECT_EQ(screen->w, 1000);
}

TEST(video, puts_the_gl_strings_on_standard_output) {
    gldouble::answers.extensions = "GL_A GL_B";
    EXPECT_EQ(printedout([] { init_gl(); }),
              "Vendor     : double\nRenderer   : recording double\n"
              "Version    : OpenGL ES 2.0 double\nExtensions : GL_A GL_B\n");
}

TEST(video, says_nothing_for_gl_strings_that_are_not_there) {
    gldouble::answers.strings = false;
    EXPECT_EQ(printedout([] { init_gl(); }),
              "Vendor     : \nRenderer   : \nVersion    : \nExtensions : \n");
}

TEST(video, says_why_the_version_is_not_known) {
    testport.attributeerror = PORT_GL_CONTEXT_MAJOR_VERSION;
    const std::string said = printed([] { init_gl(); });
    EXPECT_NE(said.find("major version error: no such attribute\ndepth size: 24\n"),
              std::string::npos);
}

TEST(video, leaves_out_sizes_that_are_not_known) {
    testport.attributeerror = PORT_GL_STENCIL_SIZE;
    const std::string said = printed([] { init_gl(); });
    EXPECT_NE(said.find("depth size: 24\ndoublebuffer: 1\n"), std::string::npos);
}

TEST(video, fills_its_own_screen) {
    EXPECT_EQ(viewport(854, 480, 854, 480), "glViewport(0, 0, 854, 480)");
}

TEST(video, full_hd_and_half_hd_fit_the_phones_screen) {
    EXPECT_EQ(viewport(854, 480, 1920, 1080), "glViewport(0, 0, 854, 480)");
    EXPECT_EQ(viewport(854, 480, 1280, 720), "glViewport(0, 0, 854, 480)");
}

TEST(video, crops_a_narrower_picture_at_top_and_bottom) {
    EXPECT_EQ(viewport(854, 480, 640, 480), "glViewport(0, -80, 854, 640)");
}

TEST(video, letterboxes_a_wider_picture) {
    EXPECT_EQ(viewport(1080, 1920, 854, 480), "glViewport(0, 656, 1080, 607)");
    EXPECT_EQ(viewport(640, 480, 854, 480), "glViewport(0, 60, 640, 359)");
}

TEST(video, cuts_fractions_off_towards_zero) {
    EXPECT_EQ(viewport(1280, 720, 854, 480), "glViewport(0, 0, 1280, 719)") << "half a pixel up";
    EXPECT_EQ(viewport(854, 479, 854, 480), "glViewport(0, 0, 854, 480)") << "half a pixel down";
    EXPECT_EQ(viewport(1920, 1080, 854, 480), "glViewport(0, 0, 1920, 1079)");
}

TEST(video, that_is_resized_while_skimming_is_as_large_behind_it) {
    viewport(854, 480, 854, 480);
    video_skim(true);
    video_resized(1708, 960);
    gldouble::clear();
    video_skim(false);
    EXPECT_EQ(gldouble::calls("glViewport"), texts{"glViewport(0, 0, 1708, 960)"});
}

TEST(video, skims_over_the_window_at_any_size) {
    viewport(854, 480, 854, 480);
    video_skim(true);
    gldouble::clear();
    video_resized(1708, 960);
    EXPECT_EQ(gldouble::calls("glViewport").back(), "glViewport(0, 0, 1, 1)");
}

TEST(video, is_silent_about_windows_where_there_is_no_x11) {
    testport_startsdl();
    EXPECT_EQ(printed([] {
                  x11info();
                  compositor_fix(0);
                  compositor_fix(1);
              }),
              "");
}

TEST(video, reports_the_numbers_of_its_windows) {
    const port_windownumbers_s numbers{0x1234ABCD, 0, 0x10};
    testport.windownumbers = &numbers;
    EXPECT_EQ(printed(x11info), "our window id: 1234ABCD\nour fswindow id: 00000000\n"
                                "our wmwindow id: 00000010\n");
}

TEST(video, is_a_dialog_at_stage_0_and_a_normal_window_at_any_other) {
    const port_windownumbers_s numbers{};
    testport.windownumbers = &numbers;
    EXPECT_EQ(printed([] {
                  for (int stage : {0, 1, -1})
                      compositor_fix(stage);
              }),
              "setting the hildon atom\nsetting the hildon atom\nsetting the hildon atom\n");
    EXPECT_EQ(testport.calls, (texts{"port_setwindowtype(dialog)", "port_setwindowtype(normal)",
                                     "port_setwindowtype(normal)"}));
}

TEST(video, is_a_dialog_before_its_report) {
    const port_windownumbers_s numbers{1, 2, 3};
    testport.windownumbers = &numbers;
    const std::string said = printed([] { init_gl(); });
    EXPECT_EQ(said.substr(0, said.find("depth")),
              "initting GLES\nsetting the hildon atom\nmajor version: 2\n"
              "our window id: 00000001\nour fswindow id: 00000002\nour wmwindow id: 00000003\n");
}

TEST(video_death, aborts_without_a_window) {
    testport.haswindow = false;
    SDL_SetError("no config");
    EXPECT_DEATH(init_gl(), "no window: no config\n.*`screen'");
}

} // namespace

// Where the knobs stand before anything writes them, and the cues that effects give themselves:
// most of these nobody sees fire, as they are only asked whether they are past.
#include "3dphone.h"
#include "effects.h"
#include "main/startup.h"
#include "phoneflight.h"
#include "printed.h"
#include "sync.h"
#include "testport.h"

namespace {

TEST(knobs, start_where_the_effects_put_them) {
    for (const float* knob : {&ylift, &sf_zchange, &starang, &ripsilu_mm, &rockety, &citybomb,
                              &camPitch, &camYaw, &horizonbomb})
        EXPECT_EQ(*knob, 0.0f);
    EXPECT_EQ(gearAppear, 0);
    EXPECT_EQ(bumptgt, 0);
    EXPECT_EQ(gravforce, 1.0f);
    EXPECT_EQ(orbitradius, 70.0f);
    EXPECT_EQ(CityMaxDistance, 1000.0f);
    for (GLuint knob : {scrollertex, texturetesttex, orangetex, citytex, phonescreentex})
        EXPECT_EQ(knob, 0u);
    EXPECT_FALSE(show_whiteback);
    EXPECT_FALSE(flyphone_tunnelready);
}

// The lines of an effect's first frame that are about events.
std::string cues(demoeffect_c* effect, double beat) {
    static Uint8 keys[SDLK_LAST] = {};
    testport_startsdl();
    keystate = keys;
    effect->initgl();
    testport_setbeat(beat);
    std::string lines, line;
    for (std::istringstream said(printed([&] { effect->draw(); })); std::getline(said, line);)
        if (line.find("event '") != std::string::npos)
            lines += line + "\n";
    return lines;
}

TEST(cues, of_the_lace) {
    EXPECT_EQ(cues(lace, 10.0), "adding event 'startlacing' at time 80.00, spawn 0\n"
                                "adding event 'startlacing2' at time 105.00, spawn 0\n");
}

TEST(cues, of_the_letters) {
    EXPECT_EQ(cues(heart, 10.0), "adding event 'gonetextshow' at time 59.00, spawn 0\n");
}

TEST(cues, of_the_bubbles) {
    EXPECT_EQ(cues(orangetexgen, 96.5), "adding event 'boom3' at time 96.00, spawn 0\n"
                                        "event 'boom3' happened! 96.50\n");
}

TEST(cues, of_the_solid) {
    EXPECT_EQ(cues(dode, 225.0), "adding event 'dodebum' at time 224.00, spawn 0\n"
                                 "event 'dodebum' happened! 225.00\n"
                                 "adding event 'dodebum2' at time 232.50, spawn 0\n");
}

TEST(cues, of_the_citys_camera) {
    EXPECT_EQ(cues(tunnel, 180.0), "adding event 'tunnel_camdown1' at time 137.00, spawn 0\n"
                                   "event 'tunnel_camdown1' happened! 180.00\n"
                                   "adding event 'tunnel_camdown2' at time 150.00, spawn 0\n"
                                   "event 'tunnel_camdown2' happened! 180.00\n"
                                   "adding event 'tunnel_camup1' at time 176.00, spawn 0\n"
                                   "event 'tunnel_camup1' happened! 180.00\n"
                                   "adding event 'tunnel_camup2' at time 192.00, spawn 0\n");
}

TEST(cues, nobody_else_has_any) {
    for (const effectentry_s& entry : effectlist) {
        if (entry.effect == lace || entry.effect == heart || entry.effect == orangetexgen ||
            entry.effect == dode || entry.effect == tunnel || entry.effect == flyphone)
            continue;
        cues(entry.effect, 10.0);
        EXPECT_TRUE(events.empty()) << entry.name;
    }
}

} // namespace

// Moments of the show by the names that people give them.
#include "moment.h"

#include "schedule.h"

#include <gmock/gmock.h>

namespace {

TEST(moment, is_a_beat_a_time_an_event_or_a_scene) {
    EXPECT_EQ(moment_parse("165")->value, 165.0);
    EXPECT_EQ(moment_parse("165")->unit, moment_s::beats);
    EXPECT_EQ(moment_parse("82.5s")->value, 82.5);
    EXPECT_EQ(moment_parse("82.5s")->unit, moment_s::seconds);
    EXPECT_EQ(moment_parse("stopgear")->value, double(cue::stopgear.beat));
    EXPECT_EQ(moment_parse("face")->value, double(beat::face));
    EXPECT_EQ(moment_parse("gear city")->unit, moment_s::beats);
    EXPECT_FALSE(moment_parse("gear city")->isevent);
}

TEST(moment, is_nothing_else) {
    for (const char* text : {"", "gear", "165 beats", "82.5m", "nan", "inf"})
        EXPECT_FALSE(moment_parse(text)) << text;
}

} // namespace

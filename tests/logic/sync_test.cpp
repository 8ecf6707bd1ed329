#include "sync.h"

#include "main/clock.h"
#include "printed.h"

#include <cmath>

namespace {

TEST(sync, first_construction_registers_with_a_line) {
    EXPECT_EQ(printed([] { sync_c("kick", 12.345f, 0); }),
              "adding event 'kick' at time 12.35, spawn 0\n");
    ASSERT_EQ(events.count("kick"), 1u);
    EXPECT_EQ(events["kick"]->beatnum, 12.345f);
    EXPECT_FALSE(events["kick"]->happened);
    EXPECT_FALSE(events["kick"]->happened_queue);
    EXPECT_STREQ(events["kick"]->name, "kick");
}

TEST(sync, keeps_its_own_copy_of_the_name) {
    char name[] = "kick";
    const sync_c kick(name, 1.0f, 0);
    name[0] = 'K';
    EXPECT_STREQ(kick.myevent->name, "kick");
    EXPECT_EQ(events.begin()->first, "kick");
}

TEST(sync, first_registration_of_a_name_wins_silently) {
    const sync_c first("x", 10.0f, 0);
    EXPECT_EQ(printed([] { EXPECT_EQ(sync_c("x", 20.0f, 0).beatnum(), 10.0f); }), "");
    EXPECT_EQ(printed([] { EXPECT_EQ(sync_c("x", 20.0f, 1).beatnum(), 10.0f); }), "");
    EXPECT_EQ(events.size(), 1u);
    EXPECT_EQ(sync_c("x", 20.0f, 0).myevent, first.myevent);
}

TEST(sync, accepts_every_name) {
    EXPECT_EQ(sync_c("", 3.0f, 0).beatnum(), 3.0f);
    EXPECT_EQ(sync_c("x", 4.0f, 0).beatnum(), 4.0f);
    EXPECT_EQ(sync_c("xy", 5.0f, 0).beatnum(), 5.0f) << "whole names are compared";
}

TEST(sync, spawned_events_are_relative_to_now) {
    beatgrid = 12.5f;
    EXPECT_EQ(printed([] { sync_c("y", 4.0f, 1); }), "adding event 'y' at time 4.00, spawn 1\n");
    const sync_c y("y", 4.0f, 1);
    EXPECT_EQ(y.beatnum(), 16.5f);
    beatgrid = 16.4f;
    EXPECT_FALSE(y.once());
    beatgrid = 16.5f;
    EXPECT_TRUE(y.once());
}

TEST(sync, spawns_by_any_number_but_0) {
    beatgrid = 12.5f;
    EXPECT_EQ(printed([] { sync_c("two", 4.0f, 2); }),
              "adding event 'two' at time 4.00, spawn 2\n");
    EXPECT_EQ(sync_c("two", 0.0f, 0).beatnum(), 16.5f);
    EXPECT_EQ(sync_c("minus", 4.0f, -1).beatnum(), 16.5f);
}

TEST(sync, is_past_from_its_beat_on) {
    const sync_c e("e", 10.0f, 0);
    beatgrid = 9.999f;
    EXPECT_FALSE(e.past());
    beatgrid = 10.0f;
    EXPECT_TRUE(e.past());
    sync_ack();
    EXPECT_TRUE(e.past());
    beatgrid = NAN;
    EXPECT_FALSE(e.past());
}

TEST(sync, fires_for_everyone_in_one_frame_and_never_again) {
    const sync_c e("e", 10.0f, 0);
    beatgrid = 9.9f;
    EXPECT_EQ(printed([&] { EXPECT_FALSE(e.once()); }), "");
    sync_ack();
    beatgrid = 10.125f;
    EXPECT_EQ(printed([&] {
                  EXPECT_TRUE(e.once());
                  EXPECT_TRUE(sync_c("e", 99.0f, 0).once());
              }),
              "event 'e' happened! 10.12\nevent 'e' happened! 10.12\n");
    EXPECT_TRUE(events["e"]->happened_queue);
    EXPECT_FALSE(events["e"]->happened);
    sync_ack();
    EXPECT_TRUE(events["e"]->happened);
    EXPECT_EQ(printed([&] { EXPECT_FALSE(e.once()); }), "");
    sync_ack();
    EXPECT_FALSE(e.once());
    EXPECT_TRUE(e.past());
}

TEST(sync, fires_only_when_asked) {
    const sync_c e("e", 10.0f, 0);
    beatgrid = 11.0f;
    sync_ack();
    EXPECT_TRUE(e.once());
}

TEST(sync, a_late_registration_fires_at_once) {
    beatgrid = 100.0f;
    EXPECT_TRUE(sync_c("late", 10.0f, 0).once());
}

TEST(sync, a_skipped_start_fires_everything_before_it_together) {
    beatgrid = 47.0f;
    EXPECT_TRUE(sync_c("a", 8.0f, 0).once());
    EXPECT_TRUE(sync_c("b", 32.0f, 0).once());
    EXPECT_FALSE(sync_c("c", 48.0f, 0).once());
}

TEST(sync, dump_lists_names_in_byte_order_and_acknowledges) {
    scratch_c scratch;
    sync_c("b", 2.0f, 0);
    sync_c("a-late", 0.123456f, 0);
    sync_c("alate", 48.0f, 0);
    sync_c("B", -1.5f, 0);
    beatgrid = 3.0f;
    const sync_c b("b", 0.0f, 0);
    EXPECT_TRUE(b.once());
    writefile("eventsdump.txt", std::string(1000, 'x'));
    sync_save();
    EXPECT_EQ(readfile("eventsdump.txt"),
              "'B' -1.50000\n'a-late' 0.12346\n'alate' 48.00000\n'b' 2.00000\n");
    EXPECT_FALSE(b.once());
    EXPECT_FALSE(events["B"]->happened);
}

TEST(sync, dump_that_cannot_be_written_is_passed_over) {
    scratch_c scratch;
    std::filesystem::create_directory("eventsdump.txt");
    const sync_c b("b", 0.0f, 0);
    EXPECT_TRUE(b.once());
    EXPECT_EQ(printed(sync_save), "");
    EXPECT_FALSE(b.once()) << "acknowledged all the same";
}

} // namespace

#include "wake.h"

#include "printed.h"
#include "services.h"
#include "testport.h"

namespace {

using texts = std::vector<std::string>;

const char heartbeat[] = "Up all night dont ever let me go, I'll die for you\n";

TEST(wake, without_a_bus_says_so_and_starts_nothing) {
    EXPECT_EQ(printed(pysyhereilla), "bus == NULL\n");
    EXPECT_EQ(testport.calls, texts{"dbus_bus_get(1, error)"});
    EXPECT_TRUE(services.timers.empty());
}

TEST(wake, makes_the_message_once_and_asks_for_the_timer_at_once) {
    services.bus = true;
    EXPECT_EQ(printed(pysyhereilla), "");
    EXPECT_EQ(testport.calls,
              (texts{"dbus_bus_get(1, error)", "dbus_connection_set_exit_on_disconnect(0)",
                     "dbus_message_new_method_call(com.nokia.mce, /com/nokia/mce/request, "
                     "com.nokia.mce.request, req_display_blanking_pause)",
                     "dbus_message_set_no_reply(1)", "SDL_AddTimer(0)"}));
    ASSERT_EQ(services.timers.size(), 1u);
    EXPECT_EQ(services.timers[0].callback, heratys);
}

TEST(wake, each_tick_sends_flushes_and_beats) {
    services.bus = true;
    pysyhereilla();
    testport.calls.clear();
    EXPECT_EQ(printed([] {
                  EXPECT_EQ(heratys(0, nullptr), 5000u);
                  EXPECT_EQ(heratys(5000, nullptr), 5000u);
              }),
              std::string(heartbeat) + heartbeat);
    EXPECT_EQ(testport.calls, (texts{"dbus_connection_send()", "dbus_connection_flush()",
                                     "dbus_connection_send()", "dbus_connection_flush()"}));
}

TEST(wake, a_failed_send_is_reported_and_the_timer_runs_on) {
    services.bus = true;
    services.send = false;
    pysyhereilla();
    EXPECT_EQ(printed([] { EXPECT_EQ(heratys(5000, nullptr), 5000u); }),
              std::string("Out Of Memory!\n") + heartbeat);
}

TEST(wake_death, without_a_message_the_show_ends) {
    services.bus = true;
    services.message = false;
    EXPECT_EXIT(pysyhereilla(), testing::ExitedWithCode(1), "^Message Null\n$");
}

} // namespace

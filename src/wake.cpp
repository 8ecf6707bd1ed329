#include "wake.h"

#include <cstdio>
#include <cstdlib>
#include <dbus/dbus.h>

namespace {

constexpr Uint32 period = 5000; // milliseconds

DBusConnection* bus_connection = nullptr;
DBusMessage* msg = nullptr; // built once, sent again and again
SDL_TimerID wakeuptimer = nullptr;
DBusError error;

} // namespace

void pysyhereilla() {
    dbus_error_init(&error);
    bus_connection = dbus_bus_get(DBUS_BUS_SYSTEM, &error);
    if (!bus_connection) {
        fprintf(stderr, "bus == NULL\n");
        return;
    }
    // The bus may die; the show must not die with it.
    dbus_connection_set_exit_on_disconnect(bus_connection, FALSE);
    msg = dbus_message_new_method_call("com.nokia.mce", "/com/nokia/mce/request",
                                       "com.nokia.mce.request", "req_display_blanking_pause");
    if (!msg) {
        fprintf(stderr, "Message Null\n");
        exit(1);
    }
    dbus_message_set_no_reply(msg, TRUE);
    wakeuptimer = SDL_AddTimer(0, heratys, nullptr);
}

Uint32 heratys(Uint32, void*) {
    if (!dbus_connection_send(bus_connection, msg, nullptr))
        fprintf(stderr, "Out Of Memory!\n");
    dbus_connection_flush(bus_connection);
    fprintf(stderr, "Up all night dont ever let me go, I'll die for you\n");
    return period;
}

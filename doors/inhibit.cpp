#include "inhibit.h"

#include <cstdlib>
#include <dbus/dbus.h>
#include <string>
#include <unistd.h>

namespace {

const char* application = "tarvisk";
const char* reason = "The show is playing";
constexpr int patience = 2000; // milliseconds for an answer

DBusConnection* bus = nullptr;

// Without an address libdbus would start a bus of its own, which then stays.
bool hassessionbus() {
    const char* runtime = getenv("XDG_RUNTIME_DIR");
    return getenv("DBUS_SESSION_BUS_ADDRESS") ||
           (runtime && access((std::string(runtime) + "/bus").c_str(), F_OK) == 0);
}

// Sends a call and says whether it was answered without an error.
bool answered(DBusMessage* call) {
    DBusMessage* reply = dbus_connection_send_with_reply_and_block(bus, call, patience, nullptr);
    dbus_message_unref(call);
    if (reply)
        dbus_message_unref(reply);
    return reply;
}

bool askscreensaver() {
    DBusMessage* call =
        dbus_message_new_method_call("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
                                     "org.freedesktop.ScreenSaver", "Inhibit");
    dbus_message_append_args(call, DBUS_TYPE_STRING, &application, DBUS_TYPE_STRING, &reason,
                             DBUS_TYPE_INVALID);
    return answered(call);
}

bool askgnome() {
    const dbus_uint32_t nowindow = 0, idle = 8;
    DBusMessage* call =
        dbus_message_new_method_call("org.gnome.SessionManager", "/org/gnome/SessionManager",
                                     "org.gnome.SessionManager", "Inhibit");
    dbus_message_append_args(call, DBUS_TYPE_STRING, &application, DBUS_TYPE_UINT32, &nowindow,
                             DBUS_TYPE_STRING, &reason, DBUS_TYPE_UINT32, &idle, DBUS_TYPE_INVALID);
    return answered(call);
}

} // namespace

void inhibit_start() {
    if (!hassessionbus())
        return;
    bus = dbus_bus_get_private(DBUS_BUS_SESSION, nullptr);
    if (!bus)
        return;
    dbus_connection_set_exit_on_disconnect(bus, FALSE);
    if (!askscreensaver())
        askgnome();
}

// Both services take their inhibitions back when who asked has left the bus.
void inhibit_end() {
    if (!bus)
        return;
    dbus_connection_close(bus);
    dbus_connection_unref(bus);
    bus = nullptr;
}

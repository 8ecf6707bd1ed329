#include "interrupt.h"

#include <csignal>
#include <initializer_list>

namespace {

volatile sig_atomic_t came = 0;

void remember(int signal) {
    if (!came)
        came = signal;
}

} // namespace

void interrupt_catch() {
    struct sigaction action {};
    action.sa_handler = remember;
    action.sa_flags = SA_RESTART; // what is being written is written to its end
    for (int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
    signal(SIGPIPE, SIG_IGN);
}

int interrupt_signal() {
    return came;
}

int interrupt_status() {
    return 128 + came;
}

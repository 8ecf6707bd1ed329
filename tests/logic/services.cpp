#include "services.h"

#include "testport.h"

#include <ctime>
#include <dbus/dbus.h>
#include <dlfcn.h>
#include <SDL_mixer.h>
#include <SDL_thread.h>
#include <unistd.h>

services_s services;

namespace {

// Addresses to hand out; nothing looks behind them.
int handles[3];

const char initialised[] = "initialised";

template<class T>
T* handle(int i, bool available) {
    return available ? reinterpret_cast<T*>(&handles[i]) : nullptr;
}

template<class... T>
void note(const char* name, const T&... args) {
    std::string text = std::string(name) + "(";
    [[maybe_unused]] const char* separator = "";
    ((text += separator + std::string(args), separator = ", "), ...);
    testport.calls.push_back(text + ")");
}

const char* song(const void* music) {
    return music ? "song" : "null";
}

int idle(void*) {
    return 0;
}

} // namespace

extern "C" {

SDL_TimerID SDL_AddTimer(Uint32 interval, SDL_NewTimerCallback callback, void*) {
    note("SDL_AddTimer", std::to_string(interval));
    services.timers.push_back({interval, callback});
    return handle<struct _SDL_TimerID>(0, true);
}

SDL_Thread* SDL_CreateThread(int (*work)(void*), void* data) {
    if (services.threads == threads_t::none)
        return nullptr;
    if (services.threads == threads_t::atonce) {
        work(data);
        work = idle;
    }
    static const auto original =
        reinterpret_cast<decltype(&SDL_CreateThread)>(dlsym(RTLD_NEXT, "SDL_CreateThread"));
    return original(work, data);
}

int Mix_OpenAudio(int frequency, Uint16 format, int channels, int chunksize) {
    note("Mix_OpenAudio", std::to_string(frequency), std::to_string(format),
         std::to_string(channels), std::to_string(chunksize));
    if (services.audio)
        return 0;
    SDL_SetError("no such device");
    return -1;
}

Mix_Music* Mix_LoadMUS(const char* file) {
    note("Mix_LoadMUS", file);
    testport.now += services.loadtime;
    services.loadedat = testport.now;
    if (!services.song)
        SDL_SetError("no such song");
    return handle<Mix_Music>(1, services.song);
}

int Mix_PlayMusic(Mix_Music* music, int loops) {
    note("Mix_PlayMusic", song(music), std::to_string(loops));
    testport.now += services.playtime;
    return 0;
}

int Mix_SetMusicPosition(double position) {
    note("Mix_SetMusicPosition");
    services.position = position;
    return 0;
}

int Mix_HaltMusic() {
    note("Mix_HaltMusic");
    return 0;
}

void Mix_FreeMusic(Mix_Music* music) {
    note("Mix_FreeMusic", song(music));
}

void SDL_Delay(Uint32) {
    ++services.delays;
}

int nanosleep(const timespec*, timespec*) {
    ++services.delays;
    return 0;
}

int usleep(useconds_t) {
    ++services.delays;
    return 0;
}

Uint8 SDL_GetMouseState(int*, int*) {
    return services.mousebuttons;
}

void dbus_error_init(DBusError* error) {
    *error = {};
    error->name = initialised;
}

DBusConnection* dbus_bus_get(DBusBusType type, DBusError* error) {
    note("dbus_bus_get", std::to_string(type),
         error && error->name == initialised ? "error" : "no error");
    return handle<DBusConnection>(2, services.bus);
}

void dbus_connection_set_exit_on_disconnect(DBusConnection*, dbus_bool_t exits) {
    note("dbus_connection_set_exit_on_disconnect", std::to_string(exits));
}

DBusMessage* dbus_message_new_method_call(const char* destination, const char* path,
                                          const char* interface, const char* method) {
    note("dbus_message_new_method_call", destination, path, interface, method);
    return handle<DBusMessage>(0, services.message);
}

void dbus_message_set_no_reply(DBusMessage*, dbus_bool_t none) {
    note("dbus_message_set_no_reply", std::to_string(none));
}

dbus_bool_t dbus_connection_send(DBusConnection*, DBusMessage*, dbus_uint32_t*) {
    note("dbus_connection_send");
    return services.send;
}

void dbus_connection_flush(DBusConnection*) {
    note("dbus_connection_flush");
}
}

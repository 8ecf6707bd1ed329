// A sound device for tests, as a plugin of ALSA's. It plays into nothing, as fast as a real one,
// and makes the files $SOUND_DEVICE.heard at the first sound, $SOUND_DEVICE.closed at the end. Once
// the file $SOUND_DEVICE is gone, so is the device; once something is written in it, the device
// hangs.
#include <alsa/asoundlib.h>
#include <alsa/pcm_external.h>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace {

constexpr long nanoseconds = 1'000'000'000;
constexpr long tick = nanoseconds / 200; // between two looks at how far it has played

std::string name() {
    const char* file = getenv("SOUND_DEVICE");
    return file ? file : "";
}

struct device_s {
    snd_pcm_ioplug_t io{};
    long begun = 0; // nanoseconds
};

device_s* device(snd_pcm_ioplug_t* io) {
    return static_cast<device_s*>(io->private_data);
}

long now() {
    timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * nanoseconds + t.tv_nsec;
}

// 0, or the error of a device that was pulled out. Does not return from one that hangs.
int condition(snd_pcm_ioplug_t* io) {
    struct stat file;
    while (stat(name().c_str(), &file) == 0) {
        if (file.st_size == 0)
            return 0;
        pause();
    }
    snd_pcm_ioplug_set_state(io, SND_PCM_STATE_DISCONNECTED);
    return -ENODEV;
}

int start(snd_pcm_ioplug_t* io) {
    device(io)->begun = now();
    return condition(io);
}

int stop(snd_pcm_ioplug_t*) {
    return 0;
}

int prepare(snd_pcm_ioplug_t* io) {
    return condition(io);
}

snd_pcm_sframes_t pointer(snd_pcm_ioplug_t* io) {
    if (const int error = condition(io))
        return error;
    const long played = (now() - device(io)->begun) / 1000 * long(io->rate) / (nanoseconds / 1000);
    return played % snd_pcm_sframes_t(io->buffer_size);
}

void mark(const char* what) {
    close(open((name() + what).c_str(), O_CREAT | O_WRONLY, 0600));
}

int closed(snd_pcm_ioplug_t*) {
    mark(".closed");
    return 0;
}

bool sounds(const void* first, size_t size) {
    const auto* bytes = static_cast<const char*>(first);
    for (size_t i = 0; i < size; ++i)
        if (bytes[i])
            return true;
    return false;
}

snd_pcm_sframes_t transfer(snd_pcm_ioplug_t* io, const snd_pcm_channel_area_t* areas,
                           snd_pcm_uframes_t offset, snd_pcm_uframes_t size) {
    if (const int error = condition(io))
        return error;
    const size_t frame = areas->step / 8;
    if (sounds(static_cast<char*>(areas->addr) + offset * frame, size * frame))
        mark(".heard");
    return snd_pcm_sframes_t(size);
}

int poll_revents(snd_pcm_ioplug_t*, pollfd* fds, unsigned, unsigned short* events) {
    uint64_t ticks;
    *events = read(fds->fd, &ticks, sizeof ticks) > 0 ? POLLOUT : 0;
    return 0;
}

const snd_pcm_ioplug_callback_t callbacks = [] {
    snd_pcm_ioplug_callback_t c{};
    c.start = start;
    c.stop = stop;
    c.prepare = prepare;
    c.pointer = pointer;
    c.transfer = transfer;
    c.close = closed;
    c.poll_revents = poll_revents;
    return c;
}();

int ticking() {
    const int fd = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    const itimerspec every = {{0, tick}, {0, tick}};
    timerfd_settime(fd, 0, &every, nullptr);
    return fd;
}

void restrict(snd_pcm_ioplug_t* io) {
    const unsigned access[] = {SND_PCM_ACCESS_RW_INTERLEAVED};
    const unsigned format[] = {SND_PCM_FORMAT_S16_LE};
    snd_pcm_ioplug_set_param_list(io, SND_PCM_IOPLUG_HW_ACCESS, 1, access);
    snd_pcm_ioplug_set_param_list(io, SND_PCM_IOPLUG_HW_FORMAT, 1, format);
    snd_pcm_ioplug_set_param_minmax(io, SND_PCM_IOPLUG_HW_CHANNELS, 2, 2);
    snd_pcm_ioplug_set_param_minmax(io, SND_PCM_IOPLUG_HW_RATE, 44100, 48000);
    snd_pcm_ioplug_set_param_minmax(io, SND_PCM_IOPLUG_HW_PERIODS, 2, 16);
    snd_pcm_ioplug_set_param_minmax(io, SND_PCM_IOPLUG_HW_BUFFER_BYTES, 4096, 1 << 17);
}

} // namespace

extern "C" {

SND_PCM_PLUGIN_DEFINE_FUNC(sounddevice) {
    (void)root;
    (void)conf;
    auto* made = new device_s;
    snd_pcm_ioplug_t& io = made->io;
    io.version = SND_PCM_IOPLUG_VERSION;
    io.name = "a device for tests";
    io.poll_fd = ticking();
    io.poll_events = POLLIN;
    io.callback = &callbacks;
    io.private_data = made;
    if (const int error = snd_pcm_ioplug_create(&io, name, stream, mode))
        return error;
    restrict(&io);
    *pcmp = io.pcm;
    return 0;
}

SND_PCM_PLUGIN_SYMBOL(sounddevice)
}

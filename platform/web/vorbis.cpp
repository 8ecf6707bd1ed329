// A decoder of Ogg Vorbis for browsers that have none: a small program of its own, which the page
// loads (page/vorbis.js) only where it must. The page is Module.bytes, the file, and
// Module.take(channel, samples), which gets what is decoded.
#include <emscripten.h>
#include <vector>

#define STB_VORBIS_NO_STDIO
#define STB_VORBIS_NO_PUSHDATA_API
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Weverything"
#include <stb_vorbis.h>
#pragma clang diagnostic pop

namespace {

constexpr int maxchannels = 2;
constexpr int piece = 44100; // samples decoded at once, about a second

std::vector<unsigned char> file;
std::vector<float> samples[maxchannels];
stb_vorbis* decoder = nullptr;

EM_JS(int, filesize, (), { return Module.bytes.length; });

EM_JS(void, fetchfile, (unsigned char* to), { HEAPU8.set(Module.bytes, to); });

EM_JS(void, give, (int channel, const float* from, int count),
      { Module.take(channel, HEAPF32.subarray(from >> 2, (from >> 2) + count)); });

} // namespace

extern "C" {

// Returns the samples of the song, 0 when it is none.
EMSCRIPTEN_KEEPALIVE int vorbis_open() {
    file.resize(static_cast<size_t>(filesize()));
    fetchfile(file.data());
    int error = 0;
    decoder = stb_vorbis_open_memory(file.data(), static_cast<int>(file.size()), &error, nullptr);
    for (std::vector<float>& channel : samples)
        channel.resize(piece);
    return decoder ? static_cast<int>(stb_vorbis_stream_length_in_samples(decoder)) : 0;
}

EMSCRIPTEN_KEEPALIVE int vorbis_rate() {
    return static_cast<int>(stb_vorbis_get_info(decoder).sample_rate);
}

// Decodes the next piece. Returns its samples, 0 at the end.
EMSCRIPTEN_KEEPALIVE int vorbis_decode() {
    float* channels[maxchannels] = {samples[0].data(), samples[1].data()};
    const int count = stb_vorbis_get_samples_float(decoder, maxchannels, channels, piece);
    for (int i = 0; i < maxchannels; ++i)
        give(i, channels[i], count);
    return count;
}
}

#include "encoder.h"

#include <cstdio>
#include <filesystem>

namespace {

using words_t = std::vector<std::string>;

const words_t ffmpeg = {"ffmpeg", "-hide_banner", "-nostdin", "-loglevel", "error", "-y"};

words_t joined(std::initializer_list<words_t> lists) {
    words_t all;
    for (const words_t& list : lists)
        all.insert(all.end(), list.begin(), list.end());
    return all;
}

std::string seconds(long long frames, const format_s& format) {
    char text[32];
    snprintf(text, sizeof text, "%.6f",
             double(frames) * double(format.rate_denominator) / double(format.rate_numerator));
    return text;
}

std::string ending(const std::string& filename) {
    return std::filesystem::path(filename).extension();
}

bool ismatroska(const std::string& movie) {
    return ending(movie) == ".mkv";
}

words_t container(const std::string& movie) {
    if (ismatroska(movie))
        return {"-f", "matroska"};
    return {"-movflags", "+faststart", "-f", "mp4"};
}

// Matroska cannot leave out what AAC plays before its first sample, and would show the first
// picture so much later.
words_t soundcodec(const std::string& movie) {
    if (ismatroska(movie))
        return {"-c:a", "flac"};
    return {"-c:a", "aac", "-b:a", "224k"};
}

bool writefile(const std::string& filename, const std::string& text) {
    FILE* file = fopen(filename.c_str(), "wt");
    if (!file)
        return false;
    const bool written = fputs(text.c_str(), file) >= 0;
    return fclose(file) == 0 && written;
}

// Where each begins is counted in frames: what the files say of their own length is rounded.
std::string stretchlist(const assembly_s& assembly) {
    std::string text = "ffconcat version 1.0\n";
    for (const std::string& stretch : assembly.stretches)
        text += "file '" + std::filesystem::path(stretch).filename().string() + "'\nduration " +
                seconds(assembly.stretchframes, assembly.format) + "\n";
    return text;
}

std::string metadata(const assembly_s& assembly) {
    std::string text = ";FFMETADATA1\ntitle=tarvisk\nartist=VXQ\n";
    for (size_t i = 0; i < assembly.chapters.size(); ++i) {
        const bool last = i + 1 == assembly.chapters.size();
        const long long end = last ? assembly.frames : assembly.chapters[i + 1].frame;
        text += "[CHAPTER]\nTIMEBASE=" + std::to_string(assembly.format.rate_denominator) + "/" +
                std::to_string(assembly.format.rate_numerator) +
                "\nSTART=" + std::to_string(assembly.chapters[i].frame) +
                "\nEND=" + std::to_string(end) + "\ntitle=" + assembly.chapters[i].name + "\n";
    }
    return text;
}

// The sound starts where the first picture's clock stood, to the sample, and is as long as the
// picture; behind the song's end there is silence.
words_t sound(const assembly_s& assembly, const std::string& movie) {
    if (assembly.song.empty())
        return {"-an"};
    const words_t filter = {"-filter_complex",
                            "[2:a]atrim=start_sample=" + std::to_string(assembly.songsample) +
                                ",asetpts=PTS-STARTPTS,apad,atrim=end=" +
                                seconds(assembly.frames, assembly.format) + "[a]"};
    return joined({filter, {"-map", "[a]"}, soundcodec(movie)});
}

} // namespace

bool encoder_start(process_c* encoder, const format_s& format, const std::string& target) {
    const std::string size = std::to_string(format.width) + "x" + std::to_string(format.height);
    const std::string rate =
        std::to_string(format.rate_numerator) + "/" + std::to_string(format.rate_denominator);
    const words_t input = {"-f",          "rawvideo", "-pixel_format", "rgb0",
                           "-video_size", size,       "-framerate",    rate,
                           "-i",          "pipe:0"};
    const words_t codec = {"-c:v",     "libx264", "-preset",
                           "veryfast", "-crf",    std::to_string(format.quality),
                           "-pix_fmt", "yuv420p"};
    const words_t colours = {"-colorspace",
                             "bt709",
                             "-color_primaries",
                             "bt709",
                             "-color_trc",
                             "bt709",
                             "-vf",
                             "scale=out_color_matrix=bt709"};
    // A format that keeps the frame rate's own ticks, and what it holds when it is cut off.
    return encoder->start(joined({ffmpeg, input, codec, colours, {"-f", "nut", target}}), true);
}

bool encoder_knows(const std::string& movie) {
    for (const char* known : {".mp4", ".m4v", ".mov", ".mkv"})
        if (ending(movie) == known)
            return true;
    return false;
}

bool encoder_assemble(const assembly_s& assembly, const std::string& target, int report) {
    const std::string list = assembly.folder + "/list";
    const std::string chapters = assembly.folder + "/chapters";
    if (!writefile(list, stretchlist(assembly)) || !writefile(chapters, metadata(assembly))) {
        dprintf(report, "cannot write into %s\n", assembly.folder.c_str());
        return false;
    }
    words_t inputs = {"-f", "concat", "-i", list, "-f", "ffmetadata", "-i", chapters};
    if (!assembly.song.empty())
        inputs.insert(inputs.end(), {"-i", assembly.song});
    const words_t video = {"-map",          "0:v", "-c:v",          "copy",
                           "-map_metadata", "1",   "-map_chapters", "1"};
    return process_run(
        joined({ffmpeg, inputs, sound(assembly, target), video, container(target), {target}}),
        report);
}

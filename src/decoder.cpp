#include "decoder.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <list>
#include <mutex>
#include <SDL_image.h>
#include <SDL_thread.h>
#include <string>

namespace {

namespace fs = std::filesystem;

// Both threads look at all of it but `taken`, which is the GL thread's.
struct picture_s {
    std::string fn;
    std::uintmax_t size = 0; // bytes of the file
    bool taken = false;
    std::once_flag begun;
    SDL_Surface* surface = nullptr;

    explicit picture_s(const fs::directory_entry& file) : fn(file.path().string()) {
        std::error_code error; // as large as can be, then
        size = file.file_size(error);
    }

    ~picture_s() {
        if (!taken)
            SDL_FreeSurface(surface);
    }
};

std::list<picture_s> pictures; // as it is from the thread's start on
SDL_Thread* thread = nullptr;

bool ispicture(const fs::path& path) {
    return path.extension() == ".png" || path.extension() == ".jpg";
}

void list(const char* folder) {
    std::error_code error; // a folder that cannot be read is empty
    for (fs::directory_iterator file(folder, error), end; file != end; file.increment(error))
        if (ispicture(file->path()))
            pictures.emplace_back(*file);
    pictures.sort([](const picture_s& a, const picture_s& b) { return a.size > b.size; });
}

// Whoever comes first decodes; the other waits for it.
SDL_Surface* decoded(picture_s& picture) {
    std::call_once(picture.begun, [&] { picture.surface = IMG_Load(picture.fn.c_str()); });
    return picture.surface;
}

int decodeall(void*) {
    for (picture_s& picture : pictures)
        decoded(picture);
    return 0;
}

// Or the process would take the libraries away under it.
void finish() {
    SDL_WaitThread(thread, nullptr);
}

} // namespace

void decoder_begin(const char* folder) {
    list(folder);
    IMG_Init(IMG_INIT_JPG | IMG_INIT_PNG); // which two threads must not do at once
    thread = SDL_CreateThread(decodeall, nullptr);
    if (thread)
        atexit(finish);
}

SDL_Surface* decoder_load(const char* fn) {
    for (picture_s& picture : pictures)
        if (!picture.taken && picture.fn == fn) {
            picture.taken = true;
            return decoded(picture);
        }
    return IMG_Load(fn);
}

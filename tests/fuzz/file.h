// A file that holds what the fuzzer made up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

inline void writefile(const char* name, const uint8_t* data, size_t size) {
    FILE* file = fopen(name, "wb");
    if (!file || fwrite(data, 1, size, file) != size || fclose(file) != 0)
        abort();
}

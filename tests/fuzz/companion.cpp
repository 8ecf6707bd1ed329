// Companion files of pictures: any file gives at most 999 lines, and every way of asking for a
// rectangle is answered. The first line of the input is the name that is asked for, its first byte
// a number.
#include "file.h"
#include "texture.h"

#include <algorithm>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const uint8_t* rest = std::find(data, data + size, uint8_t('\n'));
    const std::string name(data, rest);
    writefile("picture.txt", rest, static_cast<size_t>(data + size - rest));
    texture_c texture{};
    texture.checksubtex("picture");
    if (texture.subtexnum < 0 || texture.subtexnum > 999)
        abort();
    texture.getsubtex(name.c_str());
    texture.getsubtex(name.empty() ? 0 : static_cast<signed char>(name[0]));
    for (int i : {-1, 0, texture.subtexnum - 1, texture.subtexnum, texture.subtexnum + 1})
        texture.getsubtex(i);
    for (int i = 0; i < texture.subtexnum; ++i)
        free(texture.subtexdata[i]);
    delete[] texture.subtexdata;
    return 0;
}

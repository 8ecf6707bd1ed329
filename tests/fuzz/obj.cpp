// The mesh loader: any file becomes a mesh whose counts, corners and arrays agree.
#include "file.h"
#include "model.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    writefile("mesh.obj", data, size);
    const model_c model("mesh.obj");
    if (model.fcnt < 0 || model.fcnt > model_c::maxfaces || model.vcnt < 0 || model.tcnt < 0 ||
        model.ncnt < 0)
        abort();
    // Every byte of what GL will be handed must be there.
    volatile float sum = 0.0f;
    for (int i = 0; i < model.fcnt * 3; ++i)
        sum = sum + model.data[i].pos.x + model.data[i].tc.y + model.data[i].nor.z;
    delete[] model.verts;
    delete[] model.texcoords;
    delete[] model.normals;
    delete[] model.faces;
    delete[] model.data;
    return 0;
}

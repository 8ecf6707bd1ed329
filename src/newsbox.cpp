#include "newsbox.h"

#include "shader.h"

#include <cmath>

namespace {

constexpr int boxvertices = 6;

// Which vertices lie at the far side of the box, in the order of newsbox_c::coords.
constexpr bool right[boxvertices] = {false, true, false, true, true, false};
constexpr bool lower[boxvertices] = {false, false, true, false, true, true};

} // namespace

newsbox_render_c::newsbox_render_c() : boxcount(0) {}

void newsbox_render_c::flush() {
    if (boxcount == 0)
        return;
    shader->array("pos", 2, GL_FLOAT, sizeof(newsvert_s), &coordbuffer[0].x);
    shader->array("uv", 2, GL_FLOAT, sizeof(newsvert_s), &coordbuffer[0].u);
    glDrawArrays(GL_TRIANGLES, 0, boxcount);
    boxcount = 0;
}

void newsbox_c::resize(float w, float h) {
    for (int i = 0; i < boxvertices; ++i) {
        coords[i].x = right[i] ? w : 0.0f;
        coords[i].y = lower[i] ? h : 0.0f;
    }
    cs_x = w;
    cs_y = h;
}

void newsbox_c::settex(float x0, float y0, float x1, float y1) {
    for (int i = 0; i < boxvertices; ++i) {
        coords[i].u = (right[i] ? x1 : x0) / renderer->texsize_x;
        coords[i].v = (lower[i] ? y1 : y0) / renderer->texsize_y;
    }
}

void newsbox_c::setcol(float r, float g, float b, float a) {
    color[0] = r;
    color[1] = g;
    color[2] = b;
    color[3] = a;
}

void newsbox_c::set(float x0, float y0, float x1, float y1) {
    settex(x0, y0, x1, y1);
    resize(std::abs(x1 - x0), std::abs(y1 - y0));
    setcol(1.0f, 1.0f, 1.0f, 1.0f);
}

void newsbox_c::draw(float x, float y) const {
    if (renderer->boxcount + boxvertices > newsbox_render_c::maxvertices)
        return;
    for (const newsvert_s& corner : coords)
        renderer->coordbuffer[renderer->boxcount++] = {corner.x + x, corner.y + y, corner.u,
                                                       corner.v};
}

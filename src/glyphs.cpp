#include "glyphs.h"

#include "main/clock.h"
#include "quad.h"
#include "util.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace glyphs {

const std::u32string_view font = U"@abcdefghijklmnopqrstuvwxyz[$]^^"
                                 U" !\"#$%&'()*+,-./0123456789:;<=>?"
                                 U"-ABCDEFGHIJKLMNOPQRSTUVWXYZ+ |  "
                                 U"\u00A8";

const char vertex_src[] = R"(
attribute vec2 pos;
attribute vec2 uv;
varying vec2 v_uv;
void main() {
    vec2 norpos = pos * vec2(2.0 / 48.0, 2.0 / 1.0) + vec2(-1.0, -1.0);
    gl_Position = vec4(norpos, 0.0, 1.0);
    v_uv = uv;
}
)";

int index(char32_t c) {
    const auto place = font.find(c);
    return place == font.npos ? -1 : static_cast<int>(place);
}

cell_s cell(int glyph) {
    const auto col = static_cast<float>(glyph % 32);
    const auto row = static_cast<float>(3 - glyph / 32);
    return {(col + 0.01f) / 32, (col + 0.96f) / 32, (row + 0.04f) / 4, (row + 0.96f) / 4};
}

void beatkick(spring_c<float>& randomizer) {
    if (util::rnd() > 0.9 && util::onbeat(beatgrid))
        randomizer.pos = 1.0f;
    if (util::rnd() > 0.999)
        randomizer.pos += 0.1f;
    randomizer.iterate(frameskip);
}

float swell(int slot, float kick) {
    return (std::sin(static_cast<float>(slot) + timeval) * 0.5f + 0.5f) * kick;
}

void use(const shader_c& shader, const texture_c& sheet) {
    const texture_c nothing{};
    shader.use();
    shader.set("time", timeval);
    shader.set("contract", util::contract(timeval));
    shader.texture("tex", 0, sheet);
    shader.texture("tex2", 1, nothing);
}

line_c::line_c(std::u32string linetext) : text(std::move(linetext)) {
    clear();
}

void line_c::advance(double step) {
    const int lastpos = static_cast<int>(text.size()) - slots;
    scrollofs = static_cast<float>(scrollofs + step);
    while (scrollofs > 1.0f) {
        scrollofs -= 1.0f;
        if (++scrollerpos > lastpos)
            scrollerpos = 0;
    }
}

void line_c::clear() {
    std::fill(std::begin(pos), std::end(pos), glm::vec2(0.0f));
    std::fill(std::begin(uv), std::end(uv), glm::vec2(0.0f));
}

char32_t line_c::at(int slot) const {
    return text[static_cast<size_t>(scrollerpos + slot)];
}

void line_c::put(int slot, float scale, float yscale, float centre) {
    const cell_s c = cell(index(at(slot)));
    for (int i = 0; i < 6; ++i) {
        // Two draws that nobody reads: the kicks count on their place in the random sequence.
        util::rnd_n();
        util::rnd_n();
        const glm::vec2 corner = quad::unit[i] * 2.0f - 1.0f;
        const float x = static_cast<float>(slot) + (0.5f - scrollofs) + scale * corner.x * 0.5f;
        pos[slot * 6 + i] = {x, scale * corner.y * yscale + centre};
        uv[slot * 6 + i] = {corner.x < 0 ? c.u_lo : c.u_hi, corner.y < 0 ? c.v_hi : c.v_lo};
    }
}

} // namespace glyphs

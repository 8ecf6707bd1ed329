// One line of text that scrolls through a row of character cells: the order of the glyph sheet, the
// scroll, the beat's kick and the vertices. The effects that show it say how the glyphs swell,
// where the row lies, and in which colours.
//
// Cell space: x in character widths, 0 to 48 from left to right; y 0 at the bottom of the target, 1
// at its top. Slots count the visible cells from the left.
//
// Order of use, once a frame: advance and clear; put for every slot that shows something; use; then
// pos and uv with quad::attach, glDrawArrays of `vertices`, quad::detach.
#pragma once

#include "shader.h"
#include "spring.h"
#include "texture.h"

#include <glm/glm.hpp>
#include <string>
#include <string_view>

namespace glyphs {

constexpr int slots = 48;
constexpr int vertices = slots * 6;

// The character that shows nothing.
constexpr char32_t emptycell = U'\u00A8';

// The sheet's glyphs: 32 columns, 4 rows from the top. Characters that stand here twice mean the
// first place.
extern const std::u32string_view font;

// Place of c in font, or -1, whose cell lies off the sheet's left edge in the top row.
int index(char32_t c);

// The part of a glyph's cell that is drawn, in texture coordinates.
struct cell_s {
    float u_lo, u_hi; // left, right
    float v_lo, v_hi; // bottom, top
};
cell_s cell(int glyph);

// Kicks the spring at random, mostly on the beat, and steps it. Called once for every glyph drawn,
// so that the spring runs up to 48 times as fast as others: its visible speed counts on it.
void beatkick(spring_c<float>& randomizer);

// What a kick adds to the size of the glyph in a slot: a wave that travels along the row.
float swell(int slot, float kick);

// Vertex shader of such a row: attributes "pos" in cell space and "uv".
extern const char vertex_src[];

// Makes the program current and sets what the rows have in common: "time", "contract", sampler
// "tex" on unit 0 = the glyph sheet, and nothing on unit 1.
void use(const shader_c& shader, const texture_c& sheet);

class line_c {
public:
    glm::vec2 pos[vertices]; // cell space
    glm::vec2 uv[vertices];

    explicit line_c(std::u32string linetext);

    // Scrolls by `step` character widths, back to the start of the text behind its last 48.
    void advance(double step);

    // Empties all cells.
    void clear();

    // The character in a slot.
    char32_t at(int slot) const;

    // Fills a slot with the glyph of its character, `scale` widths wide: the glyph's top lies at
    // centre - scale * yscale, its bottom at centre + scale * yscale, so it stands upright with a
    // yscale below 0. Draws 12 random numbers.
    void put(int slot, float scale, float yscale, float centre);

private:
    std::u32string text;
    int scrollerpos = 0;    // index in text of slot 0
    float scrollofs = 0.0f; // character widths that the row has moved to the left
};

} // namespace glyphs

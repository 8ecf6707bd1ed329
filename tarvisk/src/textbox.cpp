// The closing message: a thin line of text low over the last scene, its letters swelling on the
// beat and wobbling at odd moments.
#include "effects.h"
#include "glyphs.h"
#include "main/clock.h"
#include "quad.h"
#include "shader.h"
#include "spring.h"
#include "texture.h"
#include "util.h"

#include <cmath>

namespace {

shader_c shader;
texture_c tex; // the glyph sheet

const char fragment_src[] = FRAGMENT_HEAD R"(
uniform float time;
uniform sampler2D tex;
void main() {
    gl_FragColor = texture2D(tex, v_uv).xxxw * vec4(0.7, 1.0, 0.6, 1.0) * 1.1;
}
)";

std::u32string gap(size_t cells) {
    return std::u32string(cells, glyphs::emptycell);
}

glyphs::line_c line(U"Hello old friends, it has been a while." + gap(11) +
                    U"Times have surely gone by, but here we are once again." + gap(5) +
                    U"VXQ is back." + gap(5) + U"Atleast shortly between the maeaehhs." + gap(6) +
                    U"This time with some old routines from 2013 and beyond..." + gap(6) +
                    U"We hope you have enjoyed the show." + gap(5) + U"We'll see you again." +
                    gap(1) + U"In another time, in another space." + gap(276));

void randomkick(spring_c<float>& randomizer) {
    if (util::rnd() > 0.999)
        randomizer.pos = 1.0f;
    if (util::rnd() > 0.99)
        randomizer.pos += 0.1f;
    randomizer.iterate(frameskip);
}

float wobble(int slot, float kick) {
    return (std::sin((static_cast<float>(slot) + kick * 20.0f) * 0.7f) * 0.3f + 0.3f) * kick;
}

// Blanks are drawn: they draw their random numbers like any glyph.
void fillcells() {
    static spring_c<float> randomizer(0.0f, 0.0f, 0.001f, 0.95f);
    static spring_c<float> randomizer2(0.0f, 0.0f, 0.001f, 0.9f);
    line.clear();
    for (int slot = 0; slot < glyphs::slots; ++slot) {
        if (line.at(slot) == glyphs::emptycell)
            continue;
        glyphs::beatkick(randomizer);
        randomkick(randomizer2);
        const float scale =
            glyphs::swell(slot, randomizer.pos) + wobble(slot, randomizer2.pos) + 1.0f;
        line.put(slot, scale, -0.07f, 0.2f);
    }
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(glyphs::vertex_src, fragment_src);
        tex.load("gfx/chargen.png", 0);
    }

    void draw() override {
        line.advance(frameskip * 0.24);
        fillcells();
        glyphs::use(shader, tex);
        quad::attach(shader, line.pos, line.uv);
        glDrawArrays(GL_TRIANGLES, 0, glyphs::vertices);
        quad::detach(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* textbox = &effect;

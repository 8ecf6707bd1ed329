// A line of text scrolls through a strip that other effects wear; its letters swell on the beat.
// The strip is drawn upside down: whoever shows it takes v = 0 at the top.
#include "effects.h"
#include "glyphs.h"
#include "main/clock.h"
#include "quad.h"
#include "shader.h"
#include "spring.h"
#include "texture.h"

namespace {

shader_c shader;
texture_c tex; // the glyph sheet

const char fragment_src[] = FRAGMENT_HEAD R"(
uniform float time;
uniform sampler2D tex;
void main() {
    gl_FragColor = texture2D(tex, v_uv).zxyw * vec4(1.7, 1.7, 0.9, 1.0);
}
)";

const std::u32string margin(51, glyphs::emptycell);

glyphs::line_c line(margin +
                    U"PLOIIP LPSDLFPLPSLD F SSDDDDDDF LGPLSDFFFF PGL KKFISDFKIDFKI KKHODJJSDJDDDF "
                    U"kKKKSLSSSLSKDLLLLL Times have surely gone by, and here we are once again.    "
                    U"VXQ is back! With a leftovers demo, with parts from 2014 and beyond.  "
                    U"We hope you enjoy the show!" +
                    margin);

void fillcells() {
    static spring_c<float> randomizer(0.0f, 0.0f, 0.001f, 0.95f);
    line.clear();
    for (int slot = 0; slot < glyphs::slots; ++slot) {
        const char32_t c = line.at(slot);
        if (c == glyphs::emptycell || c == U' ')
            continue;
        glyphs::beatkick(randomizer);
        line.put(slot, glyphs::swell(slot, randomizer.pos) + 1.0f, 0.5f, 0.5f);
    }
}

class effect_c : public demoeffect_c {
public:
    void initgl() override {
        shader.init(glyphs::vertex_src, fragment_src);
        tex.load("gfx/chargen.png", 0);
    }

    void draw() override {
        line.advance(frameskip * 0.23);
        fillcells();
        glyphs::use(shader, tex);
        quad::attach(shader, line.pos, line.uv);
        glClear(GL_COLOR_BUFFER_BIT);
        glDrawArrays(GL_TRIANGLES, 0, glyphs::vertices);
        quad::detach(shader);
    }
};

effect_c effect;

} // namespace

demoeffect_c* scrollertexgen = &effect;

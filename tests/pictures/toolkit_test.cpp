// The toolkit on software GL: quad batches, render targets, the captured desktop and frame grabs,
// pixel by pixel.
#include "../scratch.h"
#include "fbo.h"
#include "main/capture.h"
#include "main/video.h"
#include "newsbox.h"
#include "offscreen.h"
#include "port.h"
#include "screenshot.h"
#include "shader.h"
#include "texture.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

using colour_t = std::vector<int>; // R, G, B

const colour_t black{0, 0, 0}, red{255, 0, 0}, green{0, 255, 0}, blue{0, 0, 255},
    white{255, 255, 255};

// A desktop of the named size on a GL of 8 bits a channel.
void opengl(int width, int height) {
    offscreen_setsize(width, height);
    port_beforesdl();
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0);
    init_gl();
    glViewport(0, 0, width, height);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
}

// From the top left, as a viewer counts.
colour_t pixel(int x, int y) {
    Uint8 p[4];
    glReadPixels(x, video_h - 1 - y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
    return {p[0], p[1], p[2]};
}

colour_t pixel(SDL_Surface* surface, int x, int y) {
    Uint8 r, g, b;
    const auto* p = static_cast<Uint8*>(surface->pixels) + y * surface->pitch +
                    x * surface->format->BytesPerPixel;
    Uint32 value = 0;
    memcpy(&value, p, surface->format->BytesPerPixel);
    SDL_GetRGB(value, surface->format, &r, &g, &b);
    return {r, g, b};
}

void put(SDL_Surface* surface, int x, int y, const colour_t& c) {
    reinterpret_cast<Uint32*>(static_cast<Uint8*>(surface->pixels) + y * surface->pitch)[x] =
        static_cast<Uint32>(c[0] | c[1] << 8 | c[2] << 16 | 255 << 24);
}

SDL_Surface* newsurface(int w, int h) {
    return SDL_CreateRGBSurface(0, w, h, 32, 0xFF, 0xFF00, 0xFF0000, 0xFF000000);
}

// Fills a rectangle of the framebuffer, counted from the top left.
void fill(int x, int y, int w, int h, const colour_t& c) {
    glEnable(GL_SCISSOR_TEST);
    glScissor(x, video_h - y - h, w, h);
    glClearColor(c[0] / 255.0f, c[1] / 255.0f, c[2] / 255.0f, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
}

// ---- quad batches ----

const char box_vertex_src[] = R"(
attribute vec2 pos;
attribute vec2 uv;
uniform vec2 screen;
varying vec2 v_uv;
void main() {
    gl_Position = vec4(pos.x / screen.x * 2.0 - 1.0, 1.0 - pos.y / screen.y * 2.0, 0.0, 1.0);
    v_uv = uv;
}
)";

const char box_fragment_src[] = R"(
precision highp float;
varying vec2 v_uv;
uniform sampler2D tex;
void main() { gl_FragColor = texture2D(tex, v_uv); }
)";

// A batch over an atlas of 2 x 2 fields of 4 x 4 texels: red, green over blue, white.
struct batch_s {
    shader_c shader{};
    texture_c atlas{};
    newsbox_render_c batch;

    batch_s() {
        SDL_Surface* texels = newsurface(8, 8);
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x)
                put(texels, x, y, y < 4 ? (x < 4 ? red : green) : (x < 4 ? blue : white));
        atlas.fromsurface(texels, TEX_NEAREST);
        SDL_FreeSurface(texels);
        shader.init(box_vertex_src, box_fragment_src);
        shader.texture("tex", 0, atlas);
        glUniform2f(shader.uniform("screen"), static_cast<float>(video_w),
                    static_cast<float>(video_h));
        batch.shader = &shader;
        batch.texsize_x = batch.texsize_y = 8.0f;
    }

    newsbox_c box(float x0, float y0, float x1, float y1) {
        newsbox_c made{};
        made.renderer = &batch;
        made.set(x0, y0, x1, y1);
        return made;
    }
};

TEST(newsbox_picture, shows_texels_as_pixels_at_their_place) {
    opengl(64, 32);
    batch_s stage;
    stage.box(0, 0, 8, 8).draw(10, 5);
    stage.box(4, 0, 8, 4).draw(40, 20);
    stage.batch.flush();
    EXPECT_EQ(pixel(10, 5), red);
    EXPECT_EQ(pixel(13, 8), red);
    EXPECT_EQ(pixel(14, 8), green);
    EXPECT_EQ(pixel(13, 9), blue);
    EXPECT_EQ(pixel(17, 12), white);
    EXPECT_EQ(pixel(9, 5), black);
    EXPECT_EQ(pixel(10, 4), black);
    EXPECT_EQ(pixel(18, 12), black);
    EXPECT_EQ(pixel(17, 13), black);
    EXPECT_EQ(pixel(40, 20), green);
    EXPECT_EQ(pixel(43, 23), green);
    EXPECT_EQ(pixel(44, 23), black);
}

TEST(newsbox_picture, mirrors_reversed_corners) {
    opengl(64, 32);
    batch_s stage;
    stage.box(8, 8, 0, 0).draw(10, 5);
    stage.batch.flush();
    EXPECT_EQ(pixel(10, 5), white);
    EXPECT_EQ(pixel(17, 5), blue);
    EXPECT_EQ(pixel(10, 12), green);
    EXPECT_EQ(pixel(17, 12), red);
}

TEST(newsbox_picture, scales_a_box_that_was_resized) {
    opengl(64, 32);
    batch_s stage;
    newsbox_c box = stage.box(0, 0, 8, 8);
    box.resize(32, 16);
    box.draw(0, 0);
    stage.batch.flush();
    EXPECT_EQ(pixel(15, 7), red);
    EXPECT_EQ(pixel(16, 7), green);
    EXPECT_EQ(pixel(15, 8), blue);
    EXPECT_EQ(pixel(31, 15), white);
    EXPECT_EQ(pixel(32, 15), black);
}

TEST(newsbox_picture, shows_every_box_of_a_full_batch) {
    opengl(200, 8);
    batch_s stage;
    const newsbox_c box = stage.box(4, 4, 5, 5);
    for (int x = 0; x < 200; ++x)
        box.draw(static_cast<float>(x), 3);
    stage.batch.flush();
    EXPECT_EQ(pixel(0, 3), white);
    EXPECT_EQ(pixel(165, 3), white);
    EXPECT_EQ(pixel(166, 3), black) << "the batch was full";
}

// ---- render targets and textures ----

TEST(fbo_picture, keeps_what_was_drawn_into_it) {
    opengl(64, 32);
    fbo_c target(16, 16, 0);
    target.bind();
    glClearColor(0, 1, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    target.unbind();
    EXPECT_EQ(pixel(5, 5), black) << "the screen is untouched";
    batch_s stage;
    texture_c picture{};
    picture.textureid = target.colortex;
    stage.shader.texture("tex", 0, picture);
    stage.box(0, 0, 8, 8).draw(0, 0);
    stage.batch.flush();
    EXPECT_EQ(pixel(5, 5), green);
}

TEST(texture_picture, is_complete_although_gl_refused_the_mipmaps) {
    opengl(64, 32);
    while (glGetError() != GL_NO_ERROR) {
    }
    batch_s stage;
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM)) << "the mipmaps asked for by name";
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    stage.box(0, 0, 4, 4).draw(0, 0);
    stage.batch.flush();
    EXPECT_EQ(pixel(0, 0), red);
}

// ---- the desktop ----

TEST(capture_picture, shows_the_desktop_upright_in_its_own_colours) {
    scratch_c scratch;
    SDL_Surface* desktop = newsurface(854, 480);
    for (int y = 0; y < 480; ++y)
        for (int x = 0; x < 854; ++x)
            put(desktop, x, y, {x % 256, y % 256, (x + y) % 200});
    SDL_SaveBMP(desktop, "desktop.bmp");
    offscreen_setdesktop("desktop.bmp");
    take_screenshot();
    opengl(854, 480);
    screenshot->init();
    screenshot->draw();
    for (int y = 0; y < 480; y += 13)
        for (int x = 0; x < 854; x += 17)
            ASSERT_EQ(pixel(x, y), pixel(desktop, x, y)) << x << ", " << y;
    SDL_FreeSurface(desktop);
}

// ---- frame grabs ----

void drawquarters() {
    fill(0, 0, 32, 16, red);
    fill(32, 0, 32, 16, green);
    fill(0, 16, 32, 16, blue);
    fill(32, 16, 32, 16, white);
}

TEST(grab_picture, saves_the_framebuffer_top_row_first) {
    scratch_c scratch;
    opengl(64, 32);
    drawquarters();
    char name[] = "shot.bmp";
    save_screenshot(name);
    SDL_Surface* saved = SDL_LoadBMP(name);
    ASSERT_NE(saved, nullptr);
    EXPECT_EQ(saved->w, 64);
    EXPECT_EQ(saved->h, 32);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 64; ++x)
            ASSERT_EQ(pixel(saved, x, y), pixel(x, y)) << x << ", " << y;
    EXPECT_EQ(pixel(saved, 0, 0), red);
    EXPECT_EQ(pixel(saved, 63, 31), white);
    SDL_FreeSurface(saved);
}

TEST(grab_picture, blurs_up_to_four_frames_into_their_average) {
    opengl(64, 32);
    for (int framecount = 1; framecount <= 4; ++framecount) {
        scratch_c scratch;
        int sum = 0;
        for (int i = 0; i < framecount; ++i) {
            const int level = 10 + 61 * i;
            sum += level;
            fill(0, 0, 64, 32, {level, 0, 255});
            screenshot_blur(5 * framecount + i, framecount);
        }
        SDL_Surface* average = SDL_LoadBMP("ss00000005.bmp");
        ASSERT_NE(average, nullptr) << framecount;
        EXPECT_EQ(pixel(average, 20, 20), (colour_t{sum / framecount, 0, 255})) << framecount;
        SDL_FreeSurface(average);
    }
}

} // namespace

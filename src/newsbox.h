// Screen-space sprites in batches: a newsbox_c is one textured rectangle in pixels and texels, a
// newsbox_render_c collects the triangles of many and draws them with one call.
//
// Does not select the program, bind the texture, convert pixels to clip units (the program's vertex
// shader does) or switch the arrays off: the owner does.
//
// Order of use: set the batch's shader and texsize; per box set renderer, then set() or resize()
// and settex(); per frame draw() the boxes, then use the shader, bind the texture, flush().
#pragma once

class shader_c;

struct newsvert_s {
    float x, y; // pixels
    float u, v; // texture coordinates
};

class newsbox_render_c {
public:
    static constexpr int maxvertices = 1000; // 166 whole boxes

    newsvert_s coordbuffer[maxvertices];
    int boxcount;     // vertices filled, despite its name
    shader_c* shader; // its attributes "pos" and "uv", both vec2, receive the batch
    float texsize_x;  // size of the atlas texture, texels
    float texsize_y;

    // An empty batch. The rest is the owner's to set.
    newsbox_render_c();

    // Draws what was collected as triangles through the current program and empties the batch.
    // Without any box no GL call is made.
    void flush();
};

class newsbox_c {
public:
    // Two triangles relative to the box's own corner, in the order (0,0), (w,0), (0,h), (w,0),
    // (w,h), (0,h).
    newsvert_s coords[6];
    float color[4]; // RGBA tint; the batch has no colour, so it is only kept
    float cs_x;     // width, pixels
    float cs_y;     // height, pixels
    newsbox_render_c* renderer;

    // Sets the size in pixels; texture coordinates stay.
    void resize(float w, float h);

    // Shows the rectangle (x0, y0) to (x1, y1) of the renderer's texture, in texels.
    void settex(float x0, float y0, float x1, float y1);

    void setcol(float r, float g, float b, float a);

    // Shows that texel rectangle at one pixel a texel, untinted. Corners in either order; a
    // reversed pair mirrors the picture.
    void set(float x0, float y0, float x1, float y1);

    // Adds the box to the batch with its corner at (x, y) pixels. Flush before 1000 vertices are
    // reached: a box that does not fit is left out.
    void draw(float x, float y) const;
};

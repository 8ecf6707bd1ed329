// The effect interface. An effect is one source file with one object of a class derived from
// demoeffect_c in an anonymous namespace, and one exported pointer to it. See HACKING.md.
#pragma once

class demoeffect_c {
public:
    // First-stage set-up, before any other loading. Only the few effects that need it override it.
    virtual void init();

    // Called once, with the GL context current: compile shaders, load textures and meshes,
    // precompute.
    virtual void initgl();

    // Draws one frame into whatever target and viewport are bound, from the clock globals and the
    // effect's own knobs. Leaves no attribute array, program state or GL state behind that the
    // effects after it would trip over, except where a comment says so.
    virtual void draw();

    // Releases what the effect holds. Nothing calls it: the process ends through exit.
    virtual void quit();

protected:
    ~demoeffect_c() = default;
};

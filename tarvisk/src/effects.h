// Every effect of the show by its pointer, the knobs through which the director steers them, and
// the lists that name them all. What an effect does stands at the top of its source file.
#pragma once

#include "demoeffect.h"
#include "stage.h"

#include <GLES2/gl2.h>
#include <variant>

extern demoeffect_c* ballspring;
extern demoeffect_c* bump;
extern demoeffect_c* dode;
extern demoeffect_c* face;
extern demoeffect_c* fluid;
extern demoeffect_c* flyphone;
extern demoeffect_c* gear;
extern demoeffect_c* heart;
extern demoeffect_c* lace;
extern demoeffect_c* mujuice;
extern demoeffect_c* orange;
extern demoeffect_c* orangetexgen;
extern demoeffect_c* orbitscroller;
extern demoeffect_c* pbtausta;
extern demoeffect_c* pelvar;
extern demoeffect_c* ripsilu;
extern demoeffect_c* rocket9;
extern demoeffect_c* scrollertexgen;
extern demoeffect_c* starfield;
extern demoeffect_c* starfield2;
extern demoeffect_c* textbox;
extern demoeffect_c* texturetest;
extern demoeffect_c* tunnel;
extern demoeffect_c* vxqlogo;
extern demoeffect_c* zreset;

struct effectentry_s {
    const char* name;
    demoeffect_c*& effect;
};

// All effects, in the order in which they load (the order of their random draws).
inline constexpr effectentry_s effectlist[] = {
    {"orange", orange},
    {"orangetexgen", orangetexgen},
    {"texturetest", texturetest},
    {"heart", heart},
    {"scrollertexgen", scrollertexgen},
    {"fluid", fluid},
    {"flyphone", flyphone},
    {"orbitscroller", orbitscroller},
    {"tunnel", tunnel},
    {"zreset", zreset},
    {"starfield", starfield},
    {"lace", lace},
    {"pelvar", pelvar},
    {"vxqlogo", vxqlogo},
    {"mujuice", mujuice},
    {"face", face},
    {"pbtausta", pbtausta},
    {"dode", dode},
    {"ripsilu", ripsilu},
    {"gear", gear},
    {"rocket9", rocket9},
    {"ballspring", ballspring},
    {"bump", bump},
    {"starfield2", starfield2},
    {"textbox", textbox},
};

// Knobs: plain globals of the effects. The director writes them before the draw.
extern float ylift;
extern float starang;
extern float ripsilu_mm;
extern int gearAppear;
extern int bumptgt;
extern float gravforce;
extern float orbitradius;
extern float rockety;
extern float citybomb;
extern float CityMaxDistance;
extern float horizonbomb;
extern GLuint scrollertex;    // orbitscroller: texture of the text strip
extern GLuint texturetesttex; // texturetest: the texture to show
extern GLuint orangetex;      // orange: the texture of the slice
extern GLuint citytex;        // tunnel: texture handed over by the director; not read

// What the knobs that are plain numbers mean, for people and tools.
struct knob_s {
    const char* name;
    std::variant<float*, int*> value;
    const char* unit;
    float from, to; // where it makes a difference
    const char* meaning;
};
inline constexpr knob_s knoblist[] = {
    {"ylift", &ylift, "clip units", -2.1f, 0.0f, "face: lowers the picture"},
    {"sf_zchange", &sf_zchange, "depth a draw", -0.1f, 0.1f,
     "starfield: moves the stars, below 0 nearer; holds for one draw"},
    {"starang", &starang, "degrees", -180.0f, 180.0f, "starfield2: rolls the stars"},
    {"ripsilu_mm", &ripsilu_mm, "colour", 0.0f, 1.0f,
     "ripsilu: added to every channel, 1 is white"},
    {"gearAppear", &gearAppear, "stage", 0.0f, 2.0f,
     "gear: 0 off the screen, 1 rolls in, 2 leaves upwards"},
    {"bumptgt", &bumptgt, "stage", 0.0f, 40.0f, "bump: view target, 0, 10, 20, 30 or 40"},
    {"gravforce", &gravforce, "factor", 0.0f, 5.0f, "ballspring: strength of the mutual push"},
    {"orbitradius", &orbitradius, "model units", 0.0f, 1200.0f,
     "orbitscroller: radius of the ring"},
    {"rockety", &rockety, "clip units", -2.0f, 2.0f, "rocket9: raises the rocket"},
    {"citybomb", &citybomb, "brightness", 0.0f, 2.0f,
     "tunnel: lights the city up, above 1.4 it flies apart"},
    {"CityMaxDistance", &CityMaxDistance, "city units", 0.0f, 1200.0f, "tunnel: view distance"},
    {"horizonbomb", &horizonbomb, "texture units", 0.0f, 1.0f, "zreset: radius of the flash"},
};

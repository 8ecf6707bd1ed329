// Every effect of the show by its pointer, the knobs through which the director steers them, and
// the one list that names them all. What an effect does stands at the top of its source file.
#pragma once

#include "demoeffect.h"

#include <GLES2/gl2.h>

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
constexpr int effectcount = 25;
extern const effectentry_s effectlist[effectcount];

// Knobs. Written by the director before the draw, unless said otherwise.
extern float ylift;           // face: lowers the picture, clip units
extern float sf_zchange;      // starfield: depth step of the next draw; reset by every draw
extern float starang;         // starfield2: roll, degrees
extern float ripsilu_mm;      // ripsilu: added to every channel, 0 picture .. 1 white
extern int gearAppear;        // gear: 0 off screen, 1 rolls in, 2 leaves upwards
extern int bumptgt;           // bump: view target, 0, 10, 20, 30 or 40
extern float gravforce;       // ballspring: strength of the mutual push
extern float orbitradius;     // orbitscroller: ring radius, model units
extern GLuint scrollertex;    // orbitscroller: texture of the text strip
extern GLuint texturetesttex; // texturetest: the texture to show
extern GLuint orangetex;      // orange: the texture of the slice
extern float rockety;         // rocket9: raises the rocket, clip units
extern float citybomb;        // tunnel: explosion; above 1.4 the city flies apart
extern float CityMaxDistance; // tunnel: view distance, city units
extern GLuint citytex;        // tunnel: texture handed over by the director; not read
extern float camPitch;        // tunnel, written by it: camera angles, degrees
extern float camYaw;
extern float horizonbomb; // zreset: radius of the flash, texture units

// The knobs that are plain numbers, by name, for tools. One of the two pointers is set.
struct knob_s {
    const char* name;
    float* real;
    int* whole;
};
constexpr int knobcount = 12;
extern const knob_s knoblist[knobcount];

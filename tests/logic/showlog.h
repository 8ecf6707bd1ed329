// The show as a log: every effect is replaced by a recorder, the clock moves exactly 1/50 s a
// presented frame, and what the director did between two presents is kept as one frame.
//
// Order of use: load, then play once (demo_run cannot be entered twice in a process), then read.
#pragma once

#include <functional>
#include <GLES2/gl2.h>
#include <glm/glm.hpp>
#include <set>
#include <string>
#include <vector>

namespace showlog {

// Every knob that the director writes, by its name.
struct knobs_s {
    float ylift, sf_zchange, starang, ripsilu_mm, gravforce, orbitradius;
    float rockety, citybomb, horizonbomb, CityMaxDistance;
    int gearAppear, bumptgt;
    GLuint scrollertex, texturetesttex, orangetex, citytex, phonescreentex;
    glm::mat4 phone_rotation_mv, phone_projection;
    glm::vec3 flyerpos, flyervel; // tunnelflyer
};

struct drawing_s {
    std::string effect; // its name in effectlist; "screenshot"; "phone" for phonedraw
    GLuint target;      // framebuffer
    std::set<GLenum> enabled;
    knobs_s knobs;
};

// What happened between two presents: usually one pass, two where a scene's last pass is not
// presented.
struct frame_s {
    float beat, time; // of its passes
    int ticks;        // frameskip
    std::vector<drawing_s> drawings;
    std::vector<std::string> steps; // the director's GL calls and "draw NAME", in order
    std::vector<std::string> lines; // on standard error
    knobs_s knobs;                  // at its end

    // "vxqlogo>orange starfield flyphone": the drawings, with the target's name unless that is the
    // screen.
    std::string picture() const;

    // The first drawing of an effect; fails the test when there is none.
    const drawing_s& drawing(const std::string& effect) const;
};

extern frame_s loading; // until play
extern std::vector<frame_s> frames;
extern std::vector<std::string> setup; // "orange.init", "orange.initgl", "present" ..., in order

// Called by each recorder before it draws: the place to play an effect's side of a knob.
extern std::function<void(const std::string& effect)> ondraw;

// The start-up as far as the director is concerned, on a black desktop. The effects named in `real`
// do draw, on the GL double.
void load(const std::set<std::string>& real = {});

// Runs the show from `skip` seconds until the first frame at or past `endbeat` (of which there must
// be one) or until `limit` frames are presented.
void play(float endbeat, float skip = 0.0f, size_t limit = 20000);

// The first frame at or past a beat.
const frame_s& at(float beat);

// All lines of standard error that start with `prefix`.
std::vector<std::string> lines(const std::string& prefix);

} // namespace showlog

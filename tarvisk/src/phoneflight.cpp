// The phone flies in over the desktop, jumps a little on every beat, spins twice, and comes so near
// that the camera passes through its screen into the city.
#include "phoneflight.h"

#include "main/clock.h"
#include "main/startup.h"
#include "schedule.h"
#include "spring.h"
#include "stage.h"
#include "util.h"

#include <cmath>
#include <cstdio>
#include <glm/gtc/matrix_transform.hpp>
#include <iterator>

bool show_whiteback = false;
bool flyphone_tunnelready = false;

namespace {

spring_c<float> zfix(0.0f, 0.0f, 0.0015f, 0.974f);      // towards the viewer, model units
spring_c<float> angfix(0.0f, 0.0f, 0.0013f, 0.954532f); // tilt about x, degrees
spring_c<float> angfix2(0.0f, 0.0f, 0.0026f, 0.971f);   // turn about y, degrees
spring_c<float> angfix3(0.0f, 0.0f, 0.0001f, 0.911f);   // roll about z, degrees
float zpos = -35.71f;                                   // where zfix 0 lies, model units

// What the flight is at: an index of the targets below, and a latch for the hand-stepped key.
constexpr int latch = 0x80;
int state = 0;

void spin() {
    angfix.pos -= 360.0f;
}

struct flightevent_s {
    cue_t when;
    void (*action)();
};

// "phonefly4-2" stands here twice: its beat goes to state 3 and in the same frame on to 4.
const flightevent_s flightevents[] = {
    {cue::phonefly1,
     [] {
         state = 7;
         zfix.acc = 0.0004f;
     }},
    {cue::phonefly2,
     [] {
         state = 6;
         zfix.acc = 0.0015f;
     }},
    {cue::phonefly3, [] { state = 4; }},
    {cue::phonespin1, [] { spin(); }},
    {cue::phonefly4, [] { state = 2; }},
    {cue::phonefly4_2, [] { state = 3; }},
    {cue::phonefly4_2, [] { state = 4; }},
    {cue::phonefly5, [] { state = 1; }},
    {cue::phonefly6, [] { state = 0; }},
    {cue::phonefly7,
     [] {
         state = 5;
         zfix.acc = 0.0015f;
     }},
    {cue::phonefly8, [] { state = 6; }},
    {cue::phonefly9,
     [] {
         spin();
         angfix.damp = 0.93f;
         zfix.acc = 0.0015f;
     }},
};

void runevents() {
    for (const flightevent_s& event : flightevents)
        if (fires(event.when))
            event.action();
}

// Half-way through the second spin the desktop gives way to white.
void turnwhite() {
    if (past(cue::phonefly9) && angfix.pos > -180.0f)
        show_whiteback = true;
}

void nudgebywheel() {
    const int clicks = mouserull[0] - mouserull[1];
    if (clicks == 0)
        return;
    zpos += clicks * 0.01f;
    fprintf(stderr, "zpos: %.3f\n", double(zpos));
}

// Space or a mouse button steps through states 1 to 4 and back to 0, once a press.
void stepbyhand() {
    if (!keystate[SDLK_SPACE] && SDL_GetMouseState(nullptr, nullptr) == 0) {
        state &= ~latch;
        return;
    }
    if (state & latch)
        return;
    ++state;
    fprintf(stderr, "state is now: %i\n", state);
    state = (state & ~latch) == 5 ? latch : state | latch;
}

// The camera has reached the screen: it flies on through the city at the phone's speed.
void handover() {
    fprintf(stderr, "running at pos %.5f vel %.5f. accfac %.5f\n", double(zfix.pos),
            double(zfix.vel), double(zfix.acc));
    tunnelflyer.pos = glm::vec3(0.0f, 0.0f, zfix.pos);
    tunnelflyer.vel = glm::vec3(0.0f, 0.0f, zfix.vel);
    zfix.pos = zfix.vel = 0.0f;
    flyphone_tunnelready = true;
}

void approachscreen() {
    if (!past(cue::phonefly10))
        return;
    state = 0;
    if (zfix.pos > 0.0f)
        handover();
}

struct target_s {
    float z, tilt, turn, sway; // of zfix, angfix, angfix2; times sin(timeval), added to turn
};

const target_s targets[] = {
    {0.0f, 0.0f, 0.0f, 0.0f},     {-10.0f, -20.0f, -10.0f, 8.0f}, {-30.0f, -10.0f, 10.0f, 6.0f},
    {-170.0f, 80.0f, 0.0f, 0.0f}, {-40.0f, 10.0f, 20.0f, 1.0f},   {-160.0f, 0.0f, 0.0f, 0.0f},
    {-50.0f, 0.0f, 0.0f, 0.0f},   {-120.0f, 0.0f, 0.0f, 0.0f},    {-20.0f, 0.0f, 0.0f, 0.0f},
};

void settargets() {
    const size_t index = state & ~latch;
    if (index >= std::size(targets)) // stepped by hand beyond the last
        return;
    const target_s& target = targets[index];
    zfix.targetpos = target.z;
    angfix.targetpos = target.tilt;
    angfix2.targetpos = std::sin(timeval) * target.sway + target.turn;
}

// The phone jumps on every beat, except at rest in state 0; 0 with the latch is no rest.
void clickonbeat() {
    static bool clicker = false;
    const float phase = beatgrid - std::floor(beatgrid);
    if (state == 0)
        return;
    if (phase < 0.1f && !clicker) {
        zfix.pos += 0.3f;
        clicker = true;
    } else if (phase > 0.1f) {
        clicker = false;
    }
}

void stepsprings() {
    for (spring_c<float>* spring : {&zfix, &angfix, &angfix2, &angfix3})
        spring->iterate(frameskip);
}

// From the event on the stars stream with the phone's motion.
void movestars() {
    static float oldzfixpos = 0.0f;
    if (!past(cue::starmover))
        return;
    sf_zchange = (oldzfixpos - zfix.pos) * 0.001f;
    oldzfixpos = zfix.pos;
}

void setpose() {
    glm::mat4 mv = glm::translate(glm::mat4(1.0f), {0.0f, 0.0f, zfix.pos + zpos});
    mv = util::rotate(mv, angfix.pos, {1.0f, 0.0f, 0.0f});
    mv = util::rotate(mv, angfix2.pos, {0.0f, 1.0f, 0.0f});
    phone_rotation_mv = util::rotate(mv, angfix3.pos + 90.0f, {0.0f, 0.0f, 1.0f});
}

} // namespace

void phoneflight_move() {
    phone_projection = util::perspective(70.0f, 1.0f, 3000.0f);
    nudgebywheel();
    stepbyhand();
    runevents();
    turnwhite();
    approachscreen();
    settargets();
    clickonbeat();
    stepsprings();
    movestars();
    setpose();
}

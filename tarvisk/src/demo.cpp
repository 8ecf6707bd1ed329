#include "demo.h"

#include "3dphone.h"
#include "decoder.h"
#include "effects.h"
#include "main/capture.h"
#include "main/leave.h"
#include "main/loop.h"
#include "main/startup.h"
#include "main/video.h"
#include "phoneflight.h"
#include "schedule.h"
#include "screenshot.h"
#include "stage.h"
#include "util.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <glm/gtc/matrix_transform.hpp>
#include <initializer_list>

bool die = false;

namespace {

constexpr glm::vec3 xaxis(1.0f, 0.0f, 0.0f);
constexpr glm::vec3 yaxis(0.0f, 1.0f, 0.0f);
constexpr glm::vec3 zaxis(0.0f, 0.0f, 1.0f);

texture_c whiteback;
texture_c callscreentex;
texture_c woodstex;

// ---- poses and state that scenes share ----

void rotatephone(float degrees, const glm::vec3& axis) {
    phone_rotation_mv = util::rotate(phone_rotation_mv, degrees, axis);
}

void translatephone(const glm::vec3& offset) {
    phone_rotation_mv = glm::translate(phone_rotation_mv, offset);
}

void resetphone() {
    phone_rotation_mv = glm::mat4(1.0f);
}

void widelens() {
    phone_projection = util::perspective(70.0f, 1.0f, 30000.0f);
}

void restcamera(const glm::vec3& pos) {
    tunnelflyer.pos = pos;
    tunnelflyer.vel = glm::vec3(0.0f);
}

void usedepth() {
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
}

void clearframe() {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void drawinto(fbo_c* target, std::initializer_list<demoeffect_c*> effects) {
    target->bind();
    for (demoeffect_c* effect : effects)
        effect->draw();
    target->unbind();
}

void drawgear(int appear) {
    gearAppear = appear;
    gear->draw();
}

float beatssince(float beat) {
    return std::max(0.0f, beatgrid - beat);
}

// ---- scene 1: the phone over the desktop, then the city through its screen ----

enum class generator_t { none, logo, juice, orange };

generator_t do_orange = generator_t::none; // what renders the picture on the phone's screen
bool shouldwescroll = false;               // the orbiting scroller is active

void runscroller() {
    if (fires(cue::startorbitscroller))
        shouldwescroll = true;
    if (past(cue::stoporbitscroller_bum))
        orbitradius += frameskip * 0.3f;
    if (fires(cue::stoporbitscroller))
        shouldwescroll = false;
    if (shouldwescroll)
        drawinto(scrollertex_fbo, {scrollertexgen, pelvar});
}

void rendergenerator() {
    switch (do_orange) {
    case generator_t::none:
        break;
    case generator_t::logo:
        drawinto(orange_fbo, {vxqlogo});
        break;
    case generator_t::juice:
        drawinto(orange_fbo, {mujuice});
        break;
    case generator_t::orange:
        drawinto(orangetex_fbo, {orangetexgen});
        orangetex = orangetex_fbo->colortex;
        drawinto(orange_fbo, {orange, heart, lace});
        break;
    }
}

void showgenerator(generator_t generator) {
    phonescreentex = orange_fbo->colortex;
    do_orange = generator;
}

void runphonescreen() {
    if (fires(cue::phonetex_shot))
        phonescreentex = screenshottex.textureid;
    if (fires(cue::phonetex_vxqlogo))
        showgenerator(generator_t::logo);
    if (fires(cue::phonetex_mu))
        showgenerator(generator_t::juice);
    if (fires(cue::phonetex_orange))
        showgenerator(generator_t::orange);
    if (fires(cue::phonetex_callscreen)) {
        do_orange = generator_t::none;
        phonescreentex = callscreentex.textureid;
    } else {
        rendergenerator();
    }
}

void drawbackground() {
    if (show_whiteback) {
        phonescreentex = woodstex.textureid;
        texturetesttex = whiteback.textureid;
        texturetest->draw();
    } else {
        starfield->draw();
    }
}

void drawphoneflight() {
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    drawbackground();
    usedepth();
    glEnable(GL_STENCIL_TEST);
    flyphone->draw();
    if (keystate[SDLK_s])
        screenshot->draw();
    scrollertex = scrollertex_fbo->colortex;
    if (shouldwescroll)
        orbitscroller->draw();
}

// The phone has left 1 in the stencil buffer where its screen is seen.
void drawinsidescreenonly() {
    glEnable(GL_STENCIL_TEST);
    glStencilFunc(GL_EQUAL, 1, 1);
    glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
    glStencilMask(1);
}

// The city rises from the bottom of the screen, its edge wobbling.
void revealcity() {
    static float viewport = 0.0f; // revealed height, 1 = full
    viewport = static_cast<float>(std::min(viewport + frameskip / 480.0, 1.2083334));
    if (viewport >= 0.8f)
        return;
    const double height = (viewport + sin(timeval * 3.0) * 0.04166) * video_h;
    // Below 0 in the wobble's lower half: GL refuses that and keeps the box of before.
    glScissor(0, 0, video_w, static_cast<int>(height));
    glEnable(GL_SCISSOR_TEST);
}

void flycity() {
    tunnelflyer.pos += static_cast<float>(frameskip) * tunnelflyer.vel;
    if (fires(cue::tunnelupmove))
        tunnelflyer.vel.y -= 1.0f;
}

void widenview() {
    static spring_c<float> citydist(0.0f, 400.0f, 0.0002f, 0.98f);
    if (flyphone_tunnelready) {
        citydist.targetpos = 1000.0f;
        citydist.acc = 0.0004f;
        citydist.damp = 0.94f;
    }
    citydist.iterate(frameskip);
    CityMaxDistance = citydist.pos;
    fprintf(stderr, "CityMaxDistance: %.2f\n", double(CityMaxDistance));
}

void drawrisingcity() {
    revealcity();
    citytex = orangetex_fbo->colortex;
    glEnable(GL_DEPTH_TEST);
    flycity();
    widenview();
    zreset->draw();
    tunnel->draw();
    glDisable(GL_SCISSOR_TEST);
}

void scene_phone() {
    while (!die) {
        glDisable(GL_DEPTH_TEST);
        glDisable(GL_STENCIL_TEST);
        runscroller();
        runphonescreen();
        if (!flyphone_tunnelready) {
            drawphoneflight();
            if (!show_whiteback) {
                system_crap();
                continue;
            }
            drawinsidescreenonly();
        }
        drawrisingcity();
        if (fires(cue::stoptunnel))
            return;
        system_crap();
    }
}

// ---- scenes 2 to 7 ----

void movecredits() {
    if (fires(cue::bump1))
        bumptgt = 10;
    if (fires(cue::bump2))
        bumptgt = 20;
    if (fires(cue::bump3))
        bumptgt = 30;
    if (fires(cue::bump4))
        bumptgt = 40;
}

void scene_credits() {
    usedepth();
    do {
        clearframe();
        bump->draw();
        system_crap();
        movecredits();
    } while (!fires(cue::stopgear));
}

void lookbackovercity() {
    restcamera({370.0f, -100.0f, -200.0f});
    CityMaxDistance = 1000.0f;
    widelens();
    resetphone();
    rotatephone(-190.0f, yaxis);
    rotatephone(-20.0f, xaxis);
    rotatephone(90.0f, zaxis);
}

void scene_gear() {
    lookbackovercity();
    usedepth();
    gearAppear = 0;
    do {
        clearframe();
        tunnelflyer.pos.z += frameskip;
        zreset->draw();
        tunnel->draw();
        drawgear(1);
        system_crap();
    } while (!fires(cue::stopfly2));
}

void scene_ripples() {
    do {
        clearframe();
        ripsilu->draw();
        drawgear(1);
        ripsilu_mm =
            std::clamp(beatgrid - beat::ripples_whiten, 0.0f, 1.0f); // seen from the next pass on
        system_crap();
    } while (!fires(cue::stopbump));
}

void scene_dode() {
    usedepth();
    do {
        clearframe();
        pbtausta->draw();
        dode->draw();
        drawgear(2);
        system_crap();
    } while (!fires(cue::stopdode));
}

// The city bursts, and the camera shakes ever harder. rockety is set for a rocket that no scene
// draws.
void explode() {
    const float shake = frameskip * beatssince(beat::city_shakes);
    const glm::vec3 jolt = util::vecRand3(0.0f, shake);
    rockety = (beatgrid - beat::city_shakes) * 0.4f - 1.1f;
    citybomb = beatssince(beat::city_bursts) * 0.2f;
    horizonbomb = beatssince(beat::city_bursts) * 0.1f;
    tunnelflyer.pos += jolt;
}

void scene_rocket() {
    restcamera({0.0f, -100.0f, -200.0f});
    widelens();
    resetphone();
    rotatephone(30.0f, yaxis);
    rotatephone(90.0f, zaxis);
    usedepth();
    do {
        clearframe();
        tunnelflyer.pos.x += frameskip;
        tunnelflyer.pos.z += frameskip * 0.1f;
        zreset->draw();
        if (beatgrid > beat::city_bursts)
            explode();
        tunnel->draw();
        system_crap();
    } while (!fires(cue::stopfly3));
}

void scene_face() {
    for (;;) {
        clearframe();
        face->draw();
        fluid->draw();
        if (fires(cue::stopduce))
            return;
        system_crap();
    }
}

// ---- scenes 8 and 9: the phone in space ----

struct orbit_s {
    float ang;  // degrees round the viewer
    float zepo; // distance along the phone's own way, model units
};

orbit_s lastorbit; // where scene 9 takes the phone over

void setspacepose(const orbit_s& orbit) {
    resetphone();
    rotatephone(orbit.ang, yaxis);
    translatephone({0.0f, 0.0f, -70.0f});
    translatephone({0.0f, -30.0f, 0.0f});
    rotatephone(-110.0f, yaxis);
    translatephone({0.0f, 0.0f, orbit.zepo});
    rotatephone(-90.0f, xaxis);
}

// The stars turn with the phone's way round the viewer.
void turnstars(float ang) {
    starang = ang - 117.0f;
}

// The face leaves upwards, ever faster. At first it is drawn twice: unblended, at equal depth, the
// second time changes nothing.
void leaveface() {
    const float way = beatssince(beat::face_leaves) * 0.5f;
    ylift = -(way * way);
    if (ylift > -1.0f)
        face->draw();
    face->draw();
}

orbit_s spaceorbit() {
    constexpr float turn = cue::stopspacefly.beat - beat::face_leaves; // beats that it takes
    return {std::sqrt(beatssince(beat::face_leaves) / turn) * 117.0f,
            300.0f - 50.0f * (beatgrid - cue::stopduce.beat)};
}

void scene_spacefly() {
    widelens();
    for (;;) {
        clearframe();
        starfield2->draw();
        leaveface();
        lastorbit = spaceorbit();
        turnstars(lastorbit.ang);
        setspacepose(lastorbit);
        phonedraw();
        if (fires(cue::stopspacefly))
            return;
        system_crap();
    }
}

void drawfinale() {
    gravforce = std::sin(timeval) * 0.1f + 1.0f + beatssince(cue::textbox.beat) * 0.02f;
    starfield2->draw();
    ballspring->draw();
    if (past(cue::textbox))
        textbox->draw();
    phonedraw();
}

// The phone coasts on from where it was into rest. Runs until the viewer quits.
void scene_finale() {
    usedepth();
    spring_c<float> zepo_s(lastorbit.zepo, lastorbit.zepo + 10.0f, 0.1f, 0.94f);
    zepo_s.vel = -0.9f;
    spring_c<float> ang_s(lastorbit.ang, lastorbit.ang, 0.01f, 0.94f);
    ang_s.vel = 0.02f;
    sf_zchange = 0.1f;
    for (;;) {
        clearframe();
        zepo_s.iterate(frameskip);
        ang_s.iterate(frameskip);
        turnstars(ang_s.pos);
        setspacepose({ang_s.pos, zepo_s.pos});
        drawfinale();
        system_crap();
    }
}

// ---- set-up ----

void event_cb(SDL_Event* event) {
    if (asks_to_leave(*event))
        leave_show();
}

// Each effect that has loaded is presented, so that the window stays alive.
void loadeffects() {
    for (const effectentry_s& entry : effectlist) {
        if (&entry != std::begin(effectlist))
            system_crap_pre();
        entry.effect->initgl();
    }
}

// Builds the first state of both effects before the music starts; never shown.
void warmup() {
    phonescreentex = screenshottex.textureid;
    drawinto(orange_fbo, {starfield, flyphone});
}

void loadpictures() {
    whiteback.load("gfx/whiteback.jpg", TEX_RGB | TEX_REPEAT);
    callscreentex.load("gfx/callscreen2.jpg", TEX_RGB);
    woodstex.load("gfx/woods.jpg", TEX_RGB);
}

} // namespace

const std::vector<scene_s> demo_scenes = {
    {"phone and desktop", 0.0f, scene_phone},
    {"credits in the rock", cue::stoptunnel.beat, scene_credits},
    {"gear city", cue::stopgear.beat, scene_gear},
    {"ripples", cue::stopfly2.beat, scene_ripples},
    {"jelly solid", cue::stopbump.beat, scene_dode},
    {"explosion", cue::stopdode.beat, scene_rocket},
    {"face", beat::face, scene_face},
    {"space flight", cue::stopduce.beat, scene_spacefly},
    {"finale", cue::stopspacefly.beat, scene_finale},
};
const char* demo_scene = "";

void demo_config() {
    config_stencilsize = 8;
}

void demo_init() {
    orange->init();
    orangetexgen->init();
    song_file = demo_song;
    beat_first = grid::first;
    beat_last = grid::last;
    beat_lastnum = grid::lastnum;
}

void demo_initgl() {
    decoder_begin("gfx");
    loadeffects();
    orangetex_fbo = new fbo_c(128, 128, 0);
    orange_fbo = new fbo_c(512, 256, 0);
    scrollertex_fbo = new fbo_c(512, 64, FBO_CLAMP);
    set_event_callback(event_cb);
    screenshottex.fromsurface(screenshot_surface);
    warmup();
}

void demo_run() {
    loadpictures();
    for (const scene_s& scene : demo_scenes) {
        demo_scene = scene.name;
        scene.play();
    }
}

// The schedule of the show, in beats: every event by its name and beat, and the beats on which
// something happens without one. They stand here and nowhere else; the song's check and the city's
// flight read them from this file (content/schedule.py), so a line stays one definition in this
// form.
#pragma once

#include "sync.h"

// What beats are in the song: seconds of beat 0, and of beat `lastnum`.
namespace grid {

constexpr float first = 0.128f;
constexpr float last = 5.207f;
constexpr float lastnum = 8.0f;

} // namespace grid

// Names are unique in the whole show. What an event does stands where it is asked about.
namespace cue {

// the phone over the desktop
constexpr cue_t phonefly1{"phonefly1", 0.0f};
constexpr cue_t phonetex_shot{"phonetex_shot", 0.0f};
constexpr cue_t phonefly2{"phonefly2", 1.0f};
constexpr cue_t phonespin1{"phonespin1", 4.5f};
constexpr cue_t phonefly3{"phonefly3", 6.5f};
constexpr cue_t phonetex_vxqlogo{"phonetex_vxqlogo", 8.0f};
constexpr cue_t startorbitscroller{"startorbitscroller", 11.0f};
constexpr cue_t phonefly4{"phonefly4", 20.0f};
constexpr cue_t phonetex_mu{"phonetex_mu", 32.0f};
constexpr cue_t phonefly4_2{"phonefly4-2", 34.0f};
constexpr cue_t phonefly5{"phonefly5", 48.0f};
constexpr cue_t stoporbitscroller_bum{"stoporbitscroller-bum", 48.0f};
constexpr cue_t phonetex_orange{"phonetex_orange", 52.0f};
constexpr cue_t stoporbitscroller{"stoporbitscroller", 53.0f};
constexpr cue_t gonetextshow{"gonetextshow", 59.0f};
constexpr cue_t phonefly6{"phonefly6", 64.0f};
constexpr cue_t startlacing{"startlacing", 80.0f};
constexpr cue_t boom3{"boom3", 96.0f};
constexpr cue_t phonetex_callscreen{"phonetex_callscreen", 104.0f};
constexpr cue_t startlacing2{"startlacing2", 105.0f};
constexpr cue_t phonefly7{"phonefly7", 110.0f};
constexpr cue_t phonefly8{"phonefly8", 112.0f};
constexpr cue_t phonefly9{"phonefly9", 114.0f};
constexpr cue_t phonefly10{"phonefly10", 127.0f};

// the city
constexpr cue_t starmover{"starmover", 132.0f};
constexpr cue_t tunnel_camdown1{"tunnel_camdown1", 137.0f};
constexpr cue_t tunnel_camdown2{"tunnel_camdown2", 150.0f};
constexpr cue_t tunnelupmove{"tunnelupmove", 156.0f};
constexpr cue_t stoptunnel{"stoptunnel", 160.0f};

// the credits
constexpr cue_t bump1{"bump1", 165.0f};
constexpr cue_t bump2{"bump2", 170.0f};
constexpr cue_t bump3{"bump3", 173.0f};
constexpr cue_t tunnel_camup1{"tunnel_camup1", 176.0f}; // seen when the city comes back
constexpr cue_t bump4{"bump4", 178.0f};
constexpr cue_t stopgear{"stopgear", 180.0f};

// from the gear to the explosion
constexpr cue_t tunnel_camup2{"tunnel_camup2", 192.0f};
constexpr cue_t stopfly2{"stopfly2", 208.0f};
constexpr cue_t stopbump{"stopbump", 212.0f};
constexpr cue_t dodebum{"dodebum", 224.0f};
constexpr cue_t dodebum2{"dodebum2", 232.5f};
constexpr cue_t stopdode{"stopdode", 240.0f};
constexpr cue_t stopfly3{"stopfly3", 256.0f};

// from the face to the finale
constexpr cue_t stopduce{"stopduce", 273.0f};
constexpr cue_t stopspacefly{"stopspacefly", 288.0f};
constexpr cue_t textbox{"textbox", 300.0f};

} // namespace cue

// Beats without an event.
namespace beat {

constexpr float ripples_whiten = 211.0f; // the picture goes, over one beat
constexpr float city_bursts = 248.0f;
constexpr float city_shakes = 250.0f; // ever harder from here on
constexpr float face_leaves = 279.0f;

// The face's scene, which moves as a whole with its beginning.
constexpr float face = cue::stopfly3.beat; // backdrop and points come in from white
constexpr float backdrop_fades = face + 12.0f;
constexpr float face_rises = face + 14.0f;
constexpr float points_rest = face + 15.0f; // the flow is at its end, and they fade

} // namespace beat

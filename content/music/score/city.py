"""Beats 129 to 212: the city, the credits in the rock, the gear, the still picture.

The phrase of the city starts on 129: the bar before has five beats, its last bar (157 - 160) three.
"""

from score.themes import A, A2_UNDER, A_UNDER

CITY_1 = "Dm9:4 Bbmaj9:2 C9sus4:2 F/A:2 Gm9:2 A7sus4:2 A7:2"
CITY_2 = "Dm9:4 Bbmaj9:4 Gm9:2 C9sus4:2 A7sus4:1 Bbmaj7:1 A7:1"


def break_beat(p, first, beats, level=1.0):
    """Two alternating bars of sixteenths; ghosts between."""
    kick = "X.x...X..xX..x.." "X.x....x.xX...x."
    snare = "....X..-.-..X..-" "....X..o.-..X.xx"
    hat = "xoxoxoxoxoxoxoxo" "xoxoxoxoxoxoxXxo"
    for voice, steps, vel, pan, human in (("kick", kick, 1.0, 0, 0), ("snare", snare, 0.9, 0, 0),
                                          ("hat", hat, 0.6, 0.3, 0.002)):
        full = (steps * 8)[: int(beats * 4)]
        p.pattern(voice, first, full, vel=vel * level, pan=pan, human=human, swing=0.06 if voice == "hat" else 0)
    p.pattern("hat", first, ("." * 14 + "x." ) * int(beats / 4), vel=0.6 * level, pan=-0.25, extra=(0.2,))


def phone_answers(p, beat, up=0):
    """The ring tone fills the long note in the second bar of theme A."""
    p.melody("ring", beat, "A5:.25 D6:.25 F6:.25 A6:.25 G6:.25 F6:.25", vel=0.5, pan=0.35, up=up, legato=0.8)


def drop(p):
    """129 - 160: the theme whole (question and answer) over the biggest groove of the first half."""
    p.play("hit", 129, vel=0.95)
    p.play("crash", 129, vel=0.9)
    p.play("subdrop", 129, 2, "D3", 0.4)
    break_beat(p, 129, 7.5)
    p.pattern("tom", 136.5, "xX", note="F3", vel=0.9, pan=-0.3)
    break_beat(p, 137, 7)
    p.pattern("snare", 144, "xoXx", vel=0.75)
    p.pattern("tom", 144.5, "xx", note="A2", vel=0.8, pan=0.3)
    p.play("crash", 145, vel=0.7)
    break_beat(p, 145, 7.5)
    p.pattern("snare", 152.5, "XX", vel=0.8)
    break_beat(p, 153, 5)
    p.pattern("kick", 158, "X...X...", vel=1.0)
    p.pattern("clap", 129, "....x.......x..." * 7 + "....x...", vel=0.7)
    p.pattern("shaker", 129, "xoxo" * 31, vel=0.45, pan=-0.35, human=0.003)
    p.pattern("ride", 145, "x.o." * 15, vel=0.5, pan=-0.3)

    p.riff("growl", 129, CITY_1, "R..R.R.O..R.SR.O" "R.rR..O.R..RF.SO", vel=0.9, extra=(0.6,))
    p.riff("growl", 145, CITY_2, "R..R.R.O..R.SR.O" "R.rR..O.R..RF.SO", vel=0.9, extra=(0.75,))
    p.chords("stab", 129, CITY_1, vel=0.42, centre=65, steps="x..x..x...x..x..", legato=1.3, extra=(0.5,))
    p.chords("stab", 145, CITY_2, vel=0.45, centre=66, steps="x..x..x...x..x..", legato=1.3, extra=(0.65,))
    p.chords("pad", 129, CITY_1, vel=0.4, centre=64, extra=(0.5,))
    p.chords("strings", 145, CITY_2, vel=0.42, centre=70, extra=(0.7,))
    p.melody("lead", 128.75, "A4:.25", vel=0.6)
    p.melody("lead", 129, A, vel=0.8, pan=-0.05)
    p.melody("lead", 145, "D5:1 E5:.5 F5:1.5 G5:.5 A5:.5 | C6:1.5 Bb5:.5 A5:1 F5:1 | "
             "Bb5:1 A5:.5 G5:1.5 F5:.5 E5:.5 | E5:.5 F5:.5 G5:.5 A5:.5 Bb5:.5 C#6:.5", vel=0.82, pan=-0.05)
    phone_answers(p, 134)
    p.melody("reed", 129, A_UNDER, vel=0.55, pan=0.4)
    p.melody("reed", 145, A2_UNDER.rsplit("|", 1)[0], vel=0.55, pan=0.4)
    p.arp("pluck", 137, "F/A:2 Gm9:2 A7sus4:2 A7:2", "0213243521", vel=0.4, centre=76, extra=(0.6,))
    p.arp("pluck", 145, CITY_2, "0213243521", vel=0.4, centre=76, extra=(0.7,))
    # The camera dives.
    for beat, vel in ((137, 0.8), (150, 0.95)):
        p.play("swell", beat - 1.5, 1.5, vel=0.6)
        p.play("hit", beat, vel=vel)
        p.play("crash", beat, vel=0.7)
        p.play("fall", beat, 3, vel=0.7)
        p.play("subdrop", beat, 2, "D3", 0.35)
    # And climbs.
    p.play("riser", 156, 3.75, "D4", 0.6)
    p.pattern("snare", 158, "x.x.xxX.", vel=0.75)
    p.play("swell", 157, 2.85, vel=0.6)


def rock(p):
    """160 - 180: low and heavy, half time. Each move of the camera is a hit and a new chord."""
    moves = [(160, "D", 5), (165, "Bb", 5), (170, "Eb", 3), (173, "C", 5), (178, "A", 2)]
    chords = {"D": ("Dm9", "Dm"), "Bb": ("Bbmaj7", "Bb"), "Eb": ("Ebmaj7#11", "Eb"), "C": ("Cm9", "Cm"),
              "A": ("A7b9", "A7")}
    steps = {5: "R__R_.r_R__.R_r.R___", 3: "R__R_.r_R__.", 2: "R__RR_rR"}
    for beat, root, length in moves:
        rich, plain = chords[root]
        text = f"{rich}:{length}"
        p.play("hit", beat, vel=1.0, extra=(0.4,))
        p.play("anvil", beat, 2, "D4" if beat % 2 else "F4", 0.8, 0.2)
        p.play("clap", beat, vel=0.7)
        p.play("crash", beat, vel=0.6)
        p.chords("brass", beat, f"{plain}:{min(length, 3)}", vel=0.65, centre=55, legato=0.7, width=0.4)
        p.chords("choir", beat, text, vel=0.6, centre=64, extra=(1,))
        p.chords("strings", beat, f"{plain}:{length}", vel=0.35, centre=60, extra=(0.8,))
        p.riff("reese", beat, text, steps[length], vel=0.95, lowest=28, extra=(0.9,))
        p.play("subdrop", beat, 1.5, root + "3", 0.4)
    for bar in range(160, 180, 4):
        p.pattern("kick", bar, "X.....xx..X.....", vel=1.0)
        p.pattern("snare", bar, "........X......-", vel=0.95, extra=(0.35,))
        p.pattern("hat", bar, "x..xx..xx..xx.xx", vel=0.65, pan=0.3, human=0.003)
        p.pattern("hat", bar, "..x.......x.....", vel=0.5, pan=-0.3, extra=(0.25,))
        p.pattern("metal", bar, "....x..x....x.x.", note="A4", vel=0.6, pan=-0.5, extra=(0.2,))
    p.melody("brass", 161, "D4:1 E4:.5 F4:1.5 r:3 F4:.5 G4:.5 A4:1.5 G4:.5 | Bb4:1 A4:.5 G4:1.5 | "
             "Eb4:1 F4:.5 G4:1.5 r:1 C4:.5 D4:.5 | C#4:1 E4:1", vel=0.75, pan=-0.2)
    for beat in (164, 169, 172, 177):
        p.play("swell", beat - 0.5, 1.5, vel=0.5)
    p.pattern("tom", 179, "xxXX", note="D2", vel=0.9)
    p.play("riser", 176, 3.75, "A2", 0.5)


def machine(p):
    """180 - 208: gears of twelve and sixteen teeth turn against each other; the floor opens at 192."""
    first = "Gm9:4 Ebmaj7:4 Cm9:4"
    second = "Abmaj7:4 Fm9:4 Gm9:4 A7b9:4"
    p.play("hit", 180, vel=0.8)
    p.play("crash", 180, vel=0.7)
    p.play("hit", 192, vel=0.95)
    p.play("crash", 192, vel=0.8)
    p.play("swell", 189, 3, vel=0.6)
    p.play("fall", 192, 4, vel=0.7)
    p.play("subdrop", 192, 3, "Ab2", 0.5)
    for bar in range(180, 208, 4):
        late = bar >= 192
        p.pattern("kick", bar, "X...X...X...X.x." if late else "X...X...X...X...", vel=0.95)
        p.pattern("clap", bar, "....X.......X...", vel=0.7)
        p.pattern("tooth", bar, "Xoxoxoxoxoxoxoxo", note="C6", vel=0.55, pan=-0.45)
        p.pattern("tooth", bar + 0.125, "..x...x...x...x.", note="E6", vel=0.35, pan=0.45)
        p.pattern("hat", bar, "..x...x...x...x.", vel=0.6, pan=0.2, extra=(0.14,))
    p.pattern("metal", 180, "X..x..x.....x..x........" * 4 + "X..x..x.....x..x", note="D5", vel=0.5, pan=0.4)
    p.pattern("wood", 180, "x.....x...x." * 9 + "x...", note="Bb4", vel=0.5, pan=-0.2)
    p.pattern("anvil", 180, "X" + "." * 15, note="G4", vel=0.35, grid=0.25, pan=0.3)
    p.pattern("anvil", 192, ("X" + "." * 15) * 4, note="G4", vel=0.35, pan=0.3)
    # Sixteen teeth below, twelve above.
    for at, chords in ((180, first), (192, second)):
        p.riff("bass", at, chords, "RrOrrRrFRrOrrSrO", vel=0.85, extra=(0.55,), legato=0.7)
        p.arp("pluck", at, chords, "012432143021", vel=0.5, centre=70, extra=(0.45,), width=0.6)
        p.chords("stab", at, chords, vel=0.34, centre=64, steps="..x..x....x..x..", legato=0.9, extra=(0.45,))
        p.chords("pad", at, chords, vel=0.32, centre=60, extra=(0.3,))
    p.arp("pluck", 192, second, "0.3.1.4.2.5.", vel=0.35, centre=82, extra=(0.7,), width=0.8)
    p.riff("sub", 192, second, "R_______R___r___", vel=0.5, lowest=28)
    # The theme as a machine would play it, in canon at one beat.
    clockwork = ("G5:.5 A5:.25 Bb5:.75 A5:.25 F5:.25 r:2 | G5:.5 D5:.25 F5:.25 G5:.5 r:2.5 | "
                 "Eb5:.5 F5:.25 G5:.75 F5:.25 D5:.25 r:2")
    p.melody("lead", 180, clockwork, vel=0.55, pan=-0.35, legato=0.7)
    p.melody("lead", 181, clockwork.rsplit("|", 1)[0], vel=0.4, pan=0.45, legato=0.7, up=-12)
    line = ("C6:1 Bb5:.5 Ab5:1.5 G5:1 | Ab5:1 G5:.5 F5:1.5 C5:1 | D5:1 F5:.5 G5:1.5 Bb5:1 | "
            "A5:1 G5:.5 E5:.5 C#5:.5 E5:.5 G5:.5 Bb5:.5")
    p.melody("lead", 192, line, vel=0.75, pan=-0.1)
    p.melody("brass", 192, "Ab3:4 F3:4 G3:4 A3:4", vel=0.6, pan=0.1)
    p.play("riser", 204, 3.75, "A3", 0.7)
    p.pattern("snare", 206, "x.x.xx..", vel=0.7)


def still(p):
    """208 - 212: a stop; the phone asks twice; a swell out of the white."""
    p.play("hit", 208, vel=0.75, extra=(0.6,))
    p.play("clap", 208, vel=0.9, extra=(0.6,))
    p.play("rim", 208, vel=0.9)
    p.play("bell", 208, 3, "D4", 0.35)
    p.chords("glass", 208.2, "Dsus2:3.4", vel=0.22, centre=70)
    p.play("keytone", 209, 0.4, "A5", 0.4, extra=(1.5,))
    p.play("keytone", 210, 0.4, "D6", 0.4, extra=(1.5,))
    p.play("swell", 209.5, 2.5, vel=0.6)
    p.pattern("marimba", 211.5, "xx", note="D5", vel=0.5)


def compose(p):
    drop(p)
    rock(p)
    machine(p)
    still(p)

"""Beats 212 to 288: the jelly, the explosion, the face, the stars."""

from score.themes import SEVEN, SEVEN_CHORDS

JELLY = " ".join([SEVEN_CHORDS] * 2)


def jelly(p):
    """212 - 240: the theme in bars of seven eighths over quarters, eight of them; rubber and wood; two bums."""
    p.play("hit", 212, vel=0.8)
    p.play("crash", 212, vel=0.7)
    for i in range(8):
        at = 212 + i * 3.5
        p.pattern("wood", at, "X.x.X.x.X.xx.x", note="D4", vel=0.55, pan=-0.35)
        p.pattern("clap", at, "....x.....x...", vel=0.7)
    for beat in range(212, 240):
        if beat not in (224, 225):
            p.play("kick", beat, vel=0.95)
        p.pattern("hat", beat, "o.x.", vel=0.7, pan=0.25, extra=(0.1,))
    p.pattern("shaker", 212, "xoxo" * 28, vel=0.4, pan=0.4, human=0.003)
    p.riff("rubber", 212, JELLY, "R...O.R.R...F.", vel=0.9, lowest=31)
    p.melody("marimba", 212, SEVEN, vel=0.85, pan=-0.15)
    p.melody("marimba", 212, SEVEN, vel=0.5, pan=0.25, up=-12)
    p.melody("marimba", 226, SEVEN, vel=0.85, pan=-0.15)
    p.melody("whistle", 226, SEVEN, vel=0.75, pan=0.15)
    p.arp("pluck", 212, JELLY, "0.2.1.3.4.2.1.", vel=0.45, centre=74, extra=(0.7,))
    p.chords("stab", 212, JELLY, vel=0.3, centre=65, steps="x...x...x.....", legato=1.2, extra=(0.7,))
    p.chords("pad", 226, " ".join([SEVEN_CHORDS]), vel=0.35, centre=64, extra=(0.35,))
    # Bum.
    p.play("swell", 220, 4, vel=0.6)
    p.play("swell", 229.5, 3, vel=0.6)
    for beat, vel in ((224, 1.0), (232.5, 0.9)):
        p.play("hit", beat, vel=vel)
        p.play("kick", beat, vel=1.0)
        p.play("rubber", beat, 1.4, "D2", 1.0, extra=(1.6,))
        p.play("rubber", beat, 1.2, "D4", 0.6, 0.0, (1.6,))
        p.play("subdrop", beat, 1.5, "G3", 0.5)
        p.play("crash", beat, vel=0.6)
    p.play("kick", 225.5, vel=0.7)
    p.play("swell", 237, 3, vel=0.6)
    p.pattern("snare", 238, "o.o.x.xx", vel=0.6)
    p.pattern("tom", 239, "xxXX", note="G2", vel=0.7)


def explosion(p):
    """240 - 256: whole tones climb under a pedal; from 248 noise grows, from 250 it shakes; the build breaks at 254."""
    climb = "Gm9:4 A7sus4:4 B7sus4:4 B7b9:2"
    p.play("hit", 240, vel=0.8)
    p.play("crash", 240, vel=0.8)
    p.pattern("kick", 240, "X...X...X...X..." * 2 + "X...X...X...X.X." + "X.X.X.X.", vel=0.95)
    p.pattern("clap", 240, "....x.......x..." * 2, vel=0.6)
    p.pattern("snare", 248, "x...x...x...x...x.x.x.x.", vel=0.6)
    p.pattern("snare", 252, "xoxoxoxoxoxoXxXx", grid=0.125, vel=0.7)
    p.pattern("hat", 240, "xoxo" * 14, vel=0.5, pan=0.25)
    p.riff("growl", 240, climb, "RrrRrrRrRrrRrrOr", vel=0.85, lowest=31, extra=(0.5,))
    p.chords("strings", 240, climb, vel=0.5, centre=68, extra=(0.7,))
    p.chords("choir", 244, "A7sus4:4 B7sus4:4 B7b9:2", vel=0.4, centre=64, extra=(0.9,))
    p.arp("pluck", 240, climb, "0123454321", vel=0.45, centre=74, extra=(0.6,), grow=0.6)
    p.melody("brass", 240, "G4:1 A4:.5 Bb4:1.5 A4:.5 F4:.5 | A4:1 B4:.5 C5:1.5 B4:.5 G4:.5 | "
             "B4:1 C#5:.5 D5:1.5 C#5:.5 A4:.5 | D#5:1 F#5:1", vel=0.8)
    p.melody("lead", 244, "A5:1 B5:.5 C6:1.5 B5:.5 G5:.5 | B5:1 C#6:.5 D6:1.5 C#6:.5 A5:.5 | D#6:1 F#6:1", vel=0.6)
    p.play("swell", 245, 3, vel=0.6)
    p.play("hit", 248, vel=0.7)
    p.play("crash", 248, vel=0.6)
    p.play("riser", 248, 6, "B3", 0.75)
    p.play("siren", 248, 7, "B4", 0.5, extra=(7,))
    p.play("rumble", 248, 8, vel=0.9, extra=(12,))
    # The build breaks: hammering without a bar, then only noise.
    p.play("hit", 250, vel=0.5)
    p.pattern("kick", 254, "X..X.X.XX.XX.XXX", grid=0.125, vel=0.9)
    p.play("fall", 254, 2, vel=0.7)
    p.play("subdrop", 252, 4, "B2", 0.6)
    p.play("swell", 252, 3.9, vel=0.7)


def face(p):
    """256 - 273: after the blast wide pads, now in E minor and G; theme B at half speed; half time from 260."""
    wide = "Cmaj9:4 G/B:4 Am9:4 D9sus4:2 D9:3"
    p.play("blast", 256, 10, vel=1.15)
    p.play("hit", 256, vel=0.9, extra=(0.5,))
    p.chords("pad", 256, wide, vel=0.55, centre=64, extra=(0.55,))
    p.chords("choir", 256, wide, vel=0.42, centre=66, extra=(0.5,))
    p.chords("glass", 257, "Cmaj9:3 G/B:4 Am9:4 D9sus4:2 D9:3", vel=0.22, centre=79)
    p.riff("sub", 256, "Cmaj9:4 G/B:4 Am9:4 D9sus4:4", "R_______________", vel=0.65, lowest=28)
    p.play("sub", 272, 0.95, "D2", 0.6)
    for beat, symbol in ((256, "Cmaj9"), (260, "G/B"), (264, "Am9"), (268, "D9sus4"), (272, "D9")):
        p.chords("epiano", beat, f"{symbol}:{4 if beat < 268 else 1.8 if beat < 272 else 1}", vel=0.75, centre=64)
    for bar in (260, 264, 268):
        p.pattern("softkick", bar, "X.........x.....", vel=0.85)
        p.pattern("snare", bar, "........x.......", vel=0.45, extra=(0.6,))
        p.pattern("hat", bar, "....o...o...o.o.", vel=0.3, pan=0.35, human=0.004)
    p.play("softkick", 272, vel=0.7)
    p.melody("voice", 260, "D5:3 G5:1 | B5:4 | A5:1.5 G5:.5 F#5:2", vel=0.7)
    p.melody("musicbox", 258, "G5:.5 B5:.5 D6:.5 E6:.5 | F#6:1 D6:1 B5:1 A5:1 | G5:1 B5:1 C6:1 E6:1 | "
             "D6:1 A5:1 F#5:1 E5:1 | D5:1", vel=0.45, pan=0.2, human=0.004)
    p.play("swell", 270, 3, vel=0.55)


def stars(p):
    """273 - 288: lift; arpeggios and drums come in one after the other; the phone flies from 279."""
    up = "Em9:4 Cmaj9:4 Am9:4 B7sus4:2 B7:1"
    p.play("hit", 273, vel=0.55)
    p.play("crash", 273, vel=0.6)
    p.play("bell", 273, 3, "E5", 0.4)
    p.arp("pluck", 273, up, "0213243542", vel=0.34, centre=72, extra=(0.35,), grow=0.9)
    p.arp("pluck", 277, "Cmaj9:4 Am9:4 B7sus4:2 B7:1", "4.2.3.1.", vel=0.3, centre=80, extra=(0.5,), grow=0.6)
    p.chords("pad", 273, up, vel=0.45, centre=64, extra=(0.4,))
    p.chords("strings", 277, "Cmaj9:4 Am9:4 B7sus4:2 B7:1", vel=0.45, centre=70, extra=(0.6,))
    p.riff("bass", 273, up, "R...r...R...r.F.", vel=0.7, extra=(0.35,))
    p.pattern("kick", 273, "X...X...X...X..." * 2 + "X...X...X...X...X...", vel=0.85)
    p.pattern("hat", 277, "..x." * 11, vel=0.5, pan=0.25, extra=(0.1,))
    p.pattern("clap", 281, "....x.......x.......x..." + "x.xx", vel=0.55)
    p.play("clap", 280, vel=0.6)
    p.melody("whistle", 273, "r:1 B5:3 | r:1 G5:1.5 A5:.5 B5:1", vel=0.5, pan=-0.2)
    p.melody("reed", 281, "E5:1 G5:1 C6:1 B5:1 | A5:1 B5:1", vel=0.7, pan=0.1)
    p.play("whoosh", 277.6, 3, "C5", 0.6, 0.9)
    p.play("riser", 281, 6.75, "B3", 0.65)
    p.pattern("snare", 285, "x.x.x.x.xxX.", vel=0.65)
    p.play("swell", 284, 3.85, vel=0.65)


def compose(p):
    jelly(p)
    explosion(p)
    face(p)
    stars(p)

"""Beats 52 to 129: the heart, the lace, the call, the white room."""

from score.themes import B, B_CHORDS, B_UNDER, RING

LETTERS = "Bbmaj7:1 F/A:1 Gm7:1 C9sus4:1"


def letters(p, beat, vel=0.8):
    """Four tutti quarters, theme B's last bar: one for each letter."""
    for i in range(4):
        p.play("hit", beat + i, vel=0.5 * vel)
        p.play("clap", beat + i, vel=0.8 * vel)
        p.play("kick", beat + i, vel=0.9 * vel)
    p.chords("stab", beat, LETTERS, vel=0.62 * vel, centre=65, legato=0.45, extra=(0.6,))
    p.chords("epiano", beat, LETTERS, vel=0.8 * vel, centre=60, legato=0.7)
    p.riff("bass", beat, LETTERS, "R_..", vel=0.9 * vel, extra=(0.6,))


def heart(p):
    """52 - 80: theme B, sung; the heart on every beat, letters at 60 to 63, the whole tune from 64."""
    p.play("crash", 52, vel=0.7)
    p.play("hit", 52, vel=0.6)
    p.play("clap", 52, vel=0.8)
    for beat in range(52, 80):
        p.play("heart", beat, vel=0.85)
    two = "Fmaj9:4 C/E:4"
    p.chords("strings", 52, two, vel=0.42, centre=64)
    p.chords("epiano", 52, two, vel=0.62, centre=60, steps="x.....x..x..x...", legato=3, human=0.004)
    p.riff("sub", 52, two, "R_____r_R___F_r_", vel=0.85, lowest=28)
    p.pattern("shaker", 52, "xoxoxoxo" * 4, vel=0.4, pan=0.35, human=0.004, swing=0.12)
    p.pattern("rim", 52, "....x.......x..o" * 2, vel=0.55, pan=-0.2, human=0.003)
    p.melody("voice", 52, "C5:1.5 F5:.5 A5:2 | G5:1.5 F5:.5 E5:1 C5:.9", vel=0.8)
    p.arp("musicbox", 52, two, "..0..2..1..3..24", vel=0.3, centre=78, human=0.003)

    letters(p, 60)
    p.melody("voice", 60, "Bb5:1 A5:1 G5:1 F5:1", vel=0.85, legato=0.6)
    p.melody("musicbox", 60, "Bb5:1 A5:1 G5:1 F5:1", vel=0.6, up=12)

    p.play("crash", 64, vel=0.6)
    p.chords("strings", 64, B_CHORDS, vel=0.5, centre=64)
    p.chords("choir", 64, B_CHORDS, vel=0.26, centre=62, extra=(0.2,))
    p.chords("epiano", 64, "Fmaj9:4 C/E:4 Dm9:4", vel=0.6, centre=60, steps="x.....x..x..x...", legato=3, human=0.004)
    p.riff("bass", 64, "Fmaj9:4 C/E:4 Dm9:4", "R__.r.R..R__F.r.", vel=0.75, extra=(0.3,))
    for bar in (64, 68, 72):
        p.pattern("kick", bar, "X......x..X.....", vel=0.85)
        p.pattern("snare", bar, "....x..-....x..o", vel=0.6)
        p.pattern("hat", bar, "xoxoxoxoxoxoxoxo", vel=0.4, pan=0.25, human=0.003, swing=0.12)
        p.pattern("shaker", bar, "xoxoxoxoxoxoxoxo", vel=0.4, pan=-0.35, human=0.004, swing=0.12)
    p.melody("voice", 64, B, vel=0.85)
    p.melody("reed", 64, B_UNDER, vel=0.55, pan=0.3)
    p.arp("musicbox", 64, B_CHORDS, "0.2.1.3.2.4.3.5.", vel=0.34, centre=78, human=0.003)
    letters(p, 76, 0.85)
    p.play("swell", 77, 3, vel=0.6)


def lace(p):
    """80 - 104: darker, half time; a web of music boxes that closes in; boom at 96, then only heart and web."""
    dark = "Gm9:4 Ebmaj7#11:4 Cm9:4 D7b9:4"
    after = "Ebmaj7#11:4 A7b9:4"
    p.play("hit", 80, vel=0.75)
    p.play("crash", 80, vel=0.35)
    p.play("fall", 80, 4, vel=0.5)
    p.chords("choir", 80, dark, vel=0.48, centre=58, extra=(0.12,))
    p.chords("choir", 96, after, vel=0.4, centre=58, extra=(0.3,))
    p.play("drone", 80, 16, "G1", 0.5)
    p.play("drone", 96, 8, "A1", 0.55)
    p.riff("reese", 80, dark, "R_____._r_R___r.", vel=0.7, lowest=28, extra=(0.2,))
    # The web: the pattern gains threads.
    webs = ["0...2...1...4...", "0..2..1.0..4..2.", "0.2.1.42.2.1.4.2", "0212421402124214"]
    for i, web in enumerate(webs):
        part = " ".join(dark.split()[i:i + 1])
        p.arp("musicbox", 80 + 4 * i, part, web, vel=0.42 + 0.06 * i, centre=76 - i, human=0.003, width=0.7)
        p.pattern("rim", 80 + 4 * i, "..o...o.o.o...oo", vel=0.5, pan=0.4, human=0.002)
        p.pattern("kick", 80 + 4 * i, "X.....x.........", vel=0.85)
        p.pattern("snare", 80 + 4 * i, "........X.......", vel=0.75, extra=(0.5,))
        p.pattern("wood", 80 + 4 * i, "x..x..x..x..x...", note="G3", vel=0.45, pan=-0.4)
    p.melody("reed", 84, "r:1 D5:1 Eb5:.5 D5:1 A4:.5 | G4:3 r:1 | F#4:1 G4:1 Eb5:1 D5:1", vel=0.6, pan=0.15)
    p.play("swell", 93, 3, vel=0.7)
    p.pattern("tom", 95, "x.xx", note="D2", vel=0.7)
    # Boom.
    p.play("hit", 96, vel=1.0, extra=(0.45,))
    p.play("blast", 96, 5, vel=0.5)
    p.play("subdrop", 96, 3, "D3", 0.6)
    p.play("bell", 96, 4, "D4", 0.6)
    for beat in range(97, 104):
        p.play("heart", beat, vel=0.7)
    p.play("kick", 100, vel=0.8)
    p.play("bell", 100, 4, "C#4", 0.45, 0.3)
    p.arp("musicbox", 96, after, "04213142", vel=0.3, centre=72, human=0.003, width=0.8, grow=0.8)
    p.arp("glass", 96, "Ebmaj7#11:4 A7b9:4", "2...4...", grid=0.5, vel=0.3, centre=80, legato=4)
    p.play("swell", 101, 3, vel=0.6)
    p.pattern("buzz", 103, "....x.x.", grid=0.125, vel=0.5, length=0.2)


def call(p):
    """104 - 115: the ring tone on the beat over a small groove; from 110 it runs away, 114 throws it round."""
    for beat in (104, 106, 108, 110):
        p.melody("ring", beat, RING, vel=0.85, legato=0.8)
        p.play("click", beat, 0.1, "C6", 0.4)
    for beat in (105, 107, 109):
        p.play("buzz", beat, 0.7, vel=0.45, pan=0.1)
    p.play("hit", 104, vel=0.45)
    p.pattern("kick", 104, "X...X...X...X...X...X...", vel=0.85)
    p.pattern("clap", 104, "....x.......x.......x..o", vel=0.5)
    p.pattern("hat", 104, "..x...x...x...x." + "x.x.x.xo", vel=0.45, pan=0.25)
    p.riff("bass", 104, "Dm9:2 Bbmaj9:2 Gm9:1 A7:1", "R..R..O.R..R.FO.", beats=6, vel=0.75, extra=(0.35,))
    p.chords("stab", 104, "Dm9:2 Bbmaj9:2 Gm9:1 A7:1", vel=0.25, centre=64, steps="....x..x", legato=0.8, extra=(0.4,))
    p.pattern("tooth", 108, "xoxoxoxo", note="C6", vel=0.4, pan=-0.4)
    # It runs away: climbing, faster.
    p.play("riser", 110, 3.75, "D4", 0.85)
    p.melody("ring", 111, RING, vel=0.8, up=2, legato=0.8, stretch=0.5)
    p.melody("ring", 112, RING, vel=0.8, up=4, legato=0.8, stretch=0.5)
    p.melody("ring", 113, RING, vel=0.8, up=7, legato=0.8, stretch=0.5)
    p.pattern("kick", 110, "X...X...X...X...", vel=0.9)
    p.pattern("snare", 110, "x...x...x.x.x.x.", vel=0.55)
    p.pattern("snare", 113, "oooxxx..", grid=0.125, vel=0.5)
    p.riff("bass", 110, "A7sus4:4", "RrOrRrOrRrOrRrOr", vel=0.75, extra=(0.6,))
    p.play("hit", 112, vel=0.45)
    # Round it goes.
    p.play("hit", 114, vel=0.8)
    p.play("whoosh", 113.7, 1.4, "C5", 1.0, -0.9)
    p.play("crash", 114, vel=0.4)
    p.play("clap", 114, vel=0.9)
    p.play("keytone", 114, 0.7, "D7", 0.5, extra=(2,))


def white_room(p):
    """115 - 129: a breath; drums behind a wall, music box with the theme to come; 128 holds everything back."""
    air = "Bbmaj9:5 Gm9:4 A7sus4:2 A7:2"
    p.play("bell", 115, 4, "D5", 0.45)
    p.play("click", 115, 0.1, "D6", 0.9)
    p.play("rim", 115, vel=1.0)
    p.play("crash", 115, vel=0.5)
    p.play("hit", 115, vel=0.3, extra=(0.5,))
    p.chords("pad", 115, air, vel=0.5, centre=62, extra=(0.25,))
    p.chords("glass", 115, air, vel=0.3, centre=76)
    p.chords("choir", 120, "Gm9:4 A7sus4:2 A7:2", vel=0.25, centre=62, extra=(0.5,))
    p.riff("sub", 115, air, "R___" + "R_______________" * 3, vel=0.6, lowest=28)
    p.melody("musicbox", 115, "D6:1 | D6:1 E6:.5 F6:1.5 E6:.5 C6:.5 | D6:2.5 A5:.5 C6:.5 D6:.5 | "
             "E6:1.5 D6:.5 C#6:1 A5:1", vel=0.75, pan=0.1)
    p.melody("whistle", 118, "A5:2 | G5:2 F5:2 | E5:3.6", vel=0.35, pan=-0.3)
    for bar in (116, 120, 124):
        p.pattern("softkick", bar, "X......x..X.....", vel=0.8)
        p.pattern("rim", bar, "....o.......o...", vel=0.4, pan=-0.25, human=0.003)
        p.pattern("hat", bar, "..o...o...o...o.", vel=0.35, pan=0.35, human=0.003)
    p.play("wind", 115, 13, "C5", 0.35)
    p.arp("pluck", 120, "Gm9:4 A7sus4:2 A7:2", "0213", vel=0.16, centre=74, extra=(0.2,), grow=1.2)
    p.play("swell", 124, 3.75, vel=0.7)
    p.play("riser", 123, 4.75, "A3", 0.5)
    p.pattern("snare", 126, "-.-.o.o.", vel=0.5)
    # One held breath before the city.
    p.play("click", 128, 0.1, "C6", 1.1)
    p.play("rim", 128, vel=1.0)
    p.play("keytone", 128, 0.3, "A6", 0.7)
    p.pattern("snare", 128.5, "xX", vel=0.75)
    p.pattern("tom", 128.5, "x.XX", note="A2", grid=0.125, vel=0.8)


def compose(p):
    heart(p)
    lace(p)
    call(p)
    white_room(p)

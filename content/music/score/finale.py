"""Beats 288 to the end: the theme whole, a tone higher; then it lets go, and the phone goes to sleep."""

from grid import END
from notation import transposed
from score.city import break_beat, phone_answers
from score.themes import RING, A, A2, A2_CHORDS, A2_UNDER, A_CHORDS, A_UNDER, B, B_CHORDS, B_UNDER

UP = 2  # from D minor to E minor
A_UP, A2_UP, B_UP = (transposed(chords, UP) for chords in (A_CHORDS, A2_CHORDS, B_CHORDS))
FOUR_UP = transposed("Bbmaj7:1 F/A:1 Gm7:1 C9sus4:1", UP)


def grooves(p, first, chords, bright, rhythm="R..R.R.O..R.SR.O" "R.rR..O.R..RF.SO"):
    """What every full period has: bass, stabs, strings."""
    p.riff("growl", first, chords, rhythm, vel=0.88, extra=(bright,))
    p.chords("stab", first, chords, vel=0.4, centre=66, steps="x..x..x...x..x..", legato=1.3, extra=(bright,))
    p.chords("strings", first, chords, vel=0.42, centre=68, extra=(0.7,))


def theme_a(p):
    """288 - 320: question and answer; the text arrives with the choir at 300."""
    p.play("hit", 288, vel=1.0)
    p.play("crash", 288, vel=0.9)
    p.play("subdrop", 288, 2, "E3", 0.4)
    p.melody("lead", 287.5, "B4:.5", vel=0.7)
    phone_answers(p, 293, UP)
    for first, chords, tune, under in ((288, A_UP, A, A_UNDER), (304, A2_UP, A2, A2_UNDER)):
        grooves(p, first, chords, 0.6)
        break_beat(p, first, 15)
        p.pattern("snare", first + 15, "xoXX", vel=0.7)
        p.play("kick", first + 15, vel=0.9)
        p.pattern("hat", first, "..x." * 15, vel=0.5, pan=-0.25, extra=(0.16,))
        p.melody("lead", first, tune, vel=0.82, up=UP, pan=-0.05)
        p.melody("whistle", first, tune, vel=0.4, up=UP + 12, pan=0.2)
        p.melody("reed", first, under, vel=0.55, up=UP, pan=0.4)
        p.arp("pluck", first, chords, "0213243521", vel=0.38, centre=76, extra=(0.6,))
        p.pattern("clap", first, "....x.......x..." * 4, vel=0.7)
        p.pattern("shaker", first, "xoxo" * 16, vel=0.45, pan=-0.35, human=0.003)
    for beat in range(300, 304, 2):
        p.melody("ring", beat, RING, vel=0.3, up=UP, pan=-0.4, legato=0.8)
    p.play("hit", 300, vel=0.6)
    p.play("bell", 300, 4, "B5", 0.4, 0.3)
    p.arp("pluck", 300, "E5:1", "0123456789", grid=0.125, vel=0.5, centre=72, extra=(0.8,))
    p.chords("choir", 300, "B7sus4:2 B7:2 " + A2_UP, vel=0.4, centre=64, extra=(0.8,))
    p.play("crash", 304, vel=0.7)
    p.play("swell", 317, 3, vel=0.7)
    p.pattern("tom", 319, "xxXX", note="B2", vel=0.8)


def theme_b(p):
    """320 - 352: theme B twice, in G: sung over half the drums and the heart, then with everything."""
    for first, full in ((320, False), (336, True)):
        three = " ".join(B_UP.split()[:3])
        p.play("hit", first, vel=0.8)
        p.play("crash", first, vel=0.85)
        p.chords("choir", first, B_UP, vel=0.46, centre=64, extra=(0.7,))
        p.melody("voice", first, B, vel=0.85, up=UP)
        p.melody("reed", first, B_UNDER, vel=0.6, up=UP, pan=0.35)
        p.arp("musicbox", first, B_UP, "0.2.1.3.2.4.3.5.", vel=0.36, centre=80, human=0.003)
        if full:
            grooves(p, first, three, 0.6, "R..R..O.R..RF.r.")
            break_beat(p, first, 12)
            p.pattern("clap", first, "....x.......x..." * 3, vel=0.7)
            p.pattern("ride", first, "x.o." * 12, vel=0.5, pan=-0.3)
            p.melody("lead", first, B, vel=0.75, up=UP, pan=-0.1)
            p.arp("pluck", first, three, "0213243521", vel=0.4, centre=76, extra=(0.7,))
        else:
            p.riff("bass", first, three, "R__.r.R..R__F.r.", vel=0.85, extra=(0.4,))
            p.chords("strings", first, three, vel=0.46, centre=68, extra=(0.6,))
            p.chords("epiano", first, three, vel=0.55, centre=62, steps="x.....x..x..x...", legato=3, human=0.004)
            p.pattern("kick", first, "X......x..X....." * 3, vel=0.95)
            p.pattern("snare", first, "........X......o" * 3, vel=0.8, extra=(0.3,))
            p.pattern("hat", first, "xoxoxoxo" * 6, vel=0.5, pan=0.3, human=0.003)
        letters(p, first + 12, full)
    for beat in range(320, 352):
        p.play("heart", beat, vel=0.5)
    p.pattern("snare", 334, "....x.xX", vel=0.6)
    p.play("swell", 333, 3, vel=0.6)
    p.play("swell", 349, 3, vel=0.7)
    p.pattern("snare", 350, "x.x.xxXX", vel=0.6)


def letters(p, beat, full):
    """The four quarters that end theme B."""
    for i in range(4):
        p.play("hit", beat + i, vel=0.5)
        p.play("kick", beat + i, vel=0.95)
        p.play("clap", beat + i, vel=0.7)
    p.chords("stab", beat, FOUR_UP, vel=0.55, centre=66, legato=0.5, extra=(0.7,))
    p.riff("growl" if full else "bass", beat, FOUR_UP, "R_.r", vel=0.9, extra=(0.6,))
    p.chords("strings", beat, FOUR_UP, vel=0.45, centre=68, extra=(0.7,))


def both(p):
    """352 - 368: theme A at its height, all voices, the bass climbing."""
    p.play("hit", 352, vel=0.95)
    p.play("crash", 352, vel=0.9)
    p.play("crash", 360, vel=0.6)
    grooves(p, 352, A_UP, 0.8)
    break_beat(p, 352, 14)
    p.pattern("ride", 352, "x.o." * 14, vel=0.45, pan=-0.3)
    p.pattern("clap", 352, "....x.......x..." * 3 + "....x...", vel=0.7)
    p.melody("lead", 352, A, vel=0.85, up=UP)
    p.melody("lead", 352, A, vel=0.4, up=UP + 12, pan=0.3)
    p.melody("voice", 352, A, vel=0.6, up=UP, pan=-0.2)
    p.melody("reed", 352, A_UNDER, vel=0.6, up=UP, pan=0.4)
    p.chords("choir", 352, A_UP, vel=0.5, centre=66, extra=(1,))
    p.arp("pluck", 352, A_UP, "0213243521", vel=0.4, centre=78, extra=(0.75,))
    phone_answers(p, 357, UP)
    for beat in (352, 360, 362, 364):
        p.melody("ring", beat, RING, vel=0.22, up=UP, pan=-0.4, legato=0.8)
    p.pattern("tom", 366, "x..x..x.x.x.X.X.", grid=0.125, note="E3", vel=0.75)
    p.play("kick", 366, vel=0.9)
    p.play("kick", 367, vel=0.9)
    p.play("swell", 365, 3, vel=0.6)


def let_go(p):
    """368 - 384: the answer once more; voices leave one by one; the last chord is major, the phone says good night."""
    last = transposed("Dm9:4 Bbmaj9:4 Gm9:2 C9sus4:2 A7sus4:3 A7:1", UP)
    p.play("hit", 368, vel=0.55)
    p.play("crash", 368, vel=0.6)
    p.pattern("kick", 368, "X.....x...X....." "X.........X.....", vel=0.8)
    p.pattern("snare", 368, "....x.......x..." "....o.......o...", vel=0.5, extra=(0.3,))
    p.pattern("hat", 368, "x.o.x.o.x.o.x.o." "o...o...o...o...", vel=0.4, pan=0.25, human=0.003)
    for beat in (376, 378, 380, 382):
        p.play("heart", beat, vel=0.6 - (beat - 376) * 0.04)
    p.riff("bass", 368, " ".join(last.split()[:2]), "R...R...r.......", vel=0.7, extra=(0.3,))
    p.riff("sub", 376, " ".join(last.split()[2:]), "R_______", vel=0.55, lowest=28)
    p.chords("strings", 368, last, vel=0.4, centre=66, extra=(0.4,))
    p.chords("epiano", 368, last.rsplit(" ", 1)[0], vel=0.55, centre=62, steps="x.......", legato=7, human=0.003)
    p.chords("epiano", 383, "B7:1", vel=0.45, centre=62)
    p.chords("pad", 372, " ".join(last.split()[1:]), vel=0.35, centre=62, extra=(0.25,))
    p.melody("voice", 368, "D5:1 E5:.5 F5:1.5 G5:.5 A5:.5 | C6:1.5 Bb5:.5 A5:1 F5:1", vel=0.65, up=UP)
    p.melody("whistle", 376, "Bb5:1 A5:.5 G5:1.5 F5:.5 E5:.5", vel=0.6, up=UP)
    p.melody("musicbox", 376, "Bb5:1 A5:.5 G5:1.5 F5:.5 E5:.5 | F5:1 r:.5 E5:.5 D5:1 C#5:1", vel=0.6, up=UP)
    p.arp("pluck", 368, " ".join(last.split()[:2]), "0.2.1.3.", vel=0.25, centre=76, extra=(0.3,))
    # Home.
    home = "Eadd9:8"
    p.play("softkick", END, vel=0.8)
    p.play("bell", END, 6, "E4", 0.5)
    p.chords("epiano", END, home, vel=0.7, centre=62)
    p.chords("glass", END, "Eadd9:6", vel=0.4, centre=72)
    p.chords("pad", END, "Eadd9:5", vel=0.4, centre=62, extra=(0.25,))
    p.play("sub", END, 5, "E1", 0.5)
    p.melody("musicbox", END, "E5:.5 B5:.5 E6:.5 F#6:.5 G#6:2", vel=0.55)
    p.melody("keytone", END + 3, "E6:.25 B5:.5", vel=0.4, legato=0.6, pan=0.2)
    p.play("click", END + 4.5, 0.1, "C6", 0.35)


def compose(p):
    theme_a(p)
    theme_b(p)
    both(p)
    let_go(p)

"""Beats 0 to 52: the phone wakes, the logo, the torn title."""

from score.themes import A, A2, A2_CHORDS, A2_UNDER, A_CHORDS, PICKUP


def phone_wakes(p):
    """0 - 8: clicks and key tones that try out the theme; a glass fifth opens; it spins at 4.5."""
    p.play("click", 0, 0.1, "C6", 0.9)
    p.play("buzz", 0.02, 0.7, vel=0.55)
    p.chords("glass", 0.2, "Dsus2:8.3", vel=0.55, centre=66)
    p.play("drone", 1, 8, "D2", 0.3)
    p.melody("keytone", 1, "A5:.5 r:.5 D6:.5 r:.5 E6:.5 F6:1 r:.25", vel=0.75, legato=0.5, pan=-0.1)
    p.play("click", 4, 0.1, "E6", 0.8, 0.2)
    p.melody("keytone", 4, "E6:.25 C6:.25", vel=0.7, legato=0.6, pan=0.2)
    p.play("whoosh", 3.9, 1.5, "G#4", 0.5, -0.9)
    p.play("keytone", 4.5, 1.2, "D6", 0.85, extra=(2,))
    p.melody("keytone", 5.75, "A5:.25 D6:.5", vel=0.55, legato=0.6, pan=-0.3)
    p.play("whoosh", 6.1, 0.9, "C4", 0.3, 0.8)
    p.pattern("click", 6, "o.o.x.x.", note="C6", vel=0.7, human=0.002)
    p.pattern("rim", 7, "..xX", vel=0.6, pan=0.2)
    p.pattern("snare", 7.5, "-o", vel=0.7)
    p.play("swell", 5, 3, vel=0.55)
    p.arp("pluck", 6, "D5:2", "01234567", grid=0.25, vel=0.25, centre=66, grow=0.6, extra=(0.2,))


def kit(p, first, bars, kick, snare, hat, level=1.0, swing=0.1, hats=0.7):
    """The plain kit over whole bars of four, with one bar of steps for each drum."""
    for bar in range(bars):
        at = first + bar * 4
        p.pattern("kick", at, kick, vel=0.95 * level)
        p.pattern("snare", at, snare, vel=0.8 * level)
        p.pattern("hat", at, hat, vel=hats * level, pan=0.25, human=0.003, swing=swing)


def logo(p):
    """8 - 32: the beat; bass and piano alone, sparkle as the ribbon starts at 11; theme A whistled from 16."""
    vamp = "Dm9:4 Bbmaj9:2 C9sus4:2"
    p.play("hit", 8, vel=0.55)
    p.play("crash", 8, vel=0.6)
    kit(p, 8, 6, "X......xX..x....", "....X..-....X..-", "x.o.x.ooX.o.x.o.", 0.85)
    p.riff("bass", 8, vamp, "R..RO...R.r.F.S.", vel=0.8, extra=(0.4,))
    p.chords("epiano", 8, vamp, vel=0.55, centre=60, steps="x..x..x.....x...", legato=2.2, human=0.003)
    p.pattern("click", 8, "..x...x...x...x." * 6, note="A5", vel=0.5, pan=-0.4, human=0.003)
    # The ribbon.
    p.play("hit", 11, vel=0.35)
    p.arp("pluck", 11, "Dm9:1", "0123456789", grid=0.125, vel=0.6, centre=70, extra=(0.8,))
    p.play("bell", 11, 2, "D6", 0.35, 0.3)
    p.pattern("shaker", 12, "xoxo" * 20, vel=0.55, pan=-0.35, human=0.004, swing=0.1)
    p.arp("pluck", 12, "Bbmaj9:2 C9sus4:2", "0213243", vel=0.3, centre=72, extra=(0.35,), human=0.002)

    p.melody("whistle", 15.5, PICKUP, vel=0.7)
    p.melody("whistle", 16, A, vel=0.85)
    p.chords("epiano", 16, A_CHORDS, vel=0.55, centre=60, steps="x..x..x.....x...", legato=2.2, human=0.003)
    p.chords("pad", 16, A_CHORDS, vel=0.3, centre=60, extra=(0.2,))
    p.riff("bass", 16, A_CHORDS, "R..RO...R.r.F.S.", vel=0.8, extra=(0.45,))
    p.arp("pluck", 16, A_CHORDS, "0..2..1.3..2..4.", vel=0.5, centre=72, extra=(0.7,), human=0.002)
    p.play("whoosh", 19, 1.6, "A3", 0.4, -0.8)
    p.pattern("clap", 24, "....x.......x..." * 2, vel=0.4)
    p.pattern("snare", 23.5, ".o", vel=0.5)
    # Over to the title.
    p.play("swell", 29, 3, vel=0.6)
    p.melody("tom", 31, "A3:.25 A3:.25 F3:.25 D3:.25", vel=0.7, pan=-0.2)
    p.melody("whistle", 31.5, PICKUP, vel=0.7)


def torn_title(p):
    """32 - 52: the answer, with a second voice and strings; the fifth holds everything back from 48."""
    p.play("hit", 32, vel=0.6)
    p.play("crash", 32, vel=0.7)
    kit(p, 32, 4, "X......xX..x..x.", "....X..-.-..X..o", "xoxoxoxoXoxoxoxX", 0.95)
    p.pattern("clap", 32, "....x.......x..." * 4, vel=0.5)
    p.pattern("shaker", 32, "xoxo" * 16, vel=0.45, pan=-0.35, human=0.004, swing=0.1)
    p.melody("whistle", 32, A2, vel=0.85, pan=-0.12)
    p.melody("reed", 32, A2_UNDER, vel=0.75, pan=0.3)
    p.chords("epiano", 32, A2_CHORDS, vel=0.5, centre=60, steps="x..x..x.....x...", legato=2.2, human=0.003)
    p.chords("strings", 32, A2_CHORDS, vel=0.4, centre=66)
    p.riff("bass", 32, A2_CHORDS, "R..RO.R.R.r.F.SO", vel=0.85, extra=(0.5,))
    p.arp("pluck", 32, A2_CHORDS, "0213243543", vel=0.36, centre=74, extra=(0.4,), human=0.002)
    p.pattern("tom", 47, "..xx", note="A2", vel=0.7)
    p.play("swell", 45, 3, vel=0.6)
    # Tension: the ribbon widens.
    wait = "A7sus4:1.5 A7b9:.5 C9sus4:2"
    p.play("hit", 48, vel=0.75)
    p.play("crash", 48, vel=0.5)
    p.riff("bass", 48, "A7sus4:2 C9sus4:2", "RrRrRrRrRrRrRrRr", vel=0.8, extra=(0.7,))
    p.chords("strings", 48, wait, vel=0.55, centre=68, extra=(0.8,))
    p.arp("pluck", 48, wait, "01234321", vel=0.5, centre=72, extra=(0.5,), grow=0.9)
    p.pattern("kick", 48, "X...X...X...X.X.", vel=0.9)
    p.pattern("snare", 48, "........x.x.xxX.", vel=0.75)
    p.melody("reed", 48, "E5:1 F5:1 G5:1 Bb5:1", vel=0.8, pan=0.2)
    p.play("riser", 48, 3.75, "A3", 0.55)
    p.play("swell", 50, 1.75, vel=0.6)


def compose(p):
    phone_wakes(p)
    logo(p)
    torn_title(p)

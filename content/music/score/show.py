"""The piece, section by section."""

from notation import Part, bass_note, parse
from grid import CUTS, HITS
from score import themes


def compose():
    p = Part()
    for bar in range(8, 384, 4):
        full = bar < 104 or 129 <= bar < 208 or 212 <= bar < 256 or bar >= 288
        p.pattern("kick", bar, "X.....x.X.x....." if full else "X...............", vel=0.9)
        if full:
            p.pattern("snare", bar, "....X.......X...", vel=0.7)
            p.pattern("hat", bar, "x.o.x.o.x.o.x.oo", vel=0.5, pan=0.2, extra=(0.05,))
    beat = 0
    while beat < 384:
        text = themes.B_CHORDS if 52 <= beat < 80 or 256 <= beat < 288 or 320 <= beat < 352 else themes.A_CHORDS
        p.chords("pad", beat, text, vel=0.5, extra=(0.3,))
        for symbol, length in parse(text):
            if beat >= 8:
                for i in range(int(length * 2)):
                    p.play("bass", beat + i / 2, 0.4, bass_note(symbol), 0.6 if i % 2 else 0.8, extra=(0.5,))
            beat += length
    for start in (16, 32, 132, 144, 212, 224, 288, 304, 352):
        p.melody("lead", start, themes.A, vel=0.6)
    for start in (56, 64, 256, 272, 320, 336):
        p.melody("epiano", start, themes.B, vel=0.8)
    for bar in range(104, 112, 4):
        p.melody("ring", bar, "D6:.25 F6:.25 A6:.25 F6:.25 D6:.5 r:2.5", vel=0.5)
    for hit in HITS:
        p.play("hit", hit, 1, vel=0.7)
    for first, _ in CUTS[1:]:
        p.play("crash", first, 1, vel=0.6)
    p.chords("epiano", 384, "Dm9:8", vel=0.7)
    return p

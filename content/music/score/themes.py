"""The tunes and harmonies that the whole piece is made of, at their first pitch (A in D minor, B in F major)."""

# Theme A asks (four bars) ...
A_CHORDS = "Dm9:4 Bbmaj9:4 F/A:2 Gm9:2 A7sus4:2 A7:2"
A = """D5:1 E5:.5 F5:1.5 E5:.5 C5:.5 | D5:2.5 A4:.5 C5:.5 D5:.5
     | F5:1 G5:.5 A5:1.5 G5:.5 F5:.5 | E5:1.5 D5:.5 C#5:1 A4:1"""
A_UNDER = """r:1 A4:1 F4:1 G4:1 | F4:1.5 E4:.5 D4:1 F4:1
     | C5:2 Bb4:1 D5:1 | G4:1 A4:1 E4:1 G4:1"""

# ... and answers (four bars).
A2_CHORDS = "Dm9:4 Bbmaj9:4 Gm9:2 C9sus4:2 Dm9:4"
A2 = """D5:1 E5:.5 F5:1.5 G5:.5 A5:.5 | C6:1.5 Bb5:.5 A5:1 F5:1
     | Bb5:1 A5:.5 G5:1.5 F5:.5 E5:.5 | F5:1.5 E5:.5 D5:2"""
A2_UNDER = """r:1 A4:1 A4:1 C5:1 | D5:2 F5:1 D5:1
     | D5:1.5 C5:.5 Bb4:1.5 C5:.5 | A4:1.5 C5:.5 A4:2"""

# Theme B, warm; its last bar is four quarters.
B_CHORDS = "Fmaj9:4 C/E:4 Dm9:4 Bbmaj7:1 F/A:1 Gm7:1 C9sus4:1"
B = """C5:1.5 F5:.5 A5:2 | G5:1.5 F5:.5 E5:1 C5:1
     | D5:1.5 F5:.5 C6:2 | Bb5:1 A5:1 G5:1 F5:1"""
B_UNDER = """A4:2 C5:2 | C5:2 G4:2 | F4:1 A4:1 E5:1 F5:1 | D5:1 C5:1 Bb4:1 C5:1"""

PICKUP = "A4:.5"  # half a beat before theme A

# The telephone: theme A's first bar in sixteenths.
RING = "A5:.25 D6:.25 E6:.25 F6:.25 r:.25 E6:.25 C6:.25 D6:.25"

# Theme A squeezed into bars of seven eighths, in G minor.
SEVEN_CHORDS = "Gm9:3.5 Ebmaj7:3.5 Cm9:3.5 D7sus4:1.5 D7:2"
SEVEN = """G5:.5 A5:.5 Bb5:1 A5:.5 F5:1 | G5:1.5 D5:.5 F5:.5 G5:1
     | Bb5:.5 C6:.5 D6:1 C6:.5 Bb5:1 | A5:1 G5:.5 F#5:1 D5:1"""

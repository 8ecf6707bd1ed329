"""The tunes and the harmonies that the whole piece is made of."""

A_CHORDS = "Dm9:4 Bbmaj9:4 F/A:2 Gm9:2 A7sus4:2 A7:2"
A = """D5:1 E5:.5 F5:1.5 E5:.5 C5:.5 | D5:2.5 A4:.5 C5:.5 D5:.5
     | F5:1 G5:.5 A5:1.5 G5:.5 F5:.5 | E5:1.5 D5:.5 C#5:1 A4:1"""
B_CHORDS = "Fmaj9:4 C/E:4 Dm9:4 Bbmaj9:4"
B = """C5:1.5 F5:.5 A5:2 | G5:1.5 F5:.5 E5:1 C5:1
     | D5:1.5 F5:.5 C6:2 | Bb5:1 A5:1 G5:1 F5:1"""

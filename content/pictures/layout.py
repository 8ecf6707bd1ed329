"""Where things lie in the pictures that the code cuts up: known to those who paint and to those who check."""

# The order of the glyph sheet: 32 cells to a row, 97 in all; blanks and the diaeresis stay empty.
GLYPHS = ("@abcdefghijklmnopqrstuvwxyz[$]^^ " + "".join(map(chr, range(0x21, 0x40))) + "-"
          + "ABCDEFGHIJKLMNOPQRSTUVWXYZ" + "+ |  \u00a8")
EMPTY = " \u00a8"
CELL = (24, 96)

# The left edge of the first of the four letters' cells, and their width, as parts of the picture's.
LETTERS_FROM, LETTER_WIDTH = 0.01, 0.262

# The wall of credits, and the left top corners of the windows in which the view rests.
WALL = (2048, 1024)
WINDOWS = ((-140, -30), (700, 420), (450, 462), (1200, 20))
WINDOW = (854, 480)

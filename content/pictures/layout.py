"""What those who paint and those who check both know: where things lie in pictures that the code cuts up."""

import ast
import os
import re


def glyphs():
    """The order of the glyph sheet, as the code that looks glyphs up has it."""
    source = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "src", "glyphs.cpp")
    with open(source, encoding="utf-8") as file:
        literals = re.search(r"\bfont = (.*?);\n", file.read(), re.S).group(1)
    return "".join(ast.literal_eval(piece) for piece in re.findall(r'U("(?:[^"\\]|\\.)*")', literals))


# 32 cells to a row, from the top; blanks and the diaeresis have no letter.
GLYPHS = glyphs()
EMPTY = " \u00a8"
CELL = (24, 96)


def drawn():
    """The part of a cell that is drawn: left, right, top, bottom, in texels."""
    return 0.01 * CELL[0], 0.96 * CELL[0], 0.04 * CELL[1], 0.96 * CELL[1]


# The left edge of the first of the four letters' cells, and their width, as parts of the picture's.
LETTERS_FROM, LETTER_WIDTH = 0.01, 0.262

# The wall of credits, and what of it stays in sight while the view rests at each of its four stops: left, top, right,
# bottom. A random kick a frame keeps it swinging some 40 pixels about its mark, after a first swing of 100 beyond.
WALL = (2048, 1024)
STOPS = ((0, 24, 650, 380), (860, 535, 1510, 865), (480, 540, 1220, 895), (1375, 60, 1960, 385))

# One family, its weight in the name, and the package that has it.
TYPE = "/usr/share/fonts/opentype/yanone-kaffeesatz/YanoneKaffeesatz-%s.otf"
FONTS = {"fonts-yanone-kaffeesatz": TYPE % "Bold"}

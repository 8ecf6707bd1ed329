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


# 32 cells to a row, from the top; blanks and the diaeresis stay empty.
GLYPHS = glyphs()
EMPTY = " \u00a8"
CELL = (24, 96)

# The left edge of the first of the four letters' cells, and their width, as parts of the picture's.
LETTERS_FROM, LETTER_WIDTH = 0.01, 0.262

# The wall of credits, and the left top corners of the windows in which the view rests.
WALL = (2048, 1024)
WINDOWS = ((-140, -30), (700, 420), (450, 462), (1200, 20))
WINDOW = (854, 480)

# One family, its weight in the name, and the package that has it.
TYPE = "/usr/share/fonts/opentype/yanone-kaffeesatz/YanoneKaffeesatz-%s.otf"
FONTS = {"fonts-yanone-kaffeesatz": TYPE % "Bold"}

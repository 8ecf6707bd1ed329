"""The city's texture: strips and swatches, each with a place of its own.

Facades lie on their side: u runs up the building, v across it, so that a tower needs one quad a side, whatever its
height. Each is there once for walls seen from far, two side by side; what the camera comes close to has a fine
picture as well, as high and narrower. Alpha is what glows at night.
"""
WIDTH, HEIGHT = 2048, 1024
TEXELS_PER_UNIT = 2.0  # of all but the fine strips
FINE = 2  # their texels for each of the others
CELL = 16  # texels of a facade's module, both ways: a window or two
MODULE = CELL / TEXELS_PER_UNIT
GUTTER = 2

FACADES = ["glass", "stone", "ribbon", "brick", "balcony", "dark", "deco", "grid", "azure", "slate"]
FINE_FACADES = ["stone", "brick", "azure", "deco", "grid", "ribbon"]
NEAR_BY = {"glass": "azure", "dark": "grid", "balcony": "brick", "slate": "ribbon"}  # what stands in for the others
FACADE_HEIGHT = 1024
FLOORS = FACADE_HEIGHT // CELL
FACADE_COLUMNS, FINE_COLUMNS = 5, 2

# Roofs are square pictures side by side, each stretched over one roof.
ROOFS = ["gravel", "plant", "helipad", "garden", "skylight", "membrane", "terrace", "solar"]
ROOF_SIZE = 128

# Streets: three lengths between crossings, kerb to kerb, then the crossing itself.
STREET_WIDTH = 30.0
STREET_RUN = 170.0
ROAD_LENGTHS = 3
ROAD_ROWS = int(STREET_WIDTH * TEXELS_PER_UNIT)
ROAD_RUN = int(STREET_RUN * TEXELS_PER_UNIT)

SIGN_SIZE = (192, 96)
SIGNS = 4


def fine(facade):
    return f"fine {facade}"


def layout():
    """{name: (left, top, width, height)} in texels of the picture."""
    places, row = {}, GUTTER
    for left, right in zip(FACADES[::2], FACADES[1::2]):
        for column, name in ((0, left), (FACADE_HEIGHT, right)):
            places[name] = (column, row, FACADE_HEIGHT, FACADE_COLUMNS * CELL)
        row += FACADE_COLUMNS * CELL + 2 * GUTTER
    for name in FINE_FACADES:
        places[fine(name)] = (0, row, FACADE_HEIGHT * FINE, FINE_COLUMNS * CELL * FINE)
        row += FINE_COLUMNS * CELL * FINE + 2 * GUTTER
    for height, shelf in ((ROOF_SIZE, (("roof", ROOF_SIZE * len(ROOFS), ROOF_SIZE), ("sign", SIGN_SIZE[0] * SIGNS, 96),
                                       ("metal", 224, 32))),
                          (ROAD_ROWS, (("road", ROAD_RUN * ROAD_LENGTHS, ROAD_ROWS), ("crossing", 60, ROAD_ROWS),
                                       ("pavement", ROAD_RUN, ROAD_ROWS), ("park", ROAD_RUN, ROAD_ROWS)))):
        column = 0
        for name, width, rows in shelf:
            places[name] = (column, row, width, rows)
            column += width + 2 * GUTTER
        assert column <= WIDTH, column
        row += height + 2 * GUTTER
    left, top, _, rows = places["metal"]
    places["light"] = (left, top + rows + 2 * GUTTER, 192, 32)
    assert row <= HEIGHT + GUTTER, row
    return places


PLACES = layout()


def size(name):
    """(rows, columns) of a picture in the atlas."""
    return PLACES[name][3], PLACES[name][2]


def uv(name, along, across, jump=(0, 0)):
    """Texture coordinates of texel (along, across) of a picture, some whole textures away."""
    left, top, _, _ = PLACES[name]
    return (left + along) / WIDTH + jump[0], 1 - (top + across) / HEIGHT + jump[1]

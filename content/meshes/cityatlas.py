"""The city's texture: horizontal strips that wrap in u.

Facades lie on their side: u runs up the building (one texture width is 512 units), v across it. So a tower needs
one quad a side, whatever its height. Alpha is what glows at night.
"""
WIDTH, HEIGHT = 1024, 2048
TEXELS_PER_UNIT = 2.0
FINER = 2  # the picture has so many texels along u for each of the layout's: facades are seen from near
CELL = 16  # texels of a facade's module, both ways: a window or two
MODULE = CELL / TEXELS_PER_UNIT
GUTTER = 4

FACADE_ROWS = 128
FACADE_COLUMNS = FACADE_ROWS // CELL
FACADES = ["glass", "stone", "ribbon", "brick", "balcony", "dark", "deco", "grid", "azure", "slate"]

# Roofs are square pictures side by side, each stretched over one roof.
ROOFS = ["gravel", "plant", "helipad", "garden", "skylight", "membrane", "terrace", "solar"]
ROOF_SIZE = 128

# Streets: three lengths between crossings, kerb to kerb, then the crossing itself.
STREET_WIDTH = 30.0
STREET_RUN = 170.0
ROAD_LENGTHS = 3

STRIPS_BELOW = [("roof", ROOF_SIZE), ("road", 60), ("crossing", 60), ("pavement", 64), ("park", 128),
                ("metal", 32), ("light", 32), ("sign", 96)]
SIGN_SIZE = (192, 96)


def layout():
    strips, row = {}, GUTTER
    for name, rows in [(name, FACADE_ROWS) for name in FACADES] + STRIPS_BELOW:
        strips[name] = (row, rows)
        row += rows + 2 * GUTTER
    assert row <= HEIGHT, row
    return strips


STRIPS = layout()


def uv(strip, along, across, jump=(0, 0)):
    """Texture coordinates of texel (along, across) of a strip, some whole textures away."""
    row, _ = STRIPS[strip]
    return along / WIDTH + jump[0], 1 - (row + across) / HEIGHT + jump[1]

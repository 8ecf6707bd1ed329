"""The city's texture: strips and swatches, each with a place of its own.

Facades lie on their side: u runs up the building, v across it. A strip is as wide as most walls and as high as most
towers, so that few need more than one quad. Each is there once for walls seen from far; what the camera comes close
to has a fine picture as well.
Alpha is what glows at night.
"""
WIDTH, HEIGHT = 2048, 1024
TEXELS_PER_UNIT = 2.0  # of all but the fine strips
MODULE = 8.0  # units of a facade, both ways: a window or two
UP, FINE_UP = 16, 32  # a module's texels up the building, in a strip seen from far and in a fine one
GUTTER = 2

FACADES = ["glass", "stone", "ribbon", "brick", "balcony", "dark", "deco", "grid", "azure", "slate"]
COLUMNS = 8  # modules across
# A module's texels across are fewer: they lie far apart in memory. Glass stands beside the camera's way, just not near.
ACROSS, FINE_ACROSS = dict.fromkeys(FACADES, 8) | {"glass": 16}, 24
FINE_COLUMNS = {"grid": 6, "azure": 8, "brick": 8, "deco": 8, "ribbon": 3, "stone": 3}
NEAR_BY = {"glass": "azure", "dark": "grid", "balcony": "brick", "slate": "ribbon"}  # what stands in for the others
FLOORS = dict.fromkeys(FACADES, 32) | {"grid": 40}
SHOPS = 2  # floors, the lowest

# Roofs are square pictures side by side, each stretched over one roof.
ROOFS = ["gravel", "plant", "helipad", "garden", "skylight", "membrane", "terrace", "solar"]
ROOF_SIZE = 128

# Streets: three pieces, each from the middle of a crossing to the middle of the next, kerb to kerb.
STREET_WIDTH, STREET_LENGTH = 30.0, 200.0
STREETS = ["street 0", "street 1", "street 2"]
STREET_SIZE = (int(STREET_LENGTH * TEXELS_PER_UNIT), int(STREET_WIDTH * TEXELS_PER_UNIT))

SIGN_SIZE = (192, 96)
SIGNS = 4


def fine(facade):
    return f"fine {facade}"


def modules(strip):
    """Of a facade's strip: how many modules it has across, and a module's texels up and across."""
    facade = strip.removeprefix("fine ")
    return (COLUMNS, UP, ACROSS[facade]) if facade == strip else (FINE_COLUMNS[facade], FINE_UP, FINE_ACROSS)


def all_sizes():
    """{name: (width, height)} of the pictures in texels."""
    sizes = {}
    for name in FACADES:
        for strip in (name, fine(name)) if name in FINE_COLUMNS else (name,):
            columns, up, across = modules(strip)
            sizes[strip] = FLOORS[name] * up, columns * across
    sizes |= dict.fromkeys(STREETS, STREET_SIZE)
    return sizes | {"roof": (ROOF_SIZE * len(ROOFS), ROOF_SIZE), "sign": (SIGN_SIZE[0] * SIGNS, SIGN_SIZE[1]),
                    "metal": (224, 32), "light": (192, 32), "pavement": (256, 60), "park": (340, 60)}


def layout():
    """{name: (left, top, width, height)} in texels of the picture."""
    sizes, places = all_sizes(), {}

    def shelf(left, top, *names):
        """Puts pictures side by side and returns the row under them."""
        for name in names:
            width, height = sizes[name]
            places[name] = (left, top, width, height)
            assert left + width <= WIDTH and top + height <= HEIGHT, name
            # Two facades may touch: the left one's gutter covers no more than the right one's pavement.
            left += width + (0 if name in FACADES else 2 * GUTTER)
        return max(top + sizes[name][1] for name in names) + 2 * GUTTER

    wide, middle = sizes[fine("grid")][0], WIDTH // 2
    left = shelf(0, GUTTER, fine("grid"))
    right = max(left, shelf(wide, shelf(wide, GUTTER, "grid"), "metal", "light"))
    for name in FINE_COLUMNS:
        if name != "grid":
            left = shelf(0, left, fine(name))
    shelf(0, left, "roof")
    for names in (("glass", "stone"), ("ribbon", "brick"), ("balcony", "dark"), ("deco", "azure"), ("slate",),
                  ("street 0", "street 1"), ("street 2", "park", "pavement"), ("sign",)):
        right = shelf(middle, right, *names)
    return places


PLACES = layout()


def size(name):
    """(rows, columns) of a picture in the atlas."""
    return PLACES[name][3], PLACES[name][2]


def uv(name, along, across, jump=(0, 0)):
    """Texture coordinates of texel (along, across) of a picture, some whole textures away."""
    left, top, _, _ = PLACES[name]
    return (left + along) / WIDTH + jump[0], 1 - (top + across) / HEIGHT + jump[1]

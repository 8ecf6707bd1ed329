"""Cuts the city down to a film set: what no flight sees goes, and within a block what hides most comes first.

The show draws blocks in a fixed order, mostly far to near, and each block's triangles in the mesh's order, with a
depth test: a triangle that comes before those that it hides saves their shading.
"""
import numpy as np

import obj
import sight

# Pixels: in all views together, in one of them, of a wall's foot, and after the city has flown apart. What shows less
# is not missed: through a gap one sees the next wall, or the same building's other side from within.
LEAST, LEAST_AT_ONCE, LEAST_FOOT, LEAST_BURST = 800, 80, 200, 2000
FOOT = 10.0  # of a wall is kept below what is seen of it
STEP, STEPS = 10.0, 61  # of heights
SEEN_EVERY, WORTH_EVERY, LAYERS_EVERY = 12, 24, 40  # ticks
PASSES = 4
# Of a second look at what is left: pixels seen for each pixel's cost, and pixels in one view that are kept anyway.
WORTH, WORTH_AT_ONCE = 0.05, 500
SKYLINE = 60  # pixels for which one counts behind which there is nothing but the sky
CELLS, CELL_AT_ONCE = 32, 40  # across a parallelogram, from whose sides cells are cut


class Seen:
    """What the flights see of each triangle: pixels in all, the most in one view, and from which height on."""

    def __init__(self, stage):
        self.pixels, self.most, self.burst = np.zeros((3, stage.faces), int)
        self.ground = (stage.arrays["pos"][:, 1].reshape(-1, 3) == 0).all(1)
        self.heights = np.zeros((stage.faces, STEPS), int)  # the same pixels by how high on the triangle they are
        for frame in sight.views(SEEN_EVERY):
            names, heights = stage.names(frame)
            names, steps = names[names >= 0], (heights[names >= 0] / STEP).astype(int)
            pixels = np.bincount(names, minlength=stage.faces)
            if frame["bomb"] > sight.BURST:
                self.burst += pixels
                continue
            self.pixels += pixels
            self.most = np.maximum(self.most, pixels)
            self.heights += np.bincount(names * STEPS + steps, minlength=stage.faces * STEPS).reshape(-1, STEPS)

    def kept(self):
        enough = (self.pixels >= LEAST) | (self.most >= LEAST_AT_ONCE) | (self.burst >= LEAST_BURST)
        return enough | (self.ground & (self.pixels > 0))  # a gap in the ground would show the burning sky

    def foot(self, faces):
        """From which height on these triangles are seen."""
        below = np.cumsum(self.heights[faces].sum(0))
        return STEP * np.searchsorted(below, min(LEAST_FOOT, below[-1]), side="right")


class Worth:
    """What each triangle shows beside what drawing it costs; of parallelograms also by where on them."""

    def __init__(self, stage):
        self.pixels, self.most, self.burst, self.cost = np.zeros((4, stage.faces))
        self.sides, self.sides_most = np.zeros((2, 2, stage.faces, CELLS))  # along, up
        for frame in sight.views(WORTH_EVERY):
            names, places = stage.places(frame)
            weights = np.where(stage.last(frame) == names, SKYLINE, 1)[names >= 0]
            places, names = places[names >= 0] * CELLS // 256, names[names >= 0]
            pixels = np.bincount(names, weights, stage.faces)
            if frame["bomb"] > sight.BURST:
                self.burst += pixels
                continue
            self.cost += stage.costs(frame)
            self.pixels += pixels
            self.most = np.maximum(self.most, pixels)
            for axis in (0, 1):
                cells = np.bincount(names * CELLS + places[:, axis], weights, stage.faces * CELLS)
                self.sides[axis] += cells.reshape(-1, CELLS)
                self.sides_most[axis] = np.maximum(self.sides_most[axis], cells.reshape(-1, CELLS))

    def kept(self, ground):
        worth = (self.pixels >= WORTH * self.cost) | (self.most >= WORTH_AT_ONCE) | (self.burst >= LEAST_BURST)
        return worth | ground

    def part(self, quad, axis, ground):
        """The part of a parallelogram that is worth drawing, from 0 to 1, a cell more than that at either end."""
        least = 0 if ground else WORTH * self.cost[quad:quad + 2].sum() / CELLS
        seen = self.sides[axis, quad:quad + 2].sum(0) > least
        seen |= self.sides_most[axis, quad:quad + 2].sum(0) > (0 if ground else CELL_AT_ONCE)
        cells = np.flatnonzero(seen)
        if not len(cells):
            return 0.0, 1.0
        return max(cells[0] - 1, 0) / CELLS, min(cells[-1] + 2, CELLS) / CELLS


def rectangle(corners, along, up):
    """The corners of a part of a parallelogram, from and to in 0 to 1."""
    return [corners[0] + s * (corners[1] - corners[0]) + t * (corners[3] - corners[0])
            for s, t in ((along[0], up[0]), (along[1], up[0]), (along[1], up[1]), (along[0], up[1]))]


def trimmed(mesh, stage):
    """The mesh without faces, and without margins of faces, that show too little for what they cost."""
    worth, ground = Worth(stage), (stage.corners[..., 1] == 0).all(1)
    positions, texcoords, normals, faces = mesh.arrays()
    kept = worth.kept(ground)
    quads = set(stage.quads[kept[stage.quads] & kept[stage.quads + 1]])
    slim = obj.Mesh()
    for face, corners in enumerate(faces):
        if face in quads:
            four = np.append(corners, faces[face + 1][2:], 0)
            parts = [worth.part(face, axis, ground[face]) for axis in (0, 1)]
            slim.quad(*(rectangle(kind[four[:, k]], *parts) for k, kind in enumerate((positions, texcoords, normals))))
        elif kept[face] and face - 1 not in quads:
            slim.triangle(*(kind[corners[:, k]] for k, kind in enumerate((positions, texcoords, normals))))
    return slim


def hidden_pixels(stage, members):
    """For each block a matrix: how many fragments of its triangle j its triangle i hides, one nearer by hides first.

    Fragments that an earlier block hides are shaded in no order and do not count.
    """
    place = np.zeros(stage.faces, int)
    for block in members:
        place[block] = np.arange(len(block))
    hides = [np.zeros((len(block), len(block))) for block in members]
    for frame in sight.views(LAYERS_EVERY, sight.FLIGHTS[:1]):
        names, turns = stage.layers(frame)
        for b in range(1, len(names)):
            alive = (names[b] >= 0) & (np.min(turns[:b], 0) >= turns[b])
            for a in range(b):
                pair = alive & (turns[a] == turns[b])
                front, back = names[a][pair], names[b][pair]
                block = turns[b][pair] % len(members)
                for k in np.unique(block):
                    n = len(members[k])
                    code = place[front[block == k]] * n + place[back[block == k]]
                    hides[k] += np.bincount(code, minlength=n * n).reshape(n, n)
    return hides


def best_order(hides):
    """An order of few fragments drawn before what hides them: by balance, then each where it costs least."""
    gain = hides - hides.T
    order = list(np.argsort(-gain.sum(1), kind="stable"))
    for _ in range(PASSES):
        for item in range(len(order)):
            order.remove(item)
            # Put at position p, it comes after the first p of the others.
            costs = np.concatenate([[0], np.cumsum(gain[item, order])])
            order.insert(int(np.argmin(costs)), item)
    return order


def cut(build):
    """The city that `build(feet)` builds, without what is not seen: the mesh, and what was cut.

    feet: from which height on each wall is to stand, by its number; unnamed ones on the ground.
    """
    whole, walls = build({})
    seen = Seen(sight.Stage(*whole.arrays()))
    mesh, _ = build({number: seen.foot(faces) - FOOT for number, faces in enumerate(walls)})
    kept = seen.kept()
    mesh.keep(np.flatnonzero(kept))
    mesh = trimmed(mesh, sight.Stage(*mesh.arrays()))
    stage = sight.Stage(*mesh.arrays())
    members = [np.flatnonzero(stage.blocks[:, 0] == b) for b in range(sight.COLUMNS ** 2)]
    mesh.keep(np.concatenate([block[best_order(hides)]
                              for block, hides in zip(members, hidden_pixels(stage, members))]))
    return mesh, f"{(~kept).sum()} of {len(kept)} faces never seen"

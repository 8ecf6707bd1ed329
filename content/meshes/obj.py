"""Triangle meshes, written the way the show's loader reads them.

The loader takes triangles only, every corner as position/texture/normal, and reads the file's last line twice:
so the last line is a comment.
"""
import numpy as np


def number(x):
    return np.format_float_positional(np.float32(x) + np.float32(0), unique=True, trim="-")


class Mesh:
    """Triangles with shared, deduplicated records."""

    def __init__(self):
        self.positions, self.texcoords, self.normals = {}, {}, {}
        self.faces = []

    @staticmethod
    def index(records, values):
        return records.setdefault(" ".join(number(v) for v in values), len(records) + 1)

    def triangle(self, positions, texcoords, normals):
        self.faces.append([(self.index(self.positions, p), self.index(self.texcoords, t),
                            self.index(self.normals, n))
                           for p, t, n in zip(positions, texcoords, normals)])

    def quad(self, positions, texcoords, normals):
        """Four corners counter-clockwise seen from outside; one normal or four."""
        if np.ndim(normals[0]) == 0:
            normals = [normals] * 4
        for corners in ((0, 1, 2), (0, 2, 3)):
            self.triangle(*([record[c] for c in corners] for record in (positions, texcoords, normals)))

    def arrays(self):
        """As `read` gives them."""
        records = (np.array([[float(x) for x in record.split()] for record in kind])
                   for kind in (self.positions, self.texcoords, self.normals))
        return *records, np.array(self.faces) - 1

    def keep(self, order):
        """Keeps these triangles alone, in this order, and the records that they use."""
        kinds = (self.positions, self.texcoords, self.normals)
        names = [list(kind) for kind in kinds]
        faces, self.faces = self.faces, []
        for kind in kinds:
            kind.clear()
        for face in order:
            self.faces.append([tuple(self.index(kind, map(float, name[i - 1].split()))
                                     for kind, name, i in zip(kinds, names, corner)) for corner in faces[face]])

    def write(self, path, title):
        with open(path, "w", newline="\n") as out:
            out.write(f"# {title}\n")
            for key, records in (("v", self.positions), ("vt", self.texcoords), ("vn", self.normals)):
                for record in records:
                    out.write(f"{key} {record}\n")
            for face in self.faces:
                out.write("f " + " ".join(f"{p}/{t}/{n}" for p, t, n in face) + "\n")
            out.write("# end\n")
        return (f"{len(self.positions)} positions, {len(self.texcoords)} texture coordinates, "
                f"{len(self.normals)} normals, {len(self.faces)} faces")


def read(path):
    """Arrays of a mesh file: positions, texcoords, normals, faces (n, 3 corners, 3 indices from 0)."""
    records = {"v": [], "vt": [], "vn": [], "f": []}
    for line in open(path):
        key, _, rest = line.strip().partition(" ")
        if key == "f":
            records["f"].append([[int(i) - 1 for i in corner.split("/")] for corner in rest.split()])
        elif key in records:
            records[key].append([float(x) for x in rest.split()])
    return tuple(np.array(records[key]) for key in ("v", "vt", "vn", "f"))

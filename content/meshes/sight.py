"""What the city's camera sees: the flights drawn with one colour a triangle.

Every flight, several shakes of the last one, and machines of one to four ticks a frame are flown; each view is drawn
as the show draws it (its order of copies and blocks, its depth test, its explosion), off-screen, by any GL.
"""
import functools
import os

os.environ.setdefault("PYOPENGL_PLATFORM", "egl")
os.environ.setdefault("EGL_PLATFORM", "surfaceless")

import numpy as np
from OpenGL import EGL, GL

import flight
import obj

WIDTH, HEIGHT = 854, 480
TILE, COLUMNS, BLOCK = 800.0, 4, 200.0
BURST = 1.4  # from this bomb on the city flies apart
FLIGHTS = ((1, 1), (2, 1), (3, 2), (4, 3), (5, 4))  # shake's seed, ticks a frame

HIGHEST = 600.0
VERTEX = "#define HIGHEST %.1f\n" % HIGHEST + """
attribute vec3 pos, nor;
attribute vec2 uv;
attribute vec4 name;
attribute vec2 place;
uniform mat4 mvp;
uniform float bomb2;
varying vec4 v_name;
varying vec2 v_place;
varying float v_height;
void main() {
    v_height = pos.y / HIGHEST;
    v_place = place;
    vec3 pos2 = pos + (nor.yzx + uv.yxy) * bomb2;
    gl_Position = mvp * vec4(pos2, 1.0);
    v_name = name;
}
"""
FRAGMENT = """
varying vec4 v_name;
varying vec2 v_place;
varying float v_height;
uniform float count, turn;
uniform bool peeled, placed;
uniform sampler2D before;
uniform vec2 size;
void main() {
    if (peeled && gl_FragCoord.z <= texture2D(before, gl_FragCoord.xy / size).r)
        discard;
    gl_FragColor = count > 0.0 ? vec4(count) : vec4(v_name.rg, placed ? v_place : vec2(turn, v_height));
}
"""
LAYERS = 8
HIDDEN_COST, EDGE_COST, FACE_COST = 0.05, 0.55, 75.0  # of a hidden pixel, a pixel of length, a triangle; measured


@functools.lru_cache(maxsize=1)
def open_gl():
    """Makes a context with a target of the show's size current and returns the program that draws in it."""
    display = EGL.eglGetDisplay(EGL.EGL_DEFAULT_DISPLAY)
    EGL.eglInitialize(display, None, None)
    EGL.eglBindAPI(EGL.EGL_OPENGL_API)
    wanted = [EGL.EGL_SURFACE_TYPE, EGL.EGL_PBUFFER_BIT, EGL.EGL_RENDERABLE_TYPE, EGL.EGL_OPENGL_BIT,
              EGL.EGL_RED_SIZE, 8, EGL.EGL_ALPHA_SIZE, 8, EGL.EGL_DEPTH_SIZE, 24, EGL.EGL_NONE]
    configs, count = (EGL.EGLConfig * 1)(), EGL.EGLint()
    EGL.eglChooseConfig(display, (EGL.EGLint * len(wanted))(*wanted), configs, 1, count)
    size = [EGL.EGL_WIDTH, WIDTH, EGL.EGL_HEIGHT, HEIGHT, EGL.EGL_NONE]
    surface = EGL.eglCreatePbufferSurface(display, configs[0], (EGL.EGLint * len(size))(*size))
    context = EGL.eglCreateContext(display, configs[0], EGL.EGL_NO_CONTEXT, None)
    EGL.eglMakeCurrent(display, surface, surface, context)
    GL.glEnable(GL.GL_DEPTH_TEST)
    GL.glViewport(0, 0, WIDTH, HEIGHT)
    return build_program()


def build_program():
    program = GL.glCreateProgram()
    for kind, source in ((GL.GL_VERTEX_SHADER, VERTEX), (GL.GL_FRAGMENT_SHADER, FRAGMENT)):
        shader = GL.glCreateShader(kind)
        GL.glShaderSource(shader, source)
        GL.glCompileShader(shader)
        assert GL.glGetShaderiv(shader, GL.GL_COMPILE_STATUS), GL.glGetShaderInfoLog(shader)
        GL.glAttachShader(program, shader)
    GL.glLinkProgram(program)
    assert GL.glGetProgramiv(program, GL.GL_LINK_STATUS), GL.glGetProgramInfoLog(program)
    GL.glUseProgram(program)
    return program


def peel_target():
    """(framebuffer, its depth texture)"""
    frame_buffer = GL.glGenFramebuffers(1)
    GL.glBindFramebuffer(GL.GL_FRAMEBUFFER, frame_buffer)
    textures = GL.glGenTextures(2)
    for texture, place, inside, kind, data in (
            (textures[0], GL.GL_COLOR_ATTACHMENT0, GL.GL_RGBA8, GL.GL_RGBA, GL.GL_UNSIGNED_BYTE),
            (textures[1], GL.GL_DEPTH_ATTACHMENT, GL.GL_DEPTH_COMPONENT32F, GL.GL_DEPTH_COMPONENT, GL.GL_FLOAT)):
        GL.glBindTexture(GL.GL_TEXTURE_2D, texture)
        GL.glTexImage2D(GL.GL_TEXTURE_2D, 0, inside, WIDTH, HEIGHT, 0, kind, data, None)
        GL.glTexParameteri(GL.GL_TEXTURE_2D, GL.GL_TEXTURE_MIN_FILTER, GL.GL_NEAREST)
        GL.glTexParameteri(GL.GL_TEXTURE_2D, GL.GL_TEXTURE_MAG_FILTER, GL.GL_NEAREST)
        GL.glFramebufferTexture2D(GL.GL_FRAMEBUFFER, place, GL.GL_TEXTURE_2D, texture, 0)
    return frame_buffer, textures[1]


def read_pixels():
    pixels = np.frombuffer(GL.glReadPixels(0, 0, WIDTH, HEIGHT, GL.GL_RGBA, GL.GL_UNSIGNED_BYTE), np.uint8)
    return pixels.reshape(HEIGHT, WIDTH, 4).astype(np.int32)


def name_of(rgba):
    return rgba[..., 0] + (rgba[..., 1] << 8) - 1


def column(v):
    return np.clip(np.floor(np.float32(v) / BLOCK).astype(int) + 2, 0, COLUMNS - 1)


def parallelograms(positions, texcoords, faces):
    """The first faces of those pairs that make a flat parallelogram, in the city and in the picture."""
    first, second = faces[:-1], faces[1:]
    pair = (first[:, 0] == second[:, 0]).all(1) & (first[:, 2] == second[:, 1]).all(1)
    pair &= (np.concatenate([first, second], 1)[..., 2] == first[:, :1, 2]).all(1)  # one normal
    for records, corner, most in ((positions, 0, 0.01), (texcoords, 1, 1e-5)):
        a, b, c, d = (records[corners[..., corner]] for corners in (first[:, 0], first[:, 1], first[:, 2], second[:, 2]))
        pair &= np.abs(a + c - b - d).max(1) < most
    return np.flatnonzero(pair)


class Stage:
    """A city's triangles, ready to be drawn from anywhere in the flights."""

    def __init__(self, positions, texcoords, normals, faces):
        self.program = open_gl()
        self.corners = corners = positions[faces[..., 0]].astype(np.float32)
        self.faces = len(faces)
        names = np.arange(1, self.faces + 1)
        colours = np.stack([names & 255, names >> 8 & 255, names * 0, names * 0 + 255], 1).astype(np.uint8)
        self.arrays = {"pos": corners, "uv": texcoords[faces[..., 1]].astype(np.float32),
                       "nor": normals[faces[..., 2]].astype(np.float32),
                       "name": np.repeat(colours, 3, 0),
                       "place": np.zeros((len(faces), 3, 2), np.float32)}
        self.quads = parallelograms(positions, texcoords, faces)
        self.arrays["place"][self.quads] = (0, 0), (1, 0), (1, 1)
        self.arrays["place"][self.quads + 1] = (0, 0), (1, 1), (0, 1)
        self.arrays = {name: np.ascontiguousarray(a.reshape(self.faces * 3, -1)) for name, a in self.arrays.items()}
        self.blocks = column(corners[..., 0]) + COLUMNS * column(corners[..., 2])
        self.lists = [np.flatnonzero((self.blocks == b).any(1)) for b in range(COLUMNS ** 2)]
        self.lists = [np.uint32(3 * f[:, None] + (0, 1, 2)).ravel() for f in self.lists]
        self.projection = flight.perspective()

    def attach(self):
        for name, array in self.arrays.items():
            place = GL.glGetAttribLocation(self.program, name)
            if place >= 0:
                GL.glEnableVertexAttribArray(place)
                kind = GL.GL_UNSIGNED_BYTE if array.dtype == np.uint8 else GL.GL_FLOAT
                GL.glVertexAttribPointer(place, array.shape[1], kind, kind == GL.GL_UNSIGNED_BYTE, 0, array)

    def draw(self, frame, count=0.0):
        """Draws a frame of the flight: the triangles' names, or what each fragment adds."""
        for _ in self.draw_by_turns(frame, count):
            pass

    def draw_by_turns(self, frame, count=0.0):
        """Draws a frame block by block, and yields each one's turn."""
        self.attach()
        GL.glClearColor(0, 0, 0, 0)
        GL.glClear(GL.GL_COLOR_BUFFER_BIT | GL.GL_DEPTH_BUFFER_BIT)
        uniform = lambda name: GL.glGetUniformLocation(self.program, name)
        GL.glUniform1f(uniform("count"), count)
        GL.glUniform1f(uniform("bomb2"), max(frame["bomb"] - BURST, 0) * 900)
        for copy, mvp, seen in self.copies(frame):
            GL.glUniformMatrix4fv(uniform("mvp"), 1, True, mvp.astype(np.float32))
            for b in seen:
                turn = copy * len(self.lists) + b
                GL.glUniform1f(uniform("turn"), turn / 255)
                GL.glDrawElements(GL.GL_TRIANGLES, len(self.lists[b]), GL.GL_UNSIGNED_INT, self.lists[b])
                yield turn

    def copies(self, frame):
        """The tile's copies in the order of drawing: number, matrix and blocks of each that has blocks in sight."""
        eye = frame["eye"]
        origin = np.floor((eye + (TILE / 2, 0, TILE / 2)) / TILE) * TILE
        side = self.projection @ frame["view"]
        planes = [side[3] + sign * side[axis] for axis in (0, 1) for sign in (1, -1)]
        for x, z in np.ndindex(3, 3):
            offset = origin + ((x - 1) * TILE, 0, (z - 1) * TILE)
            seen = [b for b in range(len(self.lists)) if len(self.lists[b]) and self.in_sight(b, offset, frame, planes)]
            if seen:
                yield 3 * x + z, side @ flight.translation(offset), seen

    @staticmethod
    def in_sight(block, offset, frame, planes):
        centre = offset + (block % COLUMNS * BLOCK - 300, 0, block // COLUMNS * BLOCK - 300)
        if np.linalg.norm(centre - frame["eye"]) > frame["distance"]:
            return False
        low, high = centre - (100, 0, 100), centre + (100, 585, 100)
        return all(p[:3] @ np.where(p[:3] >= 0, high, low) + p[3] >= 0 for p in planes)

    def names(self, frame):
        """Which triangle each pixel shows, -1 for none; and how high on it the pixel is, within a few units."""
        self.draw(frame)
        rgba = read_pixels()
        return name_of(rgba), rgba[..., 3] * (HIGHEST / 255)

    def places(self, frame):
        """Which triangle each pixel shows, -1 for none; and where on its parallelogram, 0 to 255 along and up."""
        placed = GL.glGetUniformLocation(self.program, "placed")
        GL.glUniform1i(placed, 1)
        self.draw(frame)
        GL.glUniform1i(placed, 0)
        rgba = read_pixels()
        return name_of(rgba), rgba[..., 2:]

    def last(self, frame):
        """Which triangle is the farthest in each pixel, -1 for none."""
        GL.glDepthFunc(GL.GL_GREATER)
        GL.glClearDepth(0)
        self.draw(frame)
        GL.glClearDepth(1)
        GL.glDepthFunc(GL.GL_LESS)
        return name_of(read_pixels())

    def costs(self, frame):
        """What drawing each triangle costs a driver that draws in software, in shaded pixels.

        It works in squares of 4 x 4, so edges count as a strip beside them; of what reaches behind the eye they do not.
        """
        cost = self.shadings(frame)
        for _, mvp, seen in self.copies(frame):
            faces = np.concatenate([self.lists[b][::3] // 3 for b in seen])
            corners = np.concatenate([self.corners[faces], np.ones((len(faces), 3, 1))], 2) @ mvp.T
            before = (corners[..., 3] > 1).all(1)
            faces, corners = faces[before], corners[before]
            points = np.clip(corners[..., :2] / corners[..., 3:], -1, 1) * (WIDTH / 2, HEIGHT / 2)
            sides = np.roll(points, -1, 1) - points
            area = np.abs(sides[:, 0, 0] * sides[:, 1, 1] - sides[:, 0, 1] * sides[:, 1, 0]) / 2
            around = np.linalg.norm(sides, axis=2).sum(1)
            beside = HIDDEN_COST * area + EDGE_COST * around + FACE_COST
            cost += np.bincount(faces, beside * (around > 0), self.faces)
        return cost

    def shadings(self, frame):
        """How many pixels of each triangle are shaded: seen, or hidden by a block that comes later."""
        shaded = np.zeros(self.faces)
        for turn in self.draw_by_turns(frame):
            rgba = read_pixels()
            names = name_of(rgba)
            shaded += np.bincount(names[(names >= 0) & (rgba[..., 2] == turn)], minlength=self.faces)
        return shaded

    def distances(self, frame):
        """How far off along the view is what each pixel shows."""
        self.draw(frame)
        depth = np.frombuffer(GL.glReadPixels(0, 0, WIDTH, HEIGHT, GL.GL_DEPTH_COMPONENT, GL.GL_FLOAT), np.float32)
        return self.projection[2, 3] / (depth.reshape(HEIGHT, WIDTH) * 2.0 - 1.0 + self.projection[2, 2])

    def layers(self, frame):
        """What lies behind one another: of each layer the triangles, -1 for none, and their blocks' turns."""
        targets = self.peels = getattr(self, "peels", None) or [peel_target(), peel_target()]
        uniform = lambda name: GL.glGetUniformLocation(self.program, name)
        GL.glUniform2f(uniform("size"), WIDTH, HEIGHT)
        names, turns = [], []
        for layer in range(LAYERS):
            frame_buffer, _ = targets[layer % 2]
            GL.glBindTexture(GL.GL_TEXTURE_2D, targets[1 - layer % 2][1])
            GL.glBindFramebuffer(GL.GL_FRAMEBUFFER, frame_buffer)
            GL.glUniform1i(uniform("peeled"), layer > 0)
            self.draw(frame)
            rgba = read_pixels()[::2, ::2]
            names.append(name_of(rgba))
            turns.append(np.where(names[-1] >= 0, rgba[..., 2], 999))
            if (names[-1] < 0).all():
                break
        GL.glUniform1i(uniform("peeled"), 0)
        GL.glBindFramebuffer(GL.GL_FRAMEBUFFER, 0)
        return np.array(names), np.array(turns)

    def shaded(self, frame):
        """How many fragments each pixel shades."""
        GL.glEnable(GL.GL_BLEND)
        GL.glBlendFunc(GL.GL_ONE, GL.GL_ONE)
        self.draw(frame, 1 / 255)
        GL.glDisable(GL.GL_BLEND)
        return read_pixels()[..., 0]


def views(every, flights=FLIGHTS):
    """Frames of the flights; those that differ by the shake alone only once."""
    for seed, ticks in flights:
        for number, frame in enumerate(flight.fly(seed, ticks)):
            if (number * ticks) % every < ticks and (seed == flights[0][0] or frame["scene"] == 6):
                if frame["distance"] >= 100 or frame["scene"] != 1:
                    yield frame


def load(path):
    return Stage(*obj.read(path))

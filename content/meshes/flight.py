"""The city camera's flight, re-flown: the director's and the phone's motion, one logic tick (20 ms) a step.

Gives eye positions in city coordinates, and the view matrices for previews.
"""
import math
import pathlib
import sys

import numpy as np

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
from schedule import CUES, NUMBERS  # noqa: E402

BEAT_FIRST = NUMBERS["first"]
SECONDS_PER_BEAT = (NUMBERS["last"] - BEAT_FIRST) / NUMBERS["lastnum"]
TICK = 0.02
PHONE_REST_Z = -35.71
CENTRE_OFFSET = np.array([0.0, -220.0, 0.0])


def beat_at(seconds):
    return (seconds - BEAT_FIRST) / SECONDS_PER_BEAT


def seconds_at(beat):
    return BEAT_FIRST + beat * SECONDS_PER_BEAT


def rotation(degrees, axis):
    a = math.radians(degrees)
    c, s = math.cos(a), math.sin(a)
    m = np.eye(4)
    i, j = {"x": (1, 2), "y": (2, 0), "z": (0, 1)}[axis]
    m[i, i] = m[j, j] = c
    m[i, j], m[j, i] = -s, s
    return m


def translation(v):
    m = np.eye(4)
    m[:3, 3] = v
    return m


def perspective(fovy=70.0, aspect=854 / 480, near=1.0, far=30000.0):
    f = 1 / math.tan(math.radians(fovy) / 2)
    m = np.zeros((4, 4))
    m[0, 0], m[1, 1] = f / aspect, f
    m[2, 2], m[2, 3] = -(far + near) / (far - near), -2 * far * near / (far - near)
    m[3, 2] = -1
    return m


class Spring:
    def __init__(self, acc, damp, pos=0.0, target=0.0):
        self.acc, self.damp, self.pos, self.target, self.vel = acc, damp, pos, target, 0.0

    def step(self):
        pull = min(max(abs(self.vel), 0.5), 1.0)
        self.vel = (self.target - self.pos) * self.acc * pull + self.vel * self.damp
        self.pos += self.vel


class Phone:
    """The phone's pose while it flies over the desktop."""

    TARGETS = {0: (0, 0), 2: (-30, -10), 4: (-40, 10), 5: (-160, 0), 6: (-50, 0), 7: (-120, 0)}
    EVENTS = [
        ("phonefly1", "state", 7), ("phonefly1", "acc", 0.0004), ("phonefly2", "state", 6), ("phonefly2", "acc", 0.0015),
        ("phonespin1", "spin", None), ("phonefly3", "state", 4), ("phonefly4", "state", 2), ("phonefly4-2", "state", 4),
        ("phonefly5", "state", 1), ("phonefly6", "state", 0), ("phonefly7", "state", 5), ("phonefly7", "acc", 0.0015),
        ("phonefly8", "state", 6), ("phonefly9", "spin", None), ("phonefly9", "damp", 0.93),
        ("phonefly9", "acc", 0.0015),
    ]

    def __init__(self):
        self.z = Spring(0.0015, 0.974)
        self.tilt = Spring(0.0013, 0.954532)
        self.turn = Spring(0.0026, 0.971)
        self.state = 0
        self.click_armed = True
        self.pending = list(self.EVENTS)
        self.whiteback = False
        self.handed_over = None
        self.matrix = np.eye(4)

    def fire(self, what, value):
        if what == "state":
            self.state = value
        elif what == "acc":
            self.z.acc = value
        elif what == "damp":
            self.tilt.damp = value
        else:
            self.tilt.pos -= 360

    def aim(self, beat, time):
        sway = {1: math.sin(time) * 8 - 10, 2: math.sin(time) * 6 + 10, 4: math.sin(time) + 20}
        if self.state == 1:
            self.z.target, self.tilt.target = -10, -20
        else:
            self.z.target, self.tilt.target = self.TARGETS[self.state]
        self.turn.target = sway.get(self.state, 0)
        if self.state != 0:
            early = beat - math.floor(beat) < 0.1
            if early and self.click_armed:
                self.z.pos += 0.3
            self.click_armed = not early

    def step(self, beat, time):
        while self.pending and CUES[self.pending[0][0]] <= beat:
            self.fire(*self.pending.pop(0)[1:])
        if beat >= CUES["phonefly9"] and self.tilt.pos > -180:
            self.whiteback = True
        if beat >= CUES["phonefly10"]:
            self.state = 0
            if self.z.pos > 0:
                self.handed_over = (self.z.pos, self.z.vel)
                self.z.pos = self.z.vel = 0.0
            self.z.target = self.tilt.target = self.turn.target = 0
        else:
            self.aim(beat, time)
        for spring in (self.z, self.tilt, self.turn):
            spring.step()
        self.matrix = (translation((0, 0, self.z.pos + PHONE_REST_Z)) @ rotation(self.tilt.pos, "x")
                       @ rotation(self.turn.pos, "y") @ rotation(90, "z"))


class Head:
    """The city camera's own pitch and yaw."""

    EVENTS = [("tunnel_camdown1", -20, 30), ("tunnel_camdown2", -40, 90), ("tunnel_camup1", 20, None),
              ("tunnel_camup2", -10, None)]

    def __init__(self):
        self.pitch, self.yaw = Spring(0.002, 0.4), Spring(0.002, 0.4)
        self.pending = list(self.EVENTS)

    def step(self, beat):
        while self.pending and CUES[self.pending[0][0]] <= beat:
            _, pitch, yaw = self.pending.pop(0)
            self.pitch.target = pitch
            if yaw is not None:
                self.yaw.target = yaw
        self.pitch.step()
        self.yaw.step()

    def view(self, base, travel):
        return (base @ rotation(self.pitch.pos, "y") @ rotation(self.yaw.pos, "x")
                @ rotation(-90, "z") @ translation(np.asarray(travel) + CENTRE_OFFSET))


def eye_of(view):
    return np.linalg.inv(view)[:3, 3]


def ticks(first_beat, last_beat):
    time = seconds_at(first_beat)
    while beat_at(time) < last_beat:
        yield beat_at(time), time
        time += TICK


def fly(shake_seed=1, ticks_a_frame=1):
    """Every frame on which the city is drawn: dicts of beat, scene, view (4x4), eye, distance, bomb, phone."""
    frames, head = [], Head()
    frames += fly_in(head)
    frames += fly_gear(head)
    frames += fly_rocket(head, np.random.RandomState(shake_seed), ticks_a_frame)
    frames = frames[::ticks_a_frame]
    for frame in frames:
        frame["eye"] = eye_of(frame["view"])
    return frames


def fly_in(head):
    phone, distance = Phone(), Spring(0.0002, 0.98, 0.0, 400.0)
    travel, speed, frames, lifted, reveal = np.zeros(3), np.zeros(3), [], False, 0.0
    for beat, time in ticks(0, CUES["stoptunnel"]):
        if phone.handed_over is None:
            phone.step(beat, time)
            if phone.handed_over is not None:
                travel[2], speed[2] = phone.handed_over
        if not phone.whiteback:
            continue
        reveal = min(reveal + 1 / 480.0, 1.2083334)
        travel += speed
        if beat >= CUES["tunnelupmove"] and not lifted:
            speed[1] -= 1.0
            lifted = True
        if phone.handed_over is not None:
            distance.target, distance.acc, distance.damp = 1000.0, 0.0004, 0.94
        distance.step()
        head.step(beat)
        frames.append({"beat": beat, "time": time, "scene": 1, "view": head.view(phone.matrix, travel),
                       "distance": distance.pos, "bomb": 0.0, "reveal": reveal,
                       "phone": None if phone.handed_over is not None else phone.matrix})
    return frames


def fly_gear(head):
    base = rotation(-190, "y") @ rotation(-20, "x") @ rotation(90, "z")
    travel, frames = np.array([370.0, -100.0, -200.0]), []
    for beat, time in ticks(CUES["stopgear"], CUES["stopfly2"]):
        travel[2] += 1
        head.step(beat)
        frames.append({"beat": beat, "time": time, "scene": 3, "view": head.view(base, travel),
                       "distance": 1000.0, "bomb": 0.0, "phone": None})
    return frames


def shake(random, radius):
    while True:
        v = random.uniform(-radius, radius, 3)
        if np.linalg.norm(v) <= radius:
            return v


def fly_rocket(head, random, ticks_a_frame):
    base = rotation(30, "y") @ rotation(90, "z")
    travel, frames = np.array([0.0, -100.0, -200.0]), []
    for tick, (beat, time) in enumerate(ticks(CUES["stopdode"], CUES["stopfly3"])):
        travel += (1, 0, 0.1)
        bomb = 0.0
        if beat > NUMBERS["city_bursts"]:
            bomb = (beat - NUMBERS["city_bursts"]) * 0.2
            if tick % ticks_a_frame == 0:
                travel += shake(random, ticks_a_frame * max(0.0, beat - NUMBERS["city_shakes"]))
        head.step(beat)
        frames.append({"beat": beat, "time": time, "scene": 6, "view": head.view(base, travel),
                       "distance": 1000.0, "bomb": bomb, "phone": None})
    return frames

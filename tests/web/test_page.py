"""The page as a viewer uses it, in a headless Chromium that is driven by real clicks and keys. A tap on
the browser's sound tells, past the page's own code, which second of the song leaves the
loudspeaker. Nothing may be said on the browser's console, unless a test takes something away."""

import json
import os
import subprocess
import sys
import tempfile
import time
import unittest

from browser import PAGE, ROOT, Chromium, Server, seconds
from machine import PATIENCE, WatchedTest

SERVE = os.path.join(ROOT, "platform", "web", "serve")
PACK = os.path.join(ROOT, "platform", "web", "pack")

# What was started where in which song, what is heard of it now, and how loud it is on its way to the
# loudspeaker: nothing where it does not get there.
TAP = """
{
    const start = AudioBufferSourceNode.prototype.start, stop = AudioBufferSourceNode.prototype.stop;
    const connect = AudioNode.prototype.connect;
    const next = new Map();
    window.tap = {sounding: null};
    AudioNode.prototype.connect = function (to, ...rest) {
        next.set(this, to);
        return connect.call(this, to, ...rest);
    };
    AudioBufferSourceNode.prototype.start = function (when, offset) {
        tap.sounding = {node: this, context: this.context, from: this.context.currentTime, offset: offset || 0};
        return start.call(this, when, offset);
    };
    AudioBufferSourceNode.prototype.stop = function (...rest) {
        if (tap.sounding && tap.sounding.node === this)
            tap.sounding = null;
        return stop.apply(this, rest);
    };
    tap.heard = () => {
        const {context, from, offset} = tap.sounding;
        const stamp = context.getOutputTimestamp();
        const moving = context.state === 'running' ? (performance.now() - stamp.performanceTime) / 1000 : 0;
        return offset + Math.max(0, Math.min(stamp.contextTime + moving, context.currentTime) - from);
    };
    tap.loudness = () => {
        const {node, context} = tap.sounding;
        let loudness = 1, at = node;
        for (; at && at !== context.destination; at = next.get(at))
            loudness *= at.gain?.value ?? 1;
        return at ? loudness : 0;
    };
}
"""

# For each frame that was drawn: its beat, the second of the song that was heard as it was begun, and
# the seconds that it took. And the most beats between two frames, with or without a song.
FRAMES = """
{
    const frames = window.drawn = [];
    const animate = window.requestAnimationFrame;
    let begun = null, last = 0;
    window.leap = 0;
    window.requestAnimationFrame = callback => {
        leap = Math.max(leap, tarvisk.beat - last);
        last = tarvisk.beat;
        if (begun && tap.sounding)
            frames.push([tarvisk.beat, begun.heard, (performance.now() - begun.at) / 1000]);
        begun = null;
        return animate(stamp => {
            begun = tap.sounding && {heard: tap.heard(), at: performance.now()};
            callback(stamp);
        });
    };
}
"""

NO_MEMORY = "void (WebAssembly.instantiate = async () => { throw new RangeError('no memory'); });"


class PageTest(WatchedTest):
    flags = ()
    scripts = (TAP, FRAMES)

    def setUp(self):
        self.server = Server()
        self.addCleanup(self.server.server_close)
        self.addCleanup(self.server.shutdown)
        self.browser = Chromium(*self.flags)
        self.addCleanup(self.browser.close)
        for script in self.scripts:
            self.browser.before_load(script)

    def value(self, expression):
        return self.browser.evaluate(expression)

    def text(self, name):
        return self.value(f"document.getElementById('{name}').textContent")

    def shown(self, name):
        return self.value(f"document.getElementById('{name}').checkVisibility()")

    def state(self, *states):
        self.browser.wait_for(f"{json.dumps(states)}.includes(tarvisk.state)")

    def load(self):
        self.browser.open(self.server.address)
        self.state("ready", "failed")

    def start(self):
        self.load()
        self.browser.click_on("#go")
        self.state("playing")

    def beat(self):
        return self.value("tarvisk.beat")

    def past(self, beat):
        self.browser.wait_for(f"tarvisk.state === 'playing' && tarvisk.beat > {beat}")

    def leapt(self, beat):
        """Is past a beat by a jump of more than 100: who waits gets everywhere."""
        self.past(beat)
        self.assertGreater(self.value("leap"), 100)

    def together(self):
        """Picture and song are within 40 ms of each other in most of ten frames; a busy machine may
        have looked away in some."""
        self.value("void drawn.splice(0)")
        self.browser.wait_for("drawn.length > 10")
        off = sorted(abs(seconds(beat) - heard) for beat, heard, _ in self.value("drawn"))
        self.assertLess(off[5], 0.04)

    def picture(self):
        """Mean and spread of the canvas, 0 to 255."""
        return self.value(
            """(async () => {
                const small = document.createElement('canvas');
                small.width = 64; small.height = 36;
                const pen = small.getContext('2d');
                await new Promise(requestAnimationFrame);
                pen.drawImage(document.getElementById('canvas'), 0, 0, 64, 36);
                const data = pen.getImageData(0, 0, 64, 36).data.filter((_, i) => i % 4 < 3);
                const mean = data.reduce((a, b) => a + b) / data.length;
                return [mean, Math.sqrt(data.reduce((a, b) => a + (b - mean) ** 2, 0) / data.length)];
            })()"""
        )

    def quiet(self):
        self.assertEqual(self.browser.console(), [])


class StartTest(PageTest):
    def test_warns_shows_progress_and_starts_by_a_click(self):
        self.browser.before_load(
            """window.said = new Set();
            setInterval(() => said.add(document.getElementById('loading')?.textContent.replace(/ .[0-9]+ %./, '')), 5)"""
        )
        self.load()
        self.assertIn("The show flashes and flickers. Do not watch it if that can harm you.", self.text("start"))
        self.assertIn("4 minutes 10 seconds", self.text("start"))
        self.assertEqual(self.value("document.querySelectorAll('#start button:not([hidden], [hidden] *)').length"), 1)
        self.assertIn("Loading", self.value("[...said]"))
        self.assertIn("Preparing the show", self.value("[...said]"))
        self.assertEqual(self.value("tap.sounding"), None)
        self.browser.click_on("#go")
        self.past(2)
        self.assertFalse(self.shown("start"))
        self.assertGreater(self.picture()[1], 5, "a picture, neither black nor flat")
        self.together()
        self.quiet()

    def test_asks_twice_who_wants_less_motion(self):
        self.browser.call(
            "Emulation.setEmulatedMedia", features=[{"name": "prefers-reduced-motion", "value": "reduce"}]
        )
        self.load()
        self.browser.click_on("#go")
        self.assertTrue(self.shown("asked"))
        self.assertEqual(self.value("tarvisk.state"), "ready")
        self.browser.click_on("#leave")
        self.assertFalse(self.shown("asked"))
        self.browser.click_on("#go")
        self.browser.click_on("#still")
        self.state("playing")
        self.quiet()


class PlayTest(PageTest):
    def test_pause_holds_picture_and_music(self):
        self.start()
        self.past(3)
        self.browser.press(" ")
        self.state("paused")
        self.browser.wait_for("tap.sounding.context.state === 'suspended'")
        time.sleep(1)
        held = self.beat(), self.value("tap.sounding.context.currentTime")
        time.sleep(2)
        self.assertEqual(held, (self.beat(), self.value("tap.sounding.context.currentTime")))
        self.assertTrue(self.shown("controls"))
        self.browser.press(" ")
        self.past(held[0] + 2)
        self.together()
        self.quiet()

    def test_a_hidden_tab_pauses_and_goes_on(self):
        self.start()
        self.past(2)
        hide = """Object.defineProperty(document, 'hidden', {value: %s, configurable: true});
            document.dispatchEvent(new Event('visibilitychange'))"""
        self.value(hide % "true")
        self.state("paused")
        time.sleep(0.5)
        held = self.beat()
        time.sleep(1.5)
        self.assertEqual(self.beat(), held)
        self.value(hide % "false")
        self.past(held + 1)
        self.together()
        self.quiet()

    def test_full_screen_on_and_off(self):
        self.start()
        self.browser.press("f")
        self.browser.wait_for("document.fullscreenElement !== null")
        self.browser.press("f")
        self.browser.wait_for("document.fullscreenElement === null")
        self.browser.click(450, 200, 1)
        self.browser.click(450, 200, 2)
        self.browser.wait_for("document.fullscreenElement !== null")
        self.past(1)
        self.quiet()

    def test_the_picture_is_as_sharp_as_the_screen_or_as_chosen(self):
        self.browser.call(
            "Emulation.setDeviceMetricsOverride", width=600, height=500, deviceScaleFactor=2, mobile=False
        )
        self.start()
        self.past(1)
        size = "(c => [c.width, c.height])(document.getElementById('canvas'))"
        self.browser.wait_for(f"{size}[0] === 1200")
        self.assertEqual(self.value(size)[1], 674)
        box = self.value("(r => [r.x, r.y, r.width, r.height])(document.getElementById('canvas').getBoundingClientRect())")
        self.assertEqual(box[0], 0)
        self.assertAlmostEqual(box[1], (500 - 600 * 480 / 854) / 2, delta=1)
        self.value("document.getElementById('lines').value = '480'")
        self.browser.wait_for(f"{size}[0] === 854")
        self.assertEqual(self.value(size)[1], 480)
        self.browser.wait_for("tarvisk.beat > 2")
        self.assertGreater(self.picture()[1], 5)
        self.quiet()

    def test_jumps_to_a_scene_with_its_picture_and_the_song_there(self):
        self.start()
        self.past(1)
        names = self.value(  # in one go, for the controls do not stay
            """(() => {
                document.getElementById('stage').dispatchEvent(new PointerEvent('pointermove', {pointerType: 'mouse'}));
                const buttons = [...document.querySelectorAll('#scenes button')];
                const box = buttons.find(button => button.textContent === 'gear city').getBoundingClientRect();
                document.elementFromPoint(box.x + box.width / 2, box.y + box.height / 2).click();
                return buttons.map(button => button.textContent);
            })()"""
        )
        self.assertEqual(len(names), 9)
        self.leapt(180.1)
        self.together()
        self.assertGreater(self.picture()[1], 10)
        self.browser.click_on("#picture")
        self.browser.wait_for("document.getElementById('where').textContent.startsWith('gear city')")
        self.value("tarvisk.jump(9)")  # back: from the beginning, unseen
        self.browser.wait_for("tarvisk.state === 'playing' && tarvisk.beat < 100")
        self.past(9.3)
        self.together()
        self.quiet()

    def test_a_jump_on_before_one_back_is_there(self):
        self.start()
        self.past(2)
        self.value("void (tarvisk.jump(0), tarvisk.jump(150))")
        self.leapt(150.5)
        self.together()
        self.quiet()

    def test_q_ends_it_and_it_can_start_again(self):
        self.start()
        self.past(1)
        self.browser.press("q")
        self.state("ready")
        self.assertTrue(self.shown("start"))
        self.assertEqual(self.value("tap.sounding"), None)
        self.browser.click_on("#go")
        self.past(1)
        self.assertLess(self.beat(), 60)
        self.quiet()

    def test_volume(self):
        self.start()
        self.value("(v => { v.value = 50; v.dispatchEvent(new Event('input')); })(document.getElementById('volume'))")
        self.assertAlmostEqual(self.value("tap.loudness()"), 0.25, places=5)
        self.quiet()

    def test_a_wheel_turned_before_the_show_is_not_kept_for_it(self):
        self.load()
        self.value("void (window.turned = 0, tarvisk.wheel = () => ++turned)")
        self.wheel()
        self.browser.click_on("#go")
        self.state("playing")
        self.assertEqual(self.value("turned"), 0)
        self.wheel()
        self.browser.wait_for("turned === 1")
        self.quiet()

    def wheel(self):
        self.browser.call("Input.dispatchMouseEvent", type="mouseWheel", x=450, y=200, deltaX=0, deltaY=-100)

    def test_a_tap_shows_the_controls(self):
        self.browser.call("Emulation.setTouchEmulationEnabled", enabled=True)
        self.start()
        self.browser.wait_for("document.getElementById('controls').hidden")
        self.browser.call("Input.dispatchTouchEvent", type="touchStart", touchPoints=[{"x": 300, "y": 200}])
        self.browser.call("Input.dispatchTouchEvent", type="touchEnd", touchPoints=[])
        self.browser.wait_for("!document.getElementById('controls').hidden")
        self.quiet()

    def test_everything_that_can_be_used_has_a_name(self):
        self.load()
        nodes = self.browser.call("Accessibility.getFullAXTree")["nodes"]
        used = [n for n in nodes if n.get("role", {}).get("value") in ("button", "slider", "combobox", "progressbar")]
        self.assertTrue(used)
        for node in used:
            self.assertTrue(node.get("name", {}).get("value"), node)


class TimeTest(PageTest):
    def test_beat_and_song_stay_together_for_two_minutes(self):
        self.start()
        self.value("document.getElementById('lines').value = '480'")
        self.past(200)
        frames = [frame for frame in self.value("drawn") if frame[0] > 1]
        self.assertGreater(seconds(frames[-1][0]) - seconds(frames[0][0]), 120)
        # A busy machine starves the browser's own sound for moments, in which nothing tells what is heard.
        late = sorted(abs(seconds(beat) - heard) - max(length, 1 / 60) for beat, heard, length in frames)
        self.assertLess(late[len(late) * 99 // 100], 0, "seconds beyond one frame")
        self.assertLess(late[-1], 0.25, "seconds beyond one frame, in the worst")
        self.quiet()

    def test_a_fast_screen_draws_no_more_than_native(self):
        self.browser.before_load(
            """{
                let stamp = 0, callbacks = [];
                window.requestAnimationFrame = callback => callbacks.push(callback);
                window.rate = 60;
                window.stamps = 0;
                setInterval(() => {
                    if (!callbacks.length)
                        return;
                    stamp += 1000 / rate;
                    ++stamps;
                    const now = callbacks;
                    callbacks = [];
                    now.forEach(callback => callback(stamp));
                }, 4);
            }"""
        )
        self.browser.open(self.server.address)
        self.state("ready")
        self.value("document.getElementById('lines').value = '480'")
        self.browser.click_on("#go")
        self.state("playing")
        for rate, most, least in ((60, 60.5, 59), (144, 50.5, 48), (120, 50.5, 48), (50, 50.5, 49)):
            self.value(f"rate = {rate}")
            count = "[stamps, tarvisk.frames]"
            time.sleep(1)
            before = self.value(count)
            self.browser.wait_for(f"stamps > {before[0]} + {rate * 2}")
            after = self.value(count)
            taken = (after[1] - before[1]) / (after[0] - before[0]) * rate
            self.assertLess(taken, most, rate)
            self.assertGreater(taken, least, rate)


class MissingTest(PageTest):
    def sentence(self):
        self.browser.wait_for("document.getElementById('missing').textContent")
        return self.text("missing")

    def test_no_song_plays_silently(self):
        self.server.missing.add("tarvisk.ogg")
        self.load()
        self.assertIn("tarvisk.ogg did not load", self.sentence())
        self.assertIn("without sound", self.sentence())
        self.assertEqual(
            self.value("Number(document.getElementById('bar').max)"),
            self.value("Math.floor(tarvisk.scenes.at(-1).beat)"),
        )
        self.browser.click_on("#go")
        self.past(2)
        self.value("tarvisk.jump(150)")
        self.leapt(150.5)

    def test_a_song_that_is_none_plays_silently(self):
        self.server.broken.add("tarvisk.ogg")
        self.load()
        self.assertIn("without sound", self.sentence())
        self.browser.click_on("#go")
        self.past(1)

    def test_a_picture_that_is_not_there_is_named(self):
        self.server.missing.add("gfx/face.jpg")
        self.load()
        self.assertIn("gfx/face.jpg did not load", self.sentence())
        self.assertTrue(self.value("document.getElementById('go').disabled"))

    def test_a_picture_that_is_none_ends_it_with_its_last_words(self):
        self.server.broken.add("gfx/face.jpg")
        self.load()
        self.assertIn("couldn't load!", self.sentence())

    def test_the_program_missing(self):
        self.server.missing.add("tarvisk.wasm")
        self.load()
        self.assertIn("tarvisk.wasm did not load", self.sentence())

    def test_no_vorbis_decodes_in_the_page(self):
        self.browser.before_load(
            "OfflineAudioContext.prototype.decodeAudioData = () => Promise.reject(new Error('no Vorbis'))"
        )
        self.load()
        self.assertEqual(self.text("missing"), "")
        self.assertAlmostEqual(self.value("tarvisk.song.duration"), 249.92, delta=0.1)
        self.browser.click_on("#go")
        self.past(2)
        self.quiet()

    def test_no_sound_device_plays_silently(self):
        self.browser.before_load("AudioContext.prototype.resume = () => Promise.reject(new Error('no device'))")
        self.load()
        self.browser.click_on("#go")
        self.past(2)
        self.assertIn("without sound", self.text("notice"))

    def test_a_song_lost_on_the_way_stops_no_jump(self):
        self.start()
        self.past(1)
        self.value("tarvisk.losesong()")
        self.assertIn("without sound", self.text("notice"))
        self.value("tarvisk.jump(150)")
        self.leapt(150.5)

    def test_a_program_that_does_not_start(self):
        self.browser.before_load(NO_MEMORY)
        self.load()
        self.assertEqual(self.value("tarvisk.state"), "failed")
        self.assertIn("The show does not start (no memory).", self.sentence())

    def test_a_program_that_does_not_start_again(self):
        self.start()
        self.past(2)
        self.value(NO_MEMORY)
        self.value("void tarvisk.jump(0)")
        self.state("failed")
        self.assertIn("The show does not start (no memory).", self.sentence())

    def test_no_webgl(self):
        self.browser.before_load("HTMLCanvasElement.prototype.getContext = () => null")
        self.browser.open(self.server.address)
        self.assertIn("WebGL", self.sentence())
        self.assertTrue(self.value("document.getElementById('go').disabled"))
        self.quiet()

    def test_no_textures_in_vertex_shaders_names_the_effects_and_goes_on(self):
        self.browser.before_load(
            """for (const kind of [WebGLRenderingContext, WebGL2RenderingContext]) {
                const get = kind.prototype.getParameter;
                kind.prototype.getParameter = function (name) {
                    return name === this.MAX_VERTEX_TEXTURE_IMAGE_UNITS ? 0 : get.call(this, name);
                };
            }"""
        )
        self.load()
        self.assertIn("cannot draw: GL reads no textures in vertex shaders", self.sentence())
        self.browser.click_on("#go")
        self.past(1)


class ServeTest(unittest.TestCase):
    def test_no_port_is_left_beyond_the_last(self):
        got = subprocess.run([sys.executable, SERVE, PAGE, "70000"], capture_output=True, text=True, timeout=PATIENCE)
        self.assertEqual((got.returncode, got.stderr), (1, "! No port from 70000 to 70099 is free.\n"))


def names_under(top):
    return {os.path.relpath(os.path.join(folder, name), top) for folder, _, names in os.walk(top) for name in names}


class PackTest(unittest.TestCase):
    def test_what_an_earlier_build_left_is_gone(self):
        with tempfile.TemporaryDirectory() as page:
            programs = ["tarvisk.js", "tarvisk.wasm", "vorbisprogram.js", "vorbisprogram.wasm"]
            for name in [*programs, "old.js", "gfx/old.png", "older/old.js"]:
                os.makedirs(os.path.dirname(os.path.join(page, name)), exist_ok=True)
                open(os.path.join(page, name), "wb").close()
            subprocess.run([sys.executable, PACK, ROOT, page], check=True, timeout=PATIENCE)
            self.assertEqual(names_under(page), names_under(PAGE))


if __name__ == "__main__":
    unittest.main()

"""Real browsers, driven through their own debugging protocols, and the server that they load from.

Chromium speaks its protocol over two pipes, Firefox (which draws WebGL only on a display) Marionette
over a socket; nothing but the standard library is needed for either. BROWSER and FIREFOX in the
environment name other programs.
"""

import base64
import glob
import http.server
import json
import os
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading

HERE = os.path.dirname(os.path.realpath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
sys.path += [os.path.join(ROOT, "content"), os.path.join(ROOT, "tests", "show")]
import schedule
from machine import PATIENCE, end, start_display, wait_until

PAGE = os.environ.get("PAGE", os.path.join(ROOT, "build-web", "page"))


def seconds(beat):
    """The second of the song in which a beat is."""
    grid = schedule.NUMBERS
    return grid["first"] + beat * (grid["last"] - grid["first"]) / grid["lastnum"]


class Handler(http.server.SimpleHTTPRequestHandler):
    """The page, and beside it what the tests load. server.missing names files that are not there."""

    extensions_map = {
        **http.server.SimpleHTTPRequestHandler.extensions_map,
        ".wasm": "application/wasm",
        ".js": "text/javascript",
    }

    def translate_path(self, path):
        name = path.split("?")[0].lstrip("/")
        if name.startswith("tests/"):
            return os.path.join(HERE, os.path.basename(name))
        return os.path.join(PAGE, name or "index.html")

    def do_GET(self):
        name = self.path.split("?")[0].lstrip("/")
        if name in self.server.missing:
            self.send_error(404)
        elif name in self.server.broken:
            self.send_response(200)
            self.end_headers()
            self.wfile.write(b"not what it should be")
        else:
            super().do_GET()

    def end_headers(self):
        self.send_header("Cache-Control", "no-store")
        super().end_headers()

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    def __init__(self):
        super().__init__(("127.0.0.1", 0), Handler)
        self.missing = set()
        self.broken = set()
        threading.Thread(target=self.serve_forever, daemon=True).start()

    @property
    def address(self):
        return f"http://127.0.0.1:{self.server_port}/"


def program(variable, *names):
    for name in [os.environ.get(variable), *names]:
        found = name and shutil.which(name)
        if found:
            return found
    raise AssertionError(f"no {names[0]} here; {variable} may name one")


def software_gl():
    """Mesa's software drawing, whatever card there is: the test pictures are drawn with it."""
    return {**os.environ, "LIBGL_ALWAYS_SOFTWARE": "1"}


class Browser:
    def wait_for(self, expression, patience=None):
        def holds():
            try:  # before the page is there, its names are not
                return self.evaluate(expression)
            except RuntimeError:
                return None

        return wait_until(holds, expression, patience)


class Chromium(Browser):
    FLAGS = [
        "--headless=new",
        "--no-sandbox",  # root has no other
        "--disable-dev-shm-usage",
        "--use-gl=angle",
        "--use-angle=gl-egl",
        "--ignore-gpu-blocklist",
        "--no-first-run",
        "--disable-extensions",
        "--disable-background-networking",
        "--disable-component-update",
        "--window-size=900,560",
        "--remote-debugging-pipe",
    ]

    def __init__(self, *flags):
        self.profile = tempfile.mkdtemp()
        ours_in, theirs_out = os.pipe()
        theirs_in, ours_out = os.pipe()

        def wire():  # it reads 3 and writes 4
            reading, writing = os.dup(theirs_in), os.dup(theirs_out)
            os.dup2(reading, 3)
            os.dup2(writing, 4)

        self.log = open(os.path.join(self.profile, "log"), "wb")
        command = [
            program("BROWSER", "chromium-headless-shell", "chromium"),
            *self.FLAGS,
            *flags,
            "--user-data-dir=" + self.profile,
            "about:blank",
        ]
        self.process = subprocess.Popen(
            command, preexec_fn=wire, pass_fds=(3, 4), start_new_session=True,
            stdout=self.log, stderr=self.log, env=software_gl(),
        )  # fmt: skip
        os.close(theirs_in)
        os.close(theirs_out)
        self.out = os.fdopen(ours_out, "wb", 0)
        self.inp = os.fdopen(ours_in, "rb")
        self.buffer, self.id, self.events = b"", 0, []
        self.session = None
        targets = self.call("Target.getTargets")["targetInfos"]
        self.target = next(t["targetId"] for t in targets if t["type"] == "page")
        self.session = self.call("Target.attachToTarget", targetId=self.target, flatten=True)["sessionId"]
        for domain in ("Runtime", "Page", "Log"):
            self.call(domain + ".enable")

    def read(self):
        while b"\0" not in self.buffer:
            chunk = self.inp.read1(1 << 20)
            if not chunk:
                raise EOFError("the browser ended")
            self.buffer += chunk
        message, self.buffer = self.buffer.split(b"\0", 1)
        return json.loads(message)

    def call(self, method, **params):
        self.id += 1
        message = {"id": self.id, "method": method, "params": params}
        if self.session and not method.startswith(("Target.", "Browser.")):
            message["sessionId"] = self.session
        self.out.write(json.dumps(message).encode() + b"\0")
        while True:
            got = self.read()
            if got.get("id") == self.id:
                if "error" in got:
                    raise RuntimeError(f"{method}: {got['error']['message']}")
                return got["result"]
            self.events.append(got)

    def before_load(self, script):
        """Runs script in each page from now on before the page's own."""
        self.call("Page.addScriptToEvaluateOnNewDocument", source=script)

    def open(self, address):
        self.call("Page.navigate", url=address)

    def evaluate(self, expression, click=False):
        """The value of an expression in the page; with click as if the viewer had clicked."""
        got = self.call(
            "Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True, userGesture=click
        )
        if "exceptionDetails" in got:
            raise RuntimeError(str(got["exceptionDetails"].get("exception", {}).get("description")))
        return got["result"].get("value")

    def click(self, x, y, count=1):
        for kind in ("mousePressed", "mouseReleased"):
            self.call(
                "Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=count, buttons=1
            )

    def click_on(self, selector):
        """A real click on the middle of an element."""
        box = self.evaluate(
            f"(r => [r.x + r.width / 2, r.y + r.height / 2])"
            f"(document.querySelector({json.dumps(selector)}).getBoundingClientRect())"
        )
        self.click(*box)

    def press(self, key, code=0):
        text = key if len(key) == 1 else ""
        code = code or ord(key.upper())
        self.call("Input.dispatchKeyEvent", type="keyDown", key=key, text=text, windowsVirtualKeyCode=code)
        self.call("Input.dispatchKeyEvent", type="keyUp", key=key, windowsVirtualKeyCode=code)

    def screenshot(self, filename):
        data = self.call("Page.captureScreenshot", format="png")["data"]
        with open(filename, "wb") as file:
            file.write(base64.b64decode(data))

    def console(self):
        """What the browser has said about the page: everything but plain output."""
        self.evaluate("0")  # what is under way arrives
        lines = []
        for event in self.events:
            params = event.get("params", {})
            if event.get("method") == "Runtime.consoleAPICalled" and params["type"] in ("error", "warning", "assert"):
                lines.append(" ".join(str(a.get("value", a.get("description"))) for a in params["args"]))
            elif event.get("method") == "Log.entryAdded" and params["entry"]["level"] in ("error", "warning"):
                lines.append(params["entry"]["text"] + " " + params["entry"].get("url", ""))
            elif event.get("method") == "Runtime.exceptionThrown":
                details = params["exceptionDetails"]
                lines.append(details["text"] + " " + str(details.get("exception", {}).get("description")))
        return lines

    def cpu_seconds(self):
        """Seconds of processor that all its processes have used, those that have ended too."""
        return sum(cpu_seconds(pid) for pid in descendants(self.process.pid))

    def close(self):
        try:
            self.call("Browser.close")
        except (EOFError, BrokenPipeError, RuntimeError):
            pass
        end_group(self.process)
        self.inp.close()
        self.out.close()
        self.log.close()
        shutil.rmtree(self.profile, ignore_errors=True)


def stat(pid):
    """The fields of /proc/PID/stat from the state on, or none."""
    try:
        with open(f"/proc/{pid}/stat", encoding="ascii", errors="replace") as file:
            return file.read().rsplit(")", 1)[1].split()
    except OSError:
        return None


def descendants(root):
    parents = {}
    for path in glob.glob("/proc/[0-9]*"):
        fields = stat(path.split("/")[-1])
        if fields:
            parents[int(path.split("/")[-1])] = int(fields[1])
    family = {root}
    while True:
        more = {pid for pid, parent in parents.items() if parent in family} - family
        if not more:
            return family
        family |= more


def cpu_seconds(pid):
    fields = stat(pid)
    return sum(map(int, fields[11:15])) / os.sysconf("SC_CLK_TCK") if fields else 0


def end_group(process):
    try:
        process.wait(30)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()


class Display:
    """A virtual display of its own."""

    def __init__(self, width=1000, height=700):
        self.process, self.name = start_display("Xvfb", "-screen", "0", f"{width}x{height}x24")

    def close(self):
        end(self.process)


class Firefox(Browser):
    PREFS = {
        "marionette.port": 0,  # any
        "webgl.force-enabled": True,
        "media.autoplay.default": 0,
        "browser.shell.checkDefaultBrowser": False,
        "datareporting.policy.dataSubmissionEnabled": False,
        "toolkit.startup.max_resumed_crashes": -1,
    }

    def __init__(self):
        self.display = Display()
        self.profile = tempfile.mkdtemp()
        with open(os.path.join(self.profile, "user.js"), "w", encoding="utf-8") as file:
            for name, value in self.PREFS.items():
                file.write(f"user_pref({json.dumps(name)}, {json.dumps(value)});\n")
        self.log = open(os.path.join(self.profile, "log"), "wb")
        environment = {**software_gl(), "DISPLAY": self.display.name, "HOME": self.profile, "MOZ_X11_EGL": "1"}
        self.process = subprocess.Popen(
            [program("FIREFOX", "firefox-esr", "firefox"), "--marionette", "--no-remote", "--profile", self.profile],
            stdout=self.log, stderr=self.log, env=environment, start_new_session=True,
        )  # fmt: skip
        self.buffer, self.id = b"", 0
        self.socket = socket.create_connection(("127.0.0.1", self.port()))
        self.receive()
        self.call("WebDriver:NewSession", capabilities={})
        self.call("WebDriver:SetTimeouts", script=PATIENCE * 1000, pageLoad=PATIENCE * 1000)

    def port(self):
        path = os.path.join(self.profile, "MarionetteActivePort")

        def written():
            try:
                with open(path, encoding="ascii") as file:
                    return int(file.read() or 0)
            except OSError:
                return 0

        return wait_until(written, "Firefox")

    def read(self):
        chunk = self.socket.recv(1 << 20)
        if not chunk:
            raise EOFError("the browser ended")
        self.buffer += chunk

    def receive(self):
        while b":" not in self.buffer:
            self.read()
        length, self.buffer = self.buffer.split(b":", 1)
        while len(self.buffer) < int(length):
            self.read()
        message, self.buffer = self.buffer[: int(length)], self.buffer[int(length) :]
        return json.loads(message)

    def call(self, name, **params):
        self.id += 1
        message = json.dumps([0, self.id, name, params]).encode()
        self.socket.sendall(str(len(message)).encode() + b":" + message)
        while True:
            _, number, error, result = self.receive()
            if number == self.id:
                if error:
                    raise RuntimeError(f"{name}: {error['message']}")
                return result

    def open(self, address):
        self.call("WebDriver:Navigate", url=address)

    def evaluate(self, expression):
        return self.call("WebDriver:ExecuteScript", script="return " + expression, args=[], sandbox=None)["value"]

    def close(self):
        try:
            self.call("Marionette:Quit", flags=["eForceQuit"])
        except (EOFError, OSError, RuntimeError, ValueError):
            pass
        self.socket.close()
        end_group(self.process)
        self.log.close()
        self.display.close()
        shutil.rmtree(self.profile, ignore_errors=True)

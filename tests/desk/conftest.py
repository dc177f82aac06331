# SPDX-License-Identifier: Apache-2.0
"""A desk of its own for each test: home, temporary folder and root, and nothing may stay of them."""
import http.server
import os
import pathlib
import pty
import signal
import subprocess
import threading
import time
import uuid

import pytest

TOP = pathlib.Path(__file__).resolve().parents[2]
MARK = "VESPREL_DESK_TEST"


def wait_until(condition, seconds=20):
    """What the condition gives as soon as that is something; fails if it never is."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        result = condition()
        if result:
            return result
        time.sleep(0.05)
    pytest.fail(f"not within {seconds} s")


class Run:
    """A run of the script whose output is collected."""

    def __init__(self, command, cwd, env, terminal):
        self.output = b""
        # A session of its own, whose terminal is this one if there is one.
        master, slave = pty.openpty() if terminal else (None, None)
        self.terminal = master
        self.process = subprocess.Popen(
            command, cwd=cwd, env=env, stdin=slave if terminal else subprocess.DEVNULL,
            stdout=slave if terminal else subprocess.PIPE,
            stderr=slave if terminal else subprocess.STDOUT, start_new_session=True,
            preexec_fn=take_terminal if terminal else None)
        if terminal:
            os.close(slave)
        self.reader = threading.Thread(
            target=self.read, args=[master if terminal else self.process.stdout.fileno()])
        self.reader.start()

    def read(self, descriptor):
        try:
            while piece := os.read(descriptor, 4096):
                self.output += piece
        except OSError:
            pass  # So ends a terminal.

    @property
    def text(self):
        return self.output.decode(errors="replace").replace("\r\n", "\n")

    def shows(self, text, seconds=30):
        wait_until(lambda: text in self.text or self.process.poll() is not None, seconds)
        assert text in self.text, self.text

    def type(self, text):
        os.write(self.terminal, text.encode())

    def end(self, seconds=60):
        """The exit status, once it has ended by itself."""
        try:
            status = self.process.wait(seconds)
        except subprocess.TimeoutExpired:
            os.killpg(self.process.pid, signal.SIGKILL)
            pytest.fail("did not end: " + self.text)
        self.reader.join(10)
        return status


def take_terminal():
    import fcntl
    import termios
    fcntl.ioctl(0, termios.TIOCSCTTY, 0)


class Desk:
    def __init__(self, folder, script):
        self.folder = folder
        self.script = script
        self.mark = uuid.uuid4().hex
        self.temporary = folder / "tmp"
        self.home = folder / "home"
        self.work = folder / "work"
        for part in (self.temporary, self.home, self.work):
            part.mkdir(parents=True)
        self.env = {name: value for name, value in os.environ.items()
                    if name not in ("DISPLAY", "WAYLAND_DISPLAY", "XDG_DATA_HOME", "XDG_CACHE_HOME")
                    and not name.startswith(("VESPREL_", "Q_", "QT_"))}
        self.env.update(HOME=str(self.home), TMPDIR=str(self.temporary), LC_ALL="C.UTF-8",
                        VESPREL_BUILD=os.environ["VESPREL_BUILD"], **{MARK: self.mark})

    def start(self, *arguments, terminal=False, script=None, **env):
        return Run([script or self.script, *map(str, arguments)], self.work,
                   {**self.env, **env}, terminal)

    def run(self, *arguments, **options):
        """Status and output of a run that ends by itself."""
        run = self.start(*arguments, **options)
        return run.end(), run.text

    def page(self, name, body="<body style='background: #264'>page"):
        file = self.work / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text("<!DOCTYPE html>" + body)
        return file

    def processes(self):
        """Those that a run has started, as pid and command."""
        found = []
        for folder in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if f"{MARK}={self.mark}".encode() in (folder / "environ").read_bytes():
                    found.append((folder / "cmdline").read_bytes().replace(b"\0", b" ").decode())
            except OSError:
                pass
        return [command for command in found if command]


@pytest.fixture
def desk(tmp_path_factory, request):
    desk = Desk(tmp_path_factory.mktemp("d"), str(TOP / "desktop/run/box"))
    yield desk
    wait_until(lambda: not desk.processes(), 20)
    assert os.listdir(desk.temporary) == []


@pytest.fixture
def display(tmp_path):
    """A display for a test whose box shall have one."""
    with open(tmp_path / "display", "w+") as number:
        server = subprocess.Popen(["Xvfb", "-displayfd", str(number.fileno()), "-screen", "0",
                                   "1280x720x24", "-nolisten", "tcp", "-noreset"],
                                  pass_fds=[number.fileno()], stderr=subprocess.DEVNULL)
        wait_until(lambda: (tmp_path / "display").read_text().strip())
    yield ":" + (tmp_path / "display").read_text().strip()
    server.terminate()
    server.wait()


class Server(http.server.ThreadingHTTPServer):
    """Answers every path of pages, and 404 for others."""

    def __init__(self, port=0):
        super().__init__(("127.0.0.1", port), Handler)
        self.pages = {}
        self.address = f"http://127.0.0.1:{self.server_address[1]}/"
        threading.Thread(target=self.serve_forever, daemon=True).start()


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        body = self.server.pages.get(self.path)
        self.send_response(404 if body is None else 200)
        self.end_headers()
        self.wfile.write((body or "nothing here").encode())

    def log_message(self, *_):
        pass


@pytest.fixture
def server():
    server = Server()
    yield server
    server.shutdown()
    server.server_close()

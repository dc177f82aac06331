# SPDX-License-Identifier: Apache-2.0
"""The programs that are compared, started alike: the whole screen, one page, nothing kept."""
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
build = TOP / "build/bench"  # What was built there is measured.
OURS = "vesprel"
BARE = "bare view"
# What a program is started below to have one processor.
ON_ONE = ("taskset", "-c", str(min(os.sched_getaffinity(0))))
SIDE_BY_SIDE = 1.4  # So many times more is done by two at once where there is room for both.
COUNT = """import time
end, count = time.monotonic() + 0.3, 0
while time.monotonic() < end:
    count += 1
print(count)"""


def contenders():
    """Names of all programs that are installed here, and of those that are missing."""
    wanted = {OURS: build / "app/vesprel", BARE: build / "bench/bench_bare_view",
              "cog": "cog", "Chromium": "chromium"}
    found = [name for name, path in wanted.items() if shutil.which(str(path))]
    return found, [name for name in wanted if name not in found]


def run_side_by_side():
    """Whether two programs do more than one here and now: else there is one processor, a share of
    one, or two that are one."""
    def counts(number):
        running = [subprocess.Popen([sys.executable, "-c", COUNT], stdout=subprocess.PIPE)
                   for _ in range(number)]
        return sum(int(process.communicate()[0]) for process in running)
    return counts(2) >= SIDE_BY_SIDE * counts(1)


class SilentReceiver:
    """Takes the program's connections and reads them, as a receiver with nothing to say does."""

    def __init__(self, root):
        path = root / "home/.sock.vesprel"
        path.parent.mkdir(parents=True, exist_ok=True)
        path.unlink(missing_ok=True)
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.bind(str(path))
        self.socket.listen()
        threading.Thread(target=self.accept, daemon=True).start()

    def accept(self):
        while True:
            try:
                connection = self.socket.accept()[0]
            except OSError:
                return
            threading.Thread(target=self.drain, args=(connection,), daemon=True).start()

    @staticmethod
    def drain(connection):
        while connection.recv(65536):
            pass


class Run:
    """One run of one program, below another that is given for it; its processes are gone after the
    block, and so are its files, unless a folder is given for them."""

    def __init__(self, name, display, address, folder=None, under=()):
        self.keeps_files = folder is not None
        self.folder = folder or pathlib.Path(tempfile.mkdtemp(prefix="vesprel-bench."))
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder), "DISPLAY": display,
                       "QT_QPA_PLATFORM": "xcb", "QT_LOGGING_RULES": "*.debug=false",
                       "TMPDIR": str(self.folder), "LC_ALL": "C.UTF-8",
                       "XDG_RUNTIME_DIR": str(self.folder)}
        if name == OURS:
            environment.update(VESPREL_ROOT=str(self.folder / "box"), Q_VESPREL_PORTAL=address)
            self.receiver = SilentReceiver(self.folder / "box")
        self.process = subprocess.Popen(
            [*under, *self.command(name, address)], env=environment, start_new_session=True,
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def command(self, name, address):
        return {
            OURS: [build / "app/vesprel"],
            BARE: [build / "bench/bench_bare_view", address],
            # Debian's has no platform for X; without a display it has less to do than the others.
            "cog": ["cog", "--platform=headless", address],
            "Chromium": ["chromium", "--kiosk", "--no-sandbox", "--no-first-run",
                         f"--user-data-dir={self.folder}/profile", address],
        }[name]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for pid in reversed(self.tree()):
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        self.process.wait()
        if hasattr(self, "receiver"):
            self.receiver.socket.close()
        if not self.keeps_files:
            shutil.rmtree(self.folder, ignore_errors=True)

    def tree(self):
        """Process ids of the program and of all that it started."""
        parents = {}
        for entry in pathlib.Path("/proc").iterdir():
            if entry.name.isdigit():
                try:
                    fields = (entry / "stat").read_text().rsplit(")", 1)[1].split()
                except OSError:
                    continue
                parents.setdefault(int(fields[1]), []).append(int(entry.name))
        found = [self.process.pid]
        for pid in found:
            found.extend(parents.get(pid, []))
        return found

    def pss(self):
        """Memory of the whole tree in KiB, shared pages divided among their users."""
        total = 0
        for pid in self.tree():
            try:
                text = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
            except OSError:
                continue
            total += int(next(line for line in text.splitlines()
                              if line.startswith("Pss:")).split()[1])
        return total

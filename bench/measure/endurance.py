# SPDX-License-Identifier: Apache-2.0
"""Many plays and many loads of one run, and how soon a play shows something."""
import contextlib
import os
import pathlib
import shutil
import statistics
import subprocess
import tempfile
import time

from measure import programs
from measure.programs import Run
from measure.screen import Screen
from measure.web import Web

ZAPPING = """
window.left = PLAYS;
function play() { gSTB.Play('http://127.0.0.1:1/channel' + (left % 100) + '.ts?duration=60'); }
window.started = function () { gSTB.InitPlayer(); setTimeout(play, 300); };
window.onStbEvent = function (code) {
    if (code !== '4' || left === 0) { return; }
    if (--left === 0) { tell('zapped'); } else { play(); }
};
"""
LOADING = """
var turn = parseInt((location.search || '?0').substr(1), 10);
window.started = function () {
    if (turn > 0) { setTimeout(function () { location.href = '?' + (turn - 1); }, 20); }
};
"""
FIRST_FRAME = """
function play() { tell('play'); gSTB.Play('CLIP'); }
window.started = function () { gSTB.InitPlayer(); setTimeout(play, 1500); };
window.onStbEvent = function (code) { if (code === '4') { tell('picture'); } };
"""


@contextlib.contextmanager
def receiver(root, *options):
    """The desktop receiver on a root."""
    ready = root / "ready"
    process = subprocess.Popen(
        [programs.build / "desktop/vesprel-receiver", "--ready", ready, *options],
        env={**os.environ, "VESPREL_ROOT": str(root)},
        stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        end = time.monotonic() + 10
        while not ready.exists():
            if time.monotonic() > end or process.poll() is not None:
                raise RuntimeError("the receiver did not start")
            time.sleep(0.02)
        yield process
    finally:
        process.terminate()
        process.wait()


def zapping(plays):
    """Milliseconds of one play, from the page's call to its start event, back to back."""
    with Screen() as screen, Web(ZAPPING.replace("PLAYS", str(plays))) as web:
        with started(screen, web, "--player", "simulated"):
            begin = web.told("loaded")
            return (web.told("zapped", 900) - begin - 0.3) * 1000 / plays


@contextlib.contextmanager
def started(screen, web, *options):
    """The program and the desktop receiver on one root."""
    run_folder = pathlib.Path(tempfile.mkdtemp(prefix="vesprel-bench."))
    environment = {**os.environ, "VESPREL_ROOT": str(run_folder), "DISPLAY": screen.name,
                   "QT_QPA_PLATFORM": "xcb", "Q_VESPREL_PORTAL": web.address,
                   "QT_LOGGING_RULES": "*.debug=false"}
    try:
        (run_folder / "media").mkdir()
        os.environ["DISPLAY"] = screen.name
        with receiver(run_folder, *options):
            process = subprocess.Popen([programs.build / "app/vesprel"], env=environment,
                                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
            try:
                yield run_folder
            finally:
                process.terminate()
                process.wait()
    finally:
        shutil.rmtree(run_folder, ignore_errors=True)


def page_loads(name, turns):
    """KiB of memory of a program after so many loads of a page, by number of loads.

    The engine frees what pages leave in rounds of its own, so each is the median of the last tenth
    of the loads."""
    samples = {turn: [] for turn in turns}
    with Screen() as screen, Web(LOADING) as web:
        with Run(name, screen.name, f"{web.address}?{max(turns)}") as run:
            for load in range(max(turns) + 1):
                web.told("loaded")
                for turn in turns:
                    if turn * 0.9 < load <= turn:
                        samples[turn].append(run.pss())
    return {turn: statistics.median(numbers) for turn, numbers in samples.items()}


def make_clip():
    """A film of 20 seconds, beside the programs."""
    clip = programs.build / "clip.ts"
    if not clip.exists():
        subprocess.run(["ffmpeg", "-nostdin", "-loglevel", "error", "-f", "lavfi", "-i",
                        "testsrc=size=1280x720:rate=25:duration=20", "-c:v", "mpeg2video", "-y",
                        clip], check=True)
    return clip


def first_frame(runs):
    """Milliseconds from the play command of a page to the first picture; None without mpv."""
    if not shutil.which("mpv") or not shutil.which("ffmpeg"):
        return None
    clip = make_clip()
    numbers = []
    with Screen() as screen:
        for _ in range(runs):
            with Web(FIRST_FRAME.replace("CLIP", "/media/demo.ts")) as web:
                with started(screen, web, "--player", "mpv") as root:
                    shutil.copy(clip, root / "media/demo.ts")
                    begin = web.told("play")
                    numbers.append((web.told("picture") - begin) * 1000)
    return sorted(numbers)[len(numbers) // 2]

# SPDX-License-Identifier: Apache-2.0
"""Boxes on a terminal: what a person sees, presses and leaves."""
import os
import re
import socket
import stat
import subprocess
import time
import urllib.request

import pytest

from conftest import TOP, Server, wait_until

SIMULATED = ("--player", "simulated")
LOADED = "finishLoading true"


def started(desk, *arguments, **options):
    run = desk.start(*SIMULATED, *arguments, terminal=True, **options)
    run.shows("NewPortal")
    run.shows(LOADED)
    return run


def interrupt(run):
    run.type("\x03")
    assert run.end(30) == 130, run.text
    assert "Terminated" not in run.text and "Killed" not in run.text, run.text


def test_console_of_a_page(desk, display):
    page = desk.page("page.html", "<body><script>console.log('told \\u001b[2J');"
                     "setInterval(function () { gSTB.GetPosTime(); }, 20); nope();</script>")
    run = started(desk, page, DISPLAY=display)
    run.shows("page     | console.log: told \\x1b[2J")
    run.shows("page     | script error: ReferenceError")
    run.shows("GetPosTime goes on")
    time.sleep(1)
    assert run.text.count("GetPosTime") <= 5
    run.type("usb mount Stick\n")
    run.shows("receiver | sent: usb mounted")
    interrupt(run)


@pytest.mark.parametrize("seconds", [0.2, 0.5, 1, 2, 3, 4.5])
def test_interrupted_at_any_time(desk, display, seconds):
    run = desk.start(*SIMULATED, terminal=True, script=str(TOP / "run.sh"), DISPLAY=display)
    time.sleep(seconds)
    run.type("\x03")
    assert run.end(30) == 130, run.text


def test_quit(desk, display):
    run = started(desk, desk.page("page.html"), DISPLAY=display)
    run.type("quit\n")
    assert run.end(30) == 0, run.text


@pytest.fixture
def window_manager(display):
    manager = subprocess.Popen(["openbox", "--sm-disable"], env={**os.environ, "DISPLAY": display})
    wait_until(lambda: b"window id" in subprocess.run(
        ["xprop", "-display", display, "-root", "_NET_SUPPORTING_WM_CHECK"],
        stdout=subprocess.PIPE, check=True).stdout)
    yield
    manager.terminate()
    manager.wait()


@pytest.mark.parametrize("size", [[], ["--window", "800x450"]])
def test_window_is_closed(desk, display, window_manager, size):
    """Also while the page asks something, and would ask on."""
    page = desk.page("page.html", "<script>setTimeout(function () {"
                     "while (true) confirm('again?') }, 0);</script>")
    run = started(desk, *size, page, DISPLAY=display)
    run.shows("Dialog:")
    subprocess.run(["xdotool", "key", "alt+F4"], env={"DISPLAY": display}, check=True)
    assert run.end(30) == 0, run.text


def test_second_box(desk, display):
    page = desk.page("page.html")
    first = started(desk, page, DISPLAY=display)
    status, output = desk.run(*SIMULATED, page, DISPLAY=display)
    assert status == 1
    assert "runs already" in output and "--root FOLDER" in output
    second = started(desk, "--root", desk.work / "o dd #1%41 ü", page, DISPLAY=display)
    interrupt(second)
    assert first.process.poll() is None
    interrupt(first)


def test_long_home(desk, display):
    """Its box is in a short folder instead."""
    home = desk.folder / ("h" * 100)
    home.mkdir()
    run = started(desk, desk.page("page.html"), DISPLAY=display, HOME=str(home))
    run.shows(f"serving /tmp/vesprel-{os.getuid()}/")
    interrupt(run)


def test_server_that_comes_up(desk, display, server):
    server.shutdown()
    server.server_close()
    run = desk.start(*SIMULATED, server.address + "page", terminal=True, DISPLAY=display)
    run.shows("Connection refused; it is loaded as soon as it is there")
    again = Server(server.server_address[1])
    run.shows("404")
    again.pages["/page"] = "<script>gSTB.Debug('here')</script>"
    run.shows("[Web] \"here\"")
    interrupt(run)
    again.shutdown()
    again.server_close()


def test_watched_page_is_seen(desk, display):
    """Half a second after it is saved, whether written in place or renamed."""
    page = desk.page("portal/page.html", "<body><script src='js/a.js'></script>")
    script = desk.page("portal/js/a.js")
    script.write_text("console.log('version 0')")
    run = started(desk, "--watch", page, DISPLAY=display)
    run.shows("version 0")
    times = []
    for version in range(1, 7):
        target = script if version % 2 else script.with_name(".new")
        saved = time.monotonic()
        target.write_text(f"console.log('version {version}')")
        target.replace(script)
        wait_until(lambda: f"version {version}" in run.text, 5)
        times.append(time.monotonic() - saved)
    assert sorted(times)[len(times) // 2] <= 0.5, times
    interrupt(run)


def test_new_portal(desk, display):
    assert desk.run("--new", "po rtal")[0] == 0
    run = started(desk, "po rtal", DISPLAY=display)
    run.shows("OnPortalLoaded")
    subprocess.run(["xdotool", "key", "Down", "Return"], env={"DISPLAY": display}, check=True)
    run.shows("play /media/demo/harbour.ts")
    run.shows("sent: play start")
    assert "script error" not in run.text
    interrupt(run)


def test_checkout_that_cannot_be_written(desk):
    """Its name, too, is one that CMake can't do with: told, and built in the cache."""
    checkout = desk.work / 'che#ck"out'
    subprocess.run(["git", "clone", "-q", "--depth", "1", f"file://{TOP}", checkout], check=True)
    build = (f"set -euo pipefail; here=$PWD; . desktop/run/say.sh; . desktop/run/build.sh;"
             f"build \"$(build_folder)\" vesprel_platform; echo built")
    result = subprocess.run(["bash", "-c", build], cwd=checkout, env=desk.env, text=True,
                            capture_output=True)
    assert result.stdout.endswith("built\n"), result.stdout + result.stderr
    assert f"building in {desk.home}/.cache" in result.stderr
    assert not (checkout / "build").exists()


def test_other_user(desk):
    """What somebody else has prepared is not used."""
    if os.getuid():
        pytest.skip("needs root, to be two users")
    root = desk.work / "root"
    root.mkdir()
    os.chown(root, 65534, 65534)
    status, output = desk.run("--screenshot", "x.png", "--root", root, desk.page("page.html"))
    assert status == 1 and "belongs to somebody else" in output


def test_links_of_a_page(desk, display):
    """What a page has put into its box's folder leads nothing to the user's files."""
    keep = desk.work / "share/vesprel/web/system/keyboard/keep"
    keep.parent.mkdir(parents=True)
    keep.write_text("kept")
    root = desk.work / "root"
    root.mkdir()
    (root / ".running").symlink_to(keep)
    interrupt(started(desk, "--root", root, desk.page("page.html"), DISPLAY=display))
    subprocess.run(["rm", "-r", root / "usr"], check=True)
    (root / "usr").symlink_to(desk.work)
    status, output = desk.run("--screenshot", "x.png", "--root", root, desk.page("page.html"))
    assert status == 1 and "leads out of it" in output
    assert keep.read_text() == "kept"


def test_root_is_private(desk, display):
    run = started(desk, desk.page("page.html"), DISPLAY=display)
    serving = re.search(r"serving (.*?), player", run.text).group(1)
    assert stat.S_IMODE(os.stat(serving).st_mode) & 0o077 == 0
    interrupt(run)


def test_inspector(desk, display):
    with socket.socket() as free:
        free.bind(("127.0.0.1", 0))
        port = free.getsockname()[1]
    page = desk.page("page.html")
    run = started(desk, "--inspector", port, page, DISPLAY=display)
    run.shows(f"Inspector: http://127.0.0.1:{port}")
    with urllib.request.urlopen(f"http://127.0.0.1:{port}/", timeout=20) as answer:
        assert page.as_uri() in answer.read().decode()
    interrupt(run)

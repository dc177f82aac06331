# SPDX-License-Identifier: Apache-2.0
"""Runs without display and terminal, whose result is a picture."""
import pytest

ODD = "o dd #1%41 'q\" ü$x"


def shot(desk, *arguments, name="picture.png"):
    status, output = desk.run("--player", "simulated", "--screenshot", name, "--after", "0.2",
                              *arguments)
    file = desk.work / name
    assert not file.exists() or file.read_bytes()[1:4] == b"PNG"
    return status, output


@pytest.mark.quick
def test_odd_names(desk):
    """Of the folder and the file of a portal, of the picture and of what the page loads."""
    desk.page(ODD + "/a#b.js", "")
    (desk.work / ODD / "a#b.js").write_text("document.body.style.background = '#264';")
    page = desk.page(ODD + f"/in dex{ODD}.html", "<body><script src='a%23b.js'></script>page")
    status, output = shot(desk, page, "--size=640x360", name="-p%d: ü.x")
    assert status == 0, output
    width = (desk.work / "-p%d: ü.x").read_bytes()[16:20]
    assert int.from_bytes(width, "big") == 640


@pytest.mark.quick
def test_blank_page(desk):
    status, output = shot(desk, desk.page("blank.html", "<body>"))
    assert status == 1 and "nothing is on the screen" in output


def test_script_error(desk):
    """It is told with its place, but the page is there."""
    status, output = shot(desk, desk.page("page.html", "<body style='background: #264'>text\n<script>\nnope();</script>"))
    assert status == 0
    assert "script error: ReferenceError" in output and "page.html:3" in output


def test_missing_page(desk, server):
    status, output = shot(desk, server.address + "none")
    assert status == 1 and "the server answers 404" in output


def test_dead_server(desk, server):
    server.shutdown()
    server.server_close()
    status, output = shot(desk, server.address)
    assert status == 1 and "Connection refused" in output and "the portal did not load" in output


def test_demo_without_display_and_terminal(desk):
    status, output = desk.run("--player", "simulated")
    assert status == 0, output
    assert (desk.work / "vesprel.png").read_bytes()[1:4] == b"PNG"


def test_model(desk):
    """A profile gives the identity and the size of the screen."""
    page = desk.page("page.html", "<body style='background: #264'>page<script>throw "
                     "gSTB.GetDeviceModel() + ' ' + screen.width;</script>")
    (desk.work / "mine.env").write_text("Q_MODEL=MINE one\nVESPREL_WINDOW=800x600")
    status, output = shot(desk, "--profile", "./mine.env", page)
    assert status == 0 and "MINE one 800" in output
    size = (desk.work / "picture.png").read_bytes()[16:24]
    assert size == (800).to_bytes(4, "big") + (600).to_bytes(4, "big")

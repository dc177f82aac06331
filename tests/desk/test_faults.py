# SPDX-License-Identifier: Apache-2.0
"""What a person mistypes gives one line at once, and nothing is started."""
import pytest

FAULTS = [
    (["--verbose=yes"], "--verbose takes no value"),
    (["--screnshot", "x"], "there is no option --screnshot"),
    (["missing.html"], "there is no file missing.html"),
    (["file:///missing%20page.html"], "there is no file /missing page.html"),
    (["localhost:8080/portal"], "as in http://localhost:8080/portal"),
    (["htp://host/"], "htp://host/ is no address that the box loads"),
    (["http://"], "http:// is no address"),
    (["http://host:80a/"], "there is no port 80a"),
    (["http://user:1@host:70000/"], "there is no port 70000"),
    (["page.html", "other.html"], "two portals"),
    (["."], "there is no file ./index.html"),
    (["--web", "70000"], "there is no port 70000"),
    (["--inspector", "0"], "there is no port 0"),
    (["--size", "1280"], "needs WIDTHxHEIGHT"),
    (["--window=big"], "needs WIDTHxHEIGHT"),
    (["--after", "soon"], "needs seconds"),
    (["--profile", "none"], "there are desk vb20 vb40"),
    (["--trust", "none.pem"], "there is no file none.pem"),
    (["--screenshot"], "needs an argument"),
    (["--screenshot", "none/x.png"], "nothing can be written"),
    (["--screenshot", "."], "is a folder"),
    (["--watch", "http://host/"], "is on a server"),
    (["--root", "x" * 110], "is too long for the box's socket"),
    (["--new", "page.html"], "page.html is a file"),
    (["--new", "."], "is not empty"),
]


@pytest.mark.quick
@pytest.mark.parametrize("arguments, text", FAULTS, ids=[" ".join(row[0])[:30] for row in FAULTS])
def test_fault(desk, arguments, text):
    desk.page("page.html")
    status, output = desk.run(*arguments)
    assert status == 1
    assert text in output
    assert len(output.splitlines()) == 1
    assert [file.name for file in desk.work.iterdir()] == ["page.html"]


@pytest.mark.quick
def test_script_that_cannot_be_read(desk):
    assert desk.run("--script", "none.txt")[0] == 2


@pytest.mark.quick
def test_taken_port(desk, server):
    port = server.server_address[1]
    status, output = desk.run("--web", port)
    assert status == 1 and f"uses port {port} already" in output

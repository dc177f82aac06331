# SPDX-License-Identifier: Apache-2.0
"""The screen in a web browser."""
import re
import shutil
import socket
import time

import pytest

webdriver = pytest.importorskip("selenium.webdriver")
if not shutil.which("chromedriver") or not shutil.which("x11vnc"):
    pytest.skip("chromium-driver or x11vnc is not installed", allow_module_level=True)

from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

from conftest import wait_until

FLAGS = ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync",
         "--window-size=1280,720")


@pytest.fixture
def browser(tmp_path):
    options = webdriver.ChromeOptions()
    for flag in FLAGS + (f"--user-data-dir={tmp_path}/chromium",):
        options.add_argument(flag)
    options.binary_location = shutil.which("chromium")
    browser = webdriver.Chrome(service=Service(shutil.which("chromedriver")), options=options)
    yield browser
    browser.quit()


def sign_in(browser, text):
    browser.get(re.search(r"http://\S+autoconnect\S+", text).group(0))
    field = browser.find_element(By.ID, "noVNC_password_input")
    dialog = browser.find_element(By.ID, "noVNC_credentials_dlg")
    # The dialog slides in, and takes nothing before it is there.
    wait_until(lambda: "noVNC_open" in dialog.get_attribute("class") and field.is_displayed())
    field.send_keys(re.search(r"^Password: (\w+)", text, re.M).group(1), Keys.ENTER)
    return wait_until(lambda: browser.find_elements(By.TAG_NAME, "canvas"))[0]


def colours(browser, canvas):
    """How many the screen has, roughly."""
    return browser.execute_script("""
        var c = arguments[0], d = c.getContext('2d').getImageData(0, 0, c.width, c.height).data, s = {};
        for (var i = 0; i < d.length; i += 404) { s[d[i] + ',' + d[i + 1] + ',' + d[i + 2]] = 1; }
        return Object.keys(s).length;""", canvas)


@pytest.mark.parametrize("options, keys", [((), True), (("--no-keys",), False)], ids=["", "no keys"])
def test_demo_in_a_browser(desk, browser, options, keys):
    # On a terminal without a display this is what happens.
    run = desk.start("--player", "simulated", *options, terminal=True)
    run.shows("Password: ")
    run.shows("OnPortalLoaded")
    canvas = sign_in(browser, run.text)
    wait_until(lambda: colours(browser, canvas) > 20)
    webdriver.ActionChains(browser).send_keys(Keys.ARROW_DOWN, Keys.ENTER).perform()
    if keys:
        run.shows("play /media/demo/harbour.ts")
    else:
        time.sleep(2)
        assert "receiver | play" not in run.text
    run.type("\x03")
    assert run.end(30) == 130


def test_nobody_else_gets_in(desk):
    """Nothing listens but on this machine, and there without password nothing is to be had."""
    run = desk.start("--player", "simulated", "--web", terminal=True)
    run.shows("Password: ")
    port = int(re.search(r"127.0.0.1:(\d+)/vnc", run.text).group(1))
    listening = [line.split() for name in ("tcp", "tcp6")
                 for line in open("/proc/net/" + name).readlines()[1:]]
    addresses = [row[1] for row in listening if row[3] == "0A"]
    assert f"0100007F:{port:04X}" in addresses
    # Nor does what is behind it, wherever that listens from 5900 on.
    assert not [a for a in addresses if (int(a.split(":")[1], 16) == port or
                                         5900 <= int(a.split(":")[1], 16) < 5910) and
                not a.startswith("0100007F")]
    with socket.create_connection(("127.0.0.1", port)) as web:
        web.sendall(b"GET /../../etc/passwd HTTP/1.0\r\n\r\n")
        assert b"root:" not in web.recv(65536)
    run.type("\x03")
    assert run.end(30) == 130

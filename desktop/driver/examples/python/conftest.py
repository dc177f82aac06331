# SPDX-License-Identifier: Apache-2.0
import os
import pathlib

import pytest

from box import Box

DEMO = pathlib.Path(__file__).resolve().parents[3] / "portal" / "index.html"


@pytest.fixture
def box():
    """A fresh box on the portal; a test that fails leaves a picture of its screen."""
    session = Box(os.environ.get("PORTAL", DEMO.as_uri()), player="simulated")
    session.implicitly_wait(5)
    yield session
    session.quit()


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item):
    report = (yield).get_result()
    session = getattr(item, "funcargs", {}).get("box")
    if report.when == "call" and report.failed and session and os.environ.get("PICTURES"):
        session.get_screenshot_as_file(os.path.join(os.environ["PICTURES"], item.name + ".png"))

# SPDX-License-Identifier: Apache-2.0
"""The keywords that only a box has, on top of SeleniumLibrary."""
import os
import sys

from robot.libraries.BuiltIn import BuiltIn

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "python"))
from box import Box  # noqa: E402


class BoxLibrary:
    ROBOT_LIBRARY_SCOPE = "TEST"

    def __init__(self):
        self._box = None

    def open_box(self, portal, player="simulated"):
        self._box = Box(portal, player=player)
        BuiltIn().get_library_instance("SeleniumLibrary").register_driver(self._box, "box")

    def press_remote(self, key, times=1):
        self._box.press(key, int(times))

    def wait_until_playing(self, seconds=10):
        self._box.wait_until_playing(float(seconds))

    def type_into_receiver(self, line):
        self._box.receiver(line)

    def receiver_should_have_got(self, text):
        commands = self._box.commands()
        if not any(text in command for command in commands):
            raise AssertionError("The receiver got %s" % commands)

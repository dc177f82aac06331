# SPDX-License-Identifier: Apache-2.0
"""A box for Selenium: the usual driver, and the commands that only a box has."""
import os

from selenium.webdriver import Remote
from selenium.webdriver.common.options import ArgOptions

COMMANDS = {
    "boxKey": ("POST", "/session/$sessionId/vesprel/key"),
    "boxReceiver": ("POST", "/session/$sessionId/vesprel/receiver"),
    "boxCommands": ("GET", "/session/$sessionId/vesprel/commands"),
    "boxLog": ("GET", "/session/$sessionId/vesprel/log"),
    "boxMessages": ("GET", "/session/$sessionId/vesprel/messages"),
    "boxScreen": ("GET", "/session/$sessionId/vesprel/screen"),
    "boxPlaying": ("POST", "/session/$sessionId/vesprel/playing"),
}


class Box(Remote):
    """A session with a box of its own; quit() ends it."""

    def __init__(self, portal, **options):
        capabilities = ArgOptions()
        capabilities.set_capability("browserName", "vesprel")
        capabilities.set_capability("vesprel:options", dict(options, portal=portal))
        server = os.environ.get("VESPREL_DRIVER", "http://127.0.0.1:4444")
        super().__init__(command_executor=server, options=capabilities)
        self.command_executor._commands.update(COMMANDS)

    def press(self, key, times=1):
        """Presses a key of the remote: "ok", "red", "channel up", "5", ..."""
        self.execute("boxKey", {"key": key, "times": times})

    def receiver(self, line):
        """Types a line into the receiver's console: "usb mount", "power off", ..."""
        return self.execute("boxReceiver", {"line": line})["value"]

    def commands(self):
        """The commands that the receiver got since the last question."""
        return self.execute("boxCommands")["value"]

    def log(self):
        """The log's records since the last question."""
        return self.execute("boxLog")["value"]

    def messages(self):
        """What pages wrote to their console, and errors that no script caught."""
        return self.execute("boxMessages")["value"]

    def wait_until_playing(self, seconds=10):
        self.execute("boxPlaying", {"timeout": seconds * 1000})

    def screen(self):
        """The whole screen with the video, as base64 of a PNG."""
        return self.execute("boxScreen")["value"]

# SPDX-License-Identifier: Apache-2.0
"""An X server without a window manager, and keys for it as a remote's come."""
import os
import subprocess

import Xlib.display
import Xlib.X
import Xlib.XK
from Xlib.ext import xtest


class Screen:
    """Ends with the block that it is used in."""

    def __init__(self, size="1280x720"):
        reader, writer = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", size + "x24", "-nolisten", "tcp",
             "-noreset"],
            # A Ctrl+C is for who uses the screen, and ends it with what it shows.
            pass_fds=[writer], stderr=subprocess.DEVNULL, start_new_session=True)
        os.close(writer)
        with os.fdopen(reader) as answer:
            self.name = ":" + answer.readline().strip()
        self.display = Xlib.display.Display(self.name)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.display.close()
        self.server.terminate()
        self.server.wait()

    def focus(self):
        """Gives the keys to the largest window, as a window manager would."""
        windows = [window for window in self.display.screen().root.query_tree().children
                   if window.get_attributes().map_state == Xlib.X.IsViewable]
        largest = max(windows, key=lambda window: window.get_geometry().width
                      * window.get_geometry().height)
        largest.set_input_focus(Xlib.X.RevertToParent, Xlib.X.CurrentTime)
        self.display.sync()

    def press(self, name):
        """Presses a key; it is on its way when this returns."""
        code = self.display.keysym_to_keycode(Xlib.XK.string_to_keysym(name))
        xtest.fake_input(self.display, Xlib.X.KeyPress, code)
        self.display.sync()
        return code

    def release(self, code):
        xtest.fake_input(self.display, Xlib.X.KeyRelease, code)
        self.display.sync()

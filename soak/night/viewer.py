# SPDX-License-Identifier: Apache-2.0
"""Presses keys by the display, and knows which of them a page must have heard.

No key is like one of the forty before it, so that a lost key shows, and one that comes twice or
out of turn as well. A key that was pressed while pages changed may be lost; every other must come.
"""
import random
import threading
import time

import Xlib.X

from measure.screen import Screen

# Keys, and what a page hears of them: C and A for the modifiers that the box adds.
KEYS = ([(str(digit), str(48 + digit)) for digit in range(10)]
        + [(letter, str(ord(letter.upper()))) for letter in "acdehijkmnopqtvxz"]
        + [(letter, f"A{ord(letter.upper())}") for letter in "bfglrswy"]
        + [("Left", "37"), ("Up", "38"), ("Right", "39"), ("Down", "40"), ("Prior", "33"),
           ("Return", "13"), ("F1", "C112"), ("F2", "C113"), ("F3", "C114"), ("F4", "C115")])


class Viewer:
    """Its thread presses keys while the gate is open."""

    def __init__(self, seed, keys_per_second):
        self.screen = Screen()
        self.screen.display.change_keyboard_control(auto_repeat_mode=Xlib.X.AutoRepeatModeOff)
        self.random = random.Random(seed)
        self.interval = 1 / keys_per_second
        self.lock = threading.RLock()
        self.pressed = []  # (what a page hears, whether it may be lost)
        self.matched = 0   # So many of them are heard or lost.
        self.heard = self.lost = 0
        self.heard_by = None
        self.failures = []
        self.isOpen = self.isLoose = False
        self.isEnded = False
        self.thread = threading.Thread(target=self.watch_television, daemon=True)
        self.thread.start()

    def watch_television(self):
        while not self.isEnded:
            time.sleep(self.interval * self.random.uniform(0.2, 1.8))
            with self.lock:
                if self.isOpen:
                    self.press_next()

    def press_next(self):
        with self.lock:
            name, heard = KEYS[len(self.pressed) % len(KEYS)]
            self.pressed.append((heard, self.isLoose))
            self.press(name)

    def press(self, name):
        with self.lock:
            self.screen.release(self.screen.press(name))

    def hear(self, key, life):
        """A page tells of a key; pages tell in the order in which they had the keys."""
        with self.lock:
            place = self.matched
            while place < len(self.pressed) and self.pressed[place] != (key, False):
                if self.pressed[place] == (key, True):
                    break
                if not self.pressed[place][1]:
                    self.failures.append(f"key {key} came where {self.pressed[place][0]} "
                                         f"(number {place}) was pressed")
                    # One that came too often leaves the others as they are.
                    ahead = [heard for heard, _ in self.pressed[place:place + len(KEYS) - 1]]
                    if key not in ahead:
                        return
                    place += ahead.index(key)
                    break
                place += 1
            if place == len(self.pressed):
                self.failures.append(f"key {key} came and was not pressed, or came before")
                return
            self.lost += place - self.matched
            self.matched = place + 1
            self.heard += 1
            self.heard_by = life

    def outstanding(self):
        """Keys that must still come."""
        with self.lock:
            return [heard for heard, may in self.pressed[self.matched:] if not may]

    def colour(self):
        """Colour of the screen's middle as #RRGGBB."""
        with self.lock:
            root = self.screen.display.screen().root
            image = root.get_image(640, 400, 1, 1, Xlib.X.ZPixmap, 0xFFFFFFFF)
        blue, green, red = image.data[:3]
        return f"#{red:02X}{green:02X}{blue:02X}"

    def end(self):
        self.isEnded = True
        self.thread.join()
        self.screen.__exit__()

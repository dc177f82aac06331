# SPDX-License-Identifier: Apache-2.0
"""Waits and rests between what happens in a night: what everything that happens is made of."""
import contextlib
import time

# Generous: what counts is what was lost, not how long it took on a busy machine.
REST_S = 120
MOMENT_S = 10  # By then a page that is there has heard what was sent, unless it hangs.
RESCUE_S = 120  # The longest that a viewer waits for a portal, whatever happened.


class Failure(Exception):
    """The night cannot go on."""


class Director:
    def __init__(self, web, box, viewer, random):
        self.web, self.box, self.viewer, self.random = web, box, viewer, random
        self.lives = []  # Pages that have arrived, in order.
        self.doing = "the start"
        self.longest = 0.0
        self.isLoading = False
        self.loads = 0
        self.failures = []
        self.on_load = lambda life: None
        web.told = self.hear

    def hear(self, life, batch):
        """A page tells something. Called by the web server."""
        if life not in self.lives:
            life.isFavourites = "favourites" in life.query
            life.isKilled = life.isReceiverKilled = False
            life.since = self.doing
            if not self.isLoading:
                self.failures.append(f"a page came that nobody asked for, in {self.doing}")
            self.lives.append(life)
        if any(note.startswith("loaded") for note in batch["notes"]):
            self.on_load(life)
        for key in batch["keys"]:
            self.viewer.hear(key, life)

    def wait(self, condition, seconds, what):
        """Until a condition holds that depends on what pages tell."""
        end = time.monotonic() + seconds
        with self.web.changed:
            while not condition():
                if time.monotonic() > end:
                    raise Failure(f"{what}: not within {seconds} s")
                self.web.changed.wait(0.1)

    def there(self):
        """Pages that are there, the one on top last."""
        return [life for life in self.lives if life.isThere()]

    def portal(self):
        return next(life for life in self.there() if not life.isFavourites)

    # Rests

    def rest_keys(self):
        """No key is on its way any more."""
        self.viewer.isOpen = False
        self.wait(lambda: not self.viewer.outstanding(), REST_S,
                  f"keys were pressed and not heard: {self.viewer.outstanding()[:10]}")

    @contextlib.contextmanager
    def keys_at_rest(self):
        self.rest_keys()
        try:
            yield
        finally:
            self.viewer.isOpen = True

    @contextlib.contextmanager
    def keys_loose(self):
        """Keys that are pressed meanwhile may be lost; those before it and after it may not."""
        self.rest_keys()
        self.viewer.isLoose = self.viewer.isOpen = True
        yield
        self.settle()

    def settle(self):
        """Until the page hears keys again: all that are pressed from then on have to come."""
        self.viewer.isOpen = False
        heard, end = self.viewer.heard, time.monotonic() + REST_S
        self.viewer.isLoose = True
        while True:
            self.viewer.press_next()
            with self.web.changed:
                self.web.changed.wait(0.4)
            if self.viewer.heard > heard and self.is_last_heard() \
                    and self.viewer.heard_by in self.there()[-1:]:
                break
            if time.monotonic() > end:
                raise Failure("no key reaches the page")
        self.viewer.isLoose = False
        self.viewer.isOpen = True

    def is_last_heard(self):
        """Else one of the loose keys may still come, before those that follow."""
        end = time.monotonic() + 2
        with self.web.changed:
            while self.viewer.matched < len(self.viewer.pressed) and time.monotonic() < end:
                self.web.changed.wait(0.1)
        return self.viewer.matched == len(self.viewer.pressed)

    def rest_events(self):
        """
        The receiver sends nothing, and what it has sent is heard. The very last may have come in the
        moment in which one page makes way for another; those behind it are heard then.
        """
        end = time.monotonic() + REST_S
        last = self.box.control("pause")
        while last and not self.hears(last, min(end, time.monotonic() + MOMENT_S)):
            if time.monotonic() >= end:
                raise Failure(f"event {last} was sent and not heard: not within {REST_S} s")
            self.box.control("go")
            time.sleep(0.5)
            last = self.box.control("pause")

    def hears(self, event, end):
        """Whether it is the last that a page heard, before that time is over."""
        with self.web.changed:
            while not any(life.heard["events"][-1:] == [event] for life in self.there()):
                if time.monotonic() >= end:
                    return False
                self.web.changed.wait(0.1)
        return True

    @contextlib.contextmanager
    def events_at_rest(self):
        self.rest_events()
        try:
            yield
        finally:
            self.box.control("go")

    # What the page does

    def ask(self, name, argument=""):
        """Lets the page on top do something, and waits until it is done; its notes since then."""
        top = self.there()[-1]
        notes = len(top.heard["notes"])
        action = self.web.ask(top, name, argument)
        self.wait(lambda: top.done >= action, REST_S, f"the page did not do {name}")
        return top.heard["notes"][notes:]

    def tell(self, name, argument=""):
        """The same, without waiting: the page may not be there any more when it is done."""
        return self.web.ask(self.there()[-1], name, argument)

    @staticmethod
    def note_of(notes, word):
        found = [note.partition(" ")[2] for note in notes if note.startswith(word + " ")]
        return found[0] if found else None

    @contextlib.contextmanager
    def new_page(self, what, among="", isEndless=False):
        """Waits for a page that comes after what is done here, and has loaded unless it never will."""
        count, begin = len(self.lives), time.monotonic()
        self.loads += 1
        self.isLoading = True
        yield
        self.wait(lambda: any((life.loaded or isEndless) and among in life.query
                              for life in self.lives[count:]), RESCUE_S, f"no page after {what}")
        self.isLoading = False
        self.longest = max(self.longest, time.monotonic() - begin)

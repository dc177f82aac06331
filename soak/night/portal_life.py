# SPDX-License-Identifier: Apache-2.0
"""What portal and viewer do in a good night."""
import time

from night.director import REST_S


class PortalLife:
    """Each method is one thing that happens; together they are drawn at random."""

    def __init__(self, director):
        self.director = director
        self.random = director.random
        self.count = 0
        self.stored = {"data": 0, "cfg": 0, "settings": 0}
        self.failures = []
        self.answers = {"right": 0, "none": 0}

    def expect(self, what, seen, wanted):
        if seen != wanted:
            self.failures.append(f"{what}: {seen!r}, not {wanted!r}")

    def zap(self):
        self.director.ask("zap", self.random.randint(1, 20))

    def record(self):
        notes = self.director.ask("record")
        wrong = [note for note in notes if note.startswith("answer")]
        self.answers["right"] += 3 - len(wrong)
        self.failures += [f"a request, {note}" for note in wrong]

    def store(self):
        self.count += 1
        notes = self.director.ask("store", self.count)
        self.note_stored(self.director.note_of(notes, "stored"))

    def note_stored(self, text):
        count, hasSettings = text.split()
        for place in ("data", "cfg") + (("settings",) if hasSettings == "1" else ()):
            self.stored[place] = int(count)

    def check_stored(self, found):
        """What a page reads is what was stored last, or what was stored just before a crash."""
        found = dict(found, cfg=found["cfg"].removeprefix("count="))
        for place, least in self.stored.items():
            if not least or (place == "settings" and not found["hasSettings"]):
                continue
            if not str(found[place]).isdigit() or int(found[place]) < least:
                self.failures.append(f"{place}: stored {least}, found {found[place]!r}")

    def reload_at_rest(self):
        with self.director.keys_at_rest(), self.director.events_at_rest():
            with self.director.new_page("a reload"):
                self.director.tell("reload")

    def reload(self):
        with self.director.keys_loose(), self.director.new_page("a reload"):
            self.director.tell("reload")

    def go(self):
        with self.director.keys_loose(), self.director.new_page("another address"):
            self.director.tell("go", f"announced&{self.random.randrange(1000)}")

    def announce(self):
        with self.director.keys_loose(), self.director.new_page("an announcement"):
            self.director.box.announce("announced")

    def dialog(self):
        kind = self.random.choice(["alert", "confirm", "prompt"])
        text = f"soak {self.random.randrange(1000)}"
        director = self.director
        with director.keys_at_rest():
            top = director.there()[-1]
            notes = len(top.heard["notes"])
            action = director.tell(kind, text)
            director.wait(lambda: director.web.said == action, REST_S, "no dialog was opened")
            director.viewer.press("Return")
            director.wait(lambda: top.done >= action, REST_S, "a key did not close the dialog")
            said = director.note_of(top.heard["notes"][notes:], "said")
            self.expect(kind, said, {"alert": "undefined", "confirm": "true", "prompt": text}[kind])

    def keyboard(self):
        """Digits of the remote, while the on-screen keyboard takes all keys."""
        text = "".join(str(self.random.randrange(10)) for _ in range(self.random.randint(3, 12)))
        director = self.director
        with director.keys_at_rest():
            director.ask("keyboard")
            for digit in text:
                director.viewer.press(digit)
            typed = ""
            for _ in range(100):
                typed = director.note_of(director.ask("typed"), "typed")
                if len(typed) >= len(text):
                    break
            # One that comes twice may come late.
            time.sleep(0.3)
            typed = director.note_of(director.ask("typed"), "typed")
            director.ask("hide")
            self.expect("typed by the keyboard", typed, text)

    def favourites(self):
        director = self.director
        portal = director.portal()
        # Two pages are there, and what they tell comes in any order: no key while they change.
        director.rest_keys()
        with director.new_page("favourites", "favourites"):
            director.ask("favourites", director.web.url("favourites"))
            director.viewer.isLoose = director.viewer.isOpen = True
        director.settle()
        time.sleep(self.random.uniform(1, 4))
        with director.keys_at_rest(), director.events_at_rest():
            director.ask("rest")
            favourites = director.there()[-1]
            if self.random.random() < 0.5:
                director.viewer.press("F11")
                # The display keeps the order of keys, so the next one is the portal's.
                director.viewer.press_next()
                director.rest_keys()
                if director.viewer.heard_by is not portal:
                    self.failures.append("a key behind F11 was heard by favourites")
            else:
                action = director.tell("close")
                director.wait(lambda: director.web.said == action, REST_S, "nobody closed favourites")
            favourites.isGone = True

    def fail(self):
        self.director.ask("fail", 5)

    def garbage(self):
        self.director.ask("garbage")

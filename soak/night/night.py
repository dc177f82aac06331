# SPDX-License-Identifier: Apache-2.0
"""A night from its beginning to its verdict."""
import contextlib
import os
import random
import sys
import time
import traceback

from night import commands, events, report
from night.box import Box
from night.director import Director, Failure
from night.portal_life import PortalLife
from night.troubles import Troubles
from night.usage import Growth, Usage
from night.viewer import Viewer
from night.web import Web

EVENTS_PER_SECOND = 200
KEYS_PER_SECOND = 5
COLOUR = "#2060A0"  # of the portal's page
LIFE = ["zap", "zap", "zap", "record", "record", "store", "store", "reload", "reload_at_rest", "go",
        "announce", "dialog", "keyboard", "favourites", "garbage"]
TROUBLES = ["freeze", "hang", "broken_frames", "leave", "standby", "endless_page", "dead_page",
            "failing_script"]
FATAL = ["kill_program", "kill_receiver", "endless_loop"]
LONG_S = 20 * 60      # From here on a night has
WARM_UP_S = 10 * 60   # a warm-up, since caches fill while a program is young.
REST_EVERY_S = 3 * 60
LAST_REST_S = 10      # belongs to the night as well.


class Night:
    def __init__(self, minutes, seed, fault, fatal):
        self.seed, self.minutes, self.fatal = seed, minutes, fatal
        self.random = random.Random(seed)
        self.seconds = minutes * 60
        with contextlib.ExitStack() as begun:
            self.web = Web()
            begun.callback(self.web.end)
            self.viewer = Viewer(seed, KEYS_PER_SECOND)
            begun.callback(self.viewer.end)
            self.box = Box(self.viewer.screen.name, self.web.url, seed, EVENTS_PER_SECOND, fault)
            begun.callback(self.box.end)
            self.begun = begun.pop_all()
        self.director = Director(self.web, self.box, self.viewer, self.random)
        self.life = PortalLife(self.director)
        self.troubles = Troubles(self.director, self.life)
        self.director.on_load = lambda life: self.life.check_stored(life.loaded)
        self.usage = Usage(lambda: self.box.pid("program"), max(0.5, self.seconds / 720))
        self.begun.callback(self.usage.end)
        self.failures = []
        self.counts = {}
        self.fatal_moments = []
        self.deck = []
        self.program = 0
        self.isInterrupted = False  # Set by whoever wants the report of a shorter night.
        self.loads = []

    def do(self, name):
        self.counts[name] = self.counts.get(name, 0) + 1
        self.director.doing = f"{name} at {self.usage.now():.1f} s"
        print(f"soak: {self.director.doing}", file=sys.stderr, flush=True)
        if name in FATAL:
            self.fatal_moments.append(self.usage.now())
        self.loads.append(os.getloadavg()[0])
        act = getattr(self.life, name, None) or getattr(self.troubles, name)
        act()
        if name in FATAL:
            self.program = self.box.pid("program")
        elif self.box.pid("program") != self.program:
            raise Failure(f"the program ended in {name} although nobody ended it")
        time.sleep(self.random.uniform(0, 0.5))

    def draw(self):
        """Everything happens once before anything happens again."""
        if not self.deck:
            self.deck = LIFE + TROUBLES
            self.random.shuffle(self.deck)
        self.do(self.deck.pop())

    def run(self):
        try:
            self.live()
        except Failure as failure:
            self.failures.append(str(failure))
        except Exception as fault:  # A fault of the soak itself must not cost the report.
            traceback.print_exc()
            self.failures.append(f"the soak failed: {fault!r}")

    def is_before(self, second):
        return self.usage.now() < second and not self.isInterrupted

    def live(self):
        with self.director.new_page("the start", "announced"):
            self.box.start()
        self.program = self.box.pid("program")
        self.director.settle()
        part = self.seconds / 2 if self.seconds < LONG_S else self.seconds / 6
        ends = []
        while self.fatal and (self.is_before(part) or len(self.fatal_moments) < len(self.fatal)):
            if not ends:
                ends = self.random.sample(self.fatal, len(self.fatal))
            self.do(ends.pop())
            for _ in range(self.random.randint(2, 6)):
                if self.is_before(part):
                    self.draw()
        self.rest()
        while self.is_before(self.seconds - LAST_REST_S):
            self.draw()
            if self.usage.now() > self.usage.rests[-1].moment + REST_EVERY_S:
                self.rest()
        self.rest()
        self.director.rest_keys()
        self.director.rest_events()
        # No command is on its way from here on.
        self.director.ask("rest")
        colour = self.viewer.colour()
        if colour != COLOUR:
            self.failures.append(f"the screen shows {colour}, not the portal")

    def rest(self):
        """A new page does nothing, hears nothing, and is looked at."""
        director = self.director
        with director.keys_at_rest(), director.events_at_rest():
            with director.new_page("an announcement for a rest"):
                self.box.announce("announced")
            director.ask("rest")
            self.usage.rest(30 if self.seconds >= LONG_S else 4)
        self.life.announce()

    def end(self):
        """Also what comes last is ended if something before it is gone already."""
        self.begun.close()

    def growth(self):
        """None for a night that was too short to look at memory."""
        rests = [rest for rest in self.usage.rests if rest.pid == self.program]
        warm = [rest for rest in rests if rest.moment > rests[0].moment + WARM_UP_S]
        used = warm if self.seconds >= LONG_S else rests
        return Growth(used) if len(used) > 1 else None

    def judge(self):
        """Compares what was sent with what was seen; the rows of the report's table."""
        sent, lives, viewer = events.Sent(self.box.link()), self.director.lives, self.viewer
        verdict = events.judge(lives, sent)
        wrong_commands, unannounced, killed = commands.judge(lives, sent)
        wrong_box_keys = events.judge_box_keys(lives)
        self.failures += (viewer.failures + verdict.failures + wrong_commands + wrong_box_keys
                          + self.director.failures + self.life.failures)
        growth = self.growth()
        self.failures += growth.failures() if growth else []
        given = sum(len(life.heard["commands"]) for life in lives) + unannounced
        told = sum("mount" in event for life in lives for event in life.heard["events"])
        pressed = sum(len(life.heard["boxKeys"]) for life in lives)
        answers = self.life.answers
        return [
            ("events", len(sent.events), sum(verdict.heard), verdict.missing(verdict.nobody),
             verdict.missing(verdict.killed), len(verdict.failures)),
            ("keys of the viewer", len(viewer.pressed), viewer.heard, viewer.lost, "",
             len(viewer.failures)),
            ("keys of the box", told, pressed, "", "", len(wrong_box_keys)),
            ("commands", given, len(sent.commands), "", killed, len(wrong_commands)),
            ("requests with an answer", answers["right"] + answers["none"], answers["right"], "",
             answers["none"], len(self.life.failures)),
            ("page loads", self.director.loads, len(lives), "", "", len(self.director.failures)),
        ]

    def report(self, folder):
        """Judges, writes the report and returns its text."""
        text = report.text(self, self.judge(), self.growth())
        report.plot(folder / "soak.svg", self.usage.samples, self.growth(), self.fatal_moments)
        (folder / "report.md").write_text(text, encoding="utf-8")
        return text

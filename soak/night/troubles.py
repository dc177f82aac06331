# SPDX-License-Identifier: Apache-2.0
"""What goes wrong in a bad night, of the receiver's, the page's and the program's own making."""
import signal
import time

from night.director import RESCUE_S

BROKEN = ["unknown", "magic", "negative", "huge", "empty", "pieces"]


class Troubles:
    """Each method is one thing that happens; the program lives through all but the last three."""

    def __init__(self, director, life):
        self.director, self.life = director, life
        self.random = director.random
        self.box = director.box

    def freeze(self):
        """The receiver's process stands still."""
        self.box.signal("receiver", signal.SIGSTOP)
        time.sleep(self.random.uniform(1, 6))
        self.box.signal("receiver", signal.SIGCONT)

    def hang(self):
        """The receiver sends, but reads no commands; a request gives up."""
        self.box.control("silent")
        self.box.control("hang")
        notes = self.director.ask("look")
        wrong = [note for note in notes if note.startswith("answer")]
        self.life.answers["none"] += 1
        if not wrong or not wrong[0].startswith("answer undefined"):
            self.life.failures.append(f"an answer that the receiver did not give: {notes}")
        time.sleep(self.random.uniform(0, 3))
        self.box.control("wake")
        # What comes now comes too late to be answered.
        time.sleep(1)
        self.box.control("answer")

    def broken_frames(self):
        for _ in range(5):
            self.box.control("broken", self.random.choice(BROKEN))
            time.sleep(self.random.uniform(0, 0.3))

    def leave(self):
        """A viewer leaves the portal; the receiver brings it back."""
        director = self.director
        with director.keys_loose(), director.new_page("the portal was left"):
            director.viewer.isOpen = False
            portal = director.portal()
            director.viewer.press("Home")
            director.wait(lambda: not portal.isThere(), RESCUE_S, "the portal was not left")
            self.box.announce("announced")

    def standby(self):
        """Keys do nothing while the box is off."""
        director = self.director
        with director.keys_at_rest():
            top = director.there()[-1]
            self.box.control("power", "off")
            director.wait(lambda: top.standbys > 0, 60, "the box did not go to stand-by")
            for key in ("z", "Left", "5"):
                director.viewer.press(key)
            time.sleep(1)
            self.box.control("power", "on")
            director.settle()
            top.standbys = 0

    def endless_page(self):
        """A page that never ends loading works, and can be left."""
        director = self.director
        with director.keys_loose(), director.new_page("an address", "endless", isEndless=True):
            director.tell("go", "announced&endless")
        time.sleep(self.random.uniform(1, 3))
        # The engine lets no page say goodbye that has not ended loading.
        with director.keys_at_rest(), director.events_at_rest():
            director.ask("rest")
            director.portal().isGone = True
            with director.new_page("a page without end"):
                self.box.announce("announced")

    def dead_page(self):
        """A page that never begins leaves the one before it where it is."""
        director = self.director
        with director.keys_loose():
            count = director.web.dead
            director.tell("go", "announced&dead")
            director.wait(lambda: director.web.dead > count, RESCUE_S, "no dead page asked for")
            time.sleep(self.random.uniform(1, 3))
            with director.new_page("a dead page"):
                self.box.announce("announced")

    def failing_script(self):
        self.director.ask("fail", 5)

    # These end the program

    def lose(self, what, act, isReceiver=False):
        """Up to here everything has come; what is on its way from here on may go down."""
        director = self.director
        director.rest_keys()
        director.rest_events()
        self.box.control("go")
        time.sleep(self.random.uniform(0, 0.5))
        with director.new_page(what, "announced"):
            for page in director.there():
                page.isKilled = True
                page.isReceiverKilled = isReceiver
                act_on = page
            act()
            act_on.isGone = True
        director.settle()

    def kill_program(self):
        self.lose("the program was killed", lambda: self.box.kill("program"))

    def kill_receiver(self):
        self.lose("the receiver was killed", lambda: self.box.kill("receiver"), isReceiver=True)

    def endless_loop(self):
        def loop():
            action = self.director.tell("loop")
            self.director.wait(lambda: self.director.web.handed >= action, 60, "nobody was asked")
        self.lose("an endless loop", loop)

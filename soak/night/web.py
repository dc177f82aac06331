# SPDX-License-Identifier: Apache-2.0
"""Serves the pages of the soak, takes what they tell, and hands them what to do next."""
import http.server
import itertools
import json
import pathlib
import threading
import urllib.parse

PAGES = pathlib.Path(__file__).resolve().parent.parent / "pages"


class Life:
    """One load of one page, and what it has told."""

    def __init__(self, number, query):
        self.number, self.query = number, query
        self.arrived = None  # Number of the last recording event before it; 0 when there was none.
        self.opened = []     # The same when it opened favourites.
        self.left = None     # The same when it was unloaded.
        self.loaded = None
        self.standbys = 0
        self.reports = 0
        self.heard = {"events": [], "keys": [], "boxKeys": [], "commands": [], "notes": []}
        self.done = 0
        self.isGone = False     # Taken away without a chance to tell: killed, or closed at rest.

    def isThere(self):
        return self.arrived is not None and self.left is None and not self.isGone

    def take(self, batch):
        """False for one that is known."""
        if batch["number"] <= self.reports:
            return False
        self.reports = batch["number"]
        for name, values in self.heard.items():
            values.extend(batch[name])
        for note in batch["notes"]:
            word, _, rest = note.partition(" ")
            if word == "arrived":
                self.arrived = int(rest)
            elif word == "opened":
                self.opened.append(int(rest))
            elif word == "loaded":
                self.loaded = json.loads(rest)
            elif word == "standby":
                self.standbys += 1
            elif word == "done":
                self.done = int(rest)
        if batch["isLast"]:
            self.left = batch["recording"]
        return True


class Web(http.server.ThreadingHTTPServer):
    """What happens is told under `changed`: take it before looking at lives."""

    daemon_threads = True
    request_queue_size = 128

    def __init__(self):
        super().__init__(("127.0.0.1", 0), Handler)
        self.changed = threading.Condition()
        self.lives = []
        self.action = None
        self.handed = 0     # The last action that a page was handed,
        self.dead = 0        # Pages that were asked for and never answered,
        self.said = None    # and the last action of which a page said at once how far it is.
        self.told = lambda life, batch: None
        self.ids = itertools.count(1)
        self.closing = threading.Event()
        text = (PAGES / "page.html").read_text(encoding="utf-8")
        self.page = text.replace("/* SCRIPT */", (PAGES / "portal.js").read_text(encoding="utf-8"))
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def url(self, query):
        return f"http://127.0.0.1:{self.server_address[1]}/portal.html?{query}"

    def ask(self, life, name, argument=""):
        """Hands a page something to do; the number by which it tells that it is done."""
        with self.changed:
            self.action = {"id": next(self.ids), "name": name, "argument": str(argument),
                           "life": life.number}
            return self.action["id"]

    def new_page(self, query):
        with self.changed:
            life = Life(len(self.lives) + 1, query)
            self.lives.append(life)
            self.changed.notify_all()
        end = '<script src="/never"></script>' if "endless" in query else ""
        return self.page.replace("LIFE = 0", f"LIFE = {life.number}").replace("<!-- END -->", end)

    def report(self, text):
        told = json.loads(text)
        with self.changed:
            life = self.lives[told["life"] - 1]
            for batch in told["batches"]:
                if life.take(batch):
                    self.told(life, batch)
            self.changed.notify_all()
            action = self.action
            if action and action["life"] == life.number and life.done < action["id"]:
                self.handed = action["id"]
                return json.dumps(action)
        return ""

    def say(self, action):
        with self.changed:
            self.said = action
            self.changed.notify_all()

    def handle_error(self, *_):
        """Programs are killed while they are connected."""

    def end(self):
        self.closing.set()
        self.shutdown()
        self.server_close()


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    disable_nagle_algorithm = True

    def do_GET(self):
        url = urllib.parse.urlsplit(self.path)
        if url.path == "/never" or "dead" in url.query:
            with self.server.changed:
                self.server.dead += "dead" in url.query
                self.server.changed.notify_all()
            self.server.closing.wait(120)
            self.close_connection = True
        elif url.path == "/said":
            self.server.say(int(url.query))
            self.answer("")
        else:
            isPage = url.path == "/portal.html"
            self.answer(self.server.new_page(url.query) if isPage else "")

    def do_POST(self):
        text = self.rfile.read(int(self.headers["Content-Length"]))
        self.answer(self.server.report(text))

    def answer(self, body):
        data = body.encode()
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.send_header("Content-Length", str(len(data)))
        self.send_header("Cache-Control", "no-store")
        self.end_headers()
        self.wfile.write(data)

    def log_message(self, *_):
        pass

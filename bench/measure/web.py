# SPDX-License-Identifier: Apache-2.0
"""A web server that keeps the time of everything that a page tells."""
import http.server
import queue
import threading
import time

PAGE = b"""<!DOCTYPE html>
<html><head><meta charset="utf-8"><title>Portal</title>
<style>body { background: #204060; color: white; font: 24px sans-serif; }</style>
<script>
var stb = {profile: {}, player: {}}, key = {}, stbEvent, told = 0;
function _debug() {}
function tell(what) {
    var request = new XMLHttpRequest();
    request.open('GET', '/told/' + what + '/' + (++told));
    request.send();
}
stbEvent = {
    onEvent: function (code) { if (window.onStbEvent) { window.onStbEvent(code); } },
    onBroadcastMessage: function () {}
};
onload = function () {
    if (window.started) { window.started(); }
    tell('loaded');
};
onkeydown = function (event) { tell('key' + event.keyCode); };
SCRIPT
</script></head>
<body><h1>Portal</h1><input id="field"><ul>""" + b"<li>Channel</li>" * 30 + b"""</ul></body></html>
"""


class Web(http.server.ThreadingHTTPServer):
    """Serves one page at every path but /told; what pages tell there comes out of told()."""

    daemon_threads = True

    def __init__(self, script=""):
        super().__init__(("127.0.0.1", 0), Handler)
        self.script = script.encode()
        self.queue = queue.Queue()
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.shutdown()
        self.server_close()

    def handle_error(self, *_):
        """Programs are killed while they are connected."""

    @property
    def address(self):
        return f"http://127.0.0.1:{self.server_address[1]}/portal.html"

    def clear(self):
        while not self.queue.empty():
            self.queue.get_nowait()

    def told(self, what, timeout=30):
        """The time at which a page tells this, in seconds of time.monotonic()."""
        end = time.monotonic() + timeout
        while True:
            moment, name = self.queue.get(timeout=max(0.001, end - time.monotonic()))
            if name == what:
                return moment


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    disable_nagle_algorithm = True

    def do_GET(self):
        moment = time.monotonic()
        body = b""
        if self.path.startswith("/told/"):
            self.server.queue.put((moment, self.path.split("/")[2]))
        elif self.path.startswith("/portal.html"):
            self.server.queue.put((moment, "requested"))
            body = PAGE.replace(b"SCRIPT", self.server.script)
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.send_header("Content-Length", str(len(body)))
        self.send_header("Cache-Control", "no-store")
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass

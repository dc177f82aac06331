#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""A receiver that plays nothing, sends numbered events and keeps a list of all it sent and read.

receiver.py SOCKET FOLDER [SEED [RATE [FAULT]]]. FOLDER holds `announcement`, the URL of the portal
that every program is told, `control`, a socket that takes the words of Receiver.control(), and
`link`, the list: a line for each thing, with the number of the last recording event. FAULT does to
an event now and then what must not happen, or to a command: drop, double, swap, deaf.
"""
import collections
import json
import os
import pathlib
import random
import re
import socket
import struct
import sys
import threading
import time

MAGIC = 987654321
PLAY, STOP, SCREEN, EXIT = 1000, 1001, 1200, 1999
# Requests that wait, the type of their answers, and those answers that are the same every time.
ANSWERS = {
    1902: (1016, b"[]"), 1903: (1019, None), 1904: (1020, struct.pack("!I", 0)),
    1905: (1021, struct.pack("!I", 0)), 1906: (1022, None), 1907: (1023, b"[]"),
    1908: (1024, struct.pack("!I", 0)), 1909: (1025, b"[]"),
}
# Codes under which a portal hears of events: those of recordings carry a number, and each of the
# others follows one of them.
NUMBERED = {"39": 1026, "34": 1027, "35": 1028}
OTHERS = {"4": 1001, "1": 1002, "7": 1010, "9": 1013, "mount": 1017, "unmount": 1018}
WEIGHTS = [30, 10, 24, 24, 1, 1]
TRACKS = b'[{"pid":%d,"lang":["eng","English"]}]'
NEW_PORTAL, TIME = 1000, 1005
PER_RUN = 10_000_000  # Numbers of one run of the receiver.
LATE_S = 0.1          # What was not sent for longer is not made up for.
FAULT_EVERY = 400


def frame(kind, payload=b"", magic=MAGIC):
    return struct.pack("!III", magic, kind, len(payload)) + payload


def read_exactly(connection, size):
    data = b""
    while len(data) < size:
        piece = connection.recv(size - len(data))
        if not piece:
            raise ConnectionError
        data += piece
    return data


class Receiver:
    """A program has two connections: it sends over one and listens on the other."""

    def __init__(self, path, folder, seed, rate, fault):
        self.folder = pathlib.Path(folder)
        self.rate, self.fault = rate, fault
        self.link = os.open(self.folder / "link", os.O_WRONLY | os.O_CREAT | os.O_APPEND)
        run = int((self.folder / "link").stat().st_size)
        self.random = random.Random(seed + run)
        self.lock = threading.RLock()
        self.listening = []
        self.to = None  # The connection that events go to.
        self.number = self.next_run()
        self.due_others = collections.deque()
        self.last, self.last_event = "", "none"
        self.sent = 0
        self.isPaused = self.isHung = self.isSilent = False
        self.listener = self.listen(path)

    def next_run(self):
        file = self.folder / "runs"
        runs = int(file.read_text()) + 1 if file.exists() else 1
        file.write_text(str(runs))
        return runs * PER_RUN

    @staticmethod
    def listen(path):
        listener = socket.socket(socket.AF_UNIX)
        if os.path.exists(path):
            os.unlink(path)
        listener.bind(str(path))
        os.chmod(path, 0o666)
        listener.listen()
        return listener

    def note(self, *words):
        """A line in one write, which a kill cannot cut."""
        os.write(self.link, (" ".join(map(str, words)) + "\n").encode())

    def write(self, data):
        try:
            if self.to:
                self.to.sendall(data)
        except OSError:
            self.to = None

    def announce(self):
        with self.lock:
            self.write(frame(NEW_PORTAL, (self.folder / "announcement").read_bytes()))

    # Events

    def tick(self):
        due = time.monotonic()
        while True:
            due = max(due + 1 / self.rate, time.monotonic() - LATE_S)
            time.sleep(max(0, due - time.monotonic()))
            with self.lock:
                if self.to and not self.isPaused:
                    self.send_event()

    def send_event(self):
        if self.last == "numbered" and (self.due_others or self.random.random() < 0.3):
            code = self.due_others.popleft() if self.due_others else \
                self.random.choices(list(OTHERS), WEIGHTS)[0]
            payload = TRACKS % self.number if code in "79" else b""
            data = frame(OTHERS[code], payload)
            self.last = "other"
        else:
            self.number += 1
            code = self.random.choice(list(NUMBERED))
            data = frame(NUMBERED[code], struct.pack("!I", self.number))
            self.last = "numbered"
        self.sent += 1
        self.last_event = f"{code} {self.number}"
        if self.fault and self.sent % FAULT_EVERY == 0 and self.last == "numbered":
            data = self.spoilt(code, data)
        self.note("S", code, self.number)
        self.write(data)

    def spoilt(self, code, data):
        if self.fault == "drop":
            return b""
        if self.fault == "double":
            return data + data
        if self.fault == "swap":
            self.note("S", code, self.number)
            self.number += 1
            self.last_event = f"{code} {self.number}"
            return frame(NUMBERED[code], struct.pack("!I", self.number)) + data
        return data

    def send_broken(self, kind):
        """Frames that no receiver should send, and that nothing may follow from."""
        if kind == "unknown":
            self.write(frame(4711, self.random.randbytes(100)))
        elif kind == "magic":
            self.write(frame(TIME, struct.pack("!II", 1, 1), magic=1))
        elif kind == "negative":
            self.write(struct.pack("!III", MAGIC, TIME, 0xFFFFFFF0))
        elif kind == "huge":
            self.write(frame(1010, bytes(16 * 1024 * 1024 + 1)))
        elif kind == "empty":
            self.write(frame(1010) + frame(NEW_PORTAL))
        elif kind == "pieces":
            data = frame(1010, TRACKS % self.number + b" " * 5000)
            self.number += 1
            self.note("S", "39", self.number)
            self.note("S", "7", self.number)
            self.last, self.last_event = "other", f"7 {self.number}"
            self.write(frame(NUMBERED["39"], struct.pack("!I", self.number)) + data[:13])
            time.sleep(0.1)
            self.write(data[13:])

    # Commands

    def serve(self, connection):
        last = 0
        try:
            while True:
                _, kind, size = struct.unpack("!III", read_exactly(connection, 12))
                payload = read_exactly(connection, size)
                while self.isHung:
                    time.sleep(0.02)
                with self.lock:
                    if kind == SCREEN:
                        self.begin(connection)
                        continue
                    last = self.take(kind, payload, last)
        except OSError:
            with self.lock:
                if connection is self.to:
                    self.to = None
                if connection in self.listening:
                    self.listening.remove(connection)
            connection.close()

    def begin(self, connection):
        """A program is there: the other of its connections is the one to send on."""
        self.listening.remove(connection)
        threading.Timer(0.5, self.begin_sending).start()

    def begin_sending(self):
        with self.lock:
            if not self.listening:
                return  # The program has ended already.
            self.to = self.listening[-1]
            self.last = ""
            self.due_others.clear()
            self.note("C", self.number)
            self.announce()

    def take(self, kind, payload, last):
        number = self.number_of(kind, payload, last)
        isLost = self.fault == "deaf" and number % 10 == 0
        if not isLost:
            self.note("R", kind, number)
        if kind == PLAY:
            self.due_others.append("4")
        elif kind in ANSWERS and not self.isSilent:
            answer, data = ANSWERS[kind]
            if kind == 1906:
                data = json.dumps({"id": number}).encode()
            self.write(frame(answer, data or struct.pack("!I", number)))
            self.note("A", kind, number)
        return number

    @staticmethod
    def number_of(kind, payload, last):
        """The number that the page gave a command, or else that of the command before it."""
        if kind in (PLAY, 1903):
            found = re.search(rb"/(\d+)\.ts", payload)
            return int(found.group(1)) if found else last
        if kind in (1904, 1905, 1906):
            return json.loads(payload)["id"]
        if kind in (1005, 1012, 1022) and len(payload) == 4:
            return struct.unpack("!I", payload)[0]
        return last

    # Control

    def control(self, words):
        """Answers with the last event that was sent."""
        with self.lock:
            if words[0] in ("pause", "go"):
                self.isPaused = words[0] == "pause"
            elif words[0] in ("hang", "wake"):
                self.isHung = words[0] == "hang"
            elif words[0] in ("silent", "answer"):
                self.isSilent = words[0] == "silent"
            elif words[0] == "announce":
                self.announce()
            elif words[0] == "broken":
                self.send_broken(words[1])
            elif words[0] == "power":
                self.write(frame(1029 if words[1] == "off" else 1030))
            return f"{int(self.to is not None)} {self.last_event}\n"

    def serve_control(self):
        listener = self.listen(self.folder / "control")
        while True:
            connection, _ = listener.accept()
            with connection:
                connection.settimeout(5)
                try:
                    words = connection.recv(4096).decode().split()
                    connection.sendall(self.control(words).encode())
                except (OSError, IndexError):
                    pass

    def run(self):
        for work in (self.tick, self.serve_control):
            threading.Thread(target=work, daemon=True).start()
        while True:
            connection, _ = self.listener.accept()
            with self.lock:
                self.listening.append(connection)
            threading.Thread(target=self.serve, args=(connection,), daemon=True).start()


if __name__ == "__main__":
    arguments = sys.argv[1:] + ["1", "200", ""][len(sys.argv) - 3:]
    Receiver(arguments[0], arguments[1], int(arguments[2]), float(arguments[3]),
             arguments[4]).run()

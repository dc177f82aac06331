#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""A receiver that plays nothing: serves the socket, answers every request, reports play start.

receiver.py SOCKET [FILE]. FILE holds the URL of a portal that is announced to every program that
connects, and again at SIGUSR1. Ends when it is killed.
"""
import os
import signal
import socket
import struct
import sys
import threading

MAGIC = 987654321
PLAY, SCREEN = 1000, 1200
NEW_PORTAL, PLAY_STARTED = 1000, 1001
# Requests that wait, the type of their answers, and the answers.
ANSWERS = {
    1902: (1016, b"[]"),
    1903: (1019, struct.pack("!I", 7)),
    1904: (1020, struct.pack("!I", 0)),
    1905: (1021, struct.pack("!I", 0)),
    1906: (1022, b"{}"),
    1907: (1023, b"[]"),
    1908: (1024, struct.pack("!I", 0)),
    1909: (1025, b"[]"),
}


def frame(kind, payload=b""):
    return struct.pack("!III", MAGIC, kind, len(payload)) + payload


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

    def __init__(self, path, announcement):
        self.announcement = announcement
        self.listening = []
        self.lock = threading.Lock()
        self.listener = socket.socket(socket.AF_UNIX)
        if os.path.exists(path):
            os.unlink(path)
        self.listener.bind(path)
        os.chmod(path, 0o666)
        self.listener.listen()

    def tell(self, data):
        with self.lock:
            for connection in self.listening:
                try:
                    connection.sendall(data)
                except OSError:
                    pass

    def announce(self):
        if self.announcement:
            with open(self.announcement, "rb") as file:
                self.tell(frame(NEW_PORTAL, file.read()))

    def forget(self, connection):
        with self.lock:
            if connection in self.listening:
                self.listening.remove(connection)

    def serve(self, connection):
        try:
            while True:
                _, kind, size = struct.unpack("!III", read_exactly(connection, 12))
                self.forget(connection)
                read_exactly(connection, size)
                if kind == SCREEN:
                    # The other connection is made at about the same time.
                    threading.Timer(0.5, self.announce).start()
                elif kind in ANSWERS:
                    self.tell(frame(*ANSWERS[kind]))
                elif kind == PLAY:
                    self.tell(frame(PLAY_STARTED))
        except OSError:
            self.forget(connection)
            connection.close()

    def run(self):
        while True:
            connection, _ = self.listener.accept()
            with self.lock:
                self.listening.append(connection)
            threading.Thread(target=self.serve, args=(connection,), daemon=True).start()


if __name__ == "__main__":
    receiver = Receiver(sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else None)
    # In a thread of its own, since the handler may interrupt one that holds the lock.
    signal.signal(signal.SIGUSR1, lambda *_: threading.Thread(target=receiver.announce).start())
    receiver.run()

#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""A receiver that plays nothing: serves the socket, answers every request, reports play start.

receiver.py SOCKET. It ends when it is killed, and a program that is started later finds it as new.
"""
import os
import socket
import struct
import sys
import threading

MAGIC = 987654321
PLAY, PLAY_STARTED = 1000, 1001
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
    """Sends to every connection, since a program reads only one of its two."""

    def __init__(self, path):
        self.connections = []
        self.lock = threading.Lock()
        self.listener = socket.socket(socket.AF_UNIX)
        if os.path.exists(path):
            os.unlink(path)
        self.listener.bind(path)
        os.chmod(path, 0o666)
        self.listener.listen()

    def tell(self, data):
        with self.lock:
            for connection in self.connections:
                try:
                    connection.sendall(data)
                except OSError:
                    pass

    def serve(self, connection):
        try:
            while True:
                _, kind, size = struct.unpack("!III", read_exactly(connection, 12))
                read_exactly(connection, size)
                if kind in ANSWERS:
                    self.tell(frame(*ANSWERS[kind]))
                elif kind == PLAY:
                    self.tell(frame(PLAY_STARTED))
        except OSError:
            with self.lock:
                self.connections.remove(connection)
            connection.close()

    def run(self):
        while True:
            connection, _ = self.listener.accept()
            with self.lock:
                self.connections.append(connection)
            threading.Thread(target=self.serve, args=(connection,), daemon=True).start()


if __name__ == "__main__":
    Receiver(sys.argv[1]).run()

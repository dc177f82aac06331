# SPDX-License-Identifier: Apache-2.0
"""A whole box below one temporary folder: the start script, the receiver and the program."""
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import tempfile

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAM = TOP / "build/desktop/app/vesprel"
SILENCE_S = 20  # After so long the start script ends a program that hangs.


class Box:
    def __init__(self, screen, portal, seed, rate, fault):
        self.script = None
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="vesprel-soak."))
        for name in ("home/vesprel", "etc", "media"):
            (self.folder / name).mkdir(parents=True)
        environment = dict(os.environ, DISPLAY=screen, QT_QPA_PLATFORM="xcb")
        subprocess.run(["cmake", "--install", TOP / "build/desktop", "--component", "web"],
                       env=dict(environment, DESTDIR=str(self.folder)), check=True,
                       stdout=subprocess.DEVNULL)
        self.starter("receiver", f"/usr/bin/python3 '{TOP}/soak/receiver.py' "
                     f"'{self.folder}/home/.sock.vesprel' '{self.folder}' {seed} {rate} '{fault}'")
        self.starter("program", f"'{PROGRAM}'")
        settings = {
            "RECEIVER_COMMAND": f"{self.folder}/receiver", "RUN_AS": "",
            "VESPREL_PROGRAM": f"{self.folder}/program", "VESPREL_RUN": f"{self.folder}/run",
            "VESPREL_SOCKET": f"{self.folder}/home/.sock.vesprel",
            "VESPREL_LOG": f"{self.folder}/log", "VESPREL_MEDIA": f"{self.folder}/media",
            "VESPREL_HOME": f"{self.folder}/home", "VESPREL_ROOT": f"{self.folder}",
            "VESPREL_MEMORY_KB": "1500000", "VESPREL_SILENCE": str(SILENCE_S),
            # Standard error would fill the disk in an hour of 200 events a second.
            "QT_LOGGING_RULES": "default.debug=false",
            "Q_VESPREL_PORTAL": portal("start"), "Q_CACHE_PATH": f"{self.folder}/cache",
        }
        file = self.folder / "settings"
        file.write_text("".join(f'{name}="{value}"\n' for name, value in settings.items()))
        environment["VESPREL_SETTINGS"] = str(file)
        self.environment = environment
        self.portal = portal
        self.announce("announced", tell=False)

    def start(self):
        with open(self.folder / "output", "wb") as output:
            self.script = subprocess.Popen([TOP / "packaging/vesprel-start"], stdout=output,
                                           env=self.environment, stdin=subprocess.DEVNULL,
                                           # A Ctrl+C is for the night, which ends the box itself.
                                           stderr=output, start_new_session=True)

    def starter(self, name, command):
        file = self.folder / name
        file.write_text(f"#!/bin/sh\necho $$ >'{self.folder}/{name}.pid'\nexec {command}\n")
        file.chmod(0o755)

    def pid(self, name):
        try:
            return int((self.folder / f"{name}.pid").read_text())
        except (OSError, ValueError):
            return 0

    def signal(self, name, number):
        os.kill(self.pid(name), number)

    def kill(self, name):
        self.signal(name, signal.SIGKILL)

    def control(self, *words):
        """Tells the receiver something; its last event, None while it has no program."""
        with socket.socket(socket.AF_UNIX) as connection:
            connection.settimeout(30)
            connection.connect(str(self.folder / "control"))
            connection.sendall(" ".join(words).encode())
            isSending, _, event = connection.recv(4096).decode().strip().partition(" ")
            return event if isSending == "1" else None

    def announce(self, query, tell=True):
        """The portal that the receiver announces from now on, and at once if it shall tell."""
        (self.folder / "announcement").write_text(self.portal(query))
        if tell:
            self.control("announce")

    def link(self):
        """Lines of the receiver's list."""
        return (self.folder / "link").read_text().splitlines()

    def end(self):
        if self.script:
            self.script.terminate()
            self.script.wait()

    def remove(self):
        shutil.rmtree(self.folder)

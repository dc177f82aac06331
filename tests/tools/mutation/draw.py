# SPDX-License-Identifier: Apache-2.0
"""Draws faults: over the files in proportion to their lines of code, at most one a line."""
import json
import random

from proof import TOP

from .kinds import faults_of
from .source import Source

FOLDERS = ("api", "shell", "enigma2", "objects", "platform")


class Fault:
    """One changed line; `line` counts from 1."""

    def __init__(self, number, name, line, kind, before, after):
        self.number = number
        self.name = name
        self.line = line
        self.kind = kind
        self.before = before
        self.after = after

    def key(self):
        return self.name, self.before, self.after

    def text(self):
        return f"{self.name}:{self.line}: {self.kind}: {self.before.strip()} -> {self.after.strip()}"

    def content(self):
        """The file with the fault in it; the line is looked for, since files change."""
        source = Source(TOP / self.name, self.name)
        places = [n for n, line in enumerate(source.lines) if line == self.before]
        if not places:
            return None
        place = min(places, key=lambda n: abs(n + 1 - self.line))
        self.line = place + 1
        return source.with_line(place, self.after)


def sources():
    found = []
    for folder in FOLDERS:
        for path in sorted((TOP / folder).rglob("*")):
            if path.suffix in (".cpp", ".h"):
                found.append(Source(path, path.relative_to(TOP).as_posix()))
    return found


def draw(count, seed):
    """So many faults for a seed; the same tree gives the same ones."""
    chance = random.Random(seed)
    places = {}
    for source in sources():
        lines = {n: list(faults_of(source, n)) for n in source.code_lines()}
        places[source.name] = source, {n: faults for n, faults in lines.items() if faults}
    # Lines that only declare or close a block hold no fault; the rest of a header counts as well.
    total = sum(len(lines) for _, lines in places.values())
    shares = {name: count * len(lines) / total for name, (_, lines) in places.items() if lines}
    # The largest remainders get what rounding leaves over.
    quota = {name: int(share) for name, share in shares.items()}
    for name in sorted(shares, key=lambda n: quota[n] - shares[n])[:count - sum(quota.values())]:
        quota[name] += 1
    drawn = []
    for name, (source, lines) in places.items():
        for line in sorted(chance.sample(sorted(lines), min(quota.get(name, 0), len(lines)))):
            kind = chance.choice(sorted({kind for kind, _ in lines[line]}))
            after = chance.choice([new for k, new in lines[line] if k == kind])
            drawn.append(Fault(len(drawn) + 1, name, line + 1, kind, source.lines[line], after))
    return drawn


def survivors_of(path):
    """The faults that a kept report says nobody saw."""
    kept = json.loads(path.read_text())
    return [Fault(r["number"], r["file"], r["line"], r["kind"], r["before"], r["after"])
            for r in kept["faults"] if r["verdict"] == "survived"]

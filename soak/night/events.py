# SPDX-License-Identifier: Apache-2.0
"""Whether every event that the receiver sent was heard by a page, once and in order.

An event may only be missing while no page was there to hear it. When that was, the program itself
knows: a page finds in it the number of the last recording event, and tells it when it arrives and
when it goes. All between these two numbers was told to nobody, and nothing else may be missing.
"""
import bisect

NUMBERED = ("39", "34", "35")


class Sent:
    """What the receiver's list says, in its order."""

    def __init__(self, lines):
        self.events = []       # "code number"
        self.connections = []  # Index of the first event of each program
        self.commands = []     # "kind number"
        self.answers = 0
        for line in lines:
            words = line.split()
            if words[0] == "S":
                self.events.append(f"{words[1]} {words[2]}")
            elif words[0] == "C":
                self.connections.append(len(self.events))
            elif words[0] == "A":
                self.answers += 1
            elif words[0] == "R":
                self.take_command(words[1:])
        self.index = {event: index for index, event in enumerate(self.events)}
        self.recordings = {int(event.split()[1]): index for index, event in enumerate(self.events)
                           if event.split()[0] in NUMBERED}

    def take_command(self, words):
        if words[0] in ("1000", "1005", "1012", "1903", "1905", "1906"):
            self.commands.append(f"{words[0]} {words[1]}")

    def start_of_connection(self, index):
        place = bisect.bisect_right(self.connections, index)
        return self.connections[place - 1] if place else 0

    def end_of_connection(self, index):
        place = bisect.bisect_right(self.connections, index)
        return self.connections[place] if place < len(self.connections) else len(self.events)

    def told_until(self, recording):
        """Index behind the last event that the program may have told by then."""
        index = self.recordings[recording] + 1
        isOther = index < len(self.events) and self.events[index].split()[0] not in NUMBERED
        return index + isOther


class Verdict:
    """What was missing, by reason, and what must not have happened."""

    def __init__(self, total):
        self.heard = bytearray(total)
        self.nobody = bytearray(total)  # Told while no page was there.
        self.killed = bytearray(total)  # Went down with a program or a receiver.
        self.failures = []

    def missing(self, reason):
        return sum(1 for heard, allowed in zip(self.heard, reason) if allowed and not heard)

    def lost(self):
        """Indices of the events that no page heard, for no reason."""
        return [index for index, heard in enumerate(self.heard)
                if not (heard or self.nobody[index] or self.killed[index])]


def allow(mask, begin, end):
    if end > begin:
        mask[begin:end] = b"\1" * (end - begin)


def hear(life, sent, verdict):
    """Indices of a page's events; what is wrong with their order is a failure."""
    indices = []
    for event in life.heard["events"]:
        index = sent.index.get(event)
        where = f"page {life.number} heard event {event}"
        if index is None:
            verdict.failures.append(f"{where}, which was not sent")
        elif verdict.heard[index]:
            verdict.failures.append(f"{where} twice")
        elif indices and index < indices[-1]:
            verdict.failures.append(f"{where} after {sent.events[indices[-1]]}")
        else:
            verdict.heard[index] = 1
            indices.append(index)
    return indices


def judge(lives, sent):
    """Lives are the pages that have arrived, in order; after the last event there was a rest."""
    verdict = Verdict(len(sent.events))
    behind = 0  # Index behind what the pages so far answer for.
    portal, isRestart = None, True
    last = [life for life in lives if not life.isFavourites][-1:]
    for life in lives:
        indices = hear(life, sent, verdict)
        if life.arrived:
            first = sent.told_until(life.arrived)
        elif not isRestart:
            first = behind
        elif indices:
            first = sent.start_of_connection(indices[0])
        else:
            continue  # The first page of a program, gone before it heard anything.
        if life.isFavourites:
            allow(verdict.nobody, sent.recordings.get(portal.opened.pop(0), -1) + 1, first)
        elif isRestart:
            start = sent.start_of_connection(max(0, first - 1) if life.arrived else first)
            allow(verdict.killed, behind, start)
            allow(verdict.nobody, start, first)
        else:
            allow(verdict.nobody, behind, first)
        if not life.isFavourites:
            portal, isRestart = life, life.isKilled
        if life.left:
            behind = max(behind, sent.recordings[life.left] + 1)
        if indices:
            behind = max(behind, indices[-1] + 1)
        # The engine lets no page say goodbye that has not ended loading.
        isSilent = life.left is None and not life.isGone and life.loaded
        if isSilent and life not in last:
            verdict.failures.append(f"page {life.number}, there since {life.since}, "
                                    "ended without a word")
    for index in verdict.lost()[:20]:
        verdict.failures.append(f"event {sent.events[index]} was sent and not heard")
    return verdict


def judge_box_keys(lives):
    """Failures: the box itself presses a key when storage is plugged in or out."""
    failures = []
    for life in lives:
        told = [event.split()[0] for event in life.heard["events"] if "mount" in event]
        keys = life.heard["boxKeys"]
        # Keys come a moment later than events, so a new page may hear one for the page before it.
        fits = [told[:len(keys) - early] == keys[early:]
                and early + len(told) - (len(keys) - early) <= 2
                for early in range(min(3, len(keys) + 1))]
        if not any(fits):
            failures.append(f"page {life.number} heard of storage {told}, by keys {keys}")
    return failures

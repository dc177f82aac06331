# SPDX-License-Identifier: Apache-2.0
"""Memory, descriptors and threads of the program over the time of a night, and their growth."""
import math
import os
import pathlib
import statistics
import threading
import time

LEAST_SPAN_S = 20 * 60  # A growth in an hour cannot be told from less,
SLACK_MIB = 32          # so there is only an absolute slack then.
PATIENCE_S = 60         # Garbage of tens of MiB is collected by then.
MOST_MIB_PER_HOUR = 0.5
CERTAINTY = 1.64        # Normal deviates: so much that nineteen in twenty such fits find more.
DESCRIPTOR_SLACK = 4
THREAD_SLACK = 4


class Sample:
    """Of a process, at a time in seconds since the beginning: memory in MiB."""

    def __init__(self, moment, pid):
        process = pathlib.Path("/proc") / str(pid)
        rows = dict(line.split(":", 1) for line in
                    (process / "smaps_rollup").read_text().splitlines()[1:])
        self.moment, self.pid = moment, pid
        self.pss = int(rows["Pss"].split()[0]) / 1024
        # What other users of the same libraries do changes the rest.
        self.own = int(rows["Pss_Anon"].split()[0]) / 1024
        self.descriptors = len(os.listdir(process / "fd"))
        self.threads = len(os.listdir(process / "task"))


class Usage:
    """Its thread takes a sample every so many seconds."""

    def __init__(self, find_pid, interval):
        self.find_pid, self.interval = find_pid, interval
        self.begin = time.monotonic()
        self.samples, self.rests = [], []
        self.ended = threading.Event()
        self.thread = threading.Thread(target=self.sample_on, daemon=True)
        self.thread.start()

    def now(self):
        return time.monotonic() - self.begin

    def sample_on(self):
        while not self.ended.wait(self.interval):
            try:
                self.samples.append(Sample(self.now(), self.find_pid()))
            except (OSError, KeyError):
                pass  # It is being started again.

    def rest(self, seconds):
        """
        Samples a page at rest: what it had made is collected, what has leaked stays. The engine
        collects when it likes, so a rest that finds more than the slack goes on for a while.
        """
        samples = []
        while len(samples) < seconds or (self.is_above_slack(samples) and len(samples) < PATIENCE_S):
            time.sleep(1)
            samples.append(Sample(self.now(), self.find_pid()))
        self.rests.append(min(samples, key=lambda sample: sample.own))

    def is_above_slack(self, samples):
        before = [rest.own for rest in self.rests if rest.pid == samples[-1].pid]
        least = min(sample.own for sample in samples)
        return bool(before) and least > before[0] + SLACK_MIB

    def end(self):
        self.ended.set()
        self.thread.join()


def slopes(points):
    """The slopes between all pairs, in order: a few points that are off change little."""
    return sorted((second[1] - first[1]) / (second[0] - first[0])
                  for number, first in enumerate(points) for second in points[number + 1:])


def least_slope(points):
    """The lower end of what the slope may be, by the ranks of all pairs (after Sen)."""
    found, count = slopes(points), len(points)
    spread = CERTAINTY * math.sqrt(count * (count - 1) * (2 * count + 5) / 18)
    return found[max(0, int((len(found) - spread) / 2))]


class Growth:
    """What has grown from one rest to the next, after the warm-up."""

    def __init__(self, rests):
        self.points = [(sample.moment, sample.own) for sample in rests]
        self.span = rests[-1].moment - rests[0].moment
        self.per_hour = statistics.median(slopes(self.points)) * 3600
        self.least_per_hour = least_slope(self.points) * 3600
        self.memory = rests[-1].own - rests[0].own
        self.descriptors = rests[-1].descriptors - rests[0].descriptors
        self.threads = rests[-1].threads - rests[0].threads
        self.isLong = self.span >= LEAST_SPAN_S

    def failures(self):
        found = []
        if self.isLong and self.least_per_hour > MOST_MIB_PER_HOUR:
            found.append(f"memory grows by {self.per_hour:.2f} MiB an hour")
        if not self.isLong and self.memory > SLACK_MIB:
            found.append(f"memory has grown by {self.memory:.1f} MiB")
        if self.descriptors > DESCRIPTOR_SLACK:
            found.append(f"descriptors have grown by {self.descriptors}")
        if self.threads > THREAD_SLACK:
            found.append(f"threads have grown by {self.threads}")
        return found

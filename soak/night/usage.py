# SPDX-License-Identifier: Apache-2.0
"""Memory, descriptors and threads of the program over the time of a night, and their growth."""
import os
import pathlib
import statistics
import threading
import time

LEAST_SPAN_S = 20 * 60  # A growth in an hour cannot be told from less,
SLACK_MIB = 32          # so there is only an absolute slack then; and within
YOUNG_S = 20            # a program still grows anyway.
MOST_MIB_PER_HOUR = 0.5
DESCRIPTOR_SLACK = 4
THREAD_SLACK = 4
WINDOWS = 24            # Least values of so many spans of time are looked at: a page's garbage comes
#                         and goes, what has leaked stays.


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
        self.samples = []
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

    def end(self):
        self.ended.set()
        self.thread.join()


def least(samples, value):
    """Time and least value of each span of time."""
    first, last = samples[0].moment, samples[-1].moment
    span = (last - first) / WINDOWS or 1
    spans = {}
    for sample in samples:
        spans.setdefault(min(WINDOWS - 1, int((sample.moment - first) / span)), []).append(sample)
    return [min(((value(sample), sample.moment) for sample in taken))[::-1]
            for _, taken in sorted(spans.items())]


def slope(points):
    """Median of the slopes between all pairs: a few points that are off change nothing."""
    slopes = [(second[1] - first[1]) / (second[0] - first[0])
              for number, first in enumerate(points) for second in points[number + 1:]
              if second[0] > first[0]]
    return statistics.median(slopes) if slopes else 0.0


class Growth:
    """What has grown between the warm-up and the end."""

    def __init__(self, samples):
        self.samples = samples
        self.span = samples[-1].moment - samples[0].moment
        self.points = least(samples, lambda sample: sample.own)
        self.per_hour = slope(self.points) * 3600
        third = max(1, len(samples) // 3)
        self.begin, self.end = samples[:third], samples[-third:]
        self.memory = self.change(lambda sample: sample.own)
        self.descriptors = self.change(lambda sample: sample.descriptors)
        self.threads = self.change(lambda sample: sample.threads)
        self.isLong = self.span >= LEAST_SPAN_S

    def change(self, value):
        """Of the least values of the first and of the last third."""
        return min(map(value, self.end)) - min(map(value, self.begin))

    def failures(self):
        found = []
        if self.isLong and self.per_hour > MOST_MIB_PER_HOUR:
            found.append(f"memory grows by {self.per_hour:.2f} MiB an hour")
        if YOUNG_S < self.span < LEAST_SPAN_S and self.memory > SLACK_MIB:
            found.append(f"memory has grown by {self.memory:.1f} MiB")
        if self.descriptors > DESCRIPTOR_SLACK:
            found.append(f"descriptors have grown by {self.descriptors}")
        if self.threads > THREAD_SLACK:
            found.append(f"threads have grown by {self.threads}")
        return found

# SPDX-License-Identifier: Apache-2.0
"""The report of a night: Markdown, and a plot of what the program used."""
import os
import pathlib
import statistics
import subprocess

import matplotlib

from night.usage import DESCRIPTOR_SLACK, MOST_MIB_PER_HOUR, SLACK_MIB, THREAD_SLACK

matplotlib.use("svg")
import matplotlib.pyplot as pyplot  # noqa: E402

ROWS = [("memory (PSS), MiB", "pss"), ("memory of its own, MiB", "own"),
        ("descriptors", "descriptors"), ("threads", "threads")]


def plot(file, samples, growth, ends):
    """Curves over minutes, one of each kind of figure below the other; restarts cut them."""
    matplotlib.rcParams.update({"svg.hashsalt": "soak", "svg.fonttype": "none", "font.size": 8})
    figure, axes = pyplot.subplots(len(ROWS), 1, sharex=True, figsize=(8, 7))
    runs = []
    for sample in samples:
        if not runs or runs[-1][-1].pid != sample.pid:
            runs.append([])
        runs[-1].append(sample)
    for axis, (title, name) in zip(axes, ROWS):
        for run in runs:
            axis.plot([sample.moment / 60 for sample in run],
                      [getattr(sample, name) for sample in run], color="#2060a0", linewidth=0.8)
        for moment in ends:
            axis.axvline(moment / 60, color="#c04020", linewidth=0.4)
        axis.set_title(title, loc="left", fontsize=8)
        axis.grid(linewidth=0.2)
    if growth:
        axes[1].plot([moment / 60 for moment, _ in growth.points],
                     [value for _, value in growth.points], "k.", markersize=4)
    axes[-1].set_xlabel("minutes; red: the program was ended; dots: rests")
    figure.tight_layout()
    figure.savefig(file, metadata={"Date": None})


def growth_lines(growth):
    if not growth:
        return ["The night was too short to look at memory."]
    span = f"{growth.span / 60:.0f} minutes" if growth.isLong else f"{growth.span:.0f} seconds"
    lines = [f"Between the first and the last rest, {span} later: memory of its own "
             f"{growth.memory:+.1f} MiB, descriptors {growth.descriptors:+d}, threads "
             f"{growth.threads:+d}."]
    if growth.isLong:
        lines.append(f"Robust fit through {len(growth.points)} rests: **{growth.per_hour:+.2f} MiB "
                     f"an hour**, in nineteen of twenty cases more than {growth.least_per_hour:+.2f}; "
                     f"fails when that is above {MOST_MIB_PER_HOUR}.")
    else:
        lines.append(f"That is too short to tell a growth in an hour; at most {SLACK_MIB} MiB, "
                     f"{DESCRIPTOR_SLACK} descriptors and {THREAD_SLACK} threads are allowed.")
    return lines


def text(night, rows, growth):
    """The whole report."""
    counts = ", ".join(f"{name} {count}" for name, count in sorted(night.counts.items()))
    head = ["", "Sent", "Seen", "Told while no page was there", "Went down with what was ended",
            "Lost, doubled or out of order"]
    # A night that failed before its first look has none.
    loads = night.loads or [os.getloadavg()[0]]
    lines = [
        f"`soak/run {night.minutes:g} {night.seed}` on {os.cpu_count()} processors, load "
        f"{min(loads):.0f} to {max(loads):.0f} "
        f"({statistics.median(loads):.0f} in the middle), commit {commit()}"
        + (f", ended by hand after {night.usage.samples[-1].moment / 60:.0f} minutes."
           if night.isInterrupted else "."), "",
        "| " + " | ".join(head) + " |", "|" + "---|" * len(head),
        *("| " + " | ".join(map(str, row)) + " |" for row in rows), "",
        f"What happened: {counts}. The longest wait for a page was "
        f"{night.director.longest:.1f} s; {night.life.count} times something was stored.", "",
        *growth_lines(growth), "",
        "Result: " + ("**passed**." if not night.failures else
                      f"**failed**, {len(night.failures)} times. First: {night.failures[0]}."), ""]
    return "\n".join(lines)


def commit():
    found = subprocess.run(["git", "describe", "--always", "--dirty"], capture_output=True,
                           cwd=pathlib.Path(__file__).parent, text=True, check=False)
    return found.stdout.strip() or "unknown"

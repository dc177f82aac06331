# SPDX-License-Identifier: Apache-2.0
"""The parts of a run: each measures its figures and adds them to the table."""
import json
import os
import statistics
import subprocess
import sys

from measure import endurance, keys, programs, start
from measure.programs import BARE, OURS

START_TARGETS = {BARE: 0.90, "cog": 0.60, "Chromium": 0.18}
MEMORY_TARGETS = {BARE: 1.00, "cog": 0.38, "Chromium": 0.15}


def progress(line):
    print(f"bench: {line}", file=sys.stderr, flush=True)


def output(program, *arguments):
    """The JSON that a benchmark prints."""
    environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen"}
    return json.loads(subprocess.run([programs.build / "bench" / program, *arguments], check=True,
                                     env=environment, stdout=subprocess.PIPE,
                                     stderr=subprocess.DEVNULL).stdout)


def add_start(table, names, short):
    # Ours starts in two threads; kept figures of a machine that has room for them say nothing of
    # one that has not.
    isAlone = not programs.run_side_by_side()
    where, under = (" on one processor", programs.ON_ONE) if isAlone else ("", ())
    medians = start.measure(names, 3 if short else 9, progress, under)
    for other in names:
        if other != OURS:
            table.add(f"start to onload{where}, against {other}", medians[OURS]["onload_ms"],
                      medians[other]["onload_ms"], None if isAlone else START_TARGETS[other])
            table.add(f"memory (PSS), against {other}", medians[OURS]["pss_kib"] / 1024,
                      medians[other]["pss_kib"] / 1024, MEMORY_TARGETS[other], "MiB")
    table.add(f"start to first request{where}, against {BARE}", medians[OURS]["request_ms"],
              medians[BARE]["request_ms"])
    again = start.again(names, 3 if short else 9, progress, under)
    for other in names:
        if other != OURS:
            table.add(f"later start to onload{where}, against {other}", again[OURS], again[other])


def add_keys(table, names, short):
    # cog takes its keys from elsewhere than the display's.
    results = keys.measure([name for name in names if name != "cog"], 100 if short else 500,
                           progress)
    # Of a hundred presses the p99 is one of the two slowest, whatever made them slow.
    shares = {"p50": 1.10} if short else {"p50": 1.10, "p99": 1.0}
    for other in results:
        if other in names and other != OURS:
            for share, target in shares.items():
                table.add(f"key to keydown, {share}, against {other}", results[OURS][share + "_ms"],
                          results[other][share + "_ms"], target if other == BARE else None)
    for label in keys.ASKING:
        table.add(f"{label}, which asks the page, p50, against {BARE}'s plain key",
                  results[f"{OURS}: {label}"]["p50_ms"], results[BARE]["p50_ms"])


def add_link(table, _, short):
    runs = [output("bench_link") for _ in range(1 if short else 5)]

    def milliseconds(key):
        return statistics.median(run[key + "_us"] for run in runs) / 1000
    # A single run's p99 is the sixth slowest of 500, whatever made them slow.
    for share in ("p50",) if short else ("p50", "p99"):
        for figure, key in (("event to onEvent", "event"), ("command to receiver", "command")):
            table.add(f"{figure}, {share}, against a bare link", milliseconds(f"{key}_{share}"),
                      milliseconds(f"bare_{key}_{share}"))
    table.absolute("event to onEvent, p99", milliseconds("event_p99"), "ms", 1.0)


def add_stub(table, *_):
    times = output("bench_stub")
    for label, key, target in (("records off", "records_off_ns", 1.3),
                               ("records to standard error", "stderr_ns", None)):
        table.add(f"logging slot, {label}, against a bare slot", times[key] / 1000,
                  times["bare_ns"] / 1000, target, "µs")
    # File systems differ by more than what is ours here.
    table.add("logging slot, records to the log file, against a bare slot and a line written",
              times["sink_ns"] / 1000, (times["bare_ns"] + times["line_ns"]) / 1000, None, "µs")


def add_codec(table, _, short):
    repetitions = 5 if short else 9
    options = ["--benchmark_format=json", f"--benchmark_repetitions={repetitions}",
               "--benchmark_enable_random_interleaving=true",
               f"--benchmark_min_time={0.02 if short else 0.2}"]
    # The fastest of each: what else the machine does only ever adds.
    best = {}
    for entry in output("bench_codec", *options)["benchmarks"]:
        name = entry["run_name"]
        if entry["run_type"] == "iteration" and \
                (name not in best or entry["cpu_time"] < best[name]["cpu_time"]):
            best[name] = entry
    for word in ("pack", "unpack"):
        table.add(f"codec {word}, against QDataStream", best[f"{word}Codec"]["cpu_time"],
                  best[f"{word}DataStream"]["cpu_time"], 1.0, "ns")

    def per_byte(what, mebibytes):
        return 1e9 / best[f"{what}/{int(mebibytes * 2**20)}"]["bytes_per_second"]
    small = 1 / 16
    table.absolute("splitter, 20-byte frames a second",
                   best[f"splitFrames/{int(small * 2**20)}"]["items_per_second"] / 1e6, "million",
                   5, True)
    # A large burst leaves the processor's caches, which costs each machine something else.
    for size in (16, 64):
        memory = per_byte("copyBurst", size) - per_byte("copyBurst", small)
        table.add(f"splitter, cost per byte at {size} MiB, against 64 KiB and the larger memory",
                  per_byte("splitFrames", size), per_byte("splitFrames", small) + max(memory, 0),
                  None, "ns")


def add_endurance(table, names, short):
    plays = 100 if short else 1000
    table.absolute(f"zapping, one of {plays} plays back to back", endurance.zapping(plays), "ms")
    progress("zapping done")
    turns = (10, 50) if short else (50, 300, 1000)
    loads = {}
    for name in (name for name in (OURS, BARE) if name in names):
        loads[name] = endurance.page_loads(name, turns)
        progress(f"page loads done, {max(turns)} of {name}")
    for turn in turns[1:]:
        for name, kibibytes in loads.items():
            table.add(f"memory after {turn} page loads{'' if name == OURS else ', ' + name}, "
                      f"against {turns[0]}",
                      kibibytes[turn] / 1024, kibibytes[turns[0]] / 1024, None, "MiB")
    picture = endurance.first_frame(1 if short else 5)
    if picture is None:
        progress("no first picture: mpv or ffmpeg is not installed")
    else:
        table.absolute("play command to first picture (mpv)", picture, "ms")


# In the order of the table.
ALL = {"start": add_start, "keys": add_keys, "link": add_link, "stub": add_stub,
       "codec": add_codec, "endurance": add_endurance}

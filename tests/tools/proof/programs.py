# SPDX-License-Identifier: Apache-2.0
"""The tests of a build as ctest knows them, and one of them run apart from everything else."""
import concurrent.futures
import contextlib
import json
import os
import pathlib
import re
import signal
import subprocess
import sys
import threading
import time

from . import TOP

# A /tmp, processes and a loopback of its own, with an address as a box has one: a test that hangs
# leaves nothing, and two of a kind run side by side. The shell stays, as the parent that a test
# expects to have.
ALONE = ["unshare", "--mount", "--net", "--pid", "--fork", "--kill-child=KILL", "--mount-proc",
         "sh", "-c", 'ip link set lo up; ip address add 192.0.2.2 dev lo; '
         'mount -t tmpfs tmpfs /tmp && "$@"; exit $?', "alone"]
# Nothing keeps what a test starts from writing: run.sh and the driver take bwrap for not there.
UNCONFINED = ["sh", "-c", 'if bwrap=$(command -v bwrap); then mount --bind /bin/false "$bwrap"; fi; '
              '"$@"', "unconfined"]
FAILURE = re.compile(rb"^FAIL!  : \w+::(\w+)\((.*?)\) ")


def can_be_alone():
    """Whether this machine lets us separate tests; it takes root and util-linux."""
    return os.geteuid() == 0 and subprocess.run(
        ALONE + ["true"], capture_output=True, check=False).returncode == 0


class Test:
    """One test of ctest: its name, command, environment and folder of the tree."""

    def __init__(self, entry):
        self.name = entry["name"]
        self.command = entry.get("command", [])  # none before it is built
        properties = {p["name"]: p["value"] for p in entry.get("properties", [])}
        self.environment = dict(v.split("=", 1) for v in properties.get("ENVIRONMENT", []))
        self.directory = properties.get("WORKING_DIRECTORY")
        self.limit = float(properties.get("TIMEOUT", 240))
        self.skipped = properties.get("SKIP_RETURN_CODE")
        sources = list((TOP / "tests").rglob(f"test_{self.name}.cpp"))
        self.folder = sources[0].parent.relative_to(TOP / "tests").as_posix() if sources else ""
        self.is_qtest = bool(sources)


def tests_of(build):
    """All tests of a build folder, by name."""
    shown = subprocess.run(["ctest", "--show-only=json-v1"], cwd=build, capture_output=True,
                           check=True, text=True).stdout
    entries = json.loads(shown)["tests"]
    return {entry["name"]: Test(entry) for entry in entries}


class Outcome:
    """How a run ended: 'passed', 'failed', 'crashed' or 'timed out'; the functions that failed."""

    def __init__(self, verdict, seconds, functions, output):
        self.verdict = verdict
        self.seconds = seconds
        self.functions = functions
        self.output = output


class Ended(Exception):
    """Whoever wants to know how a test goes has been interrupted."""


running = set()
areEnded = threading.Event()


@contextlib.contextmanager
def pool(jobs):
    """Threads that run tests; when the main thread is interrupted, no test lives on."""
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended"))
    with concurrent.futures.ThreadPoolExecutor(jobs) as executor:
        try:
            yield executor
        except BaseException:
            executor.shutdown(wait=False, cancel_futures=True)
            areEnded.set()
            for process in list(running):
                kill(process)
            raise


def run(test, environment=None, limit=None, alone=True, functions=(), to_the_end=False,
        confined=True):
    """Runs a test, or only some functions of it; ends it at its first failure unless told."""
    begin = time.monotonic()
    command = (ALONE if alone else []) + (UNCONFINED if alone and not confined else []) + \
        test.command + list(functions)
    process = subprocess.Popen(
        command, cwd=test.directory, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT, start_new_session=True,
        env={**os.environ, **test.environment, **(environment or {})})
    running.add(process)
    if areEnded.is_set():
        kill(process)
    overdue = threading.Event()

    def end():
        overdue.set()
        kill(process)

    timer = threading.Timer(limit or test.limit, end)
    timer.start()
    failed, output = [], []
    for line in process.stdout:
        output.append(line)
        match = FAILURE.match(line)
        if match:
            failed.append(":".join(part.decode() for part in match.groups() if part))
            if not to_the_end:
                break
    if failed and not to_the_end:
        kill(process)
    process.stdout.close()
    status = process.wait()
    timer.cancel()
    running.discard(process)
    if areEnded.is_set():
        raise Ended
    if failed:
        verdict = "failed"
    elif overdue.is_set():
        verdict = "timed out"
    elif status in (0, test.skipped):
        verdict = "passed"
    else:
        verdict = "crashed" if test.is_qtest else "failed"
    return Outcome(verdict, time.monotonic() - begin, failed, b"".join(output[-60:]))


def kill(process):
    """Ends a test with all that it has started."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass


def build_folder(name):
    return pathlib.Path(TOP / "build" / name)

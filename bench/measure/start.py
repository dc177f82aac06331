# SPDX-License-Identifier: Apache-2.0
"""From exec to the page's onload, and the memory three seconds later."""
import contextlib
import pathlib
import statistics
import tempfile
import time

from measure.programs import Run
from measure.screen import Screen
from measure.web import Web


def measure(names, runs, progress, under=()):
    """Medians by program: milliseconds to the first request and to onload, KiB of memory. Programs
    are started below another that is given for it."""
    values = {name: {"request_ms": [], "onload_ms": [], "pss_kib": []} for name in names}
    with Screen() as screen, Web() as web:
        # In turn, so that what else the machine does meets all of them.
        for index in range(runs):
            for name in names:
                web.clear()
                begin = time.monotonic()
                with Run(name, screen.name, web.address, under=under) as run:
                    requested = web.told("requested")
                    loaded = web.told("loaded")
                    time.sleep(3)
                    values[name]["request_ms"].append((requested - begin) * 1000)
                    values[name]["onload_ms"].append((loaded - begin) * 1000)
                    values[name]["pss_kib"].append(run.pss())
            progress(f"start: {index + 1} of {runs}")
    return {name: {key: round(statistics.median(numbers), 1) for key, numbers in kinds.items()}
            for name, kinds in values.items()}


def again(names, runs, progress, under=()):
    """Medians by program: milliseconds to onload where the start before has left its caches."""
    values = {name: [] for name in names}
    with Screen() as screen, Web() as web, contextlib.ExitStack() as stack:
        folders = {name: pathlib.Path(stack.enter_context(
            tempfile.TemporaryDirectory(prefix="vesprel-bench."))) for name in names}
        for index in range(runs + 1):
            for name in names:
                web.clear()
                begin = time.monotonic()
                with Run(name, screen.name, web.address, folders[name], under):
                    loaded = web.told("loaded")
                    # Time to write what the next one finds.
                    time.sleep(1)
                if index:
                    values[name].append((loaded - begin) * 1000)
            progress(f"later start: {index} of {runs}")
    return {name: round(statistics.median(numbers), 1) for name, numbers in values.items()}

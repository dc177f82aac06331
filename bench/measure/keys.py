# SPDX-License-Identifier: Apache-2.0
"""From a key of the display to keydown in the page."""
import time

from measure.programs import OURS, Run
from measure.screen import Screen
from measure.web import Web

# Keys by what the box does with them: handed on, or the page is asked something first.
PLAIN = ("a", 65)
ASKING = {"PageUp": "Prior", "Back": "Escape"}
# Back asks a portal that has told the box that it is there, and leaves any other page.
PORTAL = "window.started = function () { if (window.gSTB) { gSTB.InitPlayer(); } };"


def percentile(numbers, share):
    return sorted(numbers)[int(share * (len(numbers) - 1))]


def times(screen, web, key, what, count):
    """Milliseconds of each press until the page has told of it."""
    result = []
    for index in range(count):
        web.clear()
        begin = time.monotonic()
        code = screen.press(key)
        result.append((web.told(what, 10) - begin) * 1000)
        screen.release(code)
        time.sleep(0.01 + 0.003 * (index % 4))
    return result


def summary(numbers):
    return {"p50_ms": round(percentile(numbers, 0.5), 3), "p99_ms": round(percentile(numbers, 0.99), 3)}


def told_code(screen, web, key):
    """What the page tells of a key that the box translates."""
    web.clear()
    screen.release(screen.press(key))
    return web.queue.get(timeout=10)[1]


def measure(names, count, progress):
    """By program: p50 and p99 in ms; ours also for the keys that ask the page."""
    results = {}
    # In rounds, so that what else the machine does meets all of them.
    rounds = 5
    with Screen() as screen, Web(PORTAL) as web:
        numbers = {}
        for index in range(rounds):
            for name in names:
                web.clear()
                with Run(name, screen.name, web.address):
                    web.told("loaded")
                    time.sleep(1.5)
                    screen.focus()
                    numbers.setdefault(name, []).extend(
                        times(screen, web, PLAIN[0], f"key{PLAIN[1]}", count // rounds))
                    if name == OURS:
                        for label, key in ASKING.items():
                            code = told_code(screen, web, key)
                            numbers.setdefault(f"{OURS}: {label}", []).extend(
                                times(screen, web, key, code, count // rounds))
            progress(f"keys: {index + 1} of {rounds}")
    for name, measured in numbers.items():
        results[name] = summary(measured)
    return results

# SPDX-License-Identifier: Apache-2.0
"""What the soak lets pass and what it finds, on lists written by hand."""
import pathlib
import random
import sys
import types

import pytest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "soak"))

from night import commands, events, usage  # noqa: E402

# Two programs: 39 10, 4 10, 34 11, 35 12, 7 12, 39 13, 34 14 | 39 20, 1 20, 34 21
SENT = ["C 0", "S 39 10", "S 4 10", "S 34 11", "S 35 12", "S 7 12", "S 39 13", "S 34 14",
        "C 19", "S 39 20", "S 1 20", "S 34 21"]
FIRST = ["39 10", "4 10", "34 11"]
REST = ["35 12", "7 12", "39 13", "34 14"]
SECOND = ["39 20", "1 20", "34 21"]


def page(number, heard, arrived=0, left=None, **more):
    life = {"number": number, "heard": {"events": heard, "commands": [], "boxKeys": []},
            "arrived": arrived, "left": left, "opened": [], "isFavourites": False, "isKilled": False,
            "isReceiverKilled": False, "isGone": False, "loaded": True, "since": "the test"}
    return types.SimpleNamespace(**dict(life, **more))


def killed(number, heard, **more):
    return page(number, heard, isKilled=True, isGone=True, **more)


NIGHTS = {
    "all heard": ([killed(1, FIRST + REST), page(2, SECOND)], []),
    "nobody there between two pages, as both say":
        ([page(1, FIRST, left=11), killed(2, ["39 13", "34 14"], arrived=12), page(3, SECOND)], []),
    "one behind the last before a page may be its own or not":
        ([page(1, FIRST, left=11), killed(2, ["7 12", "39 13", "34 14"], arrived=12),
          page(3, SECOND)], []),
    "under way when the program was killed":
        ([killed(1, FIRST), page(2, SECOND)], []),
    "told to a page of favourites, and to nobody before it":
        ([killed(1, FIRST + ["34 14"], opened=[11]),
          page(2, ["39 13"], arrived=12, isFavourites=True, isGone=True), page(3, SECOND)], []),
    "lost": ([killed(1, FIRST + REST[1:]), page(2, SECOND)], ["event 35 12 was sent and not heard"]),
    "lost behind what the program says it has told":
        ([page(1, FIRST, left=11), killed(2, ["34 14"], arrived=12), page(3, SECOND)],
         ["event 39 13 was sent and not heard"]),
    "lost before a page said goodbye":
        ([page(1, FIRST[:2], left=11), killed(2, REST, arrived=11), page(3, SECOND)],
         ["event 34 11 was sent and not heard"]),
    "lost at the beginning of a program":
        ([killed(1, FIRST + REST), page(2, SECOND[1:])], ["event 39 20 was sent and not heard"]),
    "lost at the end":
        ([killed(1, FIRST + REST), page(2, SECOND[:2])], ["event 34 21 was sent and not heard"]),
    "twice": ([killed(1, FIRST + FIRST[2:] + REST), page(2, SECOND)],
              ["page 1 heard event 34 11 twice"]),
    "twice, by two pages":
        ([page(1, FIRST, left=11), killed(2, FIRST[2:] + REST, arrived=11), page(3, SECOND)],
         ["page 2 heard event 34 11 twice"]),
    "out of order": ([killed(1, FIRST + ["39 13", "35 12", "7 12", "34 14"]), page(2, SECOND)],
                     ["page 1 heard event 35 12 after 39 13"]),
    "never sent": ([killed(1, FIRST + REST), page(2, SECOND + ["34 99"])],
                   ["page 2 heard event 34 99, which was not sent"]),
    "a page without goodbye":
        ([page(1, FIRST), killed(2, REST, arrived=11), page(3, SECOND)],
         ["page 1, there since the test, ended without a word"]),
}


@pytest.mark.parametrize("name", NIGHTS)
def test_events(name):
    lives, failures = NIGHTS[name]
    found = events.judge(lives, events.Sent(SENT)).failures
    assert found[:1] == failures


COMMANDS = {
    "all came": (["1005 100001", "1000 100002"], {}, True),
    "one did not": (["1005 100001", "1005 100003", "1000 100002"], {}, False),
    "last did not": (["1005 100001", "1000 100002", "1005 100003"], {}, False),
    "last went down with the receiver":
        (["1005 100001", "1000 100002", "1005 100003"], {"isReceiverKilled": True}, True),
    "one came of which nobody told": (["1005 100001"], {}, False),
    "one came of which a killed page did not get to tell":
        (["1005 100001"], {"isKilled": True}, True),
    "out of order": (["1000 100002", "1005 100001"], {"isKilled": True}, False),
}


@pytest.mark.parametrize("name", COMMANDS)
def test_commands(name):
    given, more, isRight = COMMANDS[name]
    life = page(1, [], **more)
    life.heard["commands"] = given
    sent = events.Sent(["R 1005 100001", "R 1000 100002", "R 1200 100002"])
    assert (commands.judge([life], sent)[0] == []) == isRight


@pytest.mark.parametrize("told, keys, isRight", [
    (["mount", "unmount"], ["mount", "unmount"], True),
    (["mount", "unmount"], ["mount"], True),
    (["mount"], ["unmount", "mount"], True),
    (["mount", "mount"], ["mount", "unmount"], False),
    (["mount"] * 4, ["mount"], False),
    (["mount"], ["mount", "mount", "mount", "mount"], False)])
def test_box_keys(told, keys, isRight):
    life = page(1, [f"{word} {number}" for number, word in enumerate(told)])
    life.heard["boxKeys"] = keys
    assert bool(events.judge_box_keys([life])) != isRight


def noise(second):
    """Up to 4 MiB, which come and go."""
    return random.Random(second).uniform(0, 4)


@pytest.mark.parametrize("minutes, value, failures", [
    (40, lambda second: 100 + noise(second), 0),
    (40, lambda second: 100 + second / 3600 * 0.4, 0),
    (40, lambda second: 100 + second / 3600 * 0.7, 1),
    (40, lambda second: 100 + second / 3600 * 20 + noise(second), 1),
    (40, lambda second: 100 + 5 * (1000 < second < 1300), 0),        # a bump
    (1, lambda second: 100 + second / 10, 0),                        # too short to tell
    (1, lambda second: 100 + second, 1)])
def test_growth(minutes, value, failures):
    rests = [types.SimpleNamespace(moment=second, own=value(second), descriptors=20, threads=9)
             for second in range(0, minutes * 60 + 1, min(60, 3 * minutes) * 2)]
    assert len(usage.Growth(rests).failures()) == failures


def test_descriptors_and_threads():
    rests = [types.SimpleNamespace(moment=60 * number, own=100, descriptors=20 + 5 * number,
                                   threads=9 + 5 * number) for number in range(2)]
    assert len(usage.Growth(rests).failures()) == 2


@pytest.mark.parametrize("at_rest, taken, least", [
    ([60, 61, 62, 63, 30], 4, 60),                # more garbage than at first, but within the slack
    ([90, 91, 92, 93, 94, 95, 35, 36], 7, 35),    # collected at last
    (range(90, 190), usage.PATIENCE_S, 90)])      # a leak
def test_garbage(monkeypatch, at_rest, taken, least):
    values = iter([33, 34, 32, 30, *at_rest])
    monkeypatch.setattr(usage.time, "sleep", lambda seconds: None)
    monkeypatch.setattr(usage, "Sample", lambda moment, pid: types.SimpleNamespace(
        moment=moment, pid=pid, own=next(values)))
    used = usage.Usage(lambda: 1, 3600)
    used.rest(4)
    used.rest(4)
    used.end()
    assert [rest.own for rest in used.rests] == [30, least]
    assert len(list(values)) == len(at_rest) - taken

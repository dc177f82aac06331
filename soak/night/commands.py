# SPDX-License-Identifier: Apache-2.0
"""Whether every command of a page came to the receiver, once and in order, and was answered.

What a page gave and did not tell before it was killed may come as well; what was given to a
receiver that was killed need not have come.
"""
import collections

PER_LIFE = 100_000


def judge(lives, sent):
    """Failures, and the numbers of commands that came unannounced and that went down."""
    came = collections.defaultdict(list)
    for command in sent.commands:
        came[int(command.split()[1]) // PER_LIFE].append(command)
    failures, unannounced, killed = [], 0, 0
    for life in lives:
        given, got = life.heard["commands"], came.pop(life.number, [])
        common = min(len(given), len(got))
        for ordinal in range(common):
            if given[ordinal] != got[ordinal]:
                failures.append(f"page {life.number} gave command {given[ordinal]}, "
                                f"and {got[ordinal]} came")
                break
        if len(got) > common:
            unannounced += len(got) - common
            if life.left is not None or not (life.isKilled or not life.loaded):
                failures.append(f"commands that page {life.number} did not give came: "
                                f"{got[common:common + 5]}")
        elif len(given) > common:
            killed += len(given) - common
            if not life.isReceiverKilled:
                failures.append(f"commands of page {life.number} did not come: "
                                f"{given[common:common + 5]}")
    failures += [f"commands of page {number}, which never came, came" for number in came]
    return failures, unannounced, killed

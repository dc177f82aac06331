# SPDX-License-Identifier: Apache-2.0
"""Tries a fault: builds it and runs the tests that reach it, the quick and near ones first."""
import copy
import json
import os
import re
import shutil
import subprocess
import tempfile
import pathlib
import time

from proof import TOP, programs

from .product import DoesNotCompile

LINES = TOP / "build/coverage/lines"
# Seconds of tests a fault may take, and the least that a test gets however quick it is.
BUDGET_S = 400
LEAST_S = 40


class CoverageMap:
    """Which test runs which lines, as tests/tools/coverage has kept it, and how long it takes."""

    def __init__(self, tests):
        self.seconds = {}
        self.ran = {}  # file -> test -> lines
        self.able = {}  # file -> lines that can run
        for name in tests:
            kept = LINES / f"{name}.json"
            if not kept.exists() or not (LINES / f"{name}.seconds").exists():
                print(f"{name}: not known which lines it runs, so it judges nothing", flush=True)
                continue
            self.seconds[name] = float((LINES / f"{name}.seconds").read_text())
            for entry in json.loads(kept.read_text())["files"]:
                lines = {line["line_number"]: line["count"] for line in entry["lines"]
                         if not line.get("gcovr/noncode")}
                self.able.setdefault(entry["file"], set()).update(lines)
                ran = {line for line, count in lines.items() if count > 0}
                if ran:
                    self.ran.setdefault(entry["file"], {})[name] = ran

    def tests_of(self, name, line):
        """The tests that run a line; for one that is no statement, all that run its file."""
        by_test = self.ran.get(name, {})
        if line not in self.able.get(name, ()):
            return set(by_test)
        return {test for test, ran in by_test.items() if line in ran}


class Trials:
    """Tries faults, each in a folder of its own; any thread."""

    def __init__(self, product, tests, alone, whole_file):
        self.product = product
        self.tests = tests
        self.alone = alone
        self.whole_file = whole_file
        self.map = CoverageMap(tests)

    def _order(self, fault):
        names = set()
        files = [fault.name] + (self.product.units_of(fault.name)
                                if fault.name.endswith(".h") else [])
        for number, name in enumerate(files):
            if number == 0 and not self.whole_file:
                names |= self.map.tests_of(name, fault.line)
            else:
                names |= set(self.map.ran.get(name, {}))
            if number == 0 and names and not self.whole_file:
                break
        folder = fault.name.rpartition("/")[0]
        return sorted(names & set(self.tests), key=lambda name: (
            self.map.seconds[name] * (0.2 if self.tests[name].folder == folder else 1)))

    def try_fault(self, fault):
        """The verdict and who said it: killed, survived, not reached, no code, same code."""
        folder = pathlib.Path(tempfile.mkdtemp(prefix="fault-", dir=self.product_folder()))
        begin = time.monotonic()
        try:
            verdict, witness = self._judge(fault, folder)
        finally:
            shutil.rmtree(folder, ignore_errors=True)
        return {"number": fault.number, "file": fault.name, "line": fault.line, "kind": fault.kind,
                "before": fault.before, "after": fault.after, "verdict": verdict,
                "witness": witness, "seconds": round(time.monotonic() - begin, 1)}

    @staticmethod
    def product_folder():
        folder = TOP / "build/mutate/faults"
        folder.mkdir(exist_ok=True)
        return folder

    def _judge(self, fault, folder):
        content = fault.content()
        if content is None or not self.product.units_of(fault.name):
            return "no code", "gone, or in no library"
        order = self._order(fault)
        try:
            self.product.build_faulty(fault.name, content, folder)
        except DoesNotCompile as error:
            return "no code", next(iter(re.findall("error: (.*)", str(error))), "")
        except subprocess.CalledProcessError:
            return "no code", "does not link"
        spent, left = 0.0, []
        for name in order:
            if spent > BUDGET_S:
                left.append(name)
                continue
            try:
                outcome = self._run(name, self.product.build_test(fault.name, name, folder), folder)
            except DoesNotCompile:
                return "killed", f"{name}: does not compile"
            spent += outcome.seconds
            if outcome.verdict != "passed":
                return "killed", f"{name}: {outcome.verdict} {' '.join(outcome.functions[:1])}"
        if self.product.is_same_code(fault.name, content, folder):
            return "same code", "the optimiser makes the same of both"
        tried = f"of {len(order)} tests" if not left else f"without {' '.join(left)}"
        return "survived", tried if order else "no test runs it"

    def _run(self, name, program, folder):
        """Runs a test, or its program built anew, on the faulty libraries; a failure counts if it
        can be made again."""
        test = self.tests[name]
        if program:
            test = copy.copy(test)
            test.command = [str(program), *test.command[1:]]
        libraries = {"LD_LIBRARY_PATH": os.pathsep.join(
            filter(None, (str(folder), os.environ.get("LD_LIBRARY_PATH"))))}
        limit = max(LEAST_S, 4 * self.map.seconds[name])
        outcome = programs.run(test, libraries, limit, self.alone)
        if outcome.verdict != "passed":
            whole = any(f.startswith(("initTestCase", "cleanup")) for f in outcome.functions)
            again = programs.run(test, libraries, limit, self.alone,
                                 () if whole else outcome.functions)
            again.seconds += outcome.seconds
            return again
        return outcome

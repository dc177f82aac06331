# SPDX-License-Identifier: Apache-2.0
"""The program built as shared libraries, and one of them built anew with a fault in it. What a header
says is also in the tests that include it: these are built anew, too."""
import json
import os
import re
import shlex
import subprocess
import threading

from proof import PRODUCT, TOP

BUILD = TOP / "build/mutate"
FLAGS = "-O0 -g0"
SYSTEM_INCLUDE = re.compile(r"^#include <(Q\w+|[a-z_]+)>$", re.MULTILINE)


# The sources that may be built anew: the program's, and the desktop's that read its messages aloud.
OWN = tuple(f"{folder}/" for folder in PRODUCT) + ("desktop/link/", "desktop/console/")


class DoesNotCompile(Exception):
    """What the fault made of its line is no C++."""


def configure():
    """Prepares the build; it needs lld, which links in a tenth of a second."""
    linker = "-fuse-ld=lld"
    subprocess.run(
        ["cmake", "-S", TOP, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
         f"-DCMAKE_CXX_FLAGS_RELWITHDEBINFO={FLAGS}",
         f"-DCMAKE_PROJECT_INCLUDE={TOP}/tests/tools/mutation/shared_libraries.cmake",
         f"-DCMAKE_EXE_LINKER_FLAGS={linker}", f"-DCMAKE_SHARED_LINKER_FLAGS={linker}",
         "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON", "-DVESPREL_DESKTOP=ON", "-DVESPREL_TESTS=ON"],
        check=True, stdout=subprocess.DEVNULL)


def build(jobs, targets):
    """Builds these targets and the programs that tests start."""
    subprocess.run(["cmake", "--build", BUILD, "-j", str(jobs), "--target", "vesprel",
                    "vesprel-receiver", *targets], check=True)


def _ninja(*arguments):
    return subprocess.run(["ninja", "-C", str(BUILD), *arguments], check=True, capture_output=True,
                          text=True).stdout


class Product:
    """What it takes to build a library of the program again; any thread."""

    def __init__(self):
        self.links = {}  # library, or program of a test -> command
        self.units = {}  # source -> (object, arguments of the compiler, library or program)
        self.users = {}  # header -> sources
        self.headers = {}  # library -> what is compiled beforehand
        self.lock = threading.Lock()
        self._read_links()
        self._read_units()
        self._read_users()

    def _read_links(self):
        for line in _ninja("-t", "targets", "all").splitlines():
            name, _, rule = line.partition(": ")
            isTest = name.startswith("tests/")
            if rule.startswith("CXX_EXECUTABLE_LINKER" if isTest else "CXX_SHARED_LIBRARY_LINKER"):
                self.links[name] = _ninja("-t", "commands", "-s", name).strip()

    def _read_units(self):
        libraries = {piece: library for library, command in self.links.items()
                     for piece in command.split() if piece.endswith(".o")}
        for entry in json.loads((BUILD / "compile_commands.json").read_text()):
            words = shlex.split(entry["command"])
            piece = words[words.index("-o") + 1]
            name = os.path.relpath(entry["file"], TOP)
            if piece not in libraries or not name.startswith((*OWN, "tests/")):
                continue
            begin = next(n for n, word in enumerate(words) if word.endswith("c++"))
            flags = [word for word in words[begin:words.index("-o")]
                     if not word.startswith("-W")]
            self.units[name] = (piece, flags, libraries[piece])

    def _read_users(self):
        names = {piece: name for name, (piece, _, _) in self.units.items()}
        user = None
        for line in _ninja("-t", "deps").splitlines():
            if not line.startswith(" "):
                user = names.get(line.partition(":")[0])
            elif user and line.strip():
                header = os.path.relpath(os.path.join(BUILD, line.strip()), TOP)
                self.users.setdefault(header, set()).add(user)

    def units_of(self, name):
        """The program's sources that are compiled anew when this file changes."""
        users = self.users.get(name, ()) if name.endswith(".h") else {name} & self.units.keys()
        return sorted(user for user in users if user.startswith(OWN))

    def build_faulty(self, name, content, folder):
        """Builds the libraries that hold the file, with this content of it, into a folder."""
        place = folder / "source" / name
        place.parent.mkdir(parents=True)
        place.write_text(content)
        self._link_anew(self.units_of(name), {name: place}, folder)

    def build_test(self, name, test, folder):
        """Builds a test's program into the folder if it includes this file; its path, or None."""
        program = f"tests/test_{test}"
        units = [unit for unit in self.users.get(name, ()) if self.units[unit][2] == program]
        self._link_anew(units, {}, folder)
        return folder / f"test_{test}" if units else None

    def _link_anew(self, units, changed, folder):
        pieces = {}
        for unit in units:
            piece, _, target = self.units[unit]
            pieces.setdefault(target, {})[piece] = self.compile(
                unit, changed.get(unit, TOP / unit), folder)
        for target, objects in pieces.items():
            command = self.links[target]
            words = [str(objects.get(word, word)) for word in shlex.split(command)]
            words = words[words.index("&&") + 1:len(words) - words[::-1].index("&&") - 1]
            words[words.index("-o") + 1] = str(folder / os.path.basename(target))
            subprocess.run(words, cwd=BUILD, check=True, capture_output=True)

    def compile(self, unit, source, folder, flags=()):
        """Compiles a unit from another source; the path of the object."""
        piece, arguments, library = self.units[unit]
        target = folder / (piece.replace("/", "_") + "".join(flags))
        # What lies beside the source is found beside its original, the changed file before all.
        command = arguments + ["-w", *self._precompiled(library, arguments, flags),
                               "-iquote", str(folder / "source"),
                               "-iquote", os.path.dirname(TOP / unit), *flags,
                               "-o", str(target), "-c", str(source)]
        done = subprocess.run(command, cwd=BUILD, capture_output=True, text=True, check=False,
                              start_new_session=True)
        if done.returncode != 0:
            raise DoesNotCompile(done.stderr)
        return target

    def _precompiled(self, library, arguments, flags):
        """What the library's sources include from outside, compiled once."""
        if flags or library.startswith("tests/"):
            return []
        with self.lock:
            if library not in self.headers:
                wanted = set()
                names = {name for name, unit in self.units.items() if unit[2] == library}
                own = {header for header, users in self.users.items()
                       if users & names and header.startswith(OWN)}
                for name in names | own:
                    wanted.update(SYSTEM_INCLUDE.findall((TOP / name).read_text()))
                header = BUILD / "precompiled" / os.path.basename(library) / "all.h"
                header.parent.mkdir(parents=True, exist_ok=True)
                header.write_text("".join(f"#include <{name}>\n" for name in sorted(wanted)))
                subprocess.run([*arguments, "-w", "-x", "c++-header", "-o", f"{header}.gch",
                                str(header)], cwd=BUILD, check=True)
                self.headers[library] = ["-include", str(header)]
            return self.headers[library]

    def is_same_code(self, name, content, folder):
        """Whether the optimiser makes the same of the file with and without the fault."""
        if name not in self.units:
            return False
        codes = []
        for label, text in (("with", content), ("without", (TOP / name).read_text())):
            place = folder / label / os.path.basename(name)
            place.parent.mkdir(parents=True)
            place.write_text(text)
            codes.append(self.compile(name, place, folder / label, ("-O2",)).read_bytes())
        return codes[0] == codes[1]

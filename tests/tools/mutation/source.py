# SPDX-License-Identifier: Apache-2.0
"""A C++ source as lines of code, with what is comment, text or preprocessor's told apart."""
import re

PIECE = re.compile(r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<raw>R"\((?:.*?)\)")
  | (?P<text>"(?:[^"\\\n]|\\.)*")
  | (?P<letter>'(?:[^'\\\n]|\\.)+')
""", re.VERBOSE | re.DOTALL)
# A fault in one of these is none of the program: it tells the compiler or checks it.
NO_CODE = re.compile(r"^\s*(#|static_assert|Q_ASSERT|assert\b|using |namespace |Q_OBJECT|typedef |"
                     r"template|public:|private:|protected:|signals:|class |struct |friend )")
CODE = re.compile(r"[\w]")


class Source:
    """The lines of a file; `bare` are the same with comments blank and texts as underscores."""

    def __init__(self, path, name):
        self.name = name
        self.text = path.read_text()
        self.lines = self.text.split("\n")
        self.bare = PIECE.sub(self._blank, self.text).split("\n")
        self.texts = [[] for _ in self.lines]
        for match in PIECE.finditer(self.text):
            if match.lastgroup == "text":
                before = self.text[:match.start()]
                column = match.start() - (before.rfind("\n") + 1)
                self.texts[before.count("\n")].append((column, match.group()))

    @staticmethod
    def _blank(match):
        filler = " " if match.lastgroup == "comment" else "_"
        return re.sub(r"[^\n]", filler, match.group())

    def code_lines(self):
        """Numbers, from 0, of the lines that a fault may go into."""
        found = []
        for number, line in enumerate(self.bare):
            # A table of macros goes on in lines that begin like any other.
            if CODE.search(line) and not NO_CODE.match(line):
                found.append(number)
        return found

    def with_line(self, number, line):
        return "\n".join(self.lines[:number] + [line] + self.lines[number + 1:])

# SPDX-License-Identifier: Apache-2.0
"""The kinds of faults: what each makes of a line. All of them are slips that a person could make."""
import re

COMPARISONS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">"}
ARITHMETIC = {"+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "&&": "||", "||": "&&", "&": "|",
              "|": "&", ">>": "<<", "+=": "-=", "-=": "+=", "|=": "&=", "&=": "|="}
NUMBER = re.compile(r"(?<![\w.])(0[xX][0-9A-Fa-f]+|\d+)(?=[uUlL]*\b(?!\.))")
CONDITION = re.compile(r"^(\s*(?:\} else )?(?:if|while) \()((?!const |auto ).*)(\)(?: \{)?)$")
RETURNED = re.compile(r"^(.*\breturn )(.+)(;.*)$")
# A call, an assignment or a step of the loop, but no declaration.
STATEMENT = re.compile(r"^\s+(?!return\b|case\b|else\b|const\b|static\b|auto\b|virtual\b|if\b|for\b|"
                       r"explicit\b|default\b|constexpr\b)"
                       r"(?:(?:emit )?[\w:.\->\[\]*]+\(.*\)|(?:[\w.\->\[\]]+) [-+|&]?= .+|"
                       r"break|continue|\+\+\w+|\w+\+\+);$")
BODY = re.compile(r"^(\S.*\) (?:const )?\{ )((?!return\b).+;)( \})$")
ARGUMENTS = re.compile(r"\(([^()]+)\)")
# "int x", "const Text &x" or "&Window::pwr": swapped, it is not the same function or none at all.
DECLARED = re.compile(r"\w[>&*]* [&*]*\w|&\w+::|^\w+ [&*]$")


def faults_of(source, number):
    """All faults of a line by kind: pairs of the kind and the new line."""
    line, bare = source.lines[number], source.bare[number]
    is_header = source.name.endswith(".h")
    yield from _operators(line, bare)
    yield from _constants(line, bare)
    yield from _texts(line, source.texts[number])
    yield from _conditions(line, bare)
    if not is_header:
        yield from _arguments(line, bare)
        yield from _statements(line, bare)


def _operators(line, bare):
    for table, kind in ((COMPARISONS, "comparison"), (ARITHMETIC, "operator")):
        for match in re.finditer(r"(?<= )\S{1,2}(?= |$)", bare):
            other = table.get(match.group())
            # clang-format has blanks on both sides of an operator, and none inside of types.
            if other and bare[:match.start()].strip():
                yield kind, line[:match.start()] + other + line[match.end():]


def _constants(line, bare):
    for match in NUMBER.finditer(bare):
        digits = match.group()
        base = 16 if digits[:2] in ("0x", "0X") else 8 if len(digits) > 1 and digits[0] == "0" else 10
        for other in (int(digits, base) + 1, int(digits, base) - 1):
            if other >= 0:
                yield "number", line[:match.start()] + str(other) + line[match.end():]
    for match in re.finditer(r"\b(true|false)\b", bare):
        other = "false" if match.group() == "true" else "true"
        yield "boolean", line[:match.start()] + other + line[match.end():]


def _texts(line, texts):
    for column, text in texts:
        end = column + len(text)
        yield "text", f'{line[:column]}{text[:-1]}~"{line[end:]}'


def _conditions(line, bare):
    match = CONDITION.match(bare)
    if match and bare.count("(") == bare.count(")"):
        begin, end = match.span(2)
        yield "condition", f"{line[:begin]}!({line[begin:end]}){line[end:]}"
    match = RETURNED.match(bare)
    if match and re.search(r" (==|!=|<|>|<=|>=|&&|\|\|) |^!|\b(is|has)\w*\(|contains\(|startsWith\(",
                           match.group(2)) and " ? " not in match.group(2):
        begin, end = match.span(2)
        yield "condition", f"{line[:begin]}!({line[begin:end]}){line[end:]}"


def _statements(line, bare):
    if bare.count("(") != bare.count(")"):
        return
    if STATEMENT.match(bare):
        indent = line[:len(line) - len(line.lstrip())]
        yield "dropped", indent + ";"
    match = BODY.match(bare)
    if match:
        yield "dropped", match.group(1).rstrip() + match.group(3)


def _arguments(line, bare):
    for match in ARGUMENTS.finditer(bare):
        before = bare[:match.start()]
        if not re.search(r"\w$", before) or re.search(r"\b(if|for|while|switch)$", before.rstrip()):
            continue
        places, start = [], match.start(1)
        for part in match.group(1).split(","):
            places.append((start, start + len(part)))
            start += len(part) + 1
        for (b1, e1), (b2, e2) in zip(places, places[1:]):
            first, second = line[b1:e1].strip(), line[b2:e2].strip()
            if not first or not second or first == second or \
                    DECLARED.search(first) or DECLARED.search(second):
                continue
            yield "swapped", (line[:b1] + line[b1:e1].replace(first, second, 1) + line[e1:b2] +
                              line[b2:e2].replace(second, first, 1) + line[e2:])

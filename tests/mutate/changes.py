"""The small changes of a source file, one at a time.

A comparison turned, a condition negated, a constant one larger, an operator exchanged, a result
reversed, a statement dropped. Knows lines, not the language: a change may not compile.
"""

import dataclasses
import hashlib
import re

COMPARISONS = {" == ": " != ", " != ": " == ", " < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > "}
OPERATORS = {" && ": " || ", " || ": " && ", " + ": " - ", " - ": " + "}
RESULTS = {"return true;": "return false;", "return false;": "return true;"}
NUMBER = re.compile(r"(?<![\w.'\"])(0x[0-9A-Fa-f]+|\d+)(?=[uU]?\b)")
CONDITION = re.compile(r"\b(if|while) \((?!constexpr)(.*)\) \{$")
STATEMENT = re.compile(
    r"^\s+(?!return\b|break\b|continue\b|using\b|const\b|auto\b|constexpr\b|static\b|case\b|else\b)"
    r"((\+\+|--)[\w.>\-\[\]]+;|[\w:.>\-\[\]*()]+ ([+\-|&]?=) .*;|[\w:.>\-]+\(.*\);)$")


@dataclasses.dataclass(frozen=True)
class Change:
    path: str  # from the root of the project
    file: str  # the hash of the file that is changed
    line: int
    text: str  # what stands in the line's place
    name: str  # says the line's old and new text, so that it outlives a move of the line


def code_spans(line):
    """The parts of a line that are neither literal nor comment, as (start, end)."""
    spans, start, i = [], 0, 0
    while i < len(line):
        if line.startswith("//", i):
            spans.append((start, i))
            return spans
        if line[i] in "\"'":
            spans.append((start, i))
            quote, i = line[i], i + 1
            while i < len(line) and line[i] != quote:
                i += 2 if line[i] == "\\" else 1
            start = i + 1
        i += 1
    spans.append((start, len(line)))
    return spans


def changes_of_line(line):
    """Every changed form of a line of code."""
    for start, end in code_spans(line):
        part = line[start:end]
        for table in (COMPARISONS, OPERATORS, RESULTS):
            for old, new in table.items():
                for match in re.finditer(re.escape(old), part):
                    at = start + match.start()
                    yield line[:at] + new + line[at + len(old):]
        for match in NUMBER.finditer(part):
            at = start + match.start()
            number = int(match.group(), 0 if match.group().startswith("0x") else 10)
            form = hex(number + 1) if match.group().startswith("0x") else str(number + 1)
            yield line[:at] + form + line[at + len(match.group()):]
    if condition := CONDITION.search(line):
        yield line[:condition.start(2)] + f"!({condition.group(2)})" + line[condition.end(2):]
    if STATEMENT.match(line):
        yield ""


def changes_of_file(root, path):
    """The changes of a source file, in the order of its lines."""
    source = (root / path).read_text()
    digest = hashlib.sha256(source.encode()).hexdigest()[:16]
    seen = {}
    for number, line in enumerate(source.splitlines(), start=1):
        if line.lstrip().startswith(("//", "#", "namespace", "using", "template")):
            continue
        for text in changes_of_line(line):
            name = f"{path}: {line.strip()} -> {text.strip() or '(dropped)'}"
            seen[name] = seen.get(name, 0) + 1
            # Lines that look alike are told apart by their order.
            ordinal = f" [{seen[name]}]" if seen[name] > 1 else ""
            yield Change(str(path), digest, number, text, name + ordinal)

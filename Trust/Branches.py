#!/usr/bin/env python3
"""Branches of the sources that a run with --coverage has taken.

    Branches.py <build folder> [folder of Sources, or "Tools"]

For each file: taken, all, the share, and the lines with branches that were never taken, unless Branches.txt beside this
file says why. It has paragraphs: a reason, then "<file>: <line>" for each line of the sources, without its indentation.
Branches that only exceptions take do not count.
"""

import collections
import json
import pathlib
import re
import subprocess
import sys

# The compiler adds a test of the pointer, and to the end of a block what an exception must destroy.
COMPILERS = re.compile(r"\bdelete\b|\bnew \(|^}$")


def explained(path):
    """The lines with a reason: file and text."""
    lines = (line for line in path.read_text().splitlines() if line.startswith(" "))
    return {tuple(line.strip().split(": ", 1)) for line in lines}


def name_of(path, root):
    """How a source is called here: its path in Sources or, if it is a tool's, in the project. Else nothing."""
    if path.is_relative_to(root / "Sources"):
        return path.relative_to(root / "Sources")
    return path.relative_to(root) if path.is_relative_to(root / "Tools") else None


def branches_of(data, root):
    """Yields name, line, index and count of the branches in one file of counters."""
    run = subprocess.run(["gcov", "--branch-counts", "--branch-probabilities", "--json-format", "--stdout", data],
                         capture_output=True, check=True, cwd=root)
    for text in run.stdout.splitlines():
        for file in json.loads(text)["files"]:
            name = name_of(pathlib.Path(root, file["file"]).resolve(), root)
            if name is not None:
                for line in file["lines"]:
                    for index, branch in enumerate(line["branches"]):
                        if not branch["throw"]:
                            yield name, line["line_number"], index, max(branch["count"], 0)


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    folder = sys.argv[2] if len(sys.argv) > 2 else ""
    root = pathlib.Path(__file__).resolve().parent.parent
    counts = collections.defaultdict(collections.Counter)
    objects = [build / "CMakeFiles/ZmMathObjects.dir/Sources", build / "Tools/CMakeFiles"]
    for data in sorted(data for part in objects for data in part.glob("**/*.gcda")):
        for name, line, index, count in branches_of(data, root):
            if name.is_relative_to(folder):  # headers are in the counters of every folder
                counts[name][line, index] += count
    reasons = explained(pathlib.Path(__file__).with_suffix(".txt"))
    taken = total = without = 0
    found = set()
    for name, branches in sorted(counts.items()):
        path = name if name.is_relative_to("Tools") else pathlib.Path("Sources", name)
        source = (root / path).read_text().splitlines()
        missing = []
        for line in sorted({line for (line, _), count in branches.items() if count == 0}):
            text = source[line - 1].strip()
            key = str(name), text
            if key in reasons:
                found.add(key)
            elif not COMPILERS.search(text):
                missing.append(line)
        hits = sum(1 for count in branches.values() if count != 0)
        taken, total, without = taken + hits, total + len(branches), without + len(missing)
        print(f"{path}: {hits} of {len(branches)}, {100 * hits // len(branches)} %", *missing)
    print(f"{taken} of {total} branches, {100 * taken / max(total, 1):.1f} %; {without} lines without a reason")
    for file, text in sorted(reasons - found):
        if file.startswith(folder):
            print(f"no reason needed: {file}: {text}")


if __name__ == "__main__":
    main()

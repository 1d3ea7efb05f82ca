#!/usr/bin/env python3
"""Branches of the sources that a run with --coverage has taken.

    Branches.py <build folder> [folder of Sources]

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

COMPILERS = re.compile(r"\bdelete\b|\bnew \(")  # the compiler adds a test of the pointer


def explained(path):
    """The lines with a reason: file and text."""
    lines = (line for line in path.read_text().splitlines() if line.startswith(" "))
    return {tuple(line.strip().split(": ", 1)) for line in lines}


def branches_of(data, root):
    """Yields file, line, index and count of the branches in one file of counters."""
    run = subprocess.run(["gcov", "--branch-counts", "--branch-probabilities", "--json-format", "--stdout", data],
                         capture_output=True, check=True, cwd=root)
    for text in run.stdout.splitlines():
        for file in json.loads(text)["files"]:
            path = pathlib.Path(root, file["file"]).resolve()
            if path.is_relative_to(root / "Sources"):
                for line in file["lines"]:
                    for index, branch in enumerate(line["branches"]):
                        if not branch["throw"]:
                            yield path.relative_to(root), line["line_number"], index, max(branch["count"], 0)


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    folder = sys.argv[2] if len(sys.argv) > 2 else ""
    root = pathlib.Path(__file__).resolve().parent.parent
    counts = collections.defaultdict(collections.Counter)
    for data in sorted(build.glob("CMakeFiles/ZmMathObjects.dir/Sources/**/*.gcda")):
        for path, line, index, count in branches_of(data, root):
            if path.is_relative_to(pathlib.Path("Sources", folder)):  # headers are in the counters of every folder
                counts[path][line, index] += count
    reasons = explained(pathlib.Path(__file__).with_suffix(".txt"))
    taken = total = without = 0
    found = set()
    for path in sorted(counts):
        source = (root / path).read_text().splitlines()
        missing = []
        for line in sorted({line for (line, _), count in counts[path].items() if count == 0}):
            text = source[line - 1].strip()
            key = str(path.relative_to("Sources")), text
            if key in reasons:
                found.add(key)
            elif not COMPILERS.search(text):
                missing.append(line)
        hits = sum(1 for count in counts[path].values() if count != 0)
        taken, total, without = taken + hits, total + len(counts[path]), without + len(missing)
        print(f"{path}: {hits} of {len(counts[path])}, {100 * hits // len(counts[path])} %", *missing)
    print(f"{taken} of {total} branches, {100 * taken / max(total, 1):.1f} %; {without} lines without a reason")
    for file, text in sorted(reasons - found):
        if file.startswith(folder):
            print(f"no reason needed: {file}: {text}")


if __name__ == "__main__":
    main()

#!/usr/bin/python3 -B
"""usage: coverage.py BUILD_FOLDER

Tells which lines of the library the tests of an instrumented build have run, and which of the lines
that decide have gone both ways. Names each line that has not run: those with a reason in
tools/uncovered.txt are accounted for, others fail. Instances of a template, and the copies of
functions that are always inlined, count as one: what has run in some of them has been run.
"""
import collections
import functools
import json
import os
import re
import subprocess
import sys
from pathlib import Path

from mutate import FOLDERS, ROOT, avx512_lines, runs_avx512

DECIDES = re.compile(r"\b(if|for|while) \((?!constexpr)| \? | && | \|\| ")


@functools.cache
def texts_of(path):
    return [""] + (ROOT / path).read_text().splitlines()


def text_of(path, number):
    return texts_of(path)[number].strip()


def measured(build):
    """By path and line: how often it ran, and how often its branches went straight on and not."""
    lines, branches = collections.Counter(), collections.defaultdict(lambda: [0, 0])
    data = sorted(Path(build).resolve().rglob("*.gcda"))
    reports = subprocess.run(["gcov", "--json-format", "--stdout", "--branch-probabilities", *data],
                             check=True, capture_output=True, text=True).stdout
    for report in map(json.loads, reports.splitlines()):
        for file in report["files"]:
            path = os.path.relpath(Path(report["current_working_directory"]) / file["file"], ROOT)
            if Path(path).parts[0] not in FOLDERS:
                continue
            for line in file["lines"]:
                place = (path, line["line_number"])
                lines[place] += line["count"]
                for branch in line["branches"] if DECIDES.search(text_of(*place)) else ():
                    branches[place][branch["fallthrough"]] += branch["count"]
    return lines, branches


def read_reasons():
    """Of lines "path: text of the line -- reason"."""
    reasons = []
    for line in (ROOT / "tools/uncovered.txt").read_text().splitlines():
        place, reason = line.split(" -- ")
        reasons.append((*place.split(": ", 1), reason))
    return reasons


def main():
    lines, branches = measured(sys.argv[1])
    if not runs_avx512():
        for path in {path for path, _ in lines}:
            for number in avx512_lines(Path(path)):
                lines.pop((path, number), None), branches.pop((path, number), None)
        print("not counted: lines for AVX-512 alone, which this processor lacks")
    reasons, explained, unexplained = read_reasons(), set(), 0
    for path, number in sorted(place for place, count in lines.items() if not count):
        text = text_of(path, number)
        reason = next((r for r in reasons if r[0] == path and r[1] == text), None)
        explained.add(reason)
        unexplained += not reason
        print(f"not covered: {path}:{number}: {reason[2] if reason else text}")
    for path, text, reason in [reason for reason in reasons if reason not in explained]:
        print(f"covered after all: {path}: {text}")
    for path, number in sorted(place for place, ways in branches.items() if any(ways) != all(ways)):
        print(f"went one way only: {path}:{number}: {text_of(path, number)}")
    run = sum(count > 0 for count in lines.values())
    both = sum(all(ways) for ways in branches.values())
    print(f"{run} of {len(lines)} lines have run ({100 * run / len(lines):.1f} %); {both} of "
          f"{len(branches)} decisions went both ways ({100 * both / len(branches):.1f} %); "
          f"{unexplained} lines without a reason")
    return unexplained != 0


if __name__ == "__main__":
    sys.exit(main())

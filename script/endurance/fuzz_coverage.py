#!/usr/bin/env python3
"""Tells of each fuzz target how many lines of its own files were reached.

    fuzz_coverage.py LINES TARGET...

LINES is what llvm-cov exports as lcov. A target's files stand at its head behind "Reads:", and behind
"Beyond:" the functions in them that no input comes to. With FUZZ_UNREACHED set, the lines are listed.
"""

import os
import sys
from bisect import bisect_right
from collections import defaultdict


class File:
    """How often each line ran, and where functions begin."""

    def __init__(self):
        self.counts, self.functions = {}, {}

    def lines_but(self, beyond):
        begins = sorted(self.functions)
        for line, count in sorted(self.counts.items()):
            place = bisect_right(begins, line)
            name = self.functions[begins[place - 1]] if place > 0 else ""
            if not any(word in name for word in beyond):
                yield line, count


def read(exported):
    files = defaultdict(File)
    for line in exported:
        mark, _, rest = line.strip().partition(":")
        first, _, second = rest.partition(",")
        if mark == "SF":
            file = files[os.path.realpath(rest)]
        elif mark == "FN":
            file.functions[int(first)] = second
        elif mark == "DA":
            file.counts[int(first)] = int(second)
    return files


def words_behind(mark, target):
    with open(f"fuzz/{target}_fuzz.cpp", encoding="utf-8") as lines:
        return [word for line in lines if line.startswith(f"// {mark}: ") for word in line.split()[2:]]


def main():
    with open(sys.argv[1], encoding="utf-8") as exported:
        files = read(exported)
    for target in sys.argv[2:]:
        beyond = words_behind("Beyond", target)
        lines = [(name, *line) for name in words_behind("Reads", target)
                 for line in files[os.path.realpath(name)].lines_but(beyond)]
        unreached = [f"{name}:{line}" for name, line, count in lines if count == 0]
        reached = len(lines) - len(unreached)
        print(f"{target:20} {reached:5} of {len(lines):5} lines, {100 * reached / len(lines):3.0f} %")
        if os.environ.get("FUZZ_UNREACHED"):
            print(*unreached, sep="\n")


if __name__ == "__main__":
    main()

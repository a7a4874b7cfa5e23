#!/usr/bin/env python3
"""Prints how many lines of the named sources a fuzz target reached, and which it did not.

lines_reached.py PROGRAM PROFILE SOURCE...

PROFILE is what the program left under LLVM_PROFILE_FILE. Exit code 1 when it is less than four lines in five, of all
sources together.
"""

import json
import os
import subprocess
import sys

LEAST_SHARE = 0.8


def llvm(tool, *arguments):
    return subprocess.run((f"llvm-{tool}", *arguments), check=True, stdout=subprocess.PIPE).stdout


def lines_of(segments):
    """{line: reached} of a file's coverage: (line, column, count, has count, starts a region, is a gap) each."""
    lines = {}
    for (line, _, count, counted, _, gap), (next_line, *_) in zip(segments, segments[1:]):
        if not counted or gap:
            continue
        for number in range(line, next_line + 1):
            lines[number] = lines.get(number, False) or count > 0
    return lines


def ranges(numbers):
    """[1, 2, 3, 7] -> "1-3, 7"."""
    runs = []
    for number in numbers:
        if runs and runs[-1][1] == number - 1:
            runs[-1][1] = number
        else:
            runs.append([number, number])
    return ", ".join(f"{first}-{last}" if last > first else str(first) for first, last in runs)


def main(program, profile, *sources):
    merged = profile + ".merged"
    llvm("profdata", "merge", "-o", merged, profile)
    report = json.loads(llvm("cov", "export", program, f"-instr-profile={merged}", *sources))
    files = {os.path.realpath(file["filename"]): file for file in report["data"][0]["files"]}
    reached = total = 0
    for source in sources:
        file = files.get(os.path.realpath(source))
        if not file:
            sys.exit(f"{source}: no part of {program}")
        count = file["summary"]["lines"]
        reached += count["covered"]
        total += count["count"]
        missed = sorted(line for line, hit in lines_of(file["segments"]).items() if not hit)
        print(f"{count['covered']:5} of {count['count']:5}  {os.path.relpath(source)}"
              + (f"  not: {ranges(missed)}" if missed else ""))
    share = reached / total
    print(f"{reached:5} of {total:5}  {share:.1%} of the lines")
    sys.exit(share < LEAST_SHARE)


main(*sys.argv[1:])

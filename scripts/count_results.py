#!/usr/bin/env python3
"""count_results.py FOLDER: counts what ./test left there and prints "N passed, N failed, N skipped".

FOLDER/NAME.check holds the outcome of one check. FOLDER/PRESET/ctest.xml lists the test programs of one run, and
PRESET/PROGRAM.json the cases of each GoogleTest program. A program without a file of its own (a check of the tree, a
program that died) counts as one. What failed programs printed at their end comes first. Exits 1 when something failed or
nothing passed.
"""
import json
import sys
import xml.etree.ElementTree as xml
from pathlib import Path


def gtest_cases(path):
    """Outcome and name of each case of a GoogleTest program."""
    for suite in json.loads(path.read_text(encoding="utf-8"))["testsuites"]:
        for case in suite["testsuite"]:
            if case.get("status") != "RUN":
                continue
            if case.get("failures"):
                outcome = "failed"
            else:
                outcome = "skipped" if case.get("result") == "SKIPPED" else "passed"
            yield outcome, f'{suite["name"]}.{case["name"]}'


def program_outcome(element):
    if element.get("status") == "run":
        return "passed"
    return "skipped" if element.find("skipped") is not None else "failed"


def print_end_of_output(name, element, lines=60):
    """A failed program's own words, near the end of a long log."""
    output = (element.findtext("system-out") or "").strip().splitlines()
    print(f"---- {name}, the last lines of its output")
    print("\n".join(output[-lines:]))
    print("----")


def count(folder):
    outcomes = []
    for path in sorted(folder.glob("*.check")):
        outcomes.append((path.read_text().strip(), path.stem))
    for report in sorted(folder.glob("*/ctest.xml")):
        for element in xml.parse(report).getroot().iter("testcase"):
            name = element.get("name")
            program = (program_outcome(element), f"{report.parent.name}: {name}")
            if program[0] == "failed":
                print_end_of_output(program[1], element)
            path = report.parent / f"{name}.json"
            if not path.exists():
                outcomes.append(program)
                continue
            cases = [(outcome, f"{program[1]}: {case}") for outcome, case in gtest_cases(path)]
            outcomes += cases
            # All cases well and the program failed all the same: a leak found at its end, say.
            if program[0] == "failed" and not any(outcome == "failed" for outcome, _ in cases):
                outcomes.append(program)
    return outcomes


def main():
    outcomes = count(Path(sys.argv[1]))
    for outcome, name in outcomes:
        if outcome in ("failed", "skipped"):
            print(f"{outcome}: {name}")
    number = {kind: sum(outcome == kind for outcome, _ in outcomes) for kind in ("passed", "failed", "skipped")}
    print(f'{number["passed"]} passed, {number["failed"]} failed, {number["skipped"]} skipped')
    return 1 if number["failed"] or not number["passed"] else 0


if __name__ == "__main__":
    sys.exit(main())

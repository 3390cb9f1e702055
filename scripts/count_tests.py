#!/usr/bin/env python3
"""Adds up what ctest left in its JUnit files: prints `N passed, N failed`, and how many were skipped where any were.

Usage: count_tests.py FILE...     A file that is not there counts for nothing.
"""
import pathlib
import sys
import xml.etree.ElementTree

passed = failed = skipped = 0
for file in filter(pathlib.Path.exists, map(pathlib.Path, sys.argv[1:])):
    for case in xml.etree.ElementTree.parse(file).getroot().iter("testcase"):
        reason = case.find("skipped")
        if case.get("status") == "run":
            passed += 1
        elif case.get("status") == "disabled" or reason is not None and reason.get("message", "").startswith("SKIP_"):
            skipped += 1
        else:
            failed += 1
if skipped:
    print(f"{skipped} skipped")
print(f"{passed} passed, {failed} failed")

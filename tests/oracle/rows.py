"""Rows for oracle_check: see Operations.h for their shape."""

import sys

ESCAPES = str.maketrans({"\\": "\\\\", "\t": "\\t", "\n": "\\n", "\r": "\\r"})


class Refused(Exception):
    """What the library throws a COvException for; its text is the message."""


class Rows:
    """Writes rows to standard output and counts them."""

    def __init__(self):
        self.count = 0

    def add(self, operation, operands, compute):
        """One row; `compute` gives the expected cell, or raises Refused."""
        try:
            expected = compute()
        except Refused as refusal:
            expected = "! " + str(refusal)
        cells = [operation, *operands, expected]
        sys.stdout.write("\t".join(str(cell).translate(ESCAPES) for cell in cells) + "\n")
        self.count += 1

    def end(self):
        sys.stdout.write(f"end\t{self.count}\n")

#!/usr/bin/env python3
"""Rows for CDateTime and CDateTimeSpan, computed on a table that counts days one by one.

    dates_oracle.py [COUNT [SEED]]
"""

import random
import sys

from rows import Refused, Rows

SECOND = 10**9
DAY = 86400 * SECOND
HOUR = 3600 * SECOND


def is_leap(year):
    return year % 4 == 0 and (year % 100 != 0 or year % 400 == 0)


def month_length(year, month):
    return (31, 29 if is_leap(year) else 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31)[month - 1]


# Every day of 400 years, after which the calendar repeats; day 0 is 0000-01-01.
CYCLE = [(year, month, day) for year in range(400) for month in range(1, 13)
         for day in range(1, month_length(year, month) + 1)]
INDEX = {date: number for number, date in enumerate(CYCLE)}


def day_number(year, month, day):
    cycle, year = divmod(year, 400)
    return cycle * len(CYCLE) + INDEX[year, month, day]


def date_of(number):
    cycle, number = divmod(number, len(CYCLE))
    year, month, day = CYCLE[number]
    return year + 400 * cycle, month, day


class Duration:
    """Components as written; `nanos` is what stands behind the seconds' point."""

    LETTERS = "YMDHMS"

    def __init__(self, negative, parts, nanos):
        self.negative, self.parts, self.nanos = negative, parts, nanos

    def text(self):
        date, time = "", ""
        for i, (number, letter) in enumerate(zip(self.parts, self.LETTERS)):
            fraction = f".{self.nanos:09}" if i == 5 and self.nanos else ""
            if number or fraction:
                piece = f"{number}{fraction}{letter}"
                date, time = (date + piece, time) if i < 3 else (date, time + piece)
        return ("-" if self.negative else "") + "P" + (date or ("" if time else "0D")) + ("T" + time if time else "")

    def months(self):
        return self.sign() * (self.parts[0] * 12 + self.parts[1])

    def span(self):
        days, hours, minutes, seconds = self.parts[2:]
        return self.sign() * (days * DAY + hours * HOUR + minutes * 60 * SECOND + seconds * SECOND + self.nanos)

    def time_in_seconds(self):
        hours, minutes, seconds = self.parts[3:]
        return hours * 3600 + minutes * 60 + seconds

    def sign(self):
        return -1 if self.negative else 1


def add(date, nanos, duration):
    """XML Schema Part 2, appendix E: months first, then the day clamped, then everything else. A day and a time."""
    year, month, day = date
    year, month = divmod(year * 12 + month - 1 + duration.months(), 12)
    day = min(day, month_length(year, month + 1))
    total = day_number(year, month + 1, day) * DAY + nanos + duration.span()
    return divmod(total, DAY)


class Value:
    """A dateTime, date or time: nanoseconds from 0000-01-01T00:00:00 as written, and an offset in minutes, or None."""

    def __init__(self, kind, local, offset, is_z=False):
        self.kind, self.local, self.offset, self.is_z = kind, local, offset, is_z

    def text(self):
        day, nanos = divmod(self.local, DAY)
        pieces = {"dateTime": date_text(date_of(day)) + "T" + time_text(nanos), "date": date_text(date_of(day)),
                  "time": time_text(nanos)}
        return pieces[self.kind] + self.zone_text()

    def zone_text(self):
        if self.offset is None:
            return ""
        hours, minutes = divmod(abs(self.offset), 60)
        return "Z" if self.is_z else f"{'-' if self.offset < 0 else '+'}{hours:02}:{minutes:02}"

    def key(self, offset):
        """What is compared: a time has no day, a date no time of day."""
        utc = self.local - offset * 60 * SECOND
        return utc % DAY if self.kind == "time" else utc // DAY if self.kind == "date" else utc


def date_text(date):
    year, month, day = date
    return f"{'-' if year < 0 else ''}{abs(year):04}-{month:02}-{day:02}"


def time_text(nanos):
    seconds, fraction = divmod(nanos, SECOND)
    point = f".{fraction:09}".rstrip("0") if fraction else ""
    return f"{seconds // 3600:02}:{seconds // 60 % 60:02}:{seconds % 60:02}{point}"


def order(a, b):
    return "equal" if a == b else "less" if a < b else "greater"


def compare(a, b):
    """XML Schema Part 2, section 3.2.7.3."""
    if (a.offset is None) == (b.offset is None):
        return order(a.key(a.offset or 0), b.key(b.offset or 0))
    if a.offset is None:
        return {"less": "greater", "greater": "less"}.get(compare(b, a), "indeterminate")
    if a.key(a.offset) < b.key(14 * 60):
        return "less"
    return "greater" if a.key(a.offset) > b.key(-14 * 60) else "indeterminate"


def compare_durations(a, b):
    """XML Schema Part 2, section 3.2.6.2."""
    moments = ((1696, 9, 1), (1697, 2, 1), (1903, 3, 1), (1903, 7, 1))
    results = {order(add(moment, 0, a), add(moment, 0, b)) for moment in moments}
    return results.pop() if len(results) == 1 else "indeterminate"


class Generator:
    def __init__(self, seed):
        self.random = random.Random(seed)

    def number(self, greatest):
        """Of any size up to the greatest, small ones as often as big ones; 0 in a third of the cases."""
        if self.random.random() < 0.33:
            return 0
        return self.random.randrange(2 ** self.random.randrange(greatest.bit_length() + 1)) % (greatest + 1)

    def nanos(self):
        return self.random.choice((0, 0, 1, SECOND - 1, 5 * 10**8, self.random.randrange(SECOND)))

    def offset(self):
        """In minutes; hour 0 has no sign."""
        if self.random.random() < 0.4:
            return None, False
        if self.random.random() < 0.3:
            return 0, True
        offset = self.random.choice((-1, 1)) * self.random.choice((14 * 60, self.random.randrange(24 * 60)))
        return (abs(offset) if abs(offset) < 60 else offset), False

    def value(self, kind, near=None):
        if near is None:
            first, last = day_number(-9990, 1, 1), day_number(9990, 1, 1)
            local = self.random.randrange(first, last) * DAY + self.random.randrange(86400) * SECOND + self.nanos()
        else:
            step = self.random.choice((0, 1, SECOND, HOUR, 14 * HOUR, 14 * HOUR + 1, DAY, 31 * DAY, 366 * DAY))
            local = near + self.random.choice((-1, 1)) * step
        local = local % DAY if kind == "time" else local // DAY * DAY if kind == "date" else local
        if kind != "time" and date_of(local // DAY)[0] == 0:
            local += len(CYCLE) * DAY
        return Value(kind, local, *self.offset())

    def pair(self):
        kind = self.random.choice(("dateTime", "dateTime", "date", "time"))
        a = self.value(kind)
        b = self.value(kind)
        if self.random.random() < 0.8:
            # Near in UTC, so that the offsets decide.
            utc = a.local - 60 * SECOND * (a.offset or 0)
            b = self.value(kind, utc)
            b.local += 60 * SECOND * (b.offset or 0) if kind == "dateTime" else 0
            if kind == "dateTime" and date_of(b.local // DAY)[0] == 0:
                b.local = a.local
        return a, b

    def duration(self):
        if self.random.random() < 0.5:
            parts = [self.random.randrange(limit) if self.random.random() < 0.5 else 0
                     for limit in (3, 30, 70, 50, 150, 130)]
        else:
            parts = [self.number(greatest) for greatest in (2**16 - 1, 2**32 - 1, 2**32 - 1, 2**32 - 1, 2**64 - 1,
                                                            2**64 - 1)]
        return Duration(self.random.random() < 0.4, parts, self.nanos())

    def durations(self):
        a, b = self.duration(), self.duration()
        if self.random.random() < 0.6:
            # The same length by another road, give or take: months as days, days as seconds.
            months = self.random.randrange(1, 60)
            days = self.random.randrange(months * 30 - 3, months * 31 + 2)
            extra = self.random.choice((0, 0, 1, 86399, 86400))
            a = Duration(a.negative, [months // 12, months % 12, 0, 0, 0, extra], 0)
            b = Duration(a.negative, [0, 0, *self.random.choice(((days, 0, 0, 0), (0, days * 24, 0, 0)))], 0)
        elif self.random.random() < 0.5:
            step = self.random.choice((0, 1))
            b = Duration(a.negative, a.parts[:3] + [0, 0, min(a.time_in_seconds(), 2**64 - 1)],
                         min(a.nanos + step, SECOND - 1))
        return a, b


def sum_text(value, duration):
    day, nanos = divmod(value.local, DAY)
    number, nanos = add(date_of(day), nanos, duration)
    year = date_of(number)[0]
    if not -32768 <= year <= 32767:
        raise Refused(f"The year {year} does not fit in a CDateTime.")
    return Value(value.kind, number * DAY + nanos, value.offset, value.is_z).text()


def main(count=10000, seed=20240229):
    rows, generate = Rows(), Generator(seed)
    for i in range(count):
        if i % 3 == 0:
            value = generate.value(generate.random.choice(("dateTime", "date")))
            duration = generate.duration()
            rows.add("date+duration", [value.text(), duration.text()], lambda: sum_text(value, duration))
        elif i % 3 == 1:
            a, b = generate.pair()
            rows.add("date<=>", [a.text(), b.text()], lambda: compare(a, b))
        else:
            a, b = generate.durations()
            rows.add("duration<=>", [a.text(), b.text()], lambda: compare_durations(a, b))
    rows.end()


if __name__ == "__main__":
    main(*map(int, sys.argv[1:]))

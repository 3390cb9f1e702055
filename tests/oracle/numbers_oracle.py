#!/usr/bin/env python3
"""Rows for CBigInteger and CDecimal, computed independently with Python's integers.

    numbers_oracle.py integer|decimal [COUNT [SEED]]
"""

import math
import random
import sys
from decimal import Decimal
from fractions import Fraction

from rows import Refused, Rows

WHITE = " \t\n\r"
DIGITS = "0123456789"
PLACES = 30


def invalid(position, text):
    return Refused(f"The string representing a Decimal, contained an invalid char at position {position} [{text}].")


class Big:
    """A sign and a magnitude: a zero has a sign."""

    def __init__(self, magnitude=0, sign=None):
        self.sign = sign if sign is not None else (-1 if magnitude < 0 else 1)
        self.magnitude = abs(magnitude)

    def value(self):
        return self.sign * self.magnitude

    def dump(self):
        return ("-" if self.sign < 0 else "+") + str(self.magnitude)

    def text(self):
        return str(self.value())

    def negated(self):
        return Big(self.magnitude, -self.sign)

    def add(self, other):
        if self.sign == other.sign:
            return Big(self.magnitude + other.magnitude, self.sign)
        if self.magnitude == other.magnitude:
            return Big(0, 1)
        greater = self if self.magnitude > other.magnitude else other
        return Big(abs(self.magnitude - other.magnitude), greater.sign)

    def sub(self, other):
        return self.add(other.negated())

    def mul(self, other):
        return Big(self.magnitude * other.magnitude, self.sign * other.sign)

    def div(self, other, name="/"):
        if other.magnitude == 0:
            raise Refused(f"ERROR: Overflow in operator{name}.")
        if self.magnitude == 0:
            return Big()
        return Big(self.magnitude // other.magnitude, self.sign * other.sign)

    def rem(self, other, name="%"):
        if other.magnitude == 0:
            raise Refused(f"ERROR: Overflow in operator{name}.")
        if self.magnitude == 0:
            return Big()
        return Big(self.magnitude % other.magnitude, self.sign)

    def eq(self, other):
        return self.value() == other.value()

    def lt(self, other):
        if self.sign != other.sign:
            return self.sign < 0
        return self.value() < other.value()

    def gt(self, other):
        return other.lt(self)

    def le(self, other):
        return not self.gt(other)

    def ge(self, other):
        return not self.lt(other)

    def root(self):
        if self.lt(Big(0)):
            raise Refused("ERROR: Negative Number in function SquareRoot().")
        if self.magnitude == 0:
            raise Refused("ERROR: Overflow in operator/.")
        return Big(math.isqrt(self.magnitude))

    def within(self, low, high, message):
        if not low <= self.value() <= high:
            raise Refused(message)
        return str(self.value())

    @staticmethod
    def parse(text):
        trimmed = text.rstrip(WHITE).lstrip(" ")
        if any(c not in WHITE + "+-" + DIGITS for c in text) or trimmed[-1:] in ("+", "-"):
            return Dec.parse(text).rounded()
        run = ""
        while trimmed and trimmed[-1] in DIGITS:
            run, trimmed = trimmed[-1] + run, trimmed[:-1]
        return Big(int(run or "0"), -1 if (trimmed + run)[:1] == "-" else 1)

    @staticmethod
    def from_double(value):
        if math.isnan(value) or math.isinf(value):
            raise Refused("A Big Integer can not be made of a double that is not finite.")
        sign = -1 if value < 0.0 else 1
        rest, digits = float(math.ceil(abs(value) - 0.5)), ""
        while rest > 0.0:
            digits = str(int(math.fmod(rest, 10.0))) + digits
            rest = float(math.trunc(rest / 10.0))
        return Big(int(digits or "0"), sign)


ZERO, ONE = Big(0), Big(1)


class Dec:
    """A whole part, a fraction and the number of its places."""

    limit = PLACES

    def __init__(self, whole, fraction=ZERO, places=1):
        self.whole, self.fraction, self.places = whole, fraction, places

    def exact(self):
        return self.whole.value() + Fraction(self.fraction.value(), 10**self.places)

    def dump(self):
        return f"{self.whole.dump()} {self.fraction.dump()} {self.places} {self.text()}"

    def text(self):
        if self.fraction.magnitude == 0:
            return self.whole.text()
        sign = "-" if self.whole.sign < 0 else ""
        return f"{sign}{self.whole.magnitude}.{str(self.fraction.magnitude).zfill(self.places)}"

    def negated(self):
        return Dec(self.whole.negated(), self.fraction.negated(), self.places)

    def rationalised(self):
        fraction, places = self.fraction, self.places
        while places > 1 and fraction.magnitude % 10 == 0:
            fraction, places = fraction.div(Big(10)), places - 1
        return Dec(self.whole, fraction, places)

    def cut(self):
        return self.changed(Dec.limit) if self.places > Dec.limit else self

    def changed(self, places):
        if self.places <= places:
            return Dec(self.whole, self.fraction.mul(Big(10 ** (places - self.places))), places)
        power = Big(10 ** (self.places - places))
        rest = self.fraction.rem(power)
        whole, fraction = self.whole, self.fraction.div(power)
        carry = 0
        if rest.gt(power.div(Big(2))):
            carry = 1
        elif rest.lt(power.div(Big(-2))):
            carry = -1
        if carry == 0:
            return Dec(whole, fraction, places)
        if places == 0:
            return Dec(whole.add(Big(carry)), fraction, places)
        fraction, unit = fraction.add(Big(carry)), Big(10**places)
        if fraction.magnitude >= unit.magnitude:
            fraction, whole = fraction.sub(unit.mul(Big(carry))), whole.add(Big(carry))
        return Dec(*one_sign(whole, fraction, unit), places)

    def aligned(self, other):
        places = max(self.places, other.places)
        return self.changed(places), other.changed(places), places

    def add(self, other):
        a, b, places = self.aligned(other)
        unit = Big(10**places)
        fraction, whole = a.fraction.add(b.fraction), a.whole.add(b.whole)
        while fraction.ge(unit):
            fraction, whole = fraction.sub(unit), whole.add(ONE)
        while fraction.le(unit.negated()):
            fraction, whole = fraction.add(unit), whole.sub(ONE)
        result = Dec(*one_sign(whole, fraction, unit), places).rationalised()
        assert result.exact() == self.exact() + other.exact()
        return result

    def sub(self, other):
        return self.add(other.negated())

    def mul(self, other):
        a, b, places = self.aligned(other)
        one, two = Big(10**places), Big(10 ** (2 * places))
        units = a.whole.mul(b.whole).mul(two).add(a.whole.mul(b.fraction).mul(one))
        units = units.add(a.fraction.mul(b.whole).mul(one)).add(a.fraction.mul(b.fraction))
        return Dec(units.div(two), units.rem(two), 2 * places).rationalised().cut()

    def div(self, other):
        a, b, places = self.aligned(other)
        unit, guard = Big(10**places), Big(10 ** (Dec.limit + 2))
        numerator = unit.mul(a.whole).add(a.fraction).mul(guard)
        quotient = numerator.div(unit.mul(b.whole).add(b.fraction))
        result = Dec(quotient.div(guard), quotient.rem(guard), Dec.limit + 2).rationalised().cut()
        assert abs(result.exact() - self.exact() / other.exact()) <= Fraction(51, 100) / 10**Dec.limit
        return result

    def eq(self, other):
        a, b, _ = self.aligned(other)
        return a.whole.eq(b.whole) and a.fraction.eq(b.fraction)

    def ordered(self, other, whole_test, fraction_test):
        a, b, _ = self.aligned(other)
        return whole_test(a.whole, b.whole) or (a.whole.eq(b.whole) and fraction_test(a.fraction, b.fraction))

    def lt(self, other):
        return self.ordered(other, Big.lt, Big.lt)

    def gt(self, other):
        return self.ordered(other, Big.gt, Big.gt)

    def le(self, other):
        return self.ordered(other, Big.lt, Big.le)

    def ge(self, other):
        return self.ordered(other, Big.gt, Big.ge)

    def rounded(self):
        return self.changed(0).whole

    def in_places(self, places):
        sign = "-" if self.whole.sign < 0 else ""
        sum_ = Dec.parse(sign + "0." + "5".zfill(places + 1)).add(self)
        sign = "-" if sum_.whole.sign < 0 else ""
        return f"{sign}{sum_.whole.magnitude}.{str(sum_.fraction.magnitude).zfill(sum_.places)[:places]}"

    @staticmethod
    def parse(text):
        sign, exponent_sign, exponent = "+", "+", ""
        whole = fraction = ""
        at = 0
        while at < len(text) and text[at] not in ".eE":
            if text[at] in DIGITS:
                whole += text[at]
            elif text[at] in "+-":
                sign = text[at]
            elif text[at] not in WHITE:
                raise invalid(at, text)
            at += 1
        if text[at : at + 1] == ".":
            at += 1
            while at < len(text) and text[at] in DIGITS + WHITE:
                fraction += text[at].strip(WHITE)
                at += 1
        if text[at : at + 1] in ("e", "E"):
            at += 1
            while at < len(text) and text[at] in WHITE + "+-":
                exponent_sign = text[at] if text[at] in "+-" else exponent_sign
                at += 1
            while at < len(text) and text[at] in DIGITS:
                exponent += text[at]
                if int(exponent) > 1000:
                    raise invalid(at, text)
                at += 1
        if at < len(text):
            raise invalid(at, text)
        value = Dec(Big(int(whole or "0")), Big(int(fraction or "0")), len(fraction) or 1)
        if sign == "-":
            value = value.negated()
        if exponent:
            power = Dec(Big(10 ** int(exponent)))
            value = value.div(power) if exponent_sign == "-" else value.mul(power)
        return value.rationalised().cut()

    @staticmethod
    def from_double(value):
        if math.isinf(value) or math.isnan(value):
            text = str(value) + "\n"
            raise invalid(text.index("inf") if "inf" in text else 0, text)
        return Dec.parse("%.13f\n" % value)


def one_sign(whole, fraction, unit):
    if whole.gt(ZERO) and fraction.lt(ZERO):
        if fraction.magnitude == 0:
            fraction = ZERO  # a negative zero borrows nothing
        else:
            fraction, whole = fraction.add(unit), whole.sub(ONE)
    if whole.lt(ZERO) and fraction.gt(ZERO):
        fraction, whole = fraction.sub(unit), whole.add(ONE)
    if whole.magnitude == 0:
        whole = Big(0, fraction.sign)
    return whole, fraction


def read_decimal(operand):
    if operand.startswith("i"):
        return Dec(Big.parse(operand[1:]))
    if operand.startswith("n"):
        return read_decimal(operand[1:]).negated()
    return Dec.parse(operand)


def verdicts(a, b):
    tests = (a.eq(b), not a.eq(b), a.lt(b), a.gt(b), a.le(b), a.ge(b))
    return "".join("1" if holds else "0" for holds in tests)


# Lengths about the words of a machine and the limbs of the library, where carries go wrong.
LENGTHS = [1, 2, 3, 8, 9, 10, 17, 18, 19, 20, 35, 36, 37, 38, 53, 54, 55, 72, 73, 90, 120]
LONG_LENGTHS = [720, 721, 738, 1000, 1439, 1458, 2200]


class Shapes:
    """Texts of numbers that are likely to meet a fault."""

    def __init__(self, seed):
        self.random = random.Random(seed)

    def pick(self, *choices):
        return self.random.choice(choices)

    def length(self):
        return self.random.choice(LONG_LENGTHS if self.random.random() < 0.03 else LENGTHS)

    def digits(self):
        count = self.length()
        kind = self.random.randrange(9)
        if kind == 0:
            return "9" * count
        if kind == 1:
            return "1" + "0" * (count - 1)
        if kind == 2:
            return "0" * self.random.randrange(20) + str(self.random.randrange(10**9))
        if kind == 3:
            return str(self.random.randrange(1, 10**9)) + "0" * count
        if kind == 4:
            return self.pick("0", "1", "2", "5", "10", "00")
        if kind == 5:
            return "5" + "0" * (count - 1) + self.pick("", "1")
        if kind == 6:
            return "".join(self.pick("0", "9") * self.random.randrange(1, 25) for _ in range(4))
        return "".join(self.random.choice(DIGITS) for _ in range(count))

    def sign(self):
        return self.pick("", "", "-", "-", "+")

    def integer(self):
        return self.sign() + self.digits()

    def decimal(self):
        text = self.sign() + self.pick("", "0", self.digits(), self.digits())
        text += self.pick("", ".", "." + self.fraction(), "." + self.fraction(), "." + self.fraction())
        if self.random.random() < 0.15:
            text += self.pick("e", "E") + self.sign() + self.pick("", "0", "1", "2", "9", "18", "31", "40", "007", "308")
        return text

    def fraction(self):
        if self.random.random() < 0.5:
            return self.digits()[: self.random.randrange(1, 36)]
        return self.digits()

    def operand(self):
        kind = self.random.randrange(8)
        if kind == 0:
            return "i" + self.integer()
        if kind == 1:
            return "n" + self.pick("", "i") + self.integer()
        return self.pick("-0", "0", "-0.5", "1", "-1", "-5.00", "0.000", "-0e0") if kind == 2 else self.decimal()

    def zero(self):
        return self.pick("", "i", "n", "ni") + self.pick("0", "-0", "+", "-.000", "0.0", "-0.00", "-0e0")

    def soiled(self, text):
        """With characters strewn in that are passed over, or are not."""
        for _ in range(self.random.randrange(1, 4)):
            at = self.random.randrange(len(text) + 1)
            text = text[:at] + self.pick(" ", " ", "\t", "\n", "\r", "-", "+", ".", "e", "E", "x", "\u0660") + text[at:]
        return text

    def near(self, text):
        """A number close to another one, for comparisons and cancellation."""
        if text[-1:] not in DIGITS or self.random.random() < 0.5:
            return text
        return text[:-1] + self.random.choice(DIGITS)

    def double(self):
        kind = self.random.randrange(5)
        if kind == 0:
            return float(self.random.randrange(-(10**6), 10**6)) / 2
        if kind == 1:
            return float(self.random.randrange(2**52, 2**60)) * self.pick(-1, 1)
        if kind == 2:
            return self.random.uniform(-1, 1) * 10.0 ** self.random.randrange(-20, 308)
        if kind == 3:
            return self.pick(0.0, -0.0, 0.5, -0.5, 0.49999999999999994, 1e22, 1e23, 1.7e308, math.inf, -math.inf, math.nan)
        return self.random.uniform(-100, 100)


def integer_row(rows, shapes):
    a, b = shapes.integer(), shapes.integer()
    kind = shapes.random.randrange(20)
    if kind < 3:
        text = shapes.soiled(a) if kind == 0 else shapes.pick("", "  ") + a + shapes.pick("", " ", "\n")
        rows.add("integer.parse", [text], lambda: Big.parse(text).dump())
    elif kind < 10:
        operator = shapes.pick(*"+-*//%%")
        if operator in "+-":
            b = shapes.pick(b, shapes.near(a))
        methods = {"+": Big.add, "-": Big.sub, "*": Big.mul, "/": Big.div, "%": Big.rem}
        rows.add("integer.calculate", [operator, a, b], lambda: methods[operator](Big.parse(a), Big.parse(b)).dump())
    elif kind < 13:
        operator, other = shapes.pick(*"+-*/%"), shapes.pick("=", b, b)
        second = a if other == "=" else b
        methods = {
            "+": Big.add,
            "-": Big.sub,
            "*": Big.mul,
            "/": lambda x, y: x.div(y, " /="),
            "%": lambda x, y: x.rem(y, "%="),
        }
        rows.add(
            "integer.assign", [operator, a, other], lambda: methods[operator](Big.parse(a), Big.parse(second)).dump()
        )
    elif kind < 16:
        b = shapes.pick(b, shapes.near(a))
        rows.add("integer.compare", [a, b], lambda: verdicts(Big.parse(a), Big.parse(b)))
    elif kind < 18:
        rows.add("integer.root", [a], lambda: Big.parse(a).root().dump())
    elif kind == 18:
        value = shapes.double()
        rows.add("integer.double", [value.hex()], lambda: Big.from_double(value).dump())
    else:
        bits = shapes.pick(31, 63)
        text = shapes.pick(a, *(str(s * 2**bits + d) for s in (-1, 1) for d in (-1, 0, 1)))
        name, message = ("int", "int") if bits == 31 else ("longlong", "LONGLONG")
        message = f"ERROR: Value out of bound of {message}."
        rows.add("integer." + name, [text], lambda: Big.parse(text).within(-(2**bits), 2**bits - 1, message))


METHODS = {"+": Dec.add, "-": Dec.sub, "*": Dec.mul, "/": Dec.div}


def limited(limit, compute):
    Dec.limit = limit
    try:
        return compute()
    finally:
        Dec.limit = PLACES


def decimal_row(rows, shapes):
    a, b = shapes.operand(), shapes.operand()
    kind = shapes.random.randrange(20)
    if kind < 4:
        text = shapes.decimal()
        text = shapes.soiled(text) if kind == 0 else text
        rows.add("decimal.parse", [text], lambda: Dec.parse(text).dump())
    elif kind < 9:
        operator = shapes.pick(*"+-*/")
        if operator in "+-":
            b = shapes.pick(b, shapes.near(a))
        rows.add(
            "decimal.calculate",
            [operator, a, b],
            lambda: METHODS[operator](read_decimal(a), read_decimal(b)).dump(),
        )
    elif kind == 9:
        operator, other = shapes.pick(*"+-*/"), shapes.pick("=", b)
        second = a if other == "=" else b
        rows.add(
            "decimal.assign",
            [operator, a, other],
            lambda: METHODS[operator](read_decimal(a), read_decimal(second)).dump(),
        )
    elif kind == 10:
        limit = shapes.pick(0, 1, 2, 5, 17, 18, 19, 40)
        text = shapes.decimal()
        rows.add("decimal.limited", [limit, text], lambda: limited(limit, lambda: Dec.parse(text).dump()))
    elif kind == 11:
        limit, operator = shapes.pick(0, 1, 2, 5, 17, 18, 19, 40), shapes.pick(*"+-*/")
        compute = lambda: METHODS[operator](read_decimal(a), read_decimal(b)).dump()
        rows.add("decimal.limited", [limit, operator, a, b], lambda: limited(limit, compute))
    elif kind < 15:
        if shapes.random.random() < 0.1:
            a, b = shapes.zero(), shapes.zero()
        b = shapes.pick(b, shapes.near(a), shapes.near(a) + "0" if "." in a and a[-1] in DIGITS else b)
        rows.add("decimal.compare", [a, b], lambda: verdicts(read_decimal(a), read_decimal(b)))
    elif kind < 17:
        places = shapes.pick(0, 1, 2, 3, 5, 17, 18, 19, 29, 30, 31, 40)
        rows.add("decimal.places", [a, places], lambda: read_decimal(a).in_places(places))
    elif kind == 17:
        rows.add("decimal.round", [a], lambda: read_decimal(a).rounded().dump())
    elif kind == 18:
        decimal_conversion(rows, shapes, a)
    else:
        value = shapes.double()
        rows.add("decimal.double", [value.hex()], lambda: Dec.from_double(value).dump())


def decimal_conversion(rows, shapes, a):
    bits = shapes.pick(0, 31, 63)
    if bits == 0:
        bound = 17 * 10**307

        def double():
            value = read_decimal(a)
            value.whole.within(-bound, bound, "The Decimal value if to large to fit into a Double")
            return "same"

        rows.add("decimal.todouble", [a, float(Decimal(read_decimal(a).text())).hex()], double)
        return
    edge = str(shapes.pick(-1, 1) * 2**bits + shapes.pick(-2, -1, 0, 1)) + shapes.pick("", ".4", ".5", ".500001", ".6")
    text = shapes.pick(a, edge)
    name, kind = ("long", "LONG") if bits == 31 else ("longlong", "LONGLONG")
    message = f"The Decimal value if to large to fit into a {kind}"
    rows.add("decimal." + name, [text], lambda: read_decimal(text).rounded().within(-(2**bits), 2**bits - 1, message))


def main(kind, count=10000, seed=20240229):
    if hasattr(sys, "set_int_max_str_digits"):
        sys.set_int_max_str_digits(0)
    make = {"integer": integer_row, "decimal": decimal_row}[kind]
    rows, shapes = Rows(), Shapes(int(seed))
    for _ in range(int(count)):
        make(rows, shapes)
    rows.end()


main(*sys.argv[1:])

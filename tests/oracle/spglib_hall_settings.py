#!/usr/bin/env python3
"""Cross-check of the space-group machinery against spglib's database of Hall settings.

For each of spglib's 530 Hall settings, `velmoria --group "<Hall symbol>"` must list exactly
the operators of spglib's setting, as a set (rotations equal, translations equal modulo 1),
and its general multiplicity must equal spglib's count of operators.  Three Hall symbols,
"P 2", "A 2" and "I 2", are also tabulated Hermann-Mauguin symbols (of the b-unique
settings), which a plain --group reads first; these are given with --hall, which forces the
Hall reading, and the plain form is checked to give the b-unique setting.
"""
import re
import subprocess
import sys
from fractions import Fraction

import spglib

SYMM = re.compile(r"^ => SYMM\(\s*\d+\):\s+(\S+)")
MULT = re.compile(r"^ =>    General multiplicity:\s*(\d+)")
TERM = re.compile(r"([+-]?)(\d+(?:/\d+)?)?([xyz])?")


def parse_component(text):
    """Coefficients of x, y, z and the constant term of one component such as -x+y+1/3."""
    row = [0, 0, 0]
    shift = Fraction(0)
    pos = 0
    if not text:
        raise ValueError("empty component")
    while pos < len(text):
        m = TERM.match(text, pos)
        if not m or m.end() == pos or (m.group(2) is None and m.group(3) is None):
            raise ValueError(f"cannot read {text!r}")
        sign = -1 if m.group(1) == "-" else 1
        number = Fraction(m.group(2)) if m.group(2) else None
        if m.group(3):
            row["xyz".index(m.group(3))] += sign * (int(number) if number is not None else 1)
        else:
            shift += sign * number
        pos = m.end()
    return row, shift


def parse_operator(text):
    parts = text.split(",")
    if len(parts) != 3:
        raise ValueError(f"not an operator: {text!r}")
    rows, shifts = zip(*(parse_component(p) for p in parts))
    return tuple(tuple(r) for r in rows), tuple(s % 1 for s in shifts)


def spglib_operators(hall_number):
    data = spglib.get_symmetry_from_database(hall_number)
    ops = set()
    for rot, tr in zip(data["rotations"], data["translations"]):
        shift = tuple(Fraction(float(t)).limit_denominator(24) % 1 for t in tr)
        ops.add((tuple(tuple(int(v) for v in row) for row in rot), shift))
    return ops, len(data["rotations"])


def velmoria_listing(binary, text, force_hall=False):
    command = [binary, "--group"] + (["--hall"] if force_hall else []) + [text]
    run = subprocess.run(command, capture_output=True, text=True, timeout=60)
    if run.returncode != 0:
        return None, None, run.stderr.strip() or run.stdout.strip()
    ops, mult = [], None
    for line in run.stdout.splitlines():
        m = SYMM.match(line)
        if m:
            ops.append(parse_operator(m.group(1)))
        m = MULT.match(line)
        if m:
            mult = int(m.group(1))
    return ops, mult, None


def main():
    binary = sys.argv[1]
    failures = []
    settings = range(1, 531)
    also_symbols = {"P 2", "A 2", "I 2"}
    for hall_number in settings:
        hall = spglib.get_spacegroup_type(hall_number)["hall_symbol"]
        expected, count = spglib_operators(hall_number)
        ops, mult, error = velmoria_listing(binary, hall, force_hall=hall in also_symbols)
        if error is not None:
            failures.append(f"{hall_number} {hall!r}: {error}")
        elif set(ops) != expected or len(ops) != count or mult != count:
            failures.append(
                f"{hall_number} {hall!r}: {len(ops)} operators listed, multiplicity {mult}, "
                f"spglib has {count}; missing {len(expected - set(ops))}, extra {len(set(ops) - expected)}")
    # The plain form of those three symbols is the tabulated b-unique setting ("P 2y" etc.).
    for symbol, hall in (("P 2", "P 2y"), ("A 2", "A 2y"), ("I 2", "I 2y")):
        hall_number = next(n for n in settings if spglib.get_spacegroup_type(n)["hall_symbol"] == hall)
        expected, _ = spglib_operators(hall_number)
        ops, _, error = velmoria_listing(binary, symbol)
        if error is not None or set(ops) != expected:
            failures.append(f"{symbol!r} is not read as the tabulated symbol of {hall!r}")
    for f in failures[:40]:
        print("FAILED", f)
    passed = len(settings) - len(failures)
    print(f"spglib Hall settings: {passed} passed, {len(failures)} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())

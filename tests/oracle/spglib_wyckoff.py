#!/usr/bin/env python3
"""Cross-check of the special positions table against spglib's Wyckoff letters.

For every key of the special positions table (src/symmetry/tables_wyckoff.cpp) the setting
is looked up in the settings table (src/symmetry/tables_settings.cpp): the key is a
Hermann-Mauguin symbol of that table, and a key "SYMBOL:T" with a symbol that is not in the
table names the row of SYMBOL whose setting tag is T.  Its Hall symbol gives spglib's Hall
number.  For the orbit number i (Wyckoff letter 'a' + i - 1) the representative is taken at
general values of its free parameters and expanded with spglib's operators of that Hall
number into a crystal of one kind of atom; two more kinds on general positions rule out
a larger symmetry of the crystal and any shift of the origin to a point of the same kind.
spglib, held to that Hall setting, must give every atom of the first kind letter i, in one
crystallographic orbit of as many sites as the point group order over the site symmetry
order.  The general position must carry the letter behind the last special position, so
that the number of entered positions is the number of special positions of the group.

spglib only judges the table: nothing it computes goes into the program.

Usage: spglib_wyckoff.py [VELMORIA_BINARY]   (the binary is not needed and is ignored)
"""
import math
import re
import sys
from pathlib import Path

import numpy as np
import spglib

from spglib_hall_settings import parse_operator  # the operator texts, read exactly

ROOT = Path(__file__).resolve().parent.parent.parent
WYCKOFF_CPP = ROOT / "src" / "symmetry" / "tables_wyckoff.cpp"
SETTINGS_CPP = ROOT / "src" / "symmetry" / "tables_settings.cpp"

# General values of the free parameters of a special position, and the general positions
# of the second and third kinds of atom.
FREE = {"x": 0.1123, "y": 0.2237, "z": 0.3391}
GENERAL = [(0.0712, 0.4139, 0.1867), (0.3561, 0.1283, 0.0934)]
# spglib's letters, the general position of Pmmm (the 27th) being 'A'.
LETTERS = "abcdefghijklmnopqrstuvwxyzA"


def field(record, name):
    """A field of a spglib result, whether spglib returns a dict or an object."""
    return record[name] if isinstance(record, dict) else getattr(record, name)


def dataset(cell, hall_number):
    """spglib's symmetry dataset held to one Hall setting, None when spglib finds none."""
    try:
        return spglib.get_symmetry_dataset(cell, symprec=1e-4, hall_number=hall_number)
    except Exception:  # newer spglib raises where older returns None
        return None


def unescape(text):
    return text.replace('\\"', '"').replace("\\\\", "\\")


def read_settings():
    """Rows of the settings table as (number, hm, hall, tag), blanks trimmed."""
    text = SETTINGS_CPP.read_text()
    row = re.compile(r'\{(\d+),\s*"([^"]*)",\s*"((?:[^"\\]|\\.)*)",\s*\d+,\s*\d+,\s*'
                     r'\{[^}]*\},\s*"([^"]*)"\}')
    rows = [(int(m.group(1)), m.group(2).strip(), unescape(m.group(3)).strip(), m.group(4).strip())
            for m in row.finditer(text)]
    assert len(rows) == 612, len(rows)
    return rows


def read_wyckoff():
    """Rows of the special positions table as (key, [orbit representatives])."""
    text = WYCKOFF_CPP.read_text()
    text = text[text.index("wyckoff_table{{"):]
    row = re.compile(r'\{"([^"]*)",\s*(\d+),\s*\{\{(.*?)\}\}\}', re.S)
    rows = []
    for m in row.finditer(text):
        orbits = [s.strip() for s in re.findall(r'"([^"]*)"', m.group(3))]
        norbit = int(m.group(2))
        assert all(orbits[:norbit]) and len(orbits) == norbit, m.group(1)
        rows.append((m.group(1).strip(), orbits))
    assert len(rows) == 273, len(rows)
    return rows


def setting_of(key, settings):
    for row in settings:
        if row[1] == key:
            return row
    if ":" in key:
        base, tag = key.rsplit(":", 1)
        for row in settings:
            if row[1] == base and row[3] == tag:
                return row
    return None


# Hall symbols of the settings table that spglib writes otherwise for the same operators:
# in Ibam the translation ab of the second twofold rotation differs from spglib's c by the
# centring vector.
HALL_ALIASES = {"-i 2 2ab": "-i 2 2c"}


def normal_hall(text):
    text = " ".join(text.split()).lower()
    return HALL_ALIASES.get(text, text)


def hall_numbers():
    table = {}
    for h in range(1, 531):
        table.setdefault(normal_hall(field(spglib.get_spacegroup_type(h), "hall_symbol")), h)
    return table


def evaluate(orbit):
    """Coordinates of a representative such as 1/4,y,-y+1/2 at the general free values (the
    constant terms modulo 1)."""
    rows, shifts = parse_operator(orbit)
    free = [FREE[v] for v in "xyz"]
    return np.array([np.dot(row, free) + float(shift) for row, shift in zip(rows, shifts)])


def expand(point, rotations, translations):
    """The distinct images of a point in the cell."""
    images = (np.einsum("nij,j->ni", rotations, point) + translations) % 1.0
    seen, sites = set(), []
    for p in images:
        key = tuple(np.round(np.round(p, 6) % 1.0, 6))
        if key not in seen:
            seen.add(key)
            sites.append(p)
    return sites


def stabiliser_order(point, rotations, translations):
    d = np.einsum("nij,j->ni", rotations, point) + translations - point
    return int(np.sum(np.all(np.abs(d - np.round(d)) < 1e-6, axis=1)))


def metric(number, tag, rotations):
    """Basis vectors (rows) of a cell whose metric the group keeps and no more."""
    def cell(a, b, c, alpha, beta, gamma):
        al, be, ga = (math.radians(v) for v in (alpha, beta, gamma))
        cx = math.cos(be)
        cy = (math.cos(al) - math.cos(be) * math.cos(ga)) / math.sin(ga)
        cz = math.sqrt(1.0 - cx * cx - cy * cy)
        return np.array([[a, 0, 0], [b * math.cos(ga), b * math.sin(ga), 0], [c * cx, c * cy, c * cz]])

    if number <= 2:
        return cell(5.1, 6.3, 7.4, 83.0, 97.0, 104.0)
    if number <= 15:
        # the unique axis is the axis of the twofold rotation (or the mirror's normal)
        for r in rotations:
            proper = r * round(np.linalg.det(r))
            if not np.array_equal(proper, np.eye(3, dtype=int)):
                axis = [k for k in range(3) if proper[k, k] == 1][0]
                angles = [90.0, 90.0, 90.0]
                angles[axis] = 103.0
                return cell(5.1, 6.3, 7.4, *angles)
        raise ValueError("no unique axis")
    if number <= 74:
        return cell(4.1, 5.3, 6.7, 90, 90, 90)
    if number <= 142:
        return cell(4.1, 4.1, 6.7, 90, 90, 90)
    if number <= 194:
        if tag == "R":
            return cell(5.2, 5.2, 5.2, 71.0, 71.0, 71.0)
        return cell(4.1, 4.1, 6.7, 90, 90, 120)
    return cell(5.3, 5.3, 5.3, 90, 90, 90)


def check_orbit(hall_number, lattice, rotations, translations, general, orbit, letter):
    """None when spglib gives the orbit the letter, else the complaint."""
    point = evaluate(orbit)
    special = expand(point, rotations, translations)
    expected = len(rotations) // stabiliser_order(point, rotations, translations)
    if len(special) != expected:
        return f"{orbit}: {len(special)} sites, multiplicity {expected}"
    kinds = [1] * len(special) + [2] * len(general[0]) + [3] * len(general[1])
    cell = (lattice, special + general[0] + general[1], kinds)
    data = dataset(cell, hall_number)
    if data is None or field(data, "hall_number") != hall_number:
        return f"{orbit}: spglib finds no setting {hall_number}"
    found = len(field(data, "rotations"))
    if found != len(rotations):
        return f"{orbit}: spglib finds {found} operators, not {len(rotations)}"
    got = set(field(data, "wyckoffs")[: len(special)])
    if got != {letter}:
        return f"{orbit}: spglib letter {''.join(sorted(got))}, table letter {letter}"
    if len(set(field(data, "equivalent_atoms")[: len(special)])) != 1:
        return f"{orbit}: sites fall into several orbits"
    return None


def general_letter(hall_number, lattice, general):
    kinds = [2] * len(general[0]) + [3] * len(general[1])
    data = dataset((lattice, general[0] + general[1], kinds), hall_number)
    if data is None or field(data, "hall_number") != hall_number:
        return None
    return field(data, "wyckoffs")[0]


def check_key(key, orbits, settings, halls):
    """Complaints about one key, empty when it agrees with spglib."""
    row = setting_of(key, settings)
    if row is None:
        return ["no setting for the key"]
    number, _, hall, tag = row
    hall_number = halls.get(normal_hall(hall))
    if hall_number is None:
        return [f"spglib has no Hall symbol {hall!r}"]
    if field(spglib.get_spacegroup_type(hall_number), "number") != number:
        return [f"Hall symbol {hall!r} is not of group {number}"]
    ops = spglib.get_symmetry_from_database(hall_number)
    rotations = np.array(ops["rotations"], dtype=float)
    translations = np.array(ops["translations"], dtype=float)
    lattice = metric(number, tag, np.array(ops["rotations"], dtype=int))
    general = [expand(np.array(p), rotations, translations) for p in GENERAL]
    problems = []
    last = general_letter(hall_number, lattice, general)
    if last is None:
        problems.append("spglib cannot place the general position")
    elif LETTERS.index(last) != len(orbits):
        problems.append(f"{len(orbits)} special positions, spglib has {LETTERS.index(last)}")
    for i, orbit in enumerate(orbits):
        try:
            problem = check_orbit(hall_number, lattice, rotations, translations, general, orbit,
                                  LETTERS[i])
        except ValueError as e:
            problem = str(e)
        if problem:
            problems.append(problem)
    return problems


def main():
    settings = read_settings()
    halls = hall_numbers()
    passed, failed = 0, 0
    for key, orbits in read_wyckoff():
        problems = check_key(key, orbits, settings, halls)
        if problems:
            failed += 1
            print(f"FAILED {key}: " + "; ".join(problems))
        else:
            passed += 1
    print(f"spglib Wyckoff letters: {passed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())

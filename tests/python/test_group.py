"""velmoria.group against spglib's database of the 530 Hall settings, and the other ways of
giving a group."""

from fractions import Fraction

import numpy as np
import spglib

import velmoria
from checks import operator_key

# Hall symbols that are also tabulated Hermann-Mauguin symbols (of the b-unique settings): a
# plain text reads them as the tabulated symbol, hall=True as the Hall symbol.
ALSO_SYMBOLS = {"P 2", "A 2", "I 2"}


def spglib_operators(hall_number):
    data = spglib.get_symmetry_from_database(hall_number)
    keys = set()
    for rotation, shift in zip(data["rotations"], data["translations"]):
        keys.add((tuple(tuple(int(v) for v in row) for row in rotation),
                  tuple(Fraction(float(t)).limit_denominator(24) % 1 for t in shift)))
    return keys, len(data["rotations"])


def test_operators_of_all_hall_settings_are_spglibs():
    failures = []
    for hall_number in range(1, 531):
        hall = spglib.get_spacegroup_type(hall_number)["hall_symbol"]
        expected, count = spglib_operators(hall_number)
        try:
            group = velmoria.group(hall, hall=hall in ALSO_SYMBOLS)
        except velmoria.InputError as error:
            failures.append(f"{hall_number} {hall!r}: {error}")
            continue
        keys = [operator_key(op) for op in group["operators"]]
        if set(keys) != expected or len(keys) != count or group["multiplicity"] != count:
            failures.append(f"{hall_number} {hall!r}: {len(keys)} operators, multiplicity "
                            f"{group['multiplicity']}, spglib {count}; missing "
                            f"{len(expected - set(keys))}, extra {len(set(keys) - expected)}")
    assert not failures, "\n".join(failures[:20])


def test_plain_text_of_a_tabulated_symbol_is_the_b_unique_setting():
    # (The Hall symbols themselves, hall=True for these, are spglib's above.)
    for symbol, hall in (("P 2", "P 2y"), ("A 2", "A 2y"), ("I 2", "I 2y")):
        number = next(n for n in range(1, 531)
                      if spglib.get_spacegroup_type(n)["hall_symbol"] == hall)
        expected, _ = spglib_operators(number)
        assert {operator_key(op) for op in velmoria.group(symbol)["operators"]} == expected


def test_number_symbol_and_generators_give_the_same_group():
    by_symbol = velmoria.group("P n m a")
    by_number = velmoria.group(62)
    assert by_number["number"] == by_symbol["number"] == 62
    operators = {operator_key(op) for op in by_symbol["operators"]}
    assert {operator_key(op) for op in by_number["operators"]} == operators
    # The group again from three of its operators (two screws and the inversion), given as
    # one text and as a list.
    texts = ["-x+1/2,-y,z+1/2", "-x,y+1/2,-z", "-x,-y,-z"]
    for given in ("; ".join(texts), texts):
        made = velmoria.group(generators=given)
        assert {operator_key(op) for op in made["operators"]} == operators
        assert made["number"] == 62
    assert all(isinstance(op["rotation"], np.ndarray) for op in by_number["operators"])

"""The matrices of velmoria.irreps multiply like the little group with the phase rule, and
their characters are orthonormal, for groups of every crystal system."""

import numpy as np
import pytest

import velmoria
from checks import representations_hold

CASES = [
    ("P -1", (0.5, 0.5, 0.5)),                  # triclinic, zone corner
    ("P 21/c", (0, 0.5, 0)),                     # monoclinic screw at the zone boundary
    ("P 21/c", ("1/2", "0", "1/2")),             # ... with k as fractions
    ("C 2/m", (1, 0, 0)),                        # centred monoclinic, Y
    ("P 21/c", (0.1, 0.2, 0.3)),                 # a general k: the little group is {1}
    ("P n m a", (0, 0, 0.5)),                    # orthorhombic, non-symmorphic, Z
    ("P n m a", (0.5, 0, 0.5)),                  # ... U
    ("F d d d", (0, 0, 0)),                      # face-centred, d glides
    ("P 42/m n m", (0, 0, 0.5)),                 # tetragonal, non-symmorphic, Z
    ("I 41/a m d", (0, 0, 1)),                   # body-centred, 41 screw
    ("P 4/n c c", (0.5, 0.5, 0.5)),              # tetragonal, origin choice 1, A
    ("R -3 c", (0, 0, 0)),                       # trigonal, hexagonal axes
    ("R -3 c", (0, 0, 1.5)),                     # ... the zone boundary along c*
    ("P 63/m m c", (0, 0, 0.5)),                 # hexagonal, 63 screw, A
    ("P 63/m m c", ("1/3", "1/3", "0")),         # ... K
    ("P 63/m m c", (0, 0, 0.3)),                 # ... a general point on the 6-fold axis
    ("P 6/m m m", (0, 0, 0)),                    # hexagonal, order 24
    ("P a -3", (0.5, 0.5, 0.5)),                 # cubic, non-symmorphic, R
    ("F d -3 m", (1, 0, 0)),                     # diamond, X
    ("I a -3 d", (0, 0, 0)),                     # cubic, order 48 in the primitive cell
    ("P m -3 m", (0.5, 0.5, 0.5)),               # cubic, symmorphic, R
    ("P 43 3 2", (0.5, 0.5, 0)),                 # cubic, enantiomorphic screws, M
    (["-x+1/2,-y,z+1/2", "-x,y+1/2,-z", "-x,-y,-z"], (0, 0, 0.5)),  # P n m a by generators, Z
]


@pytest.mark.parametrize("group,k", CASES, ids=[f"{g} {k}" for g, k in CASES[:-1]] + ["generators"])
def test_representations_multiply_like_the_group(group, k):
    document = velmoria.irreps(group, k)
    failures = representations_hold(document)
    assert not failures, "\n".join(failures[:10])
    assert document["dims"] == [rep["dimension"] for rep in document["representations"]]


def test_dims_of_known_cases():
    # Worked out by hand: P m -3 m at R is the point group m-3m, ten representations,
    # 1+1+1+1+4+4+9+9+9+9 = 48 squares.
    assert sorted(velmoria.irreps("P m -3 m", (0.5, 0.5, 0.5))["dims"]) == [1] * 4 + [2] * 2 + [3] * 4


def test_k_forms_and_label():
    a = velmoria.irreps("62", ("0", "0", "1/2"), label="Z")
    b = velmoria.irreps("P n m a", "0 0 0.5", label="Z")
    c = velmoria.irreps("P n m a", np.array([0.0, 0.0, 0.5]), label="Z")
    for d in (a, b, c):
        assert d["k"]["components"] == [0.0, 0.0, 0.5]
        assert d["k"]["label"] == "Z"
    # k is rounded to simple fractions as a KVEC line rounds it
    assert velmoria.irreps("P 63/m m c", (0.333333, 0.333333, 0))["k"]["fractions"] == ["1/3", "1/3", "0"]

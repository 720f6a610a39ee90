"""Checks shared by the tests of the Python module: operators as exact keys, the axioms of a
set of irreducible representations of a little group, spans of complex vectors, documents
compared, and the files and program of the repository."""

import json
import os
from fractions import Fraction
from pathlib import Path

import numpy as np

ROOT = Path(__file__).resolve().parents[2]

# The tolerance on the matrices: they are computed in single precision.
TOL = 2.0e-3


def program():
    """The command-line program: VELMORIA_PROGRAM, else the build directory of the module."""
    given = os.environ.get("VELMORIA_PROGRAM")
    if given:
        return given
    import velmoria

    return str(Path(velmoria.__file__).resolve().parents[2] / "velmoria")


def control_file(relative):
    return (ROOT / relative).read_text()


def fraction(text):
    """A translation component as the documents give it, "1/2" or "-1/4", reduced modulo 1."""
    assert isinstance(text, str), f"translation component {text!r} is no fraction"
    return Fraction(text) % 1


def operator_key(op):
    """An operator modulo lattice translations: rotation rows and translation fractions."""
    rotation = np.asarray(op["rotation"])
    assert rotation.shape == (3, 3) and rotation.dtype.kind == "i"
    return (tuple(tuple(int(v) for v in row) for row in rotation),
            tuple(fraction(t) for t in op["translation"]))


def translation(op):
    """The translation of an operator as floats, as given (not reduced)."""
    return np.array([float(Fraction(t)) for t in op["translation"]])


def representations_hold(document):
    """The representations of an irreps document (or a run document) against the theory, as the
    repository's C++ tests check a store: the products of the operators are operators up to
    lattice translations (centring vectors included); the squares of the dimensions add up to the order;
    every matrix is unitary; for a b = (1|L) c, D(a) D(b) = exp(2 pi i k.L) D(c); the
    characters are the traces; and the characters are orthonormal,
    sum_g conj(chi_mu(g)) chi_nu(g) = order delta(mu, nu).  Returns a list of failures."""
    ops = document["little_group"]["operators"]
    reps = document["representations"]
    k = np.asarray(document["k"]["components"], dtype=float)
    n = len(ops)
    failures = []
    if n != document["little_group"]["order"] or n < 1 or not reps:
        return [f"{n} operators, order {document['little_group']['order']}, {len(reps)} reps"]
    if sum(rep["dimension"] ** 2 for rep in reps) != n:
        failures.append(f"squares of the dimensions {[r['dimension'] for r in reps]} != {n}")
    centring = [np.zeros(3)] + [np.array([float(Fraction(t)) for t in v])
                                for v in document["space_group"]["centring_vectors"]]
    rotations = [np.asarray(op["rotation"]) for op in ops]
    translations = [translation(op) for op in ops]
    for rep in reps:
        d = rep["dimension"]
        m = rep["matrices"]
        if m.shape != (n, d, d) or rep["characters"].shape != (n,):
            failures.append(f"rep {rep['number']}: shapes {m.shape}, {rep['characters'].shape}")
            return failures
        for g in range(n):
            if not np.allclose(m[g] @ m[g].conj().T, np.eye(d), atol=TOL):
                failures.append(f"rep {rep['number']} op {g + 1}: not unitary")
        if not np.allclose(np.trace(m, axis1=1, axis2=2), rep["characters"], atol=TOL):
            failures.append(f"rep {rep['number']}: characters are not the traces")
    for a in range(n):
        for b in range(n):
            r = rotations[a] @ rotations[b]
            found = [c for c in range(n) if np.array_equal(rotations[c], r)]
            if len(found) != 1:
                failures.append(f"{a + 1}*{b + 1}: {len(found)} operators with its rotation")
                continue
            c = found[0]
            lattice = translations[a] + rotations[a] @ translations[b] - translations[c]
            if not any(np.allclose(lattice - v, np.round(lattice - v), atol=1e-5) for v in centring):
                failures.append(f"{a + 1}*{b + 1} = {c + 1} up to a non-lattice translation")
            phase = np.exp(2j * np.pi * (k @ lattice))
            for rep in reps:
                m = rep["matrices"]
                if not np.allclose(m[a] @ m[b], phase * m[c], atol=TOL):
                    failures.append(f"rep {rep['number']}: D({a + 1}) D({b + 1}) != "
                                    f"exp(2 pi i k.L) D({c + 1})")
    chars = np.array([rep["characters"] for rep in reps])
    gram = chars.conj() @ chars.T / n
    if not np.allclose(gram, np.eye(len(reps)), atol=TOL):
        failures.append(f"characters not orthonormal:\n{np.round(gram, 3)}")
    return failures


def orthonormal_basis(vectors, tol=1e-3):
    """An orthonormal basis of the span of the vectors (rows), by their singular values."""
    if len(vectors) == 0:
        return np.zeros((0, 0))
    a = np.asarray(vectors)
    u, s, vh = np.linalg.svd(a, full_matrices=False)
    rank = int(np.sum(s > tol * s.max()))
    return vh[:rank]


def outside(basis, v):
    """The norm of the part of v outside the span of the orthonormal rows of basis."""
    return float(np.linalg.norm(v - basis.T @ (basis.conj() @ v)))


def same_data(a, b):
    """Whether two documents are the same, numpy arrays compared as lists (exactly)."""
    def plain(x):
        return [x.real, x.imag] if isinstance(x, complex) else [x.dtype.str, x.tolist()]
    return json.dumps(a, default=plain) == json.dumps(b, default=plain)

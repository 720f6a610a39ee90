"""The basis functions of a run span spaces that the site's magnetic (or mechanical)
representation maps into itself, on which it has the character of the representation they
belong to (times its multiplicity), and which together make up the whole space of vectors on
the site."""

import numpy as np
import pytest

import velmoria
from checks import TOL, control_file, orthonormal_basis, outside, translation

# MnF2 at k = 0 (a 2-dimensional representation twice), hematite (one- and two-dimensional
# representations on hexagonal axes), and P 21/c at an incommensurate k, where the phase
# exp(2 pi i k.L) of an atom carried out of the cell is not real.
CASES = ["examples/mnf2.vrn", "examples/hematite.vrn", "tests/e2e/cases/p21c_incomm.vrn"]


def site_operator(op, atoms, k, axial):
    """The matrix by which a little-group operator (R|t) acts on vectors on the atoms: atom j at
    r_j goes to R r_j + t = r_j' + L, and its vector S_j to exp(2 pi i k.L) V S_j on atom j',
    with V = R for displacements and det(R) R for moments.  Components along a, b, c: the
    rotations of a group keep the lengths of the axes they mix, so V holds in that frame."""
    rotation = op["rotation"].astype(float)
    vector = np.linalg.det(rotation) * rotation if axial else rotation
    positions = [atom["position"] for atom in atoms]
    n = len(atoms)
    matrix = np.zeros((3 * n, 3 * n), dtype=complex)
    for j, r in enumerate(positions):
        image = rotation @ r + translation(op)
        targets = [i for i, s in enumerate(positions)
                   if np.allclose(image - s, np.round(image - s), atol=1e-3)]
        assert len(targets) == 1, f"operator {op['number']} takes atom {j + 1} to {targets}"
        i = targets[0]
        lattice = np.round(image - positions[i])
        matrix[3 * i:3 * i + 3, 3 * j:3 * j + 3] = np.exp(2j * np.pi * (k @ lattice)) * vector
    return matrix


@pytest.mark.parametrize("case", CASES)
def test_basis_functions_span_invariant_spaces(case):
    result = velmoria.run(control_file(case), check=True)
    assert result["finished"] and result["stop_message"] is None
    k = np.asarray(result["k"]["components"], dtype=float)
    axial = result["vectors"] == "axial"
    irreps = {rep["number"]: rep for rep in result["representations"]}
    assert result["sites"]
    for site in result["sites"]:
        atoms = site["atoms"]
        n = len(atoms)
        for atom in atoms:
            assert atom["position"].shape == (3,) and atom["position"].dtype == float
        operators = [site_operator(op, atoms, k, axial)
                     for op in result["little_group"]["operators"]]
        total = 0
        for rep in site["representations"]:
            functions = rep["basis_functions"]
            assert functions.dtype == complex and functions.shape[1:] == (n, 3)
            expected = rep["dimension"] * rep["occurrences"]
            irrep = irreps[rep["number"]]
            assert rep["dimension"] == irrep["dimension"]
            vectors = functions.reshape(len(functions), 3 * n)
            basis = orthonormal_basis(vectors)
            # d functions for each time the representation occurs, independent
            assert len(functions) == expected == len(basis), (case, site["number"], rep["number"])
            for g, matrix in enumerate(operators):
                for f, v in enumerate(vectors):
                    left = outside(basis, matrix @ v) / np.linalg.norm(v)
                    assert left < 5 * TOL, (f"{case} site {site['number']} rep {rep['number']}: "
                                            f"operator {g + 1} takes function {f + 1} out of the span")
            # The operators restricted to the span: the trace is ia chi(g).
            traces = np.array([np.trace(basis.conj() @ matrix @ basis.T) for matrix in operators])
            assert np.allclose(traces, rep["occurrences"] * irrep["characters"], atol=5 * TOL), (
                f"{case} site {site['number']}: the functions of rep {rep['number']} carry "
                f"characters {np.round(traces, 3)}")
            total += expected
        # The representations found make up the whole representation on the site.
        assert total == 3 * n, (case, site["number"])


def test_numpy_example_of_the_readme():
    result = velmoria.run(control_file("examples/mnf2.vrn"))
    site = result["sites"][0]
    labels = [atom["label"] for atom in site["atoms"]]
    assert labels == ["Mn_1", "Mn_2"]
    # Representation 3 of MnF2: moments along c, opposite on the two Mn atoms.
    rep = next(r for r in site["representations"] if r["number"] == 3)
    assert np.allclose(rep["basis_functions"], [[[0, 0, 1], [0, 0, -1]]], atol=TOL)
    assert "GAMMA(Magnetic)" in result["result"] and "BASR" in result["block"]

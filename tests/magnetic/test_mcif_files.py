#!/usr/bin/env python3
"""The magnetic CIF files: every file that `velmoria CODE --magnetic` writes for the examples
mnf2 and hematite, and the files of hand-built candidates, is read by gemmi; the structure of
the file (its atoms carried by its operations and centring, moments from the file) is
identified by spglib's Python binding, which must find the BNS group that the file states.
The command line: without --magnetic the result and block files stay as they were; with it
the section follows at the end, the JSON holds the same data and meets the schema."""
import json
import os
import shutil
import subprocess
import sys
import tempfile

import gemmi
import jsonschema
import numpy as np
import spglib

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
sys.path.insert(0, os.path.dirname(HERE))
from cli_checks import check, run, summary  # noqa: E402

HEADING = "MAGNETIC SPACE GROUPS OF THE ORDER-PARAMETER DIRECTIONS"


def lattice_of(block):
    cell = gemmi.UnitCell(*(float(block.find_value("_cell_" + k)) for k in (
        "length_a", "length_b", "length_c", "angle_alpha", "angle_beta", "angle_gamma")))
    return np.array(cell.orth.mat).T


def parse_operation(text):
    """'-y+1/2,x,z,-1' -> (R, t, time reversal), the triplet read by gemmi."""
    triplet, reversal = text.rsplit(",", 1)
    op = gemmi.Op(triplet)
    return (np.array(op.rot) // gemmi.Op.DEN, np.array(op.tran) / gemmi.Op.DEN,
            reversal.strip() == "-1")


def column(block, tag, kind=str):
    return [kind(gemmi.cif.as_string(v) if kind is str else gemmi.cif.as_number(v))
            for v in block.find_values(tag)]


def check_file(path, name):
    """Reads the file with gemmi (an error of gemmi's stops the test) and identifies its
    structure with spglib: a magnetic file its BNS number, a distorted structure (its atoms
    and a general position) its space group's number.  Returns the number the file states."""
    block = gemmi.cif.read(path).sole_block()
    lat = lattice_of(block)
    labels = column(block, "_atom_site_label")
    xyz = [column(block, "_atom_site_fract_" + c, float) for c in "xyz"]
    number = block.find_value("_space_group.IT_number")
    if number is not None:
        ops = [parse_operation(s + ",+1") for s in column(block, "_space_group_symop.operation_xyz")]
        check(len(ops) > 0 and len(labels) > 0, f"{name}: operations and atoms given")
        identity = [(np.eye(3, dtype=int), np.zeros(3), False)]
        positions, numbers, _, _ = structure(lat, ops, identity, xyz, [np.zeros(3)] * len(labels))
        ds = spglib.get_symmetry_dataset((lat, np.array(positions), np.array(numbers)), symprec=1e-4)
        found = ds["number"] if ds else None
        check(found == int(number), f"{name}: spglib finds space group {found}, the file {number}")
        return number
    bns = block.find_value("_space_group_magn.number_BNS")
    ops = [parse_operation(s) for s in column(block, "_space_group_symop_magn_operation.xyz")]
    centring = [parse_operation(s) for s in column(block, "_space_group_symop_magn_centering.xyz")]
    check(bns and ops and centring, f"{name}: the BNS number, operations and centring given")
    moment = [column(block, "_atom_site_moment.crystalaxis_" + c, float) for c in "xyz"]
    check(column(block, "_atom_site_moment.label") == labels and
          len(column(block, "_atom_site_moment.symmform")) == len(labels),
          f"{name}: a moment with its symmform for every atom")
    unit = lat / np.linalg.norm(lat, axis=1)[:, None]
    moments = [np.array([moment[c][a] for c in range(3)]) @ unit for a in range(len(labels))]
    positions, numbers, magmoms, consistent = structure(lat, ops, centring, xyz, moments)
    check(consistent, f"{name}: the operations agree with the moments of the file")
    ds = spglib.get_magnetic_symmetry_dataset(
        (lat, np.array(positions), np.array(numbers), np.array(magmoms)), symprec=1e-4)
    found = spglib.get_magnetic_spacegroup_type(ds["uni_number"])["bns_number"] if ds else None
    check(found == bns, f"{name}: spglib finds BNS {found}, the file states {bns}")
    return bns


def structure(lat, ops, centring, xyz, moments):
    """The atoms (fractional xyz columns, Cartesian moments) carried by the operations and the
    centring, and a general position for the atoms without moment: positions, atom numbers,
    moments, and whether the images of an atom that coincide carry the same moment."""
    lt_inv = np.linalg.inv(lat.T)
    positions, numbers, magmoms = [], [], []
    consistent = True
    generic = np.array([0.1131, 0.2271, 0.3417])
    for a, (x0, m0) in enumerate(zip(list(np.array(xyz).T) + [generic], moments + [None])):
        for r, t, tr in ops:
            for rc, tc, trc in centring:
                x = (r @ (rc @ x0 + tc) + t) % 1.0
                if m0 is None:
                    positions.append(x), numbers.append(999), magmoms.append(np.zeros(3))
                    continue
                rr = r @ rc  # its moment turned by the operation on Cartesian vectors
                m = (-1 if tr != trc else 1) * round(np.linalg.det(rr)) * (lat.T @ rr @ lt_inv @ m0)
                same = [mm for p, n, mm in zip(positions, numbers, magmoms)
                        if n == a + 1 and np.allclose((x - p + 0.5) % 1.0 - 0.5, 0, atol=1e-5)]
                consistent = consistent and all(np.allclose(m, mm, atol=1e-4) for mm in same)
                if not same:
                    positions.append(x), numbers.append(a + 1), magmoms.append(m)
    return positions, numbers, magmoms, consistent


def schema_errors(value, part=None):
    with open(os.path.join(ROOT, "schema", "velmoria.schema.json")) as f:
        schema = json.load(f)
    if part:
        schema = {"$schema": schema["$schema"], "$defs": schema["$defs"], "$ref": "#/$defs/" + part}
    return [e.message[:100] for e in jsonschema.Draft202012Validator(schema).iter_errors(value)]


def check_samples(samples_program):
    with tempfile.TemporaryDirectory() as tmp:
        r = subprocess.run([samples_program, tmp], capture_output=True, text=True, timeout=60)
        check(r.returncode == 0, f"the hand-built files are written: {r.stderr}")
        files = sorted(f for f in os.listdir(tmp) if f.endswith(".mcif"))
        check(len(files) == 3, "three hand-built files")
        found = {f: check_file(os.path.join(tmp, f), f) for f in files}
        check(found.get("mnf2_afm.mcif") == "136.499" and found.get("polar_perovskite.mcif") == "99",
              "MnF2 with moments +c, -c is 136.499; the polar perovskite is P4mm, 99")
        check(b"\"P4_2'/mnm'\"" in read(os.path.join(tmp, "mnf2_afm.mcif")),
              "MnF2's file names the group P4_2'/mnm'")
        # The value of the document's "magnetic" key for hand-built candidates.
        errors = schema_errors(json.loads(read(os.path.join(tmp, "magnetic.json"))), "magnetic")
        check(not errors, f"the magnetic value meets the schema: {errors[:3]}")


def read(path):
    with open(path, "rb") as f:
        return f.read()


def check_run(program, code, expect_bns):
    with tempfile.TemporaryDirectory() as tmp:
        shutil.copy(os.path.join(ROOT, "examples", code + ".vrn"), tmp)
        r = run(program, [code], tmp)
        check(r.returncode == 0, f"{code}: the plain run ends normally")
        plain_result = read(os.path.join(tmp, code + ".vmr"))
        plain_block = read(os.path.join(tmp, code + ".tw"))
        check(not any(f.endswith(".mcif") for f in os.listdir(tmp)),
              f"{code}: no magnetic CIF without --magnetic")
        r = run(program, ["--magnetic", code, "--json"], tmp)
        check(r.returncode == 0, f"{code}: the run with --magnetic ends normally: {r.stderr}")
        result = read(os.path.join(tmp, code + ".vmr"))
        check(result.startswith(plain_result), f"{code}: the result file is kept, then the section")
        check(HEADING.encode() in result[len(plain_result):], f"{code}: the section's heading")
        check(read(os.path.join(tmp, code + ".tw")) == plain_block, f"{code}: block unchanged")
        doc = json.loads(read(os.path.join(tmp, code + ".json")))
        errors = schema_errors(doc)
        check(not errors, f"{code}: the document meets the schema: {errors[:3]}")
        magnetic = doc["magnetic"]
        check(magnetic["computed"], f"{code}: the magnetic groups are computed")
        written = sorted(f for f in os.listdir(tmp) if f.endswith(".mcif"))
        named = [d["mcif"] for ir in magnetic["representations"] for d in ir["directions"]
                 if d["mcif"]]
        check(written and sorted(named) == written, f"{code}: the files named are written")
        numbers = [check_file(os.path.join(tmp, f), f) for f in written]
        check(expect_bns in numbers, f"{code}: a file of BNS {expect_bns}")


def main():
    program, samples_program = sys.argv[1], sys.argv[2]
    check_samples(samples_program)
    check_run(program, "mnf2", "136.499")
    check_run(program, "hematite", "167.103")  # R-3c: moments + - - + along c, below Morin
    with tempfile.TemporaryDirectory() as tmp:
        r = run(program, ["--help"], tmp)
        check("--magnetic" in r.stdout, "--help lists --magnetic")
        r = run(program, ["--group", "136", "--magnetic"], tmp)
        check(r.returncode == 2 and "--magnetic" in r.stderr, "--magnetic refused with a look-up")
    return summary("MagneticCifFiles")


if __name__ == "__main__":
    sys.exit(main())

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
    a, b, c, al, be, ga = (float(block.find_value("_cell_" + k)) for k in (
        "length_a", "length_b", "length_c", "angle_alpha", "angle_beta", "angle_gamma"))
    al, be, ga = np.radians([al, be, ga])
    cx = np.cos(be)
    cy = (np.cos(al) - np.cos(be) * np.cos(ga)) / np.sin(ga)
    return np.array([[a, 0, 0], [b * np.cos(ga), b * np.sin(ga), 0],
                     [c * cx, c * cy, c * np.sqrt(1 - cx * cx - cy * cy)]])


def parse_operation(text):
    """'-y+1/2,x,z,-1' -> (R, t, time reversal), the triplet read by gemmi."""
    triplet, reversal = text.rsplit(",", 1)
    op = gemmi.Op(triplet)
    return (np.array(op.rot) // gemmi.Op.DEN, np.array(op.tran) / gemmi.Op.DEN,
            reversal.strip() == "-1")


def loop_column(block, tag):
    return [gemmi.cif.as_string(v) for v in block.find_values(tag)]


def check_file(path, name):
    """Reads the file with gemmi (an error of gemmi's stops the test) and identifies its
    structure with spglib; returns its BNS number."""
    block = gemmi.cif.read(path).sole_block()
    if block.find_value("_space_group.IT_number") is not None:
        return check_polar_file(block, name)
    bns = block.find_value("_space_group_magn.number_BNS")
    check(bns is not None, f"{name}: the file states a BNS number")
    lat = lattice_of(block)
    ops = [parse_operation(s) for s in loop_column(block, "_space_group_symop_magn_operation.xyz")]
    centring = [parse_operation(s)
                for s in loop_column(block, "_space_group_symop_magn_centering.xyz")]
    check(len(ops) > 0 and len(centring) > 0, f"{name}: operations and centring given")
    labels = loop_column(block, "_atom_site_label")
    xyz = [[float(gemmi.cif.as_number(v)) for v in block.find_values("_atom_site_fract_" + c)]
           for c in "xyz"]
    moment_labels = loop_column(block, "_atom_site_moment.label")
    moment = [[float(gemmi.cif.as_number(v))
               for v in block.find_values("_atom_site_moment.crystalaxis_" + c)] for c in "xyz"]
    symmform = loop_column(block, "_atom_site_moment.symmform")
    check(moment_labels == labels and len(symmform) == len(labels),
          f"{name}: a moment with its symmform for every atom")
    unit = lat / np.linalg.norm(lat, axis=1)[:, None]
    moments = [np.array([moment[c][a] for c in range(3)]) @ unit for a in range(len(labels))]
    positions, numbers, magmoms, consistent = structure(lat, ops, centring, xyz, moments)
    check(consistent, f"{name}: the operations agree with the moments of the file")
    ds = spglib.get_magnetic_symmetry_dataset(
        (lat, np.array(positions), np.array(numbers), np.array(magmoms)), symprec=1e-4)
    check(ds is not None, f"{name}: spglib identifies the structure of the file")
    if ds is None:
        return bns
    found = spglib.get_magnetic_spacegroup_type(ds["uni_number"])["bns_number"]
    check(found == bns, f"{name}: spglib finds BNS {found}, the file states {bns}")
    return bns


def check_polar_file(block, name):
    """A distorted structure: its atoms carried by its operations, and a general position,
    make the space group that the file states."""
    number = int(block.find_value("_space_group.IT_number"))
    lat = lattice_of(block)
    ops = [parse_operation(s + ",+1") for s in loop_column(block, "_space_group_symop.operation_xyz")]
    labels = loop_column(block, "_atom_site_label")
    xyz = [[float(gemmi.cif.as_number(v)) for v in block.find_values("_atom_site_fract_" + c)]
           for c in "xyz"]
    check(len(ops) > 0 and len(labels) > 0, f"{name}: operations and atoms given")
    identity = [(np.eye(3, dtype=int), np.zeros(3), False)]
    positions, numbers, _, _ = structure(lat, ops, identity, xyz, [np.zeros(3)] * len(labels))
    ds = spglib.get_symmetry_dataset((lat, np.array(positions), np.array(numbers)), symprec=1e-4)
    found = ds["number"] if ds else None
    check(found == number, f"{name}: spglib finds space group {found}, the file states {number}")
    return str(number)


def structure(lat, ops, centring, xyz, moments):
    """The atoms (fractional xyz columns, Cartesian moments) carried by the operations and the
    centring, and a general position for the atoms without moment: positions, atom numbers,
    moments, and whether the images of an atom that coincide carry the same moment."""
    lt_inv = np.linalg.inv(lat.T)
    positions, numbers, magmoms = [], [], []
    consistent = True
    for a, m0 in enumerate(moments):
        x0 = np.array([xyz[0][a], xyz[1][a], xyz[2][a]])
        for r, t, tr in ops:
            for rc, tc, trc in centring:
                rr = r @ rc
                x = (rr @ x0 + r @ tc + t) % 1.0
                rot = lat.T @ rr @ lt_inv  # the operation on Cartesian vectors
                m = (-1 if tr != trc else 1) * round(np.linalg.det(rr)) * (rot @ m0)
                known = False
                for p, n, mm in zip(positions, numbers, magmoms):
                    if n == a + 1 and np.allclose((x - p + 0.5) % 1.0 - 0.5, 0, atol=1e-5):
                        known = True
                        consistent = consistent and np.allclose(m, mm, atol=1e-4)
                if not known:
                    positions.append(x)
                    numbers.append(a + 1)
                    magmoms.append(m)
    generic = np.array([0.1131, 0.2271, 0.3417])
    for r, t, _ in ops:
        for rc, tc, _ in centring:
            positions.append((r @ (rc @ generic + tc) + t) % 1.0)
            numbers.append(999)
            magmoms.append(np.zeros(3))
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
        check(len(files) == 5, "five hand-built files")
        found = {f: check_file(os.path.join(tmp, f), f) for f in files}
        check(found.get("mnf2_afm.mcif") == "136.499" and found.get("polar_perovskite.mcif") == "99",
              "MnF2 with moments +c, -c is 136.499; the polar perovskite is P4mm, 99")
        with open(os.path.join(tmp, "mnf2_afm.mcif")) as f:
            check("\"P4_2'/mnm'\"" in f.read(), "MnF2's file names the group P4_2'/mnm'")
        # The value of the document's "magnetic" key for hand-built candidates.
        with open(os.path.join(tmp, "magnetic.json")) as f:
            value = json.load(f)
        errors = schema_errors(value, "magnetic")
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
        with open(os.path.join(tmp, code + ".json")) as f:
            doc = json.load(f)
        errors = schema_errors(doc)
        check(not errors, f"{code}: the document meets the schema: {errors[:3]}")
        magnetic = doc.get("magnetic")
        written = sorted(f for f in os.listdir(tmp) if f.endswith(".mcif"))
        if not magnetic or not magnetic["computed"]:
            check(not written, f"{code}: no magnetic CIF when nothing was computed")
            check(magnetic["unsupported"].encode() in result, f"{code}: the reason is given")
            return
        named = [d["mcif"] for ir in magnetic["representations"] for d in ir["directions"]
                 if d["mcif"]]
        check(written and sorted(named) == written, f"{code}: the files named are written")
        numbers = [check_file(os.path.join(tmp, f), f) for f in written]
        if expect_bns:
            check(expect_bns in numbers, f"{code}: a file of BNS {expect_bns}")


def main():
    program, samples_program = sys.argv[1], sys.argv[2]
    check_samples(samples_program)
    check_run(program, "mnf2", "136.499")
    check_run(program, "hematite", None)
    with tempfile.TemporaryDirectory() as tmp:
        r = run(program, ["--help"], tmp)
        check("--magnetic" in r.stdout, "--help lists --magnetic")
        r = run(program, ["--group", "136", "--magnetic"], tmp)
        check(r.returncode == 2 and "--magnetic" in r.stderr, "--magnetic refused with a look-up")
    return summary("MagneticCifFiles")


if __name__ == "__main__":
    sys.exit(main())

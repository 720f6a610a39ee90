#!/usr/bin/env python3
"""The JSON documents of velmoria: every run of the examples and end-to-end cases, and a set of
--group and --irreps look-ups, against the schema; the result and block files unchanged by
--json, and holding the numbers of the document to the digits they print; a stopped run told
from a finished one; the operators and generators of a group closed as a group; the matrices of
the little-group representations multiplying like the group."""
import glob
import json
import os
import re
import shutil
import sys
import tempfile
from fractions import Fraction

import jsonschema
import numpy as np

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
sys.path.insert(0, os.path.dirname(HERE))
from cli_checks import check, run, summary  # noqa: E402

sys.path.insert(0, os.path.join(os.path.dirname(HERE), "python"))
from checks import operator_key, representations_hold  # noqa: E402

SCHEMA = os.path.join(ROOT, "schema", "velmoria.schema.json")


def validator():
    with open(SCHEMA) as f:
        schema = json.load(f)
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


def schema_errors(v, doc):
    return [f"{list(e.path)}: {e.message[:120]}" for e in v.iter_errors(doc)]


def read(path, mode="r"):
    with open(path, mode) as f:
        return f.read()


# ---------------------------------------------------------------------------------------------
# Operators as exact keys (tests/python/checks.py): rotation rows and translations modulo 1.
IDENTITY = ((1, 0, 0), (0, 1, 0), (0, 0, 1))


def product(a, b):
    (ra, ta), (rb, tb) = a, b
    r = tuple(tuple(sum(ra[i][q] * rb[q][j] for q in range(3)) for j in range(3))
              for i in range(3))
    t = tuple((ta[i] + sum(ra[i][q] * tb[q] for q in range(3))) % 1 for i in range(3))
    return r, t


def check_group(g, where):
    """The operators form a group modulo whole cells; the generators make exactly that group;
    the centring vectors are its pure translations."""
    ops = [operator_key(o) for o in g["operators"]]
    keys = set(ops)
    check(len(ops) == g["multiplicity"] and len(keys) == len(ops),
          f"{where}: {g['multiplicity']} distinct operators")
    check(all(product(a, b) in keys for a in ops for b in ops), f"{where}: operators closed")
    gens = [operator_key(o) for o in g["generators"]]
    made = {(IDENTITY, (0, 0, 0))}
    while (new := {product(a, b) for a in gens for b in made} - made) and len(made) <= 400:
        made |= new
    check(made == keys, f"{where}: the generators ({g['generators_source']}) make the group")
    pure = {t for r, t in ops if r == IDENTITY and any(t)}
    check(pure == {tuple(Fraction(t) % 1 for t in c) for c in g["centring_vectors"]}
          and len(pure) == len(g["centring_vectors"]), f"{where}: the centring vectors")


# ---------------------------------------------------------------------------------------------
# Representations: the checks of tests/python (the phase rule D(a) D(b) = exp(2 pi i k.L) D(c)
# for a b = (1|L) c, unitary matrices, characters the traces and orthonormal) on the document
# read here, its [re, im] pairs made complex arrays.

def complex_array(pairs):
    a = np.asarray(pairs, dtype=float)
    return a[..., 0] + 1j * a[..., 1]


def check_star(doc, where):
    """Every operator listed with an arm carries k onto it: k R differs from the arm by integers;
    the arms share out the operators of the group up to its centring (the first ones listed)."""
    ops = doc["space_group"]["operators"]
    k = doc["k"]["components"]
    ok = True
    numbers = []
    for arm in doc["star"]["arms"]:
        for n in arm["operators"]:
            numbers.append(n)
            rot = ops[n - 1]["rotation"]
            image = [sum(k[i] * rot[i][j] for i in range(3)) for j in range(3)]
            ok &= all(abs(x - y - round(x - y)) < 1e-4 for x, y in zip(image, arm["k"]))
    check(ok, f"{where}: each arm is k carried by its operators")
    primitive = len(ops) // (1 + len(doc["space_group"]["centring_vectors"]))
    check(sorted(numbers) == list(range(1, primitive + 1)),
          f"{where}: the operators up to the centring, each with one arm")


def check_representations(doc, where):
    reps = [dict(r, matrices=complex_array(r["matrices"]),
                 characters=complex_array(r["characters"])) for r in doc["representations"]]
    failures = representations_hold(dict(doc, representations=reps))
    check(not failures, f"{where}: the representations of the little group {failures[:3]}")
    group = {operator_key(o) for o in doc["space_group"]["operators"]}
    check(all(operator_key(o) in group for o in doc["little_group"]["operators"]),
          f"{where}: the little group is part of the space group")
    check_star(doc, where)


# ---------------------------------------------------------------------------------------------
# The result file against the document.  A matrix element is printed with four decimals in each
# part (or as an integer within 1e-5), a component of a basis function with two (f5.2, or i5
# when whole); the imaginary part of a function is not written when the sum of its moduli is
# below 0.002.
MATRIX_TOL = 0.75e-4
BASIS_TOL = 0.005 + 2e-6
NULL_IMAGINARY = 0.002


def parse_matrices(lines, dims):
    """{(g, nu): flat elements} from " -> SYMM_K( g):" and "Matrix of IRrep( nu):", the elements
    as written: 1, -0.5000, 0.6374+0.7705i, -i."""
    out, g = {}, None
    for i, line in enumerate(lines):
        m = re.match(r" -> SYMM_K\(\s*(\d+)\):", line)
        g = int(m.group(1)) if m else g
        m = re.match(r"    Matrix of IRrep\(\s*(\d+)\):", line)
        if m and g is not None:
            nu, tokens, j = int(m.group(1)), [], i + 1
            while (j < len(lines) and len(tokens) < dims[nu - 1] ** 2
                   and lines[j].startswith(" " * 20)):
                tokens += lines[j].split()
                j += 1
            out[(g, nu)] = [complex(t.replace("i", "j")) for t in tokens]
    return out


def parse_terms(text):
    """'1 Irep_k( 1) + 2 Irep_k( 2)' -> {1: 1, 2: 2}; supplied labels such as mZ1( 1) too."""
    return {int(nu): int(n) for n, nu in re.findall(r"(\d+)\s+[^\s(]+\(\s*(\d+)\)", text)}


def triples(text):
    """The atoms' triples of a BsV/Im line: fields of 5 columns, None where overflowed."""
    def number(field):
        try:
            return float(field)
        except ValueError:
            return None
    return [[number(inner[5 * c:5 * c + 5]) for c in range(3)]
            for inner in re.findall(r"\(([^()]*)\)", text)]


def parse_sites(lines):
    """Per site: the multiplicities and, per basis block, (nu, dim, times) and the functions,
    each {atom: [re triple, im triple or None]}."""
    sites, block, last = [], None, None
    for line in lines:
        if m := re.match(r"\s+CALCULATIONS FOR SITE :\s*(\d+)", line):
            sites.append({"number": int(m.group(1)), "vector": None, "permutation": None,
                          "bases": []})
        if not sites:
            continue
        if m := re.match(r" -> GAMMA\((Magnetic|Mechanic|Permutation)\):(.*)", line):
            sites[-1]["permutation" if m.group(1) == "Permutation" else "vector"] = \
                parse_terms(m.group(2))
        if m := re.match(r" => Basis functions of Representation IRrep\(\s*(\d+)\) of dimension"
                         r"\s+(\d+) contained\s+(\d+) times", line):
            block = {"key": tuple(int(x) for x in m.groups()), "functions": {}}
            sites[-1]["bases"].append(block)
        if (m := re.match(r" BsV\(\s*(\d+),\s*(\d+):\s*(\d+)\):Re (.*)", line)) and block:
            f, a1 = block["functions"].setdefault(int(m.group(1)), {}), int(m.group(2))
            for n, triple in enumerate(triples(m.group(4))):
                f[a1 + n] = [triple, None]
            last = (f, a1)
            continue
        if (m := re.match(r" {16}Im (.*)", line)) and last:
            for n, triple in enumerate(triples(m.group(1))):
                last[0][last[1] + n][1] = triple
        last = None
    return sites


def close(printed, value):
    return printed is None or abs(printed - value) <= BASIS_TOL


def compare_site(site, printed, where):
    def nonzero(values):
        return {nu: n for nu, n in enumerate(values, start=1) if n != 0}
    mult = site["multiplicities"]
    check(nonzero(mult["vector"]) == printed["vector"]
          and nonzero(mult["permutation"]) == printed["permutation"],
          f"{where}: multiplicities {printed['vector']}, permutation {printed['permutation']}")
    reps = site["representations"]
    check([(r["number"], r["dimension"], r["occurrences"]) for r in reps]
          == [b["key"] for b in printed["bases"]],
          f"{where}: the contained representations, their dimensions and occurrences")
    atoms = len(site["atoms"])
    for rep, block in zip(reps, printed["bases"]):
        functions = complex_array(rep["basis_functions"])
        here = f"{where}: IRrep({rep['number']})"
        check(sorted(block["functions"]) == list(range(1, len(functions) + 1))
              and functions.shape[1:] == (atoms, 3) and len(rep["fourier_coefficients"]) == atoms,
              f"{here}: {len(functions)} basis functions of a 3-vector and a coefficient an atom")
        ok = True
        for j, atoms_printed in block["functions"].items():
            if j > len(functions) or sorted(atoms_printed) != list(range(1, atoms + 1)):
                ok = False
                continue
            f = functions[j - 1]
            if all(im is None for _, im in atoms_printed.values()):
                ok &= np.abs(f.imag).sum() <= NULL_IMAGINARY
            for a, (re_part, im_part) in atoms_printed.items():
                ok &= all(close(re_part[c], f[a - 1][c].real)
                          and (im_part is None or close(im_part[c], f[a - 1][c].imag))
                          for c in range(3))
        check(ok, f"{here}: components of the basis functions as printed")


def compare_result_file(doc, text, where):
    """The numbers of a run document against its result file; the number of matrices compared."""
    lines = text.split("\n")
    dims = next(([int(x) for x in l.split(":")[1].split()] for l in lines
                 if l.startswith(" => Dimensions of Ir(reps):")), [])
    reps = doc["representations"]
    check(dims and dims == [r["dimension"] for r in reps], f"{where}: dimensions {dims}")
    matrices = parse_matrices(lines, dims) if dims else {}
    ok = True
    for (g, nu), printed in matrices.items():
        m = np.ravel(complex_array(reps[nu - 1]["matrices"][g - 1]))
        ok &= len(m) == len(printed) and np.abs(m - printed).max() <= MATRIX_TOL
    check(ok, f"{where}: {len(matrices)} matrices as printed")
    check(len(matrices) in (0, doc["little_group"]["order"] * len(reps)),
          f"{where}: every matrix printed, or none (short output)")
    sites = parse_sites(lines)
    check(sites and len(sites) == len(doc["sites"]), f"{where}: {len(sites)} sites")
    for s_doc, s_txt in zip(doc["sites"], sites):
        compare_site(s_doc, s_txt, f"{where}: site {s_txt['number']}")
    return len(matrices)


# ---------------------------------------------------------------------------------------------

def check_runs(binary, v, d):
    """Every example and end-to-end case, run with and without --json."""
    matrices = 0
    controls = sorted(glob.glob(os.path.join(ROOT, "examples", "*.vrn")))
    controls += sorted(glob.glob(os.path.join(ROOT, "tests", "e2e", "cases", "*.vrn")))
    for n, control in enumerate(controls):
        code = os.path.splitext(os.path.basename(control))[0]
        plain, with_json = os.path.join(d, f"plain{n}"), os.path.join(d, f"json{n}")
        for folder in (plain, with_json):
            os.makedirs(folder)
            shutil.copy(control, folder)
        r0, r1 = run(binary, [code], plain), run(binary, [code, "--json"], with_json)
        where = os.path.relpath(control, ROOT)
        check(r0.returncode == 0 and r1.returncode == 0 and r0.stdout == r1.stdout,
              f"{where}: status 0, the same console text with --json")
        check(not os.path.exists(os.path.join(plain, code + ".json")),
              f"{where}: no JSON without --json")
        for ext in (".vmr", ".tw"):
            check(read(os.path.join(plain, code + ext), "rb")
                  == read(os.path.join(with_json, code + ext), "rb"),
                  f"{where}: {ext} byte for byte the same with --json")
        doc = json.loads(read(os.path.join(with_json, code + ".json")))
        errors = schema_errors(v, doc)
        check(not errors, f"{where}: schema accepts the run document {errors[:3]}")
        check(doc["document"] == "run" and doc["code"] == code and doc["finished"]
              and doc["stop_message"] is None, f"{where}: a finished run")
        check(all(s["multiplicities"] is not None for s in doc["sites"])
              and any(s["representations"] for s in doc["sites"]),
              f"{where}: every site analysed, with basis functions")
        check_group(doc["space_group"], where)
        check_representations(doc, where)
        matrices += compare_result_file(doc, read(os.path.join(with_json, code + ".vmr")), where)
        for site in doc["sites"]:
            # The carrier of each atom takes atom 1 onto it, up to a lattice vector.
            for a in site["atoms"]:
                o = a["operator"]
                gap = (np.array(o["rotation"]) @ site["atoms"][0]["position"] - a["position"]
                       + [float(Fraction(t)) for t in o["translation"]])
                check(np.allclose(gap, np.round(gap), atol=1e-4),
                      f"{where}: {a['label']}: carrier takes atom 1 onto it")
    check(matrices > 0, "some matrices were compared with the result files")


def run_text(binary, folder, code, text, *args):
    """Writes the control file (text or bytes), runs it with --json after the code (or with the
    arguments given before it); the status and the document."""
    with open(os.path.join(folder, code + ".vrn"), "wb") as f:
        f.write(text if isinstance(text, bytes) else text.encode())
    r = run(binary, [*args, code] if args else [code, "--json"], folder)
    return r, json.loads(read(os.path.join(folder, code + ".json")))


def check_stopped_runs(binary, v, d):
    folder = os.path.join(d, "stopped")
    os.makedirs(folder)
    r, doc = run_text(binary, folder, "badk", "TITLE a k that is no number\nSPGR P n m a\n"
                      "KVEC 0 x 0\nVMODE AXI\nATOM Mn MN 0 0 0\n")
    check(not schema_errors(v, doc) and doc["title"] == "a k that is no number"
          and doc["finished"] is False and "propagation vector" in (doc["stop_message"] or ""),
          "stopped run: schema accepts it, finished false, with the stop message")
    check(doc["k"] is None and doc["little_group"] is None and doc["star"] is None
          and doc["representations"] == [] and doc["sites"] == [],
          "stopped run: the parts not reached are null or empty")
    # A title in Latin-1: its bytes that are no UTF-8 become U+FFFD, the document is written.
    r, doc = run_text(binary, folder, "latin", b"TITLE Fe\xe9 \xff\nSPGR P 21/c\nKVEC 0 0 0\n"
                      b"VMODE AXI\nATOM Fe FE 0.1 0.2 0.3\n")
    check(r.returncode == 0 and doc["finished"] and doc["title"] == "Fe\ufffd \ufffd",
          "a title that is no UTF-8: written with replacement characters")
    # --json before the code.
    r, doc = run_text(binary, folder, "mnf2", read(os.path.join(ROOT, "examples", "mnf2.vrn")),
                      "--json")
    check(r.returncode == 0 and doc["finished"], "--json before the code")
    # A stop at the atoms: the group, k, the little group and its representations are there.
    _, doc = run_text(binary, folder, "late", "TITLE late stop\nSPGR P n m a\nKVEC 0 0 0.5 Z\n"
                      "VMODE AXI\nATOM Mn MN 0 0 2000000\n")
    check(not schema_errors(v, doc) and doc["finished"] is False
          and "coordinate" in doc["stop_message"], "stop at the atoms: finished false, message")
    check(doc["space_group"]["number"] == 62 and doc["k"]["fractions"] == ["0", "0", "1/2"]
          and doc["little_group"]["order"] == 8
          and [r["dimension"] for r in doc["representations"]] == [2, 2] and doc["sites"] == [],
          "stop at the atoms: the parts reached are there, the sites not")
    # A finished run with a warning: no VMODE line.
    _, doc = run_text(binary, folder, "novmode", "TITLE no vmode\nSPGR P 21/c\nKVEC 0 0 0\n"
                      "ATOM Fe FE 0.1 0.2 0.3\n")
    check(doc["finished"] and doc["vectors"] == "polar"
          and any(w.startswith("=> Warning no VMODE") for w in doc["warnings"]),
          "a run without VMODE: finished, polar vectors, the warning kept")
    # No control file at all: a run that stops before it starts.
    run(binary, ["nothing_here", "--json"], folder)
    doc = json.loads(read(os.path.join(folder, "nothing_here.json")))
    check(not schema_errors(v, doc) and doc["finished"] is False and doc["space_group"] is None,
          "missing control file: a stopped run document")


GROUPS = [["14"], ["P 21/c"], ["227:1"], ["I a -3 d"], ["R -3 c"], ["P 63/m m c"],
          ["--hall", "-P 2ybc"], ["--hall", "-F 4vw 2vw 3"], ["--hall", "P 2"],
          ["--gen", "-x,-y,z+1/2; -x,-y,-z"], ["--gen", "x+1/2,y+1/2,z; -x,y,-z; -x,-y,-z"]]

IRREPS = [["230", "1", "1", "1", "H"], ["221", "1/2", "1/2", "1/2", "R"],
          ["P 63/m m c", "1/3", "1/3", "0", "K"], ["62", "0", "0", "1/2", "Z"],
          ["14", "0.123", "0", "0.31"], ["R -3 m", "0", "0", "3/2", "T"],
          ["C 1 2/m 1", "0", "1", "0", "Y"], ["I 41/a m d", "0", "0", "1", "X"],
          ["P 42", "1/2", "0", "0", "X"], ["--gen", "-x,-y,z+1/2; -x,-y,-z", "0", "0", "1/2", "Z"]]


def check_lookups(binary, v, d):
    docs = {}
    for kind, args in [("--group", a) for a in GROUPS] + [("--irreps", a) for a in IRREPS]:
        where = kind + " " + " ".join(args)
        r = run(binary, [kind] + args + ["--json"], d)
        check(r.returncode == 0 and r.stderr == "", f"{where}: status 0")
        doc = docs[where] = json.loads(r.stdout)
        errors = schema_errors(v, doc)
        check(not errors, f"{where}: schema accepts the document {errors[:3]}")
        check_group(doc["space_group"], where)
        if kind == "--irreps":
            check_representations(doc, where)
    g = docs["--group P 21/c"]["space_group"]
    check(g["number"] == 14 and g["generators_source"] == "built_from"
          and [o["text"] for o in g["generators"]] == ["-x,y+1/2,-z+1/2", "-x,-y,-z"]
          and g["centrosymmetric"] and g["centre"] is None and g["lattice"] == "P",
          "--group P 21/c: the generators of the tables, centric at the origin, primitive")
    g = docs["--group 227:1"]["space_group"]
    check(g["centre"] == ["1/8", "1/8", "1/8"] and len(g["centring_vectors"]) == 3,
          "--group 227:1: centre off the origin at 1/8, F centring")
    doc = docs["--irreps 14 0.123 0 0.31"]
    check(doc["k"]["fractions"] == [None, "0", None] and doc["k"]["label"] == "",
          "--irreps at a general k: no fraction for 0.123 and 0.31")
    doc = docs["--irreps P 63/m m c 1/3 1/3 0 K"]
    check(len(doc["star"]["arms"]) == 2 and not doc["star"]["k_equivalent_to_minus_k"],
          "--irreps 194 K: two arms, K not equivalent to -K")

    # Errors as without --json: the message on stderr, status 1, nothing on stdout.
    for args in (["--group", "X 99 q", "--json"], ["--irreps", "62", "a", "0", "0", "--json"],
                 ["--irreps", "62", "0", "0", "0", "--block", "--json"]):
        r = run(binary, args, d)
        check(r.returncode == 1 and r.stdout == "" and r.stderr != "",
              " ".join(args) + ": status 1 with a message")
    # --json may stand anywhere.
    r = run(binary, ["--json", "--group", "P 21/c"], d)
    check(r.returncode == 0 and json.loads(r.stdout)["space_group"]["number"] == 14,
          "--json before --group")
    r = run(binary, ["--irreps", "--json", "62", "0", "0", "1/2"], d)
    check(r.returncode == 0 and json.loads(r.stdout)["document"] == "irreps",
          "--json among the arguments of --irreps")
    r = run(binary, ["--help"], d)
    check("--json" in r.stdout, "--help tells of --json")


def main():
    binary = os.path.abspath(sys.argv[1])
    v = validator()
    with tempfile.TemporaryDirectory() as d:
        check_runs(binary, v, d)
        check_stopped_runs(binary, v, d)
        check_lookups(binary, v, d)
    return summary("test_json_documents")


if __name__ == "__main__":
    sys.exit(main())

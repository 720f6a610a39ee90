#!/usr/bin/env python3
"""The JSON document of a run and its result file hold the same numbers: the dimensions of the
representations, every matrix listed, the multiplicities of every site's magnetic (or
mechanical) and permutation representations, and every basis function, each to the digits the
result file prints.  Checked on the expected result files of the end-to-end cases, and on the
result files that the examples write beside their JSON."""
import glob
import json
import os
import re
import shutil
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
sys.path.insert(0, os.path.dirname(HERE))
from cli_checks import check, run, summary  # noqa: E402

# A matrix element is printed with four decimals (or as an integer within 1e-5); a component of
# a basis function with two decimals (f5.2, or i5 when the whole part is integer).
MATRIX_TOL = 0.5e-4 + 2e-6
BASIS_TOL = 0.005 + 2e-6
NULL_IMAGINARY = 0.002  # the sum of moduli below which a part is not written


# ---------------------------------------------------------------------------------------------
# The result file, read as far as this test needs it.

def parse_element(token):
    """An element as the listing writes it: 1, -0.5000, 0.6374+0.7705i, -i, 2-3i."""
    if not token.endswith("i"):
        return complex(float(token), 0.0)
    body = token[:-1]
    split = max(body.rfind("+"), body.rfind("-"))
    re_text, im_text = (body[:split], body[split:]) if split > 0 else ("", body)
    im = {"": 1.0, "+": 1.0, "-": -1.0}.get(im_text)
    return complex(float(re_text) if re_text else 0.0,
                   im if im is not None else float(im_text))


def parse_matrices(lines, dims):
    """{(g, nu): flat list of elements} from the listing " -> SYMM_K( g):" / "Matrix of IRrep"."""
    out = {}
    g = None
    i = 0
    while i < len(lines):
        line = lines[i]
        m = re.match(r" -> SYMM_K\(\s*(\d+)\):", line)
        if m:
            g = int(m.group(1))
        m = re.match(r"    Matrix of IRrep\(\s*(\d+)\):", line)
        if m and g is not None:
            nu = int(m.group(1))
            want = dims[nu - 1] ** 2
            tokens = []
            while len(tokens) < want and i + 1 < len(lines) and lines[i + 1].startswith(" " * 20):
                i += 1
                tokens += lines[i].split()
            out[(g, nu)] = [parse_element(t) for t in tokens]
        i += 1
    return out


def parse_terms(text):
    """'1 Irep_k( 1) + 2 Irep_k( 2)' -> {1: 1, 2: 2}; supplied labels such as mZ1( 1) too."""
    return {int(nu): int(n) for n, nu in re.findall(r"(\d+)\s+[^\s(]+\(\s*(\d+)\)", text)}


def parse_fields(groups):
    """The atoms' triples of one BsV/Im line: fields of 5 columns, None where overflowed."""
    atoms = []
    for inner in groups:
        values = []
        for c in range(3):
            field = inner[5 * c:5 * c + 5]
            try:
                values.append(float(field))
            except ValueError:
                values.append(None)
        atoms.append(values)
    return atoms


def parse_sites(lines):
    """Per site: the multiplicities and, per basis block, (nu, dim, times, functions) where a
    function is {atom: (re triple, im triple or None)}."""
    sites = []
    block = None
    last = None
    for line in lines:
        m = re.match(r"\s+CALCULATIONS FOR SITE :\s*(\d+)", line)
        if m:
            sites.append({"number": int(m.group(1)), "vector": None, "permutation": None,
                          "bases": []})
            continue
        if not sites:
            continue
        site = sites[-1]
        m = re.match(r" -> GAMMA\((Magnetic|Mechanic)\):(.*)", line)
        if m:
            site["vector"] = parse_terms(m.group(2))
        m = re.match(r" -> GAMMA\(Permutation\):(.*)", line)
        if m:
            site["permutation"] = parse_terms(m.group(1))
        m = re.match(r" => Basis functions of Representation IRrep\(\s*(\d+)\) of dimension\s+(\d+)"
                     r" contained\s+(\d+) times", line)
        if m:
            block = {"nu": int(m.group(1)), "dim": int(m.group(2)), "times": int(m.group(3)),
                     "functions": {}}
            site["bases"].append(block)
        m = re.match(r" BsV\(\s*(\d+),\s*(\d+):\s*(\d+)\):Re (.*)", line)
        if m and block is not None:
            j, a1 = int(m.group(1)), int(m.group(2))
            f = block["functions"].setdefault(j, {})
            for n, triple in enumerate(parse_fields(re.findall(r"\(([^()]*)\)", m.group(4)))):
                f[a1 + n] = [triple, None]
            last = (f, a1)
            continue
        m = re.match(r" {16}Im (.*)", line)
        if m and last is not None:
            f, a1 = last
            for n, triple in enumerate(parse_fields(re.findall(r"\(([^()]*)\)", m.group(1)))):
                f[a1 + n][1] = triple
        last = None
    return sites


# ---------------------------------------------------------------------------------------------

def nonzero(values):
    return {nu: n for nu, n in enumerate(values, start=1) if n != 0}


def close(printed, value, tol):
    return printed is None or abs(printed - value) <= tol


def compare_matrices(doc, matrices, where):
    reps = doc["representations"]
    ok = True
    for (g, nu), printed in matrices.items():
        m = reps[nu - 1]["matrices"][g - 1]
        flat = [complex(*z) for row in m for z in row]
        ok &= len(flat) == len(printed) and all(
            abs(p.real - z.real) <= MATRIX_TOL and abs(p.imag - z.imag) <= MATRIX_TOL
            for p, z in zip(printed, flat))
    check(ok, f"{where}: {len(matrices)} matrices as printed")
    n = doc["little_group"]["order"] * len(reps)
    check(len(matrices) in (0, n), f"{where}: every matrix printed, or none (short output)")
    return len(matrices)


def compare_site(site_doc, site_txt, where):
    mult = site_doc["multiplicities"]
    check(nonzero(mult["vector"]) == site_txt["vector"],
          f"{where}: magnetic/mechanical multiplicities {site_txt['vector']}")
    check(nonzero(mult["permutation"]) == site_txt["permutation"],
          f"{where}: permutation multiplicities {site_txt['permutation']}")
    reps = site_doc["representations"]
    check([(r["number"], r["dimension"], r["occurrences"]) for r in reps]
          == [(b["nu"], b["dim"], b["times"]) for b in site_txt["bases"]],
          f"{where}: the contained representations, their dimensions and occurrences")
    atoms = len(site_doc["atoms"])
    for rep, block in zip(reps, site_txt["bases"]):
        functions = rep["basis_functions"]
        here = f"{where}: IRrep({rep['number']})"
        check(sorted(block["functions"]) == list(range(1, len(functions) + 1)),
              f"{here}: {len(functions)} basis functions")
        ok = True
        for j, printed in block["functions"].items():
            if j > len(functions):
                continue
            ok &= sorted(printed) == list(range(1, atoms + 1))
            f = functions[j - 1]
            imaginary = sum(abs(z[1]) for atom in f for z in atom)
            if all(im is None for _, im in printed.values()):
                ok &= imaginary <= NULL_IMAGINARY
            for a, (re_part, im_part) in printed.items():
                for c in range(3):
                    ok &= close(re_part[c], f[a - 1][c][0], BASIS_TOL)
                    if im_part is not None:
                        ok &= close(im_part[c], f[a - 1][c][1], BASIS_TOL)
        check(ok, f"{here}: components of the basis functions as printed")


def compare(doc, text, where):
    lines = text.split("\n")
    dims_line = [l for l in lines if l.startswith(" => Dimensions of Ir(reps):")]
    dims = [int(x) for x in dims_line[0].split(":")[1].split()] if dims_line else []
    check(dims and dims == [r["dimension"] for r in doc["representations"]],
          f"{where}: dimensions {dims}")
    listed = compare_matrices(doc, parse_matrices(lines, dims), where) if dims else 0
    sites = parse_sites(lines)
    check(len(sites) == len(doc["sites"]) and sites, f"{where}: {len(sites)} sites")
    for s_doc, s_txt in zip(doc["sites"], sites):
        compare_site(s_doc, s_txt, f"{where}: site {s_txt['number']}")
    return listed


def main():
    binary = os.path.abspath(sys.argv[1])
    cases = sorted(glob.glob(os.path.join(ROOT, "tests", "e2e", "cases", "*.vrn")))
    examples = sorted(glob.glob(os.path.join(ROOT, "examples", "*.vrn")))
    listed = 0
    with tempfile.TemporaryDirectory() as d:
        for n, control in enumerate(cases + examples):
            code = os.path.splitext(os.path.basename(control))[0]
            folder = os.path.join(d, str(n))
            os.makedirs(folder)
            shutil.copy(control, folder)
            r = run(binary, [code, "--json"], folder)
            where = os.path.relpath(control, ROOT)
            check(r.returncode == 0, f"{where}: status 0")
            with open(os.path.join(folder, code + ".json")) as f:
                doc = json.load(f)
            expected = os.path.splitext(control)[0] + ".vmr"
            result = expected if control in cases else os.path.join(folder, code + ".vmr")
            with open(result) as f:
                listed += compare(doc, f.read(), where)
    check(listed > 0, "some matrices were compared")
    return summary("test_json_result_file")


if __name__ == "__main__":
    sys.exit(main())

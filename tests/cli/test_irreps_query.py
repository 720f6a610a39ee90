#!/usr/bin/env python3
"""The query velmoria --irreps: the little group of k and its irreducible representations."""
import os
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from cli_checks import check, run, summary  # noqa: E402


def dimensions(stdout):
    for line in stdout.split("\n"):
        if line.startswith(" The dimensions are, respectively: "):
            return [int(x) for x in line.split(":")[1].split()]
    return None


def count(stdout, head):
    return sum(1 for line in stdout.split("\n") if line.startswith(head))


def main():
    binary = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as d:
        # I a -3 d at H = (1,1,1): 48 operators, dimensions 2, 2, 2, 6 (4+4+4+36 = 48).
        r = run(binary, ["--irreps", "230", "1", "1", "1", "H"], d)
        check(r.returncode == 0, "--irreps 230: status 0")
        check(dimensions(r.stdout) == [2, 2, 2, 6], "--irreps 230 at H: dimensions 2 2 2 6")
        check(count(r.stdout, "  Operator of Gk Number(") == 48, "--irreps 230: 48 operators")
        check(count(r.stdout, "  IRREP Number(") == 4 * 48, "--irreps 230: every matrix listed")
        check(" REPRESENTATIVE ELEMENTS OF THE LITTLE GROUP OF BRILLOUIN ZONE POINT  H"
              in r.stdout.split("\n"), "--irreps 230: label written in two characters")
        check(any(l.startswith("  TRANSLATIONAL COSET REPRESENTATIVES OF SPACE GROUP: 230")
                  for l in r.stdout.split("\n")), "--irreps 230: coset list")

        # P m -3 m at R, with the components as fractions: the full group, ten representations.
        r = run(binary, ["--irreps", "221", "1/2", "0.5", "1/2", "R"], d)
        check(r.returncode == 0, "--irreps 221 R: status 0")
        check(" There are 10 little-group representations for this k-vector." in r.stdout,
              "--irreps 221 R: ten representations")
        check(sum(x * x for x in dimensions(r.stdout) or []) == 48, "--irreps 221 R: squares 48")

        # k rounded to fractions as KVEC rounds it; the label may be left out.
        r = run(binary, ["--irreps", "P 63/m m c", "0.3333", "0.3333", "0"], d)
        check(r.returncode == 0, "--irreps P 63/m m c: status 0")
        check("     0.33333     0.33333     0.00000" in r.stdout, "--irreps: k rounded to 1/3")
        check(sum(x * x for x in dimensions(r.stdout) or []) == 12, "--irreps 194 K: order 12")

        # A group from generators.
        r = run(binary, ["--irreps", "--gen", "-x,-y,z+1/2; -x,-y,-z", "0", "0", "1/2", "Z"], d)
        check(r.returncode == 0 and dimensions(r.stdout) == [2], "--irreps --gen: one of dim 2")

        # --block: the lines behind the listing, pasted into a control file for P n m a.
        r = run(binary, ["--irreps", "62", "0", "0", "1/2", "Z", "--block"], d)
        block = r.stdout[r.stdout.find("\nSPGR "):]
        check(r.returncode == 0 and block.startswith("\nSPGR -P 2ac 2n\n"), "--block: SPGR")
        check("\nLITTLE_GROUP   8   2  -2  -2\n" in block, "--block: head of two complex reps")
        with open(os.path.join(d, "pnma.vrn"), "w") as f:
            f.write(block + "VMODE AXI\nATOM Mn Mn 0.1 0.25 0.3\n")
        r = run(binary, ["pnma"], d)
        check(" => Normal End ... Results in file: pnma.vmr" in r.stdout, "--block run: Normal End")

        # Failures: unknown group, bad component, too few arguments.
        r = run(binary, ["--irreps", "231", "0", "0", "0"], d)
        check(r.returncode == 1 and r.stderr.strip() != "" and r.stdout == "", "--irreps 231")
        r = run(binary, ["--irreps", "221", "0", "x", "0"], d)
        check(r.returncode == 1 and "not a number" in r.stderr, "--irreps with a bad component")
        for k in ("2147483648", "-1e7", "1/1e-30"):
            r = run(binary, ["--irreps", "227", k, "0", "0"], d)
            check(r.returncode == 1 and "beyond +/-1000000" in r.stderr, "--irreps with k " + k)
        r = run(binary, ["--irreps", "221", "0", "1/0", "0"], d)
        check(r.returncode == 1, "--irreps with a zero denominator")
        r = run(binary, ["--irreps", "221", "0"], d)
        check(r.returncode == 1 and "usage" in r.stderr, "--irreps with too few arguments")
        r = run(binary, ["--help"], d)
        check("--irreps TEXT kx ky kz [label] [--block]" in r.stdout, "--help mentions --block")
    return summary("irreps query")


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""The program as a user meets it: file codes, the prompt, output files, options, exit status,
and the query --irreps (the little group of k and its irreducible representations)."""
import os
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from cli_checks import check, run, summary  # noqa: E402

BANNER = [
    "  ",
    "  ",
    "",
    "   +++++++++++++++++++++++++++++++++++++++++++++++++++",
    "   +++ PROGRAM:Velmoria (Version 5.00, July 2016)  +++",
    "   +++++++++++++++++++++++++++++++++++++++++++++++++++",
    "",
    "  ",
]
BLOCK = [
    "   -------------------------------",
    "   Output of Velmoria for Tarnweld",
    "   -------------------------------",
    "   The group of lines starting with the symbol of space groups and ",
    "   finishing with the last keyword BASI, may be pasted into the RCF file",
    "  ",
]
NO_GROUP = " => No information on space group is given, please provide SPGR/GEN before KVEC !"
NO_KVEC = " => Calculation of IRreps omitted ... no KVEC keyword given! "


def dimensions(stdout):
    for line in stdout.split("\n"):
        if line.startswith(" The dimensions are, respectively: "):
            return [int(x) for x in line.split(":")[1].split()]
    return None


def count(stdout, head):
    return sum(1 for line in stdout.split("\n") if line.startswith(head))


def lines(path):
    with open(path) as f:
        return f.read().split("\n")[:-1]


def main():
    binary = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as d:
        # A code whose control file does not exist.
        r = run(binary, ["nosuchfile"], d)
        out = r.stdout.split("\n")
        check(r.returncode == 0, "nosuchfile: exit status 0")
        check(out[:8] == BANNER, "nosuchfile: banner")
        check(out[8] == "  => Error opening the input file of code: nosuchfile", "nosuchfile: console message")
        check(lines(os.path.join(d, "nosuchfile.vmr"))[-1] == NO_GROUP, "nosuchfile: result file ends")
        check(lines(os.path.join(d, "nosuchfile.tw")) == BLOCK, "nosuchfile: block file")

        # TITLE and SPGR without KVEC, through the prompt, with a comment behind the code.
        with open(os.path.join(d, "cobalt.vrn"), "w") as f:
            f.write("TITLE  cobalt\nSPGR  P 21/c\n")
        with open(os.path.join(d, "cobalt.smb"), "w") as f:
            f.write("TITLE  not this one\n")
        r = run(binary, [], d, stdin="cobalt ! the .vrn file wins over .smb\n")
        check(r.returncode == 0, "prompt: exit status 0")
        check(" => Code of the Input file (XX for XX.opr or XX.smb): " in r.stdout, "prompt: asked")
        check(r.stdout.rstrip("\n").split("\n")[-1] == NO_KVEC, "prompt: no KVEC on the console")
        result = lines(os.path.join(d, "cobalt.vmr"))
        check(" => Title:cobalt" in result and result[-1] == NO_KVEC, "prompt: .vrn read, stop written")

        # A full name with an extension; outputs named from the part before the dot, replaced.
        with open(os.path.join(d, "mnf2.data.txt"), "w") as f:
            f.write("SPGR  P 42/m n m\nKVEC 0 0 0 GM\n")
        with open(os.path.join(d, "mnf2.vmr"), "w") as f:
            f.write("old results\n")
        r = run(binary, ["mnf2.data.txt"], d)
        check(r.returncode == 0, "full name: exit status 0")
        check(r.stdout.rstrip("\n").split("\n")[-1] == " => Normal End ... Results in file: mnf2.vmr",
              "full name: normal end")
        check("old results" not in lines(os.path.join(d, "mnf2.vmr")), "full name: result replaced")

        # Output files written whole or not at all: a file that cannot be written is named on
        # the console, the status is not 0, and the earlier file of that name stays as it was.
        os.mkdir(os.path.join(d, "mnf2.vmr.part"))
        with open(os.path.join(d, "mnf2.vmr"), "w") as f:
            f.write("old results\n")
        r = run(binary, ["mnf2.data.txt"], d)
        check(r.returncode != 0, "unwritable result: status not 0")
        check(" => Error! The output file mnf2.vmr cannot be created (Is a directory)" in r.stdout
              and "Normal End" not in r.stdout, "unwritable result: named on the console")
        check(lines(os.path.join(d, "mnf2.vmr")) == ["old results"], "unwritable result: old file kept")
        os.mkdir(os.path.join(d, "folder.vmr"))
        with open(os.path.join(d, "folder.vrn"), "w") as f:
            f.write("SPGR  P 1\nKVEC 0 0 0 GM\n")
        r = run(binary, ["folder"], d)
        check(r.returncode != 0 and "The output file folder.vmr cannot replace" in r.stdout
              and not os.path.exists(os.path.join(d, "folder.vmr.part")),
              "a folder of the result's name: named, nothing left behind")

        # Options.
        r = run(binary, ["--help"], d)
        check(r.returncode == 0 and "--group" in r.stdout and "Usage" in r.stdout
              and "--irreps TEXT kx ky kz [label] [--block]" in r.stdout, "--help")
        r = run(binary, ["--version"], d)
        check(r.returncode == 0 and "Velmoria" in r.stdout, "--version")
        r = run(binary, ["-q"], d)
        check(r.returncode == 2 and "Usage" in r.stderr and "-q" in r.stderr, "unknown option")

        # Group queries.
        r = run(binary, ["--group", "227"], d)
        check(r.returncode == 0 and " =>    General multiplicity: 192" in r.stdout.split("\n"),
              "--group 227")
        r = run(binary, ["--group", "231"], d)
        check(r.returncode == 1 and "Number of Space Group out of limits" in r.stderr, "--group 231")
        r = run(binary, ["--group", "--gen", "-x+1/2,-y,z+1/2; -x,y+1/2,-z+1/2"], d)
        ops = [l.split(":")[1].split()[0] for l in r.stdout.split("\n") if l.startswith(" => SYMM(")]
        check(ops == ["x,y,z", "-x+1/2,-y,z+1/2", "-x,y+1/2,-z+1/2", "x+1/2,-y+1/2,-z"],
              "--group --gen: the four operators in closure order")
        r = run(binary, ["--group", "--gen", "x,y"], d)
        check(r.returncode == 1 and r.stderr.strip() != "", "--group --gen with a bad operator")

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
    return summary("command line")


if __name__ == "__main__":
    sys.exit(main())

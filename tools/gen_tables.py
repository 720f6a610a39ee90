#!/usr/bin/env python3
"""Writes the constant space-group tables of src/symmetry/ from the reference text.

Usage: gen_tables.py REFERENCE_TEXT [REPO_ROOT]

The reference text holds, in plain lines, the tabulated settings with their Hall
symbols, the generator rows, the rotation matrices, the operator symbols and the keys
and sample rows of the special positions.  The special positions of the other settings
come from tools/wyckoff_orbits.txt (one line per setting: KEY | orbit; orbit; ...), and
asymmetric units beyond the sample rows from tools/asym_units.txt (KEY | six numbers) when
that file exists; the other settings get the whole cell.  Run clang-format -i on the
written files afterwards.
"""
import re
import sys
from pathlib import Path

ref = Path(sys.argv[1]).read_text().splitlines()
root = Path(sys.argv[2]) if len(sys.argv) > 2 else Path(__file__).resolve().parent.parent
out_dir = root / "src" / "symmetry"


def cpp_str(s, width):
    assert len(s) <= width, (s, width)
    s = s.ljust(width)
    return '"' + s.replace("\\", "\\\\").replace('"', '\\"') + '"'


def find_line(prefix, start=0):
    for i in range(start, len(ref)):
        if ref[i].startswith(prefix):
            return i
    raise SystemExit("not found: " + prefix)


# ---------------------------------------------------------------- settings
first = find_line("- 1: P 1 = P 1")
settings = []
i = first
while i < len(ref) and ref[i].startswith("- "):
    m = re.match(r"- (\d+): (.*)$", ref[i])
    n = int(m.group(1))
    for part in m.group(2).split("; "):
        hm, hall = part.split(" = ")
        tag = ""
        t = re.match(r"(.*) \[([^\]]*)\]$", hall)
        if t:
            hall, tag = t.group(1), t.group(2)
        settings.append((n, hm.strip(), hall.strip(), tag))
    i += 1
assert len(settings) == 612, len(settings)

LAUE = ["-1", "2/m", "mmm", "4/m", "4/mmm", "-3 R", "-3m R", "-3", "-3m1", "-31m", "6/m",
        "6/mmm", "m-3", "m-3m", "m3", "m3m"]
PG = ["1", "-1", "2", "m", "2/m", "222", "mm2", "m2m", "2mm", "mmm", "4", "-4", "4/m", "422",
      "4mm", "-42m", "-4m2", "4/mmm", "3", "-3", "32", "3m", "-3m", "312", "31m", "-31m", "6",
      "-6", "6/m", "622", "6mm", "-62m", "-6m2", "6/mmm", "23", "m-3", "432", "-43m", "m-3m",
      "m3", "m3m", "-3m1"]


def laue_of(n, tag):
    if n <= 2: name = "-1"
    elif n <= 15: name = "2/m"
    elif n <= 74: name = "mmm"
    elif n <= 88: name = "4/m"
    elif n <= 142: name = "4/mmm"
    elif n <= 148: name = "-3 R" if (n in (146, 148) and tag == "R") else "-3"
    elif n <= 167:
        if n in (149, 151, 153, 157, 159, 162, 163): name = "-31m"
        else: name = "-3m R" if (n in (155, 160, 161, 166, 167) and tag == "R") else "-3m1"
    elif n <= 176: name = "6/m"
    elif n <= 194: name = "6/mmm"
    elif n <= 206: name = "m-3"
    else: name = "m-3m"
    return LAUE.index(name) + 1


PG_RANGES = [(1, 1, "1"), (2, 2, "-1"), (3, 5, "2"), (6, 9, "m"), (10, 15, "2/m"),
             (16, 24, "222"), (47, 74, "mmm"), (75, 80, "4"), (81, 82, "-4"), (83, 88, "4/m"),
             (89, 98, "422"), (99, 110, "4mm"), (111, 114, "-42m"), (121, 122, "-42m"),
             (115, 120, "-4m2"), (123, 142, "4/mmm"), (143, 146, "3"), (147, 148, "-3"),
             (149, 149, "312"), (151, 151, "312"), (153, 153, "312"), (150, 150, "32"),
             (152, 152, "32"), (154, 155, "32"), (156, 156, "3m"), (158, 158, "3m"),
             (160, 161, "3m"), (157, 157, "31m"), (159, 159, "31m"), (162, 163, "-31m"),
             (164, 167, "-3m"), (168, 173, "6"), (174, 174, "-6"), (175, 176, "6/m"),
             (177, 182, "622"), (183, 186, "6mm"), (187, 188, "-6m2"), (189, 190, "-62m"),
             (191, 194, "6/mmm"), (195, 199, "23"), (200, 206, "m-3"), (207, 214, "432"),
             (215, 220, "-43m"), (221, 230, "m-3m")]


def pg_of(n, hm):
    if 25 <= n <= 46:
        parts = hm.split(":")[0].split()[1:]
        pos = [k for k, p in enumerate(parts) if p in ("2", "21")]
        assert len(pos) == 1 and len(parts) == 3, hm
        return PG.index(["2mm", "m2m", "mm2"][pos[0]]) + 1
    for lo, hi, name in PG_RANGES:
        if lo <= n <= hi:
            return PG.index(name) + 1
    raise SystemExit("no point group for %d" % n)


# Asymmetric units: the sample rows, then the file of further units, else the full cell.
asu_sample = {}
s = find_line("| n | hm | hall | laue | pg | asu | inf_extra |")
for line in ref[s + 2:]:
    if not line.startswith("|"):
        break
    cells = [c.strip() for c in line.strip().strip("|").split("|")]
    asu_sample[(cells[1], cells[6])] = [int(v) for v in cells[5].split()]
    # the sample columns agree with the rules above
    n = int(cells[0])
    row = [r for r in settings if r[0] == n and r[1] == cells[1] and r[3] == cells[6]]
    assert row, line
    assert laue_of(n, cells[6]) == int(cells[3]) and pg_of(n, cells[1]) == int(cells[4]), line
asu_file = {}
asu_path = root / "tools" / "asym_units.txt"
if asu_path.exists():
    for line in asu_path.read_text().splitlines():
        if line.strip() and not line.startswith("#"):
            key, vals = line.split("|")
            asu_file[key.strip()] = [int(v) for v in vals.split()]

rows = []
for n, hm, hall, tag in settings:
    asu = asu_sample.get((hm, tag)) or asu_file.get(hm) or [0, 0, 0, 24, 24, 24]
    rows.append("    {%d, %s, %s, %d, %d, {%s}, %s}," % (
        n, cpp_str(hm, 12), cpp_str(hall, 16), laue_of(n, tag), pg_of(n, hm),
        ", ".join(str(v) for v in asu), cpp_str(tag, 5)))

HEADER = "// Generated by tools/gen_tables.py from the reference text; edit the generator, not this file.\n"
(out_dir / "tables_settings.cpp").write_text(
    HEADER + "// The tabulated settings: number, Hermann-Mauguin symbol, Hall symbol, Laue class,\n"
    "// point group, asymmetric unit in 1/24 and setting tag, sorted by number.\n"
    '#include "symmetry/tables.hpp"\n\nnamespace velmoria {\nnamespace {\n\n// clang-format off\n'
    "constexpr std::array<Spgr_Info_Type, num_spgr_info> spgr_info_table{{\n" + "\n".join(rows) +
    "\n}};\n// clang-format on\n\n}  // namespace\n\n"
    "const std::array<Spgr_Info_Type, num_spgr_info>& spgr_info() { return spgr_info_table; }\n\n"
    "}  // namespace velmoria\n")

# ---------------------------------------------------------------- generators
g0 = find_line("1 P 1: x,y,z")
gen_rows = []
for k in range(230):
    m = re.match(r"(\d+) ([^:]+): (.*)$", ref[g0 + k])
    assert int(m.group(1)) == k + 1
    sym, gens = m.group(2).strip(), m.group(3).strip()
    text = sym.ljust(10) + ": " + gens
    pieces = gens.split("; ")
    # Rows too long for their 120 columns drop the blanks behind the last separators.
    j = len(pieces) - 1
    while len(text) > 120 and j > 0:
        pieces[j - 1] = pieces[j - 1] + ";" + pieces[j]
        del pieces[j]
        j -= 1
        text = sym.ljust(10) + ": " + "; ".join(pieces)
    assert len(text) <= 120, text
    gen_rows.append("    " + cpp_str(text, 120) + ",  // %d" % (k + 1))
(out_dir / "tables_generators.cpp").write_text(
    HEADER + "// The generators of the 230 space groups in their standard settings.  Columns 1-10\n"
    "// hold the symbol, column 11 \":\", from column 13 the generators separated by \";\".\n"
    "// The order of the generators fixes the order in which a group's operators are made.\n"
    '#include "symmetry/tables.hpp"\n\nnamespace velmoria {\nnamespace {\n\n// clang-format off\n'
    "constexpr std::array<std::string_view, num_spg_gen> spg_gen_table{\n" + "\n".join(gen_rows) +
    "\n};\n// clang-format on\n\n}  // namespace\n\n"
    "const std::array<std::string_view, num_spg_gen>& spg_gen() { return spg_gen_table; }\n\n"
    "}  // namespace velmoria\n")

# ---------------------------------------------------------------- special positions
wk = find_line("P 1, P -1, P 2, P 21,")
keys = [k.strip() for k in ref[wk].split(", ")]
assert len(keys) == 273, len(keys)
orbits = {}
sl = ref[find_line("Sample rows, as `hm`, `norbit` and `orbit`:")]
sl = sl.split(":", 1)[1].strip()
for m in re.finditer(r"([A-Z][A-Z0-9 /:-]*?), (\d+)(?:, none\.|: (.*?)\.(?= [A-Z]|$))", sl):
    key, cnt, lst = m.group(1).strip(), int(m.group(2)), m.group(3)
    orb = [] if lst is None else [o.strip() for o in lst.split("; ")]
    assert len(orb) == cnt, (key, cnt, orb)
    orbits[key] = orb
sample_keys = set(orbits)
wpath = root / "tools" / "wyckoff_orbits.txt"
if wpath.exists():
    for line in wpath.read_text().splitlines():
        if line.strip() and not line.startswith("#"):
            key, lst = line.split("|")
            key = key.strip()
            assert key in keys, key
            assert key not in sample_keys, key
            orbits[key] = [o.strip() for o in lst.split(";") if o.strip()]
wrows = []
for key in keys:
    orb = orbits.get(key, [])
    assert len(orb) <= 26
    cells = [cpp_str(o, 15) for o in orb] + ["b15"] * (26 - len(orb))
    body = ""
    for c0 in range(0, 26, 6):
        body += "      " + ", ".join(cells[c0:c0 + 6]) + ",\n"
    wrows.append("    {%s, %d, {{\n%s    }}}," % (cpp_str(key, 12), len(orb), body.rstrip(",\n") + "\n"))
(out_dir / "tables_wyckoff.cpp").write_text(
    HEADER + "// The special positions of the tabulated settings: one representative of each, in the\n"
    "// order of the Wyckoff letters, without the general position.  A setting whose positions\n"
    "// are not entered has norbit 0.\n"
    '#include "symmetry/tables.hpp"\n\nnamespace velmoria {\nnamespace {\n\n'
    'constexpr std::string_view b15 = "               ";\n\n// clang-format off\n'
    "constexpr std::array<Wyck_Info_Type, num_wyck_info> wyckoff_table{{\n" + "\n".join(wrows) +
    "\n}};\n// clang-format on\n\n}  // namespace\n\n"
    "const std::array<Wyck_Info_Type, num_wyck_info>& wyckoff_info() { return wyckoff_table; }\n\n"
    "}  // namespace velmoria\n")
print("special positions entered for %d of %d keys" % (sum(1 for k in keys if k in orbits), 273),
      file=sys.stderr)

# ---------------------------------------------------------------- names and rotations
def parse_rot(text):
    m = []
    for comp in text.split(","):
        row = [0, 0, 0]
        for sign, var in re.findall(r"([+-]?)([xyz])", comp):
            row["xyz".index(var)] = -1 if sign == "-" else 1
        m.append(row)
    return m


mats = []
for prefix in ("1 x,y,z;", "25 x,y,z;"):
    line = ref[find_line(prefix)].rstrip(".")
    for item in line.split("; "):
        num, t = item.split(" ")
        assert int(num) == len(mats) + 1
        mats.append(parse_rot(t))
assert len(mats) == 36


def mag_comp(row, width):
    s = ""
    for c, name in zip(row, ("Mx", "My", "Mz")):
        if c:
            s += ("-" if c < 0 else ("+" if s else "")) + name
    return s.rjust(width)


def mag_text(m, w12):
    return "(" + mag_comp(m[0], w12) + "," + mag_comp(m[1], w12) + "," + mag_comp(m[2], 3) + ")"


neg = lambda m: [[-v for v in r] for r in m]
col1 = [mag_text(m, 3) for m in mats[:24]] + [mag_text(neg(m), 3) for m in mats[:24]]
col2 = [mag_text(m, 6) for m in mats[24:]] + [mag_text(neg(m), 6) for m in mats[24:]]
# The reference text gives row 24 of the hexagonal column with its first field to the left.
assert col2[23] == "(   -Mx,-Mx+My, Mz)"
col2[23] = "(-Mx   ,-Mx+My, Mz)"


def symop_list(prefix):
    line = ref[find_line(prefix)][len(prefix):].strip().rstrip(".")
    sym, kov = [], []
    for item in line.split("; "):
        m = re.match(r"(\d+) (h\d+): (\S+)(?: (\(.*\)))?$", item)
        assert int(m.group(1)) == len(sym) + 1, item
        text = m.group(3).rjust(3) + ((" " + m.group(4)) if m.group(4) else "")
        sym.append(text)
        kov.append(m.group(2))
    return sym, kov


oh_sym, oh_kov = symop_list("Cubic:")
d6_sym, d6_kov = symop_list("Hexagonal:")
assert len(oh_sym) == 48 and len(d6_sym) == 24


def arr(name, typ, n, items, width, per_line=1):
    cells = [cpp_str(v, width) for v in items]
    lines = ["    " + ", ".join(cells[i:i + per_line]) + "," for i in range(0, len(cells), per_line)]
    return "const std::array<%s, %d> %s{\n%s\n};\n" % (typ, n, name, "\n".join(lines))


latt = ["  P: { 000 }", "  A: { 000;  0  1/2 1/2 }+", "  B: { 000; 1/2  0  1/2 }+",
        "  C: { 000; 1/2 1/2  0  }+", "  I: { 000; 1/2 1/2 1/2 }+",
        "  R: { 000; 2/3 1/3 1/3; 1/3 2/3 2/3   }+",
        "  F: { 000;  0  1/2 1/2; 1/2  0  1/2; 1/2 1/2  0 }+",
        "  Z: { 000;  Unconventional Z-centering vectors  }+"]
for t in latt:
    assert '"' + t + '"' in "\n".join(ref), t
sys_cry = ["Triclinic", "Monoclinic", "Orthorhombic", "Tetragonal", "Trigonal", "Hexagonal", "Cubic"]

mod6_lines = []
for k, m in enumerate(mats):
    mod6_lines.append("    Mat3i{{{%s}, {%s}, {%s}}},  // %d" % (
        ", ".join(map(str, m[0])), ", ".join(map(str, m[1])), ", ".join(map(str, m[2])), k + 1))
mag_lines = []
for k in range(48):
    c2 = col2[k] if k < 24 else ""
    mag_lines.append("    std::array<std::string_view, 2>{%s, %s},  // %d" % (
        cpp_str(col1[k], 19), cpp_str(c2, 19), k + 1))

names = (HEADER + "// The name tables, the centring vectors, and the rotations of the cubic and hexagonal\n"
         "// holohedries with their texts, geometric symbols and Kovalev names.\n"
         '#include "symmetry/tables.hpp"\n\nnamespace velmoria {\n\n// clang-format off\n'
         + arr("sys_cry", "std::string_view", 7, sys_cry, 12, 4) + "\n"
         + arr("laue_class", "std::string_view", 16, LAUE, 5, 8) + "\n"
         + arr("point_group", "std::string_view", 42, PG, 5, 8) + "\n"
         + arr("latt", "std::string_view", 8, latt, 51) + "\n"
         + "const std::array<Vec3, 2> ltr_a{Vec3{0.0f, 0.0f, 0.0f}, Vec3{0.0f, 0.5f, 0.5f}};\n"
         + "const std::array<Vec3, 2> ltr_b{Vec3{0.0f, 0.0f, 0.0f}, Vec3{0.5f, 0.0f, 0.5f}};\n"
         + "const std::array<Vec3, 2> ltr_c{Vec3{0.0f, 0.0f, 0.0f}, Vec3{0.5f, 0.5f, 0.0f}};\n"
         + "const std::array<Vec3, 2> ltr_i{Vec3{0.0f, 0.0f, 0.0f}, Vec3{0.5f, 0.5f, 0.5f}};\n"
         + "const std::array<Vec3, 3> ltr_r{Vec3{0.0f, 0.0f, 0.0f}, Vec3{2.0f / 3.0f, 1.0f / 3.0f, 1.0f / 3.0f},\n"
         + "                                Vec3{1.0f / 3.0f, 2.0f / 3.0f, 2.0f / 3.0f}};\n"
         + "const std::array<Vec3, 4> ltr_f{Vec3{0.0f, 0.0f, 0.0f}, Vec3{0.0f, 0.5f, 0.5f},\n"
         + "                                Vec3{0.5f, 0.0f, 0.5f}, Vec3{0.5f, 0.5f, 0.0f}};\n\n"
         + "const std::array<Mat3i, 36> mod6{\n" + "\n".join(mod6_lines) + "\n};\n\n"
         + "const std::array<std::array<std::string_view, 2>, 48> magmat{\n" + "\n".join(mag_lines) + "\n};\n\n"
         + arr("intsymoh", "std::string_view", 48, oh_sym, 14, 4) + "\n"
         + arr("intsymd6h", "std::string_view", 24, d6_sym, 14, 4) + "\n"
         + arr("kov_oh", "std::string_view", 48, oh_kov, 3, 12) + "\n"
         + arr("kov_d6h", "std::string_view", 24, d6_kov, 3, 12)
         + "// clang-format on\n\n"
         + "constinit thread_local bool err_symtab = false;\nthread_local std::string err_symtab_mess;\n\n"
         + "}  // namespace velmoria\n")
(out_dir / "tables_names.cpp").write_text(names)

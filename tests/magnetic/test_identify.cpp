// The magnetic space groups of hand-built candidate structures, checked against what the
// arrangements keep worked out by hand, and against the tables of spglib's database.
#include <gtest/gtest.h>

extern "C" {
#include <spglib.h>
}

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "magnetic/identify.hpp"
#include "magnetic/mcif.hpp"
#include "magnetic/structures.hpp"
#include "run/run_driver.hpp"
#include "run/run_state.hpp"

namespace velmoria {
namespace {

using namespace test_structures;

// Every operation of the group, taken from the magnetic cell to the parent's coordinates
// (x = B x_m + o, B's columns the cell's edges), carries the structure onto itself.
void expect_operations_keep(const Candidate_Structure& s, const Identification& id) {
  Mat3d b{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) b[i][j] = id.cell.basis[j][i];
  ASSERT_GT(std::abs(det(b)), 1e-6);
  const Mat3d b_inv = inverse(b);
  for (const auto& op : id.operations) {
    Mat3i r{};
    Vec3d t = id.cell.origin;
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) {
        double v = 0;
        for (int a = 0; a < 3; ++a)
          for (int c = 0; c < 3; ++c) v += b[i][a] * op.rotation[a][c] * b_inv[c][j];
        r[i][j] = static_cast<int>(std::lround(v));
        ASSERT_NEAR(v, r[i][j], 1e-6);
        t[i] += b[i][j] * op.translation[j];
      }
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) t[i] -= r[i][j] * id.cell.origin[j];
    EXPECT_TRUE(keeps(s, r, t, op.time_reversal, id.polar)) << operation_text(op, true);
  }
}

// MnF2 with moments along c, antiparallel (136.499), parallel, and none.  By hand: a moment
// along c turns with det(R) R_zz; an operator with a half translation exchanges the two Mn,
// whose moments are opposite for the antiferromagnet.  Time reversal makes up the difference,
// and the magnetic site symmetry of Mn at the origin allows a moment along c only.  Without
// moments: the grey group, every operator with and without time reversal, and no moment.
TEST(MagneticGroups, MnF2AlongC) {
  const struct {
    double mz2;
    int type;
    const char* symbol;
    const char* symmform;
  } cases[] = {{-1, 3, "P4_2'/mnm'", "0,0,mz"},
               {1, 3, "P4_2/mn'm'", "0,0,mz"},
               {0, 2, "P4_2/mnm1'", "0,0,0"}};
  for (const auto& c : cases) {
    const Builder b = mnf2(std::abs(c.mz2), c.mz2);
    const Identification id = identify(b.s, b.group, false);
    ASSERT_TRUE(id.error.empty()) << id.error;
    EXPECT_EQ(id.type, c.type);
    EXPECT_EQ(spg_get_magnetic_spacegroup_type(id.uni_number).number, 136);
    EXPECT_EQ(id.bns_number == "136.499", c.mz2 < 0);
    EXPECT_EQ(id.bns_symbol, c.symbol);
    EXPECT_EQ(id.cell.text, "a,b,c;0,0,0");
    ASSERT_EQ(id.operations.size(), c.type == 2 ? 32u : 16u);
    for (const auto& op : id.operations) {
      const bool exchanges = c.mz2 < 0 && std::abs(op.translation[0] - 0.5) < 1e-9;
      const bool flips = det(op.rotation) * op.rotation[2][2] < 0;
      EXPECT_TRUE(c.type == 2 || op.time_reversal == (exchanges != flips))
          << operation_text(op, true);
    }
    expect_operations_keep(b.s, id);
    ASSERT_EQ(id.atoms.size(), 1u);
    EXPECT_EQ(id.atoms[0].symmform, c.symmform);
  }
}

TEST(MagneticGroups, ZoneBoundaryAntiferromagnetHasAnAntiTranslation) {
  const Builder b = stripes();
  const Identification id = identify(b.s, b.group, false);
  ASSERT_TRUE(id.error.empty()) << id.error;
  EXPECT_EQ(id.type, 4);
  EXPECT_TRUE(id.bns_symbol.empty());  // type IV: the number alone
  expect_operations_keep(b.s, id);
  // The translation a of the parent keeps the stripes with time reversal only (every listed
  // operation keeps them): an anti-translation is listed.
  EXPECT_TRUE(std::any_of(id.operations.begin(), id.operations.end(), [](const auto& op) {
    return op.rotation == Mat3i{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}} && op.time_reversal;
  }));
  // The 4-fold axis turns the stripes along a into stripes along b: the point group is mmm.
  std::set<Mat3i> rotations;
  for (const auto& op : id.operations) rotations.insert(op.rotation);
  EXPECT_EQ(rotations.size(), 8u);
}

TEST(MagneticGroups, DistortedPerovskites) {
  const Builder p = polar_perovskite();
  const Identification polar = identify(p.s, p.group, true);
  ASSERT_TRUE(polar.error.empty()) << polar.error;
  EXPECT_EQ(polar.space_group_number, 99);
  EXPECT_EQ(polar.space_group_symbol, "P4mm");
  // Out-of-phase rotations of the octahedra about c (R point, a0a0c-): I4/mcm by hand.
  Builder r = box({4, 4, 4}, {2, 2, 2});
  for (int n = 0; n < 8; ++n) {
    const double i = n % 2, j = n / 2 % 2, k = n / 4, s = (n % 2 + n / 2 % 2 + n / 4) % 2 ? -1 : 1;
    r.atom({i, j, k}, {0, 0, 0}, 1, "Sr_1");
    r.atom({i + 0.5, j + 0.5, k + 0.5}, {0, 0, 0}, 2, "Ti_1");
    r.atom({i + 0.5, j + 0.5, k}, {0, 0, 0}, 3, "O_1");
    r.atom({i + 0.5, j, k + 0.5}, {s, 0, 0}, 3, "O_2");
    r.atom({i, j + 0.5, k + 0.5}, {0, -s, 0}, 3, "O_3");
  }
  r.symmetry(closure(pm3m), true);
  const Identification tilt = identify(r.s, r.group, true);
  ASSERT_TRUE(tilt.error.empty()) << tilt.error;
  EXPECT_EQ(tilt.space_group_number, 140);
  EXPECT_EQ(tilt.space_group_symbol, "I4/mcm");
}

// spglib's group of a candidate structure itself, with atoms (type 0, no moment) on a general
// position of the parent so that it has no symmetry beyond the parent's: its magnetic type
// (uni number), or for displacements its space group's number.
int group_of_structure(const Candidate_Structure& s, const std::vector<Isotropy_Operation>& parent,
                       bool polar) {
  Candidate_Structure m = s;
  const Mat3d to_cell = inverse(s.cell);
  for (const Isotropy_Operation& op : parent) {
    const Vec3d x = image(Op{op.rotation, op.translation}, Vec3d{0.1234, 0.3417, 0.0729});
    Vec3d y{};
    for (int i = 0; i < 3; ++i)
      y[i] = frac(to_cell[i][0] * x[0] + to_cell[i][1] * x[1] + to_cell[i][2] * x[2]);
    const auto known = [&](const Vec3d& a) {
      double d = 0;
      for (int i = 0; i < 3; ++i) d += std::abs(frac(a[i] - y[i] + 0.5) - 0.5);
      return d < 1e-6;
    };
    if (std::any_of(m.positions.begin() + s.positions.size(), m.positions.end(), known)) continue;
    m.positions.push_back(y), m.moments.push_back({0, 0, 0}), m.types.push_back(0);
  }
  double lattice[3][3] = {};
  for (int r = 0; r < 3; ++r)
    for (int j = 0; j < 3; ++j)
      for (int i = 0; i < 3; ++i) lattice[r][j] += s.cell[i][j] * s.lattice[i][r];
  const auto len = [&](int i) {
    return std::hypot(s.lattice[i][0], s.lattice[i][1], s.lattice[i][2]);
  };
  // The moments along the unit vectors of a, b, c; displacements move the atoms along them.
  std::vector<double> xyz, vectors;
  for (std::size_t a = 0; a < m.positions.size(); ++a)
    for (int r = 0; r < 3; ++r) {
      double v = 0, shift = 0;
      for (int i = 0; i < 3; ++i) {
        v += m.moments[a][i] * s.lattice[i][r] / len(i);
        shift += to_cell[r][i] * 0.01 * m.moments[a][i] / len(i);
      }
      xyz.push_back(m.positions[a][r] + (polar ? shift : 0));
      vectors.push_back(v);
    }
  const int n = static_cast<int>(m.positions.size());
  auto* positions = reinterpret_cast<double(*)[3]>(xyz.data());
  if (polar) {
    SpglibDataset* d = spg_get_dataset(lattice, positions, m.types.data(), n, 1e-4);
    const int number = d ? d->spacegroup_number : 0;
    if (d) spg_free_dataset(d);
    return number;
  }
  SpglibMagneticDataset* d =
      spg_get_magnetic_dataset(lattice, positions, m.types.data(), vectors.data(), 1, n, 1, 1e-4);
  const int uni = d ? d->uni_number : 0;
  if (d) spg_free_magnetic_dataset(d);
  return uni;
}

// Identifies every order-parameter direction of a run of the control file's text.
template <typename F>
void for_each_direction(const char* text, F&& check) {
  const Run_Output out = run_velmoria({"witness", text, ""});
  const Magnetic_Candidates mc = magnetic_candidates(*out.state);
  ASSERT_TRUE(mc.unsupported.empty()) << text << mc.unsupported;
  Identifier identifier(mc.operations, mc.polar);
  for (const Physical_Irrep& pi : mc.irreps)
    for (const Order_Parameter_Direction& dir : pi.directions) {
      SCOPED_TRACE(std::string(text) + " IR" + std::to_string(pi.nu) + " " + dir.notation);
      const Identification id = identifier.identify(dir.structure, dir.isotropy);
      ASSERT_TRUE(id.error.empty()) << id.error;
      expect_operations_keep(dir.structure, id);
      check(mc, dir, id);
    }
}

// The group named from a small structure of its orbits, or taken over from a conjugate group,
// is the group that spglib finds in the candidate structure itself; and every operation listed
// in the standard setting carries the candidate onto itself.
TEST(MagneticGroups, WitnessesNameTheGroupOfTheStructure) {
  const char* texts[] = {
      "SPGR P 42/m n m\nKVEC 0 0 0 GM\nVMODE AXI\nATOM Mn MN 0 0 0\n",
      "SPGR P m -3 m\nKVEC 0.5 0.5 0 M\nVMODE AXI\nATOM Fe FE 0 0 0\n",
      "SPGR R -3 c\nKVEC 0 0 0 GM\nVMODE AXI\nATOM Fe FE 0 0 0.3553\n",
      "SPGR P 63/m m c\nKVEC 0.3333333 0.3333333 0 K\nVMODE AXI\nATOM Fe FE 0.3333333 0.6666667 "
      "0.25\n",
      "SPGR P 21/c\nKVEC 0.3333333 0.3333333 0 K\nVMODE AXI\nATOM Mn MN 0 0 0\n",
      "SPGR I 41/a m d\nKVEC 0 0 1 X\nVMODE AXI\nATOM Fe FE 0 0 0\n",
      "SPGR P m -3 m\nKVEC 0.5 0.5 0.5 R\nVMODE POL\nATOM F F 0.5 0 0\n",
      "SPGR P m -3 m\nKVEC 0.5 0.5 0.5 R\nVMODE AXI\nATOM Fe FE 0.25 0 0\n",
  };
  int conjugates = 0, silent = 0;  // silent: spglib's search failed on the whole structure
  for (const char* text : texts) {
    std::set<int> named;
    for_each_direction(text, [&](const Magnetic_Candidates& mc,
                                 const Order_Parameter_Direction& dir, const Identification& id) {
      const int group = mc.polar ? id.space_group_number : id.uni_number;
      conjugates += named.insert(group).second ? 0 : 1;
      const int oracle = group_of_structure(dir.structure, mc.operations, mc.polar);
      silent += oracle == 0 ? 1 : 0;
      EXPECT_TRUE(oracle == 0 || group == oracle) << group << " but spglib finds " << oracle;
    });
  }
  EXPECT_GT(conjugates, 5);  // groups met again, in another orientation or at another origin
  EXPECT_LE(silent, 2);      // (R -3 c, two directions of the E representations)
}

// k = (1/12,1/12,1/12) in F m -3 m: a long, skewed magnetic cell, on which spglib's search
// fails unless the cell is reduced first.  Every direction is named and its
// operations keep its arrangement.
TEST(MagneticGroups, LongCellsAreNamed) {
  int directions = 0;
  for_each_direction(
      "SPGR F m -3 m\nKVEC 0.0833333 0.0833333 0.0833333 LD\nVMODE AXI\nATOM Mn MN 0 0 0\n",
      [&](const auto&, const auto&, const auto&) { ++directions; });
  EXPECT_GT(directions, 5);
}

TEST(MagneticGroups, BadCandidatesGiveAMessage) {
  const Builder good = mnf2(1, -1);
  std::vector<Candidate_Structure> bad(4, good.s);
  bad[0].types.pop_back();
  bad[1] = Candidate_Structure{};
  bad[2].lattice[2] = bad[2].lattice[0];
  bad[3].moments[0][2] = std::nan("");
  for (const auto& s : bad) EXPECT_FALSE(identify(s, good.group, false).error.empty());
  EXPECT_FALSE(identify(good.s, {}, false).error.empty());
}

TEST(MagneticGroups, SymmformOfSiteSymmetries) {
  const std::array<Vec3d, 3> cubic{Vec3d{4, 0, 0}, Vec3d{0, 4, 0}, Vec3d{0, 0, 4}};
  const auto symmform = [&](const char* text, bool reversal, bool axial = true) {
    const Op o = parse(text);
    return moment_symmform({Magnetic_Operation{o.r, o.t, reversal}}, cubic, axial);
  };
  // m_z keeps an axial vector along z, m_z' one in the plane; the diagonal mirror (y,x,z) one
  // along its normal [1-10]; inversion every one, with time reversal none.  A polar vector
  // under m_z lies in the plane.
  EXPECT_EQ(symmform("x,y,-z", false), "0,0,mz");
  EXPECT_EQ(symmform("x,y,-z", true), "mx,my,0");
  EXPECT_EQ(symmform("y,x,z", false), "mx,-mx,0");
  EXPECT_EQ(symmform("y,x,z", true), "mx,mx,mz");
  EXPECT_EQ(symmform("-x,-y,-z", false), "mx,my,mz");
  EXPECT_EQ(symmform("-x,-y,-z", true), "0,0,0");
  EXPECT_EQ(symmform("x,y,-z", false, false), "dx,dy,0");
}

// Every group of type I, II and III in spglib's table, in the standard setting of its family
// group, gets a symbol, and no two groups the same one.
TEST(MagneticGroups, SymbolsOfTheWholeTableAreDistinct) {
  std::array<int, 231> first_hall{};
  for (int h = 530; h >= 1; --h) first_hall[spg_get_spacegroup_type(h).number] = h;
  std::map<std::string, std::string> seen;
  int symbols = 0;
  for (int uni = 1; uni <= 1651; ++uni) {
    const SpglibMagneticSpacegroupType t = spg_get_magnetic_spacegroup_type(uni);
    if (t.type == 4) continue;
    const int hall = first_hall[t.number];
    static int rot[384][3][3];
    static double tr[384][3];
    static int rev[384];
    const int n = spg_get_magnetic_symmetry_from_database(rot, tr, rev, uni, hall);
    std::vector<Magnetic_Operation> ops;
    for (int k = 0; k < n; ++k) {
      ops.push_back({{}, {tr[k][0], tr[k][1], tr[k][2]}, rev[k] != 0});
      for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) ops.back().rotation[i][j] = rot[k][i][j];
    }
    ASSERT_FALSE(ops.empty()) << t.bns_number;
    const std::string symbol = bns_symbol_of(ops, hall, t.type);
    EXPECT_FALSE(symbol.empty()) << t.bns_number;
    if (symbol.empty()) continue;
    ++symbols;
    const auto [at, fresh] = seen.emplace(symbol, t.bns_number);
    EXPECT_TRUE(fresh) << symbol << " for " << t.bns_number << " and " << at->second;
  }
  EXPECT_EQ(symbols, 1651 - 517);  // the groups of type IV are 517
}

}  // namespace
}  // namespace velmoria

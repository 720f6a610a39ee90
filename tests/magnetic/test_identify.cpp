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
    EXPECT_TRUE(keeps(s, r, t, op.time_reversal, false)) << operation_text(op, true);
  }
}

// The operations of group `uni` in spglib's table, in the setting of Hall number `hall` (0: the
// standard setting).
std::vector<Magnetic_Operation> database(int uni, int hall) {
  static int rot[384][3][3];
  static double tr[384][3];
  static int rev[384];
  const int n = spg_get_magnetic_symmetry_from_database(rot, tr, rev, uni, hall);
  std::vector<Magnetic_Operation> ops(static_cast<std::size_t>(std::max(n, 0)));
  for (int k = 0; k < n; ++k) {
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) ops[k].rotation[i][j] = rot[k][i][j];
      ops[k].translation[i] = tr[k][i];
    }
    ops[k].time_reversal = rev[k] != 0;
  }
  return ops;
}

// The time reversal of each linear part of a group.
std::set<std::pair<Mat3i, bool>> linear_parts(const std::vector<Magnetic_Operation>& ops) {
  std::set<std::pair<Mat3i, bool>> out;
  for (const auto& op : ops) out.insert({op.rotation, op.time_reversal});
  return out;
}

// MnF2 with moments along c, antiparallel (136.499) and parallel.  By hand: a moment along c
// turns with det(R) R_zz; an operator with a half translation exchanges the two Mn, whose
// moments are opposite for the antiferromagnet.  Time reversal makes up the difference.  The
// tabulated group of that number has the same primes on the same linear parts, and the
// magnetic site symmetry of Mn at the origin allows a moment along c only.  Without moments:
// the grey group, every operator with and without time reversal.
TEST(MagneticGroups, MnF2AlongC) {
  for (const double mz2 : {-1.0, 1.0}) {
    const Candidate_Structure s = mnf2(1, mz2);
    const Identification id = identify(s, false);
    ASSERT_TRUE(id.error.empty()) << id.error;
    EXPECT_EQ(id.type, 3);
    EXPECT_EQ(id.bns_number.substr(0, 4), "136.");
    EXPECT_EQ(id.bns_number == "136.499", mz2 < 0);
    EXPECT_EQ(id.bns_symbol, mz2 < 0 ? "P4_2'/mnm'" : "P4_2/mn'm'");
    EXPECT_EQ(id.cell.text, "a,b,c;0,0,0");
    ASSERT_EQ(id.operations.size(), 16u);
    for (const auto& op : id.operations) {
      const bool exchanges = mz2 < 0 && std::abs(op.translation[0] - 0.5) < 1e-9;
      const bool flips = det(op.rotation) * op.rotation[2][2] < 0;
      EXPECT_EQ(op.time_reversal, exchanges != flips) << operation_text(op, true);
    }
    expect_operations_keep(s, id);
    EXPECT_EQ(linear_parts(database(id.uni_number, 0)), linear_parts(id.operations));
    ASSERT_EQ(id.atoms.size(), 1u);
    EXPECT_EQ(id.atoms[0].symmform, "0,0,mz");
  }
  const Identification grey = identify(mnf2(0, 0), false);
  ASSERT_TRUE(grey.error.empty()) << grey.error;
  EXPECT_EQ(grey.type, 2);
  EXPECT_EQ(grey.bns_symbol, "P4_2/mnm1'");
  EXPECT_EQ(grey.operations.size(), 32u);
  EXPECT_EQ(spg_get_magnetic_spacegroup_type(grey.uni_number).number, 136);
}

TEST(MagneticGroups, ZoneBoundaryAntiferromagnetHasAnAntiTranslation) {
  const Candidate_Structure s = stripes();
  const Identification id = identify(s, false);
  ASSERT_TRUE(id.error.empty()) << id.error;
  EXPECT_EQ(id.type, 4);
  EXPECT_TRUE(id.bns_symbol.empty());  // type IV: the number alone
  expect_operations_keep(s, id);
  // The translation a of the parent comes with time reversal only.
  bool anti = false, plain = false;
  for (const auto& op : id.operations) {
    if (op.rotation != Mat3i{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}) continue;
    Vec3d p{};  // the translation in the parent's coordinates
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) p[i] += id.cell.basis[j][i] * op.translation[j];
    // a modulo the lattice of the supercell (2a, b, c)
    if (std::abs(frac(p[0] / 2 + 1e-7) - 0.5) < 1e-6 && std::abs(frac(p[1] + 1e-7)) < 1e-6 &&
        std::abs(frac(p[2] + 1e-7)) < 1e-6)
      (op.time_reversal ? anti : plain) = true;
  }
  EXPECT_TRUE(anti && !plain);
  // The 4-fold axis turns the stripes along a into stripes along b: the point group is mmm.
  std::set<Mat3i> rotations;
  for (const auto& op : id.operations) rotations.insert(op.rotation);
  EXPECT_EQ(rotations.size(), 8u);
}

TEST(MagneticGroups, DistortedPerovskites) {
  const Identification polar = identify(polar_perovskite(), true);
  ASSERT_TRUE(polar.error.empty()) << polar.error;
  EXPECT_EQ(polar.space_group_number, 99);
  EXPECT_EQ(polar.space_group_symbol, "P4mm");
  // Out-of-phase rotations of the octahedra about c (R point, a0a0c-): I4/mcm by hand.
  Builder r{tetragonal(4, 4, {2, 2, 2})};
  for (int i = 0; i < 2; ++i)
    for (int j = 0; j < 2; ++j)
      for (int k = 0; k < 2; ++k) {
        const double s = ((i + j + k) % 2 == 0) ? 1 : -1;
        r.atom({i + 0.0, j + 0.0, k + 0.0}, {0, 0, 0}, 1, "Sr_1");
        r.atom({i + 0.5, j + 0.5, k + 0.5}, {0, 0, 0}, 2, "Ti_1");
        r.atom({i + 0.5, j + 0.5, k + 0.0}, {0, 0, 0}, 3, "O_1");
        r.atom({i + 0.5, j + 0.0, k + 0.5}, {s, 0, 0}, 3, "O_2");
        r.atom({i + 0.0, j + 0.5, k + 0.5}, {0, -s, 0}, 3, "O_3");
      }
  r.markers(closure(pm3m));
  const Identification tilt = identify(r.s, true);
  ASSERT_TRUE(tilt.error.empty()) << tilt.error;
  EXPECT_EQ(tilt.space_group_number, 140);
  EXPECT_EQ(tilt.space_group_symbol, "I4/mcm");
}

TEST(MagneticGroups, BadCandidatesGiveAMessage) {
  std::vector<Candidate_Structure> bad(4, mnf2(1, -1));
  bad[0].types.pop_back();
  bad[1] = Candidate_Structure{};
  bad[2].lattice[2] = bad[2].lattice[0];
  bad[3].moments[0][2] = std::nan("");
  for (const auto& s : bad) EXPECT_FALSE(identify(s, false).error.empty());
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
    const std::vector<Magnetic_Operation> ops = database(uni, hall);
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

// The markers bound the symmetry only when the sites alone have more of it than the parent:
// Mn on 2a of P 4_2/m n m (site symmetry m.mm) alone have the symmetry of P 4/m m m with the
// centring (1/2,1/2,1/2); atoms on a general position of P 4/m m m have exactly its 16
// operations.
TEST(MagneticGroups, MarkersOnlyWhereTheSitesHaveMoreSymmetry) {
  const Candidate_Structure special = mnf2(1, -1);
  EXPECT_TRUE(markers_needed(special));
  Builder b{tetragonal(4, 3, {1, 1, 1})};
  const std::vector<Op> group = closure(p4mmm);
  ASSERT_EQ(group.size(), 16u);
  for (const Op& op : group) b.atom(image(op, Vec3d{0.1, 0.2, 0.3}), {0, 0, 1}, 1, "Fe");
  b.markers(group);
  EXPECT_FALSE(markers_needed(b.s));
  const Candidate_Structure bare = without_markers(b.s);
  EXPECT_EQ(bare.positions.size(), 16u);
  // Without the markers the group is the same.
  const Identification with = identify(b.s, false), without = identify(bare, false);
  EXPECT_TRUE(with.error.empty() && with.bns_number == without.bns_number) << with.error;
}

}  // namespace
}  // namespace velmoria

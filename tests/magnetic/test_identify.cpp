// The magnetic space groups of hand-built candidate structures, checked against what the
// arrangements keep worked out by hand, and against the tables of spglib's database.
#include <gtest/gtest.h>

extern "C" {
#include <spglib.h>
}

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

double determinant(const Mat3i& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

// Every operation of the group carries the structure (in the magnetic cell, as the cell's
// basis and origin place it) onto itself, moments with det(R) R and time reversal.
void expect_operations_keep(const Candidate_Structure& s, const Identification& id) {
  // Atoms of the structure in the magnetic cell: x_m = B^-1 (C x - o), C the structure's
  // cell and B the magnetic cell's columns.
  const auto& B = id.cell.basis;
  const double d = B[0][0] * (B[1][1] * B[2][2] - B[2][1] * B[1][2]) -
                   B[1][0] * (B[0][1] * B[2][2] - B[2][1] * B[0][2]) +
                   B[2][0] * (B[0][1] * B[1][2] - B[1][1] * B[0][2]);
  ASSERT_GT(std::abs(d), 1e-6);
  struct Atom {
    Vec3d x, m;
    int type;
  };
  std::vector<Atom> atoms;
  for (std::size_t a = 0; a < s.positions.size(); ++a) {
    Vec3d p{};
    for (int i = 0; i < 3; ++i) {
      p[i] = -id.cell.origin[i];
      for (int j = 0; j < 3; ++j) p[i] += s.cell[i][j] * s.positions[a][j];
    }
    // Solve sum_j x_j B[j] = p by Cramer's rule.
    Vec3d x{};
    for (int j = 0; j < 3; ++j) {
      auto C = B;
      C[j] = p;
      x[j] = frac((C[0][0] * (C[1][1] * C[2][2] - C[2][1] * C[1][2]) -
                   C[1][0] * (C[0][1] * C[2][2] - C[2][1] * C[0][2]) +
                   C[2][0] * (C[0][1] * C[1][2] - C[1][1] * C[0][2])) /
                  d);
    }
    // Moments along the Cartesian axes (the lattices here are orthogonal).
    Vec3d m{};
    for (int i = 0; i < 3; ++i) m[i] = s.moments[a][i];
    atoms.push_back({x, m, s.types[a]});
  }
  // Cartesian rotation of a fractional one in an orthogonal magnetic cell with axes along the
  // parent's: R_cart = D R D^-1 with D the lengths; the parent axes may be permuted, so go
  // through the Cartesian rows.
  const auto& L = id.cell_lattice;
  for (const auto& op : id.operations) {
    std::array<Vec3d, 3> rc{};
    for (int r = 0; r < 3; ++r)
      for (int c = 0; c < 3; ++c)
        for (int i = 0; i < 3; ++i)
          for (int j = 0; j < 3; ++j) {
            const double li = std::sqrt(L[i][0] * L[i][0] + L[i][1] * L[i][1] + L[i][2] * L[i][2]);
            const double lj = std::sqrt(L[j][0] * L[j][0] + L[j][1] * L[j][1] + L[j][2] * L[j][2]);
            rc[r][c] += L[i][r] / li * op.rotation[i][j] * li / lj * L[j][c] / lj;
          }
    const double sgn = (determinant(op.rotation) > 0 ? 1 : -1) * (op.time_reversal ? -1 : 1);
    for (const auto& a : atoms) {
      Vec3d y{}, m{};
      for (int i = 0; i < 3; ++i) {
        y[i] = op.translation[i];
        for (int j = 0; j < 3; ++j)
          y[i] += op.rotation[i][j] * a.x[j], m[i] += sgn * rc[i][j] * a.m[j];
      }
      bool found = false;
      for (const auto& b : atoms) {
        bool at = b.type == a.type;
        for (int i = 0; i < 3; ++i) {
          const double dx = y[i] - b.x[i];
          at = at && std::abs(dx - std::round(dx)) < 1e-6 && std::abs(m[i] - b.m[i]) < 1e-6;
        }
        found = found || at;
      }
      ASSERT_TRUE(found) << operation_text(op, true) << " loses an atom";
    }
  }
}

// The time reversal of the tabulated group `uni` (standard setting) for each linear part.
std::set<std::pair<Mat3i, bool>> tabulated(int uni) {
  static int rot[384][3][3];
  static double tr[384][3];
  static int rev[384];
  const int n = spg_get_magnetic_symmetry_from_database(rot, tr, rev, uni, 0);
  std::set<std::pair<Mat3i, bool>> out;
  for (int k = 0; k < n; ++k) {
    Mat3i r{};
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) r[i][j] = rot[k][i][j];
    out.insert({r, rev[k] != 0});
  }
  return out;
}

std::set<std::pair<Mat3i, bool>> linear_parts(const Identification& id) {
  std::set<std::pair<Mat3i, bool>> out;
  for (const auto& op : id.operations) out.insert({op.rotation, op.time_reversal});
  return out;
}

TEST(MagneticGroups, MnF2AntiferromagnetAlongCIsP42primeMnmPrime) {
  const Candidate_Structure s = mnf2(1, -1);
  const Identification id = identify(s, false);
  ASSERT_TRUE(id.error.empty()) << id.error;
  EXPECT_EQ(id.bns_number, "136.499");
  EXPECT_EQ(id.type, 3);
  EXPECT_EQ(id.bns_symbol, "P4_2'/mnm'");
  EXPECT_EQ(id.cell.text, "a,b,c;0,0,0");
  ASSERT_EQ(id.operations.size(), 16u);
  // By hand: a moment along c turns with det(R) R_zz; an operator with a half translation
  // exchanges the two Mn, whose moments are opposite.  Time reversal makes up the difference.
  for (const auto& op : id.operations) {
    const bool exchanges = std::abs(op.translation[0] - 0.5) < 1e-9;
    const bool flips = determinant(op.rotation) * op.rotation[2][2] < 0;
    EXPECT_EQ(op.time_reversal, exchanges != flips) << operation_text(op, true);
  }
  expect_operations_keep(s, id);
  // The tabulated group of that number has the same primes on the same linear parts.
  EXPECT_EQ(tabulated(id.uni_number), linear_parts(id));
  // The magnetic site symmetry of Mn at the origin allows a moment along c only.
  ASSERT_EQ(id.atoms.size(), 1u);
  EXPECT_EQ(id.atoms[0].symmform, "0,0,mz");
}

TEST(MagneticGroups, MnF2FerromagnetAlongCIsP42MnPrimeMPrime) {
  const Candidate_Structure s = mnf2(1, 1);
  const Identification id = identify(s, false);
  ASSERT_TRUE(id.error.empty()) << id.error;
  EXPECT_EQ(id.type, 3);
  EXPECT_EQ(id.bns_symbol, "P4_2/mn'm'");
  ASSERT_EQ(id.operations.size(), 16u);
  // By hand: both Mn carry the same moment, so only det(R) R_zz decides.
  for (const auto& op : id.operations) {
    const bool flips = determinant(op.rotation) * op.rotation[2][2] < 0;
    EXPECT_EQ(op.time_reversal, flips) << operation_text(op, true);
  }
  expect_operations_keep(s, id);
  EXPECT_EQ(tabulated(id.uni_number), linear_parts(id));
  EXPECT_EQ(id.bns_number.substr(0, 4), "136.");
  EXPECT_NE(id.bns_number, "136.499");
  ASSERT_EQ(id.atoms.size(), 1u);
  EXPECT_EQ(id.atoms[0].symmform, "0,0,mz");
}

TEST(MagneticGroups, NoMomentGivesTheGreyGroup) {
  // No moment at all: the grey group of the parent, every operator with and without time
  // reversal.
  const Identification plane = identify(mnf2(0, 0), false);
  ASSERT_TRUE(plane.error.empty()) << plane.error;
  EXPECT_EQ(plane.type, 2);
  EXPECT_EQ(plane.bns_symbol, "P4_2/mnm1'");
  EXPECT_EQ(plane.operations.size(), 32u);
  EXPECT_EQ(spg_get_magnetic_spacegroup_type(plane.uni_number).number, 136);
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
    const bool is_a = std::abs(p[0] - 1 - 2 * std::round((p[0] - 1) / 2)) < 1e-6 &&
                      std::abs(p[1] - std::round(p[1])) < 1e-6 &&
                      std::abs(p[2] - std::round(p[2])) < 1e-6;
    if (is_a) (op.time_reversal ? anti : plain) = true;
  }
  EXPECT_TRUE(anti);
  EXPECT_FALSE(plain);
  // The 4-fold axis turns the stripes along a into stripes along b: the point group is mmm.
  std::set<Mat3i> rotations;
  for (const auto& op : id.operations) rotations.insert(op.rotation);
  EXPECT_EQ(rotations.size(), 8u);
}

TEST(MagneticGroups, DistortedPerovskites) {
  const std::vector<Op> cubic = closure(pm3m);
  ASSERT_EQ(cubic.size(), 48u);
  const auto perovskite = [&](std::array<int, 3> supercell) {
    Builder b;
    b.s.cell = diagonal(supercell);
    b.s.lattice = {Vec3d{4, 0, 0}, Vec3d{0, 4, 0}, Vec3d{0, 0, 4}};
    return b;
  };
  const Identification polar = identify(polar_perovskite(), true);
  ASSERT_TRUE(polar.error.empty()) << polar.error;
  EXPECT_EQ(polar.space_group_number, 99);
  EXPECT_EQ(polar.space_group_symbol, "P4mm");
  // Out-of-phase rotations of the octahedra about c (R point, a0a0c-): I4/mcm by hand.
  Builder r = perovskite({2, 2, 2});
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
  r.markers(cubic);
  const Identification tilt = identify(r.s, true);
  ASSERT_TRUE(tilt.error.empty()) << tilt.error;
  EXPECT_EQ(tilt.space_group_number, 140);
  EXPECT_EQ(tilt.space_group_symbol, "I4/mcm");
}

TEST(MagneticGroups, HematiteBelowTheMorinTransitionIsR3primeCprime) {
  // By hand: inversion carries Fe at (0,0,z), +, onto (0,0,-z), -, and keeps an axial vector:
  // it comes with time reversal (-3').  The two-fold axis y,x,-z+1/2 carries (0,0,z) onto
  // (0,0,1/2-z), which is -, and turns m_z into -m_z: no time reversal; the c glide, their
  // product, comes with it.
  const Identification id = identify(hematite(), false);
  ASSERT_TRUE(id.error.empty()) << id.error;
  EXPECT_EQ(id.type, 3);
  EXPECT_EQ(id.bns_symbol, "R-3'c'");
  EXPECT_EQ(spg_get_magnetic_spacegroup_type(id.uni_number).number, 167);
  ASSERT_EQ(id.atoms.size(), 1u);
  EXPECT_EQ(id.atoms[0].symmform, "0,0,mz");
  EXPECT_EQ(tabulated(id.uni_number), linear_parts(id));
}

TEST(MagneticGroups, BadCandidatesGiveAMessage) {
  Candidate_Structure s = mnf2(1, -1);
  s.types.pop_back();
  EXPECT_FALSE(identify(s, false).error.empty());
  Candidate_Structure empty;
  EXPECT_FALSE(identify(empty, false).error.empty());
  Candidate_Structure flat = mnf2(1, -1);
  flat.lattice[2] = flat.lattice[0];
  EXPECT_FALSE(identify(flat, false).error.empty());
  Candidate_Structure nan = mnf2(1, -1);
  nan.moments[0][2] = std::nan("");
  EXPECT_FALSE(identify(nan, false).error.empty());
}

TEST(MagneticGroups, SymmformOfSiteSymmetries) {
  const std::array<Vec3d, 3> cubic{Vec3d{4, 0, 0}, Vec3d{0, 4, 0}, Vec3d{0, 0, 4}};
  const auto op = [](const std::string& text, bool reversal) {
    const Op o = parse(text);
    return Magnetic_Operation{o.r, o.t, reversal};
  };
  // m_z keeps an axial vector along z; m_z' keeps one in the plane.
  EXPECT_EQ(moment_symmform({op("x,y,-z", false)}, cubic), "0,0,mz");
  EXPECT_EQ(moment_symmform({op("x,y,-z", true)}, cubic), "mx,my,0");
  // The diagonal mirror (y,x,z) keeps axial vectors along its normal [1-10].
  EXPECT_EQ(moment_symmform({op("y,x,z", false)}, cubic), "mx,-mx,0");
  EXPECT_EQ(moment_symmform({op("y,x,z", true)}, cubic), "mx,mx,mz");
  // Inversion keeps every axial vector; inversion with time reversal none.
  EXPECT_EQ(moment_symmform({op("-x,-y,-z", false)}, cubic), "mx,my,mz");
  EXPECT_EQ(moment_symmform({op("-x,-y,-z", true)}, cubic), "0,0,0");
  // A polar vector under a mirror m_z lies in the plane.
  EXPECT_EQ(moment_symmform({op("x,y,-z", false)}, cubic, false), "dx,dy,0");
}

}  // namespace
}  // namespace velmoria

namespace velmoria {
namespace {

// Every group of type I, II and III in spglib's table, in the standard setting of its family
// group, gets a symbol, and no two groups the same one.
TEST(MagneticGroups, SymbolsOfTheWholeTableAreDistinct) {
  std::array<int, 231> first_hall{};
  for (int h = 530; h >= 1; --h) first_hall[spg_get_spacegroup_type(h).number] = h;
  static int rot[384][3][3];
  static double tr[384][3];
  static int rev[384];
  std::map<std::string, std::string> seen;
  int symbols = 0;
  for (int uni = 1; uni <= 1651; ++uni) {
    const SpglibMagneticSpacegroupType t = spg_get_magnetic_spacegroup_type(uni);
    if (t.type == 4) continue;
    const int hall = first_hall[t.number];
    const int n = spg_get_magnetic_symmetry_from_database(rot, tr, rev, uni, hall);
    ASSERT_GT(n, 0) << t.bns_number;
    std::vector<Magnetic_Operation> ops;
    for (int k = 0; k < n; ++k) {
      Magnetic_Operation op;
      for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) op.rotation[i][j] = rot[k][i][j];
        op.translation[i] = tr[k][i];
      }
      op.time_reversal = rev[k] != 0;
      ops.push_back(op);
    }
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
  for (int t : bare.types) EXPECT_EQ(t, 1);
  // Without the markers the group is the same.
  const Identification with = identify(b.s, false), without = identify(bare, false);
  ASSERT_TRUE(with.error.empty() && without.error.empty()) << with.error << without.error;
  EXPECT_EQ(with.bns_number, without.bns_number);
  EXPECT_EQ(with.operations.size(), without.operations.size());
}

}  // namespace
}  // namespace velmoria

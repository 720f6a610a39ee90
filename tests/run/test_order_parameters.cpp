// Order parameters of the representations of a run: the copies of the basis functions by row,
// the reality of the representations, the isotropy subgroups of the image on the real carrier
// and the candidate structure of each direction.  The symmetry of every candidate is checked
// here by moving its atoms and moments directly (no use of the library's own action).  Then
// every known control file, analysed, and run again after others and in threads.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "magnetic/structures.hpp"
#include "run/order_parameters.hpp"
#include "run/run_driver.hpp"
#include "run/run_state.hpp"
#include "support/numeric.hpp"
#include "symmetry/records.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using Cd = std::complex<double>;
using test_structures::det;
using test_structures::diagonal;
using test_structures::frac;
using test_structures::keeps;
constexpr double two_pi = 2.0 * std::numbers::pi;

struct Case {
  Run_Output out;
  Magnetic_Candidates mc;
};

Case analyse(const std::string& text) {
  Case c{run_velmoria({"op", text, ""}), {}};
  c.mc = magnetic_candidates(*c.out.state);
  return c;
}

// The periods q_i of k = p_i / q_i along the axes: the isotropy subgroups list their
// translations modulo diag(q).
std::array<int, 3> periods(const Run_State& rs) {
  std::array<int, 3> q{};
  for (int i = 0; i < 3; ++i) {
    q[i] = 1;
    while (!(std::abs(rs.sv.vk[i] * q[i] - std::round(rs.sv.vk[i] * q[i])) < 1e-3)) ++q[i];
  }
  return q;
}

using Op_Key = std::tuple<int, int, int, int, bool>;  // operator, translation in 24ths, tr

Op_Key key_of(const Isotropy_Operation& op) {
  return {op.op, static_cast<int>(std::lround(op.translation[0] * 24)),
          static_cast<int>(std::lround(op.translation[1] * 24)),
          static_cast<int>(std::lround(op.translation[2] * 24)), op.time_reversal};
}

// Every operation of the parent group with the translations of the cell and time reversal.
template <typename Visit>
void every_operation(const Run_State& rs, const std::array<int, 3>& q, bool polar, Visit visit) {
  const auto& symop = rs.store.spg.symop;
  for (std::size_t o = 0; o < symop.size(); ++o)
    for (int a = 0; a < q[0]; ++a)
      for (int b = 0; b < q[1]; ++b)
        for (int c = 0; c < q[2]; ++c)
          for (int tr = 0; tr < (polar ? 1 : 2); ++tr) {
            Isotropy_Operation op;
            op.op = static_cast<int>(o) + 1;
            op.time_reversal = tr == 1;
            const std::array<int, 3> t{a, b, c};
            for (int i = 0; i < 3; ++i) {
              op.translation[i] = std::fmod(symop[o].tr[i] + t[i] + 4.0 * q[i], q[i]);
            }
            visit(op);
          }
}

// Each direction's candidate is kept by exactly the operations of its isotropy subgroup.
void expect_exact_isotropy(const Case& c, const std::string& label) {
  const Run_State& rs = *c.out.state;
  for (const Physical_Irrep& pi : c.mc.irreps) {
    for (const Order_Parameter_Direction& dir : pi.directions) {
      std::set<Op_Key> listed;
      for (const Isotropy_Operation& op : dir.isotropy) listed.insert(key_of(op));
      EXPECT_EQ(listed.size(), dir.isotropy.size()) << label << ": an operation twice";
      int kept = 0;
      every_operation(rs, periods(rs), c.mc.polar, [&](const Isotropy_Operation& op) {
        const bool k = keeps(dir.structure, rs.store.spg.symop[op.op - 1].rot, op.translation,
                             op.time_reversal, c.mc.polar);
        kept += k ? 1 : 0;
        EXPECT_EQ(k, listed.count(key_of(op)) == 1)
            << label << " IR" << pi.nu << " " << dir.notation << " operator " << op.op << " tr "
            << op.time_reversal;
      });
      EXPECT_EQ(kept, static_cast<int>(dir.isotropy.size())) << label << " " << dir.notation;
    }
  }
}

// The rule of the real dimension: d when k is equivalent to -k and the representation is of
// real type, 2d otherwise; the last direction is the whole real carrier.
void expect_real_dimension_rule(const Case& c, const std::string& label) {
  ASSERT_TRUE(c.mc.unsupported.empty()) << label << ": " << c.mc.unsupported;
  for (const Physical_Irrep& pi : c.mc.irreps) {
    const bool real = pi.k_equiv_mk && pi.indicator == 1;
    EXPECT_EQ(pi.real_dimension, real ? pi.dimension : 2 * pi.dimension) << label << " IR" << pi.nu;
    ASSERT_FALSE(pi.directions.empty()) << label;
    EXPECT_EQ(pi.directions.back().dimension, pi.real_dimension) << label << " IR" << pi.nu;
  }
}

Cd element(const lorsk_proc& st, int a, int b, int nu, int g) {
  return std::polar(static_cast<double>(st.repr(a, b, nu, g)),
                    two_pi * static_cast<double>(st.repi(a, b, nu, g)));
}

// Whether every character of representation nu of the little group is real.
bool characters_real(const lorsk_proc& st, int nu) {
  for (int g = 1; g <= st.ngk; ++g) {
    Cd chi = 0.0;
    for (int a = 1; a <= st.idim[nu - 1]; ++a) chi += element(st, a, a, nu, g);
    if (std::abs(chi.imag()) > 1e-3) return false;
  }
  return true;
}

// O_g psi_a = Sum_c D_ca(g) psi_c for every operator of the little group and every copy, with
// O_g moving the vector on atom i to atom iperm(g,i), turned by the vector representation and
// multiplied by exp(-2 pi i k.R), R the returning vector.
void expect_rows_transform_by_d(const Case& c, const std::string& label) {
  const Run_State& rs = *c.out.state;
  const lorsk_proc& st = rs.store;
  const Vec3& k = rs.sv.vk;
  for (const Physical_Irrep& pi : c.mc.irreps) {
    const int d = pi.dimension;
    for (const Basis_Copy& copy : pi.basis_copies) {
      const Site_Representation& rep = rs.analyses[copy.site - 1].rep;
      ASSERT_EQ(static_cast<int>(copy.rows.size()), d);
      for (int g = 1; g <= st.ngk; ++g) {
        for (int a = 0; a < d; ++a) {
          std::vector<Cd> moved(copy.rows[a].size());
          for (int i = 1; i <= rep.mult; ++i) {
            const Vec3& r = rep.ret(g, i);
            const double kr = k[0] * std::round(6.0 * r[0]) / 6.0 +
                              k[1] * std::round(6.0 * r[1]) / 6.0 +
                              k[2] * std::round(6.0 * r[2]) / 6.0;
            const Cd ph = std::polar(1.0, -two_pi * kr);
            const int l = rep.iperm(g, i);
            for (int x = 0; x < 3; ++x)
              for (int y = 0; y < 3; ++y)
                moved[3 * (l - 1) + x] += static_cast<double>(rep.ivrep[g - 1][x][y]) *
                                          copy.rows[a][3 * (i - 1) + y] * ph;
          }
          for (std::size_t n = 0; n < moved.size(); ++n) {
            Cd expected = 0.0;
            for (int e = 0; e < d; ++e)
              expected += element(st, e + 1, a + 1, pi.nu, g) * copy.rows[e][n];
            ASSERT_LT(std::abs(moved[n] - expected), 2.0e-4)
                << label << " IR" << pi.nu << " op " << g << " row " << a + 1;
          }
        }
      }
    }
  }
}

const Physical_Irrep* irrep_where(const Magnetic_Candidates& mc, auto pred) {
  for (const Physical_Irrep& pi : mc.irreps)
    if (pred(pi)) return &pi;
  return nullptr;
}

const char* mnf2 =
    "TITLE  MnF2\nSPGR  P 42/m n m\nKVEC  0.0 0.0 0.0  GM\nVMODE AXI\n"
    "ATOM  Mn  MN  0.00000  0.00000  0.00000\n";

// MnF2: moments +c on Mn at (0,0,0) and -c at (1/2,1/2,1/2).  By hand, an operator (R,t) of
// P 42/m n m keeps the atom when t = 0 and swaps the two when t = (1/2,1/2,1/2); the moment
// along c becomes det(R) R_33 m_z, with a minus sign more for a swap.  Where the product is -1
// time reversal restores the arrangement.  So the four-fold screw (R_33 = 1, det 1, swap)
// comes with time reversal: 4_2'.
TEST(OrderParameters, MnF2MomentsAlongC) {
  const Case c = analyse(mnf2);
  const Physical_Irrep* pi = irrep_where(c.mc, [](const Physical_Irrep& p) {
    if (p.dimension != 1 || p.basis_copies.size() != 1) return false;
    const auto& psi = p.basis_copies[0].rows[0];
    return std::abs(psi[0]) + std::abs(psi[1]) + std::abs(psi[3]) + std::abs(psi[4]) < 1e-9 &&
           std::abs(psi[2] + psi[5]) < 1e-9 && std::abs(psi[2]) > 0.5;
  });
  ASSERT_NE(pi, nullptr);
  EXPECT_EQ(pi->indicator, 1);
  EXPECT_EQ(pi->real_dimension, 1);
  ASSERT_EQ(pi->directions.size(), 1U);
  const Order_Parameter_Direction& dir = pi->directions[0];
  EXPECT_EQ(dir.notation, "(a)");
  const auto& symop = c.out.state->store.spg.symop;
  ASSERT_EQ(symop.size(), 16U);
  ASSERT_EQ(dir.isotropy.size(), 16U);
  for (const Isotropy_Operation& op : dir.isotropy) {
    const Sym_Oper_Type& s = symop[op.op - 1];
    const bool swap = std::abs(frac(s.tr[0]) - 0.5) < 1e-6;
    const int sign = det(s.rot) * s.rot[2][2] * (swap ? -1 : 1);
    EXPECT_EQ(op.time_reversal, sign == -1) << "operator " << op.op;
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(op.translation[i], frac(s.tr[i]), 1e-6);
  }
  // The candidate: Mn at the origin +c, at the centre -c.
  const Candidate_Structure& cs = dir.structure;
  for (std::size_t i = 0; i < cs.positions.size(); ++i) {
    const double mz = cs.positions[i][0] < 1e-6 ? 1.0 : -1.0;
    EXPECT_NEAR(cs.moments[i][2], mz, 1e-9);
  }
}

// P 4/m m m, one atom at the origin, k = 0: the moments in the plane carry the two-dimensional
// representation (E_g).  Its image is the square's group of order 8 (the two-fold axis along
// c and time reversal both act as -1); the directions are along an axis, along a diagonal and
// general, with isotropy subgroups of 32 / 8 * 2 = 8, 8 and 32 / 8 = 4 operations.
TEST(OrderParameters, TwoDimensionalRepresentationHasThreeDirections) {
  const Case c = analyse("SPGR P 4/m m m\nKVEC 0 0 0 GM\nVMODE AXI\nATOM Fe FE 0 0 0\n");
  const Physical_Irrep* pi =
      irrep_where(c.mc, [](const Physical_Irrep& p) { return p.dimension == 2; });
  ASSERT_NE(pi, nullptr);
  EXPECT_EQ(pi->indicator, 1);
  EXPECT_EQ(pi->real_dimension, 2);
  EXPECT_EQ(pi->image_order, 8);
  ASSERT_EQ(pi->directions.size(), 3U);
  const std::vector<std::string> notations = {"(a,0)", "(a,a)", "(a,b)"};
  const std::vector<std::size_t> orders = {8, 8, 4};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(pi->directions[i].notation, notations[i]);
    EXPECT_EQ(pi->directions[i].isotropy.size(), orders[i]);
    EXPECT_EQ(pi->directions[i].dimension, i == 2 ? 2 : 1);
  }
  // In the plane: (a,0) has its moments along a or b, (a,a) along a diagonal.
  for (std::size_t i = 0; i < 2; ++i) {
    const Vec3d& m = pi->directions[i].structure.moments[0];
    EXPECT_NEAR(m[2], 0.0, 1e-9);
    EXPECT_NEAR(i == 0 ? std::abs(m[0]) * std::abs(m[1]) : std::abs(m[0]) - std::abs(m[1]), 0.0,
                1e-9);
  }
}

// The arrangements Re(eta psi_a(j) exp(-2 pi i k.R_L)) of one copy, eta = 1 and i, built here
// on the cell of the candidates.
std::vector<Candidate_Structure> carrier_arrangements(const Run_State& rs, const Physical_Irrep& pi,
                                                      const std::array<int, 3>& q) {
  std::vector<Candidate_Structure> out;
  const Basis_Copy& copy = pi.basis_copies[0];
  const Site& site = rs.sv.sites[copy.site - 1];
  const Vec3& k = rs.sv.vk;
  for (std::size_t a = 0; a < copy.rows.size(); ++a) {
    for (Cd eta : {Cd(1, 0), Cd(0, 1)}) {
      Candidate_Structure cs;
      cs.cell = diagonal(q);
      for (int l1 = 0; l1 < q[0]; ++l1)
        for (int l2 = 0; l2 < q[1]; ++l2)
          for (int l3 = 0; l3 < q[2]; ++l3)
            for (int j = 0; j < site.mult; ++j)
              for (const Vec3& tau : rs.store.spg.latt_trans) {
                const Vec3d lv{tau[0] + l1, tau[1] + l2, tau[2] + l3};
                const Cd ph =
                    std::polar(1.0, -two_pi * (k[0] * lv[0] + k[1] * lv[1] + k[2] * lv[2]));
                Vec3d pos{}, m{};
                for (int r = 0; r < 3; ++r) {
                  pos[r] = frac((site.x[j][r] + lv[r]) / q[r]);
                  m[r] = (eta * copy.rows[a][3 * j + r] * ph).real();
                }
                cs.positions.push_back(pos);
                cs.moments.push_back(m);
                cs.types.push_back(1);
              }
      out.push_back(std::move(cs));
    }
  }
  return out;
}

// Several crystal systems, centred lattices, k not equivalent to -k, anti-translations and
// displacements: the rows transform by D, the real dimension follows the rule (2d for k not
// equivalent to -k), the isotropy of every candidate is exact, and the general direction's
// isotropy subgroup is the kernel of the action on the carrier (the operations that keep every
// arrangement of a copy).
// The cell of a candidate is the lattice L of the whole vectors t with k.t whole: each edge is
// in L, and its volume (when given) is the index of L, the least common multiple of the
// denominators of k: for k = (1/2,1/2,1/2) that is 2, not the 8 of the cell 2a, 2b, 2c.  It
// holds every atom of the sites once for each centring and each parent cell within it.
TEST(OrderParameters, PropertiesAcrossCrystalSystems) {
  const struct {
    std::string text;
    int volume;  // 0: not checked
    bool kernel;
  } cases[] = {
      {mnf2, 1, true},
      {"SPGR P 4/m m m\nKVEC 0 0 0.3333333 DT\nVMODE AXI\nATOM Fe FE 0 0 0\n", 3, true},
      {"SPGR P m m m\nKVEC 0.5 0 0 X\nVMODE AXI\nATOM Fe FE 0 0 0\n", 2, true},
      {"SPGR P m -3 m\nKVEC 0.5 0.5 0.5 R\nVMODE POL\nATOM F F 0.5 0 0\n", 2, false},
      {"SPGR P m -3 m\nKVEC 0.5 0.5 0 M\nVMODE AXI\nATOM Fe FE 0 0 0\n", 2, false},
      {"SPGR P 21/c\nKVEC 0.5 0 0.5 E\nVMODE AXI\nATOM Fe FE 0.1 0.2 0.3\n", 2, false},
      {"SPGR I 4/m m m\nKVEC 0 0 1 X\nVMODE AXI\nATOM Fe FE 0 0 0\n", 1, false},
      {"SPGR R -3 c\nKVEC 0 0 0 GM\nVMODE AXI\nATOM Fe FE 0.0 0.0 0.3553\n", 0, false},
      {"SPGR F m -3 m\nKVEC 1 0 0 X\nVMODE AXI\nATOM Fe FE 0 0 0\n", 0, false},
      {"SPGR P 63/m m c\nKVEC 0.3333333 0.3333333 0 K\nVMODE AXI\nATOM Fe FE 0.3333333 "
       "0.6666667 0.25\n",
       3, false},
      {"SPGR P n m a\nKVEC 0.25 0 0 DT\nVMODE POL\nATOM Mn MN 0.05 0.25 0.98\n", 4, false},
      {"SPGR I a -3 d\nKVEC 0.3333333 0.3333333 0 K\nVMODE AXI\nATOM Mn MN 0 0 0\n", 3, false},
      {"SPGR P 21 3\nKVEC 0 0 0.5 Z\nVMODE AXI\nATOM Mn MN 0 0 0\n", 2, false},
  };
  for (const auto& [text, volume, kernel] : cases) {
    const Case c = analyse(text);
    ASSERT_TRUE(c.mc.unsupported.empty()) << text << c.mc.unsupported;
    ASSERT_FALSE(c.mc.irreps.empty()) << text;
    expect_rows_transform_by_d(c, text);
    expect_real_dimension_rule(c, text);
    expect_exact_isotropy(c, text);
    const Run_State& rs = *c.out.state;
    std::size_t atoms = 0;
    for (const Site& site : rs.sv.sites) atoms += site.x.size();
    const std::size_t centrings = std::max<std::size_t>(rs.store.spg.latt_trans.size(), 1);
    for (const Physical_Irrep& pi : c.mc.irreps) {
      EXPECT_GT(pi.copies, 0);
      for (const auto& dir : pi.directions) {
        const Candidate_Structure& cs = dir.structure;
        EXPECT_EQ(dir.free_parameters, dir.dimension * pi.copies);
        EXPECT_TRUE(cs.moments.size() == cs.positions.size() &&
                    cs.types.size() == cs.positions.size() &&
                    cs.labels.size() == cs.positions.size());
        for (int j = 0; j < 3; ++j) {
          double kt = 0;
          for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(cs.cell[i][j], std::round(cs.cell[i][j]), 1e-12) << text;
            kt += rs.sv.vk[i] * cs.cell[i][j];
          }
          EXPECT_NEAR(kt, std::round(kt), 1e-5) << text << " edge " << j;
        }
        if (volume == 0) continue;
        EXPECT_NEAR(std::abs(det(cs.cell)), volume, 1e-9) << text;
        std::size_t of_sites = 0;
        for (int t : cs.types) of_sites += t > 0 ? 1 : 0;
        EXPECT_EQ(of_sites, atoms * centrings * static_cast<std::size_t>(volume)) << text;
      }
      if (!kernel) continue;
      std::set<Op_Key> listed, kept_by_all;
      for (const Isotropy_Operation& op : pi.directions.back().isotropy) listed.insert(key_of(op));
      const auto arrangements = carrier_arrangements(rs, pi, periods(rs));
      every_operation(rs, periods(rs), c.mc.polar, [&](const Isotropy_Operation& op) {
        bool all = true;
        for (const Candidate_Structure& cs : arrangements) {
          all = all && keeps(cs, rs.store.spg.symop[op.op - 1].rot, op.translation,
                             op.time_reversal, c.mc.polar);
        }
        if (all) kept_by_all.insert(key_of(op));
      });
      EXPECT_EQ(listed, kept_by_all) << text << " IR" << pi.nu;
    }
  }
  // k = (0,0,1/3) is not equivalent to -k: every real representation has dimension 2d.
  for (const Physical_Irrep& pi : analyse(cases[1].text).mc.irreps)
    EXPECT_TRUE(!pi.k_equiv_mk && pi.real_dimension == 2 * pi.dimension);
}

// P 2_1/c at k = (1/3,1/3,0), Mn on 2a: the little group is the identity alone, so the Mn at
// (0,0,0) and the Mn at (0,1/2,1/2) have copies of their own.  Inversion takes k to -k; it
// keeps the first Mn and carries the second onto itself moved by (0,-1,-1), a phase of
// exp(-2 pi i / 3).  A cosine wave on the first Mn is centrosymmetric, and so is the second
// Mn's wave when shifted by pi/3.  With the copies turned so that inversion acts on both alike,
// (a) keeps inversion, (ia) keeps it with time reversal and the general direction neither.
TEST(OrderParameters, CopiesOnTwoOrbitsShareTheirDirections) {
  const std::string text =
      "SPGR P 21/c\nKVEC 0.3333333 0.3333333 0 K\nVMODE AXI\nATOM Mn MN 0 0 0\n";
  const Case c = analyse(text);
  ASSERT_EQ(c.mc.irreps.size(), 1U);
  const Physical_Irrep& pi = c.mc.irreps[0];
  EXPECT_EQ(pi.copies, 6);
  const Mat3i minus{{{-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};
  std::vector<std::string> found;
  for (const Order_Parameter_Direction& dir : pi.directions) {
    std::string with = "none";
    for (const Isotropy_Operation& op : dir.isotropy)
      if (op.rotation == minus) with = op.time_reversal ? "1'" : "1";
    found.push_back(dir.notation + " " + with);
  }
  EXPECT_EQ(found, (std::vector<std::string>{"(a) 1", "(ia) 1'", "(a+ib) none"}));
  expect_exact_isotropy(c, text);
}

// Displacements (their isotropy, without time reversal, is checked exactly above): the
// three-dimensional representations of the octahedral rotations have the familiar directions
// of a cubic order parameter.
TEST(OrderParameters, CubicOrderParameterDirections) {
  const Case c = analyse("SPGR P m -3 m\nKVEC 0.5 0.5 0.5 R\nVMODE POL\nATOM F F 0.5 0 0\n");
  const Physical_Irrep* three =
      irrep_where(c.mc, [](const Physical_Irrep& p) { return p.dimension == 3; });
  ASSERT_NE(three, nullptr);
  std::set<std::string> notations;
  for (const auto& dir : three->directions) notations.insert(dir.notation);
  EXPECT_TRUE(notations.count("(a,0,0)") == 1 && notations.count("(a,b,c)") == 1);
}

// The Frobenius-Schur indicator: the one-dimensional representations of P 4 whose character
// at the four-fold axis is i or -i are complex (0) and each other's partner, with conjugate
// matrices.  (The E representation of P 4/m m m is real: see above.)
TEST(OrderParameters, FrobeniusSchurIndicator) {
  const Case p4 = analyse("SPGR P 4\nKVEC 0 0 0 GM\nVMODE AXI\nATOM Fe FE 0.1 0.2 0.3\n");
  const lorsk_proc& st = p4.out.state->store;
  int complex = 0;
  for (const Physical_Irrep& pi : p4.mc.irreps) {
    EXPECT_EQ(pi.indicator == 0, !characters_real(st, pi.nu)) << pi.nu;
    if (pi.indicator != 0) continue;
    ++complex;
    ASSERT_NE(pi.partner, pi.nu);
    const Physical_Irrep* other =
        irrep_where(p4.mc, [&](const Physical_Irrep& p) { return p.nu == pi.partner; });
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->partner, pi.nu);
    for (int g = 1; g <= st.ngk; ++g) {
      EXPECT_LT(std::abs(element(st, 1, 1, pi.partner, g) - std::conj(element(st, 1, 1, pi.nu, g))),
                1e-4);
    }
  }
  EXPECT_EQ(complex, 2);
  expect_real_dimension_rule(p4, "P4");
  // Non-symmorphic groups at the points of the zone boundary where k is equivalent to -k (at R
  // of P b c a the representations are pseudo-real): the indicator is 0 exactly when a
  // character is not real, the real dimension follows it, and the rows transform by D with the
  // phases of the screws and glides.
  int pseudo_real = 0;
  complex = 0;
  for (const char* g : {"P b c a", "P 4/n c c", "P 63/m m c", "P a -3"}) {
    for (const char* k : {"0.5 0 0", "0 0 0.5", "0.5 0.5 0", "0 0.5 0.5", "0.5 0.5 0.5"}) {
      const std::string text =
          std::string("SPGR ") + g + "\nKVEC " + k + "\nVMODE AXI\nATOM Fe FE 0.1 0.2 0.3\n";
      const Case c = analyse(text);
      for (const Physical_Irrep& pi : c.mc.irreps) {
        EXPECT_EQ(pi.indicator == 0, !characters_real(c.out.state->store, pi.nu)) << text << pi.nu;
        pseudo_real += pi.indicator == -1 ? 1 : 0;
        complex += pi.indicator == 0 ? 1 : 0;
      }
      expect_real_dimension_rule(c, text);
      expect_rows_transform_by_d(c, text);
    }
  }
  EXPECT_GT(pseudo_real, 0);
  EXPECT_GT(complex, 0);
}

// What is not computed: a sentence instead, and no crash.  The run keeps 1/16 as read, so the
// denominator seen is 16.
TEST(OrderParameters, UnsupportedInputGivesASentence) {
  const std::pair<const char*, const char*> cases[] = {
      {"SPGR P m m m\nKVEC 0.13 0 0 DT\nVMODE AXI\nATOM Fe FE 0 0 0\n", "incommensurate"},
      {"SPGR P m m m\nKVEC 0.0625 0 0 DT\nVMODE AXI\nATOM Fe FE 0 0 0\n", "above 12"},
      {"SPGR P 1\nKVEC 0.5 half 0 X\n", "stopped early"},
      {"SPGR P m m m\nKVEC 0 0 0 GM\n", "no analysed sites"},
  };
  for (const auto& [text, words] : cases) {
    const Case c = analyse(text);
    EXPECT_NE(c.mc.unsupported.find(words), std::string::npos) << text << c.mc.unsupported;
    EXPECT_TRUE(c.mc.irreps.empty());
  }
  EXPECT_FLOAT_EQ(analyse(cases[1].first).out.state->sv.vk[0], 0.0625f);
}

struct Control_File {
  std::string name, text;
};

// The control files of the examples and of the end-to-end cases, and with fuzz those of the
// fuzzers' run corpus too.
std::vector<Control_File> control_files(bool fuzz) {
  namespace fs = std::filesystem;
  const fs::path root(VELMORIA_SOURCE_DIR);
  std::vector<fs::path> dirs{root / "examples", root / "tests" / "e2e" / "cases"};
  if (fuzz) dirs.push_back(root / "tests" / "fuzz_corpus" / "run");
  std::vector<Control_File> files;
  for (const fs::path& dir : dirs) {
    for (const auto& entry : fs::directory_iterator(dir)) {
      if (dir.filename() != "run" && entry.path().extension() != ".vrn") continue;
      std::ifstream in(entry.path(), std::ios::binary);
      std::ostringstream text;
      text << in.rdbuf();
      files.push_back({entry.path().stem().string(), text.str()});
    }
  }
  return files;
}

// Every known control file: either a sentence says why nothing was computed, or every
// representation follows the rule of the real dimension.
TEST(OrderParameters, EveryKnownControlFileIsHandled) {
  const std::vector<Control_File> files = control_files(true);
  int computed = 0;
  for (const Control_File& f : files) {
    const Case c = analyse(f.text);
    if (c.mc.unsupported.empty()) {
      ++computed;
      expect_real_dimension_rule(c, f.name);
    } else {
      EXPECT_TRUE(c.mc.irreps.empty()) << f.name;
    }
  }
  EXPECT_GT(files.size(), 20U);
  EXPECT_GT(computed, 5);
}

std::string outputs(const Control_File& c) {
  const Run_Output out = run_velmoria({c.name, c.text, ""});
  return out.console + '\f' + out.result + '\f' + out.block;
}

// All runs one after another in one thread, first to last or last to first.
std::vector<std::string> in_sequence(const std::vector<Control_File>& files, bool backwards) {
  std::vector<std::string> out(files.size());
  for (std::size_t n = 0; n < files.size(); ++n) {
    const std::size_t i = backwards ? files.size() - 1 - n : n;
    out[i] = outputs(files[i]);
  }
  return out;
}

// A run leaves nothing behind: the same control files give byte-identical outputs run alone
// (each in a thread of its own, which starts with the library's initial state), one after
// another in either order, and in two threads at once.
TEST(RunIsolation, OutputsDoNotDependOnWhatRanBefore) {
  const std::vector<Control_File> files = control_files(false);
  ASSERT_GE(files.size(), 8u);
  std::vector<std::string> reference(files.size());
  for (std::size_t i = 0; i < files.size(); ++i) {
    std::thread([&, i] { reference[i] = outputs(files[i]); }).join();
  }
  // A thread whose library state a caller has disturbed: another tolerance, error flags set,
  // hexagonal axes and a centred lattice left over.
  set_epsg_sp(0.1f);
  set_err_symm("left over");
  err_mathgen = true;
  hexa = true;
  nlat = 2;
  lat_ch = 'I';
  EXPECT_EQ(in_sequence(files, false), reference);
  EXPECT_EQ(epss_val(), 0.1f);  // the caller's tolerance is given back
  set_epsg_default();
  EXPECT_EQ(in_sequence(files, true), reference);

  std::vector<std::string> first, second;
  std::thread a([&] { first = in_sequence(files, false); });
  std::thread b([&] { second = in_sequence(files, true); });
  a.join();
  b.join();
  EXPECT_EQ(first, reference);
  EXPECT_EQ(second, reference);
}

}  // namespace
}  // namespace velmoria

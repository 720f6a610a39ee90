// Order parameters of the representations of a run: the copies of the basis functions by row,
// the reality of the representations, the isotropy subgroups of the image on the real carrier
// and the candidate structure of each direction.  The symmetry of every candidate is checked
// here by moving its atoms and moments directly (no use of the library's own action).
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <filesystem>
#include <fstream>
#include <map>
#include <numbers>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "run/order_parameters.hpp"
#include "run/run_driver.hpp"
#include "run/run_state.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using Cd = std::complex<double>;
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

const Run_State& state(const Case& c) {
  return *c.out.state;
}

int det(const Mat3i& r) {
  return r[0][0] * (r[1][1] * r[2][2] - r[1][2] * r[2][1]) -
         r[0][1] * (r[1][0] * r[2][2] - r[1][2] * r[2][0]) +
         r[0][2] * (r[1][0] * r[2][1] - r[1][1] * r[2][0]);
}

double wrap(double x) {
  return x - std::floor(x + 1.0e-7);
}

std::array<Vec3d, 3> diagonal(const std::array<int, 3>& q) {
  return {Vec3d{double(q[0]), 0, 0}, Vec3d{0, double(q[1]), 0}, Vec3d{0, 0, double(q[2])}};
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

// Whether the operation (rot, translation in parent coordinates, time reversal) carries the
// periodic structure onto itself: the lattice of its cell onto itself, and every atom onto an
// atom of its type, with the moment turned by the rotation (times its determinant for
// moments), reversed by time reversal.
bool keeps(const Candidate_Structure& cs, const Mat3i& rot, const Vec3d& translation, bool tr,
           bool polar) {
  const int s = (polar ? 1 : det(rot)) * (tr ? -1 : 1);
  // The rotation must carry the lattice of the cell onto itself: C^-1 R C whole.
  const std::array<Vec3d, 3> to_cell = inverse(cs.cell);
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) {
      double v = 0;
      for (int a = 0; a < 3; ++a)
        for (int b = 0; b < 3; ++b) v += to_cell[i][a] * rot[a][b] * cs.cell[b][j];
      if (std::abs(v - std::round(v)) > 1.0e-6) return false;
    }
  for (std::size_t i = 0; i < cs.positions.size(); ++i) {
    Vec3d y{}, m{};
    Vec3d x{};  // the atom in the parent's coordinates
    for (int r = 0; r < 3; ++r)
      for (int c = 0; c < 3; ++c) x[r] += cs.cell[r][c] * cs.positions[i][c];
    Vec3d z{};
    for (int r = 0; r < 3; ++r) {
      z[r] = translation[r];
      for (int c = 0; c < 3; ++c) {
        z[r] += rot[r][c] * x[c];
        m[r] += s * rot[r][c] * cs.moments[i][c];
      }
    }
    for (int r = 0; r < 3; ++r)
      y[r] = wrap(to_cell[r][0] * z[0] + to_cell[r][1] * z[1] + to_cell[r][2] * z[2]);
    bool found = false;
    for (std::size_t j = 0; j < cs.positions.size() && !found; ++j) {
      if (cs.types[j] != cs.types[i]) continue;
      bool here = true;
      for (int r = 0; r < 3; ++r) {
        const double d = std::abs(wrap(y[r] - cs.positions[j][r] + 0.5) - 0.5);
        here = here && d < 1.0e-5;
      }
      if (!here) continue;
      found = true;
      for (int r = 0; r < 3; ++r) {
        if (std::abs(cs.moments[j][r] - m[r]) > 1.0e-4) return false;
      }
    }
    if (!found) return false;
  }
  return true;
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
  const Run_State& rs = state(c);
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
// real type, 2d otherwise.
void expect_real_dimension_rule(const Case& c, const std::string& label) {
  ASSERT_TRUE(c.mc.unsupported.empty()) << label << ": " << c.mc.unsupported;
  for (const Physical_Irrep& pi : c.mc.irreps) {
    const bool real = pi.k_equiv_mk && pi.indicator == 1;
    EXPECT_EQ(pi.real_dimension, real ? pi.dimension : 2 * pi.dimension) << label << " IR" << pi.nu;
  }
}

Cd element(const lorsk_proc& st, int a, int b, int nu, int g) {
  return std::polar(static_cast<double>(st.repr(a, b, nu, g)),
                    two_pi * static_cast<double>(st.repi(a, b, nu, g)));
}

// O_g psi_a = Sum_c D_ca(g) psi_c for every operator of the little group and every copy, with
// O_g moving the vector on atom i to atom iperm(g,i), turned by the vector representation and
// multiplied by exp(-2 pi i k.R), R the returning vector.
void expect_rows_transform_by_d(const Case& c, const std::string& label) {
  const Run_State& rs = state(c);
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
  ASSERT_TRUE(c.mc.unsupported.empty()) << c.mc.unsupported;
  EXPECT_FALSE(c.mc.polar);
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
  EXPECT_EQ(dir.free_parameters, 1);
  const auto& symop = state(c).store.spg.symop;
  ASSERT_EQ(symop.size(), 16U);
  ASSERT_EQ(dir.isotropy.size(), 16U);
  std::set<int> seen;
  bool screw = false;
  for (const Isotropy_Operation& op : dir.isotropy) {
    seen.insert(op.op);
    const Sym_Oper_Type& s = symop[op.op - 1];
    const bool swap = std::abs(wrap(s.tr[0]) - 0.5) < 1e-6;
    const int sign = det(s.rot) * s.rot[2][2] * (swap ? -1 : 1);
    EXPECT_EQ(op.time_reversal, sign == -1) << "operator " << op.op;
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(op.translation[i], wrap(s.tr[i]), 1e-6);
    const Mat3i four{{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}};
    if (s.rot == four) {
      screw = true;
      EXPECT_TRUE(swap);
      EXPECT_TRUE(op.time_reversal);
    }
  }
  EXPECT_TRUE(screw);
  EXPECT_EQ(seen.size(), 16U);
  // The candidate: the two Mn with opposite moments along c, and marker atoms without moment.
  const Candidate_Structure& cs = dir.structure;
  EXPECT_EQ(cs.cell, diagonal({1, 1, 1}));
  int mn = 0;
  for (std::size_t i = 0; i < cs.positions.size(); ++i) {
    if (cs.types[i] == 0) {
      EXPECT_EQ(cs.moments[i], (Vec3d{0, 0, 0}));
      continue;
    }
    ++mn;
    const bool origin = std::abs(cs.positions[i][0]) < 1e-6;
    EXPECT_NEAR(cs.moments[i][2], origin ? 1.0 : -1.0, 1e-9);
    EXPECT_NEAR(std::abs(cs.moments[i][0]) + std::abs(cs.moments[i][1]), 0.0, 1e-9);
    EXPECT_EQ(cs.labels[i].substr(0, 3), "Mn_");
  }
  EXPECT_EQ(mn, 2);
  EXPECT_EQ(cs.positions.size(), 2U + 16U);
  // A tetragonal metric: a = b, all angles 90 degrees.
  const auto dotp = [&](int i, int j) {
    return cs.lattice[i][0] * cs.lattice[j][0] + cs.lattice[i][1] * cs.lattice[j][1] +
           cs.lattice[i][2] * cs.lattice[j][2];
  };
  EXPECT_NEAR(dotp(0, 0), dotp(1, 1), 1e-9);
  EXPECT_NEAR(dotp(0, 1), 0.0, 1e-9);
  EXPECT_NEAR(dotp(0, 2), 0.0, 1e-9);
  EXPECT_NEAR(dotp(1, 2), 0.0, 1e-9);
  expect_exact_isotropy(c, "MnF2");
  expect_rows_transform_by_d(c, "MnF2");
  expect_real_dimension_rule(c, "MnF2");
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
    const Candidate_Structure& cs = pi->directions[i].structure;
    const Vec3d& m = cs.moments[0];
    EXPECT_NEAR(m[2], 0.0, 1e-9);
    if (i == 0) {
      EXPECT_NEAR(std::abs(m[0]) * std::abs(m[1]), 0.0, 1e-9);
    } else {
      EXPECT_NEAR(std::abs(m[0]), std::abs(m[1]), 1e-9);
    }
  }
  expect_exact_isotropy(c, "P4/mmm E");
  expect_rows_transform_by_d(c, "P4/mmm E");
}

// k = (0,0,1/3) is not equivalent to -k: every real representation has dimension 2d, and the
// isotropy of the directions is exact.
TEST(OrderParameters, KNotEquivalentToMinusKDoublesTheDimension) {
  const Case c = analyse("SPGR P 4/m m m\nKVEC 0 0 0.3333333 DT\nVMODE AXI\nATOM Fe FE 0 0 0\n");
  ASSERT_TRUE(c.mc.unsupported.empty()) << c.mc.unsupported;
  ASSERT_FALSE(c.mc.irreps.empty());
  for (const Physical_Irrep& pi : c.mc.irreps) {
    EXPECT_FALSE(pi.k_equiv_mk);
    EXPECT_EQ(pi.real_dimension, 2 * pi.dimension);
    EXPECT_EQ(pi.directions.back().dimension, 2 * pi.dimension);
    EXPECT_EQ(pi.directions.front().structure.cell, diagonal({1, 1, 3}));
  }
  expect_exact_isotropy(c, "k=(0,0,1/3)");
  expect_rows_transform_by_d(c, "k=(0,0,1/3)");
}

// k = (1/2,0,0): the moments change sign from one cell to the next along a, so the translation
// by a with time reversal (an anti-translation) keeps every arrangement.
TEST(OrderParameters, ZoneBoundaryGivesAntiTranslations) {
  const Case c = analyse("SPGR P m m m\nKVEC 0.5 0 0 X\nVMODE AXI\nATOM Fe FE 0 0 0\n");
  ASSERT_TRUE(c.mc.unsupported.empty()) << c.mc.unsupported;
  ASSERT_FALSE(c.mc.irreps.empty());
  const Sym_Oper_Type& first = state(c).store.spg.symop[0];
  ASSERT_EQ(first.rot, (Mat3i{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}));
  for (const Physical_Irrep& pi : c.mc.irreps) {
    for (const Order_Parameter_Direction& dir : pi.directions) {
      EXPECT_EQ(dir.structure.cell, diagonal({2, 1, 1}));
      bool anti = false, plain = false;
      for (const Isotropy_Operation& op : dir.isotropy) {
        if (op.op != 1 || std::abs(op.translation[0] - 1.0) > 1e-9) continue;
        anti = anti || op.time_reversal;
        plain = plain || !op.time_reversal;
      }
      EXPECT_TRUE(anti) << pi.nu << " " << dir.notation;
      EXPECT_FALSE(plain) << pi.nu << " " << dir.notation;
    }
  }
  expect_exact_isotropy(c, "Pmmm X");
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
                  pos[r] = wrap((site.x[j][r] + lv[r]) / q[r]);
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

// The general direction's isotropy subgroup is the kernel of the action on the carrier: the
// operations that keep every arrangement of a copy.
TEST(OrderParameters, GeneralDirectionIsTheKernel) {
  const char* texts[] = {
      mnf2,
      "SPGR P 4/m m m\nKVEC 0 0 0.3333333 DT\nVMODE AXI\nATOM Fe FE 0 0 0\n",
      "SPGR P m m m\nKVEC 0.5 0 0 X\nVMODE AXI\nATOM Fe FE 0 0 0\n",
      "SPGR P 63/m m c\nKVEC 0 0 0 GM\nVMODE AXI\nATOM Fe FE 0.3333333 0.6666667 0.25\n",
      "SPGR P 42/m n m\nKVEC 0 0 0.3333333 DT\nVMODE AXI\nATOM Mn MN 0 0 0\n",
  };
  for (const char* text : texts) {
    const Case c = analyse(text);
    ASSERT_TRUE(c.mc.unsupported.empty()) << c.mc.unsupported;
    const Run_State& rs = state(c);
    for (const Physical_Irrep& pi : c.mc.irreps) {
      const Order_Parameter_Direction& general = pi.directions.back();
      EXPECT_EQ(general.dimension, pi.real_dimension);
      std::set<Op_Key> listed;
      for (const Isotropy_Operation& op : general.isotropy) listed.insert(key_of(op));
      const auto arrangements = carrier_arrangements(rs, pi, periods(rs));
      std::set<Op_Key> kernel;
      every_operation(rs, periods(rs), c.mc.polar, [&](const Isotropy_Operation& op) {
        bool all = true;
        for (const Candidate_Structure& cs : arrangements) {
          all = all && keeps(cs, rs.store.spg.symop[op.op - 1].rot, op.translation,
                             op.time_reversal, c.mc.polar);
        }
        if (all) kernel.insert(key_of(op));
      });
      EXPECT_EQ(listed, kernel) << text << " IR" << pi.nu;
    }
  }
}

// Displacements: no time reversal anywhere; the isotropy subgroups are space groups.
TEST(OrderParameters, PolarVectorsHaveNoTimeReversal) {
  const Case c = analyse("SPGR P m -3 m\nKVEC 0.5 0.5 0.5 R\nVMODE POL\nATOM F F 0.5 0 0\n");
  ASSERT_TRUE(c.mc.unsupported.empty()) << c.mc.unsupported;
  EXPECT_TRUE(c.mc.polar);
  ASSERT_FALSE(c.mc.irreps.empty());
  for (const Physical_Irrep& pi : c.mc.irreps) {
    for (const Order_Parameter_Direction& dir : pi.directions) {
      for (const Isotropy_Operation& op : dir.isotropy) EXPECT_FALSE(op.time_reversal);
    }
  }
  // The three-dimensional representations of the octahedral rotations have the familiar
  // directions of a cubic order parameter, the most symmetric first.
  const Physical_Irrep* three =
      irrep_where(c.mc, [](const Physical_Irrep& p) { return p.dimension == 3; });
  ASSERT_NE(three, nullptr);
  std::set<std::string> notations;
  for (const auto& dir : three->directions) notations.insert(dir.notation);
  EXPECT_TRUE(notations.count("(a,0,0)") == 1 && notations.count("(a,b,c)") == 1);
  expect_exact_isotropy(c, "Pm-3m R polar");
  expect_rows_transform_by_d(c, "Pm-3m R polar");
  expect_real_dimension_rule(c, "Pm-3m R polar");
}

// The Frobenius-Schur indicator: the two-dimensional representation of P 4/m m m at Gamma is
// real (1); the one-dimensional representations of P 4 whose character at the four-fold axis
// is i or -i are complex (0) and each other's partner; at R of P b c a the two-dimensional
// representations have real characters and indicator -1 (pseudo-real).  The indicator is 0
// exactly when some character is not real.
TEST(OrderParameters, FrobeniusSchurIndicator) {
  const auto characters_real = [](const Run_State& rs, int nu) {
    const lorsk_proc& st = rs.store;
    for (int g = 1; g <= st.ngk; ++g) {
      Cd chi = 0.0;
      for (int a = 1; a <= st.idim[nu - 1]; ++a) chi += element(st, a, a, nu, g);
      if (std::abs(chi.imag()) > 1e-3) return false;
    }
    return true;
  };
  const Case e = analyse("SPGR P 4/m m m\nKVEC 0 0 0 GM\nVMODE AXI\nATOM Fe FE 0 0 0\n");
  const Physical_Irrep* two =
      irrep_where(e.mc, [](const Physical_Irrep& p) { return p.dimension == 2; });
  ASSERT_NE(two, nullptr);
  EXPECT_EQ(two->indicator, 1);

  const Case p4 = analyse("SPGR P 4\nKVEC 0 0 0 GM\nVMODE AXI\nATOM Fe FE 0.1 0.2 0.3\n");
  int complex = 0;
  for (const Physical_Irrep& pi : p4.mc.irreps) {
    EXPECT_EQ(pi.indicator == 0, !characters_real(state(p4), pi.nu)) << pi.nu;
    if (pi.indicator != 0) continue;
    ++complex;
    ASSERT_NE(pi.partner, 0);
    EXPECT_NE(pi.partner, pi.nu);
    const Physical_Irrep* other =
        irrep_where(p4.mc, [&](const Physical_Irrep& p) { return p.nu == pi.partner; });
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->partner, pi.nu);
    const lorsk_proc& st = state(p4).store;
    for (int g = 1; g <= st.ngk; ++g) {
      EXPECT_LT(std::abs(element(st, 1, 1, pi.partner, g) - std::conj(element(st, 1, 1, pi.nu, g))),
                1e-4);
    }
  }
  EXPECT_EQ(complex, 2);
  expect_real_dimension_rule(p4, "P4");

  const Case pbca =
      analyse("SPGR P b c a\nKVEC 0.5 0.5 0.5 R\nVMODE AXI\nATOM Fe FE 0.1 0.2 0.3\n");
  ASSERT_FALSE(pbca.mc.irreps.empty());
  for (const Physical_Irrep& pi : pbca.mc.irreps) {
    EXPECT_EQ(pi.dimension, 2);
    EXPECT_EQ(pi.indicator, -1) << pi.nu;
    EXPECT_TRUE(characters_real(state(pbca), pi.nu));
  }
  expect_real_dimension_rule(pbca, "Pbca R");
  expect_rows_transform_by_d(pbca, "Pbca R");
}

// A sweep of non-symmorphic groups over the points of the zone boundary where k is equivalent
// to -k: the indicator is 1, 0 or -1, it is 0 exactly when a character is not real, the real
// dimension follows it, and the rows transform by D with the phases of the screws and glides.
TEST(OrderParameters, RealityAcrossNonSymmorphicGroups) {
  const char* groups[] = {"P 21/c",    "P n m a",    "P b c a", "P 42/m n m",
                          "P 4/n c c", "P 63/m m c", "P a -3",  "P -4 21 c"};
  const char* points[] = {"0.5 0 0", "0 0 0.5", "0.5 0.5 0", "0 0.5 0.5", "0.5 0.5 0.5"};
  int pseudo_real = 0, complex = 0;
  for (const char* g : groups) {
    for (const char* k : points) {
      const std::string text =
          std::string("SPGR ") + g + "\nKVEC " + k + "\nVMODE AXI\nATOM Fe FE 0.1 0.2 0.3\n";
      const Case c = analyse(text);
      ASSERT_TRUE(c.mc.unsupported.empty()) << text;
      const lorsk_proc& st = state(c).store;
      for (const Physical_Irrep& pi : c.mc.irreps) {
        EXPECT_TRUE(pi.k_equiv_mk) << text;
        EXPECT_TRUE(pi.indicator >= -1 && pi.indicator <= 1) << text;
        bool real = true;
        for (int op = 1; op <= st.ngk; ++op) {
          Cd chi = 0.0;
          for (int a = 1; a <= pi.dimension; ++a) chi += element(st, a, a, pi.nu, op);
          real = real && std::abs(chi.imag()) < 1e-3;
        }
        EXPECT_EQ(pi.indicator == 0, !real) << text << " IR" << pi.nu;
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

// Several crystal systems, centred lattices included: the rows transform by D, the real
// dimension follows the rule, and the isotropy of every candidate is exact.
TEST(OrderParameters, PropertiesAcrossCrystalSystems) {
  const char* texts[] = {
      "SPGR P 21/c\nKVEC 0.5 0 0.5 E\nVMODE AXI\nATOM Fe FE 0.1 0.2 0.3\n",
      "SPGR P n m a\nKVEC 0 0 0 GM\nVMODE AXI\nATOM Mn MN 0.05 0.25 0.98\n",
      "SPGR I 4/m m m\nKVEC 0 0 1 X\nVMODE AXI\nATOM Fe FE 0 0 0\n",
      "SPGR P 63/m m c\nKVEC 0 0 0 GM\nVMODE AXI\nATOM Fe FE 0.3333333 0.6666667 0.25\n",
      "SPGR R -3 c\nKVEC 0 0 0 GM\nVMODE AXI\nATOM Fe FE 0.0 0.0 0.3553\n",
      "SPGR F m -3 m\nKVEC 1 0 0 X\nVMODE AXI\nATOM Fe FE 0 0 0\n",
      "SPGR P 42/m n m\nKVEC 0 0 0.5 Z\nVMODE AXI\nATOM Mn MN 0 0 0\n",
      "SPGR P 42/m n m\nKVEC 0 0 0.3333333 DT\nVMODE AXI\nATOM Mn MN 0 0 0\n",
      "SPGR P 63/m m c\nKVEC 0.3333333 0.3333333 0 K\nVMODE AXI\nATOM Fe FE 0.3333333 0.6666667 "
      "0.25\n",
      "SPGR P n m a\nKVEC 0.25 0 0 DT\nVMODE POL\nATOM Mn MN 0.05 0.25 0.98\n",
  };
  for (const char* text : texts) {
    const Case c = analyse(text);
    ASSERT_TRUE(c.mc.unsupported.empty()) << text << c.mc.unsupported;
    ASSERT_FALSE(c.mc.irreps.empty()) << text;
    for (const Physical_Irrep& pi : c.mc.irreps) {
      EXPECT_GT(pi.copies, 0);
      ASSERT_FALSE(pi.directions.empty());
      EXPECT_EQ(pi.directions.back().dimension, pi.real_dimension) << text;
      for (std::size_t i = 1; i < pi.directions.size(); ++i) {
        EXPECT_GE(pi.directions[i - 1].isotropy.size(), pi.directions[i].isotropy.size());
      }
      for (const auto& dir : pi.directions) {
        EXPECT_EQ(dir.free_parameters, dir.dimension * pi.copies);
        EXPECT_EQ(dir.structure.positions.size(), dir.structure.moments.size());
        EXPECT_EQ(dir.structure.positions.size(), dir.structure.types.size());
        EXPECT_EQ(dir.structure.positions.size(), dir.structure.labels.size());
      }
    }
    expect_rows_transform_by_d(c, text);
    expect_real_dimension_rule(c, text);
    expect_exact_isotropy(c, text);
  }
}

// The cell of a candidate is the lattice L of the whole vectors t with k.t whole: each edge
// is in L, and its volume is the index of L, the number of values of k.t modulo 1, that is the
// least common multiple of the denominators of k.  For k = (1/2,1/2,1/2) that is 2, not the 8
// of the cell 2a, 2b, 2c.  It holds every atom of the sites once for each centring and each
// parent cell within it.
TEST(OrderParameters, CellIsTheSmallestOfK) {
  const std::pair<const char*, int> cases[] = {
      {"SPGR P m -3 m\nKVEC 0.5 0.5 0.5 R\nVMODE AXI\nATOM Fe FE 0.1 0.2 0.3\n", 2},
      {"SPGR P 4/m m m\nKVEC 0 0 0.3333333 DT\nVMODE AXI\nATOM Fe FE 0 0 0\n", 3},
      {"SPGR P 63/m m c\nKVEC 0.3333333 0.3333333 0 K\nVMODE AXI\nATOM Fe FE 0.3333333 "
       "0.6666667 0.25\n",
       3},
      {"SPGR P 21/c\nKVEC 0.5 0 0.5 E\nVMODE AXI\nATOM Fe FE 0.1 0.2 0.3\n", 2},
      {"SPGR I 4/m m m\nKVEC 0 0 1 X\nVMODE AXI\nATOM Fe FE 0 0 0\n", 1},
      {"SPGR P n m a\nKVEC 0.25 0 0 DT\nVMODE POL\nATOM Mn MN 0.05 0.25 0.98\n", 4},
      {"SPGR P m -3 m\nKVEC 0.5 0.5 0 M\nVMODE AXI\nATOM Fe FE 0 0 0\n", 2},
  };
  for (const auto& [text, volume] : cases) {
    const Case c = analyse(text);
    ASSERT_TRUE(c.mc.unsupported.empty()) << text << c.mc.unsupported;
    ASSERT_FALSE(c.mc.irreps.empty()) << text;
    const Run_State& rs = state(c);
    std::size_t atoms = 0;
    for (const Site& site : rs.sv.sites) atoms += site.x.size();
    const std::size_t centrings = std::max<std::size_t>(rs.store.spg.latt_trans.size(), 1);
    for (const Physical_Irrep& pi : c.mc.irreps) {
      for (const Order_Parameter_Direction& dir : pi.directions) {
        const std::array<Vec3d, 3>& cell = dir.structure.cell;
        const double d = cell[0][0] * (cell[1][1] * cell[2][2] - cell[1][2] * cell[2][1]) -
                         cell[0][1] * (cell[1][0] * cell[2][2] - cell[1][2] * cell[2][0]) +
                         cell[0][2] * (cell[1][0] * cell[2][1] - cell[1][1] * cell[2][0]);
        EXPECT_NEAR(std::abs(d), volume, 1e-9) << text;
        for (int j = 0; j < 3; ++j) {
          double kt = 0;
          for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(cell[i][j], std::round(cell[i][j]), 1e-12) << text;
            kt += rs.sv.vk[i] * cell[i][j];
          }
          EXPECT_NEAR(kt, std::round(kt), 1e-5) << text << " edge " << j;
        }
        std::size_t of_sites = 0;
        for (int t : dir.structure.types) of_sites += t > 0 ? 1 : 0;
        EXPECT_EQ(of_sites, atoms * centrings * static_cast<std::size_t>(volume)) << text;
      }
    }
  }
}

// Hexagonal axes: the metric that the point group keeps has a = b and gamma = 120 degrees.
TEST(OrderParameters, HexagonalMetric) {
  const Case c =
      analyse("SPGR P 63/m m c\nKVEC 0 0 0 GM\nVMODE AXI\nATOM Fe FE 0.3333333 0.6666667 0.25\n");
  ASSERT_FALSE(c.mc.irreps.empty());
  const auto& l = c.mc.irreps[0].directions[0].structure.lattice;
  const auto dotp = [&](int i, int j) {
    return l[i][0] * l[j][0] + l[i][1] * l[j][1] + l[i][2] * l[j][2];
  };
  EXPECT_NEAR(dotp(0, 0), dotp(1, 1), 1e-9);
  EXPECT_NEAR(dotp(0, 1) / dotp(0, 0), -0.5, 1e-9);
  EXPECT_NEAR(dotp(0, 2), 0.0, 1e-9);
}

// What is not computed: a sentence instead, and no crash.
TEST(OrderParameters, UnsupportedInputGivesASentence) {
  const struct {
    const char* text;
    const char* words;
  } cases[] = {
      {"SPGR P m m m\nKVEC 0.13 0 0 DT\nVMODE AXI\nATOM Fe FE 0 0 0\n", "incommensurate"},
      {"SPGR P 21/c\nKVEC 0.0 0.28 0.0 DT\nVMODE AXI\nATOM Fe FE 0.1 0.2 0.3\n", "incommensurate"},
      {"SPGR P m m m\nKVEC 0.0625 0 0 DT\nVMODE AXI\nATOM Fe FE 0 0 0\n", "above 12"},
      {"SPGR P 1\nKVEC 0.5 half 0 X\n", "stopped early"},
      {"SPGR P m m m\nKVEC 0 0 0 GM\n", "no analysed sites"},
  };
  for (const auto& k : cases) {
    const Case c = analyse(k.text);
    EXPECT_NE(c.mc.unsupported.find(k.words), std::string::npos) << k.text << c.mc.unsupported;
    EXPECT_TRUE(c.mc.irreps.empty());
  }
  // The run keeps 1/16 as read, so the denominator seen is 16.
  const Case c = analyse(cases[2].text);
  EXPECT_FLOAT_EQ(state(c).sv.vk[0], 0.0625f);
}

}  // namespace
}  // namespace velmoria

namespace velmoria {
namespace {

// Every control file of the examples, of the end-to-end cases and of the fuzzers' run corpus:
// either a sentence says why nothing was computed, or every representation has its copies,
// a real dimension of d or 2d, and directions whose last one is the whole carrier.
TEST(OrderParameters, EveryKnownControlFileIsHandled) {
  namespace fs = std::filesystem;
  const fs::path root(VELMORIA_SOURCE_DIR);
  std::vector<fs::path> files;
  for (const fs::path& dir : {root / "examples", root / "tests" / "e2e" / "cases",
                              root / "tests" / "fuzz_corpus" / "run"}) {
    for (const auto& entry : fs::directory_iterator(dir)) {
      const std::string ext = entry.path().extension().string();
      if (dir.filename() == "run" || ext == ".vrn") files.push_back(entry.path());
    }
  }
  ASSERT_GT(files.size(), 20U);
  int computed = 0;
  for (const fs::path& file : files) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    const Case c = analyse(text.str());
    if (!c.mc.unsupported.empty()) {
      EXPECT_TRUE(c.mc.irreps.empty()) << file;
      continue;
    }
    ++computed;
    for (const Physical_Irrep& pi : c.mc.irreps) {
      EXPECT_TRUE(pi.real_dimension == pi.dimension || pi.real_dimension == 2 * pi.dimension)
          << file << " IR" << pi.nu;
      ASSERT_FALSE(pi.directions.empty()) << file;
      EXPECT_EQ(pi.directions.back().dimension, pi.real_dimension) << file;
    }
  }
  EXPECT_GT(computed, 5);
}

}  // namespace
}  // namespace velmoria

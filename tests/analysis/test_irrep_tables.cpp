// The tables of the irreducible representations and the finishing of the store.
//
// The stores below are built by hand for small groups whose projective representations are
// worked out on paper; their translations are given outside [0,1) on purpose, so that the
// correction of the phases has something to do.  The listings themselves are checked by the
// end-to-end cases.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <random>
#include <string>
#include <vector>

#include "analysis/irrep_tables.hpp"
#include "analysis/site_analysis.hpp"
#include "lorsk/group_preparation.hpp"
#include "lorsk/lorsk.hpp"
#include "support/layout.hpp"
#include "symmetry/lattice.hpp"
#include "symmetry/records.hpp"

namespace velmoria {
namespace {

using cplx = std::complex<double>;

struct Run_Tolerance {
  Run_Tolerance() {
    set_epsg_sp(0.002f);
    hexa = false;
  }
  ~Run_Tolerance() {
    set_epsg_default();
    hexa = false;
  }
};

struct Op {
  Mat3i r;
  Vec3 t;
};

// A store of the given operators and dimensions, all matrix elements zero.
lorsk_proc make_store(const std::vector<Op>& ops, const std::vector<int>& dims) {
  lorsk_proc s;
  int dmax = 0;
  for (int d : dims) dmax = std::max(dmax, d);
  s.resize(static_cast<int>(ops.size()), static_cast<int>(dims.size()), dmax);
  for (std::size_t g = 0; g < ops.size(); ++g) {
    s.ir[g] = ops[g].r;
    s.t[g] = ops[g].t;
    s.names[g] = "SYMM_K(" + sput("i2", static_cast<int>(g) + 1) + ")";
  }
  s.idim = dims;
  return s;
}

void set_element(lorsk_proc& s, int a, int b, int nu, int g, float m, float theta) {
  s.repr(a, b, nu, g) = m;
  s.repi(a, b, nu, g) = theta;
}

cplx element(const lorsk_proc& s, int a, int b, int nu, int g) {
  const double arg = 2.0 * M_PI * s.repi(a, b, nu, g);
  return static_cast<double>(s.repr(a, b, nu, g)) * cplx(std::cos(arg), std::sin(arg));
}

// The operator of the store with the rotation r; 0 when there is none.
int find_rotation(const lorsk_proc& s, const Mat3i& r) {
  for (int g = 1; g <= s.ngk; ++g)
    if (s.ir[g - 1] == r) return g;
  return 0;
}

Mat3i mul(const Mat3i& a, const Mat3i& b) {
  Mat3i c{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int l = 0; l < 3; ++l) c[i][j] += a[i][l] * b[l][j];
  return c;
}

// The matrices of the store form a representation of the operators (R, t) of the store with
// the phase convention exp(2 pi i k.L) for a lattice translation L: for every pair g1, g2 the
// product g1 g2 is {1|L} g3, and D(g1) D(g2) = exp(2 pi i k.L) D(g3).
void expect_representation(const lorsk_proc& s, const Vec3& k, char lat = 'P') {
  for (int g1 = 1; g1 <= s.ngk; ++g1) {
    for (int g2 = 1; g2 <= s.ngk; ++g2) {
      const Mat3i& r1 = s.ir[g1 - 1];
      const int g3 = find_rotation(s, mul(r1, s.ir[g2 - 1]));
      ASSERT_NE(g3, 0);
      Vec3 l{};
      double kl = 0.0;
      for (int i = 0; i < 3; ++i) {
        float t = s.t[g1 - 1][i];
        for (int j = 0; j < 3; ++j) t += static_cast<float>(r1[i][j]) * s.t[g2 - 1][j];
        l[i] = t - s.t[g3 - 1][i];
        kl += static_cast<double>(k[i]) * l[i];
      }
      ASSERT_TRUE(lattice_trans(l, lat)) << g1 << " " << g2;
      const cplx factor(std::cos(2.0 * M_PI * kl), std::sin(2.0 * M_PI * kl));
      for (int nu = 1; nu <= s.nreps; ++nu) {
        const int d = s.idim[nu - 1];
        for (int a = 1; a <= d; ++a) {
          for (int b = 1; b <= d; ++b) {
            cplx prod = 0.0;
            for (int c = 1; c <= d; ++c)
              prod += element(s, a, c, nu, g1) * element(s, c, b, nu, g2);
            EXPECT_LT(std::abs(prod - factor * element(s, a, b, nu, g3)), 1e-4)
                << "irrep " << nu << " operators " << g1 << " " << g2;
          }
        }
      }
    }
  }
}

// Characters in the store are the traces of the corrected matrices, as real and imaginary
// parts.
void expect_characters(const lorsk_proc& s) {
  for (int g = 1; g <= s.ngk; ++g) {
    for (int nu = 1; nu <= s.nreps; ++nu) {
      cplx tr = 0.0;
      for (int a = 1; a <= s.idim[nu - 1]; ++a) tr += element(s, a, a, nu, g);
      EXPECT_NEAR(s.chr(nu, g), tr.real(), 1e-5);
      EXPECT_NEAR(s.chi(nu, g), tr.imag(), 1e-5);
    }
  }
}

const Mat3i E{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
const Mat3i C2y{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}};
const Mat3i Inv{{{-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};
const Mat3i My{{{1, 0, 0}, {0, -1, 0}, {0, 0, 1}}};
const Mat3i C4z{{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}};   // -y,x,z
const Mat3i C2z{{{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}}};  // -x,-y,z
const Mat3i C4zm{{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}};  // y,-x,z

// P 21/c at Y, k = (0,1/2,0).  With the translations reduced, {2|0,1/2,1/2} squares to the
// translation (0,1,0), so D(2)^2 = -1, and it anticommutes with the inversion: the one
// irreducible representation has dimension 2,
//   D(2) = diag(i,-i), D(-1) = [[0,1],[1,0]], D(m) = D(2) D(-1) = [[0,i],[-i,0]].
// The store receives operator 2 as -x,y-1/2,-z+1/2 and operator 4 as x,-y+3/2,z+1/2, each a
// lattice translation (0,-1,0) or (0,1,0) away, with its matrix times exp(2 pi i k.L) = -1,
// and the inversion as -x+1,-y,-z, where the factor is 1.
const Vec3 k_y{0.0f, 0.5f, 0.0f};

lorsk_proc p21c_reduced() {
  lorsk_proc s = make_store(
      {{E, {0, 0, 0}}, {C2y, {0, 0.5f, 0.5f}}, {Inv, {0, 0, 0}}, {My, {0, 0.5f, 0.5f}}}, {2});
  set_element(s, 1, 1, 1, 1, 1, 0);
  set_element(s, 2, 2, 1, 1, 1, 0);
  set_element(s, 1, 1, 1, 2, 1, 0.25f);
  set_element(s, 2, 2, 1, 2, 1, 0.75f);
  set_element(s, 1, 2, 1, 3, 1, 0);
  set_element(s, 2, 1, 1, 3, 1, 0);
  set_element(s, 1, 2, 1, 4, 1, 0.25f);
  set_element(s, 2, 1, 1, 4, 1, 0.75f);
  return s;
}

lorsk_proc p21c_as_given() {
  lorsk_proc s = p21c_reduced();
  s.t[1] = {0, -0.5f, 0.5f};
  set_element(s, 1, 1, 1, 2, 1, 0.75f);
  set_element(s, 2, 2, 1, 2, 1, 0.25f);
  s.t[2] = {1, 0, 0};
  set_element(s, 1, 2, 1, 3, 1, 1.0f);  // a phase of a full turn, as the induction may leave
  s.t[3] = {0, 1.5f, 0.5f};
  set_element(s, 1, 2, 1, 4, 1, 0.75f);
  set_element(s, 2, 1, 1, 4, 1, 0.25f);
  return s;
}

// P 41 at k = (0,0,1/2).  The reduced operators are g_j = {4^j|0,0,j/4}, j = 0..3, the powers
// of g_1; g_1^4 is the translation (0,0,1) with the factor -1, so the four representations are
// D_m(g_j) = w_m^j with w_m = exp(2 pi i (2m+1)/8): phases j/8, 3j/8, 5j/8, 7j/8 in turns.
// Operator 4 comes as y,-x,z-1/4, the translation (0,0,-1) away: its phases are shifted by
// half a turn.
const Vec3 k_z{0.0f, 0.0f, 0.5f};

lorsk_proc p41_as_given() {
  lorsk_proc s = make_store(
      {{E, {0, 0, 0}}, {C4z, {0, 0, 0.25f}}, {C2z, {0, 0, 0.5f}}, {C4zm, {0, 0, -0.25f}}},
      {1, 1, 1, 1});
  for (int m = 0; m < 4; ++m) {
    for (int j = 0; j < 4; ++j) {
      float theta = static_cast<float>(((2 * m + 1) * j) % 8) / 8.0f;
      if (j == 3) theta = std::fmod(theta + 0.5f, 1.0f);
      set_element(s, 1, 1, m + 1, j + 1, 1, theta);
    }
  }
  return s;
}

TEST(IrrepTables, CorrectedMatricesRepresentTheReducedOperators) {
  Run_Tolerance tol;
  for (auto [given, k] : {std::pair{p21c_as_given(), k_y}, std::pair{p41_as_given(), k_z}}) {
    // The store as given is a representation of the operators as given.
    expect_representation(given, k);
    std::string out;
    std::vector<std::string> symb;
    std::vector<int> idet;
    write_irreps(out, given, k, false, symb, idet);
    for (const Vec3& t : given.t)
      for (float c : t) {
        EXPECT_GE(c, 0.0f);
        EXPECT_LT(c, 1.0f);
      }
    expect_representation(given, k);
    expect_characters(given);
    for (int g = 1; g <= given.ngk; ++g)
      for (int nu = 1; nu <= given.nreps; ++nu)
        for (int a = 1; a <= given.idim[nu - 1]; ++a)
          for (int b = 1; b <= given.idim[nu - 1]; ++b) {
            EXPECT_GE(given.repi(a, b, nu, g), 0.0f);
            EXPECT_LT(given.repi(a, b, nu, g), 1.0f);
          }
  }
}

// Whatever lattice translation an operator arrives with, the finished store is the same.
TEST(IrrepTables, FinishedStoreDoesNotDependOnTheGivenShifts) {
  Run_Tolerance tol;
  const lorsk_proc reduced = p21c_reduced();
  std::mt19937 gen(7);
  std::uniform_int_distribution<int> shift(-3, 3);
  for (int trial = 0; trial < 20; ++trial) {
    lorsk_proc s = reduced;
    for (int g = 1; g <= s.ngk; ++g) {
      const Vec3 n{static_cast<float>(shift(gen)), static_cast<float>(shift(gen)),
                   static_cast<float>(shift(gen))};
      const float kn = k_y[0] * n[0] + k_y[1] * n[1] + k_y[2] * n[2];
      for (int i = 0; i < 3; ++i) s.t[g - 1][i] += n[i];
      for (int a = 1; a <= 2; ++a)
        for (int b = 1; b <= 2; ++b) s.repi(a, b, 1, g) += kn;  // phases left outside [0,1)
    }
    std::string out;
    std::vector<std::string> symb;
    std::vector<int> idet;
    write_irreps(out, s, k_y, false, symb, idet);
    EXPECT_EQ(s.t, reduced.t);
    for (int g = 1; g <= s.ngk; ++g)
      for (int a = 1; a <= 2; ++a)
        for (int b = 1; b <= 2; ++b)
          EXPECT_LT(std::abs(element(s, a, b, 1, g) - element(reduced, a, b, 1, g)), 1e-5);
    expect_characters(s);
  }
}

// After the induction and write_irreps, for real groups and vectors: the matrices represent
// the operators with reduced translations (a centring vector counting as a lattice vector),
// the characters of different representations are orthogonal, and the squares of the
// dimensions add up to the order of the little group.
TEST(IrrepTables, RepresentationsOfTheInduction) {
  struct Case {
    std::string symbol;
    Vec3 k;
  };
  const std::vector<Case> cases{{"P 21/c", {0.0f, 0.5f, 0.0f}},    {"P 21/c", {0.5f, 0.5f, 0.5f}},
                                {"P 21/c", {0.0f, 0.3f, 0.0f}},    {"P 41", {0.0f, 0.0f, 0.5f}},
                                {"P 63/m", {0.0f, 0.0f, 0.5f}},    {"P n m a", {0.5f, 0.0f, 0.5f}},
                                {"I 41/a", {1.0f, 0.0f, 0.0f}},    {"F d -3 m", {0.0f, 1.0f, 0.0f}},
                                {"P 4/n b m", {0.5f, 0.5f, 0.0f}}, {"R -3 c", {0.0f, 0.0f, 1.5f}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.symbol);
    Run_Tolerance tol;
    lorsk_proc s;
    std::string listing;
    ASSERT_EQ(lorsk(listing, c.k, 0, "GM", c.symbol, 0, false, &c.symbol, s), status_done);
    std::string out;
    std::vector<std::string> symb;
    std::vector<int> idet;
    write_irreps(out, s, c.k, true, symb, idet);
    ASSERT_GT(s.ngk, 0);
    int squares = 0;
    for (int nu = 1; nu <= s.nreps; ++nu) squares += s.idim[nu - 1] * s.idim[nu - 1];
    EXPECT_EQ(squares, s.ngk);
    expect_representation(s, c.k, s.spg.spg_lat);
    for (int mu = 1; mu <= s.nreps; ++mu) {
      for (int nu = 1; nu <= s.nreps; ++nu) {
        cplx sum = 0.0;
        for (int g = 1; g <= s.ngk; ++g)
          sum += std::conj(cplx(s.chr(mu, g), s.chi(mu, g))) * cplx(s.chr(nu, g), s.chi(nu, g));
        EXPECT_NEAR(sum.real(), mu == nu ? s.ngk : 0.0, 1e-3) << mu << " " << nu;
        EXPECT_NEAR(sum.imag(), 0.0, 1e-3);
      }
    }
    expect_characters(s);
  }
}

// The decomposition by characters, on the four complex one-dimensional representations of
// P 41 at (0,0,1/2): a representation whose characters are those of representation nu
// (times 3 for the vector part) contains nu, and only nu, the conjugate one included.
TEST(Decomposition, CharactersOfOneRepresentationGiveItAlone) {
  Run_Tolerance tol;
  lorsk_proc s = p41_as_given();
  std::string out, console, result, block;
  std::vector<std::string> symb(4, "x,y,z");
  std::vector<int> idet(4, 1);
  write_irreps(out, s, k_z, false, symb, idet);
  const Site_Context cx{s, symb, idet, k_z};
  for (int nu = 1; nu <= 4; ++nu) {
    Site_Representation rep;
    rep.resize(4, 1);
    for (int g = 1; g <= 4; ++g) {
      rep.charv[g - 1] = 3.0f;
      rep.charp[g - 1] = s.chr(nu, g);
      rep.charpi[g - 1] = s.chi(nu, g);
    }
    Site_Analysis an;
    decomp(cx, rep, an, Site_Units{console, result, block});
    std::vector<int> once(4, 0), thrice(4, 0);
    once[nu - 1] = 1;
    thrice[nu - 1] = 3;
    EXPECT_EQ(an.ip, once) << nu;
    EXPECT_EQ(an.ia, thrice) << nu;
  }
  EXPECT_EQ(console.find("Warning"), std::string::npos) << console;
}

}  // namespace
}  // namespace velmoria

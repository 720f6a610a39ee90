// The analysis of a site on cases worked by hand, the symbolic writing of coefficients, the
// limits of what the symbolic text can hold, and the finishing of the tables of irreducible
// representations.
//
// The stores of the last tests are built by hand for small groups whose projective
// representations are worked out on paper; their translations are moved outside [0,1) on
// purpose, so that the correction of the phases has something to do.  The listings themselves
// are checked by the end-to-end cases.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <random>
#include <string>
#include <vector>

#include "analysis/fourier_text.hpp"
#include "analysis/irrep_tables.hpp"
#include "analysis/site_analysis.hpp"
#include "lorsk/group_preparation.hpp"
#include "lorsk/lorsk.hpp"
#include "run/run_driver.hpp"
#include "run/run_state.hpp"
#include "support/numeric.hpp"
#include "symmetry/records.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

// One iron atom at the given position, axial or polar vectors.
Run_Output run_site(const std::string& spgr, const std::string& kvec, bool axial,
                    const std::string& atom) {
  return run_velmoria({"t",
                       "SPGR  " + spgr + "\nKVEC  " + kvec + "\n" +
                           (axial ? "VMODE AXI CEL\n" : "VMODE POL CEL\n") + "ATOM  Fe  FE  " +
                           atom + "\n",
                       ""});
}

// Number of the operator of the little group whose rotation is r.
int operator_with(const lorsk_proc& st, const Mat3i& r) {
  for (int g = 1; g <= st.ngk; ++g)
    if (st.ir[g - 1] == r) return g;
  return 0;
}

constexpr Mat3i inversion = {{{-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};

// One atom in P 1 at k = 0: the identity alone, so the three unit vectors are the functions.
TEST(SiteAnalysis, OneAtomInP1) {
  const Run_Output out = run_site("P 1", "0 0 0 GM", true, "0.1 0.2 0.3");
  // The lines that depend on the group and the site; the layout of the block around them is
  // checked by the end-to-end cases.
  const std::vector<std::string> lines = {
      " -> Fe_1    :   0.1000  0.2000  0.3000  : (x,y,z) + (0,0,0)" + std::string(43, ' '),
      " => Basis functions of Representation IRrep(  1) of dimension   1 contained  3 times in "
      "GAMMA",
      "    Number of basis functions:  3",
      "P -1                           <--Space group symbol for hkl generation",
      "     1     1     1    -1     3",
      "  0  0  0",
      "SYMM x,y,z" + std::string(55, ' '),
      "BASR   1  0  0   0  1  0   0  0  1",
      "BASI   0  0  0   0  0  0   0  0  0"};
  for (const std::string& line : lines) EXPECT_TRUE(testing::has_line(out.block, line)) << line;
  const std::string result = out.result;
  EXPECT_NE(result.find("\n -> GAMMA(Magnetic):   3 Irep_k( 1)\n"), std::string::npos);
  EXPECT_NE(result.find("\n BsV(  2, 1: 1):Re (    0    1    0) \n"), std::string::npos);
  EXPECT_NE(result.find("\n       Sk(1): (u,v,w)\n"), std::string::npos);
}

// P -1: the inversion carries an axial vector into itself and a polar one into its negative,
// and an atom it returns by the lattice vector R picks up exp(-2 pi i k.R).  An atom on the
// centre at (1/2,0,0) is returned by R = (1,0,0): one representation holds all three functions,
// that of the character (+-1 for axial or polar) times exp(-2 pi i k.R).  At a general position
// atom 2 at -x is brought into the cell, so the inversion returns it by R = (1,1,1); each
// representation holds three functions, and the sign on atom 2 is that product over the
// character.
TEST(SiteAnalysis, InversionCentre) {
  for (const char* kvec : {"0 0 0 GM", "0.5 0 0 X"}) {
    const float k_sign = std::string(kvec) == "0 0 0 GM" ? 1.0f : -1.0f;
    for (const bool axial : {true, false}) {
      for (const bool centre : {true, false}) {
        SCOPED_TRACE(std::string(kvec) + (axial ? " axial" : " polar") + (centre ? " centre" : ""));
        const Run_Output out = run_site("P -1", kvec, axial, centre ? "0.5 0 0" : "0.1 0.2 0.3");
        const Run_State& rs = *out.state;
        if (!centre) {
          EXPECT_NE(out.result.find("Fe_2      0.9000  0.8000  0.7000"), std::string::npos);
        }
        const int g = operator_with(rs.store, inversion);
        ASSERT_GT(g, 0);
        ASSERT_EQ(rs.analyses.size(), 1u);
        ASSERT_EQ(rs.analyses[0].bases.size(), centre ? 1u : 2u);
        for (const Irrep_Basis& b : rs.analyses[0].bases) {
          EXPECT_EQ(b.nbas(), 3);
          const float sign = rs.store.chr(b.nu, g) * (axial ? 1.0f : -1.0f) * k_sign;
          std::vector<std::string> coefficients = {"Sk(1): (u,v,w)"};
          if (centre) {
            EXPECT_EQ(sign, 1.0f);
          } else {
            coefficients.push_back(sign > 0 ? "Sk(2): (u,v,w)" : "Sk(2): (-u,-v,-w)");
          }
          EXPECT_EQ(b.coefficients, coefficients);
        }
      }
    }
  }
}

// P 1 21 1 at k = (0,0.28,0), displacements: D(2_1) = e exp(i pi 0.28) with e = +1 or -1, and
// atom 2 = 2_1 atom 1 comes back with R = 0, so Sk(2) = e exp(-i pi 0.28) (-u,v,-w):
// r0 = cos(0.28 pi) = 0.637424, r1 = sin(0.28 pi) = 0.770513, theta = -0.14.
TEST(SiteAnalysis, IncommensurateCoefficientAsExponential) {
  const Run_Output out =
      run_velmoria({"t", "SPGR  P 1 21 1\nKVEC  0 0.28 0 DT\nATOM  Co  CO  0.1 0.2 0.3\n", ""});
  const Run_State& rs = *out.state;
  const int g = operator_with(rs.store, {{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}});
  ASSERT_GT(g, 0);
  ASSERT_EQ(rs.analyses.size(), 1u);
  ASSERT_EQ(rs.analyses[0].bases.size(), 2u);
  for (const Irrep_Basis& b : rs.analyses[0].bases) {
    const bool plus = rs.store.chr(b.nu, g) > 0;
    ASSERT_EQ(b.coefficients.size(), 2u);
    EXPECT_EQ(b.coefficients[0], "Sk(1): (u,v,w)");
    EXPECT_EQ(b.coefficients[1],
              plus ? "Sk(2): (r0-i.r1).(-u,v,-w) = (-u,v,-w) . exp{-2.pi.i. 0.1400000}"
                   : "Sk(2): (r0-i.r1).(u,-v,w) = (u,-v,w) . exp{-2.pi.i. 0.1400000}");
    ASSERT_EQ(b.realnum.size(), 2u);
    EXPECT_NEAR(b.realnum[0], std::cos(0.28 * M_PI), 2e-6);
    EXPECT_NEAR(b.realnum[1], std::sin(0.28 * M_PI), 2e-6);
  }
}

TEST(SiteAnalysisLimits, GammaTextKeepsWholeTermsWithinItsLength) {
  EXPECT_EQ(gamma_text({0, 1, 0, 2}, nullptr, 0), "   1 Irep_k( 2) + 2 Irep_k( 4)");
  EXPECT_EQ(gamma_text({0, 0}, nullptr, 0), "");
  const std::vector<std::string> labels = {"GM1+      ", "GM2-      "};
  EXPECT_EQ(gamma_text({1, 1}, &labels, 0), "   1 mGM1+( 1) + 1 mGM2-( 2)");
  EXPECT_EQ(gamma_text({1, 1}, &labels, 1), "   1 GM1+( 1) + 1 GM2-( 2)");
  // 15 columns a term: 34 terms fill 510 of the 512 columns; of 48, 33 and the mark fit.
  EXPECT_EQ(gamma_text(std::vector<int>(34, 1), nullptr, 0).size(), 510u);
  const std::string text = gamma_text(std::vector<int>(48, 1), nullptr, 0);
  EXPECT_LE(text.size(), static_cast<std::size_t>(max_gamma_text));
  EXPECT_EQ(text.substr(text.size() - 19), " + 1 Irep_k(33) ...");
}

using testing::representations_hold;
using testing::Run_Tolerance;
using testing::turns;

struct Op {
  Mat3i r;
  Vec3 t;
};

// A store of the given operators and dimensions, all matrix elements zero.
lorsk_proc make_store(const std::vector<Op>& ops, const std::vector<int>& dims) {
  lorsk_proc s;
  s.resize(static_cast<int>(ops.size()), static_cast<int>(dims.size()),
           *std::max_element(dims.begin(), dims.end()));
  for (std::size_t g = 0; g < ops.size(); ++g) {
    s.ir[g] = ops[g].r;
    s.t[g] = ops[g].t;
  }
  s.idim = dims;
  return s;
}

// The store finished as a run finishes it.
void finish(lorsk_proc& s, const Vec3& k) {
  std::string out;
  std::vector<std::string> symb;
  std::vector<int> idet;
  write_irreps(out, s, k, false, symb, idet);
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
const Vec3 k_y{0.0f, 0.5f, 0.0f};

lorsk_proc p21c_reduced() {
  lorsk_proc s = make_store(
      {{E, {0, 0, 0}}, {C2y, {0, 0.5f, 0.5f}}, {Inv, {0, 0, 0}}, {My, {0, 0.5f, 0.5f}}}, {2});
  // The unit elements: row, column, operator and phase in turns.
  const struct {
    int a, b, g;
    float theta;
  } elements[] = {{1, 1, 1, 0}, {2, 2, 1, 0}, {1, 1, 2, 0.25f}, {2, 2, 2, 0.75f},
                  {1, 2, 3, 0}, {2, 1, 3, 0}, {1, 2, 4, 0.25f}, {2, 1, 4, 0.75f}};
  for (const auto& e : elements) {
    s.repr(e.a, e.b, 1, e.g) = 1;
    s.repi(e.a, e.b, 1, e.g) = e.theta;
  }
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
      s.repr(1, 1, m + 1, j + 1) = 1;
      s.repi(1, 1, m + 1, j + 1) = theta;
    }
  }
  return s;
}

// Whatever lattice translation an operator arrives with (its matrix times exp(2 pi i k.L),
// phases outside [0,1)), the finished store is the same: the reduced operators, represented
// with every phase in [0,1).
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
    finish(s, k_y);
    EXPECT_EQ(s.t, reduced.t);
    EXPECT_TRUE(representations_hold(s, k_y, true));
    for (float phase : s.repi_v) EXPECT_TRUE(phase >= 0.0f && phase < 1.0f) << phase;
    for (int g = 1; g <= s.ngk; ++g)
      for (int a = 1; a <= 2; ++a)
        for (int b = 1; b <= 2; ++b)
          EXPECT_LT(std::abs(turns(s.repr(a, b, 1, g), s.repi(a, b, 1, g)) -
                             turns(reduced.repr(a, b, 1, g), reduced.repi(a, b, 1, g))),
                    1e-5);
  }
}

// The decomposition by characters, on the four complex one-dimensional representations of
// P 41 at (0,0,1/2): a representation whose characters are those of representation nu
// (times 3 for the vector part) contains nu, and only nu, the conjugate one included.
TEST(Decomposition, CharactersOfOneRepresentationGiveItAlone) {
  Run_Tolerance tol;
  lorsk_proc s = p41_as_given();
  finish(s, k_z);
  EXPECT_TRUE(representations_hold(s, k_z, true));
  std::string console, result, block;
  const std::vector<std::string> symb(4, "x,y,z");
  const std::vector<int> idet(4, 1);
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

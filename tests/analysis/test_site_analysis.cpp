// The analysis of a site on cases worked by hand, the symbolic writing of coefficients, and
// the limits of what the symbolic text can hold.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "analysis/fourier_text.hpp"
#include "analysis/site_analysis.hpp"
#include "run/run_driver.hpp"
#include "run/run_state.hpp"
#include "support/numeric.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using testing::lines_of;

Run_Output run_text(const std::string& text) {
  return run_velmoria({"t", text, ""});
}

std::string control(const std::string& spgr, const std::string& kvec, bool axial,
                    const std::string& atom) {
  return "SPGR  " + spgr + "\nKVEC  " + kvec + "\n" +
         (axial ? "VMODE AXI CEL\n" : "VMODE POL CEL\n") + "ATOM  Fe  FE  " + atom + "\n";
}

// Number of the operator of the little group whose rotation is r.
int operator_with(const lorsk_proc& st, const Mat3i& r) {
  for (int g = 1; g <= st.ngk; ++g) {
    if (st.ir[g - 1] == r) return g;
  }
  return 0;
}

constexpr Mat3i inversion = {{{-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};

// One atom in P 1 at k = 0: the identity alone, so the three unit vectors are the functions.
TEST(SiteAnalysis, OneAtomInP1) {
  const Run_Output out = run_text(control("P 1", "0 0 0 GM", true, "0.1 0.2 0.3"));
  const std::vector<std::string> block = lines_of(out.block);
  ASSERT_GT(block.size(), 6u);
  const std::vector<std::string> expected = {
      "                 X       Y       Z           for site:  1",
      " -> Fe_1    :   0.1000  0.2000  0.3000  : (x,y,z) + (0,0,0)" + std::string(43, ' '),
      "",
      " => Basis functions of Representation IRrep(  1) of dimension   1 contained  3 times in "
      "GAMMA",
      "    Representation number    :  1 for Site:  1",
      "    Number of basis functions:  3",
      "",
      " ----- Block-of-lines for RCF start just below this line",
      "P -1                           <--Space group symbol for hkl generation",
      "! Nsym   Cen  Laue Ireps N_Bas ",
      "     1     1     1    -1     3",
      "! Real(0)-Imaginary(1) indicator for Ci",
      "  0  0  0",
      "SYMM x,y,z" + std::string(55, ' '),
      "BASR   1  0  0   0  1  0   0  0  1",
      "BASI   0  0  0   0  0  0   0  0  0",
      " ----- End-of-block of lines for RCF "};
  EXPECT_EQ(std::vector<std::string>(block.begin() + 6, block.end()), expected);
  const std::string result = out.result;
  EXPECT_NE(result.find("\n -> GAMMA(Magnetic):   3 Irep_k( 1)\n"), std::string::npos);
  EXPECT_NE(result.find("\n BsV(  2, 1: 1):Re (    0    1    0) \n"), std::string::npos);
  EXPECT_NE(result.find("\n       Sk(1): (u,v,w)\n"), std::string::npos);
}

// P -1: the inversion carries an axial vector into itself and a polar one into its negative,
// and an atom it returns by the lattice vector R picks up exp(-2 pi i k.R).
TEST(SiteAnalysis, InversionCentre) {
  struct Case {
    const char* kvec;
    bool axial;
    const char* atom;
    float character;  // at the inversion, of the representation that holds the functions
  };
  // An atom on a centre of inversion: one representation holds all three functions.
  const Case on_centre[] = {{"0 0 0 GM", true, "0 0 0", 1.0f},
                            {"0 0 0 GM", false, "0 0 0", -1.0f},
                            // returned by R = (1,0,0): exp(-2 pi i k.R) = -1
                            {"0.5 0 0 X", true, "0.5 0 0", -1.0f},
                            {"0.5 0 0 X", false, "0.5 0 0", 1.0f}};
  for (const Case& c : on_centre) {
    SCOPED_TRACE(std::string(c.kvec) + (c.axial ? " axial " : " polar ") + c.atom);
    const Run_Output out = run_text(control("P -1", c.kvec, c.axial, c.atom));
    const Run_State& rs = *out.state;
    const int g = operator_with(rs.store, inversion);
    ASSERT_GT(g, 0);
    ASSERT_EQ(rs.analyses.size(), 1u);
    ASSERT_EQ(rs.analyses[0].bases.size(), 1u);
    const Irrep_Basis& b = rs.analyses[0].bases[0];
    EXPECT_EQ(rs.store.chr(b.nu, g), c.character);
    EXPECT_EQ(b.nbas(), 3);
    EXPECT_EQ(b.coefficients, std::vector<std::string>{"Sk(1): (u,v,w)"});
  }
  // A general position: atom 2 at -x is brought into the cell, so the inversion returns it by
  // R = (1,1,1); each representation holds three functions, and the sign on atom 2 is the
  // character, times -1 for a polar vector, times exp(-2 pi i k.R).
  for (const char* kvec : {"0 0 0 GM", "0.5 0 0 X"}) {
    const float k_sign = std::string(kvec) == "0 0 0 GM" ? 1.0f : -1.0f;
    for (bool axial : {true, false}) {
      SCOPED_TRACE(std::string(kvec) + (axial ? " axial" : " polar"));
      const Run_Output out = run_text(control("P -1", kvec, axial, "0.1 0.2 0.3"));
      const Run_State& rs = *out.state;
      EXPECT_NE(out.result.find("Fe_2      0.9000  0.8000  0.7000"), std::string::npos);
      const int g = operator_with(rs.store, inversion);
      ASSERT_EQ(rs.analyses.size(), 1u);
      ASSERT_EQ(rs.analyses[0].bases.size(), 2u);
      for (const Irrep_Basis& b : rs.analyses[0].bases) {
        EXPECT_EQ(b.nbas(), 3);
        const float sign = rs.store.chr(b.nu, g) * (axial ? 1.0f : -1.0f) * k_sign;
        const std::string atom2 = sign > 0 ? "Sk(2): (u,v,w)" : "Sk(2): (-u,-v,-w)";
        EXPECT_EQ(b.coefficients, (std::vector<std::string>{"Sk(1): (u,v,w)", atom2}));
      }
    }
  }
}

// P 1 21 1 at k = (0,0.28,0), displacements: D(2_1) = e exp(i pi 0.28) with e = +1 or -1, and
// atom 2 = 2_1 atom 1 comes back with R = 0, so Sk(2) = e exp(-i pi 0.28) (-u,v,-w):
// r0 = cos(0.28 pi) = 0.637424, r1 = sin(0.28 pi) = 0.770513, theta = -0.14.
TEST(SiteAnalysis, IncommensurateCoefficientAsExponential) {
  const Run_Output out = run_text("SPGR  P 1 21 1\nKVEC  0 0.28 0 DT\nATOM  Co  CO  0.1 0.2 0.3\n");
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
  EXPECT_NE(out.result.find("\n              r0 =   0.637424    r1 =   0.770513\n"),
            std::string::npos);
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

}  // namespace
}  // namespace velmoria

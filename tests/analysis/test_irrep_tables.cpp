// The tables of the irreducible representations and the finishing of the store.
//
// The stores below are built by hand for small groups whose projective representations are
// worked out on paper; their translations are given outside [0,1) on purpose, so that the
// correction of the phases has something to do.  The expected listings are worked out from
// the field layouts of the tables, not taken from a run.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <random>
#include <string>
#include <vector>

#include "analysis/irrep_tables.hpp"
#include "lorsk/group_preparation.hpp"
#include "lorsk/lorsk.hpp"
#include "support/layout.hpp"
#include "support/numeric.hpp"
#include "support/text.hpp"
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

std::string blanks(std::size_t n) {
  return std::string(n, ' ');
}
// Text left-justified in n columns.
std::string ljust(const std::string& s, std::size_t n) {
  return s + blanks(n - s.size());
}
// Text right-justified in n columns.
std::string rjust(const std::string& s, std::size_t n) {
  return blanks(n - s.size()) + s;
}

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> out;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = text.find('\n', start);
    out.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return out;
}

void expect_lines(const std::string& got, const std::vector<std::string>& expected) {
  const std::vector<std::string> lines = lines_of(got);
  ASSERT_EQ(lines.size(), expected.size()) << got;
  for (std::size_t i = 0; i < lines.size(); ++i)
    EXPECT_EQ(lines[i], expected[i]) << "line " << i + 1;
}

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
void expect_representation(const lorsk_proc& s, const Vec3& k) {
  for (int g1 = 1; g1 <= s.ngk; ++g1) {
    for (int g2 = 1; g2 <= s.ngk; ++g2) {
      const Mat3i& r1 = s.ir[g1 - 1];
      const int g3 = find_rotation(s, mul(r1, s.ir[g2 - 1]));
      ASSERT_NE(g3, 0);
      double kl = 0.0;
      for (int i = 0; i < 3; ++i) {
        double t = s.t[g1 - 1][i];
        for (int j = 0; j < 3; ++j) t += r1[i][j] * s.t[g2 - 1][j];
        const double lattice = t - s.t[g3 - 1][i];
        ASSERT_NEAR(lattice, std::round(lattice), 1e-5) << g1 << " " << g2;
        kl += k[i] * std::round(lattice);
      }
      const cplx factor(std::cos(2.0 * M_PI * kl), std::sin(2.0 * M_PI * kl));
      for (int nu = 1; nu <= s.nreps; ++nu) {
        const int d = s.idim[nu - 1];
        for (int a = 1; a <= d; ++a) {
          for (int b = 1; b <= d; ++b) {
            cplx prod = 0.0;
            for (int c = 1; c <= d; ++c)
              prod += element(s, a, c, nu, g1) * element(s, c, b, nu, g2);
            EXPECT_LT(std::abs(prod - factor * element(s, a, b, nu, g3)), 1e-5)
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

TEST(IrrepTables, StoreOfPTwoOneOverC) {
  Run_Tolerance tol;
  lorsk_proc s = p21c_as_given();
  const lorsk_proc reduced = p21c_reduced();
  std::string out;
  std::vector<std::string> symb{"stale"};
  std::vector<int> idet;
  write_irreps(out, s, k_y, true, symb, idet);
  // Translations and phase factors: k.n for the shift n taken off each translation.
  EXPECT_EQ(s.t, reduced.t);
  const std::vector<float> ph{0.0f, 0.5f, 0.0f, -0.5f};
  EXPECT_EQ(s.ph, ph);
  for (int g = 1; g <= 4; ++g)
    for (int a = 1; a <= 2; ++a)
      for (int b = 1; b <= 2; ++b)
        EXPECT_LT(std::abs(element(s, a, b, 1, g) - element(reduced, a, b, 1, g)), 1e-6);
  ASSERT_EQ(symb.size(), 4u);
  EXPECT_EQ(symb[0], ljust("x,y,z", 30));
  EXPECT_EQ(symb[1], ljust("-x,y+1/2,-z+1/2", 30));
  EXPECT_EQ(symb[2], ljust("-x,-y,-z", 30));
  EXPECT_EQ(symb[3], ljust("x,-y+1/2,z+1/2", 30));
  EXPECT_EQ(idet, (std::vector<int>{1, 1, -1, -1}));
  // Characters: 2 for the identity, 0 elsewhere (trace of diag(i,-i) and of the
  // off-diagonal matrices).
  EXPECT_FLOAT_EQ(s.chr(1, 1), 2.0f);
  EXPECT_NEAR(s.chi(1, 1), 0.0f, 1e-6);
  for (int g = 2; g <= 4; ++g) {
    EXPECT_NEAR(s.chr(1, g), 0.0f, 1e-6);
    EXPECT_NEAR(s.chi(1, g), 0.0f, 1e-6);
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

TEST(IrrepTables, ElementText) {
  Run_Tolerance tol;
  EXPECT_EQ(element_text(0.5f, 0.0f), " 0.5000");
  EXPECT_EQ(element_text(-0.5f, 0.0f), "-0.5000");
  EXPECT_EQ(element_text(1.0f, 0.0f), " 1");
  EXPECT_EQ(element_text(-1.0f, 0.0005f), "-1");
  EXPECT_EQ(element_text(0.0f, 0.0f), " 0");
  EXPECT_EQ(element_text(0.7071f, -0.7071f), " 0.7071-0.7071i");
  EXPECT_EQ(element_text(-0.7071f, -0.7071f), "-0.7071-0.7071i");
  EXPECT_EQ(element_text(0.7071f, 0.7071f), " 0.7071+0.7071i");
  EXPECT_EQ(element_text(-0.7071f, 0.7071f), "-0.7071+0.7071i");
  EXPECT_EQ(element_text(0.5f, -0.866f), " 0.5000-0.8660i");
  // Whole real parts: the imaginary part is rounded, and i stands alone for 1.
  EXPECT_EQ(element_text(0.0f, 1.0f), " i");
  EXPECT_EQ(element_text(-1.0e-6f, 1.0f), " i");  // small, though below zero
  EXPECT_EQ(element_text(0.0f, -1.0f), "-i");
  EXPECT_EQ(element_text(1.0e-6f, -1.0f), " -i");  // above zero: the blank comes
  EXPECT_EQ(element_text(1.0f, 1.0f), " 1+i");
  EXPECT_EQ(element_text(-1.0f, 1.0f), "-1+i");
  EXPECT_EQ(element_text(2.0f, -1.0f), " 2-i");
  EXPECT_EQ(element_text(0.0f, 2.0f), " 2i");
  EXPECT_EQ(element_text(0.0f, -2.0f), "-2i");
  EXPECT_EQ(element_text(1.0f, 0.6f), " 1+i");  // 0.6 is no whole number, yet rounds here
  EXPECT_EQ(element_text(1.0f, 0.3f), " 1+0i");
}

TEST(IrrepTables, PhaseLabels) {
  {
    // A quarter and three quarters of a turn: " i" and "-i", and letters a and b are spent.
    Phase_Labels p;
    register_phase(p, 0.25f);
    register_phase(p, 0.7505f);
    register_phase(p, 0.2502f);  // known
    register_phase(p, 0.1f);
    ASSERT_EQ(p.cph, (std::vector<std::string>{" i", "-i", " c"}));
    EXPECT_EQ(find_phase(p, 0.751f), 2);
    EXPECT_EQ(find_phase(p, 0.5f), 0);
  }
  {
    // Half a turn apart: the same letter with the opposite sign.
    Phase_Labels p;
    register_phase(p, 0.125f);
    register_phase(p, 0.625f);
    register_phase(p, 0.3f);
    register_phase(p, 0.8f);
    register_phase(p, 0.0f);  // real phases are not given to register_phase by the tables
    EXPECT_EQ(p.cph, (std::vector<std::string>{" a", "-a", " c", "-c", " e"}));
  }
  {
    // Past the twentieth letter the capitals follow; past the last capital no label is made.
    Phase_Labels p;
    for (int n = 0; n < max_phase_labels; ++n) register_phase(p, 0.01f + 0.003f * n);
    EXPECT_EQ(p.cph[19], " w");
    EXPECT_EQ(p.cph[20], " A");
    EXPECT_EQ(p.cph[39], " W");
    EXPECT_FALSE(p.overflow);
    register_phase(p, 0.9f);
    EXPECT_TRUE(p.overflow);
    EXPECT_EQ(p.phn.size(), static_cast<std::size_t>(max_phase_labels));
  }
}

TEST(IrrepTables, SymbolicElementsKeepToTheirFields) {
  Run_Tolerance tol;
  Phase_Labels p;
  register_phase(p, 0.25f);
  register_phase(p, 0.625f);
  // Dimension 1: fields of 24 columns, integers and labels in 12.
  EXPECT_EQ(symbolic_element(1, 0, 1, 0, 1, p), rjust("1", 12));
  EXPECT_EQ(symbolic_element(1, 0.5f, -1, 0, 1, p), rjust("-1", 12));
  EXPECT_EQ(symbolic_element(0.5f, 0, 0.5f, 0, 1, p), " 0.500");
  EXPECT_EQ(symbolic_element(1, 0.25f, 0, 1, 1, p), rjust("i", 12));
  EXPECT_EQ(symbolic_element(0.7071f, 0.625f, -0.5f, -0.5f, 1, p), " 0.7: b");
  // Dimension 3: 8 columns, integers and labels in 4.
  EXPECT_EQ(symbolic_element(1, 0.25f, 0, 1, 3, p), "   i");
  EXPECT_EQ(symbolic_element(0.7071f, 0.25f, 0, 0.7071f, 3, p), " 0.7: i");
  // Dimensions 4 and 5: 6 and 5 columns; fewer decimals, never a wider text.
  EXPECT_EQ(symbolic_element(0.7071f, 0.25f, 0, 0.7071f, 4, p), "0.7: i");
  EXPECT_EQ(symbolic_element(0.7071f, 0.25f, 0, 0.7071f, 5, p), ".7: i");
  EXPECT_EQ(symbolic_element(-0.7071f, 0, -0.7071f, 0, 4, p), "-0.707");
  EXPECT_EQ(symbolic_element(-0.7071f, 0, -0.7071f, 0, 5, p), "-0.71");
  for (int d = 1; d <= 5; ++d) {
    const std::size_t field = 23 / d + 1;
    for (float m : {1.0f, -1.0f, 0.5f, -0.866f, 0.7071f, 1.4142f}) {
      for (float theta : {0.0f, 0.25f, 0.625f}) {
        const float re = m * std::cos(6.2831853f * theta);
        const float im = m * std::sin(6.2831853f * theta);
        EXPECT_LE(symbolic_element(m, theta, re, im, d, p).size(), field) << d << " " << m;
      }
    }
  }
}

// The head lines of the symbolic table, as every run writes them.
std::vector<std::string> table_preamble() {
  const std::string eq = "    " + std::string(77, '=');
  return {"",
          "",
          eq,
          "    Writing of Irreps matrices in symbolic form:  Module:Phase (fractions of 2pi)",
          "    Numeric values of symbols a,b,c,d, ... are given at the end of the table     ",
          eq,
          "   ",
          "   In this section the translations associated to Seitz symbols are simplified as",
          "      1/2  1/3  2/3  1/4  3/4  1/6  5/6  1/8  3/8  5/8  7/8",
          "        p    q    r    s    t    u    v    w    x    y    z",
          "   ",
          "   The rotational part of Seitz symbols contains information about the orientation "
          "as ",
          "   defined in Kovalev. The international symbols may be truncated (for format "
          "reasons) in",
          "   the table below. The complete international symbols can be found in the previous "
          "list."};
}

std::vector<std::string> constants_head() {
  const std::string dashes = " " + std::string(62, '-');
  return {" ",    " ", dashes, " List of constants and phase factors defined in the above table",
          dashes, " "};
}

void append(std::vector<std::string>& to, const std::vector<std::string>& from) {
  to.insert(to.end(), from.begin(), from.end());
}

TEST(IrrepTables, ShortOutputOfPTwoOneOverC) {
  Run_Tolerance tol;
  lorsk_proc s = p21c_as_given();
  std::string out;
  std::vector<std::string> symb;
  std::vector<int> idet;
  write_irreps(out, s, k_y, false, symb, idet);

  std::vector<std::string> e{"", " ---------------------------------------------------------- ",
                             " => Number of elements of G_k:    4",
                             " => Number of irreducible representations of G_k:    1",
                             " => Dimensions of Ir(reps):   2"};
  append(e, table_preamble());
  e.push_back("   Symmetry elements are reduced to the standard form (positive translations < 1) ");
  e.push_back("   The matrices of IRreps have been multiplied by the appropriate phase factor");
  e.push_back("");
  const std::string dashes(5 * 25, '-');
  e.push_back(dashes);
  e.push_back("  Ireps                 Symmetry operators ->");
  // International symbols: 1; the screw axis 2 (0,1/2,0) at x = 0, z = 1/4; the inversion at
  // the origin; the c glide plane at y = 1/4.
  e.push_back("    v                  " + ljust("1", 26) + ljust("2 (0,1/2,0) 0,y,1/4", 26) +
              ljust("-1 0,0,0", 26) + ljust("c x,1/4,z", 26));
  // Seitz symbols with the Kovalev rotation: {1|000}, {2_0y0|0pp}, {-1|000}, {m_x0z|0pp},
  // each a text of 15 right-justified in 26 columns.
  e.push_back("    v     " + rjust(ljust("{1|000}", 15), 26) + rjust(ljust("{2_0y0|0pp}", 15), 26) +
              rjust(ljust("{-1|000}", 15), 26) + rjust(ljust("{m_x0z|0pp}", 15), 26));
  e.push_back("    v      " + blanks(11) + "Symm( 1)" + blanks(7) + blanks(11) + "Symm( 2)" +
              blanks(7) + blanks(11) + "Symm( 3)" + blanks(7) + blanks(11) + "Symm( 4)" +
              blanks(7));
  e.push_back(dashes);
  e.push_back("");
  e.push_back("");
  // Dimension 2: fields of 12 columns, numbers and labels right-justified in 6, two blanks
  // between operators.
  auto f = [](const std::string& x) { return rjust(x, 6) + blanks(6); };
  const std::string gap = "  ";
  e.push_back("   IRrep( 1):" + f("1") + f("0") + gap + f("i") + f("0") + gap + f("0") + f("1") +
              gap + f("0") + rjust("i", 6));
  e.push_back(blanks(13) + f("0") + f("1") + gap + f("0") + f("-i") + gap + f("1") + f("0") + gap +
              f("-i") + rjust("0", 6));
  append(e, constants_head());
  e.push_back(" The propagation vector is k=( 0.00000, 0.50000, 0.00000)");
  // cos of a quarter turn in single precision is a little below zero, of three quarters a
  // little above.
  e.push_back(
      "  Phase factor:  i = exp{2.pi.i. 0.25000} = (-0.00000, 1.00000)     Exponent(fraction "
      "2pi) = 1/4");
  e.push_back(
      "  Phase factor: -i = exp{2.pi.i. 0.75000} = ( 0.00000,-1.00000)     Exponent(fraction "
      "2pi) = 3/4");
  expect_lines(out, e);
}

TEST(IrrepTables, FullListingOfPFourOne) {
  Run_Tolerance tol;
  lorsk_proc s = p41_as_given();
  std::string out;
  std::vector<std::string> symb;
  std::vector<int> idet;
  write_irreps(out, s, k_z, true, symb, idet);

  std::vector<std::string> e{"",
                             " ---------------------------------------------------------- ",
                             " => Number of elements of G_k:    4",
                             " => Number of irreducible representations of G_k:    4",
                             " => Dimensions of Ir(reps):   1  1  1  1",
                             "",
                             " => Symmetry elements of G_k and irreps:",
                             "    Symmetry elements reduced to the standard form (positive "
                             "translations < 1) ",
                             "    The matrices of IRreps have been multiplied by the appropriate "
                             "phase factor",
                             ""};
  // Operators: text, Kovalev symbol (14 + " -> " + 3, in 30 columns), international symbol.
  const std::vector<std::string> text{"x,y,z", "-y,x,z+1/4", "-x,-y,z+1/2", "y,-x,z+3/4"};
  const std::vector<std::string> kov{"  1            -> h1 ", " 4+ ( 0, 0, z) -> h14",
                                     "  2 ( 0, 0, z) -> h4 ", " 4- ( 0, 0, z) -> h15"};
  const std::vector<std::string> intsym{"1", "4+ (0,0,1/4) 0,0,z", "2 (0,0,1/2) 0,0,z",
                                        "4- (0,0,3/4) 0,0,z"};
  const std::vector<std::string> phase_factor{"  0.0000", "  0.0000", "  0.0000", "  0.5000"};
  // Elements after the correction, irrep by irrep: exp(2 pi i (2m+1) j / 8).
  const std::string r2 = "0.7071";
  const std::vector<std::vector<std::string>> el{
      {" 1", " 1", " 1", " 1"},
      {" " + r2 + "+" + r2 + "i", "-" + r2 + "+" + r2 + "i", "-" + r2 + "-" + r2 + "i",
       " " + r2 + "-" + r2 + "i"},
      {" i", " -i", " i", " -i"},  // cos of three quarters of a turn is a little above zero
      {"-" + r2 + "+" + r2 + "i", " " + r2 + "+" + r2 + "i", " " + r2 + "-" + r2 + "i",
       "-" + r2 + "-" + r2 + "i"}};
  for (int g = 0; g < 4; ++g) {
    e.push_back(" -> SYMM_K( " + std::to_string(g + 1) + "):  " + ljust(text[g], 25) + ": " +
                ljust(kov[g], 30) + "  Int. symbol: " + intsym[g]);
    e.push_back("    Phase factor for correcting input data:" + phase_factor[g]);
    for (int nu = 0; nu < 4; ++nu) {
      e.push_back("    Matrix of IRrep( " + std::to_string(nu + 1) + "):  ");
      e.push_back(blanks(20) + " " + el[g][nu] + " ");
    }
  }
  append(e, table_preamble());
  const std::string dashes(5 * 25, '-');
  e.push_back(dashes);
  e.push_back("  Ireps                 Symmetry operators ->");
  e.push_back("    v                  " + ljust(intsym[0], 26) + ljust(intsym[1], 26) +
              ljust(intsym[2], 26) + ljust(intsym[3], 26));
  e.push_back("    v     " + rjust(ljust("{1|000}", 15), 26) +
              rjust(ljust("{4+_00z|00s}", 15), 26) + rjust(ljust("{2_00z|00p}", 15), 26) +
              rjust(ljust("{4-_00z|00t}", 15), 26));
  std::string symm = "    v      ";
  for (int g = 1; g <= 4; ++g) symm += blanks(11) + "Symm( " + std::to_string(g) + ")" + blanks(7);
  e.push_back(symm);
  e.push_back(dashes);
  // Labels in order of discovery: 1/8 a, 3/8 b, 5/8 -a, 7/8 -b, 1/4 i (letter e spent),
  // 3/4 -i.  Fields of 24 columns, labels and numbers right-justified in 12.
  const std::vector<std::vector<std::string>> sym{
      {"1", "a", "i", "b"}, {"1", "b", "-i", "a"}, {"1", "-a", "i", "-b"}, {"1", "-b", "-i", "-a"}};
  for (int nu = 0; nu < 4; ++nu) {
    e.push_back("");
    e.push_back("");
    std::string row = "   IRrep( " + std::to_string(nu + 1) + "):";
    for (int g = 0; g < 4; ++g) row += rjust(sym[nu][g], 12) + (g < 3 ? blanks(14) : "");
    e.push_back(row);
  }
  append(e, constants_head());
  e.push_back(" The propagation vector is k=( 0.00000, 0.00000, 0.50000)");
  const std::string tail = ")     Exponent(fraction 2pi) = ";
  e.push_back("  Phase factor:  a = exp{2.pi.i. 0.12500} = ( 0.70711, 0.70711" + tail + "1/8");
  e.push_back("  Phase factor:  b = exp{2.pi.i. 0.37500} = (-0.70711, 0.70711" + tail + "3/8");
  e.push_back("  Phase factor: -a = exp{2.pi.i. 0.62500} = (-0.70711,-0.70711" + tail + "5/8");
  e.push_back("  Phase factor: -b = exp{2.pi.i. 0.87500} = ( 0.70711,-0.70711" + tail + "7/8");
  e.push_back("  Phase factor:  i = exp{2.pi.i. 0.25000} = (-0.00000, 1.00000" + tail + "1/4");
  e.push_back("  Phase factor: -i = exp{2.pi.i. 0.75000} = ( 0.00000,-1.00000" + tail + "3/4");
  expect_lines(out, e);
  EXPECT_EQ(idet, (std::vector<int>{1, 1, 1, 1}));
}

}  // namespace
}  // namespace velmoria

namespace velmoria {
namespace {

int count_containing(const std::string& out, const std::string& what) {
  int n = 0;
  for (const std::string& l : lines_of(out))
    if (l.find(what) != std::string::npos) ++n;
  return n;
}

// What only a supplied block or an unusual group brings: many representations, large
// dimensions, many distinct phases, many operators.  Nothing is written past a table.
TEST(IrrepTables, LimitsOfTheTables) {
  Run_Tolerance tol;
  {
    // 22 representations: the dimensions go on in a second line, under the first values.
    lorsk_proc s = make_store({{E, {0, 0, 0}}}, std::vector<int>(22, 1));
    for (int nu = 1; nu <= 22; ++nu) set_element(s, 1, 1, nu, 1, 1, 0);
    std::string out;
    std::vector<std::string> symb;
    std::vector<int> idet;
    write_irreps(out, s, k_y, false, symb, idet);
    const std::vector<std::string> l = lines_of(out);
    ASSERT_GE(l.size(), 6u);
    std::string first = " => Dimensions of Ir(reps): ";
    for (int n = 0; n < 20; ++n) first += "  1";
    EXPECT_EQ(l[4], first);
    EXPECT_EQ(l[5], blanks(28) + "  1  1");
    EXPECT_EQ(count_containing(out, "   IRrep("), 22);
  }
  {
    // One representation of dimension 6 takes the symbolic table of all away.
    lorsk_proc s = make_store({{E, {0, 0, 0}}}, {1, 6});
    set_element(s, 1, 1, 1, 1, 1, 0);
    for (int a = 1; a <= 6; ++a) set_element(s, a, a, 2, 1, 1, 0);
    std::string out;
    std::vector<std::string> symb;
    std::vector<int> idet;
    write_irreps(out, s, k_y, false, symb, idet);
    EXPECT_EQ(lines_of(out).back(),
              "    Writing of Irreps matrices in symbolic form skiped: Dimensions equal or higher "
              "than 6");
    EXPECT_EQ(count_containing(out, "IRrep("), 0);
    EXPECT_FLOAT_EQ(s.chr(2, 1), 6.0f);
  }
  {
    // A supplied representation of dimension 30: each row of the listing runs over five lines,
    // six elements on the first and 19 fields on each of the next.
    lorsk_proc s = make_store({{E, {0, 0, 0}}}, {30});
    for (int a = 1; a <= 30; ++a) set_element(s, a, a, 1, 1, 1, 0);
    std::string out;
    std::vector<std::string> symb;
    std::vector<int> idet;
    write_irreps(out, s, k_y, true, symb, idet);
    const std::vector<std::string> l = lines_of(out);
    std::size_t row1 = 0;
    while (row1 < l.size() && l[row1].find("Matrix of IRrep( 1)") == std::string::npos) ++row1;
    ASSERT_LT(row1 + 5, l.size());
    auto repeat = [](const std::string& x, int n) {
      std::string r;
      for (int i = 0; i < n; ++i) r += x;
      return r;
    };
    EXPECT_EQ(l[row1 + 1], blanks(20) + "  1 " + repeat("  0 ", 5));
    EXPECT_EQ(l[row1 + 2], repeat("  0 ", 6) + " ");
    EXPECT_EQ(l[row1 + 3], " 0 " + repeat("  0 ", 5) + "  0");
    EXPECT_EQ(l[row1 + 6], blanks(20) + "  0   1 " + repeat("  0 ", 4));  // row 2
    EXPECT_EQ(count_containing(out, "Writing of Irreps matrices in symbolic form skiped"), 1);
    EXPECT_FLOAT_EQ(s.chr(1, 1), 30.0f);
  }
  {
    // 45 distinct phases: labels run out after 40, and the symbolic table gives way to a note.
    lorsk_proc s = make_store({{E, {0, 0, 0}}}, std::vector<int>(45, 1));
    for (int nu = 1; nu <= 45; ++nu) set_element(s, 1, 1, nu, 1, 1, 0.01f + 0.005f * nu);
    std::string out;
    std::vector<std::string> symb;
    std::vector<int> idet;
    write_irreps(out, s, k_y, false, symb, idet);
    EXPECT_EQ(
        lines_of(out).back(),
        "    Writing of Irreps matrices in symbolic form skipped: more than 40 distinct phase "
        "factors");
    EXPECT_EQ(count_containing(out, "Phase factor:"), 0);
  }
  {
    // 48 operators of dimension 1: rows of 13 + 47 * 26 + 12 columns, none cut.
    std::vector<Op> ops(48, Op{E, {0, 0, 0}});
    for (int g = 1; g < 48; ++g) ops[g].t = {0, 0, static_cast<float>(g) / 48.0f};
    lorsk_proc s = make_store(ops, {1});
    for (int g = 1; g <= 48; ++g) set_element(s, 1, 1, 1, g, 1, 0);
    std::string out;
    std::vector<std::string> symb;
    std::vector<int> idet;
    write_irreps(out, s, k_y, false, symb, idet);
    bool found = false;
    for (const std::string& l : lines_of(out)) {
      if (l.rfind("   IRrep( 1):", 0) != 0) continue;
      found = true;
      EXPECT_EQ(l.size(), 13u + 47u * 26u + 12u);
    }
    EXPECT_TRUE(found);
    EXPECT_EQ(count_containing(out, std::string(49 * 25, '-')), 2);
    EXPECT_EQ(count_containing(out, std::string(49 * 25 + 1, '-')), 0);
  }
  {
    // Nothing to write: no operators, no representations.
    lorsk_proc s;
    std::string out;
    std::vector<std::string> symb{"x"};
    std::vector<int> idet{1};
    write_irreps(out, s, k_y, true, symb, idet);
    EXPECT_TRUE(symb.empty());
    EXPECT_TRUE(idet.empty());
    EXPECT_EQ(count_containing(out, " => Number of elements of G_k:    0"), 1);
  }
}

}  // namespace
}  // namespace velmoria

namespace velmoria {
namespace {

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
    const char lat = s.spg.spg_lat;
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
          kl += static_cast<double>(c.k[i]) * l[i];
        }
        ASSERT_TRUE(lattice_trans(l, lat)) << g1 << " " << g2;
        const cplx factor(std::cos(2.0 * M_PI * kl), std::sin(2.0 * M_PI * kl));
        for (int nu = 1; nu <= s.nreps; ++nu) {
          const int d = s.idim[nu - 1];
          double worst = 0.0;
          for (int a = 1; a <= d; ++a)
            for (int b = 1; b <= d; ++b) {
              cplx prod = 0.0;
              for (int m = 1; m <= d; ++m)
                prod += element(s, a, m, nu, g1) * element(s, m, b, nu, g2);
              worst = std::max(worst, std::abs(prod - factor * element(s, a, b, nu, g3)));
            }
          EXPECT_LT(worst, 1e-4) << "irrep " << nu << " operators " << g1 << " " << g2;
        }
      }
    }
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

}  // namespace
}  // namespace velmoria

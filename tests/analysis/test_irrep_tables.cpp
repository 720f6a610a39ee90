// The tables of the irreducible representations and the finishing of the store.
//
// The stores below are built by hand for small groups whose projective representations are
// worked out on paper; their translations are moved outside [0,1) on purpose, so that the
// correction of the phases has something to do.  The listings themselves are checked by the
// end-to-end cases.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <random>
#include <string>
#include <vector>

#include "analysis/irrep_tables.hpp"
#include "analysis/site_analysis.hpp"
#include "lorsk/group_preparation.hpp"
#include "lorsk/lorsk.hpp"
#include "symmetry/records.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

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

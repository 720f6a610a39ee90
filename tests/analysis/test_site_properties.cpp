// Mathematical properties of the site analysis, checked on whole runs across crystal systems.
//
// For each site the test builds the site's representation on its own from the operators of
// the little group, the atoms, k and the lattice letter: operator g carries atom i to
// R_g x(i) + t_g = x(l) - R with R a lattice vector (centring included), and the block (l,i)
// of M(g) is exp(-2 pi i k.R) V(g), V = R_g for polar and det(R_g) R_g for axial vectors.
//
// Which character do the basis functions carry?  A function of representation nu is
//   f_a = Sum_g conj(D_ab(g)) M(g) e      (b and the trial vector e fixed).
// With M and D both representations of the little group in the same phase convention (a
// lattice translation L is exp(+2 pi i k.L) in both: M moves atom i to x(i)+L, so R = -L),
//   M(h) f_a = Sum_g conj(D_ab(h^-1 g)) M(g) e = Sum_c D_ca(h) f_c,
// using D(h^-1 g) = D(h)^+ D(g) for unitary D.  So M(h) F = F D(h): on the span of the
// functions M acts with trace ia(nu) X(h), the character itself, not its conjugate.  This is
// also what the multiplicity counts: N = (1/ngk) Sum_g charv(g) P(g) conj(X(g)) is the number
// of copies of X in the representation of character charv P = trace M.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <complex>
#include <numbers>
#include <string>
#include <vector>

#include "run/run_driver.hpp"
#include "run/run_state.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using cd = testing::Cd;
using testing::CVec;
using testing::dot;
using testing::norm;
using testing::orthonormal_basis;
using testing::residual;

constexpr double two_pi = 2.0 * std::numbers::pi;
constexpr double position_tol = 1e-3;  // positions are given to five decimals or more
constexpr double tol = 1e-3;

// A group, k with its label, the vectors (axial or polar) and one atom; the number of sites
// (sub-orbits of the position under the little group) and of atoms of the orbit in the
// primitive cell.
struct Case {
  const char *spgr, *kvec;
  bool axial;
  const char* atom;
  int sites, atoms;
};

const Case cases[] = {
    {"P -1", "0 0 0 GM", true, "0.12 0.23 0.34", 1, 2},
    {"P -1", "0.5 0 0 X", false, "0.12 0.23 0.34", 1, 2},
    {"P 1 21/c 1", "0 0.28 0 DT", true, "0.1 0.2 0.3", 2, 4},
    {"P n m a", "0 0 0 GM", true, "0.05 0.25 0.99", 1, 4},     // 4c
    {"P 42/m n m", "0 0 0 GM", true, "0 0 0", 1, 2},           // 2a
    {"R -3 c", "0 0 0 GM", true, "0 0 0.3553", 1, 4},          // 12c, hexagonal axes
    {"P 63", "0 0 0 GM", true, "0.33333 0.66667 0.25", 1, 2},  // 2b
    {"P m -3 m", "0.5 0.5 0.5 R", true, "0.1 0.2 0.3", 1, 48},
    {"F m -3 m", "1 0 0 X", true, "0.25 0.25 0.25", 1, 2},  // 8c
    {"I 41/a", "0 0 0.3 LD", true, "0.11 0.23 0.37", 2, 8},
};

// Whether v is a lattice vector of the lattice letter, centring translations included.
bool is_lattice_vector(const std::array<double, 3>& v, char lat) {
  const double h = 0.5, a = 1.0 / 3.0, b = 2.0 / 3.0;
  std::vector<std::array<double, 3>> centrings = {{0, 0, 0}};
  if (lat == 'A' || lat == 'F') centrings.push_back({0, h, h});
  if (lat == 'B' || lat == 'F') centrings.push_back({h, 0, h});
  if (lat == 'C' || lat == 'F') centrings.push_back({h, h, 0});
  if (lat == 'I') centrings.push_back({h, h, h});
  if (lat == 'R') centrings.insert(centrings.end(), {{b, a, a}, {a, b, b}});
  for (const auto& c : centrings) {
    bool all = true;
    for (int j = 0; j < 3; ++j)
      all = all && std::abs(v[j] - c[j] - std::round(v[j] - c[j])) < position_tol;
    if (all) return true;
  }
  return false;
}

// The action of one operator on the site: atom i goes to atom dest[i] with the factor
// factor[i], a vector on it is multiplied by v.
struct Site_Action {
  std::vector<int> dest;
  std::vector<cd> factor;
  int v[3][3]{};
};

CVec act_on(const Site_Action& s, const CVec& f) {
  CVec y(f.size());
  for (std::size_t i = 0; i < s.dest.size(); ++i)
    for (int c = 0; c < 3; ++c)
      for (int m = 0; m < 3; ++m)
        y[3 * s.dest[i] + c] += s.factor[i] * static_cast<double>(s.v[c][m]) * f[3 * i + m];
  return y;
}

cd trace(const Site_Action& s) {
  cd sum = 0;
  for (std::size_t i = 0; i < s.dest.size(); ++i)
    if (s.dest[i] == static_cast<int>(i))
      sum += s.factor[i] * double(s.v[0][0] + s.v[1][1] + s.v[2][2]);
  return sum;
}

std::vector<Site_Action> site_actions(const Run_State& st, const Site& site, bool axial) {
  const lorsk_proc& s = st.store;
  std::vector<Site_Action> out(s.ngk);
  for (int g = 0; g < s.ngk; ++g) {
    const Mat3i& r = s.ir[g];
    const int det = r[0][0] * (r[1][1] * r[2][2] - r[1][2] * r[2][1]) -
                    r[0][1] * (r[1][0] * r[2][2] - r[1][2] * r[2][0]) +
                    r[0][2] * (r[1][0] * r[2][1] - r[1][1] * r[2][0]);
    Site_Action& a = out[g];
    for (int c = 0; c < 3; ++c)
      for (int m = 0; m < 3; ++m) a.v[c][m] = (axial ? det : 1) * r[c][m];
    for (int i = 0; i < site.mult; ++i) {
      std::array<double, 3> image{};
      for (int c = 0; c < 3; ++c) {
        image[c] = s.t[g][c];
        for (int m = 0; m < 3; ++m) image[c] += r[c][m] * double(site.x[i][m]);
      }
      int found = -1;
      std::array<double, 3> back{};
      for (int l = 0; l < site.mult && found < 0; ++l) {
        for (int c = 0; c < 3; ++c) back[c] = site.x[l][c] - image[c];
        if (is_lattice_vector(back, st.mv.lat_type)) found = l;
      }
      EXPECT_GE(found, 0) << "operator " << g + 1 << " takes atom " << i + 1 << " off the site";
      if (found < 0) return {};
      double kr = 0;
      for (int c = 0; c < 3; ++c) kr += st.sv.vk[c] * back[c];
      a.dest.push_back(found);
      a.factor.push_back(std::polar(1.0, -two_pi * kr));
    }
  }
  return out;
}

void check_site(const Run_State& st, int ns, bool axial) {
  const lorsk_proc& s = st.store;
  const Site& site = st.sv.sites[ns];
  const Site_Analysis& an = st.analyses[ns];
  const int n3 = 3 * site.mult;
  const std::vector<Site_Action> act = site_actions(st, site, axial);
  ASSERT_EQ(static_cast<int>(act.size()), s.ngk);
  for (int g = 1; g <= s.ngk; ++g)  // the program's permutation table agrees with ours
    for (int i = 1; i <= site.mult; ++i)
      EXPECT_EQ(an.rep.iperm(g, i), act[g - 1].dest[i - 1] + 1) << "g " << g << " atom " << i;

  EXPECT_TRUE(testing::representations_hold(s, st.sv.vk, true));
  auto character = [&](int nu, int g) { return cd(s.chr(nu, g), s.chi(nu, g)); };
  ASSERT_EQ(static_cast<int>(an.ia.size()), s.nreps);
  int total = 0;
  std::size_t next_basis = 0;
  for (int nu = 1; nu <= s.nreps; ++nu) {
    SCOPED_TRACE("representation " + std::to_string(nu));
    const int ia = an.ia[nu - 1], dim = s.idim[nu - 1];
    total += ia * dim;
    // Our own multiplicity from the trace of M.
    cd n = 0;
    for (int g = 1; g <= s.ngk; ++g) n += trace(act[g - 1]) * std::conj(character(nu, g));
    n /= double(s.ngk);
    EXPECT_LT(std::abs(n - double(ia)), tol) << "multiplicity from the trace of M: " << n;

    if (ia == 0) continue;
    ASSERT_LT(next_basis, an.bases.size());
    const Irrep_Basis& b = an.bases[next_basis++];
    ASSERT_EQ(b.nu, nu);
    EXPECT_EQ(static_cast<int>(b.functions.size()), ia * dim);
    std::vector<CVec> f;
    for (const auto& fn : b.functions) {
      ASSERT_EQ(static_cast<int>(fn.size()), n3);
      f.emplace_back(fn.begin(), fn.end());
    }
    const std::vector<CVec> q = orthonormal_basis(f);
    EXPECT_EQ(q.size(), f.size()) << "the functions are linearly dependent";
    for (int g = 1; g <= s.ngk; ++g) {
      for (std::size_t j = 0; j < f.size(); ++j) {
        const CVec y = act_on(act[g - 1], f[j]);
        EXPECT_LE(norm(residual(q, y)), tol * norm(y))
            << "g " << g << " moves function " << j + 1 << " out of the span";
      }
      // Trace of M restricted to the span (of A in M F = F A), in the orthonormal basis.
      cd tr = 0;
      for (const CVec& e : q) tr += dot(e, act_on(act[g - 1], e));
      EXPECT_LT(std::abs(tr - double(ia) * character(nu, g)), tol)
          << "g " << g << ": trace " << tr << ", ia X = " << double(ia) * character(nu, g);
    }
  }
  EXPECT_EQ(next_basis, an.bases.size());
  EXPECT_EQ(total, n3);
}

void check_case(const Case& c) {
  SCOPED_TRACE(std::string(c.spgr) + " k " + c.kvec + (c.axial ? " axial" : " polar"));
  const Run_Output out =
      run_velmoria({"code",
                    std::string("SPGR  ") + c.spgr + "\nKVEC  " + c.kvec + "\nVMODE " +
                        (c.axial ? "AXI" : "POLAR") + "\nATOM  Fe  FE  " + c.atom + "\n",
                    ""});
  ASSERT_NE(out.console.find(" => Normal End"), std::string::npos) << out.console;
  EXPECT_EQ(out.console.find("Warning"), std::string::npos) << out.console;
  ASSERT_TRUE(out.state);
  const Run_State& st = *out.state;
  EXPECT_EQ(st.sv.ipol, c.axial ? 0 : 1);
  ASSERT_EQ(st.analyses.size(), st.sv.sites.size());
  EXPECT_EQ(static_cast<int>(st.sv.sites.size()), c.sites);
  int atoms = 0;
  for (const Site& site : st.sv.sites) atoms += site.mult;
  EXPECT_EQ(atoms, c.atoms);
  for (std::size_t ns = 0; ns < st.analyses.size(); ++ns) {
    SCOPED_TRACE("site " + std::to_string(ns + 1));
    check_site(st, static_cast<int>(ns), c.axial);
  }
}

TEST(SiteProperties, BasisFunctionsSpanTheContainedRepresentations) {
  for (const Case& c : cases) check_case(c);
}

}  // namespace
}  // namespace velmoria

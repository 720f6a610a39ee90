// Helpers shared by the tests: groups by symbol, operators as integer keys, the group axioms,
// the axioms of a set of irreducible representations, text compared line by line, and the data
// files of the tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <fstream>
#include <numbers>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "lorsk/store.hpp"
#include "support/numeric.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"

namespace velmoria::testing {

// The tolerance of a run (0.002) and cell axes that are not hexagonal, for the length of a
// test; then the defaults again.
struct Run_Tolerance {
  Run_Tolerance() {
    set_epsg_sp(0.002F);
    hexa = false;
  }
  ~Run_Tolerance() {
    set_epsg_default();
    set_epsg_dp(1.0e-12);
    hexa = false;
  }
};

// A group set up from its text; a failure is reported.
inline Space_Group_Type group_of(const std::string& symbol, const char* mode = nullptr) {
  Space_Group_Type g;
  init_err_symm();
  if (mode != nullptr) {
    set_spacegroup(symbol, g, nullptr, std::nullopt, mode);
  } else {
    set_spacegroup(symbol, g);
  }
  EXPECT_FALSE(err_symm) << symbol << ": " << err_symm_mess;
  return g;
}

// An operator as integers: the rotation, and the translation in 24ths reduced to the cell.
using Op_Key = std::array<int, 12>;

inline Op_Key key_of(const Mat3i& rot, const Vec3& tr) {
  Op_Key k{};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) k[3 * i + j] = rot[i][j];
    const float y = tr[i] * 24.0f;
    const auto t = static_cast<int>(std::lround(y));
    EXPECT_NEAR(y, static_cast<float>(t), 1e-3) << "translation off the 24ths";
    k[9 + i] = ((t % 24) + 24) % 24;
  }
  return k;
}

inline std::set<Op_Key> operator_set(const Space_Group_Type& g) {
  std::set<Op_Key> keys;
  for (const auto& op : g.symop) keys.insert(key_of(op.rot, op.tr));
  return keys;
}

inline Mat3i mul(const Mat3i& a, const Mat3i& b) {
  Mat3i c{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int q = 0; q < 3; ++q) c[i][j] += a[i][q] * b[q][j];
  return c;
}

// The translation of (a.rot|a.tr)(b.rot|b.tr).
inline Vec3 product_translation(const Mat3i& ra, const Vec3& ta, const Vec3& tb) {
  Vec3 t = ta;
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) t[i] += static_cast<float>(ra[i][j]) * tb[j];
  return t;
}

// The operators form a group modulo the cell: no operator twice, every product among them.
inline void expect_closed_group(const Space_Group_Type& g, const std::string& label) {
  const std::set<Op_Key> keys = operator_set(g);
  EXPECT_EQ(keys.size(), g.symop.size()) << label << ": repeated operators";
  for (const auto& a : g.symop) {
    for (const auto& b : g.symop) {
      if (keys.count(key_of(mul(a.rot, b.rot), product_translation(a.rot, a.tr, b.tr))) == 0) {
        ADD_FAILURE() << label << ": a product leaves the group";
        return;
      }
    }
  }
}

using Cd = std::complex<double>;

inline Cd turns(double modulus, double phase) {
  return std::polar(modulus, 2.0 * std::numbers::pi * phase);
}

// The representations of a store (matrix elements as modulus and phase in turns) against the
// theory: the squares of the dimensions add up to the order; each matrix is unitary; for
// a b = (1|L) c, D(a) D(b) = exp(2 pi i k.L) D(c); the stored characters are the traces
// (as modulus and phase, or once finished as real and imaginary parts); and the characters
// are orthonormal, so that the representations are irreducible and pairwise inequivalent.
inline ::testing::AssertionResult representations_hold(const lorsk_proc& s, const Vec3& k,
                                                       bool finished = false) {
  constexpr double tol = 2.0e-3;
  const int n = s.ngk;
  const int nr = s.nreps;
  if (n < 1 || nr < 1) return ::testing::AssertionFailure() << "empty store";
  long squares = 0;
  for (int d : s.idim) squares += static_cast<long>(d) * d;
  if (squares != n) return ::testing::AssertionFailure() << "squares " << squares << " != " << n;
  const auto element = [&](int a, int b, int nu, int g) {
    return turns(s.repr(a, b, nu, g), s.repi(a, b, nu, g));
  };
  std::vector<std::vector<Cd>> chars(nr, std::vector<Cd>(n));
  for (int nu = 1; nu <= nr; ++nu) {
    const int d = s.idim[nu - 1];
    for (int g = 1; g <= n; ++g) {
      for (int a = 1; a <= d; ++a) {
        chars[nu - 1][g - 1] += element(a, a, nu, g);
        for (int b = 1; b <= d; ++b) {
          Cd e = 0.0;
          for (int l = 1; l <= d; ++l) e += element(a, l, nu, g) * std::conj(element(b, l, nu, g));
          if (std::abs(e - Cd(a == b ? 1.0 : 0.0)) > tol)
            return ::testing::AssertionFailure() << "rep " << nu << " op " << g << " not unitary";
        }
      }
      const Cd stored =
          finished ? Cd(s.chr(nu, g), s.chi(nu, g)) : turns(s.chr(nu, g), s.chi(nu, g));
      if (std::abs(stored - chars[nu - 1][g - 1]) > tol)
        return ::testing::AssertionFailure()
               << "rep " << nu << " op " << g << ": character " << stored << " is no trace";
    }
  }
  for (int a = 1; a <= n; ++a) {
    for (int b = 1; b <= n; ++b) {
      const Mat3i r = mul(s.ir[a - 1], s.ir[b - 1]);
      const auto it = std::find(s.ir.begin(), s.ir.end(), r);
      if (it == s.ir.end()) return ::testing::AssertionFailure() << a << "*" << b << " missing";
      const int c = static_cast<int>(it - s.ir.begin()) + 1;
      const Vec3 t = product_translation(s.ir[a - 1], s.t[a - 1], s.t[b - 1]);
      double kl = 0.0;
      for (int i = 0; i < 3; ++i) kl += static_cast<double>(k[i]) * (t[i] - s.t[c - 1][i]);
      for (int nu = 1; nu <= nr; ++nu) {
        const int d = s.idim[nu - 1];
        for (int i = 1; i <= d; ++i) {
          for (int j = 1; j <= d; ++j) {
            Cd e = 0.0;
            for (int l = 1; l <= d; ++l) e += element(i, l, nu, a) * element(l, j, nu, b);
            if (std::abs(e - turns(1.0, kl) * element(i, j, nu, c)) > tol)
              return ::testing::AssertionFailure()
                     << "rep " << nu << ": D(" << a << ") D(" << b << ") != phase D(" << c << ")";
          }
        }
      }
    }
  }
  for (int mu = 1; mu <= nr; ++mu) {
    for (int nu = 1; nu <= nr; ++nu) {
      Cd sum = 0.0;
      for (int g = 0; g < n; ++g) sum += std::conj(chars[mu - 1][g]) * chars[nu - 1][g];
      if (std::abs(sum / static_cast<double>(n) - Cd(mu == nu ? 1.0 : 0.0)) > tol)
        return ::testing::AssertionFailure() << "characters of " << mu << " and " << nu;
    }
  }
  return ::testing::AssertionSuccess();
}

// Complex vectors: the inner product conj(a) . b, the norm, the part of y outside the span of
// orthonormal vectors q (removed twice, for stability), and an orthonormal basis of the span
// of vectors, those whose residual is at most tol of their length left out.
using CVec = std::vector<Cd>;

inline Cd dot(const CVec& a, const CVec& b) {
  Cd s = 0;
  for (std::size_t i = 0; i < a.size(); ++i) s += std::conj(a[i]) * b[i];
  return s;
}

inline double norm(const CVec& a) {
  return std::sqrt(dot(a, a).real());
}

inline CVec residual(const std::vector<CVec>& q, CVec y) {
  for (int pass = 0; pass < 2; ++pass)
    for (const CVec& e : q) {
      const Cd c = dot(e, y);
      for (std::size_t i = 0; i < y.size(); ++i) y[i] -= c * e[i];
    }
  return y;
}

inline std::vector<CVec> orthonormal_basis(const std::vector<CVec>& vs, double tol = 1e-3) {
  std::vector<CVec> q;
  for (const CVec& v : vs) {
    CVec r = residual(q, v);
    const double n = norm(r);
    if (n <= tol * norm(v)) continue;
    for (Cd& z : r) z /= n;
    q.push_back(std::move(r));
  }
  return q;
}

// The lines of a text, without their line feeds.
inline std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

// Whether a text has the whole line.
inline bool has_line(const std::string& text, const std::string& line) {
  const auto lines = lines_of(text);
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

// Each differing line is reported (at most ten), then a difference in the number of lines.
inline void expect_same_lines(const std::string& what, const std::string& actual,
                              const std::string& expected) {
  const auto a = lines_of(actual);
  const auto e = lines_of(expected);
  int shown = 0;
  for (std::size_t i = 0; i < std::min(a.size(), e.size()) && shown < 10; ++i) {
    if (a[i] != e[i]) {
      ADD_FAILURE() << what << " line " << i + 1 << "\n  actual:   [" << a[i] << "]\n  expected: ["
                    << e[i] << "]";
      ++shown;
    }
  }
  EXPECT_EQ(a.size(), e.size()) << what << ": number of lines";
}

// A file of tests/data, whole.
inline std::string data_file(const std::string& name) {
  std::ifstream in(std::string(VELMORIA_SOURCE_DIR) + "/tests/data/" + name);
  EXPECT_TRUE(in.good()) << name;
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

}  // namespace velmoria::testing

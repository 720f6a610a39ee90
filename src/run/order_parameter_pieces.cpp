// The copies of a representation on a site, its reality, and real subspaces in echelon form
// with their notation.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "run/order_parameters_detail.hpp"

namespace velmoria::op_detail {

namespace {

constexpr double two_pi = 2.0 * std::numbers::pi;
constexpr double tiny = 1.0e-6;      // entries of echelon forms below this are zero
constexpr double noise = 1.0e-6;     // components of functions below this are float rounding
constexpr double null_tol = 1.0e-6;  // relative size of a null projection

Cplx turn(double phase) {
  return std::polar(1.0, two_pi * phase);
}

double norm2(const CVector& v) {
  double s = 0.0;
  for (const Cplx& z : v) s += std::norm(z);
  return s;
}

// P_ab of the unit vector along axis m (0-based) on atom i (1-based).
CVector transfer(const lorsk_proc& st, const Site_Representation& rep, const Vec3d& k, int nu,
                 int a, int b, int i, int m) {
  CVector out(static_cast<std::size_t>(3 * rep.mult));
  for (int g = 1; g <= st.ngk; ++g) {
    const int l = rep.iperm(g, i);
    // A lattice vector, held as float: brought onto the sixths of the centrings.
    double phase = 0.0;
    for (int c = 0; c < 3; ++c) phase += k[c] * std::round(6.0 * rep.ret(g, i)[c]) / 6.0;
    const Cplx w = std::conj(element(st, a, b, nu, g)) * turn(-phase);
    for (int c = 0; c < 3; ++c) {
      const int v = rep.ivrep[g - 1][c][m];
      if (v != 0) out[static_cast<std::size_t>(3 * (l - 1) + c)] += w * static_cast<double>(v);
    }
  }
  const double f = static_cast<double>(st.idim[nu - 1]) / st.ngk;
  for (Cplx& z : out) z *= f;
  return out;
}

// Removes from v its components along the orthonormal vectors q (twice, for stability).
CVector residual(const std::vector<CVector>& q, CVector v) {
  for (int pass = 0; pass < 2; ++pass) {
    for (const CVector& e : q) {
      Cplx s = 0.0;
      for (std::size_t n = 0; n < v.size(); ++n) s += std::conj(e[n]) * v[n];
      for (std::size_t n = 0; n < v.size(); ++n) v[n] -= s * e[n];
    }
  }
  return v;
}

// Scales the rows of a copy by one complex factor so that the largest component of row 1 is
// 1, and clears the components that are rounding noise.
void normalise(Basis_Copy& copy) {
  const CVector& first = copy.rows[0];
  std::size_t at = 0;
  for (std::size_t n = 0; n < first.size(); ++n) {
    if (std::abs(first[n]) > std::abs(first[at]) * (1.0 + 1.0e-9)) at = n;
  }
  const Cplx f = 1.0 / first[at];
  for (CVector& row : copy.rows) {
    for (Cplx& z : row) {
      z *= f;
      z = {std::abs(z.real()) < noise ? 0.0 : z.real(),
           std::abs(z.imag()) < noise ? 0.0 : z.imag()};
    }
  }
}

std::string number(double x) {
  const double r = std::round(x);
  if (std::abs(x - r) < 1.0e-6) return std::to_string(static_cast<long long>(r));
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.4g", x);
  return buf;
}

// A real coefficient before a letter: "" for 1, "-" for -1.
std::string coefficient(double x) {
  if (std::abs(x - 1.0) < 1.0e-6) return "";
  if (std::abs(x + 1.0) < 1.0e-6) return "-";
  return number(x);
}

// The name of free parameter n (0-based): a, b, ..., z, then t27, t28, ...
std::string parameter(std::size_t n) {
  return n < 26 ? std::string(1, static_cast<char>('a' + n)) : "t" + std::to_string(n + 1);
}

std::string term(Cplx z, const std::string& p) {
  if (std::abs(z.imag()) < 1.0e-6) return coefficient(z.real()) + p;
  if (std::abs(z.real()) < 1.0e-6) return coefficient(z.imag()) + "i" + p;
  const std::string im = number(std::abs(z.imag()));
  return "(" + number(z.real()) + (z.imag() < 0 ? "-" : "+") + (im == "1" ? "" : im) + "i)" + p;
}

}  // namespace

Cplx element(const lorsk_proc& st, int a, int b, int nu, int g) {
  return static_cast<double>(st.repr(a, b, nu, g)) * turn(st.repi(a, b, nu, g));
}

std::vector<Basis_Copy> site_copies(const lorsk_proc& st, const Site_Representation& rep,
                                    const Vec3d& k, int nu, int wanted, int site) {
  std::vector<Basis_Copy> copies;
  std::vector<CVector> kept;  // orthonormal span of the rows 1 kept
  const int d = st.idim[nu - 1];
  for (int i = 1; i <= rep.mult && static_cast<int>(copies.size()) < wanted; ++i) {
    for (int m = 0; m < 3 && static_cast<int>(copies.size()) < wanted; ++m) {
      CVector first = transfer(st, rep, k, nu, 1, 1, i, m);
      const double size = norm2(first);
      if (size < null_tol) continue;
      CVector rest = residual(kept, first);
      const double left = norm2(rest);
      if (left < null_tol * size) continue;
      for (Cplx& z : rest) z /= std::sqrt(left);
      kept.push_back(std::move(rest));
      Basis_Copy copy;
      copy.site = site;
      copy.rows.push_back(std::move(first));
      for (int a = 2; a <= d; ++a) copy.rows.push_back(transfer(st, rep, k, nu, a, 1, i, m));
      normalise(copy);
      copies.push_back(std::move(copy));
    }
  }
  return copies;
}

void real_copy(const lorsk_proc& st, int nu, Basis_Copy& copy) {
  const int d = st.idim[nu - 1];
  const auto at = [d](int a, int b) { return static_cast<std::size_t>(a * d + b); };
  // B = Sum_g conj(D(g)) X D(g)^-1 for a general X: conj(D(g)) B = B D(g).
  CVector b(static_cast<std::size_t>(d * d), 0.0);
  for (int g = 1; g <= st.ngk; ++g) {
    for (int i = 0; i < d; ++i) {
      for (int j = 0; j < d; ++j) {
        Cplx s = 0.0;
        for (int m = 0; m < d; ++m) {
          for (int n = 0; n < d; ++n) {
            const double x = std::sqrt(2.0 + m + 3.0 * n) - 1.3 * n;
            s += std::conj(element(st, i + 1, m + 1, nu, g)) * x *
                 std::conj(element(st, j + 1, n + 1, nu, g));
          }
        }
        b[at(i, j)] += s;
      }
    }
  }
  // Scaled so that B conj(B) = 1 (a real representation has B conj(B) = lambda 1, lambda > 0).
  Cplx lambda = 0.0;
  for (int m = 0; m < d; ++m) lambda += b[at(0, m)] * std::conj(b[at(m, 0)]);
  if (lambda.real() <= 1.0e-9) return;
  for (Cplx& z : b) z /= std::sqrt(lambda.real());
  const std::size_t n = copy.rows[0].size();
  std::vector<CVector> chi(static_cast<std::size_t>(d), CVector(n, 0.0));
  for (int a = 0; a < d; ++a)
    for (int c = 0; c < d; ++c)
      for (std::size_t v = 0; v < n; ++v) chi[a][v] += std::conj(copy.rows[c][v]) * b[at(c, a)];
  std::vector<CVector> sum = copy.rows, difference = copy.rows;
  for (int a = 0; a < d; ++a) {
    for (std::size_t v = 0; v < n; ++v) {
      sum[a][v] += chi[a][v];
      difference[a][v] = Cplx(0.0, 1.0) * (difference[a][v] - chi[a][v]);
    }
  }
  copy.rows = norm2(sum[0]) >= norm2(difference[0]) ? sum : difference;
  normalise(copy);
}

int frobenius_schur(const lorsk_proc& st, int nu) {
  const int d = st.idim[nu - 1];
  Cplx sum = 0.0;
  for (int g = 1; g <= st.ngk; ++g) {
    for (int a = 1; a <= d; ++a) {
      for (int b = 1; b <= d; ++b) sum += element(st, a, b, nu, g) * element(st, b, a, nu, g);
    }
  }
  return static_cast<int>(std::lround(sum.real() / st.ngk));
}

int conjugate_partner(const lorsk_proc& st, int nu) {
  const auto character = [&](int mu, int g) {
    Cplx s = 0.0;
    for (int a = 1; a <= st.idim[mu - 1]; ++a) s += element(st, a, a, mu, g);
    return s;
  };
  for (int mu = 1; mu <= st.nreps; ++mu) {
    if (st.idim[mu - 1] != st.idim[nu - 1]) continue;
    bool same = true;
    for (int g = 1; g <= st.ngk && same; ++g) {
      same = std::abs(character(mu, g) - std::conj(character(nu, g))) < 1.0e-3;
    }
    if (same) return mu;
  }
  return 0;
}

RMatrix rref(RMatrix rows, int n) {
  std::size_t lead = 0;
  for (int col = 0; col < n && lead < rows.size(); ++col) {
    std::size_t best = lead;
    for (std::size_t r = lead; r < rows.size(); ++r) {
      if (std::abs(rows[r][col]) > std::abs(rows[best][col])) best = r;
    }
    if (std::abs(rows[best][col]) < 1.0e-5) continue;
    std::swap(rows[lead], rows[best]);
    const double p = rows[lead][col];
    for (double& x : rows[lead]) x /= p;
    for (std::size_t r = 0; r < rows.size(); ++r) {
      if (r == lead || rows[r][col] == 0.0) continue;
      const double f = rows[r][col];
      for (int c = 0; c < n; ++c) rows[r][c] -= f * rows[lead][c];
    }
    ++lead;
  }
  rows.resize(lead);
  for (RVector& row : rows) {
    for (double& x : row) {
      if (std::abs(x) < tiny) x = 0.0;
    }
  }
  return rows;
}

RMatrix null_space(const RMatrix& rows, int n) {
  const RMatrix e = rref(rows, n);
  std::vector<int> pivot_of_row;
  std::vector<bool> pivot(static_cast<std::size_t>(n), false);
  for (const RVector& row : e) {
    int c = 0;
    while (c < n && row[c] == 0.0) ++c;
    pivot_of_row.push_back(c);
    pivot[c] = true;
  }
  RMatrix basis;
  for (int f = 0; f < n; ++f) {
    if (pivot[f]) continue;
    RVector v(static_cast<std::size_t>(n), 0.0);
    v[f] = 1.0;
    for (std::size_t r = 0; r < e.size(); ++r) v[pivot_of_row[r]] = -e[r][f];
    basis.push_back(std::move(v));
  }
  return rref(basis, n);
}

std::string notation_of(const RMatrix& basis, const std::vector<std::pair<int, bool>>& coords,
                        int d) {
  std::string out = "(";
  for (int a = 0; a < d; ++a) {
    std::string eta;
    for (std::size_t p = 0; p < basis.size(); ++p) {
      Cplx z = 0.0;
      for (std::size_t c = 0; c < coords.size(); ++c) {
        if (coords[c].first != a) continue;
        z += coords[c].second ? Cplx(0.0, basis[p][c]) : Cplx(basis[p][c], 0.0);
      }
      if (std::abs(z) < 1.0e-6) continue;
      const std::string t = term(z, parameter(p));
      eta += (eta.empty() || t[0] == '-') ? t : "+" + t;
    }
    if (a > 0) out += ",";
    out += eta.empty() ? "0" : eta;
  }
  return out + ")";
}

}  // namespace velmoria::op_detail

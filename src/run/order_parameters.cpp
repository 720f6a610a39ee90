// Order parameters of the representations of a run, and a candidate structure for each
// direction.
//
// A single-k arrangement m(L,j) = Re(S(j) exp(-2 pi i k.R_L)) is held by its Fourier
// coefficients S on the atoms of the run's sites (no lattice copies); as a real vector it is
// Re S when k is equivalent to -k (the phases are then +1 or -1) and (Re S, Im S) otherwise.
// An operator (R,t) of the space group with kR = e k (e = +1 or -1, up to the reciprocal
// lattice) carries atom j onto atom l with R x_j + t = x_l + d, and gives S'(l) = V S(j)
// exp(2 pi i k.d), with conj(S(j)) in place of S(j) when e = -1; V is R, times det R for
// moments.  A lattice translation T multiplies S by exp(2 pi i k.T); time reversal by -1.
#include "run/order_parameters.hpp"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <numeric>

#include "run/order_parameters_detail.hpp"
#include "run/run_state.hpp"
#include "support/text.hpp"

namespace velmoria {

namespace {

using namespace op_detail;

constexpr double two_pi = 2.0 * std::numbers::pi;
constexpr double null_tol = 1.0e-6;  // relative residual of a vector outside a span
// Fixed subspaces held for one representation: a bound on the work of the closure under
// intersection for the largest supplied representations (the groups of the tables give far
// fewer).
constexpr std::size_t max_subspaces = 1000;

// Free coefficients of the generic points: square roots of primes over small integers.
constexpr std::array<int, 16> primes = {2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37, 41, 43, 47, 53};
double generic(std::size_t n) {
  return std::sqrt(static_cast<double>(primes[n % primes.size()])) /
         static_cast<double>(n % primes.size() + 1) *
         (1.0 + 0.1 * static_cast<double>(n / primes.size()));
}

// One operator of the space group on the atoms: target atom and factor exp(2 pi i k.d).
struct Op_Action {
  bool valid = false;
  int e = 1;
  std::array<std::array<double, 3>, 3> v{};
  std::vector<int> target;
  CVector factor;
};

bool lattice_vector(const Frame& f, const Vec3d& v) {
  for (const Vec3d& c : f.centring) {
    if (integral(v[0] - c[0]) && integral(v[1] - c[1]) && integral(v[2] - c[2])) return true;
  }
  return false;
}

// Whether h is a vector of the reciprocal lattice of the centred lattice.
bool reciprocal_vector(const Frame& f, const Vec3d& h) {
  if (!integral(h[0]) || !integral(h[1]) || !integral(h[2])) return false;
  for (const Vec3d& c : f.centring) {
    if (!integral(h[0] * c[0] + h[1] * c[1] + h[2] * c[2])) return false;
  }
  return true;
}

// The denominator (up to `most`) of x, 0 when there is none.  A component that is no fraction
// with a denominator up to 24 is taken as incommensurate (0.28 is not read as 7/25).
int denominator(double x, int most) {
  for (int q = 1; q <= most; ++q) {
    if (std::abs(x * q - std::round(x * q)) < 2.0e-4) return q;
  }
  return 0;
}

std::string scope_problem(const Run_State& rs) {
  if (!rs.stop_message.empty()) {
    return "The run stopped early: no order parameters are computed.";
  }
  if (rs.store.full_irreps || rs.store.extended_little_group) {
    return "The representations are those of the full group or of an extended little group: "
           "order parameters are computed from the representations of the little group only.";
  }
  if (rs.store.ngk == 0 || rs.store.nreps == 0) {
    return "The run has no representations of the little group: no order parameters are "
           "computed.";
  }
  if (rs.sv.sites.empty() || rs.analyses.size() != rs.sv.sites.size()) {
    return "The run has no analysed sites: no order parameters are computed.";
  }
  for (std::size_t s = 0; s < rs.sv.sites.size(); ++s) {
    const Site_Representation& rep = rs.analyses[s].rep;
    if (rep.mult != rs.sv.sites[s].mult || rep.ngk != rs.store.ngk ||
        static_cast<int>(rs.sv.sites[s].x.size()) != rep.mult) {
      return "The analysis of a site is incomplete: no order parameters are computed.";
    }
  }
  for (int i = 0; i < 3; ++i) {
    const double c = static_cast<double>(rs.sv.vk[i]);
    if (denominator(c, max_commensurate_denominator) > 0) continue;
    if (denominator(c, 2 * max_commensurate_denominator) > 0) {
      return "A component of the propagation vector has a denominator above 12: the magnetic "
             "cell is too large, and no order parameters are computed.";
    }
    return "The propagation vector is incommensurate: the symmetry is a superspace group, "
           "which is not computed.";
  }
  return {};
}

Frame make_frame(const Run_State& rs) {
  Frame f;
  const Space_Group_Type& spg = rs.store.spg;
  for (int i = 0; i < 3; ++i) {
    const double c = static_cast<double>(rs.sv.vk[i]);
    f.q[i] = denominator(c, max_commensurate_denominator);
    f.p[i] = static_cast<int>(std::lround(c * f.q[i]));
    f.k[i] = static_cast<double>(f.p[i]) / f.q[i];
    f.period = std::lcm(f.period, f.q[i]);
  }
  f.axial = rs.sv.ipol == 0;
  for (const Vec3& c : spg.latt_trans) f.centring.push_back({c[0], c[1], c[2]});
  if (f.centring.empty()) f.centring.push_back({0.0, 0.0, 0.0});
  f.kmk = reciprocal_vector(f, {2.0 * f.k[0], 2.0 * f.k[1], 2.0 * f.k[2]});
  for (std::size_t s = 0; s < rs.sv.sites.size(); ++s) {
    f.first.push_back(static_cast<int>(f.x.size()));
    for (const Vec3& x : rs.sv.sites[s].x) {
      f.x.push_back({x[0], x[1], x[2]});
      f.site.push_back(static_cast<int>(s) + 1);
    }
  }
  return f;
}

Op_Action op_action(const Frame& f, const Sym_Oper_Type& op) {
  Op_Action a;
  Vec3d kr{};
  for (int j = 0; j < 3; ++j) {
    for (int i = 0; i < 3; ++i) kr[j] += f.k[i] * op.rot[i][j];
  }
  if (reciprocal_vector(f, {kr[0] - f.k[0], kr[1] - f.k[1], kr[2] - f.k[2]})) {
    a.e = 1;
  } else if (reciprocal_vector(f, {kr[0] + f.k[0], kr[1] + f.k[1], kr[2] + f.k[2]})) {
    a.e = -1;
  } else {
    return a;  // k goes to another arm of its star
  }
  const Mat3i& r = op.rot;
  const int det = r[0][0] * (r[1][1] * r[2][2] - r[1][2] * r[2][1]) -
                  r[0][1] * (r[1][0] * r[2][2] - r[1][2] * r[2][0]) +
                  r[0][2] * (r[1][0] * r[2][1] - r[1][1] * r[2][0]);
  const int s = f.axial ? det : 1;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) a.v[i][j] = s * r[i][j];
  }
  for (const Vec3d& x : f.x) {
    const Vec3d y = apply(op, x);
    int found = -1;
    Vec3d d{};
    for (std::size_t l = 0; l < f.x.size() && found < 0; ++l) {
      d = {y[0] - f.x[l][0], y[1] - f.x[l][1], y[2] - f.x[l][2]};
      if (lattice_vector(f, d)) found = static_cast<int>(l);
    }
    if (found < 0) return a;  // the atom lands on no atom of the run
    a.target.push_back(found);
    a.factor.push_back(std::polar(1.0, two_pi * (f.k[0] * d[0] + f.k[1] * d[1] + f.k[2] * d[2])));
  }
  a.valid = true;
  return a;
}

CVector act(const Op_Action& a, const CVector& s) {
  CVector out(s.size());
  for (std::size_t j = 0; j < a.target.size(); ++j) {
    const std::size_t l = static_cast<std::size_t>(a.target[j]);
    for (int c = 0; c < 3; ++c) {
      Cplx sum = 0.0;
      for (int m = 0; m < 3; ++m) {
        const Cplx z = s[3 * j + m];
        sum += a.v[c][m] * (a.e > 0 ? z : std::conj(z));
      }
      out[3 * l + c] = sum * a.factor[j];
    }
  }
  return out;
}

RVector real_form(const Frame& f, const CVector& s) {
  RVector v;
  v.reserve(f.kmk ? s.size() : 2 * s.size());
  for (const Cplx& z : s) v.push_back(z.real());
  if (!f.kmk) {
    for (const Cplx& z : s) v.push_back(z.imag());
  }
  return v;
}

double dot(const RVector& a, const RVector& b) {
  double s = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) s += a[i] * b[i];
  return s;
}

// The real carrier of one copy in the coordinates Re eta_a, Im eta_a that it needs.
struct Carrier {
  std::vector<std::pair<int, bool>> coords;  // (row, imaginary part), row by row
  std::vector<CVector> fourier;              // the coefficients S of each coordinate
  RMatrix q;                                 // orthonormal basis of the carrier
  RMatrix c;                                 // coordinate i = Sum_j c[j][i] q_j
  int r() const { return static_cast<int>(coords.size()); }
};

CVector copy_fourier(const Frame& f, const Basis_Copy& copy, int row, bool imaginary) {
  CVector s(3 * f.x.size());
  const std::size_t at = 3 * static_cast<std::size_t>(f.first[copy.site - 1]);
  const CVector& psi = copy.rows[row];
  for (std::size_t n = 0; n < psi.size(); ++n) s[at + n] = imaginary ? Cplx(0, 1) * psi[n] : psi[n];
  return s;
}

// Gram-Schmidt of y against q: the coefficients along q and the residual's squared norm.
RVector project(const RMatrix& q, RVector& y) {
  RVector t(q.size(), 0.0);
  for (int pass = 0; pass < 2; ++pass) {
    for (std::size_t j = 0; j < q.size(); ++j) {
      const double s = dot(q[j], y);
      t[j] += s;
      for (std::size_t n = 0; n < y.size(); ++n) y[n] -= s * q[j][n];
    }
  }
  return t;
}

Carrier make_carrier(const Frame& f, const Basis_Copy& copy) {
  const int d = static_cast<int>(copy.rows.size());
  // The coordinates that give new arrangements: real parts first.
  std::vector<std::pair<int, bool>> chosen;
  RMatrix q;
  double size = 0.0;  // the squared size of a row (all rows have the same)
  for (const Cplx& z : copy.rows[0]) size += std::norm(z);
  for (bool imaginary : {false, true}) {
    for (int a = 0; a < d; ++a) {
      RVector y = real_form(f, copy_fourier(f, copy, a, imaginary));
      project(q, y);
      const double left = dot(y, y);
      if (left < null_tol * size) continue;
      for (double& x : y) x /= std::sqrt(left);
      q.push_back(std::move(y));
      chosen.push_back({a, imaginary});
    }
  }
  std::sort(chosen.begin(), chosen.end());
  Carrier w;
  w.coords = chosen;
  const std::size_t r = chosen.size();
  w.c.assign(r, RVector(r, 0.0));
  for (std::size_t i = 0; i < r; ++i) {
    w.fourier.push_back(copy_fourier(f, copy, chosen[i].first, chosen[i].second));
    RVector y = real_form(f, w.fourier.back());
    const RVector t = project(w.q, y);
    for (std::size_t j = 0; j < i; ++j) w.c[j][i] = t[j];
    const double left = std::sqrt(dot(y, y));
    w.c[i][i] = left;
    for (double& x : y) x /= left;
    w.q.push_back(std::move(y));
  }
  return w;
}

// The coordinates of the arrangement s in the carrier, or nothing when it lies outside.
bool coordinates(const Frame& f, const Carrier& w, const CVector& s, RVector& x) {
  RVector y = real_form(f, s);
  const double size = dot(y, y);
  RVector t = project(w.q, y);
  if (dot(y, y) > null_tol * std::max(size, 1.0e-30)) return false;
  const int r = w.r();
  x.assign(static_cast<std::size_t>(r), 0.0);
  for (int i = r - 1; i >= 0; --i) {
    double v = t[i];
    for (int j = i + 1; j < r; ++j) v -= w.c[i][j] * x[j];
    x[i] = v / w.c[i][i];
  }
  return true;
}

// The matrix (columns: images of the coordinates) of a map of arrangements on the carrier.
template <typename Map>
bool matrix_of(const Frame& f, const Carrier& w, Map map, RMatrix& m) {
  const int r = w.r();
  m.assign(static_cast<std::size_t>(r), RVector(static_cast<std::size_t>(r), 0.0));
  RVector x;
  for (int i = 0; i < r; ++i) {
    if (!coordinates(f, w, map(w.fourier[i]), x)) return false;
    for (int j = 0; j < r; ++j) m[j][i] = x[j];
  }
  return true;
}

RMatrix product(const RMatrix& a, const RMatrix& b) {
  const std::size_t n = a.size();
  RMatrix c(n, RVector(n, 0.0));
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t l = 0; l < n; ++l)
      for (std::size_t j = 0; j < n; ++j) c[i][j] += a[i][l] * b[l][j];
  return c;
}

// The image group: the distinct matrices, and how many operations have each.
struct Image {
  std::vector<RMatrix> mats;
  std::vector<long> weight;  // operations (modulo the cell) with each matrix
};

int phase_class(const Frame& f, const std::array<int, 3>& t) {
  long s = 0;
  for (int i = 0; i < 3; ++i) s += static_cast<long>(f.p[i]) * t[i] * (f.period / f.q[i]);
  return static_cast<int>(((s % f.period) + f.period) % f.period);
}

Image make_image(const Frame& f, const Carrier& w, const std::vector<Op_Action>& ops) {
  Image im;
  std::vector<long> cells_of_class(static_cast<std::size_t>(f.period), 0);
  for_cells(f, [&](const std::array<int, 3>& t) { ++cells_of_class[phase_class(f, t)]; });
  std::vector<RMatrix> phase_mats(static_cast<std::size_t>(f.period));
  for (int c = 0; c < f.period; ++c) {
    const Cplx z = std::polar(1.0, two_pi * c / f.period);
    matrix_of(
        f, w,
        [&](CVector s) {
          for (Cplx& v : s) v *= z;
          return s;
        },
        phase_mats[c]);
  }
  std::map<std::vector<long long>, int> seen;
  for (std::size_t o = 0; o < ops.size(); ++o) {
    RMatrix m;
    if (!ops[o].valid || !matrix_of(
                             f, w, [&](const CVector& s) { return act(ops[o], s); }, m)) {
      continue;
    }
    for (int c = 0; c < f.period; ++c) {
      if (cells_of_class[c] == 0) continue;
      for (int tr = 0; tr < (f.axial ? 2 : 1); ++tr) {
        RMatrix h = product(phase_mats[c], m);
        if (tr == 1) {
          for (RVector& row : h)
            for (double& x : row) x = -x;
        }
        std::vector<long long> key;
        for (const RVector& row : h)
          for (double x : row) key.push_back(std::llround(x * 1.0e4));
        auto [it, fresh] = seen.emplace(key, static_cast<int>(im.mats.size()));
        if (fresh) {
          im.mats.push_back(h);
          im.weight.push_back(0);
        }
        im.weight[it->second] += cells_of_class[c];
      }
    }
  }
  return im;
}

bool fixes(const RMatrix& m, const RMatrix& basis) {
  for (const RVector& v : basis) {
    for (std::size_t i = 0; i < m.size(); ++i) {
      double s = -v[i];
      for (std::size_t j = 0; j < m.size(); ++j) s += m[i][j] * v[j];
      if (std::abs(s) > 1.0e-5) return false;
    }
  }
  return true;
}

RMatrix image_of(const RMatrix& m, const RMatrix& basis, int r) {
  RMatrix out;
  for (const RVector& v : basis) {
    RVector y(static_cast<std::size_t>(r), 0.0);
    for (int i = 0; i < r; ++i)
      for (int j = 0; j < r; ++j) y[i] += m[i][j] * v[j];
    out.push_back(std::move(y));
  }
  return rref(out, r);
}

bool same(const RMatrix& a, const RMatrix& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    for (std::size_t j = 0; j < a[i].size(); ++j)
      if (std::abs(a[i][j] - b[i][j]) > 1.0e-5) return false;
  return true;
}

// A representative of a class of conjugate subspaces: most zeros, then fewest entries that are
// not whole numbers, then the largest entries.
bool nicer(const RMatrix& a, const RMatrix& b) {
  const auto zeros = [](const RMatrix& m) {
    long n = 0;
    for (const RVector& row : m) n += std::count(row.begin(), row.end(), 0.0);
    return n;
  };
  const auto fractions = [](const RMatrix& m) {
    long n = 0;
    for (const RVector& row : m)
      for (double x : row) n += std::abs(x - std::round(x)) > 1.0e-6 ? 1 : 0;
    return n;
  };
  if (zeros(a) != zeros(b)) return zeros(a) > zeros(b);
  if (fractions(a) != fractions(b)) return fractions(a) < fractions(b);
  for (std::size_t i = 0; i < a.size(); ++i)
    for (std::size_t j = 0; j < a[i].size(); ++j)
      if (std::abs(a[i][j] - b[i][j]) > 1.0e-6) return a[i][j] > b[i][j];
  return false;
}

struct Subspace {
  RMatrix basis;  // echelon rows
  long order = 0;
};

// The isotropy subspaces of the image, one of each class of conjugates, from the most
// symmetric to the general one.
std::vector<Subspace> isotropy_subspaces(const Image& im, int r) {
  std::vector<RMatrix> all;
  std::vector<RMatrix> annihilators;  // of each subspace in all
  const auto add = [&](RMatrix b) {
    if (b.empty() || all.size() >= max_subspaces) return;
    for (const RMatrix& known : all)
      if (same(known, b)) return;
    annihilators.push_back(null_space(b, r));
    all.push_back(std::move(b));
  };
  for (const RMatrix& m : im.mats) {
    RMatrix shifted = m;
    for (int i = 0; i < r; ++i) shifted[i][i] -= 1.0;
    add(null_space(shifted, r));
  }
  // Closed under intersection: the annihilators stacked.
  for (std::size_t i = 0; i < all.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      RMatrix rows = annihilators[i];
      rows.insert(rows.end(), annihilators[j].begin(), annihilators[j].end());
      add(null_space(rows, r));
    }
  }
  std::vector<bool> done(all.size(), false);
  std::vector<Subspace> out;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (done[i]) continue;
    Subspace best{all[i], 0};
    for (const RMatrix& m : im.mats) {
      const RMatrix image = image_of(m, all[i], r);
      for (std::size_t j = i; j < all.size(); ++j) {
        if (!done[j] && same(all[j], image)) {
          done[j] = true;
          if (nicer(all[j], best.basis)) best.basis = all[j];
        }
      }
    }
    for (std::size_t m = 0; m < im.mats.size(); ++m) {
      if (fixes(im.mats[m], best.basis)) best.order += im.weight[m];
    }
    out.push_back(std::move(best));
  }
  std::stable_sort(out.begin(), out.end(), [](const Subspace& a, const Subspace& b) {
    if (a.order != b.order) return a.order > b.order;
    return a.basis.size() < b.basis.size();
  });
  return out;
}

// Every operator o with every translation t of the parent cell within the magnetic cell, the
// translation reduced to 0 <= t_i < q_i: visit(o, t, operation without time reversal).
template <typename Visit>
void for_operations(const Run_State& rs, const Frame& f, Visit visit) {
  const std::vector<Sym_Oper_Type>& symop = rs.store.spg.symop;
  for (std::size_t o = 0; o < symop.size(); ++o) {
    for_cells(f, [&](const std::array<int, 3>& t) {
      Isotropy_Operation op;
      op.op = static_cast<int>(o) + 1;
      op.rotation = symop[o].rot;
      for (int i = 0; i < 3; ++i) {
        const double u = std::fmod(symop[o].tr[i] + t[i], static_cast<double>(f.q[i]));
        op.translation[i] = u < -1.0e-9 ? u + f.q[i] : std::max(u, 0.0);
      }
      visit(static_cast<int>(o), t, op);
    });
  }
}

// The operations that carry the arrangement s onto itself: every operator with every
// translation of the parent cell within the magnetic cell (its phase) and, for moments, time
// reversal.  Tried on s itself rather than read from the image on one copy, whose action
// another copy need not share.
std::vector<Isotropy_Operation> isotropy_of(const Run_State& rs, const Frame& f,
                                            const std::vector<Op_Action>& ops, const CVector& s) {
  double size = 0.0;
  for (const Cplx& z : s) size = std::max(size, f.kmk ? std::abs(z.real()) : std::abs(z));
  std::vector<CVector> images(ops.size());
  for (std::size_t o = 0; o < ops.size(); ++o)
    if (ops[o].valid) images[o] = act(ops[o], s);
  std::vector<Isotropy_Operation> out;
  for_operations(rs, f, [&](int o, const std::array<int, 3>& t, Isotropy_Operation op) {
    if (!ops[o].valid) return;
    const Cplx z = std::polar(1.0, two_pi * phase_class(f, t) / f.period);
    for (int tr = 0; tr < (f.axial ? 2 : 1); ++tr) {
      bool keeps = true;
      for (std::size_t n = 0; n < s.size() && keeps; ++n) {
        // When k is equivalent to -k the arrangement is Re S: the imaginary parts do not count.
        const Cplx diff = (tr == 1 ? -z : z) * images[o][n] - s[n];
        keeps = (f.kmk ? std::abs(diff.real()) : std::abs(diff)) < 1.0e-4 * size;
      }
      if (!keeps) continue;
      op.time_reversal = tr == 1;
      out.push_back(op);
    }
  });
  return out;
}

// When k is not equivalent to -k, an operator g0 taking k to -k maps a copy onto itself up to
// a phase of its own (copies on different orbits of the little group differ): each copy is
// turned so that g0 acts on it as on the first, and the copies share their directions.  The
// action is antilinear: turning a copy by exp(i theta) turns the action by exp(-2 i theta).
void align_copies(const Frame& f, const std::vector<Op_Action>& ops,
                  std::vector<Basis_Copy>& copies) {
  const auto g0 =
      std::find_if(ops.begin(), ops.end(), [](const Op_Action& a) { return a.valid && a.e == -1; });
  if (f.kmk || copies.size() < 2 || g0 == ops.end()) return;
  // The coefficients of g0 psi_1 on the rows of a copy; empty when it leaves the copy.
  const auto coefficients = [&](const Basis_Copy& copy) {
    const CVector image = act(*g0, copy_fourier(f, copy, 0, false));
    CVector mu, rest = image;
    double size = 0.0;
    for (const Cplx& z : image) size += std::norm(z);
    for (std::size_t b = 0; b < copy.rows.size(); ++b) {
      const CVector row = copy_fourier(f, copy, static_cast<int>(b), false);
      Cplx num = 0.0;
      double den = 0.0;
      for (std::size_t n = 0; n < row.size(); ++n) {
        num += std::conj(row[n]) * image[n];
        den += std::norm(row[n]);
      }
      mu.push_back(num / den);
      for (std::size_t n = 0; n < row.size(); ++n) rest[n] -= mu.back() * row[n];
    }
    double left = 0.0;
    for (const Cplx& z : rest) left += std::norm(z);
    return left <= null_tol * size ? mu : CVector{};
  };
  const CVector mu0 = coefficients(copies[0]);
  if (mu0.empty()) return;
  const auto b = static_cast<std::size_t>(
      std::max_element(mu0.begin(), mu0.end(),
                       [](Cplx x, Cplx y) { return std::abs(x) < std::abs(y); }) -
      mu0.begin());
  for (std::size_t n = 1; n < copies.size(); ++n) {
    const CVector mu = coefficients(copies[n]);
    if (mu.empty()) continue;
    const Cplx turn = std::polar(1.0, std::arg(mu[b] / mu0[b]) / 2.0);
    for (auto& row : copies[n].rows)
      for (Cplx& z : row) z *= turn;
  }
}

Physical_Irrep analyse_irrep(const Run_State& rs, const Frame& f, const std::vector<Op_Action>& ops,
                             int nu) {
  const lorsk_proc& st = rs.store;
  Physical_Irrep pi;
  pi.nu = nu;
  pi.dimension = st.idim[nu - 1];
  pi.k_equiv_mk = f.kmk;
  if (f.kmk) {
    pi.indicator = frobenius_schur(st, nu);
    if (pi.indicator == 0) pi.partner = conjugate_partner(st, nu);
  }
  for (std::size_t s = 0; s < rs.analyses.size(); ++s) {
    const Site_Analysis& an = rs.analyses[s];
    const int wanted = nu <= static_cast<int>(an.ia.size()) ? an.ia[nu - 1] : 0;
    if (wanted <= 0) continue;
    std::vector<Basis_Copy> copies =
        site_copies(st, an.rep, f.k, nu, wanted, static_cast<int>(s) + 1);
    for (Basis_Copy& c : copies) {
      // A copy of a real representation whose rows are not real arrangements is made so.
      if (f.kmk && pi.indicator == 1 && make_carrier(f, c).r() != pi.dimension) {
        real_copy(st, nu, c);
      }
      pi.basis_copies.push_back(std::move(c));
    }
  }
  align_copies(f, ops, pi.basis_copies);
  pi.copies = static_cast<int>(pi.basis_copies.size());
  if (pi.basis_copies.empty()) return pi;
  const Carrier w = make_carrier(f, pi.basis_copies[0]);
  const int r = w.r();
  pi.real_dimension = r;
  const Image im = make_image(f, w, ops);
  pi.image_order = static_cast<int>(im.mats.size());
  for (const Subspace& v : isotropy_subspaces(im, r)) {
    Order_Parameter_Direction dir;
    dir.notation = notation_of(v.basis, w.coords, pi.dimension);
    dir.dimension = static_cast<int>(v.basis.size());
    dir.free_parameters = dir.dimension * pi.copies;
    dir.eta.assign(static_cast<std::size_t>(pi.dimension), 0.0);
    for (std::size_t p = 0; p < v.basis.size(); ++p) {
      for (int c = 0; c < r; ++c) {
        const double x = generic(p) * v.basis[p][c];
        dir.eta[w.coords[c].first] += w.coords[c].second ? Cplx(0.0, x) : Cplx(x, 0.0);
      }
    }
    const CVector s = arrangement(f, pi.basis_copies, dir.eta);
    dir.structure = candidate(rs, f, s);
    dir.isotropy = isotropy_of(rs, f, ops, s);
    pi.directions.push_back(std::move(dir));
  }
  return pi;
}

}  // namespace

Magnetic_Candidates magnetic_candidates(const Run_State& rs) {
  Magnetic_Candidates out;
  out.polar = rs.sv.ipol != 0;
  out.unsupported = scope_problem(rs);
  if (!out.unsupported.empty()) return out;
  const Frame f = make_frame(rs);
  for_operations(rs, f, [&](int, const std::array<int, 3>&, const Isotropy_Operation& op) {
    out.operations.push_back(op);
  });
  std::vector<Op_Action> ops;
  for (const Sym_Oper_Type& op : rs.store.spg.symop) ops.push_back(op_action(f, op));
  for (int nu = 1; nu <= rs.store.nreps; ++nu) {
    bool present = false;
    for (const Site_Analysis& an : rs.analyses) {
      present = present || (nu <= static_cast<int>(an.ia.size()) && an.ia[nu - 1] > 0);
    }
    if (present) out.irreps.push_back(analyse_irrep(rs, f, ops, nu));
  }
  return out;
}

}  // namespace velmoria

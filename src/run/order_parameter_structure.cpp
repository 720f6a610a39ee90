// The candidate structure of a direction: the atoms of the run's sites in the magnetic cell
// with their moments (or displacements), marker atoms on a general position of the parent
// group, and a Cartesian cell whose metric the parent's point group keeps.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "run/order_parameters_detail.hpp"
#include "run/run_state.hpp"
#include "support/text.hpp"

namespace velmoria::op_detail {

namespace {

constexpr double two_pi = 2.0 * std::numbers::pi;

// A generic real scale for copy n: 1 for the first, irrational-looking after it.
double copy_scale(std::size_t n) {
  constexpr std::array<int, 8> primes = {13, 17, 19, 23, 29, 31, 37, 41};
  return 1.0 +
         0.1 * std::sqrt(static_cast<double>(primes[n % primes.size()])) * static_cast<double>(n);
}

using Int3 = std::array<long long, 3>;

// A basis of the lattice spanned by the integer vectors `gens` (of rank 3): their Hermite
// normal form, found by Euclid's algorithm on one column after the other.  Row r of the result
// has zeros before column r and a positive entry there.
std::array<Int3, 3> lattice_basis(std::vector<Int3> gens) {
  std::size_t r = 0;
  for (int c = 0; c < 3 && r < gens.size(); ++c) {
    for (;;) {
      std::size_t pivot = gens.size();  // the row from r on with the smallest non-zero entry
      for (std::size_t i = r; i < gens.size(); ++i)
        if (gens[i][c] != 0 &&
            (pivot == gens.size() || std::llabs(gens[i][c]) < std::llabs(gens[pivot][c])))
          pivot = i;
      if (pivot == gens.size()) break;
      std::swap(gens[r], gens[pivot]);
      bool cleared = true;
      for (std::size_t i = r + 1; i < gens.size(); ++i) {
        const long long m = gens[i][c] / gens[r][c];
        for (int j = 0; j < 3; ++j) gens[i][j] -= m * gens[r][j];
        cleared = cleared && gens[i][c] == 0;
      }
      if (cleared) break;
    }
    if (r < gens.size() && gens[r][c] != 0) {
      if (gens[r][c] < 0)
        for (long long& v : gens[r]) v = -v;
      ++r;
    }
  }
  std::array<Int3, 3> basis{};
  for (std::size_t i = 0; i < 3 && i < r; ++i) basis[i] = gens[i];
  return basis;
}

// The smallest cell of the single-k structure with whole edges: a basis of the lattice vectors
// t of the parent cell with k.t a whole number.  Columns: the edges in the parent's
// coordinates.  The centring translations of a centred parent stay inside the cell (a
// primitive rhombohedral cell makes spglib's magnetic search fail).
std::array<Vec3d, 3> periodic_cell(const Frame& f) {
  // k.t = Sum_j phase_j t_j / period.
  Int3 phase{};
  long long common = f.period;
  for (int j = 0; j < 3; ++j) {
    phase[j] = static_cast<long long>(f.p[j]) * (f.period / f.q[j]);
    phase[j] = ((phase[j] % f.period) + f.period) % f.period;
    common = std::gcd(common, phase[j]);
  }
  // The solutions: order times the unit vectors, and those in the box below it.
  const long long order = f.period / common;
  std::vector<Int3> kernel = {Int3{order, 0, 0}, Int3{0, order, 0}, Int3{0, 0, order}};
  for (long long a = 0; a < order; ++a)
    for (long long b = 0; b < order; ++b)
      for (long long c = 0; c < order; ++c)
        if ((a * phase[0] + b * phase[1] + c * phase[2]) % f.period == 0)
          kernel.push_back(Int3{a, b, c});
  const std::array<Int3, 3> n = lattice_basis(kernel);
  std::array<Vec3d, 3> cell{};
  for (int j = 0; j < 3; ++j)
    for (int i = 0; i < 3; ++i) cell[i][j] = static_cast<double>(n[j][i]);
  return cell;
}

double wrap_unit(double u) {
  u -= std::floor(u);
  return u >= 1.0 - 1.0e-9 ? 0.0 : u;
}

// Fractional coordinates in the cell (inverse matrix `to_cell`) of the parent point x.
Vec3d in_cell(const std::array<Vec3d, 3>& to_cell, const Vec3d& x) {
  Vec3d p{};
  for (int i = 0; i < 3; ++i)
    p[i] = wrap_unit(to_cell[i][0] * x[0] + to_cell[i][1] * x[1] + to_cell[i][2] * x[2]);
  return p;
}

std::array<Vec3d, 3> inverse(const std::array<Vec3d, 3>& m) {
  const double d = m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
                   m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
                   m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
  std::array<Vec3d, 3> r{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) {
      const int i1 = (j + 1) % 3, i2 = (j + 2) % 3, j1 = (i + 1) % 3, j2 = (i + 2) % 3;
      r[i][j] = (m[i1][j1] * m[i2][j2] - m[i1][j2] * m[i2][j1]) / d;
    }
  return r;
}

bool same_point(const Vec3d& a, const Vec3d& b) {
  for (int i = 0; i < 3; ++i) {
    const double d = a[i] - b[i];
    if (std::abs(d - std::round(d)) > 1.0e-6) return false;
  }
  return true;
}

// Every parent translation t + tau (0 <= t_i < q_i, tau a centring translation) in that order,
// and whether it is the first of its class modulo the cell's lattice.
struct Cell_Translation {
  Vec3d lv;
  bool first = false;
};

std::vector<Cell_Translation> cell_translations(const Frame& f,
                                                const std::array<Vec3d, 3>& to_cell) {
  std::vector<Cell_Translation> out;
  std::vector<Vec3d> seen;
  for_cells(f, [&](const std::array<int, 3>& t) {
    for (const Vec3d& tau : f.centring) {
      const Vec3d lv{tau[0] + t[0], tau[1] + t[1], tau[2] + t[2]};
      const Vec3d u = in_cell(to_cell, lv);
      const bool first =
          std::none_of(seen.begin(), seen.end(), [&](const Vec3d& v) { return same_point(v, u); });
      if (first) seen.push_back(u);
      out.push_back({lv, first});
    }
  });
  return out;
}

}  // namespace

bool integral(double x) {
  return std::abs(x - std::round(x)) < 1.0e-3;
}

Vec3d apply(const Sym_Oper_Type& op, const Vec3d& x) {
  Vec3d y{};
  for (int r = 0; r < 3; ++r) {
    y[r] = op.tr[r];
    for (int c = 0; c < 3; ++c) y[r] += op.rot[r][c] * x[c];
  }
  return y;
}

// Positions and moments of every atom of the sites in the cell, with the marker atoms.
Candidate_Structure candidate(const Run_State& rs, const Frame& f,
                              const std::vector<Basis_Copy>& copies, const CVector& eta) {
  Candidate_Structure cs;
  cs.cell = periodic_cell(f);
  const std::array<Vec3d, 3> to_cell = inverse(cs.cell);
  const std::vector<Cell_Translation> translations = cell_translations(f, to_cell);
  const std::size_t per_cell = f.centring.size();
  CVector s(3 * f.x.size());
  for (std::size_t n = 0; n < copies.size(); ++n) {
    const Basis_Copy& copy = copies[n];
    const double scale = copy_scale(n);
    const std::size_t at = 3 * static_cast<std::size_t>(f.first[copy.site - 1]);
    for (std::size_t a = 0; a < copy.rows.size(); ++a)
      for (std::size_t c = 0; c < copy.rows[a].size(); ++c)
        s[at + c] += scale * eta[a] * copy.rows[a][c];
  }
  double largest = 0.0;
  // Cell by cell, atom by atom, centring by centring.
  for (std::size_t c0 = 0; c0 < translations.size(); c0 += per_cell) {
    for (std::size_t j = 0; j < f.x.size(); ++j) {
      for (std::size_t e = c0; e < c0 + per_cell; ++e) {
        if (!translations[e].first) continue;
        const Vec3d& lv = translations[e].lv;
        const Cplx ph =
            std::polar(1.0, -two_pi * (f.k[0] * lv[0] + f.k[1] * lv[1] + f.k[2] * lv[2]));
        Vec3d m{};
        for (int c = 0; c < 3; ++c) m[c] = (s[3 * j + c] * ph).real();
        largest = std::max(largest, std::sqrt(m[0] * m[0] + m[1] * m[1] + m[2] * m[2]));
        cs.positions.push_back(
            in_cell(to_cell, {f.x[j][0] + lv[0], f.x[j][1] + lv[1], f.x[j][2] + lv[2]}));
        cs.moments.push_back(m);
        cs.types.push_back(f.site[j]);
        const Site& site = rs.sv.sites[f.site[j] - 1];
        cs.labels.push_back(trim(site.atom[j - f.first[f.site[j] - 1]]));
      }
    }
  }
  if (largest > 0.0) {
    for (Vec3d& m : cs.moments)
      for (double& c : m) c /= largest;
  }
  // A general position of the parent group and its images.
  const Space_Group_Type& spg = rs.store.spg;
  std::vector<Vec3d> orbit;
  for (const Sym_Oper_Type& op : spg.symop) {
    Vec3d y = apply(op, {0.1234, 0.3417, 0.0729});
    for (double& c : y) c -= std::floor(c);
    bool known = false;
    for (const Vec3d& o : orbit) {
      known = known || (integral(y[0] - o[0]) && integral(y[1] - o[1]) && integral(y[2] - o[2]));
    }
    if (!known) orbit.push_back(y);
  }
  // The orbit holds the centring images already: one copy in each class of whole translations
  // modulo the cell's lattice (the first of each cell's translations is the whole one).
  for (std::size_t c0 = 0; c0 < translations.size(); c0 += per_cell) {
    if (!translations[c0].first) continue;
    const Vec3d& lv = translations[c0].lv;
    for (const Vec3d& y : orbit) {
      const Vec3d p = in_cell(to_cell, {y[0] + lv[0], y[1] + lv[1], y[2] + lv[2]});
      cs.positions.push_back(p);
      cs.moments.push_back({0.0, 0.0, 0.0});
      cs.types.push_back(0);
      cs.labels.push_back("X");
    }
  }
  // A metric that the point group keeps: a general one averaged over the rotations.
  const double g0[3][3] = {{16.81, 0.9, 0.6}, {0.9, 22.09, 1.1}, {0.6, 1.1, 28.09}};
  double g[3][3] = {};
  for (const Sym_Oper_Type& op : spg.symop) {
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j)
        for (int a = 0; a < 3; ++a)
          for (int b = 0; b < 3; ++b) g[i][j] += op.rot[a][i] * g0[a][b] * op.rot[b][j];
  }
  const double n = static_cast<double>(std::max<std::size_t>(spg.symop.size(), 1));
  for (auto& row : g)
    for (double& x : row) x /= n;
  if (spg.symop.empty()) std::copy(&g0[0][0], &g0[0][0] + 9, &g[0][0]);
  // Cholesky: the rows of the lower triangle are a, b, c.
  double l[3][3] = {};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j <= i; ++j) {
      double v = g[i][j];
      for (int c = 0; c < j; ++c) v -= l[i][c] * l[j][c];
      l[i][j] = i == j ? std::sqrt(std::max(v, 1.0e-12)) : v / l[j][j];
    }
  }
  for (int i = 0; i < 3; ++i) cs.lattice[i] = {l[i][0], l[i][1], l[i][2]};
  return cs;
}

}  // namespace velmoria::op_detail

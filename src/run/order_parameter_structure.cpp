// The candidate structure of a direction: the atoms of the run's sites in the magnetic cell
// with their moments (or displacements), and a Cartesian cell whose metric the parent's point
// group keeps.
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

using Metric = std::array<std::array<double, 3>, 3>;

// A metric that the point group keeps: a general one averaged over the rotations.
Metric metric(const Space_Group_Type& spg) {
  const Metric g0 = {{{16.81, 0.9, 0.6}, {0.9, 22.09, 1.1}, {0.6, 1.1, 28.09}}};
  if (spg.symop.empty()) return g0;
  Metric g{};
  for (const Sym_Oper_Type& op : spg.symop) {
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j)
        for (int a = 0; a < 3; ++a)
          for (int b = 0; b < 3; ++b) g[i][j] += op.rot[a][i] * g0[a][b] * op.rot[b][j];
  }
  for (auto& row : g)
    for (double& x : row) x /= static_cast<double>(spg.symop.size());
  return g;
}

long long det3(const Int3& a, const Int3& b, const Int3& c) {
  return a[0] * (b[1] * c[2] - b[2] * c[1]) - a[1] * (b[0] * c[2] - b[2] * c[0]) +
         a[2] * (b[0] * c[1] - b[1] * c[0]);
}

// The basis in the order that puts the largest entries on the diagonal (edge j mostly along
// axis j), each diagonal entry positive where it can be, right-handed.
std::array<Int3, 3> along_axes(std::array<Int3, 3> v) {
  std::array<int, 3> order{0, 1, 2}, best = order;
  long long best_weight = -1;
  do {
    long long w = 1;
    for (int j = 0; j < 3; ++j) w *= std::llabs(v[order[j]][j]);
    if (w > best_weight) {
      best_weight = w;
      best = order;
    }
  } while (std::next_permutation(order.begin(), order.end()));
  std::array<Int3, 3> r{};
  for (int j = 0; j < 3; ++j) {
    r[j] = v[best[j]];
    if (r[j][j] < 0)
      for (long long& x : r[j]) x = -x;
  }
  if (det3(r[0], r[1], r[2]) < 0)
    for (long long& x : r[2]) x = -x;
  return r;
}

// A basis of short vectors of the lattice with basis `hnf` (rows) in the metric g: the
// shortest vector, the shortest one not parallel to it, and the shortest one that completes a
// basis of the lattice (a determinant of the lattice's volume).  The Hermite basis itself when
// these do not make one.
std::array<Int3, 3> shortest_basis(const std::array<Int3, 3>& hnf, const Metric& g) {
  const long long volume = std::llabs(det3(hnf[0], hnf[1], hnf[2]));
  std::vector<std::pair<long long, Int3>> vectors;  // squared length in millionths, vector
  for (int a = -2; a <= 2; ++a)
    for (int b = -2; b <= 2; ++b)
      for (int c = -2; c <= 2; ++c) {
        Int3 v{};
        for (int i = 0; i < 3; ++i) v[i] = a * hnf[0][i] + b * hnf[1][i] + c * hnf[2][i];
        const auto first = std::find_if(v.begin(), v.end(), [](long long x) { return x != 0; });
        if (first == v.end() || *first < 0) continue;  // zero, or -v of a vector kept
        double len = 0;
        for (int i = 0; i < 3; ++i)
          for (int j = 0; j < 3; ++j) len += static_cast<double>(v[i] * v[j]) * g[i][j];
        vectors.push_back({std::llround(len * 1.0e6), v});
      }
  // Shortest first; among equally long ones those of fewest and smallest entries, so that a
  // cell of the parent's own edges stays as it is: (1,0,0) before (0,1,0) before (1,1,0).
  const auto weight = [](const Int3& v) {
    return std::llabs(v[0]) + std::llabs(v[1]) + std::llabs(v[2]);
  };
  std::sort(vectors.begin(), vectors.end(), [&](const auto& x, const auto& y) {
    if (x.first != y.first) return x.first < y.first;
    if (weight(x.second) != weight(y.second)) return weight(x.second) < weight(y.second);
    return x.second > y.second;
  });
  const Int3& v1 = vectors.front().second;
  for (const auto& [l2, v2] : vectors) {
    const Int3 cross{v1[1] * v2[2] - v1[2] * v2[1], v1[2] * v2[0] - v1[0] * v2[2],
                     v1[0] * v2[1] - v1[1] * v2[0]};
    if (cross == Int3{}) continue;
    for (const auto& [l3, v3] : vectors)
      if (std::llabs(det3(v1, v2, v3)) == volume) return along_axes({v1, v2, v3});
    break;
  }
  return hnf;
}

// The smallest cell of the single-k structure with whole edges: a basis of short vectors of
// the lattice of the vectors t of the parent cell with k.t a whole number.  Columns: the edges
// in the parent's coordinates.  The centring translations of a centred parent stay inside the cell
// (a primitive rhombohedral cell makes spglib's magnetic search fail).
std::array<Vec3d, 3> periodic_cell(const Frame& f, const Metric& g) {
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
  const std::array<Int3, 3> n = shortest_basis(lattice_basis(kernel), g);
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

CVector arrangement(const Frame& f, const std::vector<Basis_Copy>& copies, const CVector& eta) {
  CVector s(3 * f.x.size());
  for (std::size_t n = 0; n < copies.size(); ++n) {
    const Basis_Copy& copy = copies[n];
    const double scale = copy_scale(n);
    const std::size_t at = 3 * static_cast<std::size_t>(f.first[copy.site - 1]);
    for (std::size_t a = 0; a < copy.rows.size(); ++a)
      for (std::size_t c = 0; c < copy.rows[a].size(); ++c)
        s[at + c] += scale * eta[a] * copy.rows[a][c];
  }
  return s;
}

// Positions and moments of every atom of the sites in the cell.
Candidate_Structure candidate(const Run_State& rs, const Frame& f, const CVector& s) {
  Candidate_Structure cs;
  const Space_Group_Type& spg = rs.store.spg;
  const Metric g = metric(spg);
  cs.cell = periodic_cell(f, g);
  const std::array<Vec3d, 3> to_cell = inverse(cs.cell);
  const std::vector<Cell_Translation> translations = cell_translations(f, to_cell);
  const std::size_t per_cell = f.centring.size();
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

namespace velmoria {

Mat3d inverse(const Mat3d& m) {
  const double d = m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
                   m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
                   m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
  Mat3d r{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) {
      const int i1 = (j + 1) % 3, i2 = (j + 2) % 3, j1 = (i + 1) % 3, j2 = (i + 2) % 3;
      r[i][j] = (m[i1][j1] * m[i2][j2] - m[i1][j2] * m[i2][j1]) / d;
    }
  return r;
}

}  // namespace velmoria

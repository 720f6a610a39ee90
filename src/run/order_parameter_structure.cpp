// The candidate structure of a direction: the atoms of the run's sites in the magnetic cell
// with their moments (or displacements), marker atoms on a general position of the parent
// group, and a Cartesian cell whose metric the parent's point group keeps.
#include <algorithm>
#include <cmath>
#include <numbers>

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

// Fractional coordinates in the magnetic cell of the point x + t of the parent cell.
Vec3d cell_position(const Frame& f, const Vec3d& x, const std::array<int, 3>& t) {
  Vec3d p{};
  for (int i = 0; i < 3; ++i) {
    const double u = std::fmod(x[i] + t[i], static_cast<double>(f.q[i]));
    p[i] = (u < 0 ? u + f.q[i] : u) / f.q[i];
    if (p[i] >= 1.0 - 1.0e-12) p[i] = 0.0;
  }
  return p;
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
  cs.supercell = f.q;
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
  for_cells(f, [&](const std::array<int, 3>& t) {
    for (std::size_t j = 0; j < f.x.size(); ++j) {
      for (const Vec3d& tau : f.centring) {
        const Vec3d lv{tau[0] + t[0], tau[1] + t[1], tau[2] + t[2]};
        const Cplx ph =
            std::polar(1.0, -two_pi * (f.k[0] * lv[0] + f.k[1] * lv[1] + f.k[2] * lv[2]));
        Vec3d m{};
        for (int c = 0; c < 3; ++c) m[c] = (s[3 * j + c] * ph).real();
        largest = std::max(largest, std::sqrt(m[0] * m[0] + m[1] * m[1] + m[2] * m[2]));
        cs.positions.push_back(
            cell_position(f, {f.x[j][0] + tau[0], f.x[j][1] + tau[1], f.x[j][2] + tau[2]}, t));
        cs.moments.push_back(m);
        cs.types.push_back(f.site[j]);
        const Site& site = rs.sv.sites[f.site[j] - 1];
        cs.labels.push_back(trim(site.atom[j - f.first[f.site[j] - 1]]));
      }
    }
  });
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
  for_cells(f, [&](const std::array<int, 3>& t) {
    for (const Vec3d& y : orbit) {
      cs.positions.push_back(cell_position(f, y, t));
      cs.moments.push_back({0.0, 0.0, 0.0});
      cs.types.push_back(0);
      cs.labels.push_back("X");
    }
  });
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

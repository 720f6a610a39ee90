#include "magnetic/group_witness.hpp"

#include <algorithm>
#include <cmath>

#include "magnetic/linear.hpp"

namespace velmoria {

using namespace linear;

namespace {

// The moment m turned by an operation: det(R) R m, reversed by time reversal.
Vec3d turned(const Magnetic_Operation& g, const Vec3d& m) {
  const Mat3d r = to_double(g.rotation);
  const double s = det(r) * (g.time_reversal ? -1 : 1);
  Vec3d y = times(r, m);
  for (double& c : y) c *= s;
  return y;
}

int stabiliser_order(const Group& g, const Vec3d& x) {
  int n = 0;
  for (const auto& op : g) n += same_point(image_of(op, x), x) ? 1 : 0;
  return n;
}

bool same_moment(const Vec3d& a, const Vec3d& b) {
  return std::abs(a[0] - b[0]) < 1e-6 && std::abs(a[1] - b[1]) < 1e-6 &&
         std::abs(a[2] - b[2]) < 1e-6;
}

// The atom of the given type at x (modulo the lattice), or -1.
int atom_at(const Witness& w, const Vec3d& x, int type) {
  for (std::size_t a = 0; a < w.positions.size(); ++a)
    if (w.types[a] == type && same_point(w.positions[a], x)) return static_cast<int>(a);
  return -1;
}

// The inverse of a unimodular integer matrix.
Mat3i unimodular_inverse(const Mat3i& m) {
  const int d = idet(m);
  Mat3i r{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) {
      const int i1 = (j + 1) % 3, i2 = (j + 2) % 3, j1 = (i + 1) % 3, j2 = (i + 2) % 3;
      r[i][j] = (m[i1][j1] * m[i2][j2] - m[i1][j2] * m[i2][j1]) * d;
    }
  return r;
}

}  // namespace

Vec3d image_of(const Magnetic_Operation& g, const Vec3d& x) {
  Vec3d y = times(to_double(g.rotation), x);
  for (int i = 0; i < 3; ++i) y[i] += g.translation[i];
  return y;
}

double wrap(double x) {
  double f = x - std::floor(x);
  if (f > 1 - 1e-6) f = 0;
  return std::abs(f) < 1e-6 ? 0.0 : f;
}

void add_unique(Group& ops, const Magnetic_Operation& op) {
  for (const auto& o : ops)
    if (o.rotation == op.rotation && o.time_reversal == op.time_reversal &&
        same_point(o.translation, op.translation))
      return;
  ops.push_back(op);
}

int group_in_cell(const std::vector<Isotropy_Operation>& ops, const Mat3d& b,
                  bool keep_time_reversal, Group& out) {
  const Mat3d b_inv = inverse(b);
  int left_out = 0;
  for (const Isotropy_Operation& op : ops) {
    if (op.time_reversal && !keep_time_reversal) continue;
    Magnetic_Operation g;
    const Mat3d r = mul(mul(b_inv, to_double(op.rotation)), b);
    bool whole = true;
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) {
        g.rotation[i][j] = static_cast<int>(std::lround(r[i][j]));
        whole = whole && std::abs(r[i][j] - g.rotation[i][j]) < 1e-6;
      }
    if (!whole) {
      ++left_out;
      continue;
    }
    const Vec3d t = times(b_inv, op.translation);
    for (int i = 0; i < 3; ++i) g.translation[i] = wrap(t[i]);
    g.time_reversal = op.time_reversal;
    add_unique(out, g);
  }
  return left_out;
}

void add_orbit(Witness& w, const Group& g, const Vec3d& x, const Vec3d& m) {
  Vec3d kept{};
  const int n = stabiliser_order(g, x);
  for (const auto& op : g) {
    if (!same_point(image_of(op, x), x)) continue;
    const Vec3d y = turned(op, m);
    for (int i = 0; i < 3; ++i) kept[i] += y[i] / n;
  }
  const int type = w.types.empty() ? 1 : w.types.back() + 1;
  for (const auto& op : g) {
    Vec3d y = image_of(op, x);
    for (double& c : y) c = wrap(c);
    if (atom_at(w, y, type) >= 0) continue;
    w.positions.push_back(y);
    w.moments.push_back(turned(op, kept));
    w.types.push_back(type);
  }
}

std::vector<Vec3d> special_points(const Group& g, const Vec3d& x0) {
  std::vector<std::pair<int, Vec3d>> found;  // (- order of the stabiliser, point)
  int seeds = 0;
  for (const auto& op : g) {
    const int n = order(op.rotation);
    if (n <= 1) continue;
    // The translation of h^n is S (t + l) with S = Sum_k R^k: S t and S once per operation.
    Mat3i sum{}, power = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    for (int k = 0; k < n; ++k) {
      for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) sum[i][j] += power[i][j];
      power = mul(power, op.rotation);
    }
    const Vec3d st = times(to_double(sum), op.translation);
    for (int l = 0; l < 27; ++l) {
      Magnetic_Operation h = op;
      for (int i = 0, v = l; i < 3; ++i, v /= 3) h.translation[i] += v % 3 - 1;
      // A seed of its own for each point, so that points of one kind differ (two points on
      // one axis, not one point twice).
      ++seeds;
      Vec3d screw = st;
      for (int i = 0; i < 3; ++i)
        for (int j = 0, v = l; j < 3; ++j, v /= 3) screw[i] += sum[i][j] * (v % 3 - 1);
      if (norm(screw) > 1e-6) continue;
      Vec3d mean{}, y = x0;
      for (int i = 0; i < 3; ++i) y[i] += seeds * std::array<double, 3>{0.0517, 0.0373, 0.0291}[i];
      for (int k = 0; k < n; ++k) {
        for (int i = 0; i < 3; ++i) mean[i] += y[i] / n;
        y = image_of(h, y);
      }
      for (double& c : mean) c = wrap(c);
      const bool known = std::any_of(found.begin(), found.end(),
                                     [&](const auto& f) { return same_point(f.second, mean); });
      if (!known) found.push_back({-stabiliser_order(g, mean), mean});
    }
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<Vec3d> out;
  for (const auto& f : found) out.push_back(f.second);
  return out;
}

Keeping operations_keeping(const Witness& w, const std::vector<Mat3i>& rotations) {
  Keeping kept;
  if (w.positions.empty()) return kept;
  // Translations are tried from the first atom of the rarest type to each atom of that type.
  int rarest = w.types[0];
  const auto count = [&](int t) { return std::count(w.types.begin(), w.types.end(), t); };
  for (int t : w.types)
    if (count(t) < count(rarest)) rarest = t;
  const auto a0 =
      static_cast<std::size_t>(std::find(w.types.begin(), w.types.end(), rarest) - w.types.begin());
  std::vector<int> target(w.positions.size());
  for (const Mat3i& r : rotations) {
    for (std::size_t b = 0; b < w.positions.size(); ++b) {
      if (w.types[b] != rarest) continue;
      Magnetic_Operation op{r, {}, false};
      const Vec3d y = image_of(op, w.positions[a0]);
      for (int i = 0; i < 3; ++i) op.translation[i] = w.positions[b][i] - y[i];
      bool keeps = true;
      for (std::size_t a = 0; a < w.positions.size() && keeps; ++a) {
        target[a] = atom_at(w, image_of(op, w.positions[a]), w.types[a]);
        keeps = target[a] >= 0;
      }
      if (!keeps) continue;
      ++kept.positions;
      for (const bool tr : {false, true}) {
        op.time_reversal = tr;
        bool moments = true;
        for (std::size_t a = 0; a < w.positions.size() && moments; ++a)
          moments = same_moment(turned(op, w.moments[a]), w.moments[target[a]]);
        kept.moments += moments ? 1 : 0;
      }
    }
  }
  return kept;
}

bool conjugate(const Group& g1, const Magnetic_Operation& a, const Group& g2) {
  if (g1.size() != g2.size()) return false;
  const Mat3i a_inv = unimodular_inverse(a.rotation);
  for (const auto& op : g1) {
    // a op a^-1: rotation R_a R R_a^-1, translation R_a t + t_a - (R_a R R_a^-1) t_a.
    Magnetic_Operation c{mul(mul(a.rotation, op.rotation), a_inv), {}, op.time_reversal};
    const Vec3d at = image_of(Magnetic_Operation{a.rotation, a.translation, false}, op.translation);
    const Vec3d ct = times(to_double(c.rotation), a.translation);
    for (int i = 0; i < 3; ++i) c.translation[i] = at[i] - ct[i];
    const bool listed = std::any_of(g2.begin(), g2.end(), [&](const Magnetic_Operation& o) {
      return o.rotation == c.rotation && o.time_reversal == c.time_reversal &&
             same_point(o.translation, c.translation);
    });
    if (!listed) return false;
  }
  return true;
}

}  // namespace velmoria

// Hand-built candidate structures for the tests of the magnetic layer: operators in the x,y,z
// form, the group their generators make, and structures with the operations of the parent
// group that keep them.
#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "magnetic/identify.hpp"
#include "run/order_parameters.hpp"

namespace velmoria::test_structures {

struct Op {
  Mat3i r{};
  Vec3d t{};
};

inline double frac(double x) {
  return x - std::floor(x + 1e-9);
}

// The determinant of a 3x3 matrix of integers or reals.
template <typename M>
double det(const M& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

// An operator in the x,y,z form ("-y+1/2,x+1/2,z+1/2").
inline Op parse(const std::string& text) {
  Op op;
  int row = 0, sign = 1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == ',') ++row, sign = 1;
    if (c == '+') sign = 1;
    if (c == '-') sign = -1;
    if (c >= 'x' && c <= 'z') op.r[row][c - 'x'] = sign, sign = 1;
    if (c >= '0' && c <= '9') {
      const double num = c - '0';
      const double den = text[i + 2] - '0';
      op.t[row] = sign * num / den, sign = 1;
      i += 2;
    }
  }
  return op;
}

inline Vec3d image(const Op& op, const Vec3d& x) {
  Vec3d y{};
  for (int i = 0; i < 3; ++i) {
    y[i] = op.t[i];
    for (int j = 0; j < 3; ++j) y[i] += op.r[i][j] * x[j];
  }
  return y;
}

// The group that the generators make, modulo the lattice: products with the generators until
// nothing new appears.
inline std::vector<Op> closure(const std::vector<std::string>& generators) {
  std::vector<Op> g{parse("x,y,z")};
  for (std::size_t n = 0; n < g.size(); ++n)
    for (const auto& text : generators) {
      const Op a = parse(text);
      Op p{{}, image(a, g[n].t)};
      for (int i = 0; i < 3; ++i) {
        p.t[i] = frac(p.t[i]);
        for (int j = 0; j < 3; ++j)
          for (int k = 0; k < 3; ++k) p.r[i][j] += a.r[i][k] * g[n].r[k][j];
      }
      const auto same = [&](const Op& q) {
        return q.r == p.r &&
               std::abs(q.t[0] - p.t[0]) + std::abs(q.t[1] - p.t[1]) + std::abs(q.t[2] - p.t[2]) <
                   1e-6;
      };
      if (std::none_of(g.begin(), g.end(), same)) g.push_back(p);
    }
  return g;
}

// Whether the operation (rot, translation in parent coordinates, time reversal) carries the
// periodic structure onto itself: the lattice of its cell onto itself, and every atom onto an
// atom of its type, with the moment turned by the rotation (times its determinant for
// moments), reversed by time reversal.
inline bool keeps(const Candidate_Structure& cs, const Mat3i& rot, const Vec3d& translation,
                  bool tr, bool polar) {
  const double s = (polar ? 1 : det(rot)) * (tr ? -1 : 1);
  // The rotation must carry the lattice of the cell onto itself: C^-1 R C whole.
  const Mat3d to_cell = inverse(cs.cell);
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) {
      double v = 0;
      for (int a = 0; a < 3; ++a)
        for (int b = 0; b < 3; ++b) v += to_cell[i][a] * rot[a][b] * cs.cell[b][j];
      if (std::abs(v - std::round(v)) > 1.0e-6) return false;
    }
  for (std::size_t i = 0; i < cs.positions.size(); ++i) {
    Vec3d x{}, m{}, y{};  // x: the atom in the parent's coordinates, y: its image in the cell's
    for (int r = 0; r < 3; ++r)
      for (int c = 0; c < 3; ++c) x[r] += cs.cell[r][c] * cs.positions[i][c];
    const Vec3d z = image(Op{rot, translation}, x);
    for (int r = 0; r < 3; ++r) {
      y[r] = frac(to_cell[r][0] * z[0] + to_cell[r][1] * z[1] + to_cell[r][2] * z[2]);
      for (int c = 0; c < 3; ++c) m[r] += s * rot[r][c] * cs.moments[i][c];
    }
    bool found = false;
    for (std::size_t j = 0; j < cs.positions.size() && !found; ++j) {
      bool here = cs.types[j] == cs.types[i];
      for (int r = 0; r < 3; ++r)
        here = here && std::abs(frac(y[r] - cs.positions[j][r] + 0.5) - 0.5) < 1.0e-5;
      found = here;
      for (int r = 0; r < 3 && here; ++r)
        if (std::abs(cs.moments[j][r] - m[r]) > 1.0e-4) return false;
    }
    if (!found) return false;
  }
  return true;
}

// The cell diag(q) of the parent cell.
inline std::array<Vec3d, 3> diagonal(std::array<int, 3> q) {
  return {Vec3d{double(q[0]), 0, 0}, Vec3d{0, double(q[1]), 0}, Vec3d{0, 0, double(q[2])}};
}

// A structure in a diagonal supercell: the given atoms (parent coordinates, in the
// supercell's first parent cell or beyond), and its group.
struct Builder {
  Candidate_Structure s;
  void atom(const Vec3d& parent_position, const Vec3d& moment, int type, const std::string& label) {
    Vec3d x{};
    for (int i = 0; i < 3; ++i) x[i] = frac(parent_position[i] / s.cell[i][i]);
    s.positions.push_back(x);
    s.moments.push_back(moment);
    s.types.push_back(type);
    s.labels.push_back(label);
  }
  // The operations of the parent group, with every translation of the parent cell within the
  // supercell and with time reversal or without (displacements: without), that keep the
  // structure: its isotropy subgroup, found by trying them all.
  std::vector<Isotropy_Operation> group;
  void symmetry(const std::vector<Op>& parent, bool polar = false) {
    for (const auto& op : parent)
      for (int i = 0; i < s.cell[0][0]; ++i)
        for (int j = 0; j < s.cell[1][1]; ++j)
          for (int k = 0; k < s.cell[2][2]; ++k)
            for (int tr = 0; tr < (polar ? 1 : 2); ++tr) {
              const Vec3d t{op.t[0] + i, op.t[1] + j, op.t[2] + k};
              if (keeps(s, op.r, t, tr == 1, polar)) group.push_back({0, op.r, t, tr == 1});
            }
  }
};

inline const std::vector<std::string> p42mnm{"-x,-y,z", "-y+1/2,x+1/2,z+1/2", "-x+1/2,y+1/2,-z+1/2",
                                             "-x,-y,-z"};
inline const std::vector<std::string> p4mmm{"-x,-y,z", "-y,x,z", "-x,y,-z", "-x,-y,-z"};
inline const std::vector<std::string> pm3m{"-y,x,z", "z,x,y", "y,x,-z", "-x,-y,-z"};

// An orthogonal parent cell of edges abc, and a structure in its supercell diag(q).
inline Builder box(Vec3d abc, std::array<int, 3> q) {
  Builder b;
  b.s.cell = diagonal(q);
  b.s.lattice = {Vec3d{abc[0], 0, 0}, Vec3d{0, abc[1], 0}, Vec3d{0, 0, abc[2]}};
  return b;
}

// MnF2: Mn at 2a with moments mz1 and mz2 along c.
inline Builder mnf2(double mz1, double mz2) {
  Builder b = box({4.87, 4.87, 3.31}, {1, 1, 1});
  b.atom({0, 0, 0}, {0, 0, mz1}, 1, "Mn_1");
  b.atom({0.5, 0.5, 0.5}, {0, 0, mz2}, 1, "Mn_2");
  b.symmetry(closure(p42mnm));
  return b;
}

// P4/mmm, one atom at the origin, moments along c alternating along a: k = (1/2,0,0).
inline Builder stripes() {
  Builder b = box({4, 4, 6}, {2, 1, 1});
  b.atom({0, 0, 0}, {0, 0, 1}, 1, "Fe_1");
  b.atom({1, 0, 0}, {0, 0, -1}, 1, "Fe_1");
  b.symmetry(closure(p4mmm));
  return b;
}

// Cubic perovskite SrTiO3 (P m -3 m) with a polar mode at the zone centre: Ti up, the oxygens
// down along c (the apical one more than the two others).  P4mm by hand.
inline Builder polar_perovskite() {
  Builder b = box({4, 4, 4}, {1, 1, 1});
  b.atom({0, 0, 0}, {0, 0, 0}, 1, "Sr_1");
  b.atom({0.5, 0.5, 0.5}, {0, 0, 1}, 2, "Ti_1");
  b.atom({0.5, 0.5, 0}, {0, 0, -0.5}, 3, "O_1");
  b.atom({0.5, 0, 0.5}, {0, 0, -0.3}, 3, "O_2");
  b.atom({0, 0.5, 0.5}, {0, 0, -0.3}, 3, "O_3");
  b.symmetry(closure(pm3m), true);
  return b;
}

// Candidates of MnF2 as the analysis would give them: a one-dimensional representation with
// the direction (a), moments +c and -c, and a direction (b) whose candidate is malformed.
inline Magnetic_Candidates mnf2_candidates() {
  Magnetic_Candidates c;
  Physical_Irrep ir;
  ir.dimension = ir.indicator = ir.real_dimension = ir.copies = 1;
  ir.nu = 3;
  ir.k_equiv_mk = true;
  Order_Parameter_Direction d;
  d.dimension = d.free_parameters = 1;
  d.structure = mnf2(1, -1).s;
  d.isotropy = mnf2(1, -1).group;
  d.notation = "(a)";
  ir.directions.push_back(d);
  d.notation = "(b)";
  d.structure.types.pop_back();  // lists of different lengths: not identified
  ir.directions.push_back(d);
  c.irreps.push_back(ir);
  return c;
}

}  // namespace velmoria::test_structures

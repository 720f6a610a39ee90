// A magnetic space group given by its operations on the coordinates of a cell, and small
// structures of exactly its symmetry ("witnesses"), from which spglib names the group and gives
// its standard setting.
//
// The group of a candidate is known: the isotropy subgroup of its direction.  spglib finds it in
// a structure at a cost that grows with the square of the atoms of the structure's standard
// cell times its operations; the candidate's own atoms, a general position of a cubic group in
// a doubled cell, are 96.  Orbits of points that operations of the group fix are much smaller.
// A union of such orbits, each of a type of its own, has at least the symmetry of the group; it
// serves when it has no more, which the operations that keep it tell.
#pragma once

#include <cmath>
#include <vector>

#include "magnetic/identify.hpp"

namespace velmoria {

using Group = std::vector<Magnetic_Operation>;

// x' = R x + t.
Vec3d image_of(const Magnetic_Operation& g, const Vec3d& x);

// Whether two points differ by a lattice vector (within 1e-5).
inline bool same_point(const Vec3d& a, const Vec3d& b) {
  for (int i = 0; i < 3; ++i) {
    const double d = a[i] - b[i];
    // d less its nearest whole number (truncation is cheaper than std::round here)
    const double whole = static_cast<double>(static_cast<long long>(d < 0 ? d - 0.5 : d + 0.5));
    if (std::abs(d - whole) > 1e-5) return false;
  }
  return true;
}

// x reduced to 0 <= x < 1.
double wrap(double x);

// Adds the operation unless the list holds it (modulo the lattice).
void add_unique(Group& ops, const Magnetic_Operation& op);

// The operations (parent coordinates) on the coordinates of the cell whose edges are the
// columns of b: b^-1 R b, b^-1 t, each once modulo the cell's lattice; without the operations
// with time reversal unless keep_time_reversal.  The operations that do not keep the cell's
// lattice are left out; returns their number.
int group_in_cell(const std::vector<Isotropy_Operation>& ops, const Mat3d& b,
                  bool keep_time_reversal, Group& out);

// Orbits of the group in a cell; moments by their components along the cell's edges.
struct Witness {
  std::vector<Vec3d> positions, moments;
  std::vector<int> types;
};

// The orbit of x, of a type of its own, with the moment m averaged over the operations that
// keep x (then every atom of the orbit has one moment, which may be zero).
void add_orbit(Witness& w, const Group& g, const Vec3d& x, const Vec3d& m);

// Points that operations of the group fix, those of the largest stabilisers first: for an operation
// h of order n whose n-th power is the identity once a lattice vector is added to its translation
// (no screw or glide part), the mean of the images of a general point (x0 moved, for each h, by a
// step of its own) under the powers of that h.
std::vector<Vec3d> special_points(const Group& g, const Vec3d& x0);

// The numbers of operations, modulo the cell's lattice, with a linear part among `rotations`
// that carry the witness onto itself: its positions (types kept), and its moments too (turned
// by det(R) R, reversed by time reversal), with time reversal or without.
struct Keeping {
  int positions = 0, moments = 0;
};
Keeping operations_keeping(const Witness& w, const std::vector<Mat3i>& rotations);

// Whether a g1 a^-1 is g2, modulo the cell's lattice.
bool conjugate(const Group& g1, const Magnetic_Operation& a, const Group& g2);

}  // namespace velmoria

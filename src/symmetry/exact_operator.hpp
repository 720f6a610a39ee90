// Exact symmetry operators: an integer rotation and a translation counted in 24ths of a cell
// edge, so that products, inverses and equality of operators need no tolerance.  24ths hold
// every translation a space group needs: the halves, thirds, quarters and sixths of the
// glides and screws, and the twelfths in which the closures of a group work.  The small
// integer matrix helpers that the symmetry code shares live here as well.
#pragma once

#include <array>

#include "support/numeric.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

// Parts of a cell edge in which exact translations are counted.
constexpr int op_den = 24;

constexpr Mat3i identity_matrix{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
constexpr Mat3i inversion_matrix{{{-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};

// x -> rot x + tr / op_den.
struct Exact_Op {
  Mat3i rot = identity_matrix;
  Vec3i tr{};
  friend bool operator==(const Exact_Op&, const Exact_Op&) = default;
};

Mat3i negated(const Mat3i& m);
Mat3i mat_product(const Mat3i& a, const Mat3i& b);
Vec3i mat_vec(const Mat3i& a, const Vec3i& v);
bool is_zero(const Vec3i& v);

// Product a b (b applied first): rot a.rot b.rot, translation a.rot b.tr + a.tr, not reduced.
// The arithmetic wraps instead of overflowing, so that matrices that are no rotations can be
// multiplied without harm.
Exact_Op operator*(const Exact_Op& a, const Exact_Op& b);
// Inverse of an operator whose rotation has determinant +1 or -1; translation not reduced.
Exact_Op inverse(const Exact_Op& op);

// Remainder in [0, op_den) of a count of 24ths: the component brought into [0,1).
int mod_cell(int x);
Vec3i reduced(const Vec3i& t);
// The operator with its translation reduced modulo the lattice of whole cells.
Exact_Op reduced(const Exact_Op& op);

// Nearest multiples of 1/12, in 24ths: the rounding of a real translation for the closures.
Vec3i twelfths_of(const Vec3& t);
// The translation in fractions of the cell edges.
Vec3 to_real(const Vec3i& t);
Sym_Oper_Type to_symop(const Exact_Op& op);
// The nearest multiples of 1/24, in 24ths.
Vec3i in_24ths(const Vec3& t);
// The operator with its translation rounded to the nearest 24th.
Exact_Op to_exact(const Sym_Oper_Type& op);

}  // namespace velmoria

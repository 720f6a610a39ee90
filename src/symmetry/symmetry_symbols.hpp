// Geometric description of a symmetry operator in the crystallographers' conventional form:
// kind and order of the element, sense of rotation, screw or glide part and the location
// (point, line or plane), e.g. "m x,y,0", "2 (0,1/2,0) 0,y,0", "-3+ x,x,x; 0,0,0".
//
// A point, line or plane is held as a parametric triple (ts, x, ix): coordinate i equals
// ts[i] + x[i] * v[ix[i]-1], the free variable v being x, y or z for ix = 1, 2, 3, and
// ts[i] alone where ix[i] is 0.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "support/error_scope.hpp"
#include "support/numeric.hpp"

namespace velmoria {

// Error pair and tolerance of the linear-system solvers below.
VELMORIA_ERROR_PAIR_DECLARATIONS(math3d, Math3d_Scope);
extern constinit thread_local float eps_math3d;  // 1.0e-5 by default
// Restores eps_math3d to its default 1.0e-5.
void set_eps_default();

// Tolerance of the geometric symbols.
constexpr float eps_symbol = 0.0002f;

// Symbol of the operator given in the x,y,z form; blank text when it is not a rotation.
std::string symmetry_symbol_xyz(std::string_view text);
// Symbol of the operator (s, t); trailing blanks dropped.
std::string symmetry_symbol_str(const Mat3i& s, const Vec3& t);
// Text of a parametric triple, without blanks, e.g. "x,2x,1/4".
std::string get_string_resolv(const Vec3& t, const Vec3& x, const Vec3i& ix);
// Tabulated geometric symbol (14 characters), " -> " and Kovalev name (3 characters) of a
// rotation matrix, cubic or hexagonal according to `hexa`; blank text with err_symm when
// the matrix is no rotation of m-3m (or of 6/mmm).
std::string get_symkov(const Mat3i& s);

// Solution sets of w x = t as parametric triples; on an inconsistent system err_math3d is
// set and the triple keeps its start values ts = 0, x = 1, ix = 0.
void resolv_sist_1x2(const Vec2i& w, float t, Vec2& ts, Vec2& x, Vec2i& ix);
void resolv_sist_1x3(const Vec3i& w, float t, Vec3& ts, Vec3& x, Vec3i& ix);
void resolv_sist_2x3(const std::array<Vec3i, 2>& w, const Vec2& t, Vec3& ts, Vec3& x, Vec3i& ix);
void resolv_sist_3x3(const Mat3i& w, const Vec3& t, Vec3& ts, Vec3& x, Vec3i& ix);

}  // namespace velmoria

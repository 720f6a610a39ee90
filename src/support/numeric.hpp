// Tolerances, integer tests, lattice reduction, determinants and traces.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "support/error_scope.hpp"

namespace velmoria {

using Vec2 = std::array<float, 2>;
using Vec3 = std::array<float, 3>;
using Vec2i = std::array<int, 2>;
using Vec3i = std::array<int, 3>;
using Mat3i = std::array<Vec3i, 3>;  // m[row][column]
using Mat3r = std::array<std::array<float, 3>, 3>;

// Tolerance of every single-precision test; 1.0e-5 by default.  Global to the thread.
extern constinit thread_local float epss;
// Tolerance of the double-precision variants; 1.0e-12.
extern constinit thread_local double ep_ss;
VELMORIA_ERROR_PAIR_DECLARATIONS(mathgen, Mathgen_Scope);

void set_epsg_sp(float x);
void set_epsg_dp(double x);
void set_epsg_default();
float epss_val();
double ep_ss_val();
// The pending message, the pair cleared; none when no error is pending.  For the caller that
// reports an error and goes on.
std::optional<std::string> take_err_mathgen();

// Largest magnitude taken from the user for a component of k or a coordinate: far beyond any
// cell of a crystal, and small enough that the integer arithmetic of the group work on such a
// number never leaves the range of an int.
constexpr float max_user_magnitude = 1.0e6f;
// A number from the user that is finite and within max_user_magnitude.
inline bool within_user_range(float v) {
  return v >= -max_user_magnitude && v <= max_user_magnitude;  // false for NaN as well
}
inline bool within_user_range(const Vec3& v) {
  return within_user_range(v[0]) && within_user_range(v[1]) && within_user_range(v[2]);
}

// Nearest integer, halves away from zero.
int nint(float x);
int nint(double x);

bool negligibler(float x);
bool zbelongn(float x);
bool zbelongv(std::span<const float> v);
bool zbelongn_dp(double x);
bool zbelongv_dp(std::span<const double> v);

// Each component brought into [0,1) as w - trunc(w) with w = u + 10.
Vec3 modulo_lat(const Vec3& u);
std::vector<float> modulo_lat(std::span<const float> u);

bool equal_matrix_i(const Mat3i& a, const Mat3i& b, int n);
bool equal_vector_i(std::span<const int> a, std::span<const int> b, int n);

int determ_a_i(const Mat3i& a);
float determ_a_r(const Mat3r& a);

int trace_i(const Mat3i& a);
float trace_r(const Mat3r& a);
// Rectangular matrices, held row by row: the sum of a(i,i) up to min(rows, columns).
int trace_i(std::span<const int> a, int rows, int cols);
float trace_r(std::span<const float> a, int rows, int cols);

}  // namespace velmoria

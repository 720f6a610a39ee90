// Fractions: translations written as small fractions, and fraction text read back.
#pragma once

#include <string>
#include <string_view>

#include "support/numeric.hpp"

namespace velmoria {

// (a,b,c) with fractions of one-digit numerators and denominators.
std::string frac_trans_1dig(const Vec3& v);
// One value with a sign: +1/2, -7/24, +1, 0, or a decimal with four decimals.
std::string get_fraction_2dig(float v);
// The number a term such as 1/2, -3, + or blank stands for; sets err_string on failure.
float read_fract(std::string_view str);

}  // namespace velmoria

// Fractions: translations written as small fractions, and fraction text read back.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "support/numeric.hpp"

namespace velmoria {

// The simple fractions of the analysis, as values, as text and as one letter each: they round
// the components of k and name translations in Seitz symbols.
constexpr std::array<float, 11> frac = {1.0f / 2, 1.0f / 3, 2.0f / 3, 1.0f / 4, 3.0f / 4, 1.0f / 6,
                                        5.0f / 6, 1.0f / 8, 3.0f / 8, 5.0f / 8, 7.0f / 8};
constexpr std::array<const char*, 11> frs = {"1/2", "1/3", "2/3", "1/4", "3/4", "1/6",
                                             "5/6", "1/8", "3/8", "5/8", "7/8"};
constexpr std::array<char, 11> trs = {'p', 'q', 'r', 's', 't', 'u', 'v', 'w', 'x', 'y', 'z'};

// A component of k within this distance of a tabulated fraction (in absolute value) becomes it.
constexpr float fraction_snap_tolerance = 0.001f;

// k with each component snapped to a tabulated fraction of the same sign where it lies within
// fraction_snap_tolerance of one, as the KVEC line reads it.
Vec3 snap_to_fractions(Vec3 k);

// (a,b,c) with fractions of one-digit numerators and denominators.
std::string frac_trans_1dig(const Vec3& v);
// One value with a sign: +1/2, -7/24, +1, 0, or a decimal with four decimals.
std::string get_fraction_2dig(float v);
// The number a term such as 1/2, -3, + or blank stands for; sets err_string on failure.
float read_fract(std::string_view str);

}  // namespace velmoria

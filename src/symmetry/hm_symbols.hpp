// The reduced set of operators of a space group read directly from its Hermann-Mauguin symbol,
// by the rules of each crystal system, without any closure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/numeric.hpp"

namespace velmoria {

// Operators a Hermann-Mauguin symbol gives at most (the proper part of m-3m with its doubling).
constexpr int max_hms_ops = 24;

// Reads the Hermann-Mauguin symbol symb (either case, items separated by blanks, the lattice
// letter first) and writes the reduced set of its group.
//  out: ng operators in ss, ts (resized to exactly ng entries; identity first, translations in
//       [0,1)); isystem 1..7; ibravl 1 P, 2 A, 3 B, 4 C, 5 I, 6 R, 7 F; latsy = family letter +
//       lattice letter; *icentre (when icentre is not null) 1 acentric or 2 centre at the
//       origin, never 0.
//  Sets the lattice globals (lat_ch, nlat, ltr, inlat) through latsym.  A bad symbol sets
//  err_symm with its message; ss and ts are then the reset state (max_hms_ops entries, the
//  first the identity, all others zero) and ng is 1.
void get_so_from_hms(int& isystem, int* icentre, int& ibravl, int& ng, std::vector<Mat3i>& ss,
                     std::vector<Vec3>& ts, std::string& latsy, std::string_view symb);

}  // namespace velmoria

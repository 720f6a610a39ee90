// The reduced set of operators of a space group read directly from its Hermann-Mauguin symbol,
// by the rules of each crystal system, without any closure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/numeric.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

// Operators a Hermann-Mauguin symbol gives at most (the proper part of m-3m with its doubling).
constexpr int max_hms_ops = 24;

// Reads the Hermann-Mauguin symbol symb (either case, items separated by blanks, the lattice
// letter first): the result holds the ng operators of its reduced set (identity first,
// translations in [0,1)), isystem 1..7, ibravl 1 P, 2 A, 3 B, 4 C, 5 I, 6 R, 7 F, latsy, and
// icentre 1 acentric or 2 centre at the origin, never 0.  Sets the lattice globals (lat_ch,
// nlat, ltr, inlat) through latsym.  A bad symbol sets err_symm with its message; the result
// is then acentric with the reset state of the list: ng 1, max_hms_ops entries, the first the
// identity and all others zero.
Group_Operators get_so_from_hms(std::string_view symb);

}  // namespace velmoria

// Lattice translations of a centred lattice, and the split of an orbit into the orbits of a
// subgroup.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "support/numeric.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

// Whether v is a translation of the lattice with letter lat (P, A, B, C, I, R, F in either case;
// Z, capital only, uses the globals ltr/nlat), within the tolerance epss of zbelongv.
bool lattice_trans(const Vec3& v, char lat);
// The same with the letter as the first character of a text (blank when empty).
bool lattice_trans(const Vec3& v, std::string_view lat);

// Splits the orbit of x under all operators of spg into sub-orbits of the subgroup listed in
// ptr (1-based numbers into spg.symop, ended by a 0 or by the end of ptr).
// mult: number of distinct positions; orb[0..mult-1]: the positions, x first; ind[j]: the
// sub-orbit number (1, 2, ...) of position j, 0 when no operator of ptr reached it.
// orb and ind are enlarged to at least spg.multip entries when smaller; every entry of ind is
// set.  convl: compare with primitive lattice translations only (letter P).  prim: images are
// not reduced to the cell.
void get_suborbits(const Vec3& x, const Space_Group_Type& spg, std::span<const int> ptr, int& mult,
                   std::vector<Vec3>& orb, std::vector<int>& ind, bool convl = false,
                   bool prim = false);

}  // namespace velmoria

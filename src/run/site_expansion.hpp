// Sites of the run: a position expanded into the atoms that the little group makes of it,
// and the check of a site whose atoms are listed one by one.
#pragma once

#include <string_view>

#include "run/run_state.hpp"

namespace velmoria {

// Fills site ns (1-based) with the distinct images of xt under the operators of the little
// group (rs.store), two images being the same atom when they differ by a translation of the
// lattice rs.mv.lat_type.  With prim 0 the images are brought into the cell and symstr shows
// the shift; otherwise they stay as the operators give them.  Atoms are labelled atcod, "_"
// and their number.  With no operators the site gets no atoms.
void genatoms(Run_State& rs, int prim, std::string_view atcod, const Vec3& xt, int ns);

// Checks that the little group reaches every atom of site ns from its first atom, each
// operator serving one atom at most, and fills symstr and symms of the atoms it reaches.
// On failure writes the fatal-error text to the result file and the console and returns
// false; the caller ends the run.
bool determ_symmops(Run_State& rs, int ns);

}  // namespace velmoria

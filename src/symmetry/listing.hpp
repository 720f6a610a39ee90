// Listing of a space group record: names, lattice, operators and special positions.
#pragma once

#include <string>

#include "symmetry/records.hpp"

namespace velmoria {

// Appends the listing of `spg` to the output unit `unit`.  With `full` the centring
// vectors, every operator with its geometric symbol and the special positions are written;
// otherwise the reduced set of operators only.
void write_spacegroup(const Space_Group_Type& spg, std::string& unit, bool full = false);

}  // namespace velmoria

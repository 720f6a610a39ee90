// A Hall symbol written for the operators of a group, and the name of the group when that
// symbol is one of the table of settings.
#pragma once

#include <string>

#include "symmetry/records.hpp"

namespace velmoria {

// Generators a Hall symbol holds at most.
constexpr int max_hall_symbol_generators = 4;

// Writes a Hall symbol for the reduced set (entries 1..num_ops of symop), the lattice spg_lat,
// the centre (centred, centre_coord) of spacegroup and names the group from the table of
// settings.  The row of the written symbol names it when that row's group has the same
// operators (all multip entries of symop) modulo the lattice; otherwise the first row whose
// group has them does.  A row found: num_spg, spg_symb (the table's symbol, in capitals), hall,
//  laue, pg, info, asym_unit from the row, setting "Tabulated Setting".  No row: spg_symb
//  "Unknown", info "Gen.", setting "Non-standard Setting".
//  hall_text (when not null) receives the written symbol, with a blank in front when it does
//  not begin with "-".  More than four generators: err_symm with " Error in generators" and
//  spacegroup untouched.
void get_hallsymb_from_gener(Space_Group_Type& spacegroup, std::string* hall_text = nullptr);

}  // namespace velmoria

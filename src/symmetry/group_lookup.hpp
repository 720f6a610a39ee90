// Look-up of a group among the tabulated settings by its operators.  Two groups in the same
// setting are one group exactly when their operators coincide modulo the lattice translations;
// a canonical key of the operator set (every operator of the expanded list, translations in
// 24ths brought into the cell, sorted) makes that test a comparison and the search a binary
// search.
#pragma once

#include <cstdint>
#include <vector>

#include "symmetry/records.hpp"

namespace velmoria {

using Group_Key = std::vector<std::uint32_t>;

// The key of the `multip` operators of `symop`.  A record whose operators cannot be those of a
// tabulated setting (a matrix entry outside -1..1, no operators) gives an empty key.
Group_Key group_key(const Space_Group_Type& spg);

// The key of the group of row `row` (1-based) of the table of settings, made from its Hall
// symbol.  The keys of all rows are made once per process, at the first call of this function or
// of setting_of_key; the globals of the calling thread are left as they were.
const Group_Key& setting_key(int row);

// The first row (1-based) of the table of settings whose group has this key, 0 when none.
int setting_of_key(const Group_Key& key);

}  // namespace velmoria

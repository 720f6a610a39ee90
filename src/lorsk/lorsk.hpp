// The little-group driver: from the group text and k to the irreducible representations of
// the little group of k in the representation store, with the listings on the result unit.
#pragma once

#include <string>
#include <string_view>

#include "lorsk/store.hpp"
#include "lorsk/work.hpp"
#include "support/numeric.hpp"

namespace velmoria {

// Builds the space group from `group_text` (a generator list when gen_flag, else the
// tabulated `symbol` when given, else the text as a forced Hall symbol), finds the little
// group of k and its chain, induces its irreducible representations and fills `store`
// (spg, ngk, nreps, idim, ir, t, names, repr, repi, chr, chi, ph).  Writes the group listing,
// the generators, the little group and its representative elements on `unit`; with
// listing = 1 also every matrix of every representation.  newk = 1 leaves out the list of
// coset representatives of the space group.
// Returns status_done, or status_setup_failed (set_spacegroup failed; err_symm_mess holds
// why) or status_not_determined (the generators give no complete group): the store is then
// not filled, apart from spg.
int lorsk(std::string& unit, const Vec3& k, int newk, std::string_view label,
          std::string_view group_text, int listing, bool gen_flag, const std::string* symbol,
          lorsk_proc& store);

// The same with the work data kept by the caller (for inspection of SUP, SUB and the chain).
int lorsk(std::string& unit, const Vec3& k, int newk, std::string_view label,
          std::string_view group_text, int listing, bool gen_flag, const std::string* symbol,
          lorsk_proc& store, Lorsk_Work& w);

// The part of lorsk behind the space group: w.SUP and w.order as space_group left them and
// store.spg filled.  Writes the lattice symbol, k, the little group and its elements (and with
// listing = 1 the matrices), and fills the store.  Returns status_done, or
// status_not_determined when the chain of the little group cannot be built.
int little_group_irreps(std::string& unit, const Vec3& k, std::string_view label, int listing,
                        lorsk_proc& store, Lorsk_Work& w);

}  // namespace velmoria

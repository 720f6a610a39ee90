// The block of representations that a control file reads (SPGR, KVEC and LITTLE_GROUP
// lines), written from computed representations, so that a user can edit them, keep them
// with the structure, or pass them on.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lorsk/store.hpp"

namespace velmoria {

// The lines SPGR (the Hall symbol of the store's group), KVEC and a LITTLE_GROUP block of the
// store's representations.  The operators are written as the tables of a run show them,
// translations in [0,1), with their matrices multiplied by the phase factors of that change;
// a representation whose elements are all real is written with signed real numbers, any
// other with a line of phases.  The names of the representations are the label (or "k")
// followed by their number.  nullopt, with the reason in `why`, when the group has no Hall
// symbol that a SPGR line can hold or an operator text is longer than a block reads.
std::optional<std::string> supplied_block_text(lorsk_proc store, const Vec3& vk,
                                               std::string_view label, std::string& why);

}  // namespace velmoria

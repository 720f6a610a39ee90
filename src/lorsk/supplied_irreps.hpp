// Representations supplied in the control file instead of computed: the block that brings
// them and its echo on the result file.
//
// The block: a head "LITTLE_GROUP ngk nreps idim(1) .. idim(nreps)" (or FULL_GROUP_IR,
// EXTENDED_LITTLE_GROUP), then for each operator its line "text: x,y,z" and, for each
// representation, a line "text: d*d numbers" of the matrix row by row, followed by a line of
// d*d phases in fractions of a full turn when idim is negative.  The name of representation j
// stands between the first parentheses of its matrix line for the first operator.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lorsk/store.hpp"

namespace velmoria {

// Columns of the operator text behind the colon of an operator line that a block reads.
constexpr std::size_t op_string_width = 20;

// What stops the reading of a block, and whether its message goes to the console alone (a
// line of numbers that cannot be read) or to the result file as well.
struct Block_Error {
  std::string message;
  bool console_only = false;
};

// Reads the block whose head is line `head` of `lines` (lines shifted left and trimmed); the
// numbers of the head stand behind column `key_end`.  Fills the store: ngk, nreps, idim (as
// absolute values), ir, t, names, repr and repi, and `op_strings` with the operator texts as
// read (20 columns).  Nothing is stored past the limits of the store: a head beyond them is
// refused.
std::optional<Block_Error> read_supplied_block(lorsk_proc& store,
                                               const std::vector<std::string>& lines,
                                               std::size_t head, std::size_t key_end,
                                               std::vector<std::string>& op_strings);

// The listing of the group of a supplied run (the group text read as a Hall symbol), its
// generators, the heading of the supplied representations, the echo of the first block of
// `lines` and the names of the representations taken from it.  Returns a status of the group
// preparation: status_setup_failed leaves the reason in err_symm_mess.
int write_read_irreps(std::string& unit, const Vec3& vk, std::string_view label,
                      std::string_view spaceg, const std::vector<std::string>& lines,
                      lorsk_proc& store);

}  // namespace velmoria

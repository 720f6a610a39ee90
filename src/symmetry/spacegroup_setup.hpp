// Setting up a complete space group record from a number, a Hermann-Mauguin symbol, a Hall
// symbol or a list of generators.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "symmetry/records.hpp"

namespace velmoria {

// Size of the work lists of operators of the setup.
constexpr int max_setup_ops = 384;

// Fills `spacegroup` from `spacegen`: a number (with an optional ":choice"), a symbol of the
// table of settings, or a Hall symbol.  `gen` holds the generators in the x,y,z form, of
// which the first `ngen` are used; `mode` ("HMS", "HAL", "ITC", "GEN" or "FIX", first three
// characters in either case) forces the road; `force_hall` makes a tabulated symbol go by
// its Hall symbol.  A failure sets err_symm and err_symm_mess; the record keeps what was
// filled so far.
void set_spacegroup(std::string_view spacegen, Space_Group_Type& spacegroup,
                    const std::vector<std::string>* gen = nullptr,
                    std::optional<int> ngen = std::nullopt,
                    std::optional<std::string_view> mode = std::nullopt, bool force_hall = false);

}  // namespace velmoria

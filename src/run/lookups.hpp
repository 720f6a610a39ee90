// The look-ups of the command line as data: a space group from its text, and the irreducible
// representations of the little group of k.  The command line prints them; the JSON writer and
// the Python module read the same records.  Each look-up starts from the library's clean state,
// as a run does, so that look-ups and runs in one thread never meet.
#pragma once

#include <string>
#include <string_view>

#include "kvector/group_k.hpp"
#include "lorsk/store.hpp"
#include "support/numeric.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

// How the text of a group look-up is read.
enum class Group_Text {
  symbol,      // a number, number:setting, tabulated symbol, or else a Hall symbol
  hall,        // a Hall symbol, even where the same text is a tabulated symbol
  generators,  // operators in the x,y,z form separated by ";"
};

struct Group_Lookup {
  std::string error;  // empty when the group was made; else the program's message
  Space_Group_Type group;
  std::string generators;  // the generators the group was built from where known (x,y,z, ";")
};

Group_Lookup look_up_group(std::string_view text, Group_Text kind = Group_Text::symbol);

// The listing of a group as --group prints it.
std::string group_listing(const Space_Group_Type& group);

struct Irreps_Lookup {
  std::string error;       // empty when the representations were found; else the program's message
  Vec3 k{};                // k as used: each component snapped to a simple fraction when close
  std::string label;       // the label of the k point, two characters
  std::string generators;  // the generators the group was built from (x,y,z texts, ";")
  lorsk_proc store;        // the space group (store.spg), the little group, its representations
  Group_k_Type gk;         // the star of k and the group of the vector
  std::string listing;     // the listing that --irreps prints
};

// The representations of the little group of k in the group of `text` (read as an SPGR line
// reads it, or as generators when by_generators).  A label longer than two characters keeps
// its last two.
Irreps_Lookup look_up_irreps(std::string_view text, bool by_generators, const Vec3& k,
                             std::string_view label = "");

// One component of k as the command line reads it: a number, or a fraction p/q.  False when
// the token is neither.
bool read_k_component(std::string_view token, float& value);

}  // namespace velmoria

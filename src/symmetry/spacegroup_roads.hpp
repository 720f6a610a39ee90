// The roads of the space-group setup that work from a row of the table of settings, and the
// completion of the record that follows every road.  set_spacegroup is the way in; these are
// declared apart so that the text a road reads for a row can be given directly.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "symmetry/records.hpp"

namespace velmoria::setup_roads {

// The roads to a reduced set: a tabulated Hermann-Mauguin symbol read by its own rules, a Hall
// symbol, the tabulated generators of a group (IT), a list of generators closed into a group,
// and a fixed list of operators taken as it is.
enum class Road { hms, hall, itc, gen, fix };

// The road a mode names by its first three characters ("HMS", "HAL", "ITC", "GEN", "FIX", in
// either case, blanks in front skipped); none for any other text.
std::optional<Road> road_of_mode(std::string_view mode);

// k is the 0-based row of the table of settings, -1 for none.  `hall` is the Hall symbol read;
// `row_hall` the Hall symbol of row k, read when the symbol has a ":" choice; `gener` the
// generators of row k separated by ";".  A failure raises err_symm; the table fields of the
// row are filled all the same.  Each road fills the fields of spg that it names and returns the
// reduced set.
Group_Operators road_hall(Space_Group_Type& spg, const std::string& hall, int k);
Group_Operators road_hms(Space_Group_Type& spg, std::string_view spacegen, int k,
                         const std::string& row_hall);
Group_Operators road_itc_generators(Space_Group_Type& spg, std::string_view spacegen,
                                    const std::string& gener, int k);

// The record completed from rr on `road` (row k): its common fields; then, unless err_symm is
// set (a blank message becoming the generic one), the operators expanded by inversion and
// centring, the classes and the special orbits.
void finish_spacegroup(Space_Group_Type& spg, const Group_Operators& rr, Road road, int k);

}  // namespace velmoria::setup_roads

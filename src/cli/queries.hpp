// Look-ups for users from the command line: the listing of a space group.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace velmoria {

// velmoria --group TEXT | --group --gen "g1; g2; ...": the full listing of the group on
// `out`; on failure the setup's message on `err` and status 1.
int query_group(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace velmoria

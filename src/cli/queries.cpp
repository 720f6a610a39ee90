#include "cli/queries.hpp"

#include "support/text.hpp"
#include "symmetry/listing.hpp"
#include "symmetry/spacegroup_setup.hpp"

namespace velmoria {

namespace {

// The pieces of a generator list separated by ";", each shifted left.
std::vector<std::string> split_generators(const std::string& text) {
  std::vector<std::string> gens;
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find(';', start);
    if (end == std::string::npos) end = text.size();
    const std::string piece = trim(adjustl(text.substr(start, end - start)));
    if (!piece.empty()) gens.push_back(piece);
    start = end + 1;
  }
  return gens;
}

}  // namespace

int query_group(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  Space_Group_Type spg;
  if (args.size() == 3 && args[1] == "--gen") {
    const std::vector<std::string> gens = split_generators(args[2]);
    if (gens.empty()) {
      err << "velmoria: --group --gen needs a list of generators such as \"-x,-y,z; x+1/2,y+1/2,z\"\n";
      return 1;
    }
    set_spacegroup(" ", spg, &gens, static_cast<int>(gens.size()), "gen");
  } else if (args.size() == 3 && args[1] == "--hall" && !is_blank(args[2])) {
    set_spacegroup(args[2], spg, nullptr, std::nullopt, "HAL");
  } else if (args.size() == 2 && !is_blank(args[1])) {
    set_spacegroup(args[1], spg);
  } else {
    err << "velmoria: usage: velmoria --group TEXT | --group --hall HALL | --group --gen \"g1; ...\"\n";
    return 1;
  }
  if (err_symm) {
    err << trim(err_symm_mess) << "\n";
    return 1;
  }
  std::string listing;
  write_spacegroup(spg, listing, true);
  out << listing;
  return 0;
}

}  // namespace velmoria

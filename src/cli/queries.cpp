#include "cli/queries.hpp"

#include <cmath>

#include "analysis/supplied_block.hpp"
#include "lorsk/group_preparation.hpp"
#include "lorsk/lorsk.hpp"
#include "support/fractions.hpp"
#include "support/list_read.hpp"
#include "support/text.hpp"
#include "symmetry/listing.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {

namespace {

// One component of k: a number, or a fraction p/q.
bool read_component(const std::string& token, float& value) {
  const std::size_t slash = token.find('/');
  if (slash == std::string::npos) return !is_blank(token) && read_list(token, value);
  float p = 0.0f;
  float q = 0.0f;
  if (is_blank(token.substr(0, slash)) || is_blank(token.substr(slash + 1))) return false;
  if (!read_list(token.substr(0, slash), p) || !read_list(token.substr(slash + 1), q)) {
    return false;
  }
  if (q == 0.0f) return false;
  value = p / q;
  return std::isfinite(value);
}

}  // namespace

int query_irreps(std::vector<std::string> args, std::ostream& out, std::ostream& err) {
  const char* usage =
      "velmoria: usage: velmoria --irreps TEXT kx ky kz [label] [--block] | "
      "--irreps --gen \"g1; ...\" kx ky kz [label] [--block]\n";
  const bool block = args.size() > 1 && args.back() == "--block";
  if (block) args.pop_back();
  const bool by_generators = args.size() >= 2 && args[1] == "--gen";
  const std::size_t first_k = by_generators ? 3 : 2;
  if (args.size() < first_k + 3 || args.size() > first_k + 4 || is_blank(args[first_k - 1])) {
    err << usage;
    return 1;
  }
  const std::string text = args[first_k - 1];
  Vec3 vk{};
  for (std::size_t i = 0; i < 3; ++i) {
    if (!read_component(args[first_k + i], vk[i])) {
      err << "velmoria: the component " << args[first_k + i] << " of k is not a number\n";
      return 1;
    }
  }
  if (!within_user_range(vk)) {
    err << "velmoria: a component of k lies beyond +/-1000000\n";
    return 1;
  }
  vk = snap_to_fractions(vk);
  // The label as a KVEC line gives it: its last two characters, "H" becoming " H".
  std::string label = "  ";
  if (args.size() == first_k + 4) {
    const std::string padded = "  " + trim(args[first_k + 3]);
    label = padded.substr(padded.size() - 2);
  }

  // As a run does it: a tabulated group by the generators of the tables (mode ITC).
  std::string table_generators;
  const bool tabulated = !by_generators && get_generators(text, table_generators);
  lorsk_proc store;
  std::string unit;
  const int status =
      lorsk(unit, vk, 0, label, text, 1, by_generators, tabulated ? &text : nullptr, store);
  if (status == status_setup_failed) {
    err << trim(adjustl(err_symm_mess)) << ": " << trim(text) << "\n";
    return 1;
  }
  if (status == status_not_determined) {
    err << " => Generators of the Space group: " << trim(text) << " not determined!\n";
    return 1;
  }
  out << unit;
  if (!block) return 0;
  std::string why;
  const std::optional<std::string> lines = supplied_block_text(store, vk, label, why);
  if (!lines) {
    err << "velmoria: no block can be written: " << why << "\n";
    return 1;
  }
  out << "\n! The group, k and the representations above, as a control file reads them:\n"
      << *lines;
  return 0;
}

int query_group(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  Space_Group_Type spg;
  if (args.size() == 3 && args[1] == "--gen") {
    const std::vector<std::string> gens = split_generators(args[2]);
    if (is_blank(args[2])) {
      err << "velmoria: --group --gen needs a list of generators such as \"-x,-y,z; "
             "x+1/2,y+1/2,z\"\n";
      return 1;
    }
    set_spacegroup(" ", spg, &gens, static_cast<int>(gens.size()), "gen");
  } else if (args.size() == 3 && args[1] == "--hall" && !is_blank(args[2])) {
    set_spacegroup(args[2], spg, nullptr, std::nullopt, "HAL");
  } else if (args.size() == 2 && !is_blank(args[1])) {
    set_spacegroup(args[1], spg);
  } else {
    err << "velmoria: usage: velmoria --group TEXT | --group --hall HALL | --group --gen \"g1; "
           "...\"\n";
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

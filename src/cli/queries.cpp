#include "cli/queries.hpp"

#include <algorithm>

#include "analysis/supplied_block.hpp"
#include "json/run_document.hpp"
#include "run/lookups.hpp"
#include "support/text.hpp"

namespace velmoria {

namespace {

// Takes every --json out of the arguments; whether there was one.
bool take_json_flag(std::vector<std::string>& args) {
  const auto flags = std::remove(args.begin(), args.end(), std::string("--json"));
  const bool json = flags != args.end();
  args.erase(flags, args.end());
  return json;
}

// A document pretty-printed with an indent of one blank, doubles to full precision.
void write_document(std::ostream& out, const nlohmann::json& doc) {
  out << doc.dump(1) << "\n";
}

}  // namespace

int query_irreps(std::vector<std::string> args, std::ostream& out, std::ostream& err) {
  const bool json = take_json_flag(args);
  const char* usage =
      "velmoria: usage: velmoria --irreps TEXT kx ky kz [label] [--block] | "
      "--irreps --gen \"g1; ...\" kx ky kz [label] [--block]\n";
  const bool block = args.size() > 1 && args.back() == "--block";
  if (block) args.pop_back();
  if (block && json) {
    err << "velmoria: --block and --json cannot be given together\n";
    return 1;
  }
  const bool by_generators = args.size() >= 2 && args[1] == "--gen";
  const std::size_t first_k = by_generators ? 3 : 2;
  if (args.size() < first_k + 3 || args.size() > first_k + 4 || is_blank(args[first_k - 1])) {
    err << usage;
    return 1;
  }
  Vec3 vk{};
  for (std::size_t i = 0; i < 3; ++i) {
    if (!read_k_component(args[first_k + i], vk[i])) {
      err << "velmoria: the component " << args[first_k + i] << " of k is not a number\n";
      return 1;
    }
  }
  if (!within_user_range(vk)) {
    err << "velmoria: a component of k lies beyond +/-1000000\n";
    return 1;
  }
  const std::string label = args.size() == first_k + 4 ? args[first_k + 3] : "";
  const Irreps_Lookup found = look_up_irreps(args[first_k - 1], by_generators, vk, label);
  if (!found.error.empty()) {
    err << found.error << "\n";
    return 1;
  }
  if (json) {
    write_document(out, irreps_document(found));
    return 0;
  }
  out << found.listing;
  if (!block) return 0;
  std::string why;
  const std::optional<std::string> lines =
      supplied_block_text(found.store, found.k, found.label, why);
  if (!lines) {
    err << "velmoria: no block can be written: " << why << "\n";
    return 1;
  }
  out << "\n! The group, k and the representations above, as a control file reads them:\n"
      << *lines;
  return 0;
}

int query_group(std::vector<std::string> args, std::ostream& out, std::ostream& err) {
  const bool json = take_json_flag(args);
  Group_Lookup found;
  if (args.size() == 3 && args[1] == "--gen") {
    if (is_blank(args[2])) {
      err << "velmoria: --group --gen needs a list of generators such as \"-x,-y,z; "
             "x+1/2,y+1/2,z\"\n";
      return 1;
    }
    found = look_up_group(args[2], Group_Text::generators);
  } else if (args.size() == 3 && args[1] == "--hall" && !is_blank(args[2])) {
    found = look_up_group(args[2], Group_Text::hall);
  } else if (args.size() == 2 && !is_blank(args[1])) {
    found = look_up_group(args[1]);
  } else {
    err << "velmoria: usage: velmoria --group TEXT | --group --hall HALL | --group --gen \"g1; "
           "...\"\n";
    return 1;
  }
  if (!found.error.empty()) {
    err << found.error << "\n";
    return 1;
  }
  if (json) {
    write_document(out, group_document(found));
    return 0;
  }
  out << group_listing(found.group);
  return 0;
}

}  // namespace velmoria

#include "run/lookups.hpp"

#include <cmath>

#include "lorsk/group_preparation.hpp"
#include "lorsk/lorsk.hpp"
#include "run/run_driver.hpp"
#include "support/fractions.hpp"
#include "support/list_read.hpp"
#include "support/text.hpp"
#include "symmetry/listing.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {

Group_Lookup look_up_group(std::string_view text, Group_Text kind) {
  reset_library_state();
  Group_Lookup out;
  const std::string t(text);
  if (is_blank(t)) {
    out.error = "No space group given";
    return out;
  }
  if (kind == Group_Text::generators) {
    const std::vector<std::string> gens = split_generators(t);
    set_spacegroup(" ", out.group, &gens, static_cast<int>(gens.size()), "gen");
    out.generators = t;
  } else if (kind == Group_Text::hall) {
    set_spacegroup(t, out.group, nullptr, std::nullopt, "HAL");
  } else {
    set_spacegroup(t, out.group);
    // A tabulated group: the generators of the tables (the JSON writer checks they make it).
    std::string table_generators;
    if (!err_symm && get_generators(t, table_generators)) out.generators = table_generators;
  }
  if (err_symm) out.error = trim(err_symm_mess);
  return out;
}

std::string group_listing(const Space_Group_Type& group) {
  std::string listing;
  write_spacegroup(group, listing, true);
  return listing;
}

Irreps_Lookup look_up_irreps(std::string_view text, bool by_generators, const Vec3& k,
                             std::string_view label) {
  reset_library_state();
  Irreps_Lookup out;
  const std::string t(text);
  if (is_blank(t)) {
    out.error = "No space group given";
    return out;
  }
  if (!within_user_range(k)) {
    out.error = "A component of k lies beyond +/-1000000";
    return out;
  }
  out.k = snap_to_fractions(k);
  // As a KVEC line gives it: the last two characters, "H" becoming " H".
  const std::string padded = "  " + trim(std::string(label));
  out.label = padded.substr(padded.size() - 2);

  // As a run does it: a tabulated group by the generators of the tables (mode ITC).
  std::string table_generators;
  const bool tabulated = !by_generators && get_generators(t, table_generators);
  out.generators = by_generators ? t : table_generators;
  const int status = lorsk(out.listing, out.k, 0, out.label, t, 1, by_generators,
                           tabulated ? &t : nullptr, out.store);
  if (status == status_setup_failed) {
    out.error = trim(adjustl(err_symm_mess)) + ": " + trim(t);
  } else if (status == status_not_determined) {
    out.error = " => Generators of the Space group: " + trim(t) + " not determined!";
  } else {
    k_star(out.k, out.store.spg, out.gk);
  }
  return out;
}

bool read_k_component(std::string_view token, float& value) {
  const std::string t(token);
  const std::size_t slash = t.find('/');
  float v = 0.0f;
  if (slash == std::string::npos) {
    if (is_blank(t) || !read_list(t, v)) return false;
  } else {
    float p = 0.0f;
    float q = 0.0f;
    if (is_blank(t.substr(0, slash)) || is_blank(t.substr(slash + 1))) return false;
    if (!read_list(t.substr(0, slash), p) || !read_list(t.substr(slash + 1), q)) return false;
    if (q == 0.0f) return false;
    v = p / q;
  }
  if (!std::isfinite(v)) return false;
  value = v;
  return true;
}

}  // namespace velmoria

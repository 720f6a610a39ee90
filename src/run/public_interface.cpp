// The installed interface (include/velmoria/velmoria.hpp): fills its plain records from the
// records of a run and of the look-ups.
#include <algorithm>
#include <cstdlib>

#include "analysis/site_analysis.hpp"
#include "run/lookups.hpp"
#include "run/run_driver.hpp"
#include "run/run_state.hpp"
#include "support/text.hpp"
#include "symmetry/operator_text.hpp"
#include "velmoria/velmoria.hpp"

namespace velmoria::api {

namespace {

std::vector<std::string> operator_texts(const lorsk_proc& store) {
  std::vector<std::string> texts;
  for (int g = 0; g < store.ngk && g < static_cast<int>(store.ir.size()); ++g) {
    texts.push_back(trim(adjustl(get_symsymbi(store.ir[g], store.t[g]))));
  }
  return texts;
}

std::vector<int> dimensions(const lorsk_proc& store) {
  std::vector<int> dims(store.idim.begin(), store.idim.end());
  for (int& d : dims) d = std::abs(d);
  return dims;
}

Site site_record(const Run_State& rs, const velmoria::Site& site, const Site_Analysis& an) {
  Site out;
  for (int j = 0; j < site.mult; ++j) out.atoms.push_back({trim(site.atom[j]), site.x[j]});
  out.multiplicities = an.ia;
  const auto* labels = rs.store.iso_read ? &rs.store.iso_names : nullptr;
  out.decomposition = trim(adjustl(gamma_text(an.ia, labels, rs.sv.ipol)));
  for (const Irrep_Basis& b : an.bases) {
    out.irreps.push_back({b.nu, b.idim, b.ia, b.functions, b.coefficients});
  }
  return out;
}

}  // namespace

const char* version() {
  return VELMORIA_VERSION;
}

Run_Result run(const std::string& control_text, const std::string& code,
               const std::string& tarnweld) {
  Run_Input input;
  input.code = code;
  input.control = control_text;
  input.path_name = tarnweld;
  Run_Output output = run_velmoria(input);
  Run_Result out;
  out.console = std::move(output.console);
  out.result = std::move(output.result);
  out.block = std::move(output.block);
  if (!output.state) return out;
  const Run_State& rs = *output.state;
  out.normal_end = rs.stop_message.empty();
  out.stop_message = rs.stop_message;
  out.warnings = rs.warnings;
  out.space_group = trim(adjustl(rs.sv.spgr_read ? rs.sv.spaceg : rs.sv.list_gen));
  out.k = rs.sv.vk;
  out.axial = rs.sv.ipol == 0;
  out.little_group = operator_texts(rs.store);
  out.irrep_dimensions = dimensions(rs.store);
  const std::size_t n = std::min(rs.sv.sites.size(), rs.analyses.size());
  for (std::size_t s = 0; s < n; ++s) {
    out.sites.push_back(site_record(rs, rs.sv.sites[s], rs.analyses[s]));
  }
  return out;
}

Group_Result look_up_group(const std::string& text, Group_Text kind) {
  const auto inner = kind == Group_Text::hall         ? velmoria::Group_Text::hall
                     : kind == Group_Text::generators ? velmoria::Group_Text::generators
                                                      : velmoria::Group_Text::symbol;
  const Group_Lookup lookup = velmoria::look_up_group(text, inner);
  Group_Result out;
  out.error = lookup.error;
  if (!out.error.empty()) return out;
  const Space_Group_Type& g = lookup.group;
  out.number = g.num_spg;
  out.symbol = trim(g.spg_symb);
  out.hall = trim(g.hall);
  out.lattice = g.spg_lat;
  out.crystal_system = trim(g.crystal_sys);
  out.laue_class = trim(g.laue);
  out.point_group = trim(g.pg);
  for (const std::string& s : g.symop_symb) out.operators.push_back(trim(adjustl(s)));
  out.listing = group_listing(g);
  return out;
}

Irreps_Result look_up_irreps(const std::string& group, const std::array<float, 3>& k,
                             const std::string& label, bool by_generators) {
  const Irreps_Lookup lookup = velmoria::look_up_irreps(group, by_generators, k, label);
  Irreps_Result out;
  out.error = lookup.error;
  out.k = lookup.k;
  out.label = lookup.label;
  if (!out.error.empty()) return out;
  out.space_group = trim(lookup.store.spg.spg_symb);
  out.little_group = operator_texts(lookup.store);
  out.irrep_dimensions = dimensions(lookup.store);
  out.star_arms = lookup.gk.nk;
  out.listing = lookup.listing;
  return out;
}

}  // namespace velmoria::api

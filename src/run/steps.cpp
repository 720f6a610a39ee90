// The space group of the supplied mode, and the per-site analysis of the site loop.
#include "run/steps.hpp"

#include "analysis/site_analysis.hpp"
#include "run/control_reader.hpp"
#include "support/layout.hpp"
#include "support/text.hpp"
#include "symmetry/spacegroup_setup.hpp"

namespace velmoria {

void setup_supplied_spacegroup(Run_State& rs) {
  Space_Group_Type& spg = rs.store.spg;
  set_spacegroup(rs.sv.spaceg, spg);
  if (err_symm) stop_with(rs, " => " + trim(adjustl(err_symm_mess)) + ": " + trim(rs.sv.spaceg));
  rs.mv.lat_type = spg.spg_lat;
  put(rs.out.result, "a,a", " => Symbol of the     Lattice: ", std::string(1, rs.mv.lat_type));
  if (rs.mv.lat_type != rs.sv.spaceg.front()) {
    const char* warning =
        " => WARNING! Lattice different from the first letter of the Space Group symbol ";
    put(rs.out.result, "a", warning);
    rs.warnings.push_back(trim(warning));
  }
}

namespace {

Site_Context site_context(const Run_State& rs) {
  const symmetry_var& sv = rs.sv;
  return {rs.store, sv.symm_symb,   sv.idet,        sv.vk,      sv.ipol,
          sv.bz,    sv.long_output, rs.mv.lat_type, rs.mv.gk.nk};
}

Site_Units site_units(Run_State& rs) {
  return {rs.out.console, rs.out.result, rs.out.block, &rs.warnings};
}

}  // namespace

void site_representations(Run_State& rs, int ns) {
  rs.analyses.resize(static_cast<std::size_t>(ns));
  Site_Analysis& an = rs.analyses[ns - 1];
  trans(site_context(rs), rs.sv.sites[ns - 1], ns, an.rep, site_units(rs));
}

void site_decomposition(Run_State& rs, int ns) {
  Site_Analysis& an = rs.analyses[ns - 1];
  decomp(site_context(rs), an.rep, an, site_units(rs));
}

void site_basis_functions(Run_State& rs, int ns) {
  Site_Analysis& an = rs.analyses[ns - 1];
  projection_operators(site_context(rs), rs.sv.sites[ns - 1], ns, an.rep, an, site_units(rs));
}

}  // namespace velmoria

// The space group of the supplied mode, and the per-site analysis of the site loop.
#include "run/steps.hpp"

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
    put(rs.out.result, "a",
        " => WARNING! Lattice different from the first letter of the Space Group symbol ");
  }
}

// The analysis of a site joins with the site representations.
void site_representations(Run_State&, int) {}
void site_decomposition(Run_State&) {}
void site_basis_functions(Run_State&, int) {}

}  // namespace velmoria

// Seams between the control-file reader and the group machinery.  Steps whose
// subsystem has not landed yet do nothing and write nothing.
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

void compute_little_group_irreps(Run_State&, const std::string&) {}

void write_irrep_tables(Run_State&) {}

void compute_group_of_k(Run_State& rs) { rs.sv.bz = false; }

int split_into_suborbits(Run_State&, const Vec3&, bool, std::vector<Vec3>& xeqv,
                         std::vector<int>& ind) {
  xeqv.clear();
  ind.clear();
  return 0;
}

void expand_site(Run_State& rs, int, const std::string&, const Vec3&, int ns) {
  // Without the little group a site gets no atoms.
  rs.sv.sites[ns - 1].mult = 0;
}

void check_listed_site(Run_State&, int) {}

void site_representations(Run_State&, int) {}
void site_decomposition(Run_State&) {}
void site_basis_functions(Run_State&, int) {}

}  // namespace velmoria

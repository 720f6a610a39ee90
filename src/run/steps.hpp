// The group work that the control-file reader hands to the other subsystems: the
// space group of the supplied mode, the little-group representations, their tables, the
// star of k and the expansion of sites.  Each step writes to the run's units and may end
// the run by a quiet stop.
#pragma once

#include <string>

#include "run/run_state.hpp"

namespace velmoria {

// Supplied mode: the space group from the symbol alone, for its lattice.
void setup_supplied_spacegroup(Run_State& rs);

// Computed mode: the space group, the little group and its representations, from the
// group text chosen by the SPGR/GEN flags.
void compute_little_group_irreps(Run_State& rs, const std::string& ke1);

// The tables of the representations (numeric and symbolic).
void write_irrep_tables(Run_State& rs);

// The star of k and the group of the vector; sets bz.
void compute_group_of_k(Run_State& rs);

// Sub-orbit index of each image of xt under the space group, split by the group of the
// vector: fills xeqv and ind (1-based sub-orbit numbers) and returns their count.
int split_into_suborbits(Run_State& rs, const Vec3& xt, bool primitive_cell,
                         std::vector<Vec3>& xeqv, std::vector<int>& ind);

// Expands position xt into the atoms of site ns (1-based).
void expand_site(Run_State& rs, int prim, const std::string& atcod, const Vec3& xt, int ns);

// Checks the atoms of a SUBL site against the little group; ends the run if they fail.
void check_listed_site(Run_State& rs, int ns);

// Per-site analysis of the site loop.
void site_representations(Run_State& rs, int ns);
void site_decomposition(Run_State& rs, int ns);
void site_basis_functions(Run_State& rs, int ns);

}  // namespace velmoria

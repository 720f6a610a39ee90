// The tables of the representations, numeric and symbolic.
#include "analysis/irrep_tables.hpp"
#include "run/steps.hpp"

namespace velmoria {

void write_irrep_tables(Run_State& rs) {
  write_irreps(rs.out.result, rs.store, rs.sv.vk, rs.sv.long_output, rs.sv.symm_symb, rs.sv.idet);
}

}  // namespace velmoria

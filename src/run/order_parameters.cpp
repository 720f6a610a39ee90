#include "run/order_parameters.hpp"

#include "run/run_state.hpp"

namespace velmoria {

// Placeholder: the analysis of order parameters is being built.
Magnetic_Candidates magnetic_candidates(const Run_State&) {
  Magnetic_Candidates out;
  out.unsupported = "not yet computed";
  return out;
}

}  // namespace velmoria

// The representation store: what the run knows about the little group of the propagation
// vector and its irreducible representations, and where they came from.
#pragma once

#include <string>
#include <vector>

#include "symmetry/records.hpp"

namespace velmoria {

constexpr int max_store_ops = 48;     // operators of the little group
constexpr int max_store_irreps = 48;  // representations (a supplied block may bring 48)
constexpr int max_store_dim = 48;     // dimension of a supplied representation

struct lorsk_proc {
  int ngk = 0;
  int nreps = 0;
  std::vector<int> idim;  // nreps dimensions
  Space_Group_Type spg;   // the working space group of the run
  bool iso_read = false;
  bool full_irreps = false;
  bool extended_little_group = false;
};

}  // namespace velmoria

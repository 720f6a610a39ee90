// What `--magnetic` adds to a run: the group of every order-parameter direction of every
// physically irreducible representation, its section of the result file, a magnetic CIF per
// candidate and the JSON of it all.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "magnetic/identify.hpp"
#include "magnetic/mcif.hpp"

namespace velmoria {

struct Run_State;

struct Magnetic_Direction {
  std::string notation;
  int free_parameters = 0;
  Identification group;
  std::string mcif_name;  // CODE_ir<nu>_<n>.mcif; empty when the group was not found
  std::string mcif;       // the file's text
};

struct Magnetic_Irrep {
  int nu = 0, dimension = 0, indicator = 0, partner = 0, real_dimension = 0, copies = 0;
  bool k_equiv_mk = false;
  std::vector<Magnetic_Direction> directions;
};

struct Magnetic_Report {
  std::string unsupported;  // why nothing was computed; empty otherwise
  bool polar = false;
  std::vector<Magnetic_Irrep> irreps;
};

// The parent of a run: its group and k.
Parent_Info parent_of(const Run_State& rs);

// Identifies every candidate; `code` is the base name of the run's files (without a folder).
Magnetic_Report magnetic_report(const Magnetic_Candidates& candidates, const Parent_Info& parent,
                                const std::string& code);

// The section appended to the result file.
std::string magnetic_section(const Magnetic_Report& report);

// The "magnetic" value of the run document.
nlohmann::json magnetic_json(const Magnetic_Report& report);

}  // namespace velmoria

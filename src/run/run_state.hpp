// The state of one run: flags, sites and per-site tables shared by the steps of a run,
// and the output units.  A run owns one Run_State; nothing of it survives the run.
#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "analysis/site.hpp"
#include "kvector/group_k.hpp"
#include "lorsk/store.hpp"
#include "support/numeric.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

// Limits of a run.
constexpr int max_sites = 250;                // sites of a run
constexpr int max_site_atoms = 48;            // atoms of one site
constexpr int max_little_group_ops = 48;      // operators of the little group
constexpr int max_irreps = 48;                // irreducible representations
constexpr int max_orbit_points = 192;         // points of one orbit in the site split
constexpr int max_split_notes = 10;           // notes on split sites
constexpr std::size_t max_line_width = 2530;  // characters of a control-file line

// Flags, texts and sites of the run.
struct symmetry_var {
  bool long_output = true;
  bool kvec_read = false;
  bool spgr_read = false;
  bool gen_read = false;
  bool vmode_read = false;
  bool atom_read = false;
  bool too_many = false;
  bool bz = false;
  int ipol = 1;  // 1 polar vectors (displacements), 0 axial vectors (moments)
  int nsites = 0;
  std::string path_name;  // value of TARNWELD (512)
  std::string title;      // 132
  std::string list_gen;   // 120
  std::string spaceg;     // 20
  Vec3 vk{};
  std::string k_label;                 // the two characters that label k on the KVEC line
  std::vector<Site> sites;             // at most max_sites
  std::vector<std::string> symm_symb;  // text of each operator of the little group (30)
  std::vector<int> idet;
};

// Group of the vector, lattice letter and constant tables of the analysis.
struct mod_velmoria {
  char lat_type = ' ';
  Group_k_Type gk;  // the star of k and the group of the vector
};

// The output units of a run.
struct Units {
  std::string console;  // console out
  std::string result;   // unit 2, <code>.vmr
  std::string block;    // unit 4, <code>.tw
};

struct Run_State {
  symmetry_var sv;
  mod_velmoria mv;
  lorsk_proc store;
  Units out;
  std::vector<Site_Analysis> analyses;  // what the analysis found, site by site
  std::vector<std::string> warnings;    // every warning the run gave, as it was written
  std::string stop_message;             // why the run stopped early; empty after a normal end
};

// The run's quiet stop: the message is already written; the run ends at once.  The message
// is kept as the run's stop message.
struct Quiet_Stop {
  std::string message;
};

}  // namespace velmoria

// Velmoria as a library: a run of a control text, the look-up of a space group and the look-up
// of the irreducible representations of a little group.  This header needs nothing but the
// standard library (C++17 or later): its records are plain strings and numbers, filled from
// what the program finds, so that a program built against it never sees the library's inner
// records.  Link with the target Velmoria::velmoria (CMake) or `pkg-config --libs velmoria`.
//
// Every function starts from a clean state, so that calls never depend on earlier calls;
// calls in different threads do not meet.  No function throws on bad input: the record says
// what went wrong instead.
#pragma once

#include <array>
#include <complex>
#include <string>
#include <vector>

#include "velmoria/version.hpp"

namespace velmoria::api {

// The version of the library, as `velmoria --version` prints it after the name: "5.0".
const char* version();

// One atom of a site: its label (the site code, "_" and its number) and its fractional
// coordinates.
struct Atom {
  std::string label;
  std::array<float, 3> x{};
};

// One irreducible representation of the little group that the site's magnetic (axial) or
// mechanical (polar) representation contains.
struct Contained_Irrep {
  int number = 0;        // its number among the representations of the little group
  int dimension = 0;     // its dimension
  int multiplicity = 0;  // how often it occurs
  // Basis functions: each 3 x atoms complex components, atom by atom, along a, b, c.
  std::vector<std::vector<std::complex<float>>> basis_functions;
  std::vector<std::string> coefficients;  // the Fourier coefficient Sk(j) of each atom, as text
};

// A site and what its analysis found.
struct Site {
  std::vector<Atom> atoms;
  std::vector<int> multiplicities;  // of every representation of the little group, in order
  std::string decomposition;        // as the GAMMA line writes it: "1 Irep_k( 3) + ..."
  std::vector<Contained_Irrep> irreps;
};

struct Run_Result {
  bool normal_end = false;                // the run went through to its end
  std::string stop_message;               // why it stopped early; empty after a normal end
  std::vector<std::string> warnings;      // every warning, as written in the result file
  std::string space_group;                // the group as the control text names it
  std::array<float, 3> k{};               // the propagation vector as used
  bool axial = false;                     // moments (VMODE AXI) rather than displacements
  std::vector<std::string> little_group;  // x,y,z text of each operator of the little group
  std::vector<int> irrep_dimensions;      // dimension of each of its representations
  std::vector<Site> sites;
  std::string console;  // what the program prints on the console
  std::string result;   // the text of CODE.vmr
  std::string block;    // the text of CODE.tw, the block of lines for Tarnweld
};

// Runs the text of a control file.  `code` names the run in its texts; `tarnweld` stands for
// the value of the environment variable TARNWELD.
Run_Result run(const std::string& control_text, const std::string& code = "velmoria",
               const std::string& tarnweld = "");

// How the text of a group look-up is read.
enum class Group_Text {
  symbol,      // a number (14), number:setting (227:1), a tabulated symbol, else a Hall symbol
  hall,        // a Hall symbol, even where the same text is a tabulated symbol
  generators,  // operators in the x,y,z form separated by ";"
};

struct Group_Result {
  std::string error;  // empty when the group was made
  int number = 0;     // 0 when the operators match no tabulated setting
  std::string symbol;
  std::string hall;
  char lattice = ' ';
  std::string crystal_system;
  std::string laue_class;
  std::string point_group;
  std::vector<std::string> operators;  // x,y,z text of every operator in the cell
  std::string listing;                 // as `velmoria --group` prints it
};

Group_Result look_up_group(const std::string& text, Group_Text kind = Group_Text::symbol);

struct Irreps_Result {
  std::string error;                      // empty when the representations were found
  std::array<float, 3> k{};               // k as used: components close to simple fractions snapped
  std::string label;                      // the label of the k point, two characters
  std::string space_group;                // the symbol of the space group
  std::vector<std::string> little_group;  // x,y,z text of each operator of the little group
  std::vector<int> irrep_dimensions;      // dimension of each representation
  int star_arms = 0;                      // arms of the star of k
  std::string listing;                    // as `velmoria --irreps` prints it
};

// The irreducible representations of the little group of k in the group of `group` (a number,
// symbol or Hall symbol, or operators separated by ";" when by_generators).
Irreps_Result look_up_irreps(const std::string& group, const std::array<float, 3>& k,
                             const std::string& label = "", bool by_generators = false);

}  // namespace velmoria::api

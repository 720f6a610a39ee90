// Records of one symmetry operator and of a whole space group, and the globals of the
// crystallographic symmetry library.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "support/error_scope.hpp"
#include "support/numeric.hpp"

namespace velmoria {

// One operator (R, t): x -> rot x + tr.  rot[i][j] is the coefficient of coordinate j in
// component i; the rows are the three fields of the x,y,z form.
struct Sym_Oper_Type {
  Mat3i rot{};
  Vec3 tr{};
};

constexpr int max_orbits = 26;           // special orbits of a group
constexpr int max_orbit_positions = 48;  // positions of one orbit
constexpr int max_lattice_points = 192;  // lattice points per cell
constexpr int max_multiplicity = 192;    // operators of a group in its cell (F m -3 m has 192)

struct Wyckoff_Site_Type {
  int multp = 0;
  std::string site;  // 6
  int norb = 0;
  std::string str_orig;                // 40
  std::vector<std::string> str_orbit;  // up to 48 texts of 40
};

struct Wyckoff_List_Type {
  int num_orbit = 0;
  std::vector<Wyckoff_Site_Type> orbit;  // up to 26, in table order
};

struct Space_Group_Type {
  int num_spg = 0;
  std::string spg_symb;     // 20
  std::string hall;         // 16
  std::string gen_hall;     // 90
  std::string crystal_sys;  // 12
  std::string laue;         // 5
  std::string pg;           // 5
  std::string info;         // 5
  std::string setting;      // 90
  bool hexa_axes = false;
  char spg_lat = ' ';
  std::string spg_latsy;  // 2
  int num_lat = 0;
  std::vector<Vec3> latt_trans;  // num_lat vectors, the first zero
  std::string bravais;           // 51
  std::string centre;            // 80
  int centred = 0;               // 0 centric off the origin, 1 acentric, 2 centric at the origin
  Vec3 centre_coord{};
  int num_ops = 0;
  int multip = 0;
  int num_gen = 0;
  std::vector<Sym_Oper_Type> symop;     // multip entries
  std::vector<std::string> symop_symb;  // multip texts of 50
  Wyckoff_List_Type wyckoff;
  std::array<Vec3, 2> asym_unit{Vec3{0, 0, 0}, Vec3{1, 1, 1}};  // lower, upper bounds
};

// The reduced set of operators of a space group as a reading of its symbol or of its
// generators gives it, with the classes of the group that the reading finds.  The record of the
// group (Space_Group_Type) is completed from it.
struct Group_Operators {
  int isystem = 0;           // crystal system 1..7, 0 while unknown
  int icentre = 1;           // 0 centric with the centre co off the origin, 1 acentric, 2 centric
                             // at the origin
  int ibravl = 0;            // lattice 1 P, 2 A, 3 B, 4 C, 5 I, 6 R, 7 F, 8 Z; 0 while unknown
  int ng = 0;                // operators of the reduced set
  std::vector<Mat3i> ss;     // their rotations, the identity first
  std::vector<Vec3> ts;      // their translations
  std::string latsy = "  ";  // family letter and lattice letter
  Vec3 co{};                 // the centre of symmetry when icentre is 0
  int num_g = 0;             // generators of the group
  std::string lat_letter;    // the letter of the lattice tables, from the generators or a list
};

// Lattice letters in the order of their numbers (ibravl, inlat): 1 P, 2 A, 3 B, 4 C, 5 I, 6 R,
// 7 F, 8 Z.
constexpr std::string_view lattice_letters = "PABCIRFZ";
// The number of a lattice letter (upper case), 0 for any other character.
int ibravl_of(char letter);

// Texts of `centre`, indexed by `centred`.
extern const std::array<const char*, 3> centro;

struct Lattice_Centring_Type {
  int num_vec = 0;
  bool set = false;
  std::vector<std::vector<float>> vectors;  // one column (3 or 4 values) per vector
};
void allocate_lattice_centring(Lattice_Centring_Type& record, int n, bool extended = false);

// Globals of the symmetry library (one set per thread).
VELMORIA_ERROR_PAIR_DECLARATIONS(symm, Symm_Scope);
extern constinit thread_local bool hexa;
extern constinit thread_local int inlat;
extern constinit thread_local char lat_ch;
extern constinit thread_local std::array<Vec3, max_lattice_points> ltr;
extern constinit thread_local int nlat;

Vec3 applyso(const Sym_Oper_Type& op, const Vec3& v);

}  // namespace velmoria

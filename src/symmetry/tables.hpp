// The space-group tables: the tabulated settings with their Hall symbols, the special
// positions, the generators of the 230 groups, and the small name and rotation tables.
//
// All tables are constant data built into the program.  Every text entry is held in the
// full width of its field, blank-padded (hm 12, hall 16, inf_extra 5, orbit 15, spg_gen
// 120, sys_cry 12, laue_class 5, point_group 5, latt 51, magmat 19, intsymoh/intsymd6h
// 14, kov_oh/kov_d6h 3), so that a comparison with a field cut to that width, or a write
// of the entry, behaves as with fixed-length text.  Indices of the crystallographic
// tables start at 1 in the text; in C++ entry i is [i - 1].
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "support/error_scope.hpp"
#include "support/numeric.hpp"

namespace velmoria {

constexpr int num_spgr_info = 612;  // tabulated settings
constexpr int num_wyck_info = 273;  // settings with special positions
constexpr int num_spg_gen = 230;    // space groups with generators
constexpr int max_wyck_orbits = 26;

constexpr std::size_t hm_len = 12;
constexpr std::size_t hall_len = 16;
constexpr std::size_t inf_extra_len = 5;
constexpr std::size_t orbit_len = 15;
constexpr std::size_t spg_gen_len = 120;
constexpr std::size_t genstr_len = 109;  // columns 12 to 120 of a generator row

// One tabulated setting.
struct Spgr_Info_Type {
  int n;                       // space-group number, 1 to 230
  std::string_view hm;         // Hermann-Mauguin symbol, capitals, 12
  std::string_view hall;       // Hall symbol, 16
  int laue;                    // index into laue_class, 1 to 14
  int pg;                      // index into point_group, 1 to 39
  std::array<int, 6> asu;      // lower x,y,z then upper x,y,z, in 1/24
  std::string_view inf_extra;  // setting tag, 5
};

// The special positions of one setting, in the order of the Wyckoff letters, a first,
// without the general position.  Entries past norbit are blank.
struct Wyck_Info_Type {
  std::string_view hm;                                  // key, 12
  int norbit;                                           // 0 to 26
  std::array<std::string_view, max_wyck_orbits> orbit;  // 15 each
};

// The big tables.  Each accessor returns the same constant table at every call.
const std::array<Spgr_Info_Type, num_spgr_info>& spgr_info();
const std::array<Wyck_Info_Type, num_wyck_info>& wyckoff_info();
// Row n: columns 1-10 the symbol, column 11 ":", from column 13 the generators.
const std::array<std::string_view, num_spg_gen>& spg_gen();

// Loading of the three tables.  The tables are built into the program, so these only
// make sure that they are there; calling them any number of times costs nothing.
void set_spgr_info();
void set_wyckoff_info();
void set_it_gen();

// Name tables.
extern const std::array<std::string_view, 7> sys_cry;       // 12
extern const std::array<std::string_view, 16> laue_class;   // 5
extern const std::array<std::string_view, 42> point_group;  // 5
extern const std::array<std::string_view, 8> latt;          // 51, indexed by ibravl

// Centring vectors of the lattice letters, the origin first.
extern const std::array<Vec3, 2> ltr_a;
extern const std::array<Vec3, 2> ltr_b;
extern const std::array<Vec3, 2> ltr_c;
extern const std::array<Vec3, 2> ltr_i;
extern const std::array<Vec3, 3> ltr_r;
extern const std::array<Vec3, 4> ltr_f;
// The centring vectors of a lattice letter A, B, C, I, R or F (upper case), the origin first;
// none for any other letter.
std::span<const Vec3> ltr_of(char letter);

// Rotations against which an operator is identified: 1-24 the proper rotations of the
// cube, 25-36 those of the hexagonal lattice.  mod6[n - 1][row][column].
extern const std::array<Mat3i, 36> mod6;

// The same matrices acting on (Mx,My,Mz).  magmat[row - 1][column - 1]: column 1 rows
// 1-24 are mod6 1-24 and rows 25-48 their negatives; column 2 rows 1-12 are mod6 25-36
// and rows 13-24 their negatives; column 2 rows 25-48 are blank.
extern const std::array<std::array<std::string_view, 2>, 48> magmat;  // 19

// Geometric symbols and Kovalev names of the operators of m-3m and 6/mmm.
extern const std::array<std::string_view, 48> intsymoh;   // 14
extern const std::array<std::string_view, 24> intsymd6h;  // 14
extern const std::array<std::string_view, 48> kov_oh;     // 3
extern const std::array<std::string_view, 24> kov_d6h;    // 3

// Error pair of the tables module.
VELMORIA_ERROR_PAIR_DECLARATIONS(symtab, Symtab_Scope);

// The generators of a standard group, by number or by the tabulated symbol (either case).
// genstr receives columns 12 to 120 of the row (genstr_len characters, beginning with a
// blank).  On failure err_symtab is set, and a number out of range still gives row 1.
// Returns !err_symtab.
bool get_generators(std::string_view spg, std::string& genstr);

}  // namespace velmoria

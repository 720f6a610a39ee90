// The reduced set of operators of a space group from its Hall symbol.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "support/numeric.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

// One of the fixed matrices of Hall's notation (x_2 .. z_6 and xyz_3): its rotation order, its
// axis character and, for the twofold axes ' and ", the principal axis they go with.
struct Hall_Matrix {
  Mat3i m;
  int order;
  char axis;
  char axis2;
};
const std::array<Hall_Matrix, 19>& hall_matrices();

// Hall's translation letters and their vectors, in the order in which a writer of a symbol
// tries them.
struct Hall_Translation {
  char letter;
  Vec3i t;
};
constexpr int hall_half = op_den / 2;
constexpr int hall_quarter = op_den / 4;
constexpr std::array<Hall_Translation, 8> hall_translations{{
    {'N', {hall_half, hall_half, hall_half}},
    {'A', {hall_half, 0, 0}},
    {'B', {0, hall_half, 0}},
    {'C', {0, 0, hall_half}},
    {'D', {hall_quarter, hall_quarter, hall_quarter}},
    {'U', {hall_quarter, 0, 0}},
    {'V', {0, hall_quarter, 0}},
    {'W', {0, 0, hall_quarter}},
}};

// Generators a Hall symbol can hold.
constexpr int max_hall_generators = 4;

// Reads the Hall symbol symb (either case, cut to 16 characters) and closes its group: the
// result holds the ng operators of the reduced set (identity first, translations multiples of
// 1/12 in [0,1)), isystem 1..7, icentre and co, ibravl 1..7 (P A B C I R F), latsy, and num_g
// the generators read.  Sets the lattice globals through latsym.  A bad symbol sets err_symm;
// the message is " IBRAVL is Equal Zero" for a bad lattice letter, " Dimension of Table
// exceeded (II)" for a closure past 24 entries, and blank for every other fault of the text.
Group_Operators get_so_from_hall(std::string_view symb);

}  // namespace velmoria

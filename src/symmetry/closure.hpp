// The reduced set of operators of a space group from its generators, closed by exact integer
// arithmetic on translations in twelfths of a cell edge; the analysis of a complete list; the
// completion and naming of a set of centring vectors; the lattice tables of a lattice letter.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "support/numeric.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

// Entries of the table of operators of a closure: the reduced set, without centring and
// without an inversion given as a generator.
constexpr int max_closure_ops = 24;

// The lattice against which the translations of a closure are reduced: ibravl 1 P, 2 A, 3 B,
// 4 C, 5 I, 6 R, 7 F, 8 Z; for Z the columns of lat_trans (in the unit of Exact_Op; each column
// holds the largest component of its centring vector rounded to twelfths, in all three places).
struct Closure_Lattice {
  int ibravl = 1;
  std::vector<Vec3i> lat_trans;
};

// Centring vectors of a lattice letter (A, B, C, I, R, F), exact, in the order in which they are
// tried: F gives those of C, B, A.  None for any other letter.
std::vector<Vec3i> centring_vectors(char letter);

// Closes `tabla` (entry 0 the identity) under products, pass after pass, until a pass adds
// nothing; translations (twelfths of a cell edge) reduced to the cell and by the lattice.  When the
// table would pass max_closure_ops entries: err_symm is set with " Dimension of Table exceeded
// (II)" (followed by ": " and the count when number_in_message) and false is returned.
bool close_by_products(std::vector<Exact_Op>& tabla, const Closure_Lattice& lat,
                       bool number_in_message);

// Reduced set of operators from the ng generators in ss[0..ng-1], ts[0..ng-1] (ng is clamped
// to the sizes of ss and ts).  The result holds the ng operators of the reduced set (identity
// first, translations multiples of 1/12 in [0,1)), isystem 1..7, icentre, co, ibravl 1..8,
// latsy, num_g the generators left once centrings and -1 are taken out, and lat_letter the
// letter given to latsym.  Sets the lattice globals (nlat, ltr, lat_ch, inlat) through latsym.
// err_symm is expected false on entry; on failure it is set, ng is then the number of
// generators and ss, ts are empty.
Group_Operators get_so_from_gener(int ng, const std::vector<Mat3i>& ss,
                                  const std::vector<Vec3>& ts);

// Analysis of a complete list of ng operators, which the result holds as it is: lattice,
// centre, crystal system.  f_lat: its first character, when not blank, asks for the letter P or
// Z from the operators with the identity matrix; blank or empty lets the pure translations name
// the lattice.
Group_Operators get_so_from_fix(int ng, const std::vector<Mat3i>& ss, const std::vector<Vec3>& ts,
                                std::string_view f_lat = {});

// Removes duplicates from the first l centring vectors of latc, completes the set by sums
// modulo the cell, and names it in lat_ch: "P", "A", "B", "C", "I", "R", "F" or "Z".  latc
// holds exactly l vectors on return.  More than max_lattice_points - 1 vectors set err_symm.
void get_centring_vectors(int& l, std::vector<Vec3>& latc, char& lat_ch);

// Lattice globals lat_ch, nlat, ltr, inlat from the first letter of symb other than "-" and
// blank (either case).  X or Z need the n_vec centring vectors of the second form.
void latsym(std::string_view symb);
void latsym(std::string_view symb, int n_vec, const std::vector<Vec3>& vectors);

}  // namespace velmoria

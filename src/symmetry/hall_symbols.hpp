// The reduced set of operators of a space group from its Hall symbol.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/numeric.hpp"

namespace velmoria {

// Generators a Hall symbol can hold.
constexpr int max_hall_generators = 4;

// Reads the Hall symbol symb (either case, cut to 16 characters) and closes its group.
//  out: ng operators of the reduced set in ss, ts (resized to exactly ng entries; identity
//       first, translations multiples of 1/12 in [0,1)); isystem 1..7; icentre 0 centric with
//       the centre co off the origin, 1 acentric, 2 centric at the origin; ibravl 1..7
//       (P A B C I R F); latsy = family letter + lattice letter; num_g the generators read.
//  Sets the lattice globals through latsym.  A bad symbol sets err_symm; the message is
//  " IBRAVL is Equal Zero" for a bad lattice letter, " Dimension of Table exceeded (II)" for
//  a closure past 24 entries, and blank for every other fault of the text.
void get_so_from_hall(int& isystem, int& icentre, int& ibravl, int& ng, std::vector<Mat3i>& ss,
                      std::vector<Vec3>& ts, std::string& latsy, Vec3& co, int& num_g,
                      std::string_view symb);

}  // namespace velmoria

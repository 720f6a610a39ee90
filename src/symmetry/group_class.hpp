// Classification of operators by their rotation part: rotation type, crystal system, Laue class
// and point group, and the lookup of a rotation among the matrices of the holohedries.
#pragma once

#include <span>
#include <string>

#include "support/numeric.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

// Rotation type from trace and determinant: 1, 2, 3, 4, 6 proper; -1 inversion, -2 mirror or
// glide, -3, -4, -6 improper; 0 when the matrix is no crystallographic rotation.
int axes_rotation(const Mat3i& r);

// Letter of the crystal family of a crystal system 1..7: a, m, o, t, h, h, c; blank otherwise.
char family_letter(int isystem);

// Crystal system (1 triclinic .. 7 cubic) of the first n matrices of ss (the reduced set), and
// the family letter in latsy[0] (a, m, o, t, h, c); latsy is blank-padded to at least 2
// characters, its second character kept.  A matrix of type 0 sets err_symm and returns.
void get_crystal_system_r_op(int n, std::span<const Mat3i> ss, int& isystem, std::string& latsy);

// Laue class and point group (texts of 5 characters, blank when no rule fits) from the
// operators 1..num_ops of the group.  Failures set err_symm / err_symm_mess.
void get_laue_pg(const Space_Group_Type& spacegroup, std::string& laue, std::string& pg);

// The signed row (1-based) of mod6 among rows i1..i2 equal to sim (+n) or to -sim (-n), all
// positive matches tried first.  0 and err_symm when none matches.
int searchop(const Mat3i& sim, int i1, int i2);

// Name of the Laue class 1..16 / point group 1..41; outside that range text is left as it was
// and err_symm is set.
void get_laue_str(int ilaue, std::string& text);
void get_pointgroup_str(int ipg, std::string& text);

// The fields that a row of the table of settings (1-based) gives to a group record: number,
// symbols, Laue class, point group, setting choice and asymmetric unit.
void fill_table_fields(Space_Group_Type& spg, int row);

}  // namespace velmoria

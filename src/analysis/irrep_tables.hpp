// The tables of the irreducible representations of the little group, and the finishing of the
// representation store for the analysis of the sites.
//
// write_irreps brings every translation of the little group into [0,1), multiplies the
// matrices of each operator by the phase factor exp(2 pi i k.n) of the lattice shift n taken
// off its translation, names the operators (x,y,z text, Seitz and international symbols),
// stores the determinants and the characters as real and imaginary parts, and writes the
// representations to the result file: the counts, the full listing with long output, and a
// compact symbolic table with the list of the phase factors used in it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lorsk/store.hpp"
#include "support/numeric.hpp"

namespace velmoria {

// Letters that name the distinct phases of the symbolic table, in order of discovery.  The
// first twenty are the usual ones; when a group brings more distinct phases, the same letters
// in capitals follow.  A phase past the last letter is not named, and the symbolic table is
// then replaced by a one-line note (see write_irreps).
constexpr std::string_view phase_letters = "abcdefghkmnopqrstuvwABCDEFGHKMNOPQRSTUVW";
constexpr int max_phase_letters = 20;                                     // the lower-case letters
constexpr int max_phase_labels = static_cast<int>(phase_letters.size());  // 40
// Representations of this dimension or more are not written in symbolic form.
constexpr int min_dim_no_symbolic = 6;
// Dimensions per line of the " => Dimensions of Ir(reps): " record.
constexpr int dims_per_line = 20;

// The distinct phases (in turns) met in the matrices, with their two-character labels: a sign
// column (blank or "-") and a letter, or " i" / "-i" for a quarter turn.
struct Phase_Labels {
  std::vector<float> phn;
  std::vector<std::string> cph;
  bool overflow = false;  // a phase was met after every letter was spent
};

// Registers the phase theta (in [0,1)) of a complex element unless a known phase lies within
// 0.001 of it.  A new phase takes the letter at its own place in the list, " i" or "-i" for a
// quarter or three-quarter turn, or the label of a known phase half a turn away with the
// opposite sign.
void register_phase(Phase_Labels& labels, float theta);

// 1-based entry of labels.phn within 0.001 of theta, 0 when none.
int find_phase(const Phase_Labels& labels, float theta);

// Text of the element re + i im in the numeric listing, without blanks inside, and with a
// leading blank for a value that has no sign of its own (e.g. " 1", "-0.5000", " -i",
// " 0.7071-0.7071i").
std::string element_text(float re, float im);

// Text of the element of modulus m and phase theta (turns), re + i im, in the symbolic table
// of a representation of dimension d (1 to 5): a number or the label of its phase, at the
// start of a field of 23/d + 1 columns.  Where the usual form is wider than the field
// (dimensions 4 and 5) the decimals shrink so that the field is never overrun.
std::string symbolic_element(float m, float theta, float re, float im, int d,
                             const Phase_Labels& labels);

// Finishes the store and writes the tables of the representations to `unit`.
//   store      translations reduced to [0,1), repi corrected, ph, chr and chi (real and
//              imaginary parts of the characters) set for operators 1..ngk
//   vk         the propagation vector
//   symm_symb  resized to ngk: the x,y,z text of each operator (30 columns)
//   idet       resized to ngk: the determinant of each rotation part
// epss is read as it stands (0.002 during a run).
void write_irreps(std::string& unit, lorsk_proc& store, const Vec3& vk, bool long_output,
                  std::vector<std::string>& symm_symb, std::vector<int>& idet);

}  // namespace velmoria

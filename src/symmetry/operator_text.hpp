// Symmetry operators as text: the x,y,z (Jones faithful) form read and written, the test of a
// user's generator, and the action of a rotation on a magnetic moment.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/numeric.hpp"

namespace velmoria {

// Reads the operator text `info` (three fields separated by "," or "*"), starting at the
// 1-based character position `istart`.  Row i of rot and tr[i] come from field i.  With
// `check` the determinant of rot must not vanish.  Failures set err_symm / err_symm_mess;
// rot and tr keep what was read so far.
void read_xsym(std::string_view info, int istart, Mat3i& rot, Vec3& tr, bool check = true);
// The same without a translation.
void read_xsym(std::string_view info, int istart, Mat3i& rot, bool check = true);
// The same into a real matrix (the representative positions of special orbits).
void read_xsym(std::string_view info, int istart, Mat3r& rot, Vec3& tr, bool check = true);

// Tests a generator given by the user: its rotation part must have integer coefficients and a
// determinant of magnitude 1.  Constant terms are ignored.  When symb_type is given it receives
// the kind of element, e.g. "2 or 21  [undet. loc.]".  Failures set err_symm / err_symm_mess.
bool check_generator(std::string_view symb, std::string* symb_type = nullptr);

// The generators of a list separated by ";": the piece before the first ";", those between two
// and the one behind the last, each shifted left and trimmed.  Empty pieces are kept, so that
// a stray ";" is refused as an empty generator wherever a list is read; a blank list gives one
// empty piece.
std::vector<std::string> split_generators(std::string_view list);

// The blank-free x,y,z text of an integer operator, e.g. "-x+1/2,y,z+1/4" or "x-y,x,z+1/2".
std::string get_symsymbi(const Mat3i& rot, const Vec3& tr);

// The blank-free x,y,z text of an operator with real coefficients, e.g. "x/2+y/2,2x/3,1/4".
std::string get_symsymbr(const Mat3r& xop, const Vec3& xtr);

// The 19-character text of a rotation acting on (Mx,My,Mz), e.g. "(-Mx,-My, Mz)      ".
// Reads the global `hexa`.  A matrix that is not a rotation of m-3m or 6/mmm (up to sign) sets
// err_symm and gives a blank text.
std::string decodmatmag(const Mat3i& mat);

}  // namespace velmoria

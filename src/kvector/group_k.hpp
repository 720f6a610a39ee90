// The star of a propagation vector k and its group of the vector: the operators of the space
// group that keep k up to a reciprocal-lattice vector, the arms of the star with the operators
// (cosets) that carry k onto each arm, and whether k and -k are equivalent.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/numeric.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

constexpr int max_star_arms = 48;     // arms of a star
constexpr int max_coset_ops = 48;     // operators carrying k onto one arm
constexpr int max_group_k_ops = 192;  // the list of operators of the group of the vector

// The star and group of the vector.  Operator numbers are 1-based numbers into
// group.symop.
struct Group_k_Type {
  Space_Group_Type group;        // copy of the space group
  int ngk_ops = 0;               // operators of the group of the vector
  bool k_equiv_mk = false;       // k is equivalent to -k
  bool minus_k_in_star = false;  // some operator of the group takes k to -k
  // ops[0 .. ngk_ops-1]: the group of the vector, ops[0] = 1 (identity).  Entries behind
  // ngk_ops, when present, extend it by the coset that carries k to -k (G(k,-k)).
  std::vector<int> ops;
  // cosets[a-1]: the operators that carry k onto arm a, in the order found; cosets[0] is the
  // group of the vector itself.  No zero terminators: the size is the count.
  std::vector<std::vector<int>> cosets;
  int nk = 0;               // arms of the star
  std::vector<Vec3> stark;  // the nk arms, stark[0] = k, each the image itself, not reduced
};

// Whether the integer vector m is a vector of the reciprocal lattice of the centred lattice with
// the letter lat (P, A, B, C, F, I, R in the obverse setting, either case; any other letter
// gives false).
bool reciprocal_lattice_vector(const std::array<int, 3>& m, char lat);

// Whether h and k are equivalent: they differ by a vector of the reciprocal lattice of the
// lattice whose letter is the first non-blank character of lat (P, A, B, C, F, I, R in either
// case; any other letter gives false), within the tolerance epss.
bool k_equiv(const Vec3& h, const Vec3& k, std::string_view lat);
bool k_equiv(const Vec3& h, const Vec3& k, char lat);

// The row vector h times rot: result[j] = sum over i of h[i] rot[i][j].  This is how an
// operator acts on a reciprocal vector.
Vec3 hr_r(const Vec3& h, const Mat3i& rot);

// Fills gk for the vector k in the group spg.  With ext, when k is not equivalent to -k but -k
// is in the star, the operators that carry k to -k are appended to gk.ops behind ngk_ops.
void k_star(const Vec3& k, const Space_Group_Type& spg, Group_k_Type& gk, bool ext = false);

// The listing of gk as a section of the result file, appended to out.
void write_group_k(const Group_k_Type& gk, std::string& out);

}  // namespace velmoria

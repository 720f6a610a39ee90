// Pieces of the order-parameter analysis: the copies of a representation on a site, the
// reality of a representation, real subspaces in echelon form with their notation, and the
// candidate structure of a direction.
#pragma once

#include <complex>
#include <string>
#include <vector>

#include "analysis/site.hpp"
#include "lorsk/store.hpp"
#include "run/order_parameters.hpp"
#include "symmetry/records.hpp"

namespace velmoria::op_detail {

using Cplx = std::complex<double>;
using CVector = std::vector<Cplx>;
using RVector = std::vector<double>;
using RMatrix = std::vector<RVector>;  // row by row

// Element D_ab(g) of representation nu of the store.
Cplx element(const lorsk_proc& st, int a, int b, int nu, int g);

// Up to `wanted` copies of representation nu on a site: row 1 of a copy is P_11 of a seed (a
// unit vector on an atom along an axis, atom 1 first) independent of the rows 1 kept so far;
// row a is P_a1 of the same seed.  P_ab = (d/n) Sum_g conj(D_ab(g)) exp(-2 pi i k.R_g) g, with
// the returning vectors R_g of the site's representation.
std::vector<Basis_Copy> site_copies(const lorsk_proc& st, const Site_Representation& rep,
                                    const Vec3d& k, int nu, int wanted, int site);

// Replaces the rows of a copy of a representation of real type (k equivalent to -k) by rows
// that transform alike and whose span is closed under complex conjugation: psi + conj(psi) B,
// with B the intertwiner conj(D(g)) B = B D(g) scaled to B conj(B) = 1 (or i(psi - conj(psi) B)
// when that is larger), so that the copy gives real arrangements of d parameters.
void real_copy(const lorsk_proc& st, int nu, Basis_Copy& copy);

// (1/n) Sum_g tr(D(g) D(g)), rounded: 1, 0 or -1 for k equivalent to -k.
int frobenius_schur(const lorsk_proc& st, int nu);

// The representation whose characters are the conjugates of those of nu; 0 when none.
int conjugate_partner(const lorsk_proc& st, int nu);

// Reduced row echelon form of the rows, zero rows dropped (entries below tol are zero).
RMatrix rref(RMatrix rows, int n);

// A basis of {x in R^n : rows x = 0}, in reduced echelon form.
RMatrix null_space(const RMatrix& rows, int n);

// The notation of the subspace spanned by the echelon rows `basis` (in the real coordinates
// `coords`: row of the representation, 0-based, and whether the imaginary part) for a
// representation of dimension d.
std::string notation_of(const RMatrix& basis, const std::vector<std::pair<int, bool>>& coords,
                        int d);

// What the analysis needs of the run: k, its cell, the lattice and the atoms of the sites.
struct Frame {
  Vec3d k{};
  std::array<int, 3> p{}, q{1, 1, 1};  // k_i = p_i / q_i
  int period = 1;                      // least common multiple of the q_i
  bool kmk = false;
  bool axial = true;
  std::vector<Vec3d> centring;
  std::vector<Vec3d> x;    // every atom of every site
  std::vector<int> site;   // its site, 1-based
  std::vector<int> first;  // first atom of each site in x
};

// Whether x is a whole number within the tolerance of coordinates held as float.
bool integral(double x);

// The point (R,t) x.
Vec3d apply(const Sym_Oper_Type& op, const Vec3d& x);

// Every cell t (0 <= t_i < q_i) of the magnetic cell.
template <typename Visit>
void for_cells(const Frame& f, Visit visit) {
  for (int a = 0; a < f.q[0]; ++a)
    for (int b = 0; b < f.q[1]; ++b)
      for (int c = 0; c < f.q[2]; ++c) visit(std::array<int, 3>{a, b, c});
}

// The Fourier coefficients S of the arrangement Sum_a eta_a psi_a on every copy, each copy with
// a generic real scale of its own, 3 per atom of the run.
CVector arrangement(const Frame& f, const std::vector<Basis_Copy>& copies, const CVector& eta);

// The candidate structure of the arrangement with Fourier coefficients s, with a metric that
// the parent's point group keeps.
Candidate_Structure candidate(const Run_State& rs, const Frame& f, const CVector& s);

}  // namespace velmoria::op_detail

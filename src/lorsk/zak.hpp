// Zak's procedure: the irreducible representations of the little group, induced step by step
// along its chain of invariant subgroups of index 2 or 3.
//
// Each element of SUB is one definite space-group operator with its own translation (24ths).
// Where a product leaves the list as written it differs from a listed element by a lattice
// translation t, represented by exp(+2 pi i k.t): the phases EX (conjugates of the elements of
// H) and f_g (the p-th power of the new generator) carry these factors, so no multiplier table
// is formed.  Matrix elements are held in polar form, modulus and phase in 24ths of a turn.
#pragma once

#include <array>
#include <complex>
#include <string>
#include <string_view>

#include "lorsk/work.hpp"
#include "support/error_scope.hpp"
#include "support/numeric.hpp"

namespace velmoria {

// Error pair of the little-group package: set when a limit of the induction would be passed or
// when the data do not behave as an irreducible representation must (no partner in an orbit,
// no unique intertwining matrix).  The results are then incomplete but nothing is overrun.
VELMORIA_ERROR_PAIR_DECLARATIONS(lorsk, Lorsk_Scope);

constexpr int max_subgroup_ops = 24;  // order of the subgroup H at one step (ICSB columns)
constexpr int max_index = 3;          // index of H in the next subgroup
constexpr int max_branch_dim = 3;     // dimension of a representation that extends or induces

// Conjugation tables of one step: ICSB[i-1][j-1] is the slot in H of the element with the
// rotation of g^-(i-1) h_j g^(i-1), EX[i-1][j-1] the phase (24ths) of that conjugate over it.
// Row 1 is the identity map with phase 0.
using Conj_Slots = std::array<std::array<int, max_subgroup_ops>, max_index>;
using Conj_Phases = std::array<std::array<float, max_subgroup_ops>, max_index>;

// Operator C(l) = A(i) B(j), translations not reduced; C may be A or B.
void matmult(const Op_Table& A, int i, const Op_Table& B, int j, Op_Table& C, int l);

// Phase, in 24ths of a turn in [0,24), of the translation of A(i) over that of B(j): k.(tA - tB).
float expon(const Vec3& k, const Op_Table& A, int i, const Op_Table& B, int j);

// Modulus r and phase phi (24ths, 0 to 24) of z.  The cosine a/r is held to [-1,1] before the
// inverse cosine, so that a number on the real axis gives exactly 0 or 12.
void decmpl(std::complex<float> z, float& r, float& phi);

// The irreducible representations of the little group in w.SUB (chain w.IGB, w.NG generators,
// w.N operators, w.ONGB as found) at the vector w.k.  The caller has created and cleared the
// work arrays and set rep1(1,1,1,1,1) = 1.  Fills w.order (order reached), w.Z1 (level of the
// result), w.NREP and the work arrays; sets err_lorsk on a failure.
void zak(Lorsk_Work& w);

}  // namespace velmoria

// Order parameters of the representations found in a run, and a candidate structure for each.
//
// For every representation nu of the little group that occurs in the magnetic (or mechanical)
// representation of at least one site, the real (physically irreducible) representation that a
// single-k structure m(L,j) = S_k(j) exp(-2 pi i k.R_L) + c.c. spans: nu itself when k is
// equivalent to -k and nu is of real type, else nu joined with its partner (its conjugate, or the
// representation of -k), of twice the dimension.  Its carrier is spanned by the basis functions
// organised by copy and by row (the transfer operators P_a1 give row a from row 1).  The
// operators of the space group, the lattice translations of the magnetic cell (with their
// phases) and time reversal (-1 on moments) act on it; the distinct isotropy subgroups of that
// action give the order-parameter directions, from the most symmetric to the general one.  For
// each direction a generic arrangement of moments (or displacements) in a cell in which it is
// periodic is kept as a candidate structure, for a layer around the core to identify its
// magnetic space group.
#pragma once

#include <array>
#include <complex>
#include <string>
#include <vector>

namespace velmoria {

struct Run_State;

// Denominators of the components of k up to this are treated as commensurate.
constexpr int max_commensurate_denominator = 12;

using Vec3d = std::array<double, 3>;
using Mat3d = std::array<Vec3d, 3>;

// The inverse of a 3 x 3 matrix of reals whose determinant is not zero.
Mat3d inverse(const Mat3d& m);

// One operation of an isotropy subgroup: a space-group operator with a lattice translation of
// the parent cell, and time reversal.  It keeps the arrangement of its direction.  Listed for
// every operator and every translation of the parent cell within the magnetic cell (with
// time reversal or without, whichever keeps it), the translation reduced to 0 <= t_i < q_i.
struct Isotropy_Operation {
  int op = 0;  // number of the operator in the space group's list (1-based)
  std::array<std::array<int, 3>, 3> rotation{};  // the operator's rotation
  Vec3d translation{};  // the full translation: the operator's own plus a parent lattice vector
  bool time_reversal = false;
};

// The atoms of the run's sites in the magnetic cell, with a moment (or displacement) on each.
// Alone they may keep more than the parent's symmetry (the parent's other atoms are not in
// the run): the symmetry of the arrangement is its isotropy subgroup.
struct Candidate_Structure {
  // The cell: column j is its j-th edge in the parent's coordinates.  A basis of the whole
  // vectors t with k.t whole; for a centred parent the centring translations with k.t whole
  // are translations within it (its atoms hold every centring), so the smallest lattice of the
  // structure may be finer than the cell's.
  std::array<Vec3d, 3> cell{Vec3d{1, 0, 0}, Vec3d{0, 1, 0}, Vec3d{0, 0, 1}};
  std::array<Vec3d, 3> lattice{};   // Cartesian rows a, b, c of the parent cell (a metric that
                                    // the parent's point group keeps)
  std::vector<Vec3d> positions;     // fractional coordinates in the cell
  std::vector<Vec3d> moments;       // components along the unit vectors of a, b, c; the
                                    // largest moment has length 1
  std::vector<int> types;           // s for an atom of site s
  std::vector<std::string> labels;  // the atom's label in the parent cell, e.g. "Mn_1"
};

// One copy of a representation on a site: its basis functions row by row.  Row a is P_a1 of the
// seed that gave row 1, so that the rows transform by exactly the matrices of the
// representation: O_g psi_a = Sum_c D_ca(g) psi_c.
struct Basis_Copy {
  int site = 0;  // 1-based number of the site
  // rows[a-1]: psi_a, 3 mult components, atom by atom, along a, b, c.  Scaled so that the
  // largest component of psi_1 is 1.
  std::vector<std::vector<std::complex<double>>> rows;
};

// The directions of a representation are its isotropy subspaces (fixed subspaces of the image,
// closed under intersection), one of each class of subspaces that the image maps onto each
// other, from the largest isotropy subgroup (then the smallest subspace) to the general one,
// whose isotropy subgroup is the kernel.  The representative of a class is the one with most
// zeros in its echelon form, then fewest entries that are not whole numbers.  All copies share
// the direction; the candidate gives each copy a generic real scale of its own.
//
// The notation of a direction: in the coefficients eta_a of the rows psi_a of a copy, the
// Fourier coefficients being Sum_a eta_a psi_a.  The real coordinates of the carrier are the
// real and imaginary parts of the eta_a that a copy needs (real parts first, the imaginary part
// of a row only where it gives arrangements that the real parts do not); the direction is
// written from the reduced echelon form of its subspace in those coordinates, ordered row by
// row, real part before imaginary part, one free real parameter a, b, c, ... per echelon row.
// Each eta_a is the sum of its terms: "a", "-a", "2a", "0.5a" for a real coefficient, "ia",
// "-ib" for an imaginary one, "(1+2i)a" for a complex one; "0" when it has none.
struct Order_Parameter_Direction {
  std::string notation;     // "(a,0)", "(a,a)", "(a,b)", "(a,0,0)", "(a,ia)", ...
  int dimension = 0;        // real dimension of the fixed subspace on one copy
  int free_parameters = 0;  // real parameters of the arrangement: dimension times the copies
  std::vector<Isotropy_Operation> isotropy;  // the isotropy subgroup (modulo the magnetic cell)
  Candidate_Structure structure;             // a generic arrangement of the direction
  std::vector<std::complex<double>> eta;     // the generic point: coefficient of each row
};

struct Physical_Irrep {
  int nu = 0;               // number of the representation in the tables of the result file
  int dimension = 0;        // its dimension d
  int indicator = 0;        // Frobenius-Schur indicator (1, 0, -1) when k is equivalent to -k
  bool k_equiv_mk = false;  // k is equivalent to -k
  int partner = 0;          // the conjugate representation joined with nu (0 when none or -k's)
  int real_dimension = 0;   // d or 2d: the dimension of the real representation
  int copies = 0;           // copies over all sites of the run
  int image_order = 0;      // distinct matrices of the image group on the real carrier
  std::vector<Basis_Copy> basis_copies;  // every copy, site by site
  std::vector<Order_Parameter_Direction> directions;
};

struct Magnetic_Candidates {
  std::string unsupported;  // why nothing was computed (incommensurate k, a denominator above
                            // 12, a run that stopped early); empty otherwise
  bool polar = false;       // displacements (polar vectors) rather than moments
  std::vector<Physical_Irrep> irreps;
  // Every operator of the space group with every translation of the parent cell within the
  // magnetic cell, as the isotropy subgroups list theirs (no time reversal).
  std::vector<Isotropy_Operation> operations;
};

// The candidates of a finished run.
Magnetic_Candidates magnetic_candidates(const Run_State& rs);

}  // namespace velmoria

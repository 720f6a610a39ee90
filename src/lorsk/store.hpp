// The representation store: what the run knows about the little group of the propagation
// vector and its irreducible representations, and where they came from.
//
// A matrix element is held in polar form, D_ab(g) = repr(a,b,nu,g) exp(2 pi i repi(a,b,nu,g)),
// with repr its modulus (or a signed real value from a supplied block) and repi its phase in
// fractions of a full turn.  Indices are 1-based as in the crystallographic texts: a, b rows
// and columns, nu the representation, g the operator.  Storage is sized by what a run needs
// (resize), never by the limits below, which are checked by the writers of the store.
#pragma once

#include <cassert>
#include <string>
#include <vector>

#include "support/numeric.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

constexpr int max_store_ops = 48;     // operators of the little group
constexpr int max_store_irreps = 48;  // representations (a supplied block may bring 48)
constexpr int max_store_dim = 48;     // dimension of a supplied representation

struct lorsk_proc {
  int ngk = 0;    // operators of the little group, one per rotation part
  int nreps = 0;  // irreducible representations
  std::vector<int> idim;           // dimension of each representation
  std::vector<Mat3i> ir;           // rotation part of each operator
  std::vector<Vec3> t;             // translation part, fractions of the cell edges
  std::vector<std::string> names;  // "SYMM_K(", g in i2, ")"
  int dmax = 0;                    // largest dimension held
  std::vector<float> repr_v, repi_v;  // matrix elements, see repr() and repi()
  std::vector<float> chr_v, chi_v;    // characters, see chr() and chi()
  std::vector<float> ph;              // phase correction of each operator, in turns
  std::vector<std::string> iso_names;  // labels of supplied representations (10)
  Space_Group_Type spg;                // the working space group of the run
  bool iso_read = false;
  bool full_irreps = false;
  bool extended_little_group = false;

  // Zero-filled storage for ngk operators and nreps representations of dimension up to dmax.
  void resize(int n_ops, int n_reps, int max_dim) {
    assert(n_ops >= 0 && n_ops <= max_store_ops && n_reps >= 0 && n_reps <= max_store_irreps &&
           max_dim >= 0 && max_dim <= max_store_dim);
    ngk = n_ops;
    nreps = n_reps;
    dmax = max_dim;
    idim.assign(n_reps, 0);
    ir.assign(n_ops, Mat3i{});
    t.assign(n_ops, Vec3{});
    names.assign(n_ops, std::string(10, ' '));
    const std::size_t elements = static_cast<std::size_t>(max_dim) * max_dim * n_reps * n_ops;
    repr_v.assign(elements, 0.0f);
    repi_v.assign(elements, 0.0f);
    chr_v.assign(static_cast<std::size_t>(n_reps) * n_ops, 0.0f);
    chi_v.assign(static_cast<std::size_t>(n_reps) * n_ops, 0.0f);
    ph.assign(n_ops, 0.0f);
    iso_names.assign(n_reps, std::string(10, ' '));
  }

  std::size_t element(int a, int b, int nu, int g) const {
    assert(a >= 1 && a <= dmax && b >= 1 && b <= dmax && nu >= 1 && nu <= nreps && g >= 1 &&
           g <= ngk);
    return ((static_cast<std::size_t>(g - 1) * nreps + (nu - 1)) * dmax + (a - 1)) * dmax + (b - 1);
  }
  float& repr(int a, int b, int nu, int g) { return repr_v[element(a, b, nu, g)]; }
  float repr(int a, int b, int nu, int g) const { return repr_v[element(a, b, nu, g)]; }
  float& repi(int a, int b, int nu, int g) { return repi_v[element(a, b, nu, g)]; }
  float repi(int a, int b, int nu, int g) const { return repi_v[element(a, b, nu, g)]; }

  std::size_t character(int nu, int g) const {
    assert(nu >= 1 && nu <= nreps && g >= 1 && g <= ngk);
    return static_cast<std::size_t>(g - 1) * nreps + (nu - 1);
  }
  float& chr(int nu, int g) { return chr_v[character(nu, g)]; }
  float chr(int nu, int g) const { return chr_v[character(nu, g)]; }
  float& chi(int nu, int g) { return chi_v[character(nu, g)]; }
  float chi(int nu, int g) const { return chi_v[character(nu, g)]; }
};

}  // namespace velmoria

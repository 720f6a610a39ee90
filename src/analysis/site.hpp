// A site and what its analysis finds, kept as data before it becomes text.
//
// A site is a set of atoms that the little group permutes.  For each site the analysis finds
// how every operator moves the atoms and a vector on them (Site_Representation), how often
// each irreducible representation occurs (the multiplicities), and for each contained
// representation its basis functions with the named constants and the symbolic Fourier
// coefficients of every atom (Irrep_Basis).  The writers of the result file and the block
// file format these records; other readers (machine-readable output, bindings) read the same.
#pragma once

#include <complex>
#include <string>
#include <vector>

#include "lorsk/store.hpp"
#include "support/numeric.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

// One site: its atoms, as expanded from an ATOM line or listed by a SUBL line.
struct Site {
  int mult = 0;                        // number of atoms
  std::vector<Vec3> x;                 // fractional coordinates of each atom
  std::vector<std::string> atom;       // label: site code, "_" and the atom number (8)
  std::vector<std::string> symstr;     // operator in brackets that makes the atom, plus shift (60)
  std::vector<std::string> symms;      // the same operator packed, shift worked in (60)
  std::vector<Sym_Oper_Type> carrier;  // that operator as data: it carries atom 1 onto the atom
  void resize(int n) {
    x.resize(n);
    carrier.resize(n);
    atom.resize(n, std::string(8, ' '));
    symstr.resize(n, std::string(60, ' '));
    symms.resize(n, std::string(60, ' '));
  }
};

// How the operators of the little group act on the atoms of a site and on a vector attached
// to an atom.  Operators g = 1 .. ngk and atoms i = 1 .. mult, 1-based as in the listings.
struct Site_Representation {
  int ngk = 0;
  int mult = 0;
  std::vector<Mat3i> ivrep;    // vector representation: the rotation, times det for axial vectors
  std::vector<float> charv;    // character of the vector representation
  std::vector<float> charp;    // real part of the character of the permutation representation
  std::vector<float> charpi;   // its imaginary part
  std::vector<int> iperm_v;    // see iperm()
  std::vector<Vec3> ret_v;     // see ret()
  std::vector<float> phase_v;  // see phase()

  void resize(int n_ops, int n_atoms) {
    ngk = n_ops;
    mult = n_atoms;
    ivrep.assign(n_ops, Mat3i{});
    charv.assign(n_ops, 0.0f);
    charp.assign(n_ops, 0.0f);
    charpi.assign(n_ops, 0.0f);
    const std::size_t n = static_cast<std::size_t>(n_ops) * n_atoms;
    iperm_v.assign(n, 0);
    ret_v.assign(n, Vec3{});
    phase_v.assign(n, 0.0f);
  }
  std::size_t at(int g, int i) const { return static_cast<std::size_t>(g - 1) * mult + (i - 1); }
  // The atom onto which operator g carries atom i.
  int& iperm(int g, int i) { return iperm_v[at(g, i)]; }
  int iperm(int g, int i) const { return iperm_v[at(g, i)]; }
  // The returning lattice vector R = x(iperm) - (R_g x(i) + t_g).
  Vec3& ret(int g, int i) { return ret_v[at(g, i)]; }
  const Vec3& ret(int g, int i) const { return ret_v[at(g, i)]; }
  // k.R in turns.
  float& phase(int g, int i) { return phase_v[at(g, i)]; }
  float phase(int g, int i) const { return phase_v[at(g, i)]; }
};

// The basis functions of one irreducible representation contained in the site's magnetic or
// mechanical representation.  A function is one complex vector of 3 mult components, atom by
// atom, components along a, b, c; functions are scaled so that their largest real component
// is +1 or -1 (the imaginary part when all real parts vanish).
struct Irrep_Basis {
  int nu = 0;        // number of the representation
  int idim = 0;      // its dimension
  int ia = 0;        // how often it occurs
  int expected = 0;  // idim * ia: the number of functions that the count is held against
  std::vector<std::vector<std::complex<float>>> functions;
  std::vector<bool> basimag;   // function j has imaginary components
  std::vector<float> realnum;  // the named non-integer constants r0, r1, ... by first occurrence
  bool constants_overflow = false;        // some constant found no place among the named ones
  std::vector<std::string> coefficients;  // Sk(j) of every atom, as written in the result file
  int nbas() const { return static_cast<int>(functions.size()); }
};

// What the analysis of one site finds.
struct Site_Analysis {
  Site_Representation rep;
  std::vector<int> ia;  // multiplicity of each representation in the magnetic/mechanical one
  std::vector<int> ip;  // in the permutation representation
  std::vector<Irrep_Basis> bases;  // one for each representation with ia non-zero, in order
};

// The run's knowledge that the analysis of a site reads.
struct Site_Context {
  const lorsk_proc& store;                    // the little group and its representations
  const std::vector<std::string>& symm_symb;  // x,y,z text of each operator (30)
  const std::vector<int>& idet;               // determinant of each rotation part
  const Vec3& vk;                             // the propagation vector
  int ipol = 1;                               // 1 polar vectors, 0 axial vectors
  bool bz = false;                            // k is equivalent to -k
  bool long_output = true;
  char lat_type = 'P';
  int nk = 1;  // arms of the star of k
};

// The output units that the analysis writes to, and the run's list of warnings (when kept):
// every warning written to a unit is also kept there as data.
struct Site_Units {
  std::string& console;
  std::string& result;  // unit 2
  std::string& block;   // unit 4
  std::vector<std::string>* warnings = nullptr;
};

// Keeps a warning that has been written in the run's list of warnings, without its leading
// and trailing blanks.
void keep_warning(const Site_Units& out, const std::string& text);

}  // namespace velmoria

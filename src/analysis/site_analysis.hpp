// The representation analysis of one site: the permutation and vector representations, their
// decomposition into the irreducible representations of the little group, the basis functions
// by projection operators, and the symbolic Fourier coefficients with the block of lines for
// the refinement program.
//
// The three steps run in this order for each site; each fills its part of the site's record
// and writes its sections to the result file (and the block file).  The tolerance epss is
// 0.002 throughout, as the run sets it for the site loop.
#pragma once

#include <string>
#include <vector>

#include "analysis/site.hpp"

namespace velmoria {

// Limits of the symbolic writing of basis functions.
constexpr int max_coef_letters = 36;  // letters u, v, w, ... of the free coefficients
constexpr int max_constants = 50;     // named constants r0 .. t9
constexpr int max_gamma_text = 512;   // characters of the GAMMA line's text

// Permutation table, returning vectors and phases, vector representation and characters of
// site ns (1-based), with the listing of every operator when long_output is set.
void trans(const Site_Context& cx, const Site& site, int ns, Site_Representation& rep,
           Site_Units out);

// Multiplicities of the irreducible representations in the magnetic or mechanical and in the
// permutation representation of the site, with their listing.
void decomp(const Site_Context& cx, const Site_Representation& rep, Site_Analysis& an,
            Site_Units out);

// Basis functions of every contained representation, their listing, the Fourier coefficients
// of the atoms and the block of lines for the refinement program.
void projection_operators(const Site_Context& cx, const Site& site, int ns,
                          const Site_Representation& rep, Site_Analysis& an, Site_Units out);

// Pieces of the steps above.

// The text of a decomposition: " +", n, " Irep_k(", nu, ")" for every non-zero n (with
// labels: " m" or " ", the label and "(", nu, ")"), one after the other, the "+" of the first
// one blanked.  A term that would pass max_gamma_text characters is left out, and " ..."
// says that the list goes on.
std::string gamma_text(const std::vector<int>& n, const std::vector<std::string>* labels, int ipol);

// Records abs(v) among the named constants of basis unless v is an integer or lies within
// 0.001 of a known constant; past max_constants it sets constants_overflow instead.
void note_constant(float v, Irrep_Basis& basis);

// Scales each function on its largest real component (on its largest imaginary component
// when all real parts vanish) and collects the constants, real parts before imaginary ones.
void scale_functions(Irrep_Basis& basis);

}  // namespace velmoria

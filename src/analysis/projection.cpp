// Basis functions by projection operators, their listing, the Fourier coefficients of the atoms
// and the block of lines for the refinement program.
//
// For representation nu the projector Sum_g conj(D_ab(g)) exp(-2 pi i k.R_g) g is applied to a
// unit vector along each axis on atom 1, for every matrix element (a,b); the non-null results
// that are linearly independent of those kept are the basis functions.  Each is scaled so that
// its largest real component is +1 or -1, and the non-integer values in it become the named
// constants r0, r1, ... of the symbolic coefficients.
#include <algorithm>
#include <cmath>
#include <complex>
#include <optional>
#include <string>

#include "analysis/fourier_text.hpp"
#include "analysis/site_analysis.hpp"
#include "support/layout.hpp"
#include "support/linear_dependence.hpp"
#include "support/text.hpp"

namespace velmoria {

namespace {

using Complex_dp = std::complex<double>;
using Function = std::vector<std::complex<float>>;

constexpr double minus_two_pi = -6.283185307179586;
constexpr float null_limit = 0.002f;  // sums of moduli at or below this are null
constexpr int atoms_per_group = 4;    // atoms on one line of the listing
constexpr std::size_t block_line_len = 256;

// The projection of the unit vector along axis m on atom 1 with matrix element (a,b) of nu.
std::vector<Complex_dp> project(const lorsk_proc& st, const Site_Representation& rep, int nu, int a,
                                int b, int m) {
  std::vector<Complex_dp> basis(static_cast<std::size_t>(3) * rep.mult, 0.0);
  for (int g = 1; g <= st.ngk; ++g) {
    const int l = rep.iperm(g, 1);
    const float phi = rep.phase(g, 1) + st.repi(a, b, nu, g);
    const double angle = minus_two_pi * static_cast<double>(phi);
    const std::complex<float> e(static_cast<float>(std::cos(angle)),
                                static_cast<float>(std::sin(angle)));
    for (int c = 1; c <= 3; ++c) {
      const float weight =
          static_cast<float>(rep.ivrep[g - 1][c - 1][m - 1]) * st.repr(a, b, nu, g);
      const std::complex<float> term(weight * e.real(), weight * e.imag());
      basis[static_cast<std::size_t>(3 * (l - 1) + c - 1)] +=
          Complex_dp(static_cast<double>(term.real()), static_cast<double>(term.imag()));
    }
  }
  return basis;
}

Function to_single(const std::vector<Complex_dp>& v) {
  Function f(v.size());
  for (std::size_t i = 0; i < v.size(); ++i) {
    f[i] = {static_cast<float>(v[i].real()), static_cast<float>(v[i].imag())};
  }
  return f;
}

// The linearly independent non-null projections, in the order of the candidates.
void find_functions(const Site_Context& cx, const Site_Representation& rep, int nu,
                    Irrep_Basis& basis, std::string& console) {
  const lorsk_proc& st = cx.store;
  const int nd3 = 3 * rep.mult;
  const double limit = static_cast<double>(null_limit);
  Growing_Span kept(nd3);  // the functions kept, for the test of dependence
  const Mathgen_Scope mathgen_scope;
  const int d = st.idim[nu - 1];
  for (int a = 1; a <= d; ++a) {
    for (int b = 1; b <= d; ++b) {
      for (int m = 1; m <= 3; ++m) {
        const std::vector<Complex_dp> candidate = project(st, rep, nu, a, b, m);
        double moduli = 0.0, imaginary = 0.0;
        for (const Complex_dp& z : candidate) {
          moduli += std::abs(z);
          imaginary += std::abs(z.imag());
        }
        if (moduli <= limit) continue;
        const Function single = to_single(candidate);
        if (!basis.functions.empty()) {
          const bool dependent = kept.dependent(single);
          if (const std::optional<std::string> mess = take_err_mathgen()) put(console, "a", *mess);
          if (dependent) continue;
        }
        basis.functions.push_back(single);
        basis.basimag.push_back(imaginary > limit);
        kept.keep(single);
      }
    }
  }
}

}  // namespace

void note_constant(float v, Irrep_Basis& basis) {
  if (zbelongn(v)) return;
  for (float known : basis.realnum) {
    if (std::abs(std::abs(v) - known) < 0.001f) return;
  }
  if (static_cast<int>(basis.realnum.size()) < max_constants) {
    basis.realnum.push_back(std::abs(v));
  } else {
    basis.constants_overflow = true;
  }
}

void scale_functions(Irrep_Basis& basis) {
  for (Function& f : basis.functions) {
    float r = 0.0f;
    for (const auto& z : f) r = std::max(r, std::abs(z.real()));
    if (r == 0.0f) {
      for (const auto& z : f) r = std::max(r, std::abs(z.imag()));
    }
    if (r > 0.0f) {
      for (auto& z : f) z = {z.real() / r, z.imag() / r};
    }
    for (const auto& z : f) note_constant(z.real(), basis);
    for (const auto& z : f) note_constant(z.imag(), basis);
  }
}

namespace {

// One part (real or imaginary) of the components of atom i in function j.
Vec3 part_of(const Function& f, int i, bool imaginary) {
  Vec3 v;
  for (int c = 0; c < 3; ++c) {
    const auto& z = f[static_cast<std::size_t>(3 * (i - 1) + c)];
    v[c] = imaginary ? z.imag() : z.real();
  }
  return v;
}

bool whole_part_integer(const Function& f, bool imaginary) {
  std::vector<float> v(f.size());
  for (std::size_t i = 0; i < f.size(); ++i) v[i] = imaginary ? f[i].imag() : f[i].real();
  return zbelongv(v);
}

// The rows BsV(j, a1:a2) of every function for the atoms of each group of four.
void write_function_listing(const Site& site, const Irrep_Basis& basis, std::string& out) {
  const int groups = std::max(1, (site.mult + atoms_per_group - 1) / atoms_per_group);
  // Whether the real and the imaginary parts of each whole function are integers.
  std::vector<std::array<bool, 2>> integer_parts;
  for (const Function& f : basis.functions) {
    integer_parts.push_back({whole_part_integer(f, false), whole_part_integer(f, true)});
  }
  for (int grp = 0; grp < groups; ++grp) {
    const int a1 = atoms_per_group * grp + 1;
    const int a2 = std::min(atoms_per_group * grp + atoms_per_group, site.mult);
    Items symm = make_items("               SYMM  ");
    Items atoms = make_items("               Atoms:    ");
    for (int i = a1; i <= a2; ++i) {
      add_item(symm, trim(site.symms[i - 1]) + "   ");
      add_item(atoms, "  ");
      add_item(atoms, site.atom[i - 1]);
      add_item(atoms, "        ");
    }
    append_layout(out, "a,4a", symm);
    append_layout(out, "a,4(a,a8,a)", atoms);
    for (int j = 1; j <= basis.nbas(); ++j) {
      const Function& f = basis.functions[j - 1];
      for (bool imaginary : {false, true}) {
        if (imaginary && !basis.basimag[j - 1]) continue;
        const bool integer = integer_parts[j - 1][imaginary ? 1 : 0];
        Items items = imaginary ? make_items("                Im ")
                                : make_items(" BsV(", j, ",", a1, ":", a2, "):Re ");
        for (int i = a1; i <= a2; ++i) {
          const Vec3 v = part_of(f, i, imaginary);
          add_item(items, "(");
          if (integer) {
            for (float x : v) add_item(items, nint(x));
          } else {
            add_item(items, v);
          }
          add_item(items, ") ");
        }
        const char* layout =
            imaginary ? (integer ? "a,4(a,3i5,a)" : "a,4(a,3f5.2,a)")
                      : (integer ? "a,i3,2(a,i2),a,4(a,3i5,a)" : "a,i3,2(a,i2),a,4(a,3f5.2,a)");
        append_layout(out, layout, items);
      }
    }
    put(out, "a", " ");
  }
}

// A pass over the functions for the real or imaginary parts of atom i: the BASR/BASI line and
// the expressions of the three components.  Returns whether any term was found.
bool component_pass(const Irrep_Basis& basis, int i, bool imaginary, std::string& line,
                    std::array<std::string, 3>& symb) {
  line = imaginary ? "BASI " : "BASR ";
  symb = {"", "", ""};
  std::size_t term_length = 0;
  std::size_t pos = line.size() + 1;  // the write position; an entry moves it on whole
  for (int j = 1; j <= basis.nbas(); ++j) {
    const Vec3 r = part_of(basis.functions[j - 1], i, imaginary);
    std::string entry;
    if (zbelongv(r)) {
      const std::array<int, 3> vec = {nint(r[0]), nint(r[1]), nint(r[2])};
      for (int c = 0; c < 3; ++c) {
        if (vec[c] == 0 || j > max_coef_letters) continue;
        add_term(symb[c], static_cast<float>(vec[c]), j, basis.realnum);
        term_length += symb[c].size();
      }
      entry = sput("3i3", vec) + " ";
    } else {
      for (int c = 0; c < 3; ++c) {
        if (std::abs(r[c]) <= 0.001f || j > max_coef_letters) continue;
        add_term(symb[c], r[c], j, basis.realnum);
        term_length += symb[c].size();
      }
      entry = sput("3f8.4", r) + " ";
    }
    // An entry that does not fit in the line is lost.
    if (pos + entry.size() - 2 <= block_line_len) {
      line.resize(pos - 1, ' ');
      line += entry;
    }
    pos += entry.size();
  }
  for (std::string& s : symb) {
    if (!s.empty() && s[0] == '+') s[0] = ' ';
  }
  if (term_length > 0) {
    for (std::string& s : symb) {
      if (is_blank(s)) s = "0";
    }
  }
  line = trim(line);
  return term_length > 0;
}

void write_block_head(const Site_Context& cx, const Site& site, const Irrep_Basis& basis,
                      std::string& block) {
  const int nbas = basis.nbas();
  put(block, "/,a", " ----- Block-of-lines for RCF start just below this line");
  put(block, "a",
      std::string(1, cx.lat_type) +
          " -1                           <--Space group symbol for hkl generation");
  put(block, "a", "! Nsym   Cen  Laue Ireps N_Bas ");
  put(block, "5i6", site.mult, 1, 1, -1, nbas);
  put(block, "a", "! Real(0)-Imaginary(1) indicator for Ci");
  append_layout(block, "9i3", make_items(std::vector<int>(static_cast<std::size_t>(nbas), 0)));
}

// The block lines and the Fourier coefficient of every atom.
void write_atoms(const Site& site, Irrep_Basis& basis, Site_Units out) {
  basis.coefficients.clear();
  for (int i = 1; i <= site.mult; ++i) {
    put(out.block, "a,a", "SYMM ", site.symms[i - 1]);
    put(out.result, "/,a,a,a,a,3f8.4", "       SYMM ", site.symms[i - 1],
        "   Atom: ", site.atom[i - 1], site.x[i - 1]);
    std::string line;
    std::array<std::string, 3> symb;
    std::string symbas;
    if (component_pass(basis, i, false, line, symb)) {
      symbas = sput("a,i2,a", "       Sk(", i, "): " + common_fact(symb));
    } else {
      symbas = sput("a,i2,a", "       Sk(", i, "): (0,0,0)");
    }
    put(out.block, "a", line);
    std::string symbasi;
    if (component_pass(basis, i, true, line, symb)) symbasi = "  + i  " + common_fact(symb);
    put(out.block, "a", line);
    std::string cfourier = phase_fact(trim(pack_string(fixed(symbas, cfourier_len))),
                                      trim(pack_string(fixed(symbasi, cfourier_len))));
    cfourier = polish_fourier(cfourier, basis.realnum);
    put(out.result, "a", "       " + cfourier);
    basis.coefficients.push_back(cfourier);
  }
}

void write_constants(const Site_Context& cx, const Irrep_Basis& basis, std::string& out) {
  if (basis.realnum.empty()) return;
  put(out, "/,/,a", "        Values of real constants r0,r1,...");
  Items items;
  for (std::size_t m = 0; m < basis.realnum.size(); ++m) {
    add_item(items, "    " + std::string(numer[m]) + " = ");
    add_item(items, basis.realnum[m]);
  }
  append_layout(out, "10x,10(a,f10.6)", items);
  if (!cx.long_output) return;
  put(out, "/,7x,2a", " To simplify the expressions of the Fourier vector coefficients Sk(j),",
      " check combinations of values by pairs ");
  put(out, "7x,2a", " Usually these real constants are related to k-vector,",
      " they can constitute real and/or imaginary parts of exp{+/-2.pi.i.K.T },");
  put(out, "7x,a", " being T the translation associated to a symmetry operator");
  put(out, "7x,a", " In many simple cases r0=cos(2.pi.k.t) and r1=sin(2.pi.k.t), etc ...");
  put(out, "7x,a",
      " Look for common factors and conjugation operations to further simplify the expressions ");
}

// Heads of the section of representation nu on both files, and the count of functions held
// against the expected one.
void write_section_head(const Site_Context& cx, const Site& site, int ns, const Irrep_Basis& basis,
                        Site_Units out) {
  const lorsk_proc& st = cx.store;
  const int nu = basis.nu;
  const std::vector<char> pluses(113, '+');  // one item a column, so that the "/" is reached
  put(out.result, "/,a,113a", "   ", pluses);
  put(out.result, "3(a,i3),a", " => Basis functions of Representation IRrep(", nu,
      ") of dimension ", basis.idim, " contained", basis.ia,
      " times in GAMMA  -> Iso_name: " + fixed(st.iso_names[nu - 1], 10));
  put(out.result, "a,113a,/", "   ", pluses);
  if (nu == 1) {
    put(out.block, "a,i2", "                 X       Y       Z           for site: ", ns);
    for (int i = 1; i <= site.mult; ++i) {
      put(out.block, "a,a8,a,3f8.4,2a", " -> ", site.atom[i - 1], ": ", site.x[i - 1], "  : ",
          site.symstr[i - 1]);
    }
  }
  put(out.block, "/,3(a,i3),a", " => Basis functions of Representation IRrep(", nu,
      ") of dimension ", basis.idim, " contained", basis.ia, " times in GAMMA");
  put(out.block, "2(a,i2)", "    Representation number    : ", nu, " for Site: ", ns);
  if (st.full_irreps) {
    const int e = cx.nk > 0 ? basis.idim * basis.ia / cx.nk : 0;
    put(out.block, "a,i2,/", "    Expected number of basis functions (Dim*N_times/Nk_star): ", e);
    put(out.result, "a,i2,/", "    Expected number of basis functions (Dim*N_times/Nk_star): ", e);
  }
  put(out.block, "a,i2", "    Number of basis functions: ", basis.nbas());
  if (st.full_irreps || st.extended_little_group) return;
  if (basis.nbas() > basis.expected) {
    const char* more =
        " => Warning! more basis functions than allowed! Look for linear dependencies ...";
    put(out.console, "a", more);
    put(out.result, "/,a", more);
    put(out.block, "a", more);
    keep_warning(out, more);
  } else if (basis.nbas() < basis.expected) {
    const char* less = " => Warning! less basis functions than expected ... continue ...";
    put(out.console, "a", less);
    put(out.result, "/,a", less);
    put(out.block, "a", " => Warning! less basis functions than allowed! ");
    keep_warning(out, less);
  }
}

// Notes on what the symbolic coefficients cannot show within their limits.
void write_limit_notes(const Irrep_Basis& basis, std::string& out) {
  if (basis.nbas() > max_coef_letters) {
    put(out, "a,i3,a", " => Warning! Only the first 36 of the", basis.nbas(),
        " basis functions have a coefficient letter: the others are left out of Sk(j) below");
  }
  if (basis.constants_overflow) {
    put(out, "a",
        " => Warning! More than 50 real constants: those past t9 have no name and no factor in "
        "Sk(j) below");
  }
}

}  // namespace

void projection_operators(const Site_Context& cx, const Site& site, int ns,
                          const Site_Representation& rep, Site_Analysis& an, Site_Units out) {
  const lorsk_proc& st = cx.store;
  std::string& res = out.result;
  put(res, "/,80a", std::string(80, '-'));
  put(res, "/,a", " => Atomic components of the BASIS FUNCTIONS using PROJECTION OPERATORS: ");
  put(res, "a,i2", "                    Calculation for SITE number: ", ns);
  put(res, "a,/", "                (Only non-null functions are written) ");
  set_epsg_sp(0.002f);
  an.bases.clear();
  for (int nu = 1; nu <= st.nreps; ++nu) {
    const int ia = an.ia[nu - 1];
    if (ia == 0) continue;
    Irrep_Basis basis;
    basis.nu = nu;
    basis.idim = st.idim[nu - 1];
    basis.ia = ia;
    basis.expected = basis.idim * ia;
    find_functions(cx, rep, nu, basis, out.console);
    scale_functions(basis);
    write_section_head(cx, site, ns, basis, out);
    write_function_listing(site, basis, res);
    put(res, "/,2a", " ----- The Fourier coefficients are LINEAR COMBINATIONS of Basis Functions:",
        " coefficients u,v,w,p,q ....(may be complex!)");
    put(res, "a", "       ");
    put(res, "a",
        "       The general expressions of the Fourier coefficients Sk(j) of the atoms "
        "non-related ");
    put(res, "a", "       by lattice translations are the following:");
    write_limit_notes(basis, res);
    write_block_head(cx, site, basis, out.block);
    write_atoms(site, basis, out);
    write_constants(cx, basis, res);
    put(out.block, "a", " ----- End-of-block of lines for RCF ");
    an.bases.push_back(std::move(basis));
  }
  put(res, "80a", std::string(80, '-'));
}

}  // namespace velmoria

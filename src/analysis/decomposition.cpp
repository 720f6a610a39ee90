// The decomposition of a site's magnetic or mechanical representation (vector times
// permutation) and of its permutation representation into the irreducible representations of
// the little group, by the orthogonality of characters over the operators of the little group
// without centring translations.
#include <complex>

#include "analysis/site_analysis.hpp"
#include "support/layout.hpp"
#include "support/text.hpp"

namespace velmoria {

namespace {

using Complex_dp = std::complex<double>;

constexpr float imaginary_limit = 0.0002f;

Complex_dp character(const lorsk_proc& st, int nu, int g) {
  return {static_cast<double>(st.chr(nu, g)), static_cast<double>(st.chi(nu, g))};
}

// The nearest integer of a multiplicity, after the warnings that it is not a whole real number.
int whole_multiplicity(const Complex_dp& n, const char* non_integer, const char* imaginary,
                       const Site_Units& out) {
  const float re = static_cast<float>(n.real());
  if (!zbelongn(re)) {
    const std::string line = sput("a,f8.5", non_integer, re);
    out.console += line + "\n";
    keep_warning(out, line);
  }
  if (std::abs(n.imag()) > static_cast<double>(imaginary_limit)) {
    const std::string line = sput("a,f8.5", imaginary, n.imag());
    out.console += line + "\n";
    keep_warning(out, line);
  }
  return nint(n.real());
}

// A head of operator numbers " G(g)" behind the first items of `head`, and the row of the
// complex characters (re, im) of every operator.
void write_character_row(std::string& out, const char* head_layout, Items head,
                         const std::vector<float>& re, const std::vector<float>& im) {
  Items values = make_items("          ");
  for (std::size_t g = 0; g < re.size(); ++g) {
    add_item(head, "      G(");
    add_item(head, g + 1);
    add_item(head, ")");
    add_item(values, " ");
    add_item(values, re[g]);
    add_item(values, im[g]);
  }
  append_layout(out, head_layout, head);
  append_layout(out, "a,48(a,2f5.1)", values);
}

void write_characters(const Site_Context& cx, const Site_Representation& rep, std::string& out) {
  const lorsk_proc& st = cx.store;
  put(out, "a,/", " -> Characters of GAMMA and IRreps:");
  std::vector<float> re(st.ngk), im(st.ngk);
  for (int g = 1; g <= st.ngk; ++g) {
    re[g - 1] = rep.charv[g - 1] * rep.charp[g - 1];
    im[g - 1] = rep.charv[g - 1] * rep.charpi[g - 1];
  }
  write_character_row(out, "a,48(a,i2,a)", make_items("  GAMMA   "), re, im);
  for (int nu = 1; nu <= st.nreps; ++nu) {
    for (int g = 1; g <= st.ngk; ++g) {
      re[g - 1] = st.chr(nu, g);
      im[g - 1] = st.chi(nu, g);
    }
    write_character_row(out, "/,a,i2,a,48(a,i2,a)", make_items("Irep_k(", nu, ")"), re, im);
  }
}

// The representations in the product of each representation of the permutation
// representation with the axial vector representation.
void write_exchange_multiplets(const Site_Context& cx, const Site_Representation& rep,
                               const std::vector<int>& ip, Site_Units out) {
  const lorsk_proc& st = cx.store;
  put(out.result, "/,a", " => Exchange multiplets: ");
  bool mixing = false;
  std::vector<int> i_mult(st.nreps, 0);
  for (int p = 1; p <= st.nreps; ++p) {
    if (ip[p - 1] == 0) continue;
    for (int q = 1; q <= st.nreps; ++q) {
      Complex_dp m = 0.0;
      for (int g = 1; g <= st.ngk; ++g) {
        m += character(st, p, g) * static_cast<double>(rep.charv[g - 1]) *
             std::conj(character(st, q, g));
      }
      m /= static_cast<double>(st.ngk);
      i_mult[q - 1] =
          whole_multiplicity(m, " => Warning! Non-integer N_nu! (In exchange Multiplets) ->",
                             " => Warning! Imaginary N_nu! (In exchange Multiplets) ->", out);
    }
    const std::string text = gamma_text(i_mult, nullptr, cx.ipol);
    if (!is_blank(text)) {
      put(out.result, "/,a,i2,a", "    Representation Irep_k(", p, ") x Axial:" + trim(text));
      mixing = true;
    }
  }
  if (!mixing) {
    put(out.result, "a", "    No mixing of representations allowed for isotropic exchange   ");
  }
}

}  // namespace

std::string gamma_text(const std::vector<int>& n, const std::vector<std::string>* labels,
                       int ipol) {
  std::vector<std::string> terms;
  std::size_t length = 0;
  for (std::size_t k = 0; k < n.size(); ++k) {
    if (n[k] == 0) continue;
    const int nu = static_cast<int>(k) + 1;
    std::string middle = " Irep_k(";
    if (labels) middle = (ipol == 0 ? " m" : " ") + trim((*labels)[k]) + "(";
    terms.push_back(sput("2(a,i2),a", " +", n[k], middle, nu, ")"));
    length += terms.back().size();
  }
  const std::string mark = " ...";
  const std::size_t room = static_cast<std::size_t>(max_gamma_text);
  std::string text;
  for (const std::string& term : terms) {
    if (length > room && text.size() + term.size() + mark.size() > room) {
      text += mark;
      break;
    }
    text += term;
  }
  if (text.size() >= 2) text[1] = ' ';
  return text;
}

void decomp(const Site_Context& cx, const Site_Representation& rep, Site_Analysis& an,
            Site_Units out) {
  const lorsk_proc& st = cx.store;
  an.ia.assign(st.nreps, 0);
  an.ip.assign(st.nreps, 0);
  for (int nu = 1; nu <= st.nreps; ++nu) {
    Complex_dp n = 0.0, n_perm = 0.0;
    for (int g = 1; g <= st.ngk; ++g) {
      const Complex_dp p{static_cast<double>(rep.charp[g - 1]),
                         static_cast<double>(rep.charpi[g - 1])};
      const Complex_dp x_conj = std::conj(character(st, nu, g));
      n += static_cast<double>(rep.charv[g - 1]) * p * x_conj;
      n_perm += p * x_conj;
    }
    n /= static_cast<double>(st.ngk);
    n_perm /= static_cast<double>(st.ngk);
    an.ia[nu - 1] = whole_multiplicity(n, " => Warning! Non-integer N_nu! ->",
                                       " => Warning! Imaginary N_nu! ->", out);
    an.ip[nu - 1] = whole_multiplicity(n_perm, " => Warning! Non-integer N_nu(Perm)! ->",
                                       " => Warning! Imaginary N_nu(Perm)! ->", out);
  }

  std::string& res = out.result;
  put(res, "/,a,/", " => Decomposition of the Magnetic/Mechanic representation:");
  if (cx.long_output) write_characters(cx, rep, res);
  const std::string gamma = gamma_text(an.ia, st.iso_read ? &st.iso_names : nullptr, cx.ipol);
  put(res, "/,a", (cx.ipol == 0 ? " -> GAMMA(Magnetic):" : " -> GAMMA(Mechanic):") + trim(gamma));
  put(res, "a", "  ");
  put(res, "a", std::string(80, '-'));
  if (!cx.long_output) return;
  put(res, "/,a", " => Decomposition of the Permutational Representation:");
  put(res, "/,a", " -> GAMMA(Permutation):" + trim(gamma_text(an.ip, nullptr, cx.ipol)));
  if (cx.ipol == 0) write_exchange_multiplets(cx, rep, an.ip, out);
  put(res, "a", "  ");
  put(res, "a", std::string(80, '-'));
}

}  // namespace velmoria

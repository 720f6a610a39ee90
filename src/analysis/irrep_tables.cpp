// The tables of the irreducible representations, numeric and symbolic, and the finishing of
// the representation store.
#include "analysis/irrep_tables.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <unordered_map>

#include "support/bit_key.hpp"
#include "support/fractions.hpp"
#include "support/layout.hpp"
#include "support/text.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/seitz_symbols.hpp"
#include "symmetry/symmetry_symbols.hpp"

namespace velmoria {

namespace {

constexpr float phase_tol = 0.001f;       // two phases closer than this are the same
constexpr float two_pi = 6.28318530718f;  // a full turn in radians
constexpr int max_unit_steps = 4096;      // whole cells taken off one by one, beyond: at once
constexpr std::size_t symb_width = 30;    // x,y,z text of an operator
constexpr std::size_t symcod_width = 30;  // Kovalev symbol of an operator
constexpr std::size_t seitz_width = 15;   // Seitz symbol
constexpr std::size_t itsym_width = 40;   // international symbol
constexpr std::size_t elerep_width = 20;  // one element of the numeric listing

std::string no_blanks(std::string_view s) {
  std::string r;
  for (char c : s)
    if (c != ' ') r += c;
  return r;
}

// Brings each component of t into [0,1) and returns the whole shift added to it.
Vec3 reduce_translation(Vec3& t) {
  Vec3 tr{0.0f, 0.0f, 0.0f};
  for (int c = 0; c < 3; ++c) {
    if (!std::isfinite(t[c])) continue;
    if (std::fabs(t[c]) > static_cast<float>(max_unit_steps)) {
      // A shift of thousands of cells cannot come from a product of operators; it is taken
      // off in one step so that the loop below stays short.
      const float n = std::floor(t[c]);
      t[c] -= n;
      tr[c] -= n;
    }
    while (t[c] < 0.0f) {
      t[c] += 1.0f;
      tr[c] += 1.0f;
    }
    while (t[c] >= 1.0f) {
      t[c] -= 1.0f;
      tr[c] -= 1.0f;
    }
  }
  return tr;
}

// The corrected phase of an element: (p - floor(r + p)) + r with p = ph + 10, in this order,
// so that the element is multiplied by exp(2 pi i ph) and its phase lies in [0,1).
float corrected_phase(float r, float ph) {
  const float p = ph + 10.0f;
  const float fl = std::floor(r + p);
  const float lead = p - fl;
  return lead + r;
}

// Dimension of representation nu, as far as the store holds its elements.
int dim_of(const lorsk_proc& store, int nu) {
  return std::clamp(store.idim[nu - 1], 0, store.dmax);
}

struct Element {
  float m, theta, re, im;
};

Element element_of(const lorsk_proc& store, int a, int b, int nu, int g) {
  const float m = store.repr(a, b, nu, g);
  const float theta = store.repi(a, b, nu, g);
  const float arg = two_pi * theta;
  return {m, theta, m * std::cos(arg), m * std::sin(arg)};
}

void write_counts(std::string& unit, const lorsk_proc& store) {
  put(unit, "/,a", " ---------------------------------------------------------- ");
  if (store.extended_little_group) {
    put(unit, "a,i4", " => Number of elements of G_(k,-k): ", store.ngk);
    put(unit, "a,i4",
        " => Number of physically irreducible representations of G_(k,-k): ", store.nreps);
  } else if (store.full_irreps) {
    put(unit, "a,i4", " => Number of elements of G: ", store.ngk);
    put(unit, "a,i4",
        " => Number of full physically irreducible representations of G: ", store.nreps);
  } else {
    put(unit, "a,i4", " => Number of elements of G_k: ", store.ngk);
    put(unit, "a,i4", " => Number of irreducible representations of G_k: ", store.nreps);
  }
  // Twenty dimensions to a line; more, which only a supplied block can bring, go on in
  // further lines under the first values.
  const std::string head = " => Dimensions of Ir(reps): ";
  const int n = std::min(store.nreps, static_cast<int>(store.idim.size()));
  std::vector<int> first(store.idim.begin(), store.idim.begin() + std::min(n, dims_per_line));
  put(unit, "a,20i3", head, first);
  for (int from = dims_per_line; from < n; from += dims_per_line) {
    const int to = std::min(n, from + dims_per_line);
    std::vector<int> more(store.idim.begin() + from, store.idim.begin() + to);
    put(unit, "28x,20i3", more);
  }
}

// The names of one operator: Seitz symbol and international symbol, and its Kovalev symbol.
struct Operator_Names {
  std::string seitz;   // 15
  std::string itsym;   // 40
  std::string symcod;  // 30
};

Operator_Names name_operator(const lorsk_proc& store, int g, std::string& symb) {
  const Mat3i& rot = store.ir[g - 1];
  symb = fixed(get_symsymbi(rot, store.t[g - 1]), symb_width);
  Operator_Names nm;
  nm.symcod = fixed(get_symkov(rot), symcod_width);
  std::string itsym;
  seitz_symb(trim(symb), nm.seitz, std::string_view(nm.symcod), &itsym);
  nm.seitz = fixed(nm.seitz, seitz_width);
  nm.itsym = fixed(adjustl(itsym), itsym_width);
  return nm;
}

// One row of a matrix in the numeric listing: 20 blanks, then a blank, the element and a
// blank for each column, as the layout a,18a writes them: 19 texts a line, the layout starting
// again on the next line for long rows.  Joined here directly, as the rows of a large supplied
// representation are many.
void write_listing_row(std::string& unit, const std::vector<std::string>& elerep) {
  constexpr std::size_t per_line = 19;
  std::size_t placed = 1;
  unit.append(20, ' ');
  for (const std::string& e : elerep) {
    const std::string_view pieces[3] = {" ", e, " "};
    for (std::string_view piece : pieces) {
      if (placed == per_line) {
        unit += '\n';
        placed = 0;
      }
      unit += piece;
      ++placed;
    }
  }
  unit += '\n';
}

// An element in the listing, with the parts it was made of: the same modulus and phase come
// back again and again in the matrices of a group, above all in a large supplied block, so
// each pair is worked out once.
struct Listed_Element {
  float re = 0.0f, im = 0.0f;
  std::string text;  // element_text cut to its field, trailing blanks removed
};

class Element_Memo {
 public:
  const Listed_Element& get(float m, float theta) {
    const Bit_Key<2> key{key_bits(m), key_bits(theta)};
    if (last_ != nullptr && key == last_key_) return *last_;
    auto it = known_.find(key);
    if (it == known_.end()) {
      if (known_.size() >= max_known) known_.clear();
      const float arg = two_pi * theta;
      Listed_Element el{m * std::cos(arg), m * std::sin(arg), {}};
      el.text = trim(fixed(element_text(el.re, el.im), elerep_width));
      it = known_.emplace(key, std::move(el)).first;
    }
    last_key_ = key;
    last_ = &it->second;
    return *last_;
  }

 private:
  static constexpr std::size_t max_known = 4096;
  std::unordered_map<Bit_Key<2>, Listed_Element, Bit_Key_Hash> known_;
  Bit_Key<2> last_key_{};
  const Listed_Element* last_ = nullptr;
};

// Corrects the phases of all matrices of operator g, registers their phases and, with long
// output, lists them.
void correct_operator(std::string& unit, lorsk_proc& store, int g, bool long_output,
                      Phase_Labels& labels, Element_Memo& memo) {
  const float ph = store.ph[g - 1];
  std::vector<std::string> elerep;
  for (int nu = 1; nu <= store.nreps; ++nu) {
    if (long_output)
      put(unit, "a,i2,a", "    Matrix of IRrep(", nu, "):  " + trim(store.iso_names[nu - 1]));
    const int d = dim_of(store, nu);
    for (int a = 1; a <= d; ++a) {
      elerep.resize(static_cast<std::size_t>(d));
      for (int b = 1; b <= d; ++b) {
        float& r = store.repi(a, b, nu, g);
        r = corrected_phase(r, ph);
        const Listed_Element& el = memo.get(store.repr(a, b, nu, g), r);
        if (std::fabs(el.im) > phase_tol) register_phase(labels, r);
        if (long_output) elerep[b - 1] = el.text;
      }
      if (long_output) write_listing_row(unit, elerep);
    }
  }
}

// The pass over the operators: reduction of the translations, phase factors, names and, with
// long output, the listing of the matrices.
void correct_operators(std::string& unit, lorsk_proc& store, const Vec3& vk, bool long_output,
                       std::vector<std::string>& symm_symb, std::vector<Operator_Names>& names,
                       Phase_Labels& labels, Element_Memo& memo) {
  for (int g = 1; g <= store.ngk; ++g) {
    const Vec3 tr = reduce_translation(store.t[g - 1]);
    store.ph[g - 1] = vk[0] * tr[0] + vk[1] * tr[1] + vk[2] * tr[2];
    names[g - 1] = name_operator(store, g, symm_symb[g - 1]);
    const Operator_Names& nm = names[g - 1];
    if (long_output) {
      put(unit, "a,a10,a,a25,3a", " -> ", store.names[g - 1], ":  ", symm_symb[g - 1], ": ",
          nm.symcod + "  Int. symbol: ", trim(nm.itsym));
      put(unit, "a,f8.4", "    Phase factor for correcting input data:", store.ph[g - 1]);
    }
    correct_operator(unit, store, g, long_output, labels, memo);
  }
}

void write_table_preamble(std::string& unit, bool long_output) {
  const std::string equals =
      "    =============================================================================";
  put(unit, "/,/,a", equals);
  put(unit, "a",
      "    Writing of Irreps matrices in symbolic form:  Module:Phase (fractions of 2pi)");
  put(unit, "a",
      "    Numeric values of symbols a,b,c,d, ... are given at the end of the table     ");
  put(unit, "a", equals);
  put(unit, "a", "   ");
  put(unit, "a",
      "   In this section the translations associated to Seitz symbols are simplified as");
  std::vector<std::string> fractions, letters;
  for (std::size_t i = 0; i < frs.size(); ++i) {
    fractions.emplace_back(frs[i]);
    letters.emplace_back(1, trs[i]);
  }
  put(unit, "6x,11(a3,2x)", fractions);
  put(unit, "6x,11(a3,2x)", letters);
  put(unit, "a", "   ");
  put(unit, "a",
      "   The rotational part of Seitz symbols contains information about the orientation as ");
  put(unit, "a",
      "   defined in Kovalev. The international symbols may be truncated (for format reasons) "
      "in");
  put(unit, "a",
      "   the table below. The complete international symbols can be found in the previous "
      "list.");
  if (!long_output) {
    put(unit, "a",
        "   Symmetry elements are reduced to the standard form (positive translations < 1) ");
    put(unit, "a,/",
        "   The matrices of IRreps have been multiplied by the appropriate phase factor");
  }
}

void write_table_head(std::string& unit, const std::vector<Operator_Names>& names) {
  const int ngk = static_cast<int>(names.size());
  const std::vector<std::string> dashes(static_cast<std::size_t>(ngk) + 1, std::string(25, '-'));
  put(unit, "200a", dashes);
  put(unit, "a", "  Ireps                 Symmetry operators ->");
  std::vector<std::string> itsyms, seitzs;
  for (const Operator_Names& nm : names) {
    itsyms.push_back(nm.itsym);
    seitzs.push_back(nm.seitz);
  }
  put(unit, "a,48a26", "    v                  ", itsyms);
  put(unit, "a,48a26", "    v     ", seitzs);
  Items symm;
  add_item(symm, "    v      ");
  for (int g = 1; g <= ngk; ++g) {
    add_item(symm, "           Symm(");
    add_item(symm, g);
    add_item(symm, ")       ");
  }
  unit += format_layout("a,48(a,i2,a)", symm);
  put(unit, "200a", dashes);
}

// Places text at the 1-based column col of row, widening the row as needed.
void place(std::string& row, std::size_t col, const std::string& text) {
  if (row.size() < col - 1 + text.size()) row.resize(col - 1 + text.size(), ' ');
  row.replace(col - 1, text.size(), text);
}

void write_table_irrep(std::string& unit, const lorsk_proc& store, int nu,
                       const Phase_Labels& labels) {
  put(unit, "/");
  const int d = dim_of(store, nu);
  const int e = 23 / d;
  std::vector<std::string> repstr(static_cast<std::size_t>(d));
  for (int a = 1; a <= d; ++a) {
    std::string& row = repstr[a - 1];
    for (int g = 1; g <= store.ngk; ++g) {
      for (int b = 1; b <= d; ++b) {
        const Element el = element_of(store, a, b, nu, g);
        const std::size_t col =
            1 + static_cast<std::size_t>((g - 1) * (d * (e + 1) + 2) + (b - 1) * (e + 1));
        place(row, col, symbolic_element(el.m, el.theta, el.re, el.im, d, labels));
      }
    }
  }
  if (store.iso_read)
    put(unit, "i2,a,a", nu, " " + fixed(store.iso_names[nu - 1], 10), trim(repstr[0]));
  else
    put(unit, "a,i2,a,a", "   IRrep(", nu, "):", trim(repstr[0]));
  for (int a = 2; a <= d; ++a) put(unit, "a", std::string(13, ' ') + trim(repstr[a - 1]));
}

void write_constants(std::string& unit, const Vec3& vk, const Phase_Labels& labels) {
  const std::string dashes = " --------------------------------------------------------------";
  put(unit, "a", " ");
  put(unit, "a", " ");
  put(unit, "a", dashes);
  put(unit, "a", " List of constants and phase factors defined in the above table");
  put(unit, "a", dashes);
  put(unit, "a", " ");
  put(unit, "a,3(f8.5,a)", " The propagation vector is k=(", vk[0], ",", vk[1], ",", vk[2], ")");
  for (std::size_t n = 0; n < labels.phn.size(); ++n) {
    const float phn = labels.phn[n];
    std::string fracc = get_fraction_2dig(phn);
    if (!fracc.empty() && fracc[0] == '+') fracc[0] = ' ';
    fracc = adjustl(fracc);
    put(unit, "a,f8.5,a,2(f8.5,a),a", "  Phase factor: " + labels.cph[n] + " = exp{2.pi.i.", phn,
        "} = (", std::cos(two_pi * phn), ",", std::sin(two_pi * phn),
        ")     Exponent(fraction 2pi) = ", trim(fracc));
  }
}

void write_symbolic_table(std::string& unit, const lorsk_proc& store, const Vec3& vk,
                          bool long_output, const std::vector<Operator_Names>& names,
                          const Phase_Labels& labels) {
  const bool too_large = std::any_of(store.idim.begin(), store.idim.end(),
                                     [](int d) { return d >= min_dim_no_symbolic; });
  if (too_large) {
    put(unit, "a",
        "    Writing of Irreps matrices in symbolic form skiped: Dimensions equal or higher "
        "than 6");
    return;
  }
  if (labels.overflow) {
    put(unit, "a",
        "    Writing of Irreps matrices in symbolic form skipped: more than " +
            std::to_string(max_phase_labels) + " distinct phase factors");
    return;
  }
  write_table_preamble(unit, long_output);
  write_table_head(unit, names);
  for (int nu = 1; nu <= store.nreps; ++nu) {
    if (dim_of(store, nu) >= 1) write_table_irrep(unit, store, nu, labels);
  }
  write_constants(unit, vk, labels);
}

// Determinants of the rotations, and the characters of the corrected matrices as real and
// imaginary parts.
void finish_store(lorsk_proc& store, std::vector<int>& idet) {
  for (int g = 1; g <= store.ngk; ++g) idet[g - 1] = determ_a_i(store.ir[g - 1]);
  for (int g = 1; g <= store.ngk; ++g) {
    for (int nu = 1; nu <= store.nreps; ++nu) {
      float cr = 0.0f, ci = 0.0f;
      for (int a = 1; a <= dim_of(store, nu); ++a) {
        const Element el = element_of(store, a, a, nu, g);
        cr += el.re;
        ci += el.im;
      }
      store.chr(nu, g) = cr;
      store.chi(nu, g) = ci;
    }
  }
}

}  // namespace

void register_phase(Phase_Labels& labels, float theta) {
  if (find_phase(labels, theta) != 0) return;
  const int nph = static_cast<int>(labels.phn.size()) + 1;
  if (nph > max_phase_labels) {
    labels.overflow = true;
    return;
  }
  std::string label = std::string(" ") + phase_letters[static_cast<std::size_t>(nph - 1)];
  if (std::fabs(theta - 0.25f) <= phase_tol) label = " i";
  if (std::fabs(theta - 0.75f) <= phase_tol) label = "-i";
  for (int n = 1; n < nph; ++n) {
    if (std::fabs(std::fabs(labels.phn[n - 1] - theta) - 0.5f) <= phase_tol) {
      const std::string& other = labels.cph[n - 1];
      label = std::string(1, other[0] == ' ' ? '-' : ' ') + other[1];
      break;
    }
  }
  labels.phn.push_back(theta);
  labels.cph.push_back(label);
}

int find_phase(const Phase_Labels& labels, float theta) {
  for (std::size_t n = 0; n < labels.phn.size(); ++n)
    if (std::fabs(labels.phn[n] - theta) <= phase_tol) return static_cast<int>(n) + 1;
  return 0;
}

std::string element_text(float re, float im) {
  const bool re_whole = zbelongn(re);
  const bool re_small = negligibler(re);
  std::string s;
  bool lead = false;
  if (negligibler(im)) {
    s = re_whole ? no_blanks(sput("a,i4", "    ", nint(re))) : no_blanks(sput("f8.4", re));
    lead = re >= 0.0f;
  } else if (im <= 0.0f) {
    if (!re_whole) {
      s = no_blanks(sput("f8.4,a", re, " ")) + no_blanks(sput("f8.4,a", im, "i"));
    } else {
      if (!re_small) s = no_blanks(sput("i4", nint(re)));
      s += nint(im) == -1 ? "-i" : no_blanks(sput("i4,a", nint(im), "i"));
    }
    lead = re > 0.0f;
  } else {
    if (!re_whole) {
      s = no_blanks(sput("f8.4,a", re, "+")) + no_blanks(sput("f8.4,a", im, "i"));
      lead = re >= 0.0f;
    } else {
      if (!re_small) s = no_blanks(sput("i4,a", nint(re), "+"));
      s += nint(im) == 1 ? "i" : no_blanks(sput("i4,a", nint(im), "i"));
      lead = re >= 0.0f || re_small;
    }
  }
  return lead ? " " + s : s;
}

std::string symbolic_element(float m, float theta, float re, float im, int d,
                             const Phase_Labels& labels) {
  const int e = 23 / d;
  const int field = e + 1;
  const int w = e / 2 + 1;
  if (!negligibler(im)) {
    const int n = find_phase(labels, theta);
    const std::string label = n > 0 ? labels.cph[static_cast<std::size_t>(n - 1)] : " ?";
    if (zbelongn(m)) return sput("a" + std::to_string(w), label);
    // Modulus, ":" and label take 7 columns; narrower fields get one decimal in fewer columns.
    const int mw = std::min(4, field - 3);
    return sput("f" + std::to_string(mw) + ".1,a,a", m, ":", label);
  }
  if (zbelongn(re)) return sput("i" + std::to_string(w), nint(re));
  // A real value takes 6 columns with three decimals; a field of 5 takes two.
  const int rw = std::min(6, field);
  return sput("f" + std::to_string(rw) + "." + std::to_string(rw - 3), re);
}

void write_irreps(std::string& unit, lorsk_proc& store, const Vec3& vk, bool long_output,
                  std::vector<std::string>& symm_symb, std::vector<int>& idet) {
  const int ngk = std::max(0, store.ngk);
  symm_symb.assign(static_cast<std::size_t>(ngk), std::string(symb_width, ' '));
  idet.assign(static_cast<std::size_t>(ngk), 0);
  write_counts(unit, store);
  if (long_output) {
    put(unit, "/,a", " => Symmetry elements of G_k and irreps:");
    put(unit, "a",
        "    Symmetry elements reduced to the standard form (positive translations < 1) ");
    put(unit, "a,/",
        "    The matrices of IRreps have been multiplied by the appropriate phase factor");
  }
  std::vector<Operator_Names> names(static_cast<std::size_t>(ngk));
  Phase_Labels labels;
  Element_Memo memo;
  correct_operators(unit, store, vk, long_output, symm_symb, names, labels, memo);
  write_symbolic_table(unit, store, vk, long_output, names, labels);
  finish_store(store, idet);
}

}  // namespace velmoria

// Preparation of the groups for Zak's induction.
#include "lorsk/group_preparation.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "kvector/group_k.hpp"
#include "support/layout.hpp"
#include "support/text.hpp"
#include "symmetry/listing.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "symmetry/symmetry_symbols.hpp"

namespace velmoria {

namespace {

std::string operator_text(const Exact_Op& op) {
  return get_symsymbi(op.rot, to_real(op.tr));
}

}  // namespace

bool closure(Op_Table& table, const Exact_Op& g, int& next, int start) {
  const int last_slot = op_slots - 1;
  if (start < 2 || next < start || next > op_slots - 1) return false;
  // A generator whose rotation the group already holds adds nothing.
  for (int q = 1; q < next; ++q) {
    if (table[q].rot == g.rot) return true;
  }
  if (next > max_group_ops) return false;
  const int first = next;
  table[first] = g;
  int n = first;
  while (true) {
    const int slot = (n - 1) % max_group_ops + 1;
    // Past 48 operators the product wraps to slot 1: it is kept aside, so the identity stays.
    const Exact_Op current = slot == first ? g : g * table[n - start + 1];
    if (slot == n) table[slot] = current;
    for (int q = 1; q <= n - 1 && q <= max_group_ops; ++q) {
      if (table[q].rot == current.rot) {
        next = n;
        return true;
      }
    }
    if (slot != n) return false;  // a 49th rotation: no crystallographic group
    n += 1;
    if (n + start - 3 > last_slot) return false;
    for (int q = 1; q <= start - 2; ++q) table[n + q - 1] = current * table[q + 1];
    n += start - 2;
    next = n;
  }
}

bool gener(const Op_Table& tmp, int m, Op_Table& sub, int& next, int start) {
  return closure(sub, tmp[m], next, start);
}

int get_generatorsk(std::string& unit, std::string_view group_text, bool gen_flag,
                    const std::string* symbol, Space_Group_Type& spg,
                    std::array<Exact_Op, max_space_generators>& GENERA, int& ngenera, int& NUM) {
  ngenera = 0;
  NUM = 0;
  if (gen_flag) {
    // Each generator is held in 30 characters.
    std::vector<std::string> GEN = split_generators(group_text);
    for (std::string& g : GEN) g = fixed(g, 30);
    if (static_cast<int>(GEN.size()) > max_generator_pieces) return status_not_determined;
    set_spacegroup(group_text, spg, &GEN, static_cast<int>(GEN.size()), "gen");
  } else if (symbol != nullptr) {
    set_spacegroup(*symbol, spg, nullptr, std::nullopt, "ITC");
  } else {
    set_spacegroup(group_text, spg, nullptr, std::nullopt, std::nullopt, true);
  }
  if (err_symm) return status_setup_failed;
  write_spacegroup(spg, unit, true);
  NUM = spg.num_spg;

  const int nsym = static_cast<int>(spg.symop.size());
  const int extra = spg.centred != 1 ? 1 : 0;
  // The generators are the operators behind the identity; a count that reaches past the list
  // (the identity itself counted, as for P 1) is cut to the list.
  const int num_gen = std::min(spg.num_gen, nsym - 1);
  if (spg.num_ops < 1 || num_gen < 0 || num_gen + extra > max_space_generators ||
      (extra == 1 && spg.num_ops >= nsym) || static_cast<int>(spg.symop_symb.size()) < nsym) {
    return status_not_determined;
  }
  for (int i = 1; i <= num_gen; ++i) GENERA[i - 1] = to_exact(spg.symop[i]);
  ngenera = num_gen;
  // The centre of symmetry is the last generator: -1 at the origin, or -1 with the
  // translation of the operator that puts the centre off the origin.
  if (spg.centred == 2) {
    GENERA[ngenera++] = {inversion_matrix, {}};
  } else if (spg.centred == 0) {
    GENERA[ngenera++] = {inversion_matrix, to_exact(spg.symop[spg.num_ops]).tr};
  }

  put(unit, "/,a,i3,/", " => Number of generators of space group: ", ngenera);
  for (int i = 1; i <= num_gen; ++i) {
    put(unit, "a,i1,a,a", " GEN(", i, "): ", fixed(spg.symop_symb[i], 50));
  }
  if (spg.centred != 1) {
    put(unit, "a,i1,a,a", " GEN(", ngenera, "): ", fixed(spg.symop_symb[spg.num_ops], 50));
  }
  return status_done;
}

namespace {

// When the first operators of the list do not generate the group by cosets (as with some
// lists of generators given by the user), the group is ordered as the little group at k = 0
// is: generators in the order of preference of little_group, each normalising the group
// before it, taken from the complete list of operators without centring.
bool chain_from_operators(Lorsk_Work& w, const Space_Group_Type& spg, int expected) {
  Lorsk_Work all;
  all.order = expected;
  all.BL = "  ";
  for (int i = 1; i <= expected; ++i) all.SUP[i] = to_exact(spg.symop[i - 1]);
  if (all.SUP[1].rot != identity_matrix) return false;
  all.SUB[1] = Exact_Op{};
  std::string scratch;
  if (!little_group(scratch, all, "  ") || all.N != expected) return false;
  w.SUP = all.SUB;
  w.order = expected;
  w.IGP.fill(0);
  for (int i = 1; i <= all.ONGB; ++i) w.IGP[i] = all.IGB[i + 1];
  return true;
}

}  // namespace

int space_group(std::string& unit, Lorsk_Work& w, Space_Group_Type& spg,
                std::string_view group_text, int newk, bool gen_flag, const std::string* symbol) {
  std::array<Exact_Op, max_space_generators> GENERA{};
  int ngenera = 0;
  int NUM = 0;
  const int status = get_generatorsk(unit, group_text, gen_flag, symbol, spg, GENERA, ngenera, NUM);
  if (status != status_done) return status;
  w.ngen_sup = ngenera;
  w.BL = fixed(spg.spg_latsy, 2);

  // The generators wait at the top of the table while the group grows from slot 1.
  for (int i = 1; i <= ngenera; ++i) w.SUP[op_slots - 1 - i] = GENERA[i - 1];
  w.SUP[1] = Exact_Op{};
  w.IGP.fill(0);
  int next = 2;
  bool closed = true;
  for (int i = 1; i <= ngenera && closed; ++i) {
    w.IGP[i] = next;
    closed = closure(w.SUP, GENERA[i - 1], next, w.IGP[i]);
  }
  w.order = ngenera > 0 ? next - 1 : 1;
  // Every operator of the group without its centring vectors must have been reached.
  const int expected = spg.num_ops * (spg.centred != 1 ? 2 : 1);
  if (expected > max_group_ops || expected > static_cast<int>(spg.symop.size())) {
    return status_not_determined;
  }
  if (!closed || w.order != expected) {
    if (!chain_from_operators(w, spg, expected)) return status_not_determined;
  }
  w.nsup = w.order;

  if (newk != 1) {
    put(unit, "/,a,a,/",
        "  TRANSLATIONAL COSET REPRESENTATIVES OF SPACE GROUP: ", std::string(group_text));
    put(unit, "a", "  Num          Symmetry-Element                  Eqv. Positions ");
    put(unit, "a", " -------------------------------------------------------------- ");
    for (int i = 1; i <= w.order; ++i) {
      const std::string SYMCOD = operator_text(w.SUP[i]);
      const std::string symbol_i = i <= static_cast<int>(spg.symop_symb.size())
                                       ? symmetry_symbol_xyz(spg.symop_symb[i - 1])
                                       : std::string();
      put(unit, "a,i3,a,a40,a", " (", i, ")   ", fixed(symbol_i, 40), trim(SYMCOD));
    }
    put(unit, "a", "");
  }
  return status_done;
}

namespace {

// The letter of the centred lattice whose reciprocal lattice decides the group of k: the
// second letter of BL; R only for the rhombohedral lattice on hexagonal axes, "HR".
char reciprocal_test_letter(const std::string& BL) {
  if (BL == "HR") return 'R';
  const char letter = BL.size() >= 2 ? BL[1] : ' ';
  return std::string_view("ABCFI").find(letter) == std::string_view::npos ? 'P' : letter;
}

// Class flags of an entry of the group of k.
struct Class_Flags {
  std::array<bool, 6> sfl{};  // sfl[i], i = 1 .. 5
};

}  // namespace

bool little_group(std::string& unit, Lorsk_Work& w, std::string_view label) {
  Op_Table TMP{};
  std::array<Class_Flags, max_group_ops + 1> SFL{};
  w.IGB.fill(0);
  w.IGB[1] = 1;
  SFL[1].sfl[1] = true;
  SFL[1].sfl[5] = true;
  put(unit, "2a,/", " THE GENERATORS OF THE LITTLE GROUP OF BRILLOUIN ZONE POINT ",
      fixed(label, 2));

  int n = 1;
  int inversion = 0;
  const int order = std::min(w.order, max_group_ops);
  for (int m = 2; m <= order; ++m) {
    const Exact_Op& op = w.SUP[m];
    std::array<int, 3> ND{};
    bool integral = true;
    for (int c = 0; c < 3; ++c) {
      float D = 0.0f;
      for (int r = 0; r < 3; ++r) D += w.k[r] * static_cast<float>(op.rot[r][c]);
      D -= w.k[c];
      ND[c] = static_cast<int>(std::lround(D));
      if (std::fabs(D - static_cast<float>(ND[c])) >= 0.0001f) integral = false;
    }
    if (!integral || !reciprocal_lattice_vector(ND, reciprocal_test_letter(w.BL))) continue;
    n += 1;
    TMP[n] = op;
    const Mat3i& rot = op.rot;
    const int trace = trace_i(rot);
    const int det = determ_a_i(rot);
    const bool diagonal = rot[0][1] == 0 && rot[0][2] == 0 && rot[1][0] == 0 && rot[1][2] == 0 &&
                          rot[2][0] == 0 && rot[2][1] == 0;
    SFL[n].sfl[1] = diagonal;
    SFL[n].sfl[2] = trace == 0;
    SFL[n].sfl[3] = trace == -1 && det == 1;
    SFL[n].sfl[4] = true;
    SFL[n].sfl[5] = det >= 1;
    if (trace == -3 && det == -1) inversion = n;
  }
  w.N = n;

  int start = 2;
  int next = 2;
  int NG = 0;
  // Entries whose rotation now lies in SUB are covered.
  auto cover = [&](int from, int to) {
    for (int q = std::max(from, 1); q <= to; ++q) {
      for (int m = 2; m <= n; ++m) {
        if (TMP[m].rot == w.SUB[q].rot) SFL[m].sfl[4] = false;
      }
    }
  };
  for (int i = 1; i <= 4; ++i) {
    for (int m = 2; m <= n; ++m) {
      if (!(SFL[m].sfl[i] && SFL[m].sfl[4] && SFL[m].sfl[5])) continue;
      if (NG + 2 > max_chain || !gener(TMP, m, w.SUB, next, start)) return false;
      cover(start - 1, next - 1);
      NG += 1;
      w.IGB[NG + 1] = start;
      start = next;
    }
  }
  if (next - 1 == n) {
    w.ONGB = NG;
  } else {
    int m_improper = inversion;
    for (int i = 1; i <= 4 && m_improper == 0; ++i) {
      for (int m = 2; m <= n; ++m) {
        if (SFL[m].sfl[i] && SFL[m].sfl[4]) {
          m_improper = m;
          break;
        }
      }
    }
    if (m_improper == 0 || NG + 2 > max_chain) return false;
    if (!gener(TMP, m_improper, w.SUB, next, start)) return false;
    NG += 1;
    w.IGB[NG + 1] = start;
    w.ONGB = NG;
  }
  if (NG == 0) {
    w.IGB[2] = 1;
    NG = 1;
    w.ONGB = 0;
  }
  w.NG = NG;

  if (NG >= 2) {
    put(unit, "2a,i1,a,/", " The little group can ", "be generated from the following ", NG,
        " elements:-");
  } else {
    put(unit, "2a,/", " The little group can be ", "generated from the following elements: ");
  }
  for (int i = 1; i <= NG; ++i) {
    put(unit, "a,i1,a,a", "  => GENk(", i, "): ", trim(operator_text(w.SUB[w.IGB[i + 1]])));
  }
  return next - 1 == n;
}

}  // namespace velmoria

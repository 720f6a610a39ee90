// Closure of a space group from its generators in integer twelfths of a cell edge, the
// analysis of a complete list of operators, and the lattice tables of a lattice letter.
#include "symmetry/closure.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "support/layout.hpp"
#include "support/text.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/group_class.hpp"
#include "symmetry/records.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {

namespace {

constexpr float centring_tolerance = 0.0006f;
constexpr float centring_upper = 0.9994f;
constexpr int max_centring_vectors = max_lattice_points - 1;  // the origin takes column 1

// Fractions of a cell edge in the exact unit of translations.
constexpr int half = op_den / 2;
constexpr int third = op_den / 3;
constexpr int two_thirds = 2 * op_den / 3;

// Standard centring vectors: A, B, C, I and the two of R.
constexpr std::array<Vec3i, 6> lattice_vectors = {Vec3i{0, half, half},
                                                  Vec3i{half, 0, half},
                                                  Vec3i{half, half, 0},
                                                  Vec3i{half, half, half},
                                                  Vec3i{two_thirds, third, third},
                                                  Vec3i{third, two_thirds, two_thirds}};

constexpr Mat3i zero_matrix{};

// Every component of t - u (sign -1) or t + u (sign +1) a whole number of cells.
bool multiple_of_cell(const Vec3i& t, const Vec3i& u, int sign) {
  for (int k = 0; k < 3; ++k) {
    const std::int64_t s = static_cast<std::int64_t>(t[k]) + sign * static_cast<std::int64_t>(u[k]);
    if (s % op_den != 0) return false;
  }
  return true;
}

Vec3 sum_in_cell(const Vec3i& t, const Vec3i& u) {
  return to_real(reduced(Vec3i{t[0] + u[0], t[1] + u[1], t[2] + u[2]}));
}

// Reduction of the components i and j modulo 1/2 when both are at least 1/2; true when it
// applied.
bool reduce_pair(Vec3i& t, int i, int j) {
  if (t[i] < half || t[j] < half) return false;
  t[i] %= half;
  t[j] %= half;
  return true;
}

void reduce_r(Vec3i& t) {
  if (t[0] < two_thirds && t[0] >= third && t[1] >= two_thirds && t[2] >= two_thirds) {
    t[0] %= third;
    t[1] %= two_thirds;
    t[2] %= two_thirds;
  } else if (t[0] >= two_thirds && t[1] >= third && t[2] >= third) {
    t[0] %= two_thirds;
    t[1] %= third;
    t[2] %= third;
  }
}

void reduce_f(Vec3i& t) {
  if (t[1] < half && t[0] >= half && t[2] >= half) {
    t[0] %= half;
    t[2] %= half;
  } else if (t[1] >= half && t[2] < half && t[0] >= half) {
    t[0] %= half;
    t[1] %= half;
  } else if (t[1] >= half && t[2] >= half) {
    t[1] %= half;
    t[2] %= half;
  }
}

// A column of lat_trans serves only when it is positive (a vector of at least 1/24 somewhere).
bool reaches(const Vec3i& t, const Vec3i& c) {
  return c[0] > 0 && t[0] >= c[0] && t[1] >= c[1] && t[2] >= c[2];
}

void reduce_by(Vec3i& t, const Vec3i& c) {
  for (int k = 0; k < 3; ++k) t[k] %= c[k];
}

// Plain reduction of a translation by the lattice.
void reduce_plain(Vec3i& t, const Closure_Lattice& lat) {
  switch (lat.ibravl) {
    case 2:
      reduce_pair(t, 1, 2);
      break;
    case 3:
      reduce_pair(t, 0, 2);
      break;
    case 4:
      reduce_pair(t, 0, 1);
      break;
    case 5:
      if (t[0] >= half && t[1] >= half && t[2] >= half) {
        for (int& x : t) x %= half;
      }
      break;
    case 6:
      reduce_r(t);
      break;
    case 7:
      reduce_f(t);
      break;
    case 8: {
      const Vec3i before = t;
      for (const auto& c : lat.lat_trans) {
        if (reaches(before, c)) reduce_by(t, c);
      }
      break;
    }
    default:
      break;
  }
}

// Skipping reduction of the translation of a power: true when the power is to be skipped.
bool reduce_skipping(Vec3i& t, const Closure_Lattice& lat) {
  switch (lat.ibravl) {
    case 2:
      return reduce_pair(t, 1, 2) && t[1] == 0 && t[2] == 0;
    case 3:
      return reduce_pair(t, 0, 2) && t[0] == 0 && t[2] == 0;
    case 4:
      return reduce_pair(t, 0, 1) && t[0] == 0 && t[1] == 0;
    case 5:
      if (t[0] >= half && t[1] >= half && t[2] >= half) {
        for (int& x : t) x %= half;
        return is_zero(t);
      }
      return false;
    case 6:
      reduce_r(t);
      return is_zero(t);
    case 7:
      reduce_f(t);
      return is_zero(t);
    case 8:
      for (const auto& c : lat.lat_trans) {
        if (reaches(t, c)) reduce_by(t, c);
      }
      return is_zero(t);
    default:
      return false;
  }
}

bool pair_is(const Vec3i& u, int i, int j, int v) {
  return u[i] == v && u[j] == v;
}

// Whether a translation counts as a lattice translation in the products.
bool lattice_test(const Vec3i& u, const Closure_Lattice& lat) {
  switch (lat.ibravl) {
    case 2:
      return pair_is(u, 1, 2, half) || pair_is(u, 1, 2, 0);
    case 3:
      return pair_is(u, 0, 2, half) || pair_is(u, 0, 2, 0);
    case 4:
      return pair_is(u, 0, 1, half) || pair_is(u, 0, 1, 0);
    case 5:
      return u == lattice_vectors[3] || is_zero(u);
    case 6:
      return u == lattice_vectors[4] || u == lattice_vectors[5] || is_zero(u);
    case 7: {
      const auto halves = std::count(u.begin(), u.end(), half);
      const auto zeros = std::count(u.begin(), u.end(), 0);
      return halves >= 2 || zeros >= 2;
    }
    case 8:
      if (is_zero(u)) return true;
      return std::any_of(lat.lat_trans.begin(), lat.lat_trans.end(),
                         [&u](const Vec3i& c) { return u == c; });
    default:
      return false;
  }
}

// Whether the product m duplicates an entry of the table, exactly or up to a lattice vector.
bool already_held(const Exact_Op& m, const std::vector<Exact_Op>& tabla,
                  const Closure_Lattice& lat) {
  const Vec3i& t = m.tr;
  for (const Exact_Op& e : tabla) {
    if (e == m) return true;
    if (m.rot != e.rot) continue;
    const Vec3i& u = e.tr;
    Vec3i s{};
    Vec3i d{};
    for (int k = 0; k < 3; ++k) {
      s[k] = mod_cell(t[k] + u[k]);
      d[k] = mod_cell(t[k] - u[k]);
    }
    if (lattice_test(s, lat) || lattice_test(d, lat)) return true;
  }
  return false;
}

void table_full_powers() {
  set_err_symm(" Dimension of Table exceeded (I)");
}

// Powers of each generator, in order, skipping those the table holds or the lattice removes.
bool add_powers(std::vector<Exact_Op>& tabla, const Closure_Lattice& lat) {
  const std::size_t nop = tabla.size();
  for (std::size_t i = 1; i < nop; ++i) {
    const int r = axes_rotation(tabla[i].rot);
    const int order = r == -3 ? 6 : (r == -1 ? 2 : std::abs(r));
    Exact_Op m2;
    for (int rep = 1; rep < order; ++rep) {
      m2 = reduced(m2 * tabla[i]);
      if (std::find(tabla.begin(), tabla.end(), m2) != tabla.end()) continue;
      if (reduce_skipping(m2.tr, lat)) continue;
      if (static_cast<int>(tabla.size()) >= max_closure_ops) {
        table_full_powers();
        return false;
      }
      tabla.push_back(m2);
    }
  }
  return true;
}

// The centrings that the pure translations of a list show, as their letters: A, B, C, I, R,
// and Z for a translation of no standard centring.
bool holds(std::string_view found, char letter) {
  return found.find(letter) != std::string_view::npos;
}

void add_centring(const Vec3i& t, std::string& found) {
  constexpr std::string_view letters = "ABCIRR";  // those of lattice_vectors
  const auto hit = std::find(lattice_vectors.begin(), lattice_vectors.end(), t);
  const char letter = hit == lattice_vectors.end()
                          ? 'Z'
                          : letters[static_cast<std::size_t>(hit - lattice_vectors.begin())];
  if (!holds(found, letter)) found += letter;
}

// Two of the face centrings A, B, C make F, which takes their place and that of I.
void faces_to_f(std::string& found) {
  auto face = [](char l) { return l == 'A' || l == 'B' || l == 'C'; };
  if (std::count_if(found.begin(), found.end(), face) < 2) return;
  std::erase_if(found, [&face](char l) { return face(l) || l == 'I'; });
  found += 'F';
}

// The lattice letter of the centrings found, later letters overriding earlier ones:
// P A B C I R F Z.
char letter_of(std::string_view found) {
  char l = 'P';
  for (const char letter : std::string_view("ABCIRFZ")) {
    if (holds(found, letter)) l = letter;
  }
  return l;
}

float abs_sum(const Vec3& v) {
  return std::fabs(v[0]) + std::fabs(v[1]) + std::fabs(v[2]);
}

float abs_diff(const Vec3& a, const Vec3& b) {
  return std::fabs(a[0] - b[0]) + std::fabs(a[1] - b[1]) + std::fabs(a[2] - b[2]);
}

// Largest rounded inverse component: how many multiples of the vector the completion tries.
int vector_range(const Vec3& v) {
  int range = 0;
  for (float x : v) {
    const int inv = std::fabs(x) > centring_tolerance ? nint(1.0f / x) : 0;
    range = std::max(range, inv);
  }
  return range;
}

bool is_held(const Vec3& v, const std::vector<Vec3>& latc) {
  return std::any_of(latc.begin(), latc.end(),
                     [&v](const Vec3& w) { return abs_diff(v, w) < centring_tolerance; });
}

void remove_duplicates(std::vector<Vec3>& latc) {
  const std::size_t l = latc.size();
  for (std::size_t i = 0; i + 1 < l; ++i) {
    if (latc[i][0] + latc[i][1] + latc[i][2] < centring_tolerance) continue;
    for (std::size_t j = i + 1; j < l; ++j) {
      if (abs_diff(latc[j], latc[i]) < centring_tolerance) latc[j] = Vec3{0, 0, 0};
    }
  }
  std::erase_if(latc, [](const Vec3& v) { return abs_sum(v) < centring_tolerance; });
}

// What one pair of entries gave to a list that is being closed.
enum class Pair_Step { nothing, added, full };

// Passes over the pairs (i, j), j >= i, of the entries a list holds at the start of the pass,
// until a pass adds nothing; false as soon as a step finds the list full.
template <class List, class Step>
bool close_over_pairs(const List& list, Step step) {
  bool added = true;
  while (added) {
    added = false;
    const std::size_t n = list.size();
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = i; j < n; ++j) {
        const Pair_Step got = step(i, j);
        if (got == Pair_Step::full) return false;
        if (got == Pair_Step::added) added = true;
      }
    }
  }
  return true;
}

// Adds the sums a v_i + b v_j reduced to the cell until nothing new comes; false when the
// vectors pass the limit of the lattice tables.
bool complete_centring(std::vector<Vec3>& latc) {
  std::vector<int> range(latc.size());
  std::transform(latc.begin(), latc.end(), range.begin(), vector_range);
  return close_over_pairs(latc, [&](std::size_t i, std::size_t j) {
    Pair_Step got = Pair_Step::nothing;
    for (int a = 0; a <= range[i]; ++a) {
      for (int b = 0; b <= range[j]; ++b) {
        Vec3 v{};
        for (int k = 0; k < 3; ++k) {
          v[k] = static_cast<float>(a) * latc[i][k] + static_cast<float>(b) * latc[j][k];
        }
        v = modulo_lat(v);
        if (abs_sum(v) < centring_tolerance) continue;
        if (std::any_of(v.begin(), v.end(), [](float x) { return x > centring_upper; })) {
          continue;
        }
        if (is_held(v, latc)) continue;
        if (static_cast<int>(latc.size()) >= max_centring_vectors) return Pair_Step::full;
        latc.push_back(v);
        range.push_back(vector_range(v));
        got = Pair_Step::added;
      }
    }
    return got;
  });
}

bool each_among(const std::vector<Vec3>& latc, std::span<const Vec3> choices) {
  return std::all_of(latc.begin(), latc.end(), [&choices](const Vec3& v) {
    return std::any_of(choices.begin(), choices.end(),
                       [&v](const Vec3& c) { return abs_diff(v, c) < centring_tolerance; });
  });
}

char name_centring(const std::vector<Vec3>& latc) {
  switch (latc.size()) {
    case 0:
      return 'P';
    case 1:
      for (const char letter : std::string_view("IABC")) {
        if (abs_diff(latc[0], ltr_of(letter)[1]) < centring_tolerance) return letter;
      }
      return 'P';
    case 2:
      return each_among(latc, ltr_of('R').subspan(1)) ? 'R' : 'P';
    case 3:
      return each_among(latc, ltr_of('F').subspan(1)) ? 'F' : 'P';
    default:
      return 'Z';
  }
}

void put_operators(const std::vector<Exact_Op>& tabla, std::vector<Mat3i>& ss,
                   std::vector<Vec3>& ts) {
  ss.resize(tabla.size());
  ts.resize(tabla.size());
  for (std::size_t n = 0; n < tabla.size(); ++n) {
    ss[n] = tabla[n].rot;
    ts[n] = to_real(tabla[n].tr);
  }
}

void set_lattice_letter_in(std::string& latsy, int ibravl) {
  if (latsy.size() < 2) latsy.resize(2, ' ');
  if (ibravl >= 1 && ibravl <= static_cast<int>(lattice_letters.size())) {
    latsy[1] = lattice_letters[static_cast<std::size_t>(ibravl) - 1];
  }
}

// Generators with the same or opposite rotation as an earlier one: duplicates go, and the
// rest turn into pure translations or into -1.
void sort_out_pairs(std::vector<Mat3i>& g, std::vector<Vec3>& tg) {
  auto special = [](const Mat3i& m) {
    return m == zero_matrix || m == identity_matrix || m == inversion_matrix;
  };
  for (std::size_t i = 0; i < g.size(); ++i) {
    if (special(g[i])) continue;
    for (std::size_t j = i + 1; j < g.size(); ++j) {
      if (special(g[j])) continue;
      const Vec3i t = twelfths_of(tg[i]);
      const Vec3i u = twelfths_of(tg[j]);
      const bool on_cell = multiple_of_cell(t, u, -1) || multiple_of_cell(t, u, 1);
      if (g[i] == g[j]) {
        g[j] = on_cell ? zero_matrix : identity_matrix;
        tg[j] = on_cell ? Vec3{0, 0, 0} : sum_in_cell(t, u);
      } else if (g[i] == negated(g[j])) {
        g[j] = inversion_matrix;
        tg[j] = on_cell ? Vec3{0, 0, 0} : sum_in_cell(t, u);
      }
    }
  }
}

// The pure translations of the generators: their flags and their vectors; they are dropped.
void take_translations(std::vector<Mat3i>& g, std::vector<Vec3>& tg, std::string& found,
                       std::vector<Vec3>& latc) {
  for (std::size_t i = 0; i < g.size(); ++i) {
    if (g[i] != identity_matrix) continue;
    const Vec3i t = twelfths_of(tg[i]);
    if (!is_zero(t)) {
      latc.push_back(tg[i]);
      add_centring(t, found);
    }
    g[i] = zero_matrix;
  }
}

// The inversions among the generators: the kind of centre; they are dropped.
void take_inversions(std::vector<Mat3i>& g, const std::vector<Vec3>& tg, int& icentre, Vec3& co) {
  for (std::size_t i = 0; i < g.size(); ++i) {
    if (g[i] != inversion_matrix) continue;
    if (is_zero(twelfths_of(tg[i]))) {
      icentre = 2;
    } else if (icentre != 2) {
      icentre = 0;
      for (int k = 0; k < 3; ++k) co[k] = tg[i][k] / 2.0f;
    }
    g[i] = zero_matrix;
  }
}

}  // namespace

std::vector<Vec3i> centring_vectors(char letter) {
  switch (letter) {
    case 'A':
      return {lattice_vectors[0]};
    case 'B':
      return {lattice_vectors[1]};
    case 'C':
      return {lattice_vectors[2]};
    case 'I':
      return {lattice_vectors[3]};
    case 'R':
      return {lattice_vectors[4], lattice_vectors[5]};
    case 'F':
      return {lattice_vectors[2], lattice_vectors[1], lattice_vectors[0]};
    default:
      return {};
  }
}

namespace {

// Centring vectors of a lattice letter in fractions of the cell edges.
std::vector<Vec3> standard_centring(char letter) {
  std::vector<Vec3> v;
  for (const Vec3i& t : centring_vectors(letter)) v.push_back(to_real(t));
  return v;
}

}  // namespace

bool close_by_products(std::vector<Exact_Op>& tabla, const Closure_Lattice& lat,
                       bool number_in_message) {
  return close_over_pairs(tabla, [&](std::size_t j, std::size_t i) {
    Exact_Op m2 = reduced(tabla[j] * tabla[i]);
    reduce_plain(m2.tr, lat);
    if (already_held(m2, tabla, lat)) return Pair_Step::nothing;
    if (static_cast<int>(tabla.size()) >= max_closure_ops) {
      const int nop = static_cast<int>(tabla.size()) + 1;
      if (number_in_message) {
        set_err_symm(sput("a,a", " Dimension of Table exceeded (II): ", nop));
      } else {
        set_err_symm(" Dimension of Table exceeded (II)");
      }
      return Pair_Step::full;
    }
    tabla.push_back(m2);
    return Pair_Step::added;
  });
}

Group_Operators get_so_from_gener(int ng, const std::vector<Mat3i>& ss,
                                  const std::vector<Vec3>& ts) {
  Group_Operators r;
  r.lat_letter = " ";
  nlat = 0;
  ltr.fill(Vec3{0, 0, 0});

  const auto given =
      static_cast<std::size_t>(std::clamp(ng, 0, static_cast<int>(std::min(ss.size(), ts.size()))));
  // Until the group is closed, ng counts the generators.
  r.ng = static_cast<int>(given);
  std::vector<Mat3i> g(ss.begin(), ss.begin() + static_cast<std::ptrdiff_t>(given));
  std::vector<Vec3> tg(ts.begin(), ts.begin() + static_cast<std::ptrdiff_t>(given));

  sort_out_pairs(g, tg);
  std::string found;
  std::vector<Vec3> latc;
  take_translations(g, tg, found, latc);

  // The lattice; R together with another centring is no conventional lattice.
  faces_to_f(found);
  if (holds(found, 'R') && found.find_first_of("ABCIF") != std::string::npos) found += 'Z';
  const char letter = letter_of(found);
  r.ibravl = ibravl_of(letter);
  Closure_Lattice lat;
  lat.ibravl = r.ibravl;
  if (letter == 'Z') {
    int l = static_cast<int>(latc.size());
    char named = 'P';
    get_centring_vectors(l, latc, named);
    if (err_symm) return r;
    r.lat_letter = std::string(1, named);
    for (const Vec3& v : latc) {
      const Vec3i t = twelfths_of(v);
      const int big = std::max({t[0], t[1], t[2]});
      lat.lat_trans.push_back({big, big, big});
    }
  } else {
    r.lat_letter = std::string(1, letter);
    latc = standard_centring(letter);
  }
  latsym(r.lat_letter, static_cast<int>(latc.size()), latc);
  if (err_symm) return r;

  take_inversions(g, tg, r.icentre, r.co);

  // Compaction: the generators that are left, in their order.
  std::vector<Exact_Op> tabla{Exact_Op{}};
  for (std::size_t i = 0; i < g.size(); ++i) {
    if (g[i] == zero_matrix) continue;
    if (static_cast<int>(tabla.size()) >= max_closure_ops) {
      table_full_powers();
      return r;
    }
    tabla.push_back(reduced(Exact_Op{g[i], twelfths_of(tg[i])}));
  }
  r.num_g = static_cast<int>(tabla.size()) - 1;

  if (!add_powers(tabla, lat)) return r;
  if (!close_by_products(tabla, lat, true)) return r;

  put_operators(tabla, r.ss, r.ts);
  const int nop = static_cast<int>(tabla.size());
  r.ng = nop;
  // With -1 in the table, its first half is taken as the reduced set.
  for (int k = 0; k < nop; ++k) {
    if (r.ss[static_cast<std::size_t>(k)] != inversion_matrix) continue;
    r.ng = nop / 2;
    if (r.icentre == 1) {
      const Vec3& t = r.ts[static_cast<std::size_t>(k)];
      if (is_zero(twelfths_of(t))) {
        r.icentre = 2;
      } else {
        r.icentre = 0;
        for (int c = 0; c < 3; ++c) r.co[c] = t[c] / 2.0f;
      }
    }
    break;
  }
  r.ss.resize(static_cast<std::size_t>(r.ng));
  r.ts.resize(static_cast<std::size_t>(r.ng));

  get_crystal_system_r_op(r.ng, r.ss, r.isystem, r.latsy);
  set_lattice_letter_in(r.latsy, r.ibravl);
  return r;
}

Group_Operators get_so_from_fix(int ng, const std::vector<Mat3i>& ss, const std::vector<Vec3>& ts,
                                std::string_view f_lat) {
  Group_Operators r;
  r.lat_letter = std::string(1, f_lat.empty() ? ' ' : f_lat[0]);
  const int n = std::clamp(ng, 0, static_cast<int>(std::min(ss.size(), ts.size())));
  r.ng = n;
  r.ss.assign(ss.begin(), ss.begin() + n);
  r.ts.assign(ts.begin(), ts.begin() + n);

  std::vector<Vec3> latc;
  if (r.lat_letter != " ") {
    for (int i = 1; i < n; ++i) {
      if (r.ss[static_cast<std::size_t>(i)] == identity_matrix) {
        latc.push_back(r.ts[static_cast<std::size_t>(i)]);
      }
    }
    r.lat_letter.assign(1, latc.empty() ? 'P' : 'Z');
  } else {
    std::string found;
    for (int i = 0; i < n; ++i) {
      const auto k = static_cast<std::size_t>(i);
      if (r.ss[k] != identity_matrix) continue;
      const Vec3i t = twelfths_of(r.ts[k]);
      if (is_zero(t)) continue;
      latc.push_back(r.ts[k]);
      add_centring(t, found);
    }
    faces_to_f(found);
    r.lat_letter = std::string(1, letter_of(found));
  }
  r.ibravl = ibravl_of(r.lat_letter[0]);
  if (static_cast<int>(latc.size()) > max_centring_vectors) {
    set_err_symm(" Too many centring vectors");
    return r;
  }
  latsym(r.lat_letter, static_cast<int>(latc.size()), latc);
  if (err_symm) return r;

  for (int i = 0; i < n; ++i) {
    const auto k = static_cast<std::size_t>(i);
    if (r.ss[k] != inversion_matrix) continue;
    if (is_zero(twelfths_of(r.ts[k]))) {
      r.icentre = 2;
    } else {
      r.icentre = 0;
      for (int c = 0; c < 3; ++c) r.co[c] = r.ts[k][c] / 2.0f;
    }
  }
  get_crystal_system_r_op(n, r.ss, r.isystem, r.latsy);
  set_lattice_letter_in(r.latsy, r.ibravl);
  return r;
}

void get_centring_vectors(int& l, std::vector<Vec3>& latc, char& lat_ch) {
  lat_ch = 'P';
  const int given = std::clamp(l, 0, static_cast<int>(latc.size()));
  latc.resize(static_cast<std::size_t>(given));
  l = given;
  if (l == 0) return;
  remove_duplicates(latc);
  l = static_cast<int>(latc.size());
  if (l > max_centring_vectors || !complete_centring(latc)) {
    l = static_cast<int>(latc.size());
    set_err_symm(" Too many centring vectors");
    return;
  }
  l = static_cast<int>(latc.size());
  lat_ch = name_centring(latc);
}

namespace {

char first_lattice_letter(std::string_view symb) {
  for (char c : symb) {
    if (c != ' ' && c != '-') return c;
  }
  return ' ';
}

// Sets the tables for a letter; Z needs vectors (null when they were not given).
void set_lattice(std::string_view symb, int n_vec, const std::vector<Vec3>* vectors) {
  const Symm_Scope symm_scope;
  const char letter = first_lattice_letter(symb);
  const char up = u_case(std::string_view(&letter, 1))[0];
  ltr[0] = Vec3{0, 0, 0};
  nlat = 1;
  lat_ch = letter;
  if (up == 'X' || up == 'Z') {
    if (vectors == nullptr || n_vec < 0 || n_vec > static_cast<int>(vectors->size())) {
      set_err_symm("Unconventional Lattice Symbol Z needs centring vectors");
      return;
    }
    if (n_vec + 1 > max_lattice_points) {
      set_err_symm(" Too many centring vectors");
      return;
    }
    lat_ch = 'Z';
    inlat = 8;
    for (int k = 0; k < n_vec; ++k)
      ltr[static_cast<std::size_t>(k) + 1] = (*vectors)[static_cast<std::size_t>(k)];
    nlat = n_vec + 1;
    return;
  }
  const int k = ibravl_of(up);
  if (k == 0) {
    set_err_symm(std::string("Wrong Lattice Symbol ") + letter);
    return;
  }
  lat_ch = up;
  inlat = k;
  const std::vector<Vec3> centring = standard_centring(up);
  for (std::size_t c = 0; c < centring.size(); ++c) ltr[c + 1] = centring[c];
  nlat = static_cast<int>(centring.size()) + 1;
}

}  // namespace

void latsym(std::string_view symb) {
  set_lattice(symb, 0, nullptr);
}

void latsym(std::string_view symb, int n_vec, const std::vector<Vec3>& vectors) {
  set_lattice(symb, n_vec, &vectors);
}

}  // namespace velmoria

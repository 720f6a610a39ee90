// The Hall symbol of a group given by its operators: the rotations are recognised among the
// fixed matrices of Hall's notation, their translations (twelfths of a cell edge) written with
// the letters and screw digits, the generators chosen and ordered as in the table's symbols, and
// the group named from the table of settings: by the row of the symbol when that row holds the
// same operators, by the operators themselves otherwise.
#include "symmetry/hall_from_generators.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "support/text.hpp"
#include "symmetry/closure.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/group_class.hpp"
#include "symmetry/group_lookup.hpp"
#include "symmetry/hall_symbols.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {

namespace {

constexpr std::size_t hall_key_len = 16;
constexpr int max_order = 6;

bool is_hall_matrix(const Mat3i& m) {
  const Mat3i neg = negated(m);
  return std::any_of(hall_matrices().begin(), hall_matrices().end(),
                     [&](const Hall_Matrix& h) { return h.m == m || h.m == neg; });
}

int sum_of(const Vec3i& v) {
  return v[0] + v[1] + v[2];
}

// The translation with the smallest sum of components among tt and tt less a centring vector;
// the earlier one on a tie.
void reduce_to_lattice(Vec3i& tt, char lat) {
  std::vector<Vec3i> candidates;
  for (const Vec3i& l : centring_vectors(lat)) {
    candidates.push_back(reduced(Vec3i{tt[0] - l[0], tt[1] - l[1], tt[2] - l[2]}));
  }
  for (const Vec3i& u : candidates) {
    if (sum_of(u) < sum_of(tt)) tt = u;
  }
}

// Hall's letters for tt, appended to tras: up to three letters, each the first one that fits.
void append_letters(Vec3i tt, std::string& tras) {
  for (int pass = 0; pass < 3 && !is_zero(tt); ++pass) {
    for (const Hall_Translation& h : hall_translations) {
      const Vec3i d{tt[0] - h.t[0], tt[1] - h.t[1], tt[2] - h.t[2]};
      if (d[0] < 0 || d[1] < 0 || d[2] < 0) continue;
      tt = d;
      tras += static_cast<char>(h.letter - 'A' + 'a');
      break;
    }
  }
}

// A translation of the reduced set, rounded to twelfths and brought into the cell.
Vec3i cell_twelfths(const Vec3& t) {
  return reduced(twelfths_of(t));
}

struct Generator {
  int n = 1;         // rotation type, negative for an improper operator
  std::string axes;  // the axis character, and for ' and " the principal axis behind it
  std::string tras;  // screw digit and translation letters
  int order() const { return std::abs(n); }
  char axis() const { return axes.empty() ? ' ' : axes[0]; }
};

// The axis of a rotation of order a: among the matrices of that order, or their negatives for
// an improper operator.  Blank when none fits.
std::string axis_of(const Mat3i& m, int r) {
  const int a = std::abs(r);
  const Mat3i look = r > 0 ? m : negated(m);
  for (const Hall_Matrix& h : hall_matrices()) {
    if (h.order != a || h.m != look) continue;
    std::string ax(1, h.axis);
    if (h.axis2 != ' ') ax += h.axis2;
    return ax;
  }
  return " ";
}

// A screw part along the axis found, written as a digit: 3_1, 3_2 and 6_1, 6_2, 6_4, 6_5.
void screw_digit(Vec3i& tt, char axis, int a, std::string& tras) {
  if (axis != 'x' && axis != 'y' && axis != 'z') return;
  const int c = axis - 'x';
  for (int i = 0; i < 3; ++i) {
    if (i != c && tt[static_cast<std::size_t>(i)] != 0) return;
  }
  int& v = tt[static_cast<std::size_t>(c)];
  char digit = ' ';
  // 3_1, 3_2 step by 1/3 of the axis; 6_1, 6_2, 6_4, 6_5 by 1/6.
  if (a == 3) {
    if (v == op_den / 3) digit = '1';
    if (v == 2 * op_den / 3) digit = '2';
  } else if (a == 6) {
    if (v == op_den / 6) digit = '1';
    if (v == 2 * op_den / 6) digit = '2';
    if (v == 4 * op_den / 6) digit = '4';
    if (v == 5 * op_den / 6) digit = '5';
  }
  if (digit == ' ') return;
  tras += digit;
  v = 0;
}

// Whether an operator of order a with this axis is one of the generators of the symbol.
bool is_generator(int a, const std::string& axes, const std::array<int, max_order + 1>& norden,
                  int ng) {
  if (ng == 1) return true;
  const char ax = axes.empty() ? ' ' : axes[0];
  const char ax2 = axes.size() > 1 ? axes[1] : ' ';
  const bool primed = ax == '\'' || ax == '"';
  if (norden[6] != 0) return (a == 6 && ax == 'z') || (a == 2 && primed && ax2 == 'z');
  if (norden[4] != 0)
    return (a == 4 && ax == 'z') || (a == 3 && ax == '*') || (a == 2 && ax == 'x');
  if (norden[3] != 0) {
    return (a == 3 && (ax == 'z' || ax == '*')) || (a == 2 && (ax == 'z' || ax == 'x' || primed));
  }
  if (norden[2] != 0) return a == 2 && (ax == 'z' || ax == 'x');
  return false;
}

// Of a twofold axis ' and a twofold axis ", only one stays: " when the ' one goes with z.
void drop_one_primed(std::vector<Generator>& gens) {
  if (gens.size() < 2) return;
  int last_p = -1;
  int last_pp = -1;
  for (std::size_t i = 0; i < gens.size(); ++i) {
    if (gens[i].axis() == '\'') last_p = static_cast<int>(i);
    if (gens[i].axis() == '"') last_pp = static_cast<int>(i);
  }
  if (last_p < 0 || last_pp < 0) return;
  const std::string& ax = gens[static_cast<std::size_t>(last_p)].axes;
  const int gone = (ax.size() > 1 && ax[1] == 'z') ? last_pp : last_p;
  gens.erase(gens.begin() + gone);
}

// Moves generator `from` to place `to` (to > from), the others moving up.
void move_back(std::vector<Generator>& gens, std::size_t from, std::size_t to) {
  std::rotate(gens.begin() + static_cast<std::ptrdiff_t>(from),
              gens.begin() + static_cast<std::ptrdiff_t>(from) + 1,
              gens.begin() + static_cast<std::ptrdiff_t>(to) + 1);
}

void order_generators(std::vector<Generator>& gens) {
  auto order1or3 = [](const Generator& g) { return g.order() == 1 || g.order() == 3; };
  if (gens.size() == 3) {
    if (order1or3(gens[0])) move_back(gens, 0, 2);
    if (order1or3(gens[1])) std::swap(gens[1], gens[2]);
  } else if (gens.size() == 4) {
    for (std::size_t p = 0; p < 3; ++p) {
      if (gens[p].order() == 1) move_back(gens, p, 3);
    }
    if (gens[0].order() == 3) move_back(gens, 0, 2);
    if (gens[1].order() == 3) std::swap(gens[1], gens[2]);
  }
  if (gens.size() >= 2) {
    const Generator& a = gens[0];
    const Generator& b = gens[1];
    if (b.order() > a.order() || (b.order() == a.order() && b.axis() == 'z')) {
      std::swap(gens[0], gens[1]);
    }
  }
}

// The axis character written for generator `pos` (0-based), blank for none.
char written_axis(const std::vector<Generator>& gens, std::size_t pos) {
  const Generator& g = gens[pos];
  const char ax = g.axis();
  const int a = g.order();
  if (pos == 0) return ax == 'z' ? ' ' : ax;
  if (pos == 1) {
    if (a == 2) {
      const int first = gens[0].order();
      if (first == 2 || first == 4) return ax == 'x' ? ' ' : ax;
      if (first == 3 || first == 6) return ax == '\'' ? ' ' : ax;
      return ' ';
    }
    return a == 1 ? ' ' : ax;
  }
  if (pos == 2) {
    if (a == 3 || a == 1) return ' ';
    return ax;
  }
  return ' ';
}

std::string write_symbol(std::string hall, const std::vector<Generator>& gens) {
  hall = trim(hall);
  for (std::size_t j = 0; j < gens.size(); ++j) {
    const Generator& g = gens[j];
    hall += ' ';
    if (g.n < 0) hall += '-';
    hall += static_cast<char>('0' + g.order());
    const char ax = written_axis(gens, j);
    if (ax != ' ') hall += ax;
    hall += trim(g.tras);
  }
  if (std::count(hall.begin(), hall.end(), '-') > 1) hall.erase(hall.rfind('-'), 1);
  return hall;
}

// Rows 1-14, 15-162, 163-426, 427-494, 495-502 (1-based) hold groups of 1, 2, 4, 8, 3
// operators; a hit there stands only with that size of the reduced set.
bool row_fits(int row, int num_ops) {
  if (row <= 14) return num_ops == 1;
  if (row <= 162) return num_ops == 2;
  if (row <= 426) return num_ops == 4;
  if (row <= 494) return num_ops == 8;
  if (row <= 502) return num_ops == 3;
  return true;
}

// Row (1-based) of the table of settings with this Hall symbol, 0 when none stands.
int find_setting(const std::string& hall, int num_ops) {
  const std::string key = fixed(hall, hall_key_len);
  const auto& rows = spgr_info();
  for (int i = 0; i < num_spgr_info; ++i) {
    if (rows[static_cast<std::size_t>(i)].hall != key) continue;
    return row_fits(i + 1, num_ops) ? i + 1 : 0;
  }
  return 0;
}

// The operators of the reduced set that carry a Hall matrix, by decreasing order.  norden
// counts them by order.
std::vector<Exact_Op> ordered_rotations(const Space_Group_Type& spg,
                                        std::array<int, max_order + 1>& norden) {
  const int n = std::clamp(spg.num_ops, 0, static_cast<int>(spg.symop.size()));
  std::vector<Exact_Op> ops;
  for (int i = 0; i < n; ++i) {
    const Sym_Oper_Type& o = spg.symop[static_cast<std::size_t>(i)];
    ops.push_back({is_hall_matrix(o.rot) ? o.rot : Mat3i{}, cell_twelfths(o.tr)});
  }
  norden.fill(0);
  for (const Exact_Op& o : ops) {
    if ((o.rot == Mat3i{})) continue;
    const int a = std::abs(axes_rotation(o.rot));
    if (a >= 1 && a <= max_order) ++norden[static_cast<std::size_t>(a)];
  }
  std::size_t moved = 0;
  for (int order = max_order; order >= 1; --order) {
    if (norden[static_cast<std::size_t>(order)] == 0) continue;
    for (std::size_t i = 0; i < ops.size(); ++i) {
      if ((ops[i].rot == Mat3i{}) || std::abs(axes_rotation(ops[i].rot)) != order) continue;
      std::swap(ops[moved], ops[i]);
      ++moved;
    }
  }
  ops.resize(moved);
  norden.fill(0);
  for (const Exact_Op& o : ops) ++norden[static_cast<std::size_t>(std::abs(axes_rotation(o.rot)))];
  if (norden[6] != 0) norden[3] = 0;
  return ops;
}

}  // namespace

void get_hallsymb_from_gener(Space_Group_Type& spacegroup, std::string* hall_text) {
  const char lat = spacegroup.spg_lat;
  std::string hall = spacegroup.centred == 2 ? std::string("-") + lat : std::string(1, lat);
  std::vector<Generator> gens;

  if (spacegroup.centred == 0) {
    // The inversion's translation is twice the centre.
    const Vec3& co = spacegroup.centre_coord;
    Vec3i tt = cell_twelfths(Vec3{2.0f * co[0], 2.0f * co[1], 2.0f * co[2]});
    reduce_to_lattice(tt, lat);
    Generator g{-1, "z", ""};
    append_letters(tt, g.tras);
    gens.push_back(g);
  }

  std::array<int, max_order + 1> norden{};
  const std::vector<Exact_Op> ops = ordered_rotations(spacegroup, norden);
  const int ng = static_cast<int>(ops.size());
  if (ng == 0) gens.push_back(Generator{1, "z", ""});

  for (const Exact_Op& o : ops) {
    const int r = axes_rotation(o.rot);
    const int a = std::abs(r);
    if (norden[static_cast<std::size_t>(a)] == 0) continue;
    Generator g;
    g.n = r;
    g.axes = axis_of(o.rot, r);
    Vec3i tt = o.tr;
    reduce_to_lattice(tt, lat);
    screw_digit(tt, g.axis(), a, g.tras);
    append_letters(tt, g.tras);
    if (!is_generator(a, g.axes, norden, ng)) continue;
    if (ng == 1) g.axes.resize(1);
    if (static_cast<int>(gens.size()) == max_hall_symbol_generators) {
      set_err_symm(" Error in generators");
      return;
    }
    gens.push_back(g);
  }

  drop_one_primed(gens);
  order_generators(gens);
  hall = write_symbol(hall, gens);

  // The row of the written symbol stands only when its group is the group of the operators;
  // otherwise, and when the symbol is in no row, the operators themselves find the setting.
  const Group_Key key = group_key(spacegroup);
  int row = find_setting(hall, spacegroup.num_ops);
  if (row > 0 && setting_key(row) != key) row = 0;
  if (row == 0) row = setting_of_key(key);
  if (row > 0) {
    fill_table_fields(spacegroup, row);
    spacegroup.setting = "Tabulated Setting";
  } else {
    spacegroup.spg_symb = "Unknown";
    spacegroup.info = "Gen.";
    spacegroup.setting = "Non-standard Setting";
  }
  if (hall.empty() || hall[0] != '-') hall.insert(0, " ");
  if (hall_text != nullptr) *hall_text = hall;
}

}  // namespace velmoria

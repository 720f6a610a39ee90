// Reading of a Hall symbol: the lattice, the centre of symmetry, up to four generators as
// exact operators, the change of origin, and the closure of the group.
#include "symmetry/hall_symbols.hpp"

#include <array>
#include <cstdint>
#include <optional>

#include "support/text.hpp"
#include "symmetry/closure.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/group_class.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

namespace {

constexpr std::size_t hall_symbol_len = 16;
constexpr std::string_view rotacion = "12346";         // rotation digits, index 1 to 5
constexpr std::string_view ejes_rotacion = "XYZ'\"*";  // axis letters, index 1 to 6
constexpr std::string_view shift = "12345";            // digits of an origin shift, in twelfths
constexpr int twelfth = op_den / 12;
constexpr std::array<int, 5> rotation_order = {1, 2, 3, 4, 6};

enum Axis {
  axis_none = 0,
  axis_x = 1,
  axis_y = 2,
  axis_z = 3,
  axis_p = 4,
  axis_pp = 5,
  axis_s = 6
};

// Value of a translation symbol; nullopt for any other character.
std::optional<Vec3i> tras_val(char c) {
  for (const Hall_Translation& h : hall_translations) {
    if (h.letter == c) return h.t;
  }
  return std::nullopt;
}

// Rotation matrix of a rotation order and an axis (first_axis: that of the first generator,
// which fixes the directions ' and "; * counts as z for ').  nullopt for a pair that has no
// matrix.
std::optional<Mat3i> hall_matrix(int order, int axis, int first_axis) {
  constexpr std::string_view axis_char = " xyz'\"*";
  if (order == 1) {
    if (axis > axis_z) return std::nullopt;
    return identity_matrix;
  }
  char principal = ' ';
  if (axis == axis_p || axis == axis_pp) {
    const int ref = (axis == axis_p && first_axis == axis_s) ? axis_z : first_axis;
    if (ref < axis_x || ref > axis_z) return std::nullopt;
    principal = axis_char[static_cast<std::size_t>(ref)];
  }
  const char a = axis_char[static_cast<std::size_t>(axis)];
  for (const Hall_Matrix& h : hall_matrices()) {
    if (h.order == order && h.axis == a && h.axis2 == principal) return h.m;
  }
  return std::nullopt;
}

// Axis of a generator that names none: Z for the first; for the second X, or ' for a twofold
// axis behind a threefold or sixfold one; for the third * for a threefold axis, else X; X for
// the fourth.
int default_axis(int ngen, int order, int first_order) {
  if (ngen == 0) return axis_z;
  if (ngen == 1) return (order == 2 && (first_order == 3 || first_order == 6)) ? axis_p : axis_x;
  if (ngen == 2) return order == 3 ? axis_s : axis_x;
  return axis_x;
}

// The symbol, in upper case, shifted left and cut to 16 characters, read by position 1..16.
struct Hall_Text {
  std::string group;
  char at(int k) const {
    return (k >= 1 && k <= static_cast<int>(group.size())) ? group[static_cast<std::size_t>(k) - 1]
                                                           : ' ';
  }
};

struct Generator {
  Exact_Op op;
  int order = 1;
  int axis = axis_z;
};

// The centre of symmetry of a symbol without a leading "-": the last item -1 (before any
// origin shift) with its translation symbols.  n shrinks when the item is taken out.
void read_centre(const Hall_Text& h, int& n, int& icentre, Vec3& co) {
  std::string_view text(h.group);
  text = text.substr(0, static_cast<std::size_t>(n));
  const auto paren = text.find('(');
  const std::string_view looked =
      paren == std::string_view::npos ? text : text.substr(0, paren + 1);
  const auto pos = looked.rfind("-1");
  if (pos == std::string_view::npos) return;
  const int j = static_cast<int>(pos) + 1;
  Vec3i v{};
  for (int k = j + 2; k <= n; ++k) {
    if (const auto tv = tras_val(h.at(k))) {
      for (int c = 0; c < 3; ++c) v[c] += (*tv)[c];
    }
  }
  for (int& x : v) x %= op_den;
  // The centre lies at half the translation of the inversion.
  for (int c = 0; c < 3; ++c) co[c] = static_cast<float>(v[c]) / (2.0f * op_den);
  if (is_zero(v)) {
    icentre = 2;
  } else {
    icentre = 0;
    n = j - 2;
  }
}

// One generator from the item at positions p..e; false for an item the symbol cannot hold.
bool read_generator(const Hall_Text& h, int p, int e, int ngen, const std::vector<Generator>& gens,
                    Generator& out) {
  int sign = 1;
  if (h.at(p) == '-') {
    sign = -1;
    ++p;
  }
  if (p > e) return false;  // a sign and nothing behind it
  const auto r = rotacion.find(h.at(p));
  if (r == std::string_view::npos) return false;
  const int order = rotation_order[r];
  const int first_order = gens.empty() ? 0 : gens[0].order;
  const int first_axis = gens.empty() ? axis_none : gens[0].axis;
  int a = ngen == 0 ? axis_z : axis_none;
  Vec3i vtras{};
  const bool single = e <= p;
  for (int k = single ? p : p + 1; k <= e; ++k) {
    const char c = h.at(k);
    const auto ax = ejes_rotacion.find(c);
    if (ax != std::string_view::npos) a = static_cast<int>(ax) + 1;
    if (a == axis_none) a = default_axis(ngen, order, first_order);
    if (single) continue;
    if (const auto tv = tras_val(c)) {
      for (int m = 0; m < 3; ++m) vtras[m] += (*tv)[m];
    } else if (const auto d = shift.find(c); d != std::string_view::npos) {
      // Screw part along the axis: only for 3, 4, 6 about x, y or z.
      if (order < 3 || a > axis_z) return false;
      vtras = Vec3i{0, 0, 0};
      vtras[static_cast<std::size_t>(a) - 1] = op_den * (static_cast<int>(d) + 1) / order;
    }
  }
  // The first generator's own ' or " has no reference axis.
  const int reference = ngen == 0 ? axis_none : first_axis;
  const auto m = hall_matrix(order, a, reference);
  if (!m) return false;
  out.op.rot = sign == 1 ? *m : negated(*m);
  out.op.tr = vtras;
  out.order = order;
  out.axis = a;
  return true;
}

// The origin shift between "(" at position p and the last character n; false for a fourth
// number.
bool read_shift(const Hall_Text& h, int p, int n, Vec3i& s) {
  int component = 0;
  int sign = 1;
  for (int k = p + 1; k <= n - 1; ++k) {
    const char c = h.at(k);
    if (c == ' ') continue;
    if (c == '-') {
      sign = -1;
      continue;
    }
    if (component == 3) return false;
    const auto v = shift.find(c);
    s[static_cast<std::size_t>(component)] =
        sign * twelfth * (v == std::string_view::npos ? 0 : static_cast<int>(v) + 1);
    ++component;
    sign = 1;
  }
  return true;
}

// Moves a generator to the new origin: S g S^-1, translation t + s - R s.
void change_origin(Generator& g, const Vec3i& s) {
  const Exact_Op shift_op{identity_matrix, s};
  g.op = shift_op * g.op * inverse(shift_op);
}

}  // namespace

const std::array<Hall_Matrix, 19>& hall_matrices() {
  static const std::array<Hall_Matrix, 19> table{{
      {{{{1, 0, 0}, {0, -1, 0}, {0, 0, -1}}}, 2, 'x', ' '},    // x,-y,-z
      {{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}}, 2, 'y', ' '},    // -x,y,-z
      {{{{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}}}, 2, 'z', ' '},    // -x,-y,z
      {{{{-1, 0, 0}, {0, 0, -1}, {0, -1, 0}}}, 2, '\'', 'x'},  // -x,-z,-y
      {{{{0, 0, -1}, {0, -1, 0}, {-1, 0, 0}}}, 2, '\'', 'y'},  // -z,-y,-x
      {{{{0, -1, 0}, {-1, 0, 0}, {0, 0, -1}}}, 2, '\'', 'z'},  // -y,-x,-z
      {{{{-1, 0, 0}, {0, 0, 1}, {0, 1, 0}}}, 2, '"', 'x'},     // -x,z,y
      {{{{0, 0, 1}, {0, -1, 0}, {1, 0, 0}}}, 2, '"', 'y'},     // z,-y,x
      {{{{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}}, 2, '"', 'z'},     // y,x,-z
      {{{{1, 0, 0}, {0, 0, -1}, {0, 1, -1}}}, 3, 'x', ' '},    // x,-z,y-z
      {{{{-1, 0, 1}, {0, 1, 0}, {-1, 0, 0}}}, 3, 'y', ' '},    // -x+z,y,-x
      {{{{0, -1, 0}, {1, -1, 0}, {0, 0, 1}}}, 3, 'z', ' '},    // -y,x-y,z
      {{{{1, 0, 0}, {0, 0, -1}, {0, 1, 0}}}, 4, 'x', ' '},     // x,-z,y
      {{{{0, 0, 1}, {0, 1, 0}, {-1, 0, 0}}}, 4, 'y', ' '},     // z,y,-x
      {{{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}}, 4, 'z', ' '},     // -y,x,z
      {{{{1, 0, 0}, {0, 1, -1}, {0, 1, 0}}}, 6, 'x', ' '},     // x,y-z,y
      {{{{0, 0, 1}, {0, 1, 0}, {-1, 0, 1}}}, 6, 'y', ' '},     // z,y,-x+z
      {{{{1, -1, 0}, {1, 0, 0}, {0, 0, 1}}}, 6, 'z', ' '},     // x-y,x,z
      {{{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}}, 3, '*', ' '},      // z,x,y
  }};
  return table;
}

Group_Operators get_so_from_hall(std::string_view symb) {
  Group_Operators r;
  r.num_g = 1;
  const Symm_Scope symm_scope;

  Hall_Text h{u_case(fixed(adjustl(symb), hall_symbol_len))};
  int n = static_cast<int>(len_trim(h.group));
  int i = 1;

  if (h.at(1) == '-') {
    r.icentre = 2;
    i = 2;
  } else {
    read_centre(h, n, r.icentre, r.co);
  }

  r.ibravl = h.at(i) == 'Z' ? 0 : ibravl_of(h.at(i));
  if (r.ibravl == 0) {
    set_err_symm(" IBRAVL is Equal Zero");
    return r;
  }

  std::vector<Generator> gens;
  int p = i + 2;
  int shift_at = 0;
  while (p <= n) {
    int e = p;
    while (e < n && h.at(e + 1) != ' ') ++e;
    if (h.at(p) == '(') {
      shift_at = p;
      break;
    }
    Generator g;
    if (static_cast<int>(gens.size()) == max_hall_generators ||
        !read_generator(h, p, e, static_cast<int>(gens.size()), gens, g)) {
      set_err_symm("");
      return r;
    }
    gens.push_back(g);
    p = e + 2;
  }

  if (shift_at > 0) {
    Vec3i s{};
    if (!read_shift(h, shift_at, n, s)) {
      set_err_symm("");
      return r;
    }
    for (Generator& g : gens) change_origin(g, s);
  }

  std::vector<Exact_Op> tabla{Exact_Op{}};
  if (!(gens.size() == 1 && gens[0].order == 1)) {
    for (const Generator& g : gens) tabla.push_back(reduced(g.op));
  }
  r.num_g = static_cast<int>(gens.size());

  Closure_Lattice lat;
  lat.ibravl = r.ibravl;
  if (!close_by_products(tabla, lat, false)) return r;

  r.ng = static_cast<int>(tabla.size());
  r.ss.resize(tabla.size());
  r.ts.resize(tabla.size());
  for (std::size_t k = 0; k < tabla.size(); ++k) {
    r.ss[k] = tabla[k].rot;
    r.ts[k] = to_real(tabla[k].tr);
  }
  get_crystal_system_r_op(r.ng, r.ss, r.isystem, r.latsy);
  r.latsy[1] = lattice_letters[static_cast<std::size_t>(r.ibravl) - 1];
  latsym(std::string_view(&r.latsy[1], 1));
  return r;
}

}  // namespace velmoria

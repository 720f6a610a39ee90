// Reading of a Hermann-Mauguin symbol: the lattice letter, up to three items of symmetry
// directions, the crystal system, and the operators written from the rules of that system.
// Every centric group comes out with its centre at the origin; where a group has two origin
// choices the rules give the second one.
#include "symmetry/hm_symbols.hpp"

#include <algorithm>
#include <array>

#include "support/text.hpp"
#include "symmetry/closure.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/group_class.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

namespace {

constexpr std::size_t group_len = 20;
constexpr int num_items = 3;
constexpr int item_len = 4;
constexpr std::string_view ibra = "PABCFIR";
constexpr std::string_view good = "123456ABCDMNP/- ";
constexpr std::string_view axis_chars = "123456";
constexpr std::string_view plane_chars = "ABCDMN";

// Fractions of a cell edge in the exact unit of translations.
constexpr int half = op_den / 2;
constexpr int quarter = op_den / 4;
constexpr int three_quarters = 3 * op_den / 4;

Mat3i diagonal(int a, int b, int c) {
  return Mat3i{{{a, 0, 0}, {0, b, 0}, {0, 0, c}}};
}

// The work state of one reading.  Items and characters are numbered from 1 as in the symbol;
// op(k) is operator k, 1 the identity.
struct Hms_State {
  std::array<std::array<char, item_len>, num_items> hms{};
  int m = 0;             // number of items
  char letter = ' ';     // lattice letter
  bool centric = false;  // a centre of symmetry at the origin
  int ng = 1;
  std::array<Exact_Op, max_hms_ops> ops{};

  char h(int i, int k) const {
    return hms[static_cast<std::size_t>(i - 1)][static_cast<std::size_t>(k - 1)];
  }
  void set_item(int i, std::string_view text) {
    auto& item = hms[static_cast<std::size_t>(i - 1)];
    item.fill(' ');
    for (std::size_t k = 0; k < text.size() && k < item.size(); ++k) item[k] = text[k];
  }
  Exact_Op& op(int k) { return ops[static_cast<std::size_t>(k - 1)]; }
  int& t(int r, int k) { return op(k).tr[static_cast<std::size_t>(r - 1)]; }
  // Anywhere in item i.
  bool has(int i, char c) const {
    for (int k = 1; k <= item_len; ++k) {
      if (h(i, k) == c) return true;
    }
    return false;
  }
  // A "2" directly followed by a "1": the twofold screw axis.
  bool screw_21(int i) const {
    for (int k = 1; k < item_len; ++k) {
      if (h(i, k) == '2' && h(i, k + 1) == '1') return true;
    }
    return false;
  }
};

void reset(Hms_State& s) {
  s = Hms_State{};
  for (auto& item : s.hms) item.fill(' ');
}

// The lattice letter and the items.  A fourth item overwrites the third from its start and a
// fifth character of an item overwrites its fourth.
void split_symbol(Hms_State& s, const std::string& group) {
  const std::size_t last = len_trim(group);
  s.letter = group.empty() ? ' ' : group[0];
  int count = 0;
  int k = 0;
  bool inside = false;
  for (std::size_t p = 1; p < last; ++p) {
    const char c = group[p];
    if (c == ' ') {
      inside = false;
      continue;
    }
    if (!inside) {
      inside = true;
      ++count;
      k = 0;
    }
    const int item = std::min(count, num_items);
    s.hms[static_cast<std::size_t>(item - 1)][static_cast<std::size_t>(std::min(k, item_len - 1))] =
        c;
    ++k;
    if (c == '/') s.centric = true;
  }
  s.m = std::min(count, num_items);
}

// Crystal system of the symbol; the short monoclinic form becomes the long one with the unique
// axis b.
int crystal_system_of(Hms_State& s) {
  for (int j = 1; j <= item_len; ++j) {
    if (s.h(2, j) == '3') return 7;
    if (s.h(1, j) == '3') return 5;
    if (s.h(1, j) == '6') return 6;
    if (s.h(1, j) == '4') return 4;
  }
  if (s.m < 2) {
    if (s.h(1, 1) == '1' || s.h(1, 1) == '-') return 1;
    s.hms[1] = s.hms[0];
    s.set_item(1, "1");
    s.set_item(3, "1");
    return 2;
  }
  if (s.h(1, 1) == '1' || s.h(2, 1) == '1') return 2;
  return 3;
}

// Crystal system, and family letter with the lattice letter; a sixfold axis goes with P.
void find_system(Hms_State& s, int& isystem, std::string& latsy) {
  isystem = crystal_system_of(s);
  latsy = {family_letter(isystem), isystem == 6 ? 'P' : s.letter};
}

bool in(std::string_view set, char c) {
  return set.find(c) != std::string_view::npos;
}

bool is_digit_1_6(char c) {
  return c >= '1' && c <= '6';
}

// Whether some item has a character of `first` immediately followed by one of `second`.
bool follows_in_item(const Hms_State& s, std::string_view first, std::string_view second) {
  for (int i = 1; i <= num_items; ++i) {
    for (int k = 1; k < item_len; ++k) {
      if (in(first, s.h(i, k)) && in(second, s.h(i, k + 1))) return true;
    }
  }
  return false;
}

// The checks of the items, each over all items in turn; false with the message set.
bool check_symbol_hm(const Hms_State& s) {
  for (int i = 1; i <= num_items; ++i) {
    for (int k = 1; k <= item_len; ++k) {
      if (!in(good, s.h(i, k))) {
        set_err_symm(std::string(" The symbol: ") + s.h(i, k) + " is not allowed");
        return false;
      }
    }
  }
  for (int i = 1; i <= num_items; ++i) {
    if (s.h(i, 1) == '5') {
      set_err_symm(" The fivefold axis is not allowed");
      return false;
    }
  }
  for (int i = 1; i <= num_items; ++i) {
    for (int k = 1; k < item_len; ++k) {
      const char c = s.h(i, k);
      if (c == ' ') continue;
      for (int l = k + 1; l <= item_len; ++l) {
        if (s.h(i, l) == c) {
          set_err_symm(std::string(" The symbol: ") + c +
                       " has been repeated within the same symmetry direction");
          return false;
        }
      }
    }
  }
  if (follows_in_item(s, axis_chars, plane_chars)) {
    set_err_symm(
        " A rotation axis cannot be immediately followed by a plane\r within the same "
        "symmetry direction");
    return false;
  }
  if (follows_in_item(s, plane_chars, axis_chars)) {
    set_err_symm(
        " A mirror plane cannot be immediately followed by a rotation axis\r within the same "
        "symmetry direction");
    return false;
  }
  for (int i = 1; i <= num_items; ++i) {
    int planes = 0;
    for (int k = 1; k <= item_len; ++k) planes += in(plane_chars, s.h(i, k)) ? 1 : 0;
    if (planes >= 2) {
      set_err_symm(" There is more than one plane within the same symmetry direction");
      return false;
    }
  }
  for (int i = 1; i <= num_items; ++i) {
    std::string digits;
    for (int k = 1; k <= item_len; ++k) {
      if (is_digit_1_6(s.h(i, k))) digits += s.h(i, k);
    }
    if (digits.size() >= 2 && digits[0] < digits[1]) {
      set_err_symm(std::string(" Screw axis: ") + digits[0] + " " + digits[1] + " not allowed");
      return false;
    }
  }
  return true;
}

// The translations of a glide letter or screw in item i, written into operator k: "21" puts
// 1/2 along the item's own direction, a, b, c glides along their axes, n on the two other axes.
void glide_of_item(Hms_State& s, int i, int k) {
  if (s.screw_21(i)) s.t(i, k) = half;
  if (s.has(i, 'A')) s.t(1, k) = half;
  if (s.has(i, 'B')) s.t(2, k) = half;
  if (s.has(i, 'C')) s.t(3, k) = half;
  if (s.has(i, 'N')) {
    for (int r = 1; r <= 3; ++r) {
      if (r != i) s.t(r, k) = half;
    }
  }
}

void monoclinic(Hms_State& s) {
  s.ng = 2;
  int u = 1;
  for (int i = 1; i <= num_items; ++i) {
    if (s.h(i, 1) != '1') u = i;
  }
  const int sg = s.h(u, 1) == '2' ? -1 : 1;
  Mat3i r = diagonal(sg, sg, sg);
  r[static_cast<std::size_t>(u - 1)][static_cast<std::size_t>(u - 1)] = -sg;
  s.op(2).rot = r;
  for (int j = 1; j <= num_items; ++j) glide_of_item(s, j, 2);
}

// Cyclic successors of axis i: i2 the next one, i3 the third.
int next_axis(int i) {
  return i % 3 + 1;
}

// The centric orthorhombic groups with a centred lattice are moved so that -1 lies at the
// origin of the table's setting.
void orthorhombic_shift(Hms_State& s) {
  int nm = 0;
  for (int i = 1; i <= num_items; ++i) nm += s.has(i, 'M') ? 1 : 0;
  Vec3i sh{quarter, quarter, quarter};
  bool shift = false;
  if (s.letter == 'I') {
    shift = nm == 2;
  } else if ((s.letter == 'A' || s.letter == 'B' || s.letter == 'C') && (nm == 1 || nm == 2)) {
    const int c = s.letter - 'A' + 1;
    if (!s.has(c, 'M')) {
      sh[static_cast<std::size_t>(c - 1)] = 0;
      shift = true;
    }
  }
  if (!shift) return;
  for (int k = 1; k <= 4; ++k) {
    Exact_Op& o = s.op(k);
    const Vec3i rs = mat_vec(o.rot, sh);
    for (int r = 0; r < 3; ++r) {
      o.tr[r] += sh[r] - rs[r];
      if (o.tr[r] > op_den) o.tr[r] -= op_den;
      if (o.tr[r] < 0) o.tr[r] += op_den;
    }
  }
}

// The 222 family: the screw components are distributed so that the three axes meet as in the
// table's setting.
void orthorhombic_222(Hms_State& s) {
  const int x = s.t(1, 2);
  const int y = s.t(2, 3);
  const int z = s.t(3, 4);
  const int sum = x + y + z;
  if (sum == 0) return;
  if (sum <= half) {
    if (x != 0) s.t(1, 4) = half;
    if (y != 0) s.t(2, 2) = half;
    if (z != 0) s.t(3, 3) = half;
  } else if (sum <= op_den) {
    if (x == 0) s.t(3, 3) = s.t(2, 4) = half;
    if (y == 0) s.t(1, 4) = s.t(3, 2) = half;
    if (z == 0) s.t(2, 2) = s.t(1, 3) = half;
  } else {
    s.t(2, 2) = half;
    s.t(3, 3) = half;
    s.t(1, 4) = half;
  }
}

// The mm2 family: a component whose sum over the three operators is no lattice translation is
// mended.
void orthorhombic_mm2(Hms_State& s) {
  int a = 2;
  for (int k = 2; k <= 4; ++k) {
    if (determ_a_i(s.op(k).rot) == 1) a = k;
  }
  auto is_mn = [&](int i, int j) { return s.h(i, 1) == 'M' && s.h(j, 1) == 'N'; };
  const bool m_then_n = is_mn(1, 2) || is_mn(2, 3) || is_mn(3, 1);
  for (int r = 1; r <= 3; ++r) {
    const int f = s.t(r, 2) + s.t(r, 3) + s.t(r, 4);
    if (f == 0 || f == op_den) continue;
    if (m_then_n) {
      // t(1,4), t(2,2), t(3,3) for r = 1, 2, 3
      s.t(r, r == 1 ? 4 : r) = half;
    } else {
      for (int k = 2; k <= 4; ++k) {
        if (k != a) s.t(r, k) = half;
      }
    }
  }
}

void orthorhombic(Hms_State& s) {
  s.ng = 4;
  int g = -1;
  for (int i = 1; i <= num_items; ++i) {
    if (s.h(i, 1) == '2') g = 1;
  }
  if (g == -1) s.centric = true;
  for (int j = 1; j <= num_items; ++j) {
    const int sg = g * (s.h(j, 1) == '2' ? -1 : 1);
    Mat3i r = diagonal(sg, sg, sg);
    r[static_cast<std::size_t>(j - 1)][static_cast<std::size_t>(j - 1)] = -sg;
    s.op(j + 1).rot = r;
  }
  bool d_glide = false;
  for (int i = 1; i <= num_items; ++i) {
    const int i2 = next_axis(i);
    const int i3 = next_axis(i2);
    const int k = i + 1;
    if (s.screw_21(i)) s.t(i, k) = half;
    if (s.has(i, 'A')) s.t(1, k) = half;
    if (s.has(i, 'B')) s.t(2, k) = half;
    if (s.has(i, 'C')) s.t(3, k) = half;
    if (s.has(i, 'N')) s.t(i2, k) = s.t(i3, k) = half;
    if (s.has(i, 'D')) {
      d_glide = true;
      if (s.centric) {
        s.t(i2, k) = s.t(i3, k) = quarter;
      } else {
        s.t(1, k) = s.t(2, k) = s.t(3, k) = quarter;
      }
    }
  }
  if (d_glide) return;
  if (s.centric) {
    auto sum = [](int a, int b) { return a + b == op_den ? 0 : a + b; };
    s.t(1, 2) = sum(s.t(1, 3), s.t(1, 4));
    s.t(2, 3) = sum(s.t(2, 4), s.t(2, 2));
    s.t(3, 4) = sum(s.t(3, 2), s.t(3, 3));
    if (s.letter == 'P' || s.letter == 'F') return;
    orthorhombic_shift(s);
    return;
  }
  bool proper = true;
  for (int k = 2; k <= 4; ++k) proper = proper && determ_a_i(s.op(k).rot) == 1;
  if (proper) {
    orthorhombic_222(s);
  } else {
    orthorhombic_mm2(s);
  }
}

// Second half of the group: op(n+i) = (e, te) op(i).
void doubling(Hms_State& s, int n, const Mat3i& e, const Vec3i& te) {
  const Exact_Op eo{e, te};
  for (int i = 1; i <= n; ++i) s.op(n + i) = eo * s.op(i);
}

// The translation of the glide of the second item of a tetragonal symbol.
Vec3i tetragonal_glide(char c) {
  switch (c) {
    case 'C':
      return Vec3i{0, 0, half};
    case 'B':
      return Vec3i{half, half, 0};
    case 'N':
      return Vec3i{half, half, half};
    default:
      return Vec3i{0, 0, 0};
  }
}

// Translation along the axis of the screw axis n_p, p the digit c: p/n of the cell edge; none
// for any other character.
int screw_translation(int n, char c) {
  const int p = c - '0';
  return p >= 1 && p < n ? p * op_den / n : 0;
}

// The fourfold axis (or -4) with its translation.
void tetragonal_axis(Hms_State& s) {
  if (s.h(1, 1) == '-') {
    s.op(2).rot = Mat3i{{{0, 1, 0}, {-1, 0, 0}, {0, 0, -1}}};
    return;
  }
  s.op(2).rot = Mat3i{{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}};
  s.t(3, 2) = screw_translation(4, s.h(1, 2));
  if (s.h(1, 3) == 'N') s.t(1, 2) = half;
  if (s.h(1, 4) == 'N' && s.m == 3) s.t(1, 2) = half;
  if (s.h(1, 4) == 'N' && s.m == 1) s.t(2, 2) = half;
  if (s.h(1, 2) == '1' && s.letter == 'I') {
    if (!s.centric) {
      s.t(2, 2) = half;
    } else {
      s.t(1, 2) = s.m == 1 ? three_quarters : quarter;
      s.t(2, 2) = s.m == 1 ? quarter : three_quarters;
      return;
    }
  }
  if (s.h(2, 2) == '1' || (s.h(1, 4) != 'N' && s.h(2, 1) == 'N' && s.h(3, 1) == 'M')) {
    s.t(1, 2) = s.t(2, 2) = half;
  }
}

void tetragonal(Hms_State& s) {
  s.ng = s.m == 3 ? 8 : 4;
  tetragonal_axis(s);
  // The square of the fourfold axis (or of -4) is the twofold axis -x,-y,z.
  s.op(3) = s.op(2) * s.op(2);
  s.op(4) = s.op(2) * s.op(3);
  if (s.m == 1) return;
  Mat3i e{};
  Vec3i te{};
  if (s.centric) {
    e = diagonal(-1, 1, 1);
    te = tetragonal_glide(s.h(2, 1));
    if (s.h(1, 3) == 'N' || s.h(1, 4) == 'N') te[0] += half;
  } else if (s.h(2, 1) != '2') {
    e = diagonal(-1, 1, 1);
    te = tetragonal_glide(s.h(2, 1));
  } else if (s.h(3, 1) != '2') {
    e = diagonal(1, -1, -1);
    if (s.h(3, 1) == 'C') te[2] = half;
    if (s.h(3, 1) == 'D') {
      te[2] = quarter;
      te[1] = half;
    }
    if (s.h(2, 2) == '1') te[0] = te[1] = half;
  } else {
    e = Mat3i{{{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}};
    if (s.h(2, 2) == ' ' && s.letter != 'I' && s.h(1, 2) != ' ') {
      // The opposite screw part: 4_1: 3/4, 4_2: 1/2, 4_3: 1/4.
      te[2] = mod_cell(-screw_translation(4, s.h(1, 2)));
    }
  }
  doubling(s, 4, e, te);
}

// The sixfold axis and its powers: x-y,x,z; -y,x-y,z; -x,-y,z; -x+y,-x,z; y,-x+y,z.
void sixfold(Hms_State& s) {
  s.op(2).rot = Mat3i{{{1, -1, 0}, {1, 0, 0}, {0, 0, 1}}};
  s.t(3, 2) = screw_translation(6, s.h(1, 2));
  for (int k = 3; k <= 6; ++k) {
    Exact_Op p = s.op(2) * s.op(k - 1);
    for (int& c : p.tr) {
      if (c > op_den) c -= op_den;
    }
    s.op(k) = p;
  }
}

// The threefold axis (and -6 from it); the number of operators before the doubling.
int threefold(Hms_State& s) {
  if (s.h(1, 1) == '-' && s.h(1, 2) == '3') s.centric = true;
  s.op(2).rot = Mat3i{{{0, -1, 0}, {1, -1, 0}, {0, 0, 1}}};
  s.t(3, 2) = screw_translation(3, s.h(1, 2));
  s.op(3).rot = Mat3i{{{-1, 1, 0}, {-1, 0, 0}, {0, 0, 1}}};
  int t3 = 2 * s.t(3, 2);
  if (t3 >= op_den) t3 -= op_den;
  s.t(3, 3) = t3;
  if (s.h(1, 2) != '6') return 3;
  for (int k = 1; k <= 3; ++k) {
    Exact_Op o = s.op(k);
    o.rot[2][2] = -1;
    o.tr = Vec3i{0, 0, 0};
    s.op(k + 3) = o;
  }
  return 6;
}

void trigonal_hexagonal(Hms_State& s) {
  int n = 0;
  if (s.h(1, 1) == '6') {
    n = 6;
    sixfold(s);
  } else {
    n = threefold(s);
  }
  if (s.m == 1) {
    s.ng = n;
    return;
  }
  s.ng = 2 * n;
  const bool minus_six = s.h(1, 2) == '6';
  if (minus_six && (s.h(2, 1) == 'C' || s.h(3, 1) == 'C')) {
    for (int k = 4; k <= 6; ++k) s.t(3, k) = half;
  }
  Mat3i e{};
  Vec3i te{};
  if (s.h(2, 1) == '1' && s.h(3, 1) == '2') {
    e = Mat3i{{{0, -1, 0}, {-1, 0, 0}, {0, 0, -1}}};
    te[2] = 2 * s.t(3, 2);
    if (te[2] > op_den) te[2] -= op_den;
  } else if (s.h(2, 1) == '1') {
    e = Mat3i{{{0, 1, 0}, {1, 0, 0}, {0, 0, 1}}};
    te[2] = s.h(3, 1) == 'C' ? half : 0;
  } else if (s.h(2, 1) == '2') {
    e = Mat3i{{{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}};
    const bool screw_3 = s.h(1, 1) == '3' && (s.h(1, 2) == '1' || s.h(1, 2) == '2');
    te[2] = screw_3 ? 0 : 2 * s.t(3, 2);
  } else {
    e = Mat3i{{{0, -1, 0}, {-1, 0, 0}, {0, 0, 1}}};
    te[2] = s.h(2, 1) == 'C' ? half : 0;
  }
  doubling(s, n, e, te);
}

// The operator with its rows (and translation components) taken in the order i, j, k.
Exact_Op permute_rows(const Exact_Op& o, int i, int j, int k) {
  Exact_Op p;
  const std::array<int, 3> order{i, j, k};
  for (std::size_t r = 0; r < 3; ++r) {
    p.rot[r] = o.rot[static_cast<std::size_t>(order[r])];
    p.tr[r] = o.tr[static_cast<std::size_t>(order[r])];
  }
  return p;
}

void cubic(Hms_State& s) {
  s.ng = s.m == 3 ? 24 : 12;
  const char h11 = s.h(1, 1);
  if (h11 != '2' && h11 != '4' && h11 != '-') s.centric = true;
  s.op(2).rot = diagonal(1, -1, -1);
  s.op(3).rot = diagonal(-1, 1, -1);
  s.op(4).rot = diagonal(-1, -1, 1);
  auto set_pairs = [&](int r1, int r2, int r3, int r4, int r5, int r6, int v) {
    s.t(r1, 2) = s.t(r2, 2) = v;
    s.t(r3, 3) = s.t(r4, 3) = v;
    s.t(r5, 4) = s.t(r6, 4) = v;
  };
  if (h11 == 'N') set_pairs(2, 3, 1, 3, 1, 2, half);
  if (h11 == 'D') set_pairs(2, 3, 1, 3, 1, 2, quarter);
  if (s.letter != 'F' && (h11 == 'A' || s.h(3, 1) == 'D' || s.h(1, 2) == '3' || s.h(1, 2) == '1')) {
    set_pairs(1, 2, 2, 3, 3, 1, half);
  }
  for (int k = 1; k <= 4; ++k) {
    s.op(k + 4) = permute_rows(s.op(k), 1, 2, 0);
    s.op(k + 8) = permute_rows(s.op(k), 2, 0, 1);
  }
  if (s.m != 3) return;
  const Mat3i e = s.h(3, 1) == '2' ? Mat3i{{{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}}
                                   : Mat3i{{{0, 1, 0}, {1, 0, 0}, {0, 0, 1}}};
  Vec3i te{};
  if (s.h(3, 1) == 'C') te = Vec3i{0, 0, half};
  if (s.h(3, 1) == 'N' || s.h(1, 2) == '2') te = Vec3i{half, half, half};
  if (s.h(3, 1) == 'D' || s.h(1, 2) == '1' || s.h(1, 2) == '3')
    te = Vec3i{quarter, quarter, quarter};
  if (s.h(1, 2) == '1' && s.letter == 'P') te = Vec3i{three_quarters, quarter, quarter};
  if (s.h(1, 2) == '1' && s.letter == 'I') te = Vec3i{quarter, three_quarters, three_quarters};
  if (s.h(1, 2) == '3' && s.letter == 'P') te = Vec3i{quarter, three_quarters, three_quarters};
  doubling(s, 12, e, te);
}

// The reset state of the result: the identity and max_hms_ops - 1 empty entries.
void put_reset_state(Group_Operators& r) {
  r.ng = 1;
  r.ss.assign(max_hms_ops, Mat3i{});
  r.ts.assign(max_hms_ops, Vec3{});
  r.ss[0] = identity_matrix;
}

}  // namespace

Group_Operators get_so_from_hms(std::string_view symb) {
  Group_Operators r;
  put_reset_state(r);
  const Symm_Scope symm_scope;

  Hms_State s;
  reset(s);
  const std::string group = u_case(fixed(adjustl(symb), group_len));
  split_symbol(s, group);
  if (s.letter == ' ' || !in(ibra, s.letter)) {
    set_err_symm(" Wrong space-group symbol: " + trim(symb));
    return r;
  }
  r.ibravl = ibravl_of(s.letter);
  find_system(s, r.isystem, r.latsy);
  if (!check_symbol_hm(s)) return r;
  latsym(std::string(1, s.letter));

  switch (r.isystem) {
    case 1:
      s.ng = 1;
      if (s.h(1, 1) == '-') s.centric = true;
      break;
    case 2:
      monoclinic(s);
      break;
    case 3:
      orthorhombic(s);
      break;
    case 4:
      tetragonal(s);
      break;
    case 5:
    case 6:
      trigonal_hexagonal(s);
      break;
    default:
      cubic(s);
      break;
  }

  r.ng = s.ng;
  r.ss.resize(static_cast<std::size_t>(r.ng));
  r.ts.resize(static_cast<std::size_t>(r.ng));
  // Every translation brought into [0,1).
  for (int k = 1; k <= r.ng; ++k) {
    r.ss[static_cast<std::size_t>(k - 1)] = s.op(k).rot;
    r.ts[static_cast<std::size_t>(k - 1)] = modulo_lat(to_real(s.op(k).tr));
  }
  r.icentre = s.centric ? 2 : 1;
  return r;
}

}  // namespace velmoria

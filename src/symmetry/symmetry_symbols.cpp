// Geometric symbols of symmetry operators and the solvers of the small linear systems that
// locate their elements.
#include "symmetry/symmetry_symbols.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <unordered_map>

#include "support/bit_key.hpp"
#include "support/fractions.hpp"
#include "support/layout.hpp"
#include "support/text.hpp"
#include "symmetry/group_class.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {

VELMORIA_ERROR_PAIR_DEFINITIONS(math3d, std::string::npos)
constexpr float eps_math3d_default = 1.0e-5f;
constinit thread_local float eps_math3d = eps_math3d_default;

void set_eps_default() {
  eps_math3d = eps_math3d_default;
}

namespace {

constexpr float e = eps_symbol;
constexpr char axis_letter[] = "xyz";

void set_math3d_error(const char* mess) {
  set_err_math3d(mess);
}

// Start values of every solver: ts = 0, x = 1, ix = 0.
void start_triple(Vec3& ts, Vec3& x, Vec3i& ix) {
  ts = {0, 0, 0};
  x = {1, 1, 1};
  ix = {0, 0, 0};
}

void set_all_space(Vec3& ts, Vec3& x, Vec3i& ix) {
  ts = {0, 0, 0};
  x = {1, 1, 1};
  ix = {1, 2, 3};
}

// Coordinate c held at the value v.
void set_fixed(int c, float v, Vec3& ts, Vec3& x, Vec3i& ix) {
  ts[c] = v;
  x[c] = 0;
  ix[c] = 0;
}

// Coordinate c free, with its own index.
void set_free(int c, Vec3& ts, Vec3& x, Vec3i& ix) {
  ts[c] = 0;
  x[c] = 1;
  ix[c] = c + 1;
}

// The line through p0 with direction dir, parametrised by its lowest moving coordinate.
void set_line(const std::array<double, 3>& p0, const std::array<double, 3>& dir, Vec3& ts, Vec3& x,
              Vec3i& ix) {
  double big = std::max({std::fabs(dir[0]), std::fabs(dir[1]), std::fabs(dir[2])});
  int c = 0;
  while (c < 3 && std::fabs(dir[c]) <= 1.0e-6 * big) ++c;
  if (c == 3) return;
  for (int i = 0; i < 3; ++i) {
    if (i == c) {
      set_free(i, ts, x, ix);
    } else if (std::fabs(dir[i]) > 1.0e-6 * big) {
      double rate = dir[i] / dir[c];
      ts[i] = static_cast<float>(p0[i] - p0[c] * rate);
      x[i] = static_cast<float>(rate);
      ix[i] = c + 1;
    } else {
      set_fixed(i, static_cast<float>(p0[i]), ts, x, ix);
    }
  }
}

// One equation a u + b v = t in the coordinates cu < cv of a triple.  Returns false on an
// inconsistent equation (message set).
bool solve_1x2_into(double a, double b, double t, int cu, int cv, Vec3& ts, Vec3& x, Vec3i& ix) {
  if (a == 0 && b == 0) {
    if (std::fabs(t) >= eps_math3d) {
      set_math3d_error("Inconsistent solution (1x2)");
      return false;
    }
    set_free(cu, ts, x, ix);
    set_free(cv, ts, x, ix);
  } else if (b == 0) {
    set_fixed(cu, static_cast<float>(t / a), ts, x, ix);
    set_free(cv, ts, x, ix);
  } else if (a == 0) {
    set_free(cu, ts, x, ix);
    set_fixed(cv, static_cast<float>(t / b), ts, x, ix);
  } else {
    set_free(cu, ts, x, ix);
    ts[cv] = static_cast<float>(t / b);
    x[cv] = static_cast<float>(-a / b);
    ix[cv] = cu + 1;
  }
  return true;
}

// One equation w . r = t in three coordinates.
void solve_1x3_into(const std::array<double, 3>& w, double t, Vec3& ts, Vec3& x, Vec3i& ix) {
  int nzero = 0;
  for (double c : w) nzero += (c == 0) ? 1 : 0;
  if (nzero == 3) {
    if (std::fabs(t) < eps_math3d) {
      set_all_space(ts, x, ix);
    } else {
      set_math3d_error("Inconsistent solution (1 x 3)");
    }
  } else if (nzero == 2) {
    for (int c = 0; c < 3; ++c) {
      if (w[c] != 0) {
        set_fixed(c, static_cast<float>(t / w[c]), ts, x, ix);
      } else {
        set_free(c, ts, x, ix);
      }
    }
  } else if (nzero == 1) {
    int z = (w[0] == 0) ? 0 : (w[1] == 0 ? 1 : 2);
    int cu = (z == 0) ? 1 : 0;
    int cv = (z == 2) ? 1 : 2;
    Vec3 ts1 = ts, x1 = x;
    Vec3i ix1 = ix;
    if (solve_1x2_into(w[cu], w[cv], t, cu, cv, ts1, x1, ix1)) {
      set_free(z, ts1, x1, ix1);
      ts = ts1;
      x = x1;
      ix = ix1;
    }
  } else {
    set_math3d_error("Inconsistent case ax+by+cz=t (1x3)");
  }
}

std::array<double, 3> cross(const std::array<double, 3>& a, const std::array<double, 3>& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// Two independent equations with no coordinate absent from both: their line.  Two
// proportional equations: the plane of the one with more zeros, when they agree.
void solve_2x3_general(const std::array<std::array<double, 3>, 2>& w,
                       const std::array<double, 2>& t, Vec3& ts, Vec3& x, Vec3i& ix) {
  std::array<double, 3> dir = cross(w[0], w[1]);
  int best = 0;
  for (int i = 1; i < 3; ++i) {
    if (std::fabs(dir[i]) > std::fabs(dir[best])) best = i;
  }
  if (dir[best] == 0) {
    // Proportional rows: w[1] = f w[0].
    int zeros0 = 0, zeros1 = 0;
    for (int c = 0; c < 3; ++c) {
      zeros0 += (w[0][c] == 0) ? 1 : 0;
      zeros1 += (w[1][c] == 0) ? 1 : 0;
    }
    int r = (zeros1 > zeros0) ? 1 : 0;
    int o = 1 - r;
    int k = 0;
    while (k < 3 && w[r][k] == 0) ++k;
    double f = w[o][k] / w[r][k];
    if (std::fabs(t[o] - f * t[r]) >= eps_math3d) {
      set_math3d_error("Inconsistent solution (1x2)");
      return;
    }
    solve_1x3_into(w[r], t[r], ts, x, ix);
    return;
  }
  // A point of the line with coordinate `best` at zero: a 2 x 2 system in the other two.
  int a = (best == 0) ? 1 : 0;
  int b = (best == 2) ? 1 : 2;
  double det = w[0][a] * w[1][b] - w[0][b] * w[1][a];
  std::array<double, 3> p0{0, 0, 0};
  p0[a] = (t[0] * w[1][b] - w[0][b] * t[1]) / det;
  p0[b] = (w[0][a] * t[1] - t[0] * w[1][a]) / det;
  set_line(p0, dir, ts, x, ix);
}

void solve_2x3_into(const std::array<std::array<double, 3>, 2>& w, const std::array<double, 2>& t,
                    Vec3& ts, Vec3& x, Vec3i& ix) {
  int nzero = 0;
  std::array<bool, 3> zero_col{};
  for (int c = 0; c < 3; ++c) {
    zero_col[c] = (w[0][c] == 0 && w[1][c] == 0);
    nzero += zero_col[c] ? 1 : 0;
  }
  if (nzero == 3) {
    if (std::fabs(t[0]) < eps_math3d && std::fabs(t[1]) < eps_math3d) {
      set_all_space(ts, x, ix);
    } else {
      set_math3d_error("Inconsistent solution in (2x3)");
    }
  } else if (nzero == 2) {
    for (int c = 0; c < 3; ++c) {
      if (zero_col[c]) {
        set_free(c, ts, x, ix);
      } else {
        int r = (w[0][c] != 0) ? 0 : 1;
        set_fixed(c, static_cast<float>(t[r] / w[r][c]), ts, x, ix);
      }
    }
  } else if (nzero == 1) {
    int z = zero_col[0] ? 0 : (zero_col[1] ? 1 : 2);
    int a = (z == 0) ? 1 : 0;
    int b = (z == 2) ? 1 : 2;
    double det = w[0][a] * w[1][b] - w[0][b] * w[1][a];
    if (det != 0) {
      set_fixed(a, static_cast<float>((t[0] * w[1][b] - w[0][b] * t[1]) / det), ts, x, ix);
      set_fixed(b, static_cast<float>((w[0][a] * t[1] - t[0] * w[1][a]) / det), ts, x, ix);
      set_free(z, ts, x, ix);
      return;
    }
    // One equation: the rows are proportional (or one of them vanishes).
    int r = (w[0][a] != 0 || w[0][b] != 0) ? 0 : 1;
    int o = 1 - r;
    int k = (w[r][a] != 0) ? a : b;
    double f = w[o][k] / w[r][k];
    if (std::fabs(t[o] - f * t[r]) >= eps_math3d) {
      set_math3d_error("Inconsistent solution (2x2)");
      return;
    }
    Vec3 ts1 = ts, x1 = x;
    Vec3i ix1 = ix;
    if (solve_1x2_into(w[r][a], w[r][b], t[r], a, b, ts1, x1, ix1)) {
      set_free(z, ts1, x1, ix1);
      ts = ts1;
      x = x1;
      ix = ix1;
    }
  } else {
    bool row0_zero = w[0][0] == 0 && w[0][1] == 0 && w[0][2] == 0;
    bool row1_zero = w[1][0] == 0 && w[1][1] == 0 && w[1][2] == 0;
    if (row0_zero || row1_zero) {
      int r = row0_zero ? 1 : 0;
      solve_1x3_into(w[r], t[r], ts, x, ix);
    } else {
      solve_2x3_general(w, t, ts, x, ix);
    }
  }
}

std::array<double, 3> to_double(const Vec3i& r) {
  return {static_cast<double>(r[0]), static_cast<double>(r[1]), static_cast<double>(r[2])};
}

Mat3i minus_unit(Mat3i m) {
  for (int i = 0; i < 3; ++i) m[i][i] -= 1;
  return m;
}

Mat3i mat_product(const Mat3i& a, const Mat3i& b) {
  Mat3i c{};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      for (int k = 0; k < 3; ++k) c[i][j] += a[i][k] * b[k][j];
    }
  }
  return c;
}

Vec3 mat_vec(const Mat3i& a, const Vec3& v) {
  Vec3 r{};
  for (int i = 0; i < 3; ++i) {
    r[i] = static_cast<float>(a[i][0]) * v[0] + static_cast<float>(a[i][1]) * v[1] +
           static_cast<float>(a[i][2]) * v[2];
  }
  return r;
}

Vec3 negated(const Vec3& v) {
  return {-v[0], -v[1], -v[2]};
}

// The element located by (S - 1) r = -b.
struct Triple {
  Vec3 ts{};
  Vec3 x{};
  Vec3i ix{};
};

Triple solve_element(const Mat3i& m, const Vec3& b) {
  Triple r;
  resolv_sist_3x3(minus_unit(m), negated(b), r.ts, r.x, r.ix);
  return r;
}

std::string text_of(const Triple& r) {
  return get_string_resolv(r.ts, r.x, r.ix);
}

// The triple of a plain vector.
std::string vector_text(const Vec3& v) {
  return trim(get_string_resolv(v, {0, 0, 0}, {0, 0, 0}));
}

// Sign of the sense of rotation about the axis (t2, x2, ix2) of (s, t): the determinant of
// the axis direction, a point off the axis and its image.
bool positive_sense(const Mat3i& s, const Vec3& t, const Triple& axis) {
  Vec3 p0{0, 0, 0};
  Vec3 p1{1, 1, 1};
  for (int i = 0; i < 3; ++i) {
    if (axis.ix[i] == 0) {
      p0[i] = axis.ts[i];
      p1[i] = axis.ts[i];
    } else {
      int j = axis.ix[i] - 1;
      p0[i] = axis.ts[i] + axis.x[i] * p0[j];
      p1[i] = axis.ts[i] + axis.x[i] * p1[j];
    }
  }
  Vec3 p2{0, 0, 0};
  int m = 0;
  while (m < 3 && !(p1[m] > 0)) ++m;
  if (m == 0) {
    p2[1] = 0.7f * p1[1];
    p2[2] = 0.5f * p1[2];
  } else if (m == 1) {
    p2[0] = 0.5f * p1[0];
    p2[2] = 0.7f * p1[2];
  } else if (m == 2) {
    p2[0] = 0.5f * p1[0];
    p2[1] = 0.7f * p1[1];
  }
  if (m < 3) {
    float sum = 0;
    for (int i = 0; i < 3; ++i) {
      if (i != m) sum += p2[i] * p1[i];
    }
    p2[m] = sum / -p1[m];
  }
  if (std::fabs(p2[0] - p0[0]) <= e) p2[0] = p2[0] * p2[0] + 0.5f;
  if (std::fabs(p2[1] - p0[1]) <= e) p2[1] = p2[1] * p2[1] + 1.0f;
  if (std::fabs(p2[2] - p0[2]) <= e) p2[2] = p2[2] * p2[2] + 1.5f;
  Vec3 p3 = mat_vec(s, p2);
  for (int i = 0; i < 3; ++i) p3[i] += t[i];
  Mat3r ww{};
  for (int j = 0; j < 3; ++j) {
    ww[0][j] = p1[j] - p0[j];
    ww[1][j] = p2[j] - p0[j];
    ww[2][j] = p3[j] - p0[j];
  }
  return determ_a_r(ww) > 0;
}

bool near(const Vec3& w, float a, float b, float c) {
  return std::fabs(w[0] - a) <= e && std::fabs(w[1] - b) <= e && std::fabs(w[2] - c) <= e;
}

bool is_quarter(float v) {
  return std::fabs(std::fabs(v) - 0.25f) <= e;
}
bool is_zero(float v) {
  return std::fabs(v) <= e;
}

// Letter of a glide with intrinsic part w.
char glide_letter(const Vec3& w) {
  char letter = 'g';
  if (near(w, 0.5f, 0, 0)) letter = 'a';
  if (near(w, 0, 0.5f, 0)) letter = 'b';
  if (near(w, 0, 0, 0.5f)) letter = 'c';
  if (near(w, 0.5f, 0.5f, 0) || near(w, 0, 0.5f, 0.5f) || near(w, 0.5f, 0, 0.5f) ||
      near(w, 0.5f, 0.5f, 0.5f) || near(w, -0.5f, 0.5f, 0.5f) || near(w, 0.5f, -0.5f, 0.5f) ||
      near(w, 0.5f, 0.5f, -0.5f)) {
    letter = 'n';
  }
  Vec3 v{};
  for (int i = 0; i < 3; ++i) {
    float u = w[i] + 10.0f;
    v[i] = u - std::trunc(u);
    if (v[i] > 0.5f) v[i] -= 1.0f;
  }
  bool d = (std::fabs(v[0] - 0.25f) <= e && is_quarter(v[1]) && is_zero(v[2])) ||
           (is_zero(v[0]) && std::fabs(v[1] - 0.25f) <= e && is_quarter(v[2])) ||
           (is_quarter(v[0]) && is_zero(v[1]) && std::fabs(v[2] - 0.25f) <= e) ||
           (is_quarter(v[0]) && is_quarter(v[1]) && is_quarter(v[2]) &&
            !near(v, -0.25f, -0.25f, -0.25f));
  if (d) letter = 'd';
  return letter;
}

std::string symbol_of_mirror_or_glide(const Mat3i& s, const Vec3& t) {
  Vec3 t1 = mat_vec(s, t);
  for (int i = 0; i < 3; ++i) t1[i] += t[i];
  if (!(t1[0] > e || t1[1] > e || t1[2] > e)) return "m " + text_of(solve_element(s, t));
  Vec3 t3{t1[0] / 2, t1[1] / 2, t1[2] / 2};
  Vec3 loc{t[0] - t3[0], t[1] - t3[1], t[2] - t3[2]};
  std::string plane = text_of(solve_element(s, loc));
  char letter = glide_letter(t3);
  if (letter == 'a' || letter == 'b' || letter == 'c') return std::string(1, letter) + " " + plane;
  return std::string(1, letter) + " (" + vector_text(t3) + ") " + plane;
}

std::string symbol_of_rotation(const Mat3i& s, const Vec3& t, int n) {
  Vec3 t1{0, 0, 0};
  Mat3i sm{};
  for (int i = 0; i < 3; ++i) sm[i][i] = 1;
  for (int m = 0; m < n; ++m) {
    Vec3 term = mat_vec(sm, t);
    for (int i = 0; i < 3; ++i) t1[i] += term[i];
    sm = mat_product(sm, s);
  }
  bool screw = std::fabs(t1[0]) > e || std::fabs(t1[1]) > e || std::fabs(t1[2]) > e;
  Vec3 t3{};
  Triple axis;
  if (screw) {
    for (int i = 0; i < 3; ++i) t3[i] = t1[i] / static_cast<float>(n);
    axis = solve_element(s, {t[0] - t3[0], t[1] - t3[1], t[2] - t3[2]});
  } else {
    axis = solve_element(s, t);
  }
  std::string symb = adjustl(sput("i2", n));
  symb = trim(symb);
  if (n != 2) symb += positive_sense(s, t, axis) ? "+" : "-";
  if (screw) symb += " (" + vector_text(t3) + ")";
  return symb + " " + text_of(axis);
}

std::string symbol_of_rotoinversion(const Mat3i& s, const Vec3& t, int n) {
  Triple point = solve_element(s, t);
  Vec3 t1 = mat_vec(s, t);
  for (int i = 0; i < 3; ++i) t1[i] += t[i];
  Triple axis;
  resolv_sist_3x3(minus_unit(mat_product(s, s)), negated(t1), axis.ts, axis.x, axis.ix);
  std::string symb = trim(adjustl(sput("i2", n)));
  symb += positive_sense(s, t, axis) ? "-" : "+";
  return symb + " " + trim(text_of(axis)) + "; " + text_of(point);
}

}  // namespace

std::string symmetry_symbol_xyz(std::string_view text) {
  const Symm_Scope symm_scope;
  const Math3d_Scope math3d_scope;
  Mat3i s{};
  Vec3 t{};
  read_xsym(text, 1, s, t);
  return symmetry_symbol_str(s, t);
}

namespace {

std::string symbol_text(const Mat3i& s, const Vec3& t) {
  int n = axes_rotation(s);
  std::string symb;
  if (n == 1) {
    if (std::fabs(t[0]) + std::fabs(t[1]) + std::fabs(t[2]) <= 3 * e) {
      symb = "1";
    } else {
      symb = "t (" + vector_text(t) + ")";
    }
  } else if (n == -1) {
    symb = "-1 " + vector_text({t[0] / 2, t[1] / 2, t[2] / 2});
  } else if (n == -2) {
    symb = symbol_of_mirror_or_glide(s, t);
  } else if (n >= 2 && n <= 6) {
    symb = symbol_of_rotation(s, t, n);
  } else if (n <= -3 && n >= -6) {
    symb = symbol_of_rotoinversion(s, t, n);
  }
  return trim(symb);
}

// A listing names every operator of a group, and groups are set up again and again: each
// symbol is kept, with the errors its working out raises, keyed by the exact operator and the
// tolerances in force.  A symbol worked out while an error was pending is not kept, since the
// pairs then do not tell what it raised itself.
struct Known_Symbol {
  std::string symb;
  bool symm_error;
  std::string symm_message;
  bool math3d_error;
  std::string math3d_message;
};
}  // namespace

std::string symmetry_symbol_str(const Mat3i& s, const Vec3& t) {
  const Symm_Scope symm_scope;
  const Math3d_Scope math3d_scope;
  thread_local std::unordered_map<Bit_Key<14>, Known_Symbol, Bit_Key_Hash> known;
  Bit_Key<14> key{};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) key[3 * i + j] = key_bits(s[i][j]);
    key[9 + i] = key_bits(t[i]);
  }
  key[12] = key_bits(epss);
  key[13] = key_bits(eps_math3d);
  if (const auto it = known.find(key); it != known.end()) {
    const Known_Symbol& k = it->second;
    if (k.symm_error) set_err_symm(k.symm_message);
    if (k.math3d_error) set_err_math3d(k.math3d_message);
    return k.symb;
  }
  const bool pending = err_symm || err_math3d;
  std::string symb = symbol_text(s, t);
  if (pending) return symb;
  if (known.size() >= 8192) known.clear();
  known.emplace(key, Known_Symbol{symb, err_symm, err_symm_mess, err_math3d, err_math3d_mess});
  return symb;
}

std::string get_string_resolv(const Vec3& t, const Vec3& x, const Vec3i& ix) {
  Vec3 xx = x;
  for (int i = 0; i < 3; ++i) {
    if (get_fraction_2dig(x[i]).find("1/2") != std::string::npos) {
      for (float& v : xx) v *= 2;
      break;
    }
  }
  std::string symb;
  for (int i = 0; i < 3; ++i) {
    if (std::fabs(xx[i]) > e) {
      std::string car = adjustl(get_fraction_2dig(xx[i]));
      car = trim(car);
      if (std::fabs(std::fabs(xx[i]) - 1) > e) {
        if (!car.empty() && car[0] == '+') car.erase(0, 1);
      } else {
        if (car == "+1") car.clear();
        if (car == "-1") car = "-";
      }
      symb += car;
      if (ix[i] >= 1 && ix[i] <= 3) symb += axis_letter[ix[i] - 1];
      if (t[i] != 0) symb += trim(get_fraction_2dig(t[i]));
    } else {
      std::string car = trim(adjustl(get_fraction_2dig(t[i])));
      if (!car.empty() && car[0] == '+') car.erase(0, 1);
      symb += car;
    }
    if (i < 2) symb += ", ";
  }
  return trim(pack_string(symb));
}

std::string get_symkov(const Mat3i& s) {
  const Symm_Scope symm_scope;
  int first = hexa ? 25 : 1;
  int last = hexa ? 36 : 24;
  for (int sign : {1, -1}) {
    for (int k = first; k <= last; ++k) {
      const Mat3i& m = mod6[k - 1];
      bool same = true;
      for (int i = 0; i < 3 && same; ++i) {
        for (int j = 0; j < 3 && same; ++j) same = (s[i][j] == sign * m[i][j]);
      }
      if (!same) continue;
      if (!hexa) {
        int n = (sign > 0) ? k : k + 24;
        return fixed(intsymoh[n - 1], 14) + " -> " + fixed(kov_oh[n - 1], 3);
      }
      int n = (sign > 0) ? k - 24 : k - 12;
      return fixed(intsymd6h[n - 1], 14) + " -> " + fixed(kov_d6h[n - 1], 3);
    }
  }
  set_err_symm(std::string(" Try to re-write your S.O. using a rotational part") +
               (hexa ? " identical to a S.O. of the space group P 6/m m m"
                     : " identical to a S.O. of the space group P m -3 m"));
  return {};
}

void resolv_sist_1x2(const Vec2i& w, float t, Vec2& ts, Vec2& x, Vec2i& ix) {
  const Math3d_Scope math3d_scope;
  Vec3 ts3{0, 0, 0}, x3{1, 1, 1};
  Vec3i ix3{0, 0, 0};
  solve_1x2_into(w[0], w[1], t, 0, 1, ts3, x3, ix3);
  ts = {ts3[0], ts3[1]};
  x = {x3[0], x3[1]};
  ix = {ix3[0], ix3[1]};
}

void resolv_sist_1x3(const Vec3i& w, float t, Vec3& ts, Vec3& x, Vec3i& ix) {
  start_triple(ts, x, ix);
  const Math3d_Scope math3d_scope;
  solve_1x3_into(to_double(w), t, ts, x, ix);
}

void resolv_sist_2x3(const std::array<Vec3i, 2>& w, const Vec2& t, Vec3& ts, Vec3& x, Vec3i& ix) {
  start_triple(ts, x, ix);
  const Math3d_Scope math3d_scope;
  solve_2x3_into({to_double(w[0]), to_double(w[1])}, {t[0], t[1]}, ts, x, ix);
}

void resolv_sist_3x3(const Mat3i& w, const Vec3& t, Vec3& ts, Vec3& x, Vec3i& ix) {
  start_triple(ts, x, ix);
  const Math3d_Scope math3d_scope;
  int det = determ_a_i(w);
  if (det != 0) {
    Mat3r wr{};
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) wr[i][j] = static_cast<float>(w[i][j]);
    }
    float dr = determ_a_r(wr);
    for (int c = 0; c < 3; ++c) {
      Mat3r wc = wr;
      for (int i = 0; i < 3; ++i) wc[i][c] = t[i];
      set_fixed(c, determ_a_r(wc) / dr, ts, x, ix);
    }
    return;
  }
  std::array<std::array<double, 3>, 3> rows{};
  std::array<double, 3> rhs{};
  std::array<bool, 3> zero_row{};
  int nzero = 0;
  for (int i = 0; i < 3; ++i) {
    rows[i] = to_double(w[i]);
    rhs[i] = t[i];
    zero_row[i] = (w[i][0] == 0 && w[i][1] == 0 && w[i][2] == 0);
    nzero += zero_row[i] ? 1 : 0;
  }
  if (nzero == 3) {
    if (std::fabs(t[0]) < eps_math3d && std::fabs(t[1]) < eps_math3d &&
        std::fabs(t[2]) < eps_math3d) {
      set_all_space(ts, x, ix);
    } else {
      set_math3d_error("Inconsistent system (3 x 3)");
    }
    return;
  }
  if (nzero == 2) {
    int r = !zero_row[0] ? 0 : (!zero_row[1] ? 1 : 2);
    solve_1x3_into(rows[r], rhs[r], ts, x, ix);
    return;
  }
  if (nzero == 1) {
    int z = zero_row[0] ? 0 : (zero_row[1] ? 1 : 2);
    int a = (z == 0) ? 1 : 0;
    int b = (z == 2) ? 1 : 2;
    solve_2x3_into({rows[a], rows[b]}, {rhs[a], rhs[b]}, ts, x, ix);
    return;
  }
  // Rows that are multiples of an earlier row take its form, with their right sides.
  for (int j = 1; j < 3; ++j) {
    for (int i = 0; i < j; ++i) {
      std::array<double, 3> c = cross(rows[i], rows[j]);
      if (c[0] != 0 || c[1] != 0 || c[2] != 0) continue;
      int k = 0;
      while (rows[i][k] == 0) ++k;
      double f = rows[i][k] / rows[j][k];
      rows[j] = rows[i];
      rhs[j] *= f;
      break;
    }
  }
  int other = 0;
  for (int j = 1; j < 3 && other == 0; ++j) {
    if (rows[j] != rows[0]) other = j;
  }
  if (other == 0) {
    solve_1x3_into(rows[0], rhs[0], ts, x, ix);
  } else {
    solve_2x3_into({rows[0], rows[other]}, {rhs[0], rhs[other]}, ts, x, ix);
  }
}

}  // namespace velmoria

// Operators as text: reading the x,y,z form, testing user generators, writing integer and real
// operators, and the action of a rotation on a magnetic moment.
#include "symmetry/operator_text.hpp"

#include <cmath>
#include <cstdlib>
#include <unordered_map>

#include "support/bit_key.hpp"
#include "support/fractions.hpp"
#include "support/layout.hpp"
#include "support/text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {

namespace {

constexpr float coefficient_tolerance = 0.0002f;
constexpr std::size_t work_field_len = 30;
constexpr std::size_t magmat_len = 19;
constexpr int cubic_rows = 24;
constexpr int hexagonal_rows = 12;

bool is_axis_letter(char c) {
  return c == 'x' || c == 'X' || c == 'y' || c == 'Y' || c == 'z' || c == 'Z';
}

int axis_column(char c) {
  if (c == 'x' || c == 'X') return 0;
  if (c == 'y' || c == 'Y') return 1;
  return 2;
}

std::string remove_blanks(std::string_view s) {
  std::string out;
  for (const char c : s) {
    if (c != ' ') out += c;
  }
  return out;
}

// Reads the text into rot (and tr when given); the worker behind the read_xsym variants.
void read_operator(std::string_view info, int istart, Mat3i& rot, Vec3* tr, bool check) {
  const Symm_Scope symm_scope;
  rot = Mat3i{};
  if (tr != nullptr) *tr = Vec3{};
  const int n = static_cast<int>(len_trim(info));
  int p = std::max(istart, 1);
  for (int i = 0; i < 3; ++i) {
    int sign = 1;
    int factor = 1;
    int const_sign = 1;
    float t = 0.0f;
    bool fraction = false;
    bool decimal = false;
    int ndec = 0;
    bool content = false;
    const int field_start = p;
    int j = p;
    for (; j <= n; ++j) {
      const char c = info[static_cast<std::size_t>(j - 1)];
      if (c == ' ') continue;
      if (c == ',' || c == '*') break;
      content = true;
      if (is_axis_letter(c)) {
        rot[i][axis_column(c)] = sign * factor;
        sign = 1;
        factor = 1;
      } else if (c == '+') {
        sign = 1;
      } else if (c == '-') {
        sign = -1;
      } else if (c == '/') {
        fraction = true;
      } else if (c == '.') {
        decimal = true;
      } else if (c >= '0' && c <= '9') {
        const int digit = c - '0';
        const_sign = sign;
        const bool before_letter =
            j < static_cast<int>(info.size()) && is_axis_letter(info[static_cast<std::size_t>(j)]);
        if (before_letter) {
          factor = digit;
        } else if (fraction) {
          if (digit != 0) t /= static_cast<float>(digit);  // a zero denominator is passed over
        } else if (decimal) {
          ++ndec;
          t += static_cast<float>(digit) / std::pow(10.0f, static_cast<float>(ndec));
        } else {
          t = 10.0f * t + static_cast<float>(digit);
        }
      } else {
        set_err_symm(std::string(" Invalid character... ") + c + " in operator string");
        return;
      }
    }
    if (!content) {
      set_err_symm(" Blank operator field");
      return;
    }
    // A field closed by "," or "*" moves on; one that ran to the end is read again.
    p = (j <= n) ? j + 1 : field_start;
    if (tr != nullptr) {
      // The integer arithmetic on operators (translations in twelfths or 24ths of a cell) must
      // not meet a translation out of all measure; such a translation is refused and not kept,
      // for a caller may go on with the operator before it looks at the error, also when a
      // later component of the text is found wrong.
      const float value = t * static_cast<float>(const_sign);
      if (!within_user_range(value)) {
        set_err_symm(" The translation of the operator is not a number within +/-1000000: " +
                     trim(info));
        *tr = Vec3{};
        return;
      }
      (*tr)[i] = value;
    }
  }
  if (check && determ_a_i(rot) == 0) {
    set_err_symm(" The above operator is wrong: " + trim(info));
  }
}

// Cuts the constant term off one packed, lower-case component of a generator.
std::string drop_constant(const std::string& field) {
  const auto has_letter = [](std::string_view s) {
    return s.find_first_of("xyz") != std::string_view::npos;
  };
  std::string f = field;
  const std::size_t n = f.size();
  for (const char sgn : {'+', '-'}) {
    if (f.size() != n) break;
    const std::size_t first = f.find(sgn);
    if (first == std::string::npos) continue;
    if (!has_letter(std::string_view(f).substr(first + 1))) {
      f = f.substr(0, first);
    } else {
      const std::size_t last = f.rfind(sgn);
      if (last > 0 && !has_letter(std::string_view(f).substr(0, last))) f = f.substr(last);
    }
  }
  return f;
}

const char* element_name(int trace, int det) {
  if (det == 1) {
    switch (trace) {
      case 3:
        return "1";
      case 2:
        return "6 or 61,62,...";
      case 1:
        return "4 or 41,42...";
      case 0:
        return "3 or 31/32";
      case -1:
        return "2 or 21";
      default:
        return "";
    }
  }
  if (det == -1) {
    switch (trace) {
      case 1:
        return "m or g";
      case 0:
        return "-3";
      case -1:
        return "-4";
      case -2:
        return "-6";
      case -3:
        return "-1";
      default:
        return "";
    }
  }
  return "";
}

// One term of a real operator row: coefficient c of the given letter.
std::string real_term(float c, char letter, bool first) {
  std::string s = remove_blanks(get_fraction_2dig(c));
  if (std::fabs(std::fabs(c) - 1.0f) > coefficient_tolerance) {
    if (first && !s.empty() && s[0] == '+') s.erase(0, 1);
  } else {
    const bool negative = !s.empty() && s[0] == '-';
    s = negative ? "-" : (first ? "" : "+");
  }
  const std::size_t slash = s.find('/');
  if (slash == std::string::npos) return s + letter;
  const std::size_t num_start = (!s.empty() && (s[0] == '+' || s[0] == '-')) ? 1 : 0;
  if (s.substr(num_start, slash - num_start) == "1") {
    s[num_start] = letter;
    return s;
  }
  return s.insert(slash, 1, letter);
}

}  // namespace

void read_xsym(std::string_view info, int istart, Mat3i& rot, Vec3& tr, bool check) {
  read_operator(info, istart, rot, &tr, check);
}

void read_xsym(std::string_view info, int istart, Mat3i& rot, bool check) {
  read_operator(info, istart, rot, nullptr, check);
}

void read_xsym(std::string_view info, int istart, Mat3r& rot, Vec3& tr, bool check) {
  Mat3i irot{};
  read_operator(info, istart, irot, &tr, check);
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) rot[i][j] = static_cast<float>(irot[i][j]);
  }
}

std::vector<std::string> split_generators(std::string_view list) {
  const std::string text = trim(adjustl(list));
  std::vector<std::string> pieces;
  std::size_t start = 0;
  while (true) {
    const std::size_t semicolon = text.find(';', start);
    const std::size_t end = semicolon == std::string::npos ? text.size() : semicolon;
    pieces.push_back(trim(adjustl(text.substr(start, end - start))));
    if (semicolon == std::string::npos) return pieces;
    start = semicolon + 1;
  }
}

bool check_generator(std::string_view symb, std::string* symb_type) {
  const Symm_Scope symm_scope;
  std::array<std::string, 3> fields;
  const std::size_t first = symb.find(',');
  const std::size_t last = symb.rfind(',');
  if (first == std::string_view::npos) {
    fields[0] = std::string(symb);
  } else {
    fields[0] = std::string(symb.substr(0, first));
    if (last > first) fields[1] = std::string(symb.substr(first + 1, last - first - 1));
    fields[2] = std::string(symb.substr(last + 1));
  }
  Mat3r m{};
  for (int i = 0; i < 3; ++i) {
    const std::string f = drop_constant(l_case(pack_string(fields[static_cast<std::size_t>(i)])));
    Vec3 row{};
    get_num_string(f, "xyz", row);
    m[static_cast<std::size_t>(i)] = row;
  }
  const float det = determ_a_r(m);
  if (symb_type != nullptr) {
    const std::string name = element_name(nint(trace_r(m)), nint(det));
    *symb_type = name.empty() ? std::string() : name + "  [undet. loc.]";
  }
  float dev = 0.0f;
  for (const auto& row : m) {
    for (const float v : row) dev += std::fabs(v - static_cast<float>(nint(v)));
  }
  if (!(dev <= coefficient_tolerance)) {
    set_err_symm("The matrix corresponding to a generator has non-integer values!");
    return false;
  }
  if (!(std::fabs(std::fabs(det) - 1.0f) <= coefficient_tolerance)) {
    set_err_symm(
        "The matrix corresponding to a generator has a determinant with absolute value "
        "different of 1.0");
    return false;
  }
  return true;
}

namespace {

std::string symsymbi_text(const Mat3i& rot, const Vec3& tr) {
  static constexpr char letters[3] = {'x', 'y', 'z'};
  std::string text;
  for (int i = 0; i < 3; ++i) {
    std::string field;
    for (int j = 0; j < 3; ++j) {
      const int r = rot[i][j];
      if (r == 1) {
        field += std::string("+") + letters[j];
      } else if (r == -1) {
        field += std::string("-") + letters[j];
      } else if (r != 0) {
        field += (r > 0 ? "+" : "") + remove_blanks(sput("i3,a", r, letters[j]));
      }
    }
    if (std::fabs(tr[i]) > coefficient_tolerance) field += get_fraction_2dig(tr[i]);
    field = remove_blanks(fixed(field, work_field_len));
    if (!field.empty() && field[0] == '+') field.erase(0, 1);
    if (i > 0) text += ',';
    text += field;
  }
  return text;
}

std::string symsymbr_text(const Mat3r& xop, const Vec3& xtr) {
  static constexpr char letters[3] = {'x', 'y', 'z'};
  std::string text;
  for (int i = 0; i < 3; ++i) {
    std::string field;
    bool any = false;
    float coefficient_sum = 0.0f;
    for (int j = 0; j < 3; ++j) {
      const float c = xop[i][j];
      coefficient_sum += std::fabs(c);
      if (c == 0.0f) continue;
      field += real_term(c, letters[j], !any);
      any = true;
    }
    if (std::fabs(xtr[i]) > coefficient_tolerance || !any) {
      std::string constant = remove_blanks(get_fraction_2dig(xtr[i]));
      if (coefficient_sum <= 3.0f * coefficient_tolerance && !constant.empty() &&
          constant[0] == '+') {
        constant.erase(0, 1);
      }
      field += constant;
    }
    if (i > 0) text += ',';
    text += field;
  }
  return remove_blanks(text);
}

// The texts of operators are asked for again and again (every operator of a group, every
// image of a special position): each is kept, keyed by the exact values of the operator and
// the tolerance in force.
template <class Matrix, class Make>
std::string remembered_text(const Matrix& m, const Vec3& t, Make make) {
  thread_local std::unordered_map<Bit_Key<13>, std::string, Bit_Key_Hash> known;
  Bit_Key<13> key{};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) key[3 * i + j] = key_bits(m[i][j]);
    key[9 + i] = key_bits(t[i]);
  }
  key[12] = key_bits(epss);
  if (const auto it = known.find(key); it != known.end()) return it->second;
  if (known.size() >= 8192) known.clear();
  std::string text = make(m, t);
  known.emplace(key, text);
  return text;
}

}  // namespace

std::string get_symsymbi(const Mat3i& rot, const Vec3& tr) {
  return remembered_text(rot, tr, symsymbi_text);
}

std::string get_symsymbr(const Mat3r& xop, const Vec3& xtr) {
  return remembered_text(xop, xtr, symsymbr_text);
}

std::string decodmatmag(const Mat3i& mat) {
  const Symm_Scope symm_scope;
  int s = 0;
  for (int sign : {1, -1}) {
    for (int n = 1; n <= cubic_rows + hexagonal_rows && s == 0; ++n) {
      bool same = true;
      for (int i = 0; i < 3 && same; ++i) {
        for (int j = 0; j < 3 && same; ++j) same = mat[i][j] == sign * mod6[n - 1][i][j];
      }
      if (same) s = sign * n;
    }
    if (s != 0) break;
  }
  const std::string blank(magmat_len, ' ');
  if (s == 0) {
    set_err_symm(
        " Try to re-write your S.O. using a rotational part identical to a S.O. of the space "
        "group P m -3 m or P 6/m m m");
    return blank;
  }
  const int n = std::abs(s);
  int column = 1;
  int row = 0;
  if (!hexa || n < cubic_rows) {
    row = s > 0 ? n : n + cubic_rows;
  } else if (n > cubic_rows) {
    column = 2;
    row = s > 0 ? n - cubic_rows : n - hexagonal_rows;
  }
  // Rows outside the table (n = 24 with hexagonal axes, or a hexagonal matrix with its sign
  // changed on cubic axes) have no text.
  if (row < 1 || row > static_cast<int>(magmat.size())) return blank;
  return fixed(magmat[static_cast<std::size_t>(row - 1)][static_cast<std::size_t>(column - 1)],
               magmat_len);
}

}  // namespace velmoria

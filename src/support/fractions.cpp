// Fractions: translations written as small fractions, and fraction text read back.
#include "support/fractions.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

#include "support/bit_key.hpp"
#include "support/layout.hpp"
#include "support/list_read.hpp"
#include "support/text.hpp"

namespace velmoria {

namespace {

std::string without_blanks(std::string_view s) {
  std::string r;
  std::copy_if(s.begin(), s.end(), std::back_inserter(r), [](char c) { return c != ' '; });
  return r;
}

std::string fraction_2dig_text(float v);

struct Fraction {
  int num = 0;
  int den = 0;
};

// The first num/den (numerators in the outer loop) that lies within epss of a; num 0
// when there is none.  The outer numerator loop writes 1/2 for 0.5, never 2/4.
Fraction find_fraction(float a, int max_num, int max_den) {
  for (int num = 1; num <= max_num; ++num) {
    for (int den = 2; den <= max_den; ++den) {
      if (negligibler(static_cast<float>(num) / static_cast<float>(den) - a)) return {num, den};
    }
  }
  return {};
}

// One component of a translation in at most 8 columns, before the blanks are removed.
std::string translation_component(float v) {
  std::string f;
  if (zbelongn(v)) {
    const int n = nint(v);
    f = without_blanks(v <= 0.0F ? sput("i3", n) : sput("a,i2", "+", n));
  } else if (const Fraction q = find_fraction(std::abs(v), 9, 9); q.num != 0) {
    f = sput("2(a,i1)", v > 0.0F ? "+" : "-", q.num, "/", q.den);
  } else {
    f = without_blanks(v < 0.0F ? sput("f8.4", v) : sput("a,f7.3", "+", v));
  }
  if (const std::size_t plus = f.find('+'); plus != std::string::npos) f[plus] = ' ';
  return fixed(f, 8);
}

// The layout of a signed fraction, each number in as many columns as it has digits.
const char* fraction_layout(int num, int den) {
  static constexpr const char* layouts[2][2] = {{"a,i1,a,i1", "a,i1,a,i2"},
                                                {"a,i2,a,i1", "a,i2,a,i2"}};
  return layouts[num < 10 ? 0 : 1][den < 10 ? 0 : 1];
}

}  // namespace

std::string frac_trans_1dig(const Vec3& v) {
  std::string text = "(        ,        ,        )";
  for (std::size_t i = 0; i < 3; ++i) {
    text.replace(1 + 9 * i, 8, translation_component(v[i]));
  }
  return without_blanks(text);
}

std::string get_fraction_2dig(float v) {
  // Operators of a group ask for the same few values again and again: each text is kept,
  // keyed by the value and the tolerance in force.
  thread_local std::unordered_map<std::uint64_t, std::string> known;
  const std::uint64_t key = (static_cast<std::uint64_t>(key_bits(v)) << 32) | key_bits(epss);
  if (const auto it = known.find(key); it != known.end()) return it->second;
  if (known.size() >= 4096) known.clear();
  std::string text = fraction_2dig_text(v);
  known.emplace(key, text);
  return text;
}

namespace {

std::string fraction_2dig_text(float v) {
  if (zbelongn(v)) {
    const int n = nint(v);
    return without_blanks(v <= 0.0F ? sput("i4", n) : sput("a,i3", "+", n));
  }
  if (const Fraction q = find_fraction(std::abs(v), 24, 24); q.num != 0) {
    return sput(fraction_layout(q.num, q.den), v > 0.0F ? "+" : "-", q.num, "/", q.den);
  }
  return without_blanks(v <= 0.0F ? sput("f10.4", v) : sput("a,f9.4", "+", v));
}

// One real read from text; on failure err_string is set with the text that failed.
bool read_real(std::string_view text, float& value) {
  if (read_list(text, value)) return true;
  set_err_string(" The provided symbol is illegal: " + trim(text));
  return false;
}

}  // namespace

float read_fract(std::string_view str) {
  const std::string term = trim(adjustl(str));
  if (term.empty() || term == "+") return 1.0F;
  if (term == "-") return -1.0F;

  const std::size_t p = str.find('/');
  float value = 0.0F;
  if (p == std::string_view::npos) {
    if (!read_real(str, value)) return 0.0F;
    return value;
  }
  float numerator = 0.0F;
  float denominator = 0.0F;
  if (!read_real(str.substr(0, p), numerator)) return 0.0F;
  if (!read_real(str.substr(p + 1), denominator)) return 0.0F;
  return numerator / denominator;  // a zero denominator gives an infinite value, untested
}

Vec3 snap_to_fractions(Vec3 k) {
  for (float& c : k) {
    for (float f : frac) {
      if (std::fabs(std::fabs(c) - f) <= fraction_snap_tolerance) {
        c = std::copysign(f, c);
        break;
      }
    }
  }
  return k;
}

}  // namespace velmoria

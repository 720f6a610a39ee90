// Fixed-length blank-padded text, and the scanners of words and numbers.
#include "support/text.hpp"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "support/fractions.hpp"

namespace velmoria {

VELMORIA_ERROR_PAIR_DEFINITIONS(string, std::string::npos)

// ---------------------------------------------------------------------------------------
// Fixed-width helpers

std::size_t len_trim(std::string_view s) {
  const std::size_t p = s.find_last_not_of(' ');
  return p == std::string_view::npos ? 0 : p + 1;
}

std::string trim(std::string_view s) {
  return std::string(s.substr(0, len_trim(s)));
}

bool is_blank(std::string_view s) {
  return len_trim(s) == 0;
}

std::string adjustl(std::string_view s) {
  const std::size_t p = s.find_first_not_of(' ');
  if (p == std::string_view::npos) return std::string(s.size(), ' ');
  std::string r(s.substr(p));
  r.append(p, ' ');
  return r;
}

std::string fixed(std::string_view s, std::size_t n) {
  std::string r(s.substr(0, std::min(n, s.size())));
  r.resize(n, ' ');
  return r;
}

bool same_text(std::string_view a, std::string_view b) {
  return a.substr(0, len_trim(a)) == b.substr(0, len_trim(b));
}

// ---------------------------------------------------------------------------------------
// Case and blanks

std::string u_case(std::string_view text) {
  std::string r(text);
  ucase(r);
  return r;
}

std::string l_case(std::string_view text) {
  std::string r(text);
  const std::size_t n = len_trim(r);
  for (std::size_t i = 0; i < n; ++i) {
    if (r[i] >= 'A' && r[i] <= 'Z') r[i] = static_cast<char>(r[i] - 'A' + 'a');
  }
  return r;
}

void ucase(std::string& text) {
  const std::size_t n = len_trim(text);
  for (std::size_t i = 0; i < n; ++i) {
    if (text[i] >= 'a' && text[i] <= 'z') text[i] = static_cast<char>(text[i] - 'a' + 'A');
  }
}

std::string pack_string(std::string_view text) {
  const std::size_t n = len_trim(text);
  std::string r;
  r.reserve(n);
  for (std::size_t i = 0; i < n; ++i) {
    if (text[i] != ' ') r.push_back(text[i]);
  }
  r.resize(n, ' ');
  return r;
}

// ---------------------------------------------------------------------------------------
// Words

void cutst(std::string& line1, int* nlong1, std::string* line2, int* nlong2,
           std::size_t line2_len) {
  if (nlong1 != nullptr) *nlong1 = 0;
  if (nlong2 != nullptr) *nlong2 = 0;
  if (line2 != nullptr) line2->clear();

  line1 = adjustl(line1);
  if (is_blank(line1)) return;

  const std::size_t length = line1.size();
  const std::size_t blank = line1.find(' ');
  std::string word;
  if (length == 1 || blank == std::string::npos) {
    // The whole variable is the word; nothing is left behind it.
    word = trim(line1);
    line1.assign(length, ' ');
  } else {
    word = line1.substr(0, blank);
    line1 = fixed(adjustl(std::string_view(line1).substr(blank)), length);
  }
  if (line2_len > 0 && word.size() > line2_len) word.resize(line2_len);

  if (nlong2 != nullptr) *nlong2 = static_cast<int>(word.size());
  if (line2 != nullptr) *line2 = word;
  if (nlong1 != nullptr) *nlong1 = static_cast<int>(len_trim(line1));
}

// ---------------------------------------------------------------------------------------
// Numbers

namespace {

constexpr std::string_view getnum_bad_word =
    "The variable cannot be computed as a number in GETNUM ";
constexpr std::string_view getnum_bad_digit = "Limits of digit variable exceeded in GETNUM";
// Exponents beyond this overflow or underflow a real anyway; larger ones are held at it.
constexpr int max_exponent_digits_value = 9999;

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// 10 to the power n (n >= 0), as a real.
float ten_to(int n) {
  double p = 1.0;
  for (int i = 0; i < n && p < 1.0e40; ++i) p *= 10.0;
  return static_cast<float>(p);
}

struct Scanned {
  float value = 0.0F;
  int ivalue = 0;
};

void fail(std::string_view mess) {
  set_err_string(mess);
}

// One word of capitals, digits, "." and "-": the signed mantissa times ten to the exponent.
// Returns false (with err_string set) when the word is no number.
bool scan_number(const std::string& word, Scanned& out) {
  const bool negative = word[0] == '-';
  const std::size_t start = negative ? 1 : 0;
  const std::size_t e_pos = std::min(word.find('E', start), word.size());

  float mantissa = 0.0F;
  std::int64_t integer = 0;
  bool behind_point = false;
  int place = 0;
  for (std::size_t i = start; i < e_pos; ++i) {
    const char c = word[i];
    if (c == '.') {
      behind_point = true;  // a second point is passed over
    } else if (c == '-') {
      fail(getnum_bad_digit);
      return false;
    } else if (behind_point) {
      ++place;
      mantissa += static_cast<float>(c - '0') * (1.0F / ten_to(place));
    } else {
      mantissa = mantissa * 10.0F + static_cast<float>(c - '0');
      if (integer <= std::numeric_limits<int>::max()) integer = integer * 10 + (c - '0');
    }
  }

  int exponent = 0;
  bool negative_exponent = false;
  for (std::size_t i = e_pos + 1; i < word.size(); ++i) {
    const char c = word[i];
    if (i == e_pos + 1 && c == '-') {
      negative_exponent = true;
    } else if (is_digit(c)) {
      exponent = std::min(exponent * 10 + (c - '0'), max_exponent_digits_value);
    } else {
      fail(getnum_bad_digit);
      return false;
    }
  }

  const int ival =
      static_cast<int>(std::min<std::int64_t>(integer, std::numeric_limits<int>::max()));
  out.ivalue = negative ? -ival : ival;
  const float signed_mantissa = negative ? -mantissa : mantissa;
  // A zero mantissa stays zero whatever the exponent (no zero times an infinite power).
  if (signed_mantissa == 0.0F) {
    out.value = signed_mantissa;
    return true;
  }
  out.value = negative_exponent ? signed_mantissa * (1.0F / ten_to(exponent))
                                : signed_mantissa * ten_to(exponent);
  return true;
}

bool is_number_word(std::string_view word) {
  return std::all_of(word.begin(), word.end(),
                     [](char c) { return c == 'E' || c == '.' || c == '-' || is_digit(c); });
}

}  // namespace

// Every number found is counted in iv; only the first `size` are stored.
void getnum(std::string_view line, float* vet, int* ivet, int size, int& iv) {
  const String_Scope string_scope;
  iv = 0;
  const int stored = (vet != nullptr && ivet != nullptr) ? std::max(size, 0) : 0;
  std::fill(vet, vet + stored, 0.0F);
  std::fill(ivet, ivet + stored, 0);

  std::string rest = u_case(line);
  std::string word;
  while (true) {
    cutst(rest, nullptr, &word);
    if (word.empty()) return;
    if (!is_number_word(word)) {
      fail(getnum_bad_word);
      return;
    }
    Scanned number;
    if (!scan_number(word, number)) return;
    if (iv < stored) {
      vet[iv] = number.value;
      ivet[iv] = number.ivalue;
    }
    if (iv < std::numeric_limits<int>::max()) ++iv;
  }
}

// ---------------------------------------------------------------------------------------
// Lines

namespace {
// A record is read 256 characters at a time: only those are seen.
constexpr std::size_t record_width = 256;
}  // namespace

int number_lines(std::string_view content, std::string_view input_string) {
  const std::string stop = u_case(trim(input_string));
  int n = 0;
  std::size_t pos = 0;
  while (pos < content.size()) {
    std::size_t end = content.find('\n', pos);
    if (end == std::string_view::npos) end = content.size();
    const std::string_view record = content.substr(pos, end - pos);
    pos = end + 1;
    if (!stop.empty()) {
      const std::string seen = u_case(adjustl(record.substr(0, record_width)));
      if (seen.compare(0, stop.size(), stop) == 0) return n;
    }
    if (n < std::numeric_limits<int>::max()) ++n;
  }
  return n;
}

// ---------------------------------------------------------------------------------------
// Coefficients of an operator component

namespace {

// Positions of "+" and "-" outside double-quoted text, in order.
std::vector<std::size_t> sign_positions(std::string_view str) {
  std::vector<std::size_t> pos;
  bool quoted = false;
  for (std::size_t i = 0; i < str.size(); ++i) {
    if (str[i] == '"') {
      quoted = !quoted;
    } else if (!quoted && (str[i] == '+' || str[i] == '-')) {
      pos.push_back(i);
    }
  }
  return pos;
}

std::string without_blanks(std::string_view s) {
  std::string r;
  std::copy_if(s.begin(), s.end(), std::back_inserter(r), [](char c) { return c != ' '; });
  return r;
}

// Up to three terms; a "-" stays with the term behind it, a "+" is dropped.  With three
// signs the first one is taken to open the text.
std::vector<std::string> split_terms(std::string_view str, const std::vector<std::size_t>& signs) {
  std::vector<std::size_t> cuts;
  if (signs.size() == 3) {
    cuts = {0, signs[1], signs[2]};
  } else {
    cuts.push_back(0);
    cuts.insert(cuts.end(), signs.begin(), signs.end());
  }
  std::vector<std::string> terms;
  for (std::size_t k = 0; k < cuts.size(); ++k) {
    const std::size_t from = (signs.size() == 3 && k == 0) ? signs[0] : cuts[k];
    const std::size_t to = k + 1 < cuts.size() ? cuts[k + 1] : str.size();
    std::string term = without_blanks(str.substr(from, to - from));
    if (!term.empty() && term[0] == '+') term.erase(0, 1);
    terms.push_back(term);
  }
  return terms;
}

// The term with its letter at `at` replaced: by "1" where the letter stands for a unit
// coefficient followed by a fraction bar or alone, by nothing otherwise.
std::string replace_letter(std::string term, std::size_t at) {
  const bool slash_next = at + 1 < term.size() && term[at + 1] == '/';
  const bool unit = (at == 0 && (term.size() == 1 || slash_next)) ||
                    (at > 0 && term[at - 1] == '-' && slash_next);
  term[at] = unit ? '1' : ' ';
  return without_blanks(term);
}

}  // namespace

void get_num_string(std::string_view str, std::string_view code, std::array<float, 3>& v) {
  v = {0.0F, 0.0F, 0.0F};
  const std::vector<std::size_t> signs = sign_positions(str);
  if (signs.size() > 3) return;

  const std::size_t nletters = std::min<std::size_t>(code.size(), 3);
  std::array<bool, 3> met = {false, false, false};
  for (const std::string& term : split_terms(str, signs)) {
    std::size_t letter = nletters;
    std::size_t at = std::string::npos;
    for (std::size_t l = 0; l < nletters && at == std::string::npos; ++l) {
      at = term.find(code[l]);
      letter = l;
    }
    if (at == std::string::npos) continue;  // a constant term
    if (met[letter]) {
      set_err_string(" The provided symbol is illegal: " + trim(str));
      return;
    }
    met[letter] = true;
    v[letter] = read_fract(replace_letter(term, at));
  }
}

}  // namespace velmoria

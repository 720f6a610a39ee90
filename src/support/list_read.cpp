// List-directed reading of one input line: one value per token, in target order.
#include "support/list_read.hpp"

#include <charconv>
#include <limits>

namespace velmoria {

namespace {

bool ends_token(char c) {
  return c == ' ' || c == ',' || c == '/';
}
bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

struct Token {
  bool null = true;     // an empty token: the item keeps its value
  bool quoted = false;  // a text written between quotes
  std::string text;
};

struct Scan {
  std::string_view line;
  std::size_t p = 0;

  bool at_end() const { return p >= line.size(); }
  void skip_blanks() {
    while (p < line.size() && line[p] == ' ') ++p;
  }
  // The separator behind a token: blanks, with at most one comma among them.  A "/" is
  // left for the next look.
  void skip_separator() {
    skip_blanks();
    if (p < line.size() && line[p] == ',') {
      ++p;
      skip_blanks();
    }
  }
  // A repeat count "r*" at the present place; 0 when there is none, -1 for a count of 0.
  long repeat_count() {
    std::size_t q = p;
    long r = 0;
    while (q < line.size() && is_digit(line[q])) {
      if (r < std::numeric_limits<int>::max()) r = r * 10 + (line[q] - '0');
      ++q;
    }
    if (q == p || q >= line.size() || line[q] != '*') return 0;
    p = q + 1;
    return r == 0 ? -1 : r;
  }
  // A text between quotes ' or ", a doubled quote standing for one; false when the
  // closing quote is missing or the token goes on behind it.
  bool quoted_text(std::string& text) {
    const char q = line[p++];
    text.clear();
    for (;;) {
      if (p >= line.size()) return false;
      char c = line[p++];
      if (c != q) {
        text += c;
      } else if (p < line.size() && line[p] == q) {
        text += q;
        ++p;
      } else {
        break;
      }
    }
    return p >= line.size() || ends_token(line[p]);
  }
  // The value behind a repeat count or standing alone; false for a bad quoted text.
  bool value(Token& tk) {
    tk = Token{};
    if (at_end() || ends_token(line[p])) return true;  // "r*" alone: empty values
    tk.null = false;
    if (line[p] == '\'' || line[p] == '"') {
      tk.quoted = true;
      return quoted_text(tk.text);
    }
    std::size_t q = p;
    while (q < line.size() && !ends_token(line[q])) ++q;
    tk.text.assign(line.substr(p, q - p));
    p = q;
    return true;
  }
};

// A real: optional sign, digits with or without a point, optional exponent behind
// e, E, d or D with its own optional sign.
template <class T>
bool parse_real(std::string_view s, T& out) {
  std::string buf;
  std::size_t k = 0;
  if (k < s.size() && (s[k] == '+' || s[k] == '-')) {
    if (s[k] == '-') buf += '-';
    ++k;
  }
  int digits = 0;
  bool point = false;
  for (; k < s.size(); ++k) {
    char c = s[k];
    if (is_digit(c)) {
      ++digits;
    } else if (c == '.' && !point) {
      point = true;
    } else {
      break;
    }
    buf += c;
  }
  if (digits == 0) return false;
  if (k < s.size()) {
    char c = s[k];
    if (c != 'e' && c != 'E' && c != 'd' && c != 'D') return false;
    buf += 'e';
    ++k;
    if (k < s.size() && (s[k] == '+' || s[k] == '-')) {
      if (s[k] == '-') buf += '-';
      ++k;
    }
    std::size_t first = k;
    for (; k < s.size() && is_digit(s[k]); ++k) buf += s[k];
    if (k == first || k != s.size()) return false;
  }
  T v{};
  auto r = std::from_chars(buf.data(), buf.data() + buf.size(), v, std::chars_format::general);
  if (r.ec != std::errc() || r.ptr != buf.data() + buf.size()) return false;
  out = v;
  return true;
}

// An integer: optional sign and digits only.
bool parse_int(std::string_view s, int& out) {
  std::size_t k = 0;
  bool neg = false;
  if (k < s.size() && (s[k] == '+' || s[k] == '-')) {
    neg = s[k] == '-';
    ++k;
  }
  if (k == s.size()) return false;
  std::string buf = neg ? "-" : "";
  for (; k < s.size(); ++k) {
    if (!is_digit(s[k])) return false;
    buf += s[k];
  }
  int v = 0;
  auto r = std::from_chars(buf.data(), buf.data() + buf.size(), v);
  if (r.ec != std::errc() || r.ptr != buf.data() + buf.size()) return false;
  out = v;
  return true;
}

struct Assign {
  const Token& tk;
  bool operator()(float* v) const { return !tk.quoted && parse_real(tk.text, *v); }
  bool operator()(double* v) const { return !tk.quoted && parse_real(tk.text, *v); }
  bool operator()(int* v) const { return !tk.quoted && parse_int(tk.text, *v); }
  bool operator()(std::string* v) const {
    *v = tk.text;
    return true;
  }
};

}  // namespace

bool read_list_targets(std::string_view line, const ReadTargets& targets) {
  Scan sc{line, 0};
  sc.skip_blanks();
  std::size_t k = 0;
  while (k < targets.size()) {
    if (sc.at_end()) return false;  // the line ended before all items were read
    char c = sc.line[sc.p];
    if (c == '/') return true;  // the items left keep their values
    if (c == ',') {             // an empty token
      ++sc.p;
      sc.skip_blanks();
      ++k;
      continue;
    }
    long r = sc.repeat_count();
    if (r < 0) return false;  // a repeat count of zero
    if (r == 0) r = 1;
    Token tk;
    if (!sc.value(tk)) return false;
    sc.skip_separator();
    // A repeated value is converted once per kind of item: the items behind the first of a
    // kind take a copy of its value.
    std::size_t first = targets.size();
    for (; r > 0 && k < targets.size(); --r, ++k) {
      if (tk.null) continue;
      if (first < targets.size() && targets[first].index() == targets[k].index()) {
        std::visit([&](auto* from) { *std::get<decltype(from)>(targets[k]) = *from; },
                   targets[first]);
        continue;
      }
      if (!std::visit(Assign{tk}, targets[k])) return false;
      first = k;
    }
  }
  return true;
}

}  // namespace velmoria

// The symbolic text of Fourier coefficients.
//
// Texts are held trimmed; a place past the end of a text reads as a blank, as it would in a
// blank-padded field.  Places in the comments are 1-based.
#include "analysis/fourier_text.hpp"

#include <algorithm>
#include <cmath>

#include "support/layout.hpp"
#include "support/numeric.hpp"
#include "support/text.hpp"

namespace velmoria {

const std::array<char, 36> coef = {'u', 'v', 'w', 'p', 'q', 'r', 'a', 'b', 'c', 'd', 'e', 'f',
                                   'g', 'l', 'm', 'n', 's', 't', 'U', 'V', 'W', 'P', 'Q', 'R',
                                   'A', 'B', 'C', 'D', 'E', 'F', 'G', 'L', 'M', 'N', 'S', 'T'};

const std::array<std::string_view, 50> numer = {
    "r0", "r1", "r2", "r3", "r4", "r5", "r6", "r7", "r8", "r9", "p0", "p1", "p2",
    "p3", "p4", "p5", "p6", "p7", "p8", "p9", "q0", "q1", "q2", "q3", "q4", "q5",
    "q6", "q7", "q8", "q9", "s0", "s1", "s2", "s3", "s4", "s5", "s6", "s7", "s8",
    "s9", "t0", "t1", "t2", "t3", "t4", "t5", "t6", "t7", "t8", "t9"};

namespace {

// The text cut to n characters and trimmed.
std::string cut(std::string s, std::size_t n) {
  if (s.size() > n) s.resize(n);
  return trim(s);
}

// The character at place p, a blank past the end.
char at(const std::string& s, int p) {
  return (p >= 1 && p <= static_cast<int>(s.size())) ? s[p - 1] : ' ';
}

// The places from .. to, inclusive; empty when to < from.
std::string sub(const std::string& s, int from, int to) {
  from = std::max(from, 1);
  to = std::min(to, static_cast<int>(s.size()));
  if (to < from) return {};
  return s.substr(from - 1, to - from + 1);
}

// Blanks the places from .. to that the text holds.
void blank(std::string& s, int from, int to) {
  for (int p = std::max(from, 1); p <= std::min(to, static_cast<int>(s.size())); ++p) {
    s[p - 1] = ' ';
  }
}

// Inserts ins before place p (blank-padding a text that is shorter).
void insert_before(std::string& s, int p, std::string_view ins) {
  if (static_cast<int>(s.size()) < p - 1) s.resize(p - 1, ' ');
  s.insert(static_cast<std::size_t>(p - 1), ins);
}

// Place of the first ch, 0 when there is none.
int first(const std::string& s, std::string_view ch) {
  const std::size_t p = s.find(ch);
  return p == std::string::npos ? 0 : static_cast<int>(p) + 1;
}

std::string packed(std::string_view s) {
  return trim(pack_string(s));
}

// Whether every term of a component holds the constant ch: a component without signs must
// hold it or be "0"; otherwise each piece, cut at the signs, from its start up to and
// including the start of the next.
bool holds_everywhere(const std::string& symb, const std::string& ch) {
  const std::string text = trim(symb);
  const std::vector<int> pos = plus_minus_sep(text);
  if (pos.empty()) return text.find(ch) != std::string::npos || text == "0";
  if (static_cast<int>(pos.size()) > max_component_signs) return false;
  std::vector<int> starts;
  if (pos.front() != 1) starts.push_back(1);
  starts.insert(starts.end(), pos.begin(), pos.end());
  const int n = static_cast<int>(text.size());
  for (std::size_t k = 0; k < starts.size(); ++k) {
    const int end = k + 1 < starts.size() ? starts[k + 1] : n;
    if (sub(text, starts[k], end).find(ch) == std::string::npos) return false;
  }
  return true;
}

// The list of a vector with each of its three fields negated: a leading "-" goes, any other
// leading character but "0" gets one.
std::string negated(std::string l) {
  const int p = first(l, ",");
  const std::size_t last = l.rfind(',');
  const int q = last == std::string::npos ? 0 : static_cast<int>(last) + 1;
  for (int x : {q + 1, p + 1, 1}) {
    const char c = at(l, x);
    if (c == '-') {
      l[x - 1] = ' ';
    } else if (c != '0') {
      insert_before(l, x, "-");
    }
  }
  return packed(l);
}

// The value of the constant labelled ch, 0 when no constant has that label.
float constant_value(const std::string& ch, const std::vector<float>& realnum) {
  for (std::size_t m = 0; m < realnum.size() && m < numer.size(); ++m) {
    if (numer[m] == ch) return realnum[m];
  }
  return 0.0f;
}

}  // namespace

std::vector<int> plus_minus_sep(std::string_view text) {
  std::vector<int> pos;
  const std::size_t n = len_trim(text);
  for (std::size_t i = 0; i < n; ++i) {
    if (text[i] == '+' || text[i] == '-') pos.push_back(static_cast<int>(i) + 1);
  }
  return pos;
}

std::vector<int> rep_char(std::string_view text, std::string_view ch) {
  std::vector<int> pos;
  const std::string_view t = text.substr(0, len_trim(text));
  const std::string_view c = ch.substr(0, len_trim(ch));
  if (c.empty()) return pos;
  for (std::size_t p = t.find(c); p != std::string_view::npos; p = t.find(c, p + 1)) {
    pos.push_back(static_cast<int>(p) + 1);
  }
  return pos;
}

std::string common_fact(std::array<std::string, 3>& symb) {
  const std::string vector =
      cut("(" + trim(symb[0]) + "," + trim(symb[1]) + "," + trim(symb[2]) + ")", cfourier_len);
  const int dot = first(vector, ".");
  if (dot < 3) return vector;
  const std::string ch = sub(vector, dot - 2, dot - 1);
  for (const std::string& s : symb) {
    if (!holds_everywhere(s, ch)) return vector;
  }
  for (std::string& s : symb) {
    std::string t = trim(s);
    for (int p : rep_char(t, ch)) blank(t, p, p + 2);
    s = packed(t);
  }
  return cut(ch + ".(" + symb[0] + "," + symb[1] + "," + symb[2] + ")", cfourier_len);
}

std::string phase_fact(std::string_view a, std::string_view b) {
  std::string c = cut(trim(a) + trim(b), cfourier_len);
  const int i = first(c, ".");
  const int j = static_cast<int>(c.rfind('.')) + 1;
  const int k = first(c, "i");
  const int n = static_cast<int>(c.size());
  if (i == 0 || i == j || k == 0) return c;
  const std::string l1 = sub(c, i + 2, k - 3);
  const std::string l2 = sub(c, j + 2, n - 1);
  if (l1 == l2) {
    blank(c, i, k - 2);
    blank(c, j, n - 1);
  } else if (l1 == negated(l2)) {
    blank(c, i, k - 2);
    blank(c, j, n - 1);
    if (k - 1 >= 1) c[k - 2] = '-';
  } else {
    return c;
  }
  c = packed(c);
  const int colon = first(c, ":");
  if (colon > 0) insert_before(c, colon + 1, " (");
  const int im = first(c, "i");
  if (im > 0) insert_before(c, im + 1, ".");
  return cut(c + ".(" + l1 + ")", cfourier_len);
}

std::string polish_fourier(std::string c, const std::vector<float>& realnum) {
  const int colon = first(c, ":");
  if (colon > 0 && at(c, colon + 1) != ' ') insert_before(c, colon + 1, " ");
  const int im = first(c, "i");
  if (im > 0 && at(c, im + 1) != '.') insert_before(c, im + 1, ".");
  c = cut(c, cfourier_len);
  const int r = first(c, ").(");
  if (r == 0) return c;
  const std::string ch2 = sub(c, r - 2, r - 1);
  const std::string ch1 = sub(c, r - 7, r - 6);
  const char sign = at(c, r - 5);
  const std::string aux = cut(sub(c, r + 2, static_cast<int>(c.size())), symb_len);
  const float c1 = constant_value(ch1, realnum);
  float c2 = constant_value(ch2, realnum);
  if (sign == '-') c2 = -c2;
  const float theta = std::atan2(c2, c1) * 0.15915494f;
  const char* turn = theta < 0 ? " . exp{-2.pi.i." : " . exp{ 2.pi.i.";
  return cut(c + " = " + aux + turn + sput("f10.7", std::abs(theta)) + "}", cfourier_len);
}

void add_term(std::string& symb, float value, int j, const std::vector<float>& realnum) {
  std::string term = value <= 0 ? "-" : "+";
  if (zbelongn(value)) {
    const int n = nint(value);
    if (n != 1 && n != -1) term += sput("i1", std::abs(n));
  } else {
    for (std::size_t m = 0; m < realnum.size() && m < numer.size(); ++m) {
      if (std::abs(std::abs(value) - realnum[m]) < 0.001f) {
        term += std::string(numer[m]) + ".";
        break;
      }
    }
  }
  if (j >= 1 && j <= static_cast<int>(coef.size())) term += coef[j - 1];
  symb = cut(trim(symb) + term, symb_len);
}

}  // namespace velmoria

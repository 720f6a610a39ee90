// The writer of field layouts and of records of blank-separated items.
//
// A layout is parsed once into a small tree of fields (cached per thread, keyed by its
// text) and then walked with the items: data fields (a, aN, iN, fN.D) take one item each,
// position fields (Nx, tN) move the column of the record, "/" ends the record.  The walk
// stops at the first data field that finds no item left; when items remain at the end of
// the layout, the record ends and the walk goes on from the last outermost bracket group.
#include "support/layout.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <unordered_map>

namespace velmoria {

namespace {

constexpr int max_layout_number = 99999;  // largest width or repetition in a layout
constexpr int max_decimals = 99;          // largest D of fN.D
constexpr int max_group_depth = 16;       // deepest nesting of bracket groups
constexpr long max_expansion = 1000000;   // most fields or blanks a layout can expand to
constexpr int list_integer_width = 12;    // width of an integer among blank-separated items
constexpr int list_real_width = 16;       // width of a real among blank-separated items
constexpr int list_real_digits = 9;       // significant digits of a real there

// ---------------------------------------------------------------- parsed layouts

enum class FieldKind { a, i, f, x, t, slash, group };

struct Field {
  FieldKind kind = FieldKind::a;
  int rep = 1;                  // repetition
  int w = 0;                    // width (a: 0 = the text's own length); blanks of x; column of t
  int d = 0;                    // decimals of f
  std::vector<Field> children;  // fields of a bracket group
};

struct Layout {
  std::vector<Field> fields;
  std::size_t revert = 0;        // where the layout goes on when items remain at its end
  bool revert_has_data = false;  // whether fields from `revert` on take items
};

bool is_data(FieldKind k) {
  return k == FieldKind::a || k == FieldKind::i || k == FieldKind::f;
}

bool has_data(const std::vector<Field>& fields, std::size_t from) {
  for (std::size_t k = from; k < fields.size(); ++k) {
    const Field& fd = fields[k];
    if (is_data(fd.kind)) return true;
    if (fd.kind == FieldKind::group && has_data(fd.children, 0)) return true;
  }
  return false;
}

struct Parser {
  std::string_view s;
  std::size_t p = 0;

  [[noreturn]] void fail(const char* what) const {
    throw std::logic_error("layout \"" + std::string(s) + "\": " + what + " at position " +
                           std::to_string(p + 1));
  }
  void skip_blanks() {
    while (p < s.size() && s[p] == ' ') ++p;
  }
  bool at_digit() const { return p < s.size() && s[p] >= '0' && s[p] <= '9'; }
  char peek_lower() const {
    if (p >= s.size()) return '\0';
    char c = s[p];
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
  }
  // An unsigned number; -1 when no digit stands here.
  int number() {
    if (!at_digit()) return -1;
    int v = 0;
    while (at_digit()) {
      v = v * 10 + (s[p] - '0');
      if (v > max_layout_number) fail("number too large");
      ++p;
    }
    return v;
  }
  int positive_number(const char* what) {
    int v = number();
    if (v <= 0) fail(what);
    return v;
  }

  // `mult`: the product of the repetitions of the groups around the field.
  Field item(int depth, long mult) {
    skip_blanks();
    int n = number();
    if (n == 0) fail("repetition or width 0");
    skip_blanks();
    Field fd;
    fd.rep = n < 0 ? 1 : n;
    if (mult * fd.rep > max_expansion) fail("repetitions too large");
    char c = peek_lower();
    ++p;
    switch (c) {
      case '(':
        if (depth >= max_group_depth) fail("groups nested too deep");
        fd.kind = FieldKind::group;
        fd.children = list(depth + 1, mult * fd.rep, true);
        break;
      case 'a':
        fd.kind = FieldKind::a;
        fd.w = number();
        if (fd.w == 0) fail("width 0");
        if (fd.w < 0) fd.w = 0;
        break;
      case 'i':
        fd.kind = FieldKind::i;
        fd.w = positive_number("i field needs a width");
        break;
      case 'f':
        fd.kind = FieldKind::f;
        fd.w = positive_number("f field needs a width");
        if (p >= s.size() || s[p] != '.') fail("f field needs .D");
        ++p;
        fd.d = number();
        if (fd.d < 0) fail("f field needs decimals");
        if (fd.d > max_decimals) fail("too many decimals");
        break;
      case 'x':
        fd.kind = FieldKind::x;
        fd.w = fd.rep;
        fd.rep = 1;
        break;
      case 't':
        if (n > 0) fail("repetition before t");
        fd.kind = FieldKind::t;
        fd.w = positive_number("t field needs a column");
        break;
      case '/':
        fd.kind = FieldKind::slash;
        break;
      default:
        --p;
        fail("unknown field");
    }
    return fd;
  }

  // Fields up to the end of the text, or up to the ")" that closes a group.
  std::vector<Field> list(int depth, long mult, bool in_group) {
    std::vector<Field> fields;
    skip_blanks();
    if (p >= s.size() && !in_group) return fields;  // the empty layout: one empty record
    for (;;) {
      fields.push_back(item(depth, mult));
      skip_blanks();
      if (p >= s.size()) {
        if (in_group) fail("missing )");
        return fields;
      }
      if (s[p] == ')') {
        if (!in_group) fail("unmatched )");
        ++p;
        return fields;
      }
      if (s[p] == ',') {
        ++p;
        continue;
      }
      // A "/" delimits itself: no comma is needed before or after it.
      if (s[p] == '/' || fields.back().kind == FieldKind::slash) continue;
      fail("expected , between fields");
    }
  }
};

Layout parse_layout(std::string_view text) {
  Parser ps{text, 0};
  Layout lay;
  lay.fields = ps.list(0, 1, false);
  for (std::size_t k = lay.fields.size(); k-- > 0;) {
    if (lay.fields[k].kind == FieldKind::group) {
      lay.revert = k;
      break;
    }
  }
  lay.revert_has_data = has_data(lay.fields, lay.revert);
  return lay;
}

struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view v) const { return std::hash<std::string_view>{}(v); }
};

const Layout& cached_layout(std::string_view text) {
  thread_local std::unordered_map<std::string, Layout, TextHash, std::equal_to<>> cache;
  auto it = cache.find(text);
  if (it == cache.end()) it = cache.emplace(std::string(text), parse_layout(text)).first;
  return it->second;
}

// ---------------------------------------------------------------- numbers as text

// Decimal digits of an integer, with its sign.
std::string_view int_text(std::int64_t v, char (&buf)[24]) {
  auto r = std::to_chars(buf, buf + sizeof buf, v);
  return {buf, static_cast<std::size_t>(r.ptr - buf)};
}

// Number of binary digits behind the point of a finite double: its exact decimal
// expansion has just as many decimals.
int binary_decimals(double a) {
  if (a == 0.0) return 0;
  int e = 0;
  double f = std::frexp(std::fabs(a), &e);  // a = f 2^e, f in [0.5, 1)
  auto m = static_cast<std::uint64_t>(std::ldexp(f, 53));
  int tz = 0;
  while ((m & 1u) == 0) {
    m >>= 1;
    ++tz;
  }
  int s = 53 - e - tz;
  return s < 0 ? 0 : s;
}

// The magnitude of a finite double rounded to d decimals, halves away from zero, as
// "digits.digits" (with a point even for d = 0).  printf rounds its exact expansion
// correctly except for an exact tie, which it sends to the even digit; an exact tie at
// d decimals is a number with exactly d+1 binary decimals, and that one is carried by hand.
std::string fixed_magnitude(double v, int d) {
  double a = std::fabs(v);
  char buf[420];  // 309 integer digits, the point, up to max_decimals + 1 decimals
  bool tie = binary_decimals(a) == d + 1;
  int n = std::snprintf(buf, sizeof buf, "%#.*f", tie ? d + 1 : d, a);
  std::string s(buf, static_cast<std::size_t>(n));
  if (!tie) return s;
  s.pop_back();  // the 5 behind the last kept decimal
  std::size_t k = s.size();
  while (k-- > 0) {
    if (s[k] == '.') continue;
    if (s[k] == '9') {
      s[k] = '0';
      continue;
    }
    ++s[k];
    return s;
  }
  return "1" + s;
}

// fN.D of a real; empty when it does not fit (the caller writes asterisks).
std::string fixed_text(double v, int w, int d) {
  if (std::isnan(v)) return "NaN";
  if (std::isinf(v)) return v < 0 ? "-Inf" : "Inf";
  std::string s = fixed_magnitude(v, d);
  if (std::signbit(v)) s.insert(s.begin(), '-');
  if (static_cast<int>(s.size()) > w) {
    // The zero before the point is dropped first, when there are decimals behind it.
    std::size_t z = std::signbit(v) ? 1 : 0;
    if (d > 0 && s.compare(z, 2, "0.") == 0) s.erase(z, 1);
  }
  if (static_cast<int>(s.size()) > w) return {};
  return s;
}

// A real in its natural form: nine significant digits, in fixed point from 0.1 up to
// below 1e8 and for zero, otherwise as a mantissa and an exponent.
std::string real_text(double v) {
  if (!std::isfinite(v)) return fixed_text(v, 8, 0);
  double a = std::fabs(v);
  if (a == 0.0) return fixed_text(v, 64, list_real_digits - 1);
  if (a >= 0.1 && a < 1e8) {
    int int_digits = a < 1.0 ? 0 : static_cast<int>(std::floor(std::log10(a))) + 1;
    int d = list_real_digits - int_digits;
    std::string s = fixed_text(v, 64, d < 1 ? 1 : d);
    if (!s.empty()) return s;
  }
  char buf[40];
  int n = std::snprintf(buf, sizeof buf, "%.*E", list_real_digits - 1, v);
  return std::string(buf, static_cast<std::size_t>(n));
}

std::string natural_text(const Item& it) {
  switch (it.kind) {
    case Item::Kind::integer: {
      char buf[24];
      return std::string(int_text(it.ival, buf));
    }
    case Item::Kind::real:
      return real_text(it.rval);
    case Item::Kind::text:
      break;
  }
  return std::string(it.text());
}

// ---------------------------------------------------------------- the record

// Writes the records of a layout straight onto the end of an output unit: the record being
// built is the text behind `start`.
struct Writer {
  const Items& items;
  std::string& out;
  std::size_t start = 0;  // where the record being built begins in out
  std::size_t next = 0;   // next item to write
  std::size_t pos = 0;    // present column, 0-based
  bool stopped = false;   // a data field found no item

  void end_record() {
    out += '\n';
    start = out.size();
    pos = 0;
  }
  // Makes room up to column `end` of the record: blanks fill a gap.
  void reach(std::size_t end) {
    if (start + end > out.size()) out.resize(start + end, ' ');
  }
  // Writes s at the present column: blanks fill a gap, columns already written are
  // written over.
  void place(std::string_view s) {
    reach(pos + s.size());
    out.replace(start + pos, s.size(), s);
    pos += s.size();
  }
  // n copies of c at the present column.
  void place_fill(std::size_t n, char c) {
    reach(pos + n);
    std::fill_n(out.begin() + static_cast<std::ptrdiff_t>(start + pos), n, c);
    pos += n;
  }
  void place_right(std::string_view s, int w) {
    auto width = static_cast<std::size_t>(w);
    if (s.size() > width) {
      place_fill(width, '*');
      return;
    }
    place_fill(width - s.size(), ' ');
    place(s);
  }
  // aN: a longer text gives its first N characters, a shorter one stands right-justified.
  void place_text(std::string_view s, int w) {
    auto width = static_cast<std::size_t>(w);
    if (w == 0) {
      place(s);
    } else if (s.size() >= width) {
      place(s.substr(0, width));
    } else {
      place_fill(width - s.size(), ' ');
      place(s);
    }
  }
  void put_integer(std::int64_t v, int w) {
    char buf[24];
    place_right(int_text(v, buf), w);
  }
  void put_real_as_integer(double v, int w) {
    // Beyond 2^62 the integer would not fit any field: asterisks.
    if (!std::isfinite(v) || std::fabs(v) >= 4.6e18) {
      place_fill(static_cast<std::size_t>(w), '*');
      return;
    }
    put_integer(std::llround(v), w);  // halves away from zero
  }
  void put_fixed(double v, int w, int d) {
    std::string s = fixed_text(v, w, d);
    if (s.empty()) s.assign(static_cast<std::size_t>(w), '*');
    place_right(s, w);
  }

  void write(const Field& fd, const Item& it) {
    if (it.kind == Item::Kind::text) {
      place_text(it.text(), fd.w);  // a text keeps to the field's columns
      return;
    }
    switch (fd.kind) {
      case FieldKind::a: {
        std::string s = natural_text(it);
        if (fd.w == 0) {
          place(s);
        } else {
          place_right(s, fd.w);
        }
        break;
      }
      case FieldKind::i:
        if (it.kind == Item::Kind::integer) {
          put_integer(it.ival, fd.w);
        } else {
          put_real_as_integer(it.rval, fd.w);
        }
        break;
      case FieldKind::f:
        put_fixed(it.kind == Item::Kind::real ? it.rval : static_cast<double>(it.ival), fd.w, fd.d);
        break;
      default:
        break;
    }
  }

  void run(const std::vector<Field>& fields, std::size_t from) {
    for (std::size_t k = from; k < fields.size(); ++k) {
      const Field& fd = fields[k];
      for (int r = 0; r < fd.rep; ++r) {
        switch (fd.kind) {
          case FieldKind::group:
            run(fd.children, 0);
            if (stopped) return;
            break;
          case FieldKind::x:
            pos += static_cast<std::size_t>(fd.w);
            break;
          case FieldKind::t:
            pos = static_cast<std::size_t>(fd.w - 1);
            break;
          case FieldKind::slash:
            end_record();
            break;
          default:
            if (next >= items.size()) {
              stopped = true;
              return;
            }
            write(fd, items[next++]);
        }
      }
    }
  }
};

}  // namespace

void append_layout(std::string& out, std::string_view layout, const Items& items) {
  const Layout& lay = cached_layout(layout);
  Writer wr{items, out, out.size(), 0, 0, false};
  wr.run(lay.fields, 0);
  if (!wr.stopped && wr.next < items.size() && !lay.revert_has_data) {
    throw std::logic_error("layout \"" + std::string(layout) + "\" has no field for " +
                           std::to_string(items.size() - wr.next) + " more item(s)");
  }
  while (!wr.stopped && wr.next < items.size()) {
    wr.end_record();
    wr.run(lay.fields, lay.revert);
  }
  wr.end_record();
}

std::string format_layout(std::string_view layout, const Items& items) {
  std::string out;
  append_layout(out, layout, items);
  return out;
}

std::string format_items(const Items& items) {
  std::string out = " ";
  for (const Item& it : items) {
    switch (it.kind) {
      case Item::Kind::text:
        out += it.text();
        break;
      case Item::Kind::integer:
      case Item::Kind::real: {
        std::string s = natural_text(it);
        std::size_t w = it.kind == Item::Kind::integer ? list_integer_width : list_real_width;
        if (s.size() < w) out.append(w - s.size(), ' ');
        out += s;
        break;
      }
    }
  }
  out += '\n';
  return out;
}

}  // namespace velmoria

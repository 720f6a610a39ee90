// Output records in field layouts, and records of blank-separated items.
//
// Every line the program writes goes through put() or put_items().  A layout is a
// comma-separated list of fields: a, aN, iN, fN.D, Nx, tN, / and repetitions of a field
// or of a bracketed group, e.g. "a,3f8.4,/,a,a2" or "2(a,i1)".  Items are texts,
// integers or reals; arrays and vectors expand into their elements.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace velmoria {

// One item of a record.  A text item refers to the caller's text, which lives until the
// record is written; a temporary text (or a single character) is held by the item itself.
struct Item {
  enum class Kind { text, integer, real };
  Kind kind = Kind::text;
  std::string_view view;
  std::string owned;
  bool has_owned = false;
  std::int64_t ival = 0;
  double rval = 0.0;  // a float is held exactly
  std::string_view text() const { return has_owned ? std::string_view(owned) : view; }
};
using Items = std::vector<Item>;

inline void add_item(Items& items, std::string_view s) {
  items.push_back({Item::Kind::text, s, {}, false, 0, 0.0});
}
inline void add_item(Items& items, const std::string& s) {
  add_item(items, std::string_view(s));
}
inline void add_item(Items& items, std::string&& s) {
  items.push_back({Item::Kind::text, {}, std::move(s), true, 0, 0.0});
}
inline void add_item(Items& items, const char* s) {
  add_item(items, std::string_view(s));
}
inline void add_item(Items& items, char c) {
  items.push_back({Item::Kind::text, {}, std::string(1, c), true, 0, 0.0});
}
template <class T>
requires(std::is_integral_v<T> && !std::is_same_v<T, char> &&
         !std::is_same_v<T, bool>) void add_item(Items& items, T v) {
  items.push_back({Item::Kind::integer, {}, {}, false, static_cast<std::int64_t>(v), 0.0});
}
template <class T>
requires std::is_floating_point_v<T>
void add_item(Items& items, T v) {
  items.push_back({Item::Kind::real, {}, {}, false, 0, static_cast<double>(v)});
}
template <class T, std::size_t N>
void add_item(Items& items, const std::array<T, N>& a) {
  for (const auto& e : a) add_item(items, e);
}
template <class T>
void add_item(Items& items, const std::vector<T>& a) {
  for (const auto& e : a) add_item(items, e);
}
template <class T, std::size_t E>
void add_item(Items& items, std::span<T, E> a) {
  for (const auto& e : a) add_item(items, e);
}

template <class... A>
Items make_items(A&&... a) {
  Items items;
  items.reserve(sizeof...(A) + 8);
  (add_item(items, std::forward<A>(a)), ...);
  return items;
}

// The records that `layout` makes of `items`, each ended by a line feed.
std::string format_layout(std::string_view layout, const Items& items);
// The same records appended to `out`.
void append_layout(std::string& out, std::string_view layout, const Items& items);

// The record of blank-separated items, ended by a line feed: one leading blank, then each
// item in its natural width.
std::string format_items(const Items& items);

// Append the records of a layout to an output unit.
template <class... A>
void put(std::string& out, std::string_view layout, A&&... a) {
  append_layout(out, layout, make_items(std::forward<A>(a)...));
}

// Append a record of blank-separated items to an output unit.
template <class... A>
void put_items(std::string& out, A&&... a) {
  out += format_items(make_items(std::forward<A>(a)...));
}

// Internal write: the records of a layout as one text without the final line feed
// (records after the first are joined by line feeds).
template <class... A>
std::string sput(std::string_view layout, A&&... a) {
  std::string s = format_layout(layout, make_items(std::forward<A>(a)...));
  if (!s.empty() && s.back() == '\n') s.pop_back();
  return s;
}

}  // namespace velmoria

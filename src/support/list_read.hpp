// List-directed reading of one input line.
//
// Items are read one per token; tokens are separated by blanks or by a comma, and a comma
// between two other separators gives an empty token that leaves its item unchanged.
// "r*v" stands for v repeated r times ("r*" for r empty tokens); a "/" ends the read and
// leaves the remaining items as they were.  A line that ends before all items are read,
// or a token that is not a value of its item's kind, is a read failure.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velmoria {

using ReadTarget = std::variant<float*, double*, int*, std::string*>;
using ReadTargets = std::vector<ReadTarget>;

inline void add_target(ReadTargets& t, float& v) {
  t.emplace_back(&v);
}
inline void add_target(ReadTargets& t, double& v) {
  t.emplace_back(&v);
}
inline void add_target(ReadTargets& t, int& v) {
  t.emplace_back(&v);
}
inline void add_target(ReadTargets& t, std::string& v) {
  t.emplace_back(&v);
}
template <class T, std::size_t N>
void add_target(ReadTargets& t, std::array<T, N>& a) {
  for (auto& e : a) add_target(t, e);
}
template <class T, std::size_t E>
void add_target(ReadTargets& t, std::span<T, E> a) {
  for (auto& e : a) add_target(t, e);
}
template <class T>
void add_target(ReadTargets& t, std::vector<T>& a) {
  for (auto& e : a) add_target(t, e);
}

// Reads the targets in order from `line`; true on success, false on a read failure.
// Items read before a failure keep their new values.
bool read_list_targets(std::string_view line, const ReadTargets& targets);

template <class... R>
bool read_list(std::string_view line, R&&... r) {
  ReadTargets t;
  (add_target(t, r), ...);
  return read_list_targets(line, t);
}

}  // namespace velmoria

// Keys made of the exact bit patterns of a few numbers, for remembering the texts of
// operators and values that a run asks for again and again.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace velmoria {

template <std::size_t N>
using Bit_Key = std::array<std::uint32_t, N>;

// The bits of a 4-byte number (float or int) as a key component.
template <class T>
requires(sizeof(T) == 4) constexpr std::uint32_t key_bits(T v) {
  return std::bit_cast<std::uint32_t>(v);
}

struct Bit_Key_Hash {
  template <std::size_t N>
  std::size_t operator()(const Bit_Key<N>& key) const noexcept {
    std::uint64_t h = 1469598103934665603ULL;  // FNV-1a over the words
    for (std::uint32_t v : key) h = (h ^ v) * 1099511628211ULL;
    return static_cast<std::size_t>(h);
  }
};

}  // namespace velmoria

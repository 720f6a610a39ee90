// One libFuzzer target: VELMORIA_FUZZ_TARGET names the entry point it drives.  A finding of
// the entry is a crash of the fuzzer, with the finding on standard error.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz/entry_points.hpp"

namespace {

velmoria::fuzz::Entry entry_named(std::string_view name) {
  for (const auto& target : velmoria::fuzz::targets) {
    if (name == target.name) return target.entry;
  }
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const velmoria::fuzz::Entry entry = entry_named(VELMORIA_FUZZ_TARGET);
  const std::string finding = entry(std::string_view(reinterpret_cast<const char*>(data), size));
  if (!finding.empty()) {
    std::fprintf(stderr, "velmoria fuzz finding: %s\n", finding.c_str());
    std::abort();
  }
  return 0;
}

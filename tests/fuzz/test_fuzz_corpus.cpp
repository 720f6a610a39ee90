// Replays the regression corpus of the fuzzers: every input that once failed and a minimised
// corpus of each target, fed to the entry points the fuzzers drive.  Under the sanitizer build
// a crash or undefined behaviour on any of them stops the test.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "fuzz/entry_points.hpp"

namespace {

namespace fs = std::filesystem;

std::string file_bytes(const fs::path& p) {
  std::ifstream f(p, std::ios::binary);
  std::ostringstream ss;
  ss << f.rdbuf();
  return ss.str();
}

TEST(FuzzCorpus, EveryInputOfEveryTargetIsHandled) {
  const fs::path root = fs::path(VELMORIA_SOURCE_DIR) / "tests" / "fuzz_corpus";
  for (const auto& target : velmoria::fuzz::targets) {
    const fs::path dir = root / target.name;
    ASSERT_TRUE(fs::is_directory(dir)) << dir;
    int inputs = 0;
    for (const auto& file : fs::directory_iterator(dir)) {
      ++inputs;
      EXPECT_EQ(target.entry(file_bytes(file.path())), "") << file.path();
    }
    EXPECT_GT(inputs, 0) << "no corpus for " << target.name;
  }
}

}  // namespace

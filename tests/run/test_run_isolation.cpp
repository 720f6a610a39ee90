// A run leaves nothing behind: the same control files give byte-identical outputs run alone,
// one after another in either order, and in two threads at once.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "run/run_driver.hpp"
#include "support/numeric.hpp"
#include "symmetry/records.hpp"

namespace velmoria {
namespace {

namespace fs = std::filesystem;

struct Case {
  std::string name, text;
};

std::vector<Case> control_files() {
  std::vector<Case> cases;
  const fs::path root(VELMORIA_SOURCE_DIR);
  for (const fs::path& dir : {root / "examples", root / "tests" / "e2e" / "cases"}) {
    for (const auto& entry : fs::directory_iterator(dir)) {
      if (entry.path().extension() != ".vrn") continue;
      std::ifstream f(entry.path(), std::ios::binary);
      std::ostringstream ss;
      ss << f.rdbuf();
      cases.push_back({entry.path().stem().string(), ss.str()});
    }
  }
  return cases;
}

std::string outputs(const Case& c) {
  const Run_Output out = run_velmoria({c.name, c.text, ""});
  return out.console + '\f' + out.result + '\f' + out.block;
}

// Each run in a thread of its own, which starts with the library's initial state.
std::vector<std::string> alone(const std::vector<Case>& cases) {
  std::vector<std::string> out(cases.size());
  for (std::size_t i = 0; i < cases.size(); ++i) {
    std::thread([&, i] { out[i] = outputs(cases[i]); }).join();
  }
  return out;
}

// All runs one after another in one thread, first to last or last to first.
std::vector<std::string> in_sequence(const std::vector<Case>& cases, bool backwards) {
  std::vector<std::string> out(cases.size());
  for (std::size_t n = 0; n < cases.size(); ++n) {
    const std::size_t i = backwards ? cases.size() - 1 - n : n;
    out[i] = outputs(cases[i]);
  }
  return out;
}

TEST(RunIsolation, OutputsDoNotDependOnWhatRanBefore) {
  const std::vector<Case> cases = control_files();
  ASSERT_GE(cases.size(), 8u);
  const std::vector<std::string> reference = alone(cases);

  // A thread whose library state a caller has disturbed: another tolerance, error flags set,
  // hexagonal axes and a centred lattice left over.
  set_epsg_sp(0.1f);
  set_err_symm("left over");
  err_mathgen = true;
  hexa = true;
  nlat = 2;
  lat_ch = 'I';
  EXPECT_EQ(in_sequence(cases, false), reference);
  EXPECT_EQ(epss_val(), 0.1f);  // the caller's tolerance is given back
  set_epsg_default();
  EXPECT_EQ(in_sequence(cases, true), reference);

  std::vector<std::string> first, second;
  std::thread a([&] { first = in_sequence(cases, false); });
  std::thread b([&] { second = in_sequence(cases, true); });
  a.join();
  b.join();
  EXPECT_EQ(first, reference);
  EXPECT_EQ(second, reference);
}

}  // namespace
}  // namespace velmoria

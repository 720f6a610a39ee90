// Whole control files run in-process: each tests/e2e/cases/NAME.vrn is run with the code NAME
// and its result and block files are compared line by line with NAME.vmr and NAME.tw, texts
// checked by hand against the layouts of each section.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "run/run_driver.hpp"
#include "run/run_state.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

namespace fs = std::filesystem;

const fs::path cases_dir = fs::path(VELMORIA_SOURCE_DIR) / "tests" / "e2e" / "cases";
const fs::path examples_dir = fs::path(VELMORIA_SOURCE_DIR) / "examples";

std::string read_text(const fs::path& path) {
  std::ifstream f(path, std::ios::binary);
  std::ostringstream ss;
  ss << f.rdbuf();
  return ss.str();
}

using testing::expect_same_lines;

TEST(ControlFiles, ResultAndBlockFilesAsExpected) {
  std::vector<fs::path> inputs;
  for (const auto& entry : fs::directory_iterator(cases_dir)) {
    if (entry.path().extension() == ".vrn") inputs.push_back(entry.path());
  }
  std::sort(inputs.begin(), inputs.end());
  ASSERT_FALSE(inputs.empty());
  for (const fs::path& input : inputs) {
    const std::string name = input.stem().string();
    SCOPED_TRACE(name);
    const Run_Output out = run_velmoria({name, read_text(input), ""});
    fs::path expected = input;
    expect_same_lines(name + ".vmr", out.result, read_text(expected.replace_extension(".vmr")));
    expect_same_lines(name + ".tw", out.block, read_text(expected.replace_extension(".tw")));
  }
}

std::size_t count(const std::string& text, const std::string& what) {
  std::size_t n = 0;
  for (std::size_t p = text.find(what); p != std::string::npos; p = text.find(what, p + 1)) ++n;
  return n;
}

// Every shipped example runs to its end, and every site shows its decomposition, functions
// and coefficients, with one complete block per site and contained representation.
TEST(ControlFiles, ExamplesRunToTheirEnd) {
  int examples = 0;
  for (const auto& entry : fs::directory_iterator(examples_dir)) {
    if (entry.path().extension() != ".vrn") continue;
    ++examples;
    const std::string name = entry.path().stem().string();
    SCOPED_TRACE(name);
    const Run_Output out = run_velmoria({name, read_text(entry.path()), ""});
    EXPECT_NE(out.console.find(" => Normal End ... Results in file: " + name + ".vmr"),
              std::string::npos);
    const int nsites = out.state->sv.nsites;
    ASSERT_GT(nsites, 0);
    std::size_t blocks = 0;
    for (const Site_Analysis& an : out.state->analyses) blocks += an.bases.size();
    EXPECT_EQ(count(out.result, " -> GAMMA(Magnetic):") + count(out.result, " -> GAMMA(Mechanic):"),
              static_cast<std::size_t>(nsites));
    EXPECT_EQ(count(out.result, " => Basis functions of Representation IRrep("), blocks);
    EXPECT_GE(count(out.result, "       Sk("), blocks);
    EXPECT_EQ(count(out.block, " ----- Block-of-lines for RCF start just below this line"), blocks);
    EXPECT_EQ(count(out.block, " ----- End-of-block of lines for RCF "), blocks);
  }
  EXPECT_GE(examples, 4);
}

}  // namespace
}  // namespace velmoria

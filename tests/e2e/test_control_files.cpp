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
#include "text_lines.hpp"

namespace velmoria {
namespace {

namespace fs = std::filesystem;

const fs::path cases_dir = fs::path(VELMORIA_SOURCE_DIR) / "tests" / "e2e" / "cases";

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

}  // namespace
}  // namespace velmoria

// A failure of the space-group setup reaches the caller of set_spacegroup and the run's
// output, with the message of the routine that failed.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "run/run_driver.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"

namespace velmoria {
namespace {

const std::string bad_character = " Invalid character... q in operator string";

// A failure inside any road of the space-group setup reaches the caller with the message of
// the routine that failed, and leaves no operators: (road, text or operators, message).
TEST(SetupErrors, EachFailureReportsItsMessage) {
  const struct {
    const char* road;               // nullptr: the setup chooses
    std::vector<std::string> text;  // the symbol, or the operators for GEN and FIX
    std::string message;
  } cases[] = {
      {"FIX", {"x,y,z", "-x,-y,z+q"}, bad_character},  // the reading of the operator finds the q
      {"GEN",
       {"-x,-y,z", "2x,y,z"},
       "The matrix corresponding to a generator has a determinant with absolute value "
       "different of 1.0"},
      {"GEN", {"x/2,y,z"}, "The matrix corresponding to a generator has non-integer values!"},
      {"GEN", {}, " Generators should be provided in GEN calling Set_SpaceGroup"},
      {"HAL", {"Q 1"}, " IBRAVL is Equal Zero"},
      {"HAL", {"P 4 3 -1"}, " Dimension of Table exceeded (II)"},  // no group
      {"ITC",
       {"Q 9 9"},
       " Problems in SpaceGroup: Q 9 9 => the HM symbol or the number is incorrect "},
      {"XYZ", {"14"}, " Problems in SpaceGroup"},
      {nullptr, {"P 9 X"}, "Error in the provided symbol/number of the space group"},
      {nullptr, {"231"}, " Number of Space Group out of limits"},
      // The faults of a Hermann-Mauguin symbol.
      {"HMS", {"P 5"}, " The fivefold axis is not allowed"},
      {"HMS", {"P M/N M M"}, " There is more than one plane within the same symmetry direction"},
  };
  for (const auto& c : cases) {
    const bool listed =
        c.road != nullptr && (std::string(c.road) == "GEN" || std::string(c.road) == "FIX");
    const std::string symbol = listed || c.text.empty() ? "" : c.text[0];
    SCOPED_TRACE(symbol);
    Space_Group_Type spg;
    init_err_symm();
    if (c.road == nullptr) {
      set_spacegroup(symbol, spg);
    } else if (listed && !c.text.empty()) {
      set_spacegroup(symbol, spg, &c.text, static_cast<int>(c.text.size()), c.road);
    } else {
      set_spacegroup(symbol, spg, nullptr, std::nullopt, c.road);
    }
    EXPECT_TRUE(err_symm);
    EXPECT_EQ(err_symm_mess, c.message);
    EXPECT_TRUE(spg.symop.empty());
    EXPECT_EQ(err_symm_depth, 0);
  }
  // Texts too long or empty fail without running past their fields; a good call afterwards
  // starts from a clean state.
  Space_Group_Type g;
  for (const std::string& text : {std::string(500, 'P'), std::string(":::")}) {
    set_spacegroup(text, g);
    EXPECT_TRUE(err_symm) << text;
  }
  // R 3 2 on rhombohedral axes with the centre off the origin: five generators for the Hall
  // symbol; the operators stay, unnamed.
  std::vector<std::string> gen = {"z,x,y", "-y,-x,-z", "-x+1/2,-y+1/2,-z+1/2"};
  set_spacegroup(" ", g, &gen, 3, "GEN");
  EXPECT_EQ(err_symm_mess, " Error in generators");
  EXPECT_EQ(g.setting, "Non-Conventional (user-given operators)");
  set_spacegroup("2", g);
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(g.multip, 2);
}

std::string last_line(std::string t) {
  while (!t.empty() && t.back() == '\n') t.pop_back();
  const std::size_t nl = t.rfind('\n');
  return nl == std::string::npos ? t : t.substr(nl + 1);
}

TEST(RunErrors, GeneratorThatCannotBeReadStopsTheRunWithItsMessage) {
  const Run_Output out =
      run_velmoria({"t", "GEN  -x,-y,z+q\nKVEC  0 0 0  GM\nVMODE AXI\nATOM  Cu  CU  0 0 0\n", ""});
  const std::string stop = " =>" + bad_character + ": -x,-y,z+q";
  EXPECT_EQ(last_line(out.result), stop);
  EXPECT_EQ(last_line(out.console), stop);
  EXPECT_EQ(out.result.find("Information on Space Group"), std::string::npos);
}

}  // namespace
}  // namespace velmoria

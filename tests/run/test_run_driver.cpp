// Whole runs through the run function: the stops of a run and the reader's refusals of
// bad input, compared line by line with text worked out from the layouts.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "run/run_driver.hpp"
#include "run/run_state.hpp"
#include "support/layout.hpp"
#include "support/numeric.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

Run_Output run_text(const std::string& text) {
  return run_velmoria({"test", text, ""});
}

using testing::has_line;
using testing::lines_of;

TEST(RunDriver, KvecIsRoundedToFractionsAndLabelled) {
  const Run_Output out = run_text(
      "GEN  x+1/2,y+1/2,z; -x,-y,z\n"
      "kvec  0.333 -0.3331 0.245 X\n");
  // The fractions within 0.001 become single-precision fractions; 0.245, 0.005 from 1/4,
  // stays as read.
  EXPECT_TRUE(has_line(out.result, " => Propagation vector:   0.3333 -0.3333  0.2450"));
  EXPECT_TRUE(has_line(out.result, " => BZ-point labelled as  X"));
  EXPECT_TRUE(has_line(out.result, " => List of space group generators: x+1/2,y+1/2,z; -x,-y,z"));
  EXPECT_EQ(out.console,
            " => Calculation of basis functions omitted ... no ATOM keywords given! \n"
            " => Normal End ... Results in file: test.vmr\n");
}

// k equivalent to -k at (0,0,1/2): the sign of the moments alternates with the cell index L3
// alone, (-1)^{2k.L}.  (k = 0 and (1/2,0,0) are among the end-to-end cases.)
TEST(RunDriver, RealCoefficientsAtTheZoneBoundaryAlongC) {
  const Run_Output out = run_text("SPGR P -1\nKVEC 0 0 0.5\nATOM Fe X 0.1 0.2 0.3\n");
  EXPECT_NE(out.result.find("m(L,j) = Sk(j)(-1)^{0 L1 + 0 L2 + 1 L3 }"), std::string::npos);
}

TEST(RunDriver, TheTwoHundredAndFiftyFirstSiteIsRefused) {
  std::string text = "SPGR P 1\nKVEC 0 0 0 GM\n";
  for (int i = 0; i < 251; ++i) text += "ATOM A" + std::to_string(i % 10) + " X 0.1 0.2 0.3\n";
  const Run_Output out = run_text(text);
  const auto lines = lines_of(out.result);
  const auto at = std::find(lines.begin(), lines.end(), " => No. of sites:  251");
  ASSERT_NE(at, lines.end());
  ASSERT_GE(lines.end() - at, 4);
  EXPECT_EQ(at[1], " ");
  EXPECT_EQ(at[2], " => Too many sites! Diminish the input number of atoms!");
  EXPECT_EQ(at[3], " => The number of sites is limited to: 250");
  EXPECT_EQ(lines.back(), " => Calculation of basis functions omitted ... too many atoms given! ");
}

TEST(RunDriver, UnreadableNumbersEndTheRunWithAMessage) {
  const std::string no_group =
      " => No information on space group is given, please provide SPGR/GEN before KVEC !";
  struct Case {
    std::string text, message;
  };
  const std::vector<Case> cases = {
      {"SPGR P 1\nKVEC 0.5 half 0 X\n",
       " => Error reading the three components of the propagation vector in: KVEC 0.5 half 0 X"},
      {"SPGR P 1\nKVEC 0.5\n",
       " => Error reading the three components of the propagation vector in: KVEC 0.5"},
      {"SPGR P 1\nKVEC 0 0 0 GM\nSUBL Fe many\n",
       " => Error reading the number of atoms in: SUBL Fe many"},
      {"SPGR P 1\nKVEC 0 0 0 GM\nSUBL Fe 49\n",
       " => Too many atoms in SUBL Fe: at most 48 atoms a site"},
      {"SPGR P 1\nKVEC 0 0 0 GM\n" + std::string(2531, 'x') + "\n",
       " => Line 3 of the control file is longer than 2530 characters"},
      // Numbers past the range of the group work, which would overflow its integers.
      {"SPGR P m -3 m\nKVEC 2147483648 0 0 X\n",
       " => Error! A component of the propagation vector is not a number within +/-1000000: "
       "KVEC 2147483648 0 0 X"},
      {"SPGR P 1\nKVEC 0 0 0 GM\nATOM Fe FE 0 1.5e6 0\n",
       " => Error! A coordinate is not a number within +/-1000000: ATOM Fe FE 0 1.5e6 0"},
      {"SPGR P 1\nKVEC 0 0 0 GM\nSUBL Fe 1\nxyz 0 -2e6 0\n",
       " => Error! A coordinate is not a number within +/-1000000: xyz 0 -2e6 0"},
      // No group: the reason on the console too, for an empty file and for binary junk.
      {"TITLE only a title\nVMODE AXI\n", no_group},
      {"", no_group},
      {std::string("\x7f"
                   "ELF\x02\x01\0\0\xff\xfe",
                   10),
       no_group},
  };
  for (const Case& c : cases) {
    const Run_Output out = run_text(c.text);
    const auto lines = lines_of(out.result);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), c.message);
    EXPECT_EQ(out.console, c.message + "\n");
  }
  EXPECT_EQ(epss_val(), 1.0e-5f) << "a stopped run leaves the tolerance as it found it";
}

TEST(RunDriver, SublPositionsThatCannotBeReadAreReported) {
  const Run_Output out = run_text(
      "SPGR P 1\nKVEC 0 0 0 GM\n"
      "SUBL Fe 2\n"
      "    0.1 0.2 0.3\n");
  const auto lines = lines_of(out.result);
  EXPECT_TRUE(
      has_line(out.result, "  ERROR! -> exception occurred when reading sublattice positions "));
  EXPECT_EQ(lines.back(),
            " => Calculation of basis functions omitted ... no ATOM keywords given! ");
}

}  // namespace
}  // namespace velmoria

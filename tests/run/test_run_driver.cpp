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
#include "text_lines.hpp"

namespace velmoria {
namespace {

const std::string result_head =
    "  \n"
    "\n"
    "   +++++++++++++++++++++++++++++++++++++++++++++++++++++\n"
    "   +++ PROGRAM:Velmoria (Version 5.00, July 2016)    +++\n"
    "   +++++++++++++++++++++++++++++++++++++++++++++++++++++\n"
    "\n"
    "  The calculation of the IRREPS of the little group is based in \n"
    "  the procedure of ZAK provided within the program LORSK       \n"
    "  \n";

const std::string block_head =
    "   -------------------------------\n"
    "   Output of Velmoria for Tarnweld\n"
    "   -------------------------------\n"
    "   The group of lines starting with the symbol of space groups and \n"
    "   finishing with the last keyword BASI, may be pasted into the RCF file\n"
    "  \n";

Run_Output run_text(const std::string& text) {
  return run_velmoria({"test", text, ""});
}

using testing::lines_of;

void expect_same_lines(const std::string& actual, const std::string& expected) {
  testing::expect_same_lines("result", actual, expected);
}

TEST(RunDriver, MissingControlFileStopsForWantOfASpaceGroup) {
  const Run_Output out = run_velmoria({"nosuchfile", std::nullopt, ""});
  expect_same_lines(out.result, result_head +
                                    " => No information on space group is given, please provide "
                                    "SPGR/GEN before KVEC !\n");
  EXPECT_EQ(out.block, block_head);
  EXPECT_EQ(out.console, "");
}

TEST(RunDriver, NoKvecStopsAfterTheEchoLines) {
  const Run_Output out = run_text(
      "TITLE  Cobalt oxide test\n"
      "! a comment line\n"
      "spgr P 21/c\n"
      "SHORT_OUTPUT\n");
  const std::string stop = " => Calculation of IRreps omitted ... no KVEC keyword given! \n";
  expect_same_lines(
      out.result, result_head + " => Title:Cobalt oxide test\n" +
                      " => Symbol of the space group: P 21/c\n"
                      " => The given space group P 21/c is standard, IT generators will be used \n"
                      " => List of space group generators:  -x,y+1/2,-z+1/2; -x,-y,-z\n"
                      " => Short output selected. \n" +
                      stop);
  EXPECT_EQ(out.console, stop);
  EXPECT_EQ(out.block, block_head);
}

TEST(RunDriver, KvecIsRoundedToFractionsAndLabelled) {
  const Run_Output out = run_text(
      "GEN  x+1/2,y+1/2,z; -x,-y,z\n"
      "kvec  0.333 -0.3331 0.245 X\n");
  const auto lines = lines_of(out.result);
  // The fractions within 0.001 become single-precision fractions; 0.245, 0.005 from 1/4,
  // stays as read.
  EXPECT_NE(
      std::find(lines.begin(), lines.end(), " => Propagation vector:   0.3333 -0.3333  0.2450"),
      lines.end());
  EXPECT_NE(std::find(lines.begin(), lines.end(), " => BZ-point labelled as  X"), lines.end());
  EXPECT_NE(std::find(lines.begin(), lines.end(),
                      " => List of space group generators: x+1/2,y+1/2,z; -x,-y,z"),
            lines.end());
  EXPECT_EQ(lines.back(),
            " => Calculation of basis functions omitted ... no ATOM keywords given! ");
  EXPECT_EQ(out.console,
            " => Calculation of basis functions omitted ... no ATOM keywords given! \n"
            " => Normal End ... Results in file: test.vmr\n");
}

// k equivalent to -k: at k = 0 the moments are the coefficients themselves; at (0,0,1/2)
// the sign alternates with the cell index L3 alone, (-1)^{2k.L}.
TEST(RunDriver, RealCoefficientsAtKZeroAndAtTheZoneBoundary) {
  const struct {
    const char* k;
    const char* text;
  } cases[] = {{"0 0 0", "m(L,j) = Sk(j) for all L"},
               {"0 0 0.5", "m(L,j) = Sk(j)(-1)^{0 L1 + 0 L2 + 1 L3 }"},
               {"0.5 0 0", "m(L,j) = Sk(j)(-1)^{1 L1 + 0 L2 + 0 L3 }"}};
  for (const auto& c : cases) {
    const Run_Output out =
        run_text(std::string("SPGR P -1\nKVEC ") + c.k + "\nATOM Fe X 0.1 0.2 0.3\n");
    EXPECT_NE(out.result.find(c.text), std::string::npos) << c.k;
  }
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
      {"SPGR P 1\nLITTLE_GROUP 49 2 1 1\nKVEC 0 0 0 GM\n",
       " => Error! A supplied block may hold at most 48 operators and 48 representations: "
       "LITTLE_GROUP 49 2 1 1"},
      {"SPGR P 1\nLITTLE_GROUP 2 2 1 49\nKVEC 0 0 0 GM\n",
       " => Error! Dimensions of supplied representations must be 1 to 48: LITTLE_GROUP 2 2 1 49"},
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
  EXPECT_NE(std::find(lines.begin(), lines.end(),
                      "  ERROR! -> exception occurred when reading sublattice positions "),
            lines.end());
  EXPECT_EQ(lines.back(),
            " => Calculation of basis functions omitted ... no ATOM keywords given! ");
}

}  // namespace
}  // namespace velmoria

namespace velmoria {
namespace {

// In P -1 at a general k the little group is P 1, so a general position splits into two
// sub-orbits, x and -x: each ATOM line gives two sites and one note.  Ten notes fit.
TEST(RunDriver, SplitSitesAreNamedAndTheirNotesLimited) {
  std::string text = "SPGR P -1\nKVEC 0.1 0.2 0.3 GP\n";
  for (int i = 0; i < 10; ++i) text += "ATOM  A" + std::to_string(i) + " X 0.11 0.23 0.37\n";
  const auto lines = testing::lines_of(run_text(text).result);
  EXPECT_NE(
      std::find(lines.begin(), lines.end(), "   -> The atom site: A0    is split in  2 orbits"),
      lines.end());
  EXPECT_NE(std::find(lines.begin(), lines.end(), " => No. of sites:   20"), lines.end());
  EXPECT_NE(std::find(lines.begin(), lines.end(),
                      " -> A91_1   :   0.1100  0.2300  0.3700  : (x,y,z)" + std::string(53, ' ')),
            lines.end());
  EXPECT_NE(std::find(lines.begin(), lines.end(),
                      " -> A92_1   :  -0.1100 -0.2300 -0.3700  : (x,y,z)" + std::string(53, ' ')),
            lines.end());

  text += "ATOM  B X 0.11 0.23 0.37\n";
  const Run_Output out = run_text(text);
  const std::string refusal =
      " => Too many split sites: at most 10 atom sites may split into sub-orbits";
  EXPECT_EQ(testing::lines_of(out.result).back(), refusal);
  EXPECT_EQ(out.console, refusal + "\n");
}

// The general position of F m -3 m at a general k falls into 48 sub-orbits of its little
// group P 1 (192 images, 4 lattice points): from the tenth on the number takes two columns.
TEST(RunDriver, SubOrbitNumbersFromTenOnTakeTwoColumns) {
  const auto lines = testing::lines_of(
      run_text("SPGR F m -3 m\nKVEC 0.1 0.2 0.3 GP\nATOM  Fe X 0.11 0.23 0.37\n").result);
  EXPECT_NE(std::find(lines.begin(), lines.end(), " => No. of sites:   48"), lines.end());
  int labelled = 0;
  for (const char* label : {" -> Fe1_1 ", " -> Fe9_1 ", " -> Fe10_1", " -> Fe48_1"}) {
    labelled += std::any_of(lines.begin(), lines.end(),
                            [&](const std::string& l) { return l.rfind(label, 0) == 0; });
  }
  EXPECT_EQ(labelled, 4);
}

// A malformed layout or more items than a layout takes is an internal error: the run ends with
// a message, and nothing is thrown past it.
TEST(RunDriver, InternalErrorsEndTheRunWithAMessage) {
  const std::vector<std::function<void(Run_State&)>> faults = {
      [](Run_State& rs) { put(rs.out.result, "a,3q", "x"); },
      [](Run_State& rs) { put(rs.out.result, "5x", "x"); }};
  for (const auto& fault : faults) {
    Run_State rs;
    EXPECT_NO_THROW(run_guarded(rs, fault));
    EXPECT_EQ(rs.out.console.rfind(" => Internal error, the run stops: layout \"", 0), 0u)
        << rs.out.console;
    EXPECT_NE(rs.out.result.find(" => Internal error, the run stops: "), std::string::npos);
  }
  Run_State rs;
  run_guarded(rs, [](Run_State& r) {
    put(r.out.result, "a", "written");
    throw Quiet_Stop{};
  });
  EXPECT_EQ(rs.out.result, "written\n");
  EXPECT_EQ(rs.out.console, "");
}

}  // namespace
}  // namespace velmoria

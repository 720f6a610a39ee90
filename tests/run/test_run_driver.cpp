// Whole runs through the run function: the stops of a run and the reader's refusals of
// bad input, compared line by line with text worked out from the layouts.  Then
// representations supplied in the control file: the block written from computed
// representations gives the same analysis as the computed run; hand-written blocks of the
// full group and of the extended little group; and bad blocks end in a message.
#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/supplied_block.hpp"
#include "lorsk/group_preparation.hpp"
#include "lorsk/lorsk.hpp"
#include "run/run_driver.hpp"
#include "run/run_state.hpp"
#include "support/numeric.hpp"
#include "symmetry/tables.hpp"
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

using Vector = std::vector<std::complex<float>>;

// Two sets of vectors span the same space.
bool same_span(const std::vector<Vector>& a, const std::vector<Vector>& b) {
  std::vector<testing::CVec> x, y;
  for (const Vector& v : a) x.emplace_back(v.begin(), v.end());
  for (const Vector& v : b) y.emplace_back(v.begin(), v.end());
  const std::size_t r = testing::orthonormal_basis(x).size();
  x.insert(x.end(), y.begin(), y.end());
  return r == testing::orthonormal_basis(y).size() && r == testing::orthonormal_basis(x).size();
}

bool ends_normally(const Run_Output& out) {
  return out.console.find(" => Normal End") != std::string::npos;
}

// The block that velmoria --irreps GROUP k label --block writes.
std::string block_of(const std::string& group, const Vec3& k, const char* label) {
  lorsk_proc store;
  std::string unit;
  std::string generators;
  EXPECT_EQ(lorsk(unit, k, 0, label, group, 0, false,
                  get_generators(group, generators) ? &group : nullptr, store),
            status_done);
  std::string why;
  const std::optional<std::string> block = supplied_block_text(store, k, label, why);
  EXPECT_TRUE(block.has_value()) << why;
  return block.value_or("");
}

struct Round_Trip {
  const char* group;
  Vec3 k;
  const char* label;  // two columns, as the end of a KVEC line gives it
  const char* sites;
};

// The block that --irreps --block prints, pasted into a control file in place of the SPGR and
// KVEC lines, gives the decomposition of the computed run and basis functions that span the
// same space, site by site and representation by representation.
TEST(SuppliedMode, BlockOfComputedRepresentationsGivesTheSameAnalysis) {
  const Round_Trip cases[] = {
      // k = 0 in a centrosymmetric group.
      {"P 1 21/c 1", {0, 0, 0}, "GM", "VMODE AXI\nATOM Fe Fe 0.1 0.2 0.3\nATOM Co Co 0 0 0\n"},
      // Zone boundary of a non-symmorphic group: two-dimensional representations.
      {"P n m a", {0, 0, 0.5f}, " Z", "VMODE\nATOM Mn Mn 0.1 0.25 0.3\nATOM O O 0.2 0.1 0.4\n"},
      // Incommensurate k: complex phases.
      {"P n m a", {0.13f, 0, 0}, "DT", "VMODE AXI\nATOM Mn Mn 0 0 0\n"},
      // Cubic group with three-dimensional representations.
      {"P m -3 m", {0, 0, 0}, "GM", "VMODE AXI\nATOM Fe Fe 0.2 0 0\n"},
      // Hexagonal zone boundary of a group with a 6_3 axis.
      {"P 63/m m c", {0, 0, 0.5f}, " A", "VMODE AXI\nATOM Ni Ni 0.3333333 0.6666667 0.25\n"},
  };
  for (const Round_Trip& c : cases) {
    SCOPED_TRACE(c.group);
    std::ostringstream kvec;
    kvec << "KVEC " << c.k[0] << " " << c.k[1] << " " << c.k[2] << " " << c.label << "\n";
    const Run_Output computed =
        run_velmoria({"c", std::string("SPGR ") + c.group + "\n" + kvec.str() + c.sites, ""});
    ASSERT_TRUE(ends_normally(computed)) << computed.console;

    const std::string block = block_of(c.group, c.k, c.label);
    const Run_Output supplied = run_velmoria({"s", block + c.sites, ""});
    ASSERT_TRUE(ends_normally(supplied)) << supplied.console;
    EXPECT_NE(supplied.result.find("    LIST  OF  READ  LITTLE GROUP  OPERATORS AND IRREPS"),
              std::string::npos);

    const auto& a = computed.state->analyses;
    const auto& b = supplied.state->analyses;
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t s = 0; s < a.size(); ++s) {
      SCOPED_TRACE("site " + std::to_string(s + 1));
      EXPECT_EQ(a[s].ia, b[s].ia);
      EXPECT_EQ(a[s].ip, b[s].ip);
      ASSERT_EQ(a[s].bases.size(), b[s].bases.size());
      ASSERT_FALSE(a[s].bases.empty());
      for (std::size_t j = 0; j < a[s].bases.size(); ++j) {
        EXPECT_EQ(a[s].bases[j].nu, b[s].bases[j].nu);
        EXPECT_TRUE(same_span(a[s].bases[j].functions, b[s].bases[j].functions))
            << "representation " << a[s].bases[j].nu;
      }
    }
  }
}

// P -1 with two one-dimensional representations of the whole group at k = 0, where the star
// has one arm.  Two atoms x and -x: the axial vectors give characters 6 at 1 and 0 at -1, so
// that each representation occurs 3 times and 1 x 3 / 1 = 3 functions are expected and found.
TEST(SuppliedMode, FullGroupBlockAtKZeroExpectsDimTimesMultiplicity) {
  const std::string control =
      "SPGR -P 1\nKVEC 0 0 0 GM\n"
      "FULL_GROUP_IR 2 2 1 1\n"
      "SYMM_K( 1): x,y,z\nIR(Ag): 1\nIR(Au): 1\n"
      "SYMM_K( 2): -x,-y,-z\nIR(Ag): 1\nIR(Au): -1\n"
      "VMODE AXI\nATOM Fe Fe 0.1 0.2 0.3\n";
  const Run_Output out = run_velmoria({"f", control, ""});
  ASSERT_TRUE(ends_normally(out)) << out.console;
  for (const char* line :
       {" => The full representations of the space group are read from the input file ",
        "    Normally they have been read from the Physically Irreducible Representations "
        "database: PIR_data.txt",
        "    LIST OF READ GROUP OPERATORS AND PHYSICALLY IRREPS",
        " => Number of elements of G:    2",
        " => Number of full physically irreducible representations of G:    2",
        " -> GAMMA(Magnetic):   3 mAg( 1) + 3 mAu( 2)"}) {
    EXPECT_NE(out.result.find(std::string(line) + "\n"), std::string::npos) << line;
  }
  const std::string expected =
      "    Expected number of basis functions (Dim*N_times/Nk_star):  3\n\n";
  EXPECT_NE(out.block.find(expected + "    Number of basis functions:  3\n"), std::string::npos);
  ASSERT_EQ(out.state->analyses.size(), 1u);
  for (const Irrep_Basis& basis : out.state->analyses[0].bases) EXPECT_EQ(basis.nbas(), 3);
}

// The same group with k = (0.3,0,0): -1 sends k to -k, so the star has two arms and the one
// representation of the whole group is two-dimensional, D(-1) exchanging the arms.  Its
// character (2, 0) against that of the six axial components (6, 0) gives 6 x 2 / 2 = 6
// occurrences and 2 x 6 / 2 = 6 expected functions: the six components of the two atoms.
TEST(SuppliedMode, FullGroupBlockWithTwoArmsAndTheExtendedLittleGroup) {
  const std::string block =
      " 2 1 2\n"
      "SYMM_K( 1): x,y,z\nIR(S1): 1 0 0 1\n"
      "SYMM_K( 2): -x,-y,-z\nIR(S1): 0 1 1 0\n"
      "VMODE AXI\nATOM Fe Fe 0.1 0.2 0.3\n";
  const std::string head = "SPGR -P 1\nKVEC 0.3 0 0 SM\n";
  const Run_Output full = run_velmoria({"f", head + "FULL_GROUP_IR" + block, ""});
  ASSERT_TRUE(ends_normally(full)) << full.console;
  EXPECT_NE(full.result.find(" -> GAMMA(Magnetic):   6 mS1( 1)\n"), std::string::npos);
  EXPECT_NE(full.block.find("    Expected number of basis functions (Dim*N_times/Nk_star):  6\n\n"
                            "    Number of basis functions:  6\n"),
            std::string::npos);

  // As the extended little group G(k,-k): its own texts, and no count held against the
  // functions found, which the same block as a little group would have.
  const Run_Output extended = run_velmoria({"e", head + "EXTENDED_LITTLE_GROUP" + block, ""});
  ASSERT_TRUE(ends_normally(extended)) << extended.console;
  for (const char* line :
       {"  EXTENDED LITTLE GROUP OPERATORS AND PHYSICALLY IRREPS",
        " => Number of elements of G_(k,-k):    2",
        " => Number of physically irreducible representations of G_(k,-k):    1"}) {
    EXPECT_NE(extended.result.find(std::string(line) + "\n"), std::string::npos) << line;
  }
  EXPECT_EQ(extended.result.find("Expected number"), std::string::npos);
  EXPECT_EQ(extended.result.find("basis functions than"), std::string::npos);
  const Run_Output little = run_velmoria({"l", head + "LITTLE_GROUP" + block, ""});
  EXPECT_NE(little.result.find("basis functions than"), std::string::npos);
}

struct Bad_Block {
  std::string block;    // lines behind "SPGR P 1", "KVEC 0 0 0" and an ATOM line
  std::string message;  // the last line on the console; one ending in ": " quotes the first line
  bool in_result;       // written to the result file too
};

// Every malformed block ends in a message and an orderly stop, nothing written past a table.
TEST(SuppliedMode, BadBlocksStopWithAMessage) {
  const std::string op = "SYMM_K( 1): x,y,z\n";
  const std::string limits =
      " => Error! A supplied block may hold at most 48 operators and 48 representations: ";
  const std::string counts = " => Error reading the numbers of operators and representations in: ";
  const std::string dims = " => Error! Dimensions of supplied representations must be 1 to 48: ";
  std::string dims48;
  for (int i = 0; i < 48; ++i) dims48 += " 1";
  const Bad_Block cases[] = {
      {"LITTLE_GROUP 49 1 1\n", limits, true},
      {"LITTLE_GROUP 1 49 1\n", limits, true},
      {"LITTLE_GROUP 0 1 1\n", counts, true},
      {"LITTLE_GROUP 1 x 1\n", counts, true},
      {"LITTLE_GROUP 1 2 1\n",
       " => Error reading the dimensions of the representations in: ", true},
      {"LITTLE_GROUP 1 1 0\n", dims, true},
      {"LITTLE_GROUP 1 1 -49\n", dims, true},
      {"LITTLE_GROUP 48 48" + dims48 + "\n" + op + "IR(a): 1\n",
       " => Error reading the supplied representations: the control file ends inside their block",
       true},
      {"LITTLE_GROUP 1 1 2\n" + op + "IR(E): 1 0 0\n", " => Error reading IR(E): 1 0 0", false},
      {"LITTLE_GROUP 1 1 2\n" + op + "IR(E): 1 0 0 1 0\n", " => Error reading IR(E): 1 0 0 1 0",
       false},
      {"LITTLE_GROUP 1 1 1\n" + op + "IR(E): one\n", " => Error reading IR(E): one", false},
      {"LITTLE_GROUP 1 1 -1\n" + op + "IR(E): 1\nPH(E): 0.5 0.5\n",
       " => Error reading PH(E): 0.5 0.5", false},
      {"LITTLE_GROUP 1 1 1\nSYMM_K( 1): x,y,w\nIR(E): 1\n",
       " => Invalid character... w in operator string: SYMM_K( 1): x,y,w", true},
  };
  const Run_Output no_spgr =
      run_velmoria({"g", "GEN -x,-y,-z\nKVEC 0 0 0\nLITTLE_GROUP 1 1 1\n" + op + "IR(a): 1\n", ""});
  EXPECT_NE(no_spgr.console.find(" => Supplied representations need the space group on a SPGR "
                                 "line (a Hall symbol, a tabulated symbol or a number)\n"),
            std::string::npos);
  for (const Bad_Block& c : cases) {
    SCOPED_TRACE(c.block);
    const std::string message =
        c.message.ends_with(": ") ? c.message + c.block.substr(0, c.block.find('\n')) : c.message;
    const Run_Output out =
        run_velmoria({"b", "SPGR P 1\nKVEC 0 0 0\nATOM A A 0 0 0\n" + c.block, ""});
    EXPECT_EQ(out.console.find("Normal End"), std::string::npos);
    const std::string last =
        out.console.substr(out.console.rfind('\n', out.console.size() - 2) + 1);
    EXPECT_EQ(last, message + "\n");
    EXPECT_EQ(out.result.find(message) != std::string::npos, c.in_result);
  }
}

}  // namespace
}  // namespace velmoria

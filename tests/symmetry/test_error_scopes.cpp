// A failure inside any road of the space-group setup reaches the caller of set_spacegroup and
// the run's output, with the message of the routine that failed.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "run/run_driver.hpp"
#include "support/text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_roads.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {
namespace {

const std::string bad_character = " Invalid character... q in operator string";
const std::string bad_lattice = " IBRAVL is Equal Zero";
const std::string fivefold = " The fivefold axis is not allowed";

// The first row (0-based) of the settings whose number is n, or (n = 0) whose symbol names a
// choice of origin or cell with ":".
int first_row(int n) {
  const auto& rows = spgr_info();
  for (int i = 0; i < num_spgr_info; ++i) {
    if (n == 0 ? rows[i].hm.find(':') != std::string_view::npos : rows[i].n == n) return i;
  }
  return -1;
}

TEST(SetupRoadErrors, EachRoadOfSetSpacegroupReportsItsFailure) {
  struct Case {
    const char* road;
    std::string text;
    std::vector<std::string> gen;
    std::string message;
  };
  const std::vector<Case> cases = {
      {"GEN", " ", {"-x,-y,z+q"}, bad_character},  // the reading of the operator finds the q
      {"FIX", " ", {"x,y,z", "-x,-y,z+q"}, bad_character},
      {"HAL", "Q 1", {}, bad_lattice},
      {"HMS", "P 5", {}, fivefold},
      {"ITC",
       "Q 9 9",
       {},
       " Problems in SpaceGroup: Q 9 9 => the HM symbol or the number is incorrect "},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.road);
    reset_symm_state();
    Space_Group_Type spg;
    const auto n = static_cast<int>(c.gen.size());
    set_spacegroup(c.text, spg, c.gen.empty() ? nullptr : &c.gen,
                   c.gen.empty() ? std::nullopt : std::optional<int>(n), c.road);
    EXPECT_TRUE(err_symm);
    EXPECT_EQ(err_symm_mess, c.message);
    EXPECT_TRUE(spg.symop.empty());
    EXPECT_EQ(err_symm_depth, 0);
  }
}

// On a tabulated row the roads fill the row's table fields after reading the group; the
// reading's failure must outlive that.  The road and the completion are what set_spacegroup
// runs inside its own scope.  Each road is run once with a good text (the group comes out) and
// once with a bad one.
TEST(SetupRoadErrors, RoadsOnATabulatedRowKeepTheReadingError) {
  using Road = std::function<Group_Operators(Space_Group_Type&, const std::string&, int)>;
  struct Case {
    setup_roads::Road opcion;
    int row;
    Road road;
    std::string good, bad, message;
  };
  const int p21c = first_row(14), p2m = first_row(10), choice = first_row(0);
  ASSERT_GE(p21c, 0);
  ASSERT_GE(p2m, 0);
  ASSERT_GE(choice, 0);
  const Road hall = [](Space_Group_Type& g, const std::string& s, int k) {
    return setup_roads::road_hall(g, s, k);
  };
  // The Hermann-Mauguin road on a row with a choice reads the row's Hall symbol, given here.
  const Road hms_hall = [](Space_Group_Type& g, const std::string& s, int k) {
    return setup_roads::road_hms(g, trim(spgr_info()[k].hm), k, s);
  };
  const Road hms = [](Space_Group_Type& g, const std::string& s, int k) {
    return setup_roads::road_hms(g, s, k, "");
  };
  const Road itc = [](Space_Group_Type& g, const std::string& s, int k) {
    return setup_roads::road_itc_generators(g, trim(spgr_info()[k].hm), s, k);
  };
  const std::vector<Case> cases = {
      {setup_roads::Road::hall, p21c, hall, trim(spgr_info()[p21c].hall), "Q 1", bad_lattice},
      // A generator the Hall reading cannot take fails without a message of its own.
      {setup_roads::Road::hall, p21c, hall, "", "P 7",
       "Error in the provided symbol/number of the space group"},
      {setup_roads::Road::hms, choice, hms_hall, trim(spgr_info()[choice].hall), "Q 1",
       bad_lattice},
      {setup_roads::Road::hms, p2m, hms, "P 1 2/m 1", "P 5", fivefold},
      {setup_roads::Road::itc, p21c, itc, "-x,y+1/2,-z+1/2;-x,-y,-z", "-x,y+1/2,-z+q;-x,-y,-z",
       bad_character},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bad);
    for (const bool good : {true, false}) {
      if (good && c.good.empty()) continue;
      reset_symm_state();
      Space_Group_Type spg;
      bool failed = false;
      std::string mess;
      {
        const Symm_Scope scope;
        const Group_Operators rr = c.road(spg, good ? c.good : c.bad, c.row);
        setup_roads::finish_spacegroup(spg, rr, c.opcion, c.row);
        failed = err_symm;
        mess = err_symm_mess;
      }
      EXPECT_EQ(err_symm_depth, 0);
      EXPECT_EQ(spg.num_spg, spgr_info()[c.row].n);  // the table fields are filled either way
      if (good) {
        EXPECT_FALSE(failed) << mess;
        EXPECT_EQ(spg.multip, c.row == p2m || c.row == p21c ? 4 : spg.multip);
        EXPECT_FALSE(spg.symop.empty());
      } else {
        EXPECT_TRUE(failed);
        EXPECT_EQ(mess, c.message);
        EXPECT_TRUE(spg.symop.empty());
      }
    }
  }
}

std::string last_line(std::string t) {
  while (!t.empty() && t.back() == '\n') t.pop_back();
  const std::size_t nl = t.rfind('\n');
  return nl == std::string::npos ? t : t.substr(nl + 1);
}

TEST(RunErrors, GeneratorThatCannotBeReadStopsTheRunWithItsMessage) {
  const auto control = [](const std::string& gen) {
    return "TITLE  Generators with an error\nGEN  " + gen +
           "\nKVEC  0.0 0.0 0.0  GM\nVMODE AXI\nATOM  Cu  CU  0.00000  0.00000  0.00000\n";
  };
  const Run_Output good = run_velmoria({"t", control("-x,-y,z"), ""});
  EXPECT_NE(good.console.find(" => Normal End"), std::string::npos);

  const Run_Output out = run_velmoria({"t", control("-x,-y,z+q"), ""});
  const std::string stop = " =>" + bad_character + ": -x,-y,z+q";
  EXPECT_EQ(last_line(out.result), stop);
  EXPECT_EQ(last_line(out.console), stop);
  EXPECT_EQ(out.console.find("Normal End"), std::string::npos);
  EXPECT_EQ(out.result.find("Information on Space Group"), std::string::npos);
}

}  // namespace
}  // namespace velmoria

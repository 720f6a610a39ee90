// Error pairs across nested routines: a failure inside any road of the space-group setup
// reaches the caller of set_spacegroup and the run's output; a pending error survives the
// helpers called after it; and no library routine clears a pair it does not own.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
// g++ 12 warns, wrongly, of an uninitialised member inside std::regex when the sanitizers
// are on.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "lorsk/zak.hpp"
#include "run/run_driver.hpp"
#include "support/linear_dependence.hpp"
#include "support/numeric.hpp"
#include "support/text.hpp"
#include "symmetry/closure.hpp"
#include "symmetry/group_class.hpp"
#include "symmetry/hall_symbols.hpp"
#include "symmetry/hm_symbols.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_roads.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "symmetry/symmetry_symbols.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {
namespace {

using setup_roads::Road_Result;

const std::string bad_character = " Invalid character... q in operator string";
const std::string bad_lattice = " IBRAVL is Equal Zero";
const std::string generic = "Error in the provided symbol/number of the space group";

// Every pair cleared, as a run starts.
void start_clean() {
  reset_symm_state();
  reset_mathgen_state();
  reset_string_state();
  reset_symtab_state();
  reset_math3d_state();
  reset_lorsk_state();
}

// The first row (0-based) of the table of settings for a group number.
int first_row(int number) {
  const auto& rows = spgr_info();
  for (int i = 0; i < num_spgr_info; ++i) {
    if (rows[i].n == number) return i;
  }
  return -1;
}

// The first row whose symbol names a choice of origin or cell with ":".
int first_row_with_choice() {
  const auto& rows = spgr_info();
  for (int i = 0; i < num_spgr_info; ++i) {
    if (rows[i].hm.find(':') != std::string_view::npos) return i;
  }
  return -1;
}

// ---------------------------------------------------------------------------------------
// Each road fails, and the caller of set_spacegroup sees why.

TEST(SetupRoadErrors, UserGeneratorWithAnUnknownCharacterFailsTheGenRoad) {
  start_clean();
  Space_Group_Type spg;
  const std::vector<std::string> good = {"-x,-y,z"};
  set_spacegroup(" ", spg, &good, 1, "GEN");
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(spg.multip, 2);  // 1 and 2 along z

  // The constant part of a generator is not looked at by the test of generators; the
  // reading of the operator finds the letter.
  const std::vector<std::string> bad = {"-x,-y,z+q"};
  set_spacegroup(" ", spg, &bad, 1, "GEN");
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, bad_character);
  EXPECT_TRUE(spg.symop.empty());
  EXPECT_EQ(err_symm_depth, 0);
}

TEST(SetupRoadErrors, FixedListWithAnUnknownCharacterFailsTheFixRoad) {
  start_clean();
  Space_Group_Type spg;
  const std::vector<std::string> bad = {"x,y,z", "-x,-y,z+q"};
  set_spacegroup(" ", spg, &bad, 2, "FIX");
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, bad_character);
  EXPECT_TRUE(spg.symop.empty());
}

TEST(SetupRoadErrors, HallSymbolOutsideTheTableWithAnUnknownLattice) {
  start_clean();
  Space_Group_Type spg;
  set_spacegroup("Q 1", spg, nullptr, std::nullopt, "HAL");
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, bad_lattice);
  EXPECT_TRUE(spg.symop.empty());
}

TEST(SetupRoadErrors, HmSymbolOutsideTheTableWithAFivefoldAxis) {
  start_clean();
  Space_Group_Type spg;
  set_spacegroup("P 5", spg, nullptr, std::nullopt, "HMS");
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " The fivefold axis is not allowed");
  EXPECT_TRUE(spg.symop.empty());
}

TEST(SetupRoadErrors, ItcWithASymbolTheTableDoesNotKnow) {
  start_clean();
  Space_Group_Type spg;
  set_spacegroup("Q 9 9", spg, nullptr, std::nullopt, "ITC");
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess,
            " Problems in SpaceGroup: Q 9 9 => the HM symbol or the number is incorrect ");
}

// The roads on a tabulated row fill the row's table fields after reading the group; the
// reading's failure must outlive that.  The road and the completion are what set_spacegroup
// runs inside its own scope.
struct Road_Run {
  Space_Group_Type spg;
  bool failed = false;
  std::string mess;
};

template <class Road>
Road_Run run_road(Road road, setup_roads::Road opcion, int k) {
  start_clean();
  Road_Run r;
  {
    const Symm_Scope scope;
    Road_Result rr;
    road(r.spg, rr);
    setup_roads::finish_spacegroup(r.spg, rr, opcion, k);
    r.failed = err_symm;
    r.mess = err_symm_mess;
  }
  EXPECT_EQ(err_symm_depth, 0);
  return r;
}

TEST(SetupRoadErrors, HallRoadOnATabulatedRowKeepsTheReadingError) {
  const int k = first_row(14);
  ASSERT_GE(k, 0);
  const std::string own = trim(spgr_info()[k].hall);

  // The row's own Hall symbol gives the group: P 21/c has four operators.
  const Road_Run ok = run_road(
      [&](Space_Group_Type& spg, Road_Result& rr) { rr = setup_roads::road_hall(spg, own, k); },
      setup_roads::Road::hall, k);
  EXPECT_FALSE(ok.failed) << ok.mess;
  EXPECT_EQ(ok.spg.multip, 4);

  const Road_Run bad = run_road(
      [&](Space_Group_Type& spg, Road_Result& rr) { rr = setup_roads::road_hall(spg, "Q 1", k); },
      setup_roads::Road::hall, k);
  EXPECT_TRUE(bad.failed);
  EXPECT_EQ(bad.mess, bad_lattice);
  EXPECT_EQ(bad.spg.num_spg, 14);  // the table fields were filled after the failure
  EXPECT_FALSE(bad.spg.laue.empty());
  EXPECT_TRUE(bad.spg.symop.empty());

  // A generator the Hall reading cannot take fails without a message of its own.
  const Road_Run blank = run_road(
      [&](Space_Group_Type& spg, Road_Result& rr) { rr = setup_roads::road_hall(spg, "P 7", k); },
      setup_roads::Road::hall, k);
  EXPECT_TRUE(blank.failed);
  EXPECT_EQ(blank.mess, generic);
  EXPECT_TRUE(blank.spg.symop.empty());
}

TEST(SetupRoadErrors, HmRoadOnATabulatedRowWithAChoiceKeepsTheHallReadingError) {
  const int k = first_row_with_choice();
  ASSERT_GE(k, 0);
  const std::string symbol = trim(spgr_info()[k].hm);
  const Road_Run ok = run_road(
      [&](Space_Group_Type& spg, Road_Result& rr) {
        rr = setup_roads::road_hms(spg, symbol, k, trim(spgr_info()[k].hall));
      },
      setup_roads::Road::hms, k);
  EXPECT_FALSE(ok.failed) << ok.mess;
  EXPECT_FALSE(ok.spg.symop.empty());

  const Road_Run bad =
      run_road([&](Space_Group_Type& spg,
                   Road_Result& rr) { rr = setup_roads::road_hms(spg, symbol, k, "Q 1"); },
               setup_roads::Road::hms, k);
  EXPECT_TRUE(bad.failed);
  EXPECT_EQ(bad.mess, bad_lattice);
  EXPECT_EQ(bad.spg.num_spg, spgr_info()[k].n);
  EXPECT_TRUE(bad.spg.symop.empty());
}

TEST(SetupRoadErrors, HmRoadOnATabulatedRowKeepsTheSymbolReadingError) {
  const int k = first_row(10);  // P 2/m
  ASSERT_GE(k, 0);
  const Road_Run bad =
      run_road([&](Space_Group_Type& spg,
                   Road_Result& rr) { rr = setup_roads::road_hms(spg, "P 5", k, ""); },
               setup_roads::Road::hms, k);
  EXPECT_TRUE(bad.failed);
  EXPECT_EQ(bad.mess, " The fivefold axis is not allowed");
  EXPECT_EQ(bad.spg.num_spg, 10);
  EXPECT_TRUE(bad.spg.symop.empty());
}

TEST(SetupRoadErrors, ItcRoadOnATabulatedRowKeepsTheGeneratorReadingError) {
  const int k = first_row(14);
  ASSERT_GE(k, 0);
  const std::string symbol = trim(spgr_info()[k].hm);
  const Road_Run ok = run_road(
      [&](Space_Group_Type& spg, Road_Result& rr) {
        rr = setup_roads::road_itc_generators(spg, symbol, "-x,y+1/2,-z+1/2;-x,-y,-z", k);
      },
      setup_roads::Road::itc, k);
  EXPECT_FALSE(ok.failed) << ok.mess;
  EXPECT_EQ(ok.spg.multip, 4);

  const Road_Run bad = run_road(
      [&](Space_Group_Type& spg, Road_Result& rr) {
        rr = setup_roads::road_itc_generators(spg, symbol, "-x,y+1/2,-z+q;-x,-y,-z", k);
      },
      setup_roads::Road::itc, k);
  EXPECT_TRUE(bad.failed);
  EXPECT_EQ(bad.mess, bad_character);
  EXPECT_EQ(bad.spg.num_spg, 14);
  EXPECT_TRUE(bad.spg.symop.empty());
}

// ---------------------------------------------------------------------------------------
// A pending error survives the helpers called after it.

TEST(PendingErrors, SymmetryHelpersLeaveAPendingErrorAndStillWork) {
  start_clean();
  const int k = first_row(14);
  ASSERT_GE(k, 0);
  {
    const Symm_Scope outer;
    set_err_symm("first");

    Space_Group_Type spg;
    fill_table_fields(spg, k + 1);
    EXPECT_EQ(spg.num_spg, 14);
    EXPECT_EQ(spg.laue, "2/m");
    EXPECT_EQ(spg.pg, "2/m");

    Mat3i rot{};
    Vec3 tr{};
    read_xsym("-x,y+1/2,-z", 1, rot, tr);
    EXPECT_EQ(rot, (Mat3i{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}}));
    EXPECT_FLOAT_EQ(tr[1], 0.5f);

    latsym("I");
    EXPECT_EQ(nlat, 2);
    EXPECT_TRUE(check_generator("-x,-y,z"));
    std::string text;
    get_laue_str(1, text);
    EXPECT_EQ(trim(text), "-1");
    get_pointgroup_str(1, text);
    EXPECT_EQ(trim(text), "1");
    EXPECT_NE(searchop(rot, 1, 24), 0);
    EXPECT_FALSE(decodmatmag(rot).empty());

    int isystem = 0, icentre = 0, ibravl = 0, ng = 0, num_g = 0;
    std::vector<Mat3i> ss;
    std::vector<Vec3> ts;
    std::string latsy;
    Vec3 co{};
    get_so_from_hall(isystem, icentre, ibravl, ng, ss, ts, latsy, co, num_g, "-P 2ybc");
    EXPECT_EQ(ng, 2);
    get_so_from_hms(isystem, &icentre, ibravl, ng, ss, ts, latsy, "P 1 21/c 1");
    EXPECT_GE(ng, 2);
    EXPECT_EQ(err_symm_mess, "first");

    // Failures on the way do not replace the first message either.
    read_xsym("x,y,q", 1, rot, tr);
    get_laue_str(99, text);
    latsym("W");
    EXPECT_TRUE(err_symm);
    EXPECT_EQ(err_symm_mess, "first");
    EXPECT_EQ(err_symm_depth, 1);
  }
  EXPECT_EQ(err_symm_depth, 0);
  EXPECT_EQ(err_symm_mess, "first");  // closing the scope does not clear either

  // Outside every scope a routine starts afresh: the stale error goes.
  Mat3i rot{};
  read_xsym("x,y,z", 1, rot);
  EXPECT_FALSE(err_symm);
  read_xsym("x,y,q", 1, rot);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, bad_character);
}

TEST(PendingErrors, SymbolCacheReplaysWithoutClearingAndSkipsPendingStates) {
  start_clean();
  const Mat3i two_z{{{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}}};
  const std::string symbol = symmetry_symbol_str(two_z, Vec3{0, 0, 0});  // now remembered
  EXPECT_FALSE(err_symm);
  {
    const Symm_Scope outer;
    set_err_symm("first");
    EXPECT_EQ(symmetry_symbol_str(two_z, Vec3{0, 0, 0}), symbol);
    EXPECT_EQ(err_symm_mess, "first");
  }

  // A fresh tolerance keys fresh entries.  The symbol of a text that cannot be read is worked
  // out with the reading's error pending: the error reaches the caller, and the operator's
  // entry is not remembered with it.
  set_epsg_sp(1.2345e-5f);
  start_clean();
  EXPECT_EQ(symmetry_symbol_xyz("x,y,q"), "");
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, bad_character);
  const Mat3i read_so_far{{{1, 0, 0}, {0, 1, 0}, {0, 0, 0}}};
  symmetry_symbol_str(read_so_far, Vec3{0, 0, 0});
  EXPECT_FALSE(err_symm) << err_symm_mess;
  set_epsg_default();
}

TEST(PendingErrors, OtherPairsKeepTheirFirstErrorThroughNestedRoutines) {
  start_clean();
  {
    const Mathgen_Scope outer;
    set_err_mathgen("first");
    const std::vector<double> unit = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    EXPECT_EQ(rank_dp(unit, 3, 3, 1e-6), 3);  // the pending error is not this call's failure
    Growing_Span span(2);
    const std::vector<Complex> e1 = {{1, 0}, {0, 0}}, e2 = {{0, 0}, {1, 0}};
    const std::vector<Complex> twice_e1 = {{2, 0}, {0, 0}};
    span.keep(e1);
    EXPECT_FALSE(span.dependent(e2));
    EXPECT_TRUE(span.dependent(twice_e1));
    bool info = false;
    linear_dependentc(e1, 2, e1, 2, 1, 2, 1, info);
    EXPECT_TRUE(info);
    linear_dependentc(e1, 5, e1, 2, 1, 2, 1, info);  // a dimension error of its own
    EXPECT_EQ(err_mathgen_mess, "first");
  }
  EXPECT_EQ(err_mathgen_depth, 0);
  EXPECT_EQ(take_err_mathgen(), std::optional<std::string>("first"));
  EXPECT_FALSE(err_mathgen);
  EXPECT_EQ(take_err_mathgen(), std::nullopt);

  {
    const String_Scope outer;
    set_err_string("first");
    std::array<float, 3> vet{};
    std::array<int, 3> ivet{};
    int iv = 0;
    getnum("4 5", vet, ivet, iv);
    EXPECT_EQ(iv, 2);
    EXPECT_EQ(ivet[1], 5);
    getnum("4 x", vet, ivet, iv);
    EXPECT_EQ(err_string_mess, "first");
  }

  {
    const Symtab_Scope outer;
    set_err_symtab("first");
    std::string gener;
    EXPECT_TRUE(get_generators("14", gener));
    EXPECT_FALSE(get_generators("999", gener));
    EXPECT_EQ(err_symtab_mess, "first");
  }

  const Mat3i zero{};
  Vec3 sts{}, sx{};
  Vec3i six{};
  resolv_sist_3x3(zero, Vec3{1, 0, 0}, sts, sx, six);  // no solution
  ASSERT_TRUE(err_math3d);
  const std::string own = err_math3d_mess;
  EXPECT_NE(own, "first");
  {
    const Math3d_Scope outer;
    set_err_math3d("first");
    resolv_sist_3x3(zero, Vec3{1, 0, 0}, sts, sx, six);
    EXPECT_EQ(err_math3d_mess, "first");
  }

  {
    const Lorsk_Scope outer;
    set_err_lorsk("first");
    {
      const Lorsk_Scope inner;
      set_err_lorsk("second");
    }
    EXPECT_EQ(err_lorsk_mess, "first");
    EXPECT_EQ(err_lorsk_depth, 1);
  }
  EXPECT_EQ(err_lorsk_depth, 0);
  start_clean();
}

// ---------------------------------------------------------------------------------------
// The run's output.

std::string control_with_generators(const std::string& gen) {
  return "TITLE  Generators with an error\n"
         "GEN  " +
         gen +
         "\n"
         "KVEC  0.0 0.0 0.0  GM\n"
         "VMODE AXI\n"
         "ATOM  Cu  CU  0.00000  0.00000  0.00000\n";
}

std::string last_line(const std::string& text) {
  std::string t = text;
  while (!t.empty() && t.back() == '\n') t.pop_back();
  const std::size_t nl = t.rfind('\n');
  return nl == std::string::npos ? t : t.substr(nl + 1);
}

TEST(RunErrors, GeneratorThatCannotBeReadStopsTheRunWithItsMessage) {
  const Run_Output good = run_velmoria({"t", control_with_generators("-x,-y,z"), ""});
  EXPECT_NE(good.console.find(" => Normal End"), std::string::npos);

  const Run_Output out = run_velmoria({"t", control_with_generators("-x,-y,z+q"), ""});
  const std::string stop = " =>" + bad_character + ": -x,-y,z+q";
  EXPECT_EQ(last_line(out.result), stop);
  EXPECT_EQ(last_line(out.console), stop);
  EXPECT_EQ(out.console.find("Normal End"), std::string::npos);
  EXPECT_EQ(out.result.find("Information on Space Group"), std::string::npos);
}

// ---------------------------------------------------------------------------------------
// No library routine clears a pair, nor sets one by hand.

const char* const pair_names = "(symm|mathgen|string|symtab|math3d|lorsk)";

struct Offence {
  std::string where;
  std::string line;
};

// Lines of a source text that break the rules of the error pairs: a call of init_err_* in a
// library folder (its declarations and definitions aside), an assignment of a flag (the
// definitions aside), or a message written or cleared except to fill a blank one.
std::vector<Offence> offences_in(const std::string& where, const std::string& text, bool library) {
  static const std::regex init_call(R"(\binit_err_\w+\s*\()");
  static const std::regex init_decl(R"(^\s*void\s+init_err_\w+\s*\(\s*\)\s*[;{])");
  static const std::regex flag_set(std::string(R"(\berr_)") + pair_names + R"(\s*=[^=])");
  static const std::regex mess_set(std::string(R"(\berr_)") + pair_names +
                                   R"(_mess\s*(=[^=]|\+=|\.clear\(|\.assign\())");
  static const std::regex fill_blank(std::string(R"(if\s*\(\s*is_blank\(\s*err_)") + pair_names +
                                     R"(_mess\s*\)\s*\)\s*err_\w+_mess\s*=)");
  std::vector<Offence> found;
  std::istringstream in(text);
  std::string line;
  int n = 0;
  while (std::getline(in, line)) {
    ++n;
    const std::string at = where + ":" + std::to_string(n);
    if (library && std::regex_search(line, init_call) && !std::regex_search(line, init_decl)) {
      found.push_back({at, line});
    }
    if (std::regex_search(line, flag_set) && line.find("thread_local") == std::string::npos) {
      found.push_back({at, line});
    }
    if (std::regex_search(line, mess_set) && !std::regex_search(line, fill_blank)) {
      found.push_back({at, line});
    }
  }
  return found;
}

TEST(ErrorPairSources, TheCheckerFindsEachKindOfOffence) {
  EXPECT_EQ(offences_in("x", "  init_err_symm();\n", true).size(), 1u);
  EXPECT_EQ(offences_in("x", "  init_err_symm();\n", false).size(), 0u);
  EXPECT_EQ(offences_in("x", "void init_err_symm();\nvoid init_err_lorsk() {\n", true).size(), 0u);
  EXPECT_EQ(offences_in("x", "    err_symm = true;\n", false).size(), 1u);
  EXPECT_EQ(offences_in("x", "  err_math3d = k.math3d_error;\n", false).size(), 1u);
  EXPECT_EQ(offences_in("x", "  err_string_mess = \" bad\";\n", false).size(), 1u);
  EXPECT_EQ(offences_in("x", "  err_symm_mess.clear();\n", false).size(), 1u);
  EXPECT_EQ(offences_in("x", "  err_symm_mess += \"x\";\n", false).size(), 1u);
  EXPECT_EQ(offences_in("x", "  if (err_symm) return;\n  if (err_symm == false) {}\n", true).size(),
            0u);
  EXPECT_EQ(offences_in("x", "constinit thread_local bool err_symm = false;\n", false).size(), 0u);
  EXPECT_EQ(
      offences_in("x", "    if (is_blank(err_symm_mess)) err_symm_mess = mess_generic;\n", false)
          .size(),
      0u);
}

TEST(ErrorPairSources, NoRoutineClearsOrSetsAPairByHand) {
  namespace fs = std::filesystem;
  const fs::path src = fs::path(VELMORIA_SOURCE_DIR) / "src";
  const std::vector<std::string> library = {"support", "symmetry", "kvector", "lorsk", "analysis"};
  const std::vector<std::string> others = {"run", "cli"};
  std::vector<Offence> found;
  int files = 0;
  int definitions = 0;
  auto scan = [&](const std::string& folder, bool is_library) {
    for (const auto& entry : fs::recursive_directory_iterator(src / folder)) {
      const std::string ext = entry.path().extension().string();
      if (!entry.is_regular_file() || (ext != ".cpp" && ext != ".hpp")) continue;
      std::ifstream f(entry.path());
      std::stringstream ss;
      ss << f.rdbuf();
      const std::string text = ss.str();
      ++files;
      if (is_library) {
        static const std::regex def(R"(\nVELMORIA_ERROR_PAIR_DEFINITIONS\(\w+,)");
        definitions += static_cast<int>(std::distance(
            std::sregex_iterator(text.begin(), text.end(), def), std::sregex_iterator()));
      }
      const std::vector<Offence> here =
          offences_in(fs::relative(entry.path(), src).string(), text, is_library);
      found.insert(found.end(), here.begin(), here.end());
    }
  };
  for (const std::string& d : library) scan(d, true);
  for (const std::string& d : others) scan(d, false);
  EXPECT_GT(files, 50);
  EXPECT_EQ(definitions, 6);  // the six pairs' own clearing routines were read
  for (const Offence& o : found) ADD_FAILURE() << o.where << ": " << o.line;
}

}  // namespace
}  // namespace velmoria

// The installed interface (velmoria/velmoria.hpp) on the examples and on bad input: its records
// must agree with the program's texts and obey the invariants of representation theory.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "velmoria/velmoria.hpp"

namespace {

namespace api = velmoria::api;

std::string example(const std::string& name) {
  std::ifstream in(std::string(VELMORIA_SOURCE_DIR) + "/examples/" + name);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

TEST(PublicInterface, ExamplesAgreeWithTheirResultFiles) {
  for (const char* name : {"mnf2.vrn", "p42_x.vrn", "pnma_supplied.vrn"}) {
    SCOPED_TRACE(name);
    const api::Run_Result run = api::run(example(name), "example");
    ASSERT_TRUE(run.normal_end) << run.stop_message;
    ASSERT_FALSE(run.sites.empty());
    // The little group and its representations: the squares of the dimensions add up to the
    // number of operators of the little group.
    int squares = 0;
    for (int d : run.irrep_dimensions) squares += d * d;
    EXPECT_EQ(squares, static_cast<int>(run.little_group.size()));
    EXPECT_EQ(run.little_group.front(), "x,y,z");
    for (const api::Site& site : run.sites) {
      // The representation of the site has 3 components an atom: each contained
      // representation counts its dimension as often as it occurs, and brings as many basis
      // functions, each of 3 components an atom.
      int functions = 0;
      for (const api::Contained_Irrep& irrep : site.irreps) {
        functions += irrep.multiplicity * irrep.dimension;
        EXPECT_EQ(irrep.multiplicity, site.multiplicities.at(irrep.number - 1));
        EXPECT_EQ(irrep.coefficients.size(), site.atoms.size());
        for (const auto& f : irrep.basis_functions) EXPECT_EQ(f.size(), 3 * site.atoms.size());
      }
      EXPECT_EQ(functions, 3 * static_cast<int>(site.atoms.size()));
      EXPECT_NE(run.result.find(site.decomposition), std::string::npos) << site.decomposition;
    }
  }
}

TEST(PublicInterface, RefusalsAreRecordsNotCrashes) {
  const api::Run_Result empty = api::run("");
  EXPECT_FALSE(empty.normal_end);
  EXPECT_NE(empty.stop_message.find("SPGR/GEN"), std::string::npos);
  EXPECT_FALSE(api::look_up_group("Q 9 z").error.empty());
  EXPECT_FALSE(api::look_up_irreps("62", {2e6f, 0, 0}).error.empty());
}

TEST(PublicInterface, GroupLookUps) {
  const api::Group_Result fd3m = api::look_up_group("227");
  ASSERT_TRUE(fd3m.error.empty()) << fd3m.error;
  EXPECT_EQ(fd3m.operators.size(), 192u);  // 48 rotations times 4 lattice points

  // The same group from its text and as a Hall symbol.
  const api::Group_Result p21c = api::look_up_group("P 21/c");
  const api::Group_Result hall = api::look_up_group("-P 2ybc", api::Group_Text::hall);
  for (const api::Group_Result* g : {&p21c, &hall}) {
    ASSERT_TRUE(g->error.empty()) << g->error;
    EXPECT_EQ(g->number, 14);
    EXPECT_EQ(g->operators.size(), 4u);
    EXPECT_NE(g->listing.find("-P 2ybc"), std::string::npos);
  }
}

TEST(PublicInterface, IrrepsLookUps) {
  // Pm-3m at R: the little group is the whole point group m-3m; at X it is 4/mmm.
  for (const auto& [k, label, order] : {std::tuple{std::array<float, 3>{0.5f, 0.5f, 0.5f}, "R", 48},
                                        std::tuple{std::array<float, 3>{0.5f, 0, 0}, "X", 16}}) {
    const api::Irreps_Result r = api::look_up_irreps("221", k, label);
    ASSERT_TRUE(r.error.empty()) << r.error;
    EXPECT_EQ(static_cast<int>(r.little_group.size()), order);
    EXPECT_EQ(r.star_arms, 48 / order);
  }
}

}  // namespace

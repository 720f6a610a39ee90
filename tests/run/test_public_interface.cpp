// The installed interface (velmoria/velmoria.hpp) on the examples and on bad input: its records
// must agree with the program's texts and obey the invariants of representation theory.
#include <gtest/gtest.h>

#include <fstream>
#include <numeric>
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

// Whether the text has a line of the heading, blanks and the decomposition.
bool has_gamma_line(const std::string& text, const std::string& heading,
                    const std::string& decomposition) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind(heading, 0) != 0) continue;
    const std::size_t start = line.find_first_not_of(' ', heading.size());
    if (start != std::string::npos && line.substr(start) == decomposition) return true;
  }
  return false;
}

TEST(PublicInterface, ExamplesAgreeWithTheirResultFiles) {
  for (const char* name :
       {"mnf2.vrn", "hematite.vrn", "p42_x.vrn", "p63_gamma.vrn", "pnma_supplied.vrn"}) {
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
      const std::string gamma = run.axial ? " -> GAMMA(Magnetic):" : " -> GAMMA(Mechanic):";
      EXPECT_TRUE(has_gamma_line(run.result, gamma, site.decomposition)) << site.decomposition;
    }
  }
}

TEST(PublicInterface, MnF2) {
  const api::Run_Result run = api::run(example("mnf2.vrn"));
  EXPECT_TRUE(run.axial);
  EXPECT_EQ(run.space_group, "P 42/m n m");
  EXPECT_EQ(run.k, (std::array<float, 3>{0, 0, 0}));
  ASSERT_EQ(run.sites.size(), 1u);
  const api::Site& mn = run.sites[0];
  ASSERT_EQ(mn.atoms.size(), 2u);  // 2a: the origin and the body centre
  EXPECT_EQ(mn.atoms[0].label, "Mn_1");
  EXPECT_EQ(mn.atoms[1].x, (std::array<float, 3>{0.5f, 0.5f, 0.5f}));
  EXPECT_EQ(run.little_group.size(), 16u);  // k = 0: the whole point group 4/mmm
  EXPECT_NE(run.console.find("Normal End"), std::string::npos);
  EXPECT_NE(run.block.find("SYMM x,y,z"), std::string::npos);
}

TEST(PublicInterface, RefusalsAreRecordsNotCrashes) {
  const api::Run_Result empty = api::run("");
  EXPECT_FALSE(empty.normal_end);
  EXPECT_NE(empty.stop_message.find("SPGR/GEN"), std::string::npos);
  EXPECT_TRUE(empty.sites.empty());

  EXPECT_FALSE(api::look_up_group("").error.empty());
  EXPECT_FALSE(api::look_up_group("Q 9 z").error.empty());
  EXPECT_FALSE(api::look_up_irreps("", {0, 0, 0}).error.empty());
  EXPECT_FALSE(api::look_up_irreps("62", {2e6f, 0, 0}).error.empty());
}

TEST(PublicInterface, GroupLookUps) {
  const api::Group_Result fd3m = api::look_up_group("227");
  ASSERT_TRUE(fd3m.error.empty()) << fd3m.error;
  EXPECT_EQ(fd3m.number, 227);
  EXPECT_EQ(fd3m.lattice, 'F');
  EXPECT_EQ(fd3m.operators.size(), 192u);  // 48 rotations times 4 lattice points
  EXPECT_EQ(fd3m.crystal_system, "Cubic");

  // The same group from its text, as a Hall symbol, and from its generators.
  const api::Group_Result p21c = api::look_up_group("P 21/c");
  const api::Group_Result hall = api::look_up_group("-P 2ybc", api::Group_Text::hall);
  const api::Group_Result gen =
      api::look_up_group("-x,y+1/2,-z+1/2; -x,-y,-z", api::Group_Text::generators);
  for (const api::Group_Result* g : {&p21c, &hall, &gen}) {
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
    const int squares = std::transform_reduce(r.irrep_dimensions.begin(), r.irrep_dimensions.end(),
                                              0, std::plus<>(), [](int d) { return d * d; });
    EXPECT_EQ(squares, order);
    EXPECT_EQ(r.label, std::string(" ") + label);
    EXPECT_FALSE(r.listing.empty());
  }
  EXPECT_EQ(api::version(), std::string(VELMORIA_VERSION));
}

}  // namespace

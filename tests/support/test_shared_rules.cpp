// Rules that several readers share: k snapped to the tabulated fractions, and a generator list
// cut at its semicolons, at their edges.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "run/run_driver.hpp"
#include "support/fractions.hpp"
#include "symmetry/operator_text.hpp"

namespace velmoria {
namespace {

TEST(SharedRules, KSnapsToFractionsWithinTheTolerance) {
  // 1/3 and -3/4 lie within 0.001; 0.5012 and 0.28 do not.  The sign is kept.
  const Vec3 k = snap_to_fractions({0.3333f, -0.7508f, 0.5012f});
  EXPECT_EQ(k[0], 1.0f / 3);
  EXPECT_EQ(k[1], -3.0f / 4);
  EXPECT_EQ(k[2], 0.5012f);
  EXPECT_EQ(snap_to_fractions({0.28f, 0.0f, 1.0f}), (Vec3{0.28f, 0.0f, 1.0f}));
  // The edge: a distance of at most the tolerance snaps.
  EXPECT_EQ(snap_to_fractions({0.125f + 0.0009f, 0, 0})[0], 0.125f);
  EXPECT_EQ(snap_to_fractions({0.125f + 0.0012f, 0, 0})[0], 0.125f + 0.0012f);
}

TEST(SharedRules, GeneratorListsAreCutAtEverySemicolon) {
  EXPECT_EQ(split_generators("  -x,-y,z ;  x+1/2,y,-z"),
            (std::vector<std::string>{"-x,-y,z", "x+1/2,y,-z"}));
  EXPECT_EQ(split_generators("-x,-y,z"), (std::vector<std::string>{"-x,-y,z"}));
  EXPECT_EQ(split_generators("-x,-y,z;"), (std::vector<std::string>{"-x,-y,z", ""}));
  EXPECT_EQ(split_generators(";-x,-y,z"), (std::vector<std::string>{"", "-x,-y,z"}));
  EXPECT_EQ(split_generators("   "), (std::vector<std::string>{""}));
  // A stray semicolon on a GEN line is refused as an empty generator, as on the command line.
  const Run_Output out =
      run_velmoria({"t", "GEN   -x,-y,z; -x,y,-z;\nKVEC  0 0 0 GM\nATOM  Fe FE 0.1 0.2 0.3\n", ""});
  EXPECT_EQ(out.console.find(" => Normal End"), std::string::npos);
  const Run_Output fine =
      run_velmoria({"t", "GEN   -x,-y,z; -x,y,-z\nKVEC  0 0 0 GM\nATOM  Fe FE 0.1 0.2 0.3\n", ""});
  EXPECT_NE(fine.console.find(" => Normal End"), std::string::npos);
}

}  // namespace
}  // namespace velmoria

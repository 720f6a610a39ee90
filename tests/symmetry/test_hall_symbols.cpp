// Hall symbols beyond the tabulated settings: changes of origin, the centre of symmetry as an
// item, and the faults of the text.  The tabulated settings are checked by the sweep.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "symmetry/hall_symbols.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"

namespace velmoria {
namespace {

Group_Operators hall(std::string_view symbol) {
  return get_so_from_hall(symbol);
}

void expect_ops(const Group_Operators& r, const std::vector<std::string>& want) {
  ASSERT_EQ(r.ng, static_cast<int>(want.size()));
  ASSERT_EQ(r.ss.size(), want.size());
  for (std::size_t i = 0; i < want.size(); ++i) {
    Mat3i rot{};
    Vec3 t{};
    read_xsym(want[i], 1, rot, t);
    EXPECT_EQ(r.ss[i], rot) << "entry " << i + 1 << " should be " << want[i];
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(r.ts[i][k], t[k], 1e-6) << want[i];
  }
}

TEST(HallSymbols, ScrewAxisAndOriginShift) {
  // 31 along z with the default twofold axis ' behind it; the shift (0,0,1/12) leaves the
  // screw part and moves the translation of -y,-x,-z from 1/2 to 2/3.
  const Group_Operators r = hall("P 31 2c (0 0 1)");
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(r.ng, 6);
  EXPECT_EQ(r.latsy, "hP");
  EXPECT_EQ(r.isystem, 5);
  ASSERT_GE(r.ss.size(), 3u);
  Group_Operators first = r;
  first.ng = 3;
  first.ss.resize(3);
  first.ts.resize(3);
  expect_ops(first, {"x,y,z", "-y,x-y,z+1/3", "-y,-x,-z+2/3"});
  // A negative shift component.
  const Group_Operators m = hall("P 61 2 (0 0 -1)");
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(m.ng, 12);
  EXPECT_EQ(m.isystem, 6);
  ASSERT_GE(m.ss.size(), 3u);
  EXPECT_NEAR(m.ts[1][2], 1.0f / 6, 1e-6);    // 61: 2/12 along z, unmoved by the shift
  EXPECT_NEAR(m.ts[2][2], 10.0f / 12, 1e-6);  // -y,-x,-z: 0 - 1/12 - 1/12
}

TEST(HallSymbols, CentreOfSymmetryItem) {
  Group_Operators r = hall("P 2 -1n");
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(r.icentre, 0);
  EXPECT_EQ(r.num_g, 1);
  EXPECT_EQ(r.co, (Vec3{0.25f, 0.25f, 0.25f}));
  expect_ops(r, {"x,y,z", "-x,-y,z"});

  r = hall("P 2 -1");
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(r.icentre, 2);
  EXPECT_EQ(r.num_g, 2);
  expect_ops(r, {"x,y,z", "-x,-y,z", "-x,-y,-z", "x,y,-z"});

  r = hall("P -1");
  EXPECT_EQ(r.icentre, 2);
  EXPECT_EQ(r.num_g, 1);
  expect_ops(r, {"x,y,z"});
}

TEST(HallSymbols, FaultsOfTheText) {
  hall("Q 2");
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " IBRAVL is Equal Zero");
  hall("");
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " IBRAVL is Equal Zero");

  // Faults without a message of their own.
  for (const char* bad : {"P 5", "P 21", "P 2 2 2 2 2", "P 2 (0 0 1 1)", "P 2 2 3*1", "P 4 4'",
                          "P 2 2*", "P 3 2 3'", "P  2", "P 2'", "P 3* 2\"", "P 2 -"}) {
    const Group_Operators r = hall(bad);
    EXPECT_TRUE(err_symm) << bad;
    EXPECT_EQ(err_symm_mess, "") << bad;
    EXPECT_EQ(r.ng, 0) << bad;
  }
  // A symbol that is no group: the table passes 24 entries.
  for (const char* bad : {"P 4 3 -1", "P 6 4x"}) {
    hall(bad);
    EXPECT_TRUE(err_symm) << bad;
    EXPECT_EQ(err_symm_mess, " Dimension of Table exceeded (II)") << bad;
  }
}

}  // namespace
}  // namespace velmoria

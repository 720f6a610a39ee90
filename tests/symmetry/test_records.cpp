// Operations on symmetry operator records and the symmetry globals.
#include <gtest/gtest.h>

#include <string>

#include "symmetry/records.hpp"

namespace velmoria {
namespace {

Sym_Oper_Type make_op(const Mat3i& rot, const Vec3& tr) {
  Sym_Oper_Type op;
  op.rot = rot;
  op.tr = tr;
  return op;
}

const Mat3i identity{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
const Mat3i two_z{{{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}}};
const Mat3i four_z{{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}};  // -y,x,z
const Mat3i two_y{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}};  // -x,y,-z

TEST(Records, ApplySoMapsRotationPlusTranslation) {
  const Sym_Oper_Type op = make_op(two_y, {0.5f, 0.0f, 0.0f});  // -x+1/2,y,-z
  const Vec3 w = applyso(op, {0.1f, 0.2f, 0.3f});
  EXPECT_FLOAT_EQ(w[0], 0.4f);
  EXPECT_FLOAT_EQ(w[1], 0.2f);
  EXPECT_FLOAT_EQ(w[2], -0.3f);

  const Vec3 u = applyso(make_op(four_z, {0, 0, 0.25f}), {0.1f, 0.2f, 0.3f});
  EXPECT_FLOAT_EQ(u[0], -0.2f);
  EXPECT_FLOAT_EQ(u[1], 0.1f);
  EXPECT_FLOAT_EQ(u[2], 0.55f);
}

TEST(Records, EqualSymopToleranceAndRotation) {
  const Sym_Oper_Type a = make_op(two_z, {0.5f, 0.0f, 0.25f});
  EXPECT_TRUE(equal_symop(a, make_op(two_z, {0.5001f, 0.0f, 0.25f})));
  EXPECT_FALSE(equal_symop(a, make_op(two_z, {0.5003f, 0.0f, 0.25f})));
  EXPECT_FALSE(equal_symop(a, make_op(two_y, {0.5f, 0.0f, 0.25f})));
  // No reduction to the cell: a whole lattice vector apart is a different operator.
  EXPECT_FALSE(equal_symop(a, make_op(two_z, {1.5f, 0.0f, 0.25f})));
}

TEST(Records, IsNewOpLooksAtFirstNEntries) {
  const std::vector<Sym_Oper_Type> list = {make_op(identity, {}), make_op(two_z, {0, 0, 0.5f}),
                                           make_op(four_z, {})};
  EXPECT_TRUE(is_new_op(make_op(four_z, {}), 0, list));
  EXPECT_TRUE(is_new_op(make_op(four_z, {}), -3, list));
  EXPECT_TRUE(is_new_op(make_op(four_z, {}), 2, list));
  EXPECT_FALSE(is_new_op(make_op(four_z, {}), 3, list));
  EXPECT_FALSE(is_new_op(make_op(two_z, {0, 0, 0.5f}), 2, list));
  EXPECT_TRUE(is_new_op(make_op(two_z, {}), 3, list));
  // A count beyond the list is held to the list.
  EXPECT_FALSE(is_new_op(make_op(identity, {}), 100, list));
  EXPECT_TRUE(is_new_op(make_op(two_y, {}), 100, list));
}

TEST(Records, ProductSymopComposesAndIsNotReduced) {
  const Sym_Oper_Type screw = make_op(two_z, {0, 0, 0.5f});  // 2_1 along z
  const Sym_Oper_Type sq = product_symop(screw, screw);
  EXPECT_EQ(sq.rot, identity);
  EXPECT_FLOAT_EQ(sq.tr[2], 1.0f);  // a whole cell, kept as it is

  const Sym_Oper_Type a = make_op(four_z, {0, 0, 0.25f});
  const Sym_Oper_Type b = make_op(identity, {0.5f, 0, 0});
  const Sym_Oper_Type ab = product_symop(a, b);
  EXPECT_EQ(ab.rot, four_z);
  EXPECT_FLOAT_EQ(ab.tr[0], 0.0f);
  EXPECT_FLOAT_EQ(ab.tr[1], 0.5f);
  EXPECT_FLOAT_EQ(ab.tr[2], 0.25f);

  // (a b)(v) = a(b(v)) for any position.
  const Sym_Oper_Type c = make_op(two_y, {0.25f, 0.5f, 0.75f});
  const Vec3 v{0.13f, -0.27f, 0.61f};
  const Vec3 lhs = applyso(product_symop(a, c), v);
  const Vec3 rhs = applyso(a, applyso(c, v));
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(lhs[i], rhs[i], 1e-6f);
}

TEST(Records, InitialValuesAndCentroTexts) {
  const Space_Group_Type g;
  EXPECT_EQ(g.num_spg, 0);
  EXPECT_EQ(g.wyckoff.num_orbit, 0);
  EXPECT_EQ(g.centred, 0);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(g.asym_unit[0][i], 0.0f);
    EXPECT_EQ(g.asym_unit[1][i], 1.0f);
  }
  for (const char* t : centro) EXPECT_EQ(std::string(t).size(), 26u);
  EXPECT_EQ(std::string(centro[0]), "Centric (-1 not at origin)");
  EXPECT_EQ(std::string(centro[1]).substr(0, 8), "Acentric");
  EXPECT_EQ(std::string(centro[2]).substr(0, 22), "Centric (-1 at origin)");
}

TEST(Records, AllocateLatticeCentring) {
  Lattice_Centring_Type rec;
  rec.set = true;
  allocate_lattice_centring(rec, 3);
  EXPECT_EQ(rec.num_vec, 3);
  EXPECT_FALSE(rec.set);
  ASSERT_EQ(rec.vectors.size(), 3u);
  for (const auto& v : rec.vectors) EXPECT_EQ(v, std::vector<float>(3, 0.0f));

  allocate_lattice_centring(rec, 2, true);
  ASSERT_EQ(rec.vectors.size(), 2u);
  EXPECT_EQ(rec.vectors[1].size(), 4u);

  allocate_lattice_centring(rec, -1);
  EXPECT_EQ(rec.num_vec, 0);
  EXPECT_TRUE(rec.vectors.empty());
}

TEST(Records, ErrorPairIsSetClearedAndCut) {
  set_err_symm(std::string(400, 'e'));
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess.size(), 150u);
  init_err_symm();
  EXPECT_FALSE(err_symm);
  EXPECT_TRUE(err_symm_mess.empty());
}

}  // namespace
}  // namespace velmoria

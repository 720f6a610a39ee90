// Closure of space groups from generators, analysis of complete lists, centring vectors and
// lattice tables.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "symmetry/closure.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {
namespace {

struct Ops {
  std::vector<Mat3i> ss;
  std::vector<Vec3> ts;
};

Ops parse(const std::vector<std::string>& texts) {
  Ops o;
  for (const auto& t : texts) {
    Mat3i r{};
    Vec3 v{};
    read_xsym(t, 1, r, v);
    EXPECT_FALSE(err_symm) << t;
    o.ss.push_back(r);
    o.ts.push_back(v);
  }
  return o;
}

void expect_ops(const Group_Operators& got, int ng, const std::vector<std::string>& want) {
  ASSERT_GE(ng, static_cast<int>(want.size()));
  const Ops w = parse(want);
  for (std::size_t i = 0; i < want.size(); ++i) {
    EXPECT_EQ(got.ss[i], w.ss[i]) << "entry " << i + 1 << " should be " << want[i];
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(got.ts[i][k], w.ts[i][k], 1e-6) << want[i];
  }
}

Group_Operators gener(const std::vector<std::string>& texts) {
  const Ops o = parse(texts);
  init_err_symm();
  return get_so_from_gener(static_cast<int>(texts.size()), o.ss, o.ts);
}

TEST(Closure, OrderOfTheReducedSetFollowsGeneratorsThenProducts) {
  const Group_Operators r = gener({"-x+1/2,-y,z+1/2", "-x,y+1/2,-z+1/2"});
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(r.ng, 4);
  EXPECT_EQ(r.num_g, 2);
  EXPECT_EQ(r.latsy, "oP");
  EXPECT_EQ(r.isystem, 3);
  expect_ops(r, r.ng, {"x,y,z", "-x+1/2,-y,z+1/2", "-x,y+1/2,-z+1/2", "x+1/2,-y+1/2,-z"});
}

TEST(Closure, PureTranslationsNameTheLattice) {
  Group_Operators r = gener({"x+1/2,y+1/2,z", "-x,-y,z"});
  EXPECT_EQ(r.ibravl, 4);
  EXPECT_EQ(r.lat_letter, "C");
  EXPECT_EQ(r.latsy, "mC");
  EXPECT_EQ(r.num_g, 1);
  EXPECT_EQ(nlat, 2);
  EXPECT_EQ(lat_ch, 'C');

  r = gener({"x+1/2,y+1/2,z", "x,y+1/2,z+1/2"});
  EXPECT_EQ(r.ibravl, 7);
  EXPECT_EQ(r.lat_letter, "F");
  EXPECT_EQ(nlat, 4);
  EXPECT_EQ(r.ng, 1);

  // R together with another centring is no conventional lattice.
  r = gener({"x+2/3,y+1/3,z+1/3", "x,y+1/2,z+1/2"});
  EXPECT_EQ(r.ibravl, 8);
  EXPECT_EQ(r.latsy, "aZ");
  EXPECT_GE(nlat, 5);

  // A translation of no standard lattice: Z, completed to nothing more, so named P.
  r = gener({"x+1/2,y,z"});
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(r.ibravl, 8);
  EXPECT_EQ(r.lat_letter, "P");
  EXPECT_EQ(r.latsy, "aZ");
  EXPECT_EQ(nlat, 1);
}

TEST(Closure, CentredGroupIsClosedModuloTheCentring) {
  // C 2/c: the centring and -1 leave the generators; the reduced set keeps two operators.
  const Group_Operators r = gener({"x+1/2,y+1/2,z", "-x,y,-z+1/2", "-x,-y,-z"});
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(r.ng, 2);
  EXPECT_EQ(r.num_g, 1);
  EXPECT_EQ(r.icentre, 2);
  EXPECT_EQ(r.latsy, "mC");
  expect_ops(r, r.ng, {"x,y,z", "-x,y,-z+1/2"});
}

TEST(Closure, PowersWhoseTranslationIsACentringAreLeftToTheProducts) {
  // In I 41: the square of -y,x+1/2,z+1/4 has the translation (1/2,1/2,1/2), which the lattice
  // takes to zero, so that the power step passes it and the products bring it in last.
  const Group_Operators r = gener({"x+1/2,y+1/2,z+1/2", "-y,x+1/2,z+1/4"});
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(r.ng, 4);
  EXPECT_EQ(r.latsy, "tI");
  expect_ops(r, r.ng, {"x,y,z", "-y,x+1/2,z+1/4", "y,-x+1/2,z+1/4", "-x,-y,z"});
}

TEST(Closure, CentreOfSymmetryOnAndOffTheOrigin) {
  Group_Operators r = gener({"-x,-y,z", "-x,-y,-z"});
  EXPECT_EQ(r.icentre, 2);
  EXPECT_EQ(r.ng, 2);
  EXPECT_EQ(r.num_g, 1);
  expect_ops(r, r.ng, {"x,y,z", "-x,-y,z"});

  r = gener({"-x,-y,z", "-x+1/2,-y,-z"});
  EXPECT_EQ(r.icentre, 0);
  EXPECT_FLOAT_EQ(r.co[0], 0.25f);
  EXPECT_FLOAT_EQ(r.co[1], 0.0f);
  EXPECT_FLOAT_EQ(r.co[2], 0.0f);
  EXPECT_EQ(r.ng, 2);
}

TEST(Closure, FixAnalysesACompleteList) {
  Ops o = parse({"x,y,z", "-x,y,-z", "-x,-y,-z", "x,-y,z"});
  init_err_symm();
  Group_Operators r = get_so_from_fix(4, o.ss, o.ts);
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(r.lat_letter, "P");
  EXPECT_EQ(r.ibravl, 1);
  EXPECT_EQ(r.icentre, 2);
  // The crystal system counts the whole list: the twofold axis and the mirror make two
  // operators of order two, which is no monoclinic count.
  EXPECT_EQ(r.isystem, 1);
  EXPECT_EQ(r.latsy, "aP");
  EXPECT_EQ(r.co, (Vec3{0, 0, 0}));
  r = get_so_from_fix(2, o.ss, o.ts, "P 1 2 1");
  EXPECT_EQ(r.lat_letter, "P");
  EXPECT_EQ(r.icentre, 1);
  EXPECT_EQ(r.latsy, "mP");

  // Pure translations name the lattice when no letter is asked for.
  o = parse({"x,y,z", "-x,-y,z", "x+1/2,y+1/2,z", "-x+1/2,-y+1/2,z", "-x+1/2,-y,-z"});
  r = get_so_from_fix(5, o.ss, o.ts);
  EXPECT_EQ(r.lat_letter, "C");
  EXPECT_EQ(r.ibravl, 4);
  EXPECT_EQ(nlat, 2);
  EXPECT_EQ(r.icentre, 0);
  EXPECT_FLOAT_EQ(r.co[0], 0.25f);

  // With a letter the translations give Z, their vectors taken as they are.
  r = get_so_from_fix(5, o.ss, o.ts, "Z");
  EXPECT_EQ(r.lat_letter, "Z");
  EXPECT_EQ(r.ibravl, 8);
  EXPECT_EQ(nlat, 2);
  EXPECT_EQ(lat_ch, 'Z');
  EXPECT_FLOAT_EQ(ltr[1][0], 0.5f);
  EXPECT_EQ(r.latsy[1], 'Z');

  // Two of A, B, C make F.
  o = parse({"x,y,z", "x+1/2,y+1/2,z", "x,y+1/2,z+1/2"});
  r = get_so_from_fix(3, o.ss, o.ts);
  EXPECT_EQ(r.lat_letter, "F");
  EXPECT_EQ(r.ibravl, 7);
  EXPECT_EQ(nlat, 4);
}

TEST(Closure, CentringVectorsAreCompletedAndNamed) {
  auto run = [](std::vector<Vec3> v, int& l) {
    l = static_cast<int>(v.size());
    char ch = ' ';
    init_err_symm();
    get_centring_vectors(l, v, ch);
    return ch;
  };
  int l = 0;
  EXPECT_EQ(run({}, l), 'P');
  EXPECT_EQ(l, 0);
  EXPECT_EQ(run({Vec3{0, 0.5f, 0.5f}}, l), 'A');
  EXPECT_EQ(run({Vec3{0.5f, 0.5f, 0.5f}}, l), 'I');
  EXPECT_EQ(run({Vec3{0.5f, 0.5f, 0}, Vec3{0.5f, 0.5f, 0}, Vec3{0, 0, 0}}, l), 'C');
  EXPECT_EQ(l, 1);
  // One vector of R brings the other: twice (2/3,1/3,1/3) is (1/3,2/3,2/3) in the cell.
  EXPECT_EQ(run({Vec3{2.0f / 3, 1.0f / 3, 1.0f / 3}}, l), 'R');
  EXPECT_EQ(l, 2);
  // Two vectors of F bring the third.
  EXPECT_EQ(run({Vec3{0.5f, 0.5f, 0}, Vec3{0, 0.5f, 0.5f}}, l), 'F');
  EXPECT_EQ(l, 3);
  // Three vectors that are not those of F.
  EXPECT_EQ(run({Vec3{0.25f, 0, 0}}, l), 'P');
  EXPECT_EQ(l, 3);
  EXPECT_EQ(run({Vec3{0.25f, 0, 0}, Vec3{0, 0.5f, 0}}, l), 'Z');
  EXPECT_EQ(l, 7);
  // Vectors without end: refused at the limit of the lattice tables.
  EXPECT_EQ(run({Vec3{0.001f, 0, 0}}, l), 'P');
  EXPECT_TRUE(err_symm);
  EXPECT_LE(l, max_lattice_points - 1);
}

TEST(Closure, LatsymSetsTheLatticeTables) {
  latsym("  -f");
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(lat_ch, 'F');
  EXPECT_EQ(inlat, 7);
  EXPECT_EQ(nlat, 4);
  EXPECT_EQ(ltr[0], (Vec3{0, 0, 0}));
  EXPECT_EQ(ltr[1], (Vec3{0.5f, 0.5f, 0}));
  EXPECT_EQ(ltr[3], (Vec3{0, 0.5f, 0.5f}));

  latsym("R");
  EXPECT_EQ(nlat, 3);
  EXPECT_EQ(inlat, 6);
  EXPECT_FLOAT_EQ(ltr[2][0], 1.0f / 3);

  latsym("I 4");
  EXPECT_EQ(nlat, 2);
  EXPECT_EQ(inlat, 5);
  latsym("P");
  EXPECT_EQ(nlat, 1);
  EXPECT_EQ(inlat, 1);

  const std::vector<Vec3> v{Vec3{0.5f, 0, 0}, Vec3{0, 0.5f, 0}};
  latsym("x", 2, v);
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(lat_ch, 'Z');
  EXPECT_EQ(inlat, 8);
  EXPECT_EQ(nlat, 3);
  EXPECT_EQ(ltr[2], v[1]);

  latsym("Q");
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, "Wrong Lattice Symbol Q");
  EXPECT_EQ(lat_ch, 'Q');
  EXPECT_EQ(nlat, 1);

  latsym("Z");
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, "Unconventional Lattice Symbol Z needs centring vectors");
  EXPECT_EQ(nlat, 1);

  latsym("Z", 300, std::vector<Vec3>(300));
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(nlat, 1);
}

}  // namespace
}  // namespace velmoria

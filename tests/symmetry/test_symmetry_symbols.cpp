// Geometric and Seitz symbols of operators, worked by hand.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/seitz_symbols.hpp"
#include "symmetry/symmetry_symbols.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {
namespace {

// Symbols worked by hand: a centre lies halfway along the translation; a translation normal
// to an axis moves it by half of it; an axis is written with its first moving coordinate
// positive and the sense follows; -4 with its point moved solves S p + t = p; a diagonal
// mirror is written with its free coordinates.
TEST(SymmetrySymbols, WorkedByHand) {
  const std::pair<const char*, const char*> cases[] = {
      {"x,y,z", "1"},
      {"x+1/2,y+1/2,z", "t (1/2,1/2,0)"},
      {"-x,-y,-z", "-1 0,0,0"},
      {"-x+1/2,-y,-z", "-1 1/4,0,0"},
      {"-x,-y,z", "2 0,0,z"},
      {"-x,y+1/2,-z", "2 (0,1/2,0) 0,y,0"},
      {"-x,y+1/2,-z+1/2", "2 (0,1/2,0) 0,y,1/4"},
      {"-x+1/2,-y,z", "2 1/4,0,z"},
      {"z,x,y", "3+ x,x,x"},
      {"z,-x,-y", "3- x,-x,x"},
      {"-y,x,z", "4+ 0,0,z"},
      {"y,-x,z", "4- 0,0,z"},
      {"-y,x,z+1/4", "4+ (0,0,1/4) 0,0,z"},
      {"x-y,x,z", "6+ 0,0,z"},
      {"y,-x,-z", "-4+ 0,0,z; 0,0,0"},
      {"-y,x,-z", "-4- 0,0,z; 0,0,0"},
      {"-z,-x,-y", "-3+ x,x,x; 0,0,0"},
      {"y,-x+1/2,-z+1/2", "-4+ 1/4,1/4,z; 1/4,1/4,1/4"},
      {"x,y,-z", "m x,y,0"},
      {"x,y,-z+1/2", "m x,y,1/4"},
      {"x+1/2,y,-z", "a x,y,0"},
      {"x,-y+1/2,z+1/2", "c x,1/4,z"},
      {"x+1/2,y+1/2,-z", "n (1/2,1/2,0) x,y,0"},
      {"x+1/4,y+1/4,-z", "d (1/4,1/4,0) x,y,0"},
      {"y,x,z", "m x,x,z"},
  };
  for (const auto& [op, symbol] : cases) EXPECT_EQ(symmetry_symbol_xyz(op), symbol) << op;
  // Twice the intrinsic part is (-1,0,0): no component above the tolerance, a mirror.
  EXPECT_EQ(symmetry_symbol_str({{{1, 0, 0}, {0, 1, 0}, {0, 0, -1}}}, {-0.5f, 0, 0}), "m x,y,0");
}

std::string seitz_of(const std::string& symb) {
  std::string seitz;
  seitz_symb(symb, seitz);
  return seitz;
}

TEST(SeitzSymb, RotationPartAndTranslationLetters) {
  EXPECT_EQ(seitz_of("x,y,z"), "{ 1 | 0 0 0}");
  EXPECT_EQ(seitz_of("-x,-y,-z"), "{-1 | 0 0 0}");
  EXPECT_EQ(seitz_of("-x+1/2,y,-z+1/2"), "{ 2 | p 0 p}");
  EXPECT_EQ(seitz_of("-x,y+1/2,-z"), "{ 2 | 0 p 0}");
  EXPECT_EQ(seitz_of("-y,x,z+1/4"), "{ 4+| 0 0 s}");
  EXPECT_EQ(seitz_of("y,-x,-z+3/4"), "{-4+| 0 0 t}");
  EXPECT_EQ(seitz_of("x,y,-z"), "{ m | 0 0 0}");
  EXPECT_EQ(seitz_of("z,x,y"), "{ 3+| 0 0 0}");
  // Every fraction of the table has its letter; a minus sign is kept.
  EXPECT_EQ(seitz_of("x+1/3,y+2/3,z+1/6"), "{ t | q r u}");
  EXPECT_EQ(seitz_of("x+5/6,y+1/8,z+3/8"), "{ t | v w x}");
  EXPECT_EQ(seitz_of("x+5/8,y+7/8,z-2/3"), "{ t | y z-r}");
}

TEST(SeitzSymb, TabulatedRotationAndInternationalSymbol) {
  std::string seitz;
  std::string itsym;
  seitz_symb("-x,y+1/2,-z", seitz, std::string_view("  2 ( 0, y, 0) -> h3 "), &itsym);
  EXPECT_EQ(seitz, "{2_0y0|0p0}");
  EXPECT_EQ(itsym.size(), 40u);
  EXPECT_EQ(trim(itsym), "2 (0,1/2,0) 0,y,0");

  seitz_symb("z+1/2,-x,-y", seitz, std::string_view(" 3+ (-x, x,-x) -> h6 "));
  EXPECT_EQ(seitz, "{3+_-xx-x|p00}");
  seitz_symb("-x,-y,-z", seitz, std::string_view(" -1            -> h25"));
  EXPECT_EQ(seitz, "{-1|000}");
  seitz_symb("x,y,z", seitz, std::string_view("  1            -> h1 "));
  EXPECT_EQ(seitz, "{1|000}");
}

}  // namespace
}  // namespace velmoria

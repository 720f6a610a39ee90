// Seitz symbols of operators given in the x,y,z form.
#include <gtest/gtest.h>

#include <string>

#include "support/text.hpp"
#include "symmetry/seitz_symbols.hpp"
#include "symmetry/symmetry_symbols.hpp"

namespace velmoria {
namespace {

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

TEST(SeitzSymb, FractionsOutsideTheTableAndOddTexts) {
  // Twelfths have no letter; a fraction at the start of a field reads blanks before it.
  EXPECT_EQ(seitz_of("x+1/12,y,z+5/12"), "{ t | 0 0 0}");
  EXPECT_EQ(seitz_of("1/2,y,z"), "{   | p 0 0}");
  // One comma only, and no comma at all, never read outside the text.
  EXPECT_EQ(seitz_of("x+1/2,y").substr(4), "| p 0 0}");
  EXPECT_EQ(seitz_of("-1/4"), "{   |-s 0 0}");
  EXPECT_EQ(seitz_of(""), "{   | 0 0 0}");
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

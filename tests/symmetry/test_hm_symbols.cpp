// The faults of Hermann-Mauguin symbols, read alone and through the setup.  The groups of the
// tabulated symbols are checked by the sweep over the settings.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "symmetry/hm_symbols.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"

namespace velmoria {
namespace {

Group_Operators hms(std::string_view symbol) {
  return get_so_from_hms(symbol);
}

TEST(HmSymbols, FaultsOfTheSymbol) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Z 1", " Wrong space-group symbol: Z 1"},
      {"", " Wrong space-group symbol: "},
      {"P 2/E", " The symbol: E is not allowed"},
      {"P 5", " The fivefold axis is not allowed"},
      {"P 2/2", " The symbol: 2 has been repeated within the same symmetry direction"},
      {"P 2M M 2",
       " A rotation axis cannot be immediately followed by a plane\r within the same symmetry "
       "direction"},
      {"P M2 M 2",
       " A mirror plane cannot be immediately followed by a rotation axis\r within the same "
       "symmetry direction"},
      {"P M/N M M", " There is more than one plane within the same symmetry direction"},
      {"P 23", " Screw axis: 2 3 not allowed"},
  };
  for (const auto& [symbol, message] : cases) {
    Group_Operators r = hms(symbol);
    EXPECT_TRUE(err_symm) << symbol;
    EXPECT_EQ(err_symm_mess, message) << symbol;
    // The reset state: the identity and zeros.
    EXPECT_EQ(r.ng, 1) << symbol;
    ASSERT_EQ(r.ss.size(), static_cast<std::size_t>(max_hms_ops)) << symbol;
    EXPECT_EQ(r.ss[0], (Mat3i{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}})) << symbol;
    EXPECT_EQ(r.ss[1], Mat3i{}) << symbol;
  }
  // Screw digits in the allowed order pass.
  for (const char* symbol : {"P 21 21 21", "P 42 2 2", "P 43", "P 65"}) {
    hms(symbol);
    EXPECT_FALSE(err_symm) << symbol << ": " << err_symm_mess;
  }
  // Text beyond the fields stays in bounds: a fourth item overwrites the third, long items
  // overwrite their last character.
  Group_Operators r = hms("P M M M M M M");
  EXPECT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(r.ng, 4);
  hms(std::string(500, 'P'));
  EXPECT_TRUE(err_symm);
  hms("P 2222222222222222222222");
  EXPECT_TRUE(err_symm);
  // A later good symbol starts afresh.
  EXPECT_EQ(hms("P 21/C").ng, 2);
  EXPECT_FALSE(err_symm);
}

TEST(HmSymbols, BadSymbolsThroughTheSetup) {
  Space_Group_Type g;
  // Neither a tabulated symbol nor a readable Hall symbol.
  set_spacegroup("Q 9 X", g);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " IBRAVL is Equal Zero");
  EXPECT_TRUE(g.symop.empty());
  set_spacegroup("P 9 X", g);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, "Error in the provided symbol/number of the space group");
  EXPECT_TRUE(g.symop.empty());
  // The symbol's own road keeps the reader's message.
  set_spacegroup("Z 9", g, nullptr, std::nullopt, "HMS");
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " Wrong space-group symbol: Z 9");
  EXPECT_TRUE(g.symop.empty());
}

}  // namespace
}  // namespace velmoria

// The section of the result file, the files and the JSON of --magnetic, from hand-built
// candidates of MnF2 (two directions of a one-dimensional representation and a bad candidate)
// and from a case that is not computed.
#include <gtest/gtest.h>

#include <string>

#include "magnetic/report.hpp"
#include "magnetic/structures.hpp"

namespace velmoria {
namespace {

using namespace test_structures;

const Parent_Info parent{"P 42/m n m", 136, Vec3d{0, 0, 0}, "MnF2"};

TEST(MagneticReport, SectionFilesAndDocument) {
  const Magnetic_Report r = magnetic_report(mnf2_candidates(), parent, "mnf2");
  ASSERT_EQ(r.irreps.size(), 1u);
  ASSERT_EQ(r.irreps[0].directions.size(), 2u);
  const auto& good = r.irreps[0].directions[0];
  const auto& bad = r.irreps[0].directions[1];
  EXPECT_EQ(good.mcif_name, "mnf2_ir3_1.mcif");
  EXPECT_NE(good.mcif.find("_space_group_magn.number_BNS  136.499\n"), std::string::npos);
  EXPECT_TRUE(bad.mcif_name.empty() && bad.mcif.empty());  // not identified: no file

  const std::string s = magnetic_section(r);
  for (const char* line :
       {"MAGNETIC SPACE GROUPS OF THE ORDER-PARAMETER DIRECTIONS",
        " => IRrep(3): dimension 1, Frobenius-Schur indicator 1: real representation of "
        "dimension 1 (d)",
        "Direction (a): BNS 136.499 P4_2'/mnm'   OG 136.5.1156   type III",
        "Cell: (a,b,c;0,0,0)   Free parameters: 1   File: mnf2_ir3_1.mcif",
        "Direction (b): the group was not found"})
    EXPECT_NE(s.find(line), std::string::npos) << line;

  const nlohmann::json j = magnetic_json(r);
  EXPECT_TRUE(j["computed"]);
  const auto& d0 = j["representations"][0]["directions"][0];
  EXPECT_TRUE(d0["bns_number"] == "136.499" && d0["mcif"] == "mnf2_ir3_1.mcif");
  const auto& d1 = j["representations"][0]["directions"][1];
  EXPECT_TRUE(d1["mcif"].is_null() && d1["bns_number"].is_null() && d1["error"].is_string());

  // A case that is not computed: one line, and no representation.
  Magnetic_Candidates c;
  c.unsupported = "k is incommensurate: the symmetry is a superspace group";
  const Magnetic_Report u = magnetic_report(c, parent, "x");
  EXPECT_NE(magnetic_section(u).find(" => No candidate structure was identified: k is"),
            std::string::npos);
  const nlohmann::json ju = magnetic_json(u);
  EXPECT_TRUE(!ju["computed"] && ju["unsupported"] == c.unsupported);
  EXPECT_TRUE(ju["representations"].empty());
}

}  // namespace
}  // namespace velmoria

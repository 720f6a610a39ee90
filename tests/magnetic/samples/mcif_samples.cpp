// Writes the magnetic CIF files of hand-built candidate structures into a folder, for the
// script that reads them back with gemmi and identifies them with spglib's Python binding.
#include <fstream>
#include <iostream>
#include <string>

#include "magnetic/mcif.hpp"
#include "magnetic/report.hpp"
#include "magnetic/structures.hpp"

int main(int argc, char** argv) {
  using namespace velmoria;
  using namespace velmoria::test_structures;
  if (argc != 2) {
    std::cerr << "usage: velmoria_mcif_samples FOLDER\n";
    return 2;
  }
  const Parent_Info rutile{"P 42/m n m", 136, Vec3d{0, 0, 0}, "MnF2"};
  const struct {
    const char* name;
    Builder structure;
    Parent_Info parent;
    bool polar;
  } samples[] = {
      {"mnf2_afm", mnf2(1, -1), rutile, false},
      {"stripes", stripes(), {"P 4/m m m", 123, Vec3d{0.5, 0, 0}, "stripes along a"}, false},
      {"polar_perovskite", polar_perovskite(), {"P m -3 m", 221, Vec3d{}, "polar SrTiO3"}, true}};
  for (const auto& s : samples) {
    const Identification id = identify(s.structure.s, s.structure.group, s.polar);
    if (!id.error.empty()) {
      std::cerr << s.name << ": " << id.error << "\n";
      return 1;
    }
    std::ofstream f(std::string(argv[1]) + "/" + s.name + ".mcif");
    f << mcif_text(id, s.parent, s.name);
    if (!f) return 1;
  }
  // The "magnetic" value of a run's document, for the schema.
  std::ofstream j(std::string(argv[1]) + "/magnetic.json");
  j << magnetic_json(magnetic_report(mnf2_candidates(), rutile, "mnf2")).dump(1) << "\n";
  return j ? 0 : 1;
}

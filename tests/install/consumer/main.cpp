// Runs a control file through the installed library and prints what each site contains.
#include <fstream>
#include <iostream>
#include <sstream>
#include <velmoria/velmoria.hpp>

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  std::ifstream in(argv[1]);
  std::stringstream text;
  text << in.rdbuf();
  const velmoria::api::Run_Result run = velmoria::api::run(text.str(), "consumer");
  const velmoria::api::Group_Result group = velmoria::api::look_up_group(run.space_group);
  std::cout << "version " << velmoria::api::version() << "\ngroup " << group.number << "\n";
  for (const velmoria::api::Site& site : run.sites) {
    int dimensions = 0;
    for (const auto& irrep : site.irreps) dimensions += irrep.multiplicity * irrep.dimension;
    std::cout << "site " << site.atoms.size() << " atoms, " << dimensions
              << " functions: " << site.decomposition << "\n";
  }
  return run.normal_end ? 0 : 1;
}

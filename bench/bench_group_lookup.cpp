// The naming of groups given by generators: the look-up of a group among the tabulated settings
// by the key of its operators, against the whole generator road (closure, expansion, naming).
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "symmetry/group_lookup.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "symmetry/tables.hpp"

namespace {

using namespace velmoria;

// The groups of all tabulated settings, set up once.
const std::vector<Space_Group_Type>& all_settings() {
  static const std::vector<Space_Group_Type> groups = [] {
    std::vector<Space_Group_Type> g(spgr_info().size());
    for (std::size_t i = 0; i < g.size(); ++i) {
      set_spacegroup(spgr_info()[i].hall, g[i], nullptr, std::nullopt, "HAL");
    }
    return g;
  }();
  return groups;
}

// Key and look-up of every tabulated group; the keys of the table are made before timing.
void BM_LookUpEverySetting(benchmark::State& state) {
  const auto& groups = all_settings();
  benchmark::DoNotOptimize(setting_key(1).size());
  for (auto _ : state) {
    for (const Space_Group_Type& g : groups) benchmark::DoNotOptimize(setting_of_key(group_key(g)));
  }
  state.counters["seconds_per_group"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * static_cast<double>(groups.size()),
      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_LookUpEverySetting)->Unit(benchmark::kMicrosecond);

// The generator road for every row of the generator table: closure and naming together.
void BM_GeneratorRoadEveryGroup(benchmark::State& state) {
  std::vector<std::vector<std::string>> lists;
  for (int n = 1; n <= num_spg_gen; ++n) {
    std::string gener;
    get_generators(std::to_string(n), gener);
    lists.push_back(split_generators(gener));
  }
  for (auto _ : state) {
    for (const auto& gens : lists) {
      Space_Group_Type g;
      set_spacegroup(" ", g, &gens, static_cast<int>(gens.size()), "GEN");
      benchmark::DoNotOptimize(g.num_spg);
    }
  }
  state.counters["seconds_per_group"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * static_cast<double>(lists.size()),
      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_GeneratorRoadEveryGroup)->Unit(benchmark::kMillisecond);

}  // namespace

// Setting up every tabulated setting through its Hall symbol and writing its full listing.
#include <benchmark/benchmark.h>

#include <string>

#include "symmetry/listing.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "symmetry/tables.hpp"

namespace {

using namespace velmoria;

void BM_SetUpAndListAllSettings(benchmark::State& state) {
  const auto& rows = spgr_info();
  std::string listing;
  for (auto _ : state) {
    for (const Spgr_Info_Type& row : rows) {
      Space_Group_Type spg;
      set_spacegroup(row.hall, spg, nullptr, std::nullopt, "HAL");
      listing.clear();
      write_spacegroup(spg, listing, true);
      benchmark::DoNotOptimize(listing.data());
    }
  }
  state.counters["seconds_per_setting"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * static_cast<double>(rows.size()),
      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_SetUpAndListAllSettings)->Unit(benchmark::kMillisecond);

void BM_SetUpOnly(benchmark::State& state) {
  const auto& rows = spgr_info();
  for (auto _ : state) {
    for (const Spgr_Info_Type& row : rows) {
      Space_Group_Type spg;
      set_spacegroup(row.hall, spg, nullptr, std::nullopt, "HAL");
      benchmark::DoNotOptimize(spg.multip);
    }
  }
}
BENCHMARK(BM_SetUpOnly)->Unit(benchmark::kMillisecond);

}  // namespace

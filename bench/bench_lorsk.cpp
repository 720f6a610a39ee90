// The little-group driver over every space group at a fixed list of propagation vectors: the
// origin and every vector of components 0, 1/2 and 1, the points (1/3,1/3,0) and
// (1/3,1/3,1/2), seven lines with a generic parameter and one general vector.  The counter
// seconds_per_case is the mean time of one (group, k).
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "lorsk/group_preparation.hpp"
#include "lorsk/lorsk.hpp"
#include "lorsk/store.hpp"

namespace {

using namespace velmoria;

std::vector<Vec3> bench_vectors() {
  std::vector<Vec3> ks;
  const float values[3] = {0.0f, 0.5f, 1.0f};
  for (float a : values) {
    for (float b : values) {
      for (float c : values) ks.push_back({a, b, c});
    }
  }
  const float third = 1.0f / 3.0f;
  const float g = 0.137f;
  for (const Vec3& k : {Vec3{third, third, 0}, Vec3{third, third, 0.5f}, Vec3{g, 0, 0},
                        Vec3{0, g, 0}, Vec3{0, 0, g}, Vec3{g, g, 0}, Vec3{g, g, g},
                        Vec3{g, 0.5f, 0}, Vec3{0.5f, 0.5f, g}, Vec3{0.113f, 0.271f, 0.389f}}) {
    ks.push_back(k);
  }
  return ks;
}

// One case as a run makes it: the group by the generators of the tables, with all listings
// of the result file (newk = 0), the matrices not listed.
void run_all(benchmark::State& state, int newk) {
  const std::vector<Vec3> ks = bench_vectors();
  std::vector<std::string> groups;
  for (int n = 1; n <= 230; ++n) groups.push_back(std::to_string(n));
  lorsk_proc store;
  std::string unit;
  for (auto _ : state) {
    for (const std::string& group : groups) {
      for (const Vec3& k : ks) {
        unit.clear();
        const int status = lorsk(unit, k, newk, "KK", group, 0, false, &group, store);
        benchmark::DoNotOptimize(status);
        benchmark::DoNotOptimize(store.nreps);
      }
    }
  }
  state.counters["seconds_per_case"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * static_cast<double>(groups.size() * ks.size()),
      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_LorskWholeList(benchmark::State& state) {
  run_all(state, 0);
}
BENCHMARK(BM_LorskWholeList)->Unit(benchmark::kMillisecond);

void BM_LorskWholeListWithoutCosetList(benchmark::State& state) {
  run_all(state, 1);
}
BENCHMARK(BM_LorskWholeListWithoutCosetList)->Unit(benchmark::kMillisecond);

// The package's own part, behind the space group: little group, chain, Zak's induction, store
// and listings.  The space groups are built once, outside the timing.
void BM_LittleGroupIrreps(benchmark::State& state) {
  const std::vector<Vec3> ks = bench_vectors();
  struct Prepared {
    Lorsk_Work w;
    lorsk_proc store;
  };
  std::vector<Prepared> groups(230);
  for (int n = 1; n <= 230; ++n) {
    const std::string text = std::to_string(n);
    std::string unit;
    space_group(unit, groups[n - 1].w, groups[n - 1].store.spg, text, 1, false, &text);
  }
  std::string unit;
  Lorsk_Work w;
  for (auto _ : state) {
    for (Prepared& p : groups) {
      for (const Vec3& k : ks) {
        unit.clear();
        w = p.w;
        const int status = little_group_irreps(unit, k, "KK", 0, p.store, w);
        benchmark::DoNotOptimize(status);
        benchmark::DoNotOptimize(p.store.nreps);
      }
    }
  }
  state.counters["seconds_per_case"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * static_cast<double>(groups.size() * ks.size()),
      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_LittleGroupIrreps)->Unit(benchmark::kMillisecond);

}  // namespace

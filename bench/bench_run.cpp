// Cost of whole runs in-process: a run should cost little more than starting the process.
#include <benchmark/benchmark.h>

#include <string>

#include "run/run_driver.hpp"

namespace {

void BM_RunExampleControlFile(benchmark::State& state) {
  const std::string text =
      "TITLE  MnF2: magnetic Mn on 2a, rutile structure, k = 0\n"
      "SPGR  P 42/m n m\n"
      "KVEC  0.0 0.0 0.0  GM\n"
      "VMODE AXI\n"
      "ATOM  Mn  MN  0.00000  0.00000  0.00000\n";
  for (auto _ : state) {
    auto out = velmoria::run_velmoria({"mnf2", text, ""});
    benchmark::DoNotOptimize(out.result.data());
  }
}
BENCHMARK(BM_RunExampleControlFile);

}  // namespace

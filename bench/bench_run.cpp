// Whole runs in-process: a control file's text in, the result and block files out.
#include <benchmark/benchmark.h>

#include <string>

#include "run/run_driver.hpp"

namespace {

void run_repeatedly(benchmark::State& state, const char* code, const std::string& text) {
  for (auto _ : state) {
    auto out = velmoria::run_velmoria({code, text, ""});
    benchmark::DoNotOptimize(out.result.data());
    benchmark::DoNotOptimize(out.block.data());
  }
}

void BM_RunExampleControlFile(benchmark::State& state) {
  run_repeatedly(state, "mnf2",
                 "TITLE  MnF2: magnetic Mn on 2a, rutile structure, k = 0\n"
                 "SPGR  P 42/m n m\n"
                 "KVEC  0.0 0.0 0.0  GM\n"
                 "VMODE AXI\n"
                 "ATOM  Mn  MN  0.00000  0.00000  0.00000\n");
}
BENCHMARK(BM_RunExampleControlFile);

// Hematite: R -3 c (hexagonal axes), k = 0, Fe on 12c.
void BM_RunHematite(benchmark::State& state) {
  run_repeatedly(state, "hematite",
                 "TITLE  Hematite\n"
                 "SPGR  R -3 c\n"
                 "KVEC  0 0 0  GM\n"
                 "VMODE AXI\n"
                 "ATOM  Fe  FE  0.0 0.0 0.3553\n");
}
BENCHMARK(BM_RunHematite);

// A general position of P m -3 m, 48 atoms, at the corner of the zone, k = (1/2,1/2,1/2).
void BM_RunCubicGeneralPosition(benchmark::State& state) {
  run_repeatedly(state, "pm3m_r",
                 "TITLE  P m -3 m at R, general position\n"
                 "SPGR  P m -3 m\n"
                 "KVEC  0.5 0.5 0.5  R\n"
                 "VMODE AXI\n"
                 "ATOM  Fe  FE  0.1 0.2 0.3\n");
}
BENCHMARK(BM_RunCubicGeneralPosition);

// An incommensurate vector along a of P n m a, Mn on 4c.
void BM_RunIncommensurate(benchmark::State& state) {
  run_repeatedly(state, "pnma_incomm",
                 "TITLE  P n m a, k = (0.13,0,0)\n"
                 "SPGR  P n m a\n"
                 "KVEC  0.13 0 0  DT\n"
                 "VMODE AXI\n"
                 "ATOM  Mn  MN  0.05 0.25 0.98\n");
}
BENCHMARK(BM_RunIncommensurate);

}  // namespace

// Order parameters after a run: the representations, isotropy directions and candidate
// structures of every representation, the run itself made once outside the loop.
#include <benchmark/benchmark.h>

#include <string>

#include "run/order_parameters.hpp"
#include "run/run_driver.hpp"
#include "run/run_state.hpp"

namespace {

void candidates_repeatedly(benchmark::State& state, const std::string& text) {
  const velmoria::Run_Output out = velmoria::run_velmoria({"bench", text, ""});
  std::size_t directions = 0;
  for (auto _ : state) {
    const velmoria::Magnetic_Candidates mc = velmoria::magnetic_candidates(*out.state);
    directions = 0;
    for (const auto& pi : mc.irreps) directions += pi.directions.size();
    benchmark::DoNotOptimize(directions);
  }
  state.counters["candidates"] = static_cast<double>(directions);
}

// A general position of P m -3 m (48 atoms) at k = (1/2,1/2,1/2), moments.
void BM_OrderParametersCubicGeneralPosition(benchmark::State& state) {
  candidates_repeatedly(state,
                        "TITLE  P m -3 m at R, general position\n"
                        "SPGR  P m -3 m\n"
                        "KVEC  0.5 0.5 0.5  R\n"
                        "VMODE AXI\n"
                        "ATOM  Fe  FE  0.1 0.2 0.3\n");
}
BENCHMARK(BM_OrderParametersCubicGeneralPosition)->Unit(benchmark::kMillisecond);

// The same position at k = 0.
void BM_OrderParametersCubicGeneralPositionGamma(benchmark::State& state) {
  candidates_repeatedly(state,
                        "SPGR  P m -3 m\n"
                        "KVEC  0 0 0  GM\n"
                        "VMODE AXI\n"
                        "ATOM  Fe  FE  0.1 0.2 0.3\n");
}
BENCHMARK(BM_OrderParametersCubicGeneralPositionGamma)->Unit(benchmark::kMillisecond);

// MnF2, the example of the program.
void BM_OrderParametersMnF2(benchmark::State& state) {
  candidates_repeatedly(state,
                        "SPGR  P 42/m n m\n"
                        "KVEC  0.0 0.0 0.0  GM\n"
                        "VMODE AXI\n"
                        "ATOM  Mn  MN  0.00000  0.00000  0.00000\n");
}
BENCHMARK(BM_OrderParametersMnF2)->Unit(benchmark::kMillisecond);

}  // namespace

// `--magnetic` without writing files.  The order parameters alone (the run made once outside
// the loop): representations, isotropy directions and candidate structures.  The whole work:
// the run, its candidates, their magnetic space groups, the section of the result file and the
// magnetic CIF texts.
#include <benchmark/benchmark.h>

#include <string>

#include "magnetic/report.hpp"
#include "run/order_parameters.hpp"
#include "run/run_driver.hpp"
#include "run/run_state.hpp"

namespace {

// A general position of P m -3 m (48 atoms) at k = (1/2,1/2,1/2), moments.
const std::string cubic_at_r =
    "TITLE  P m -3 m at R, general position\n"
    "SPGR  P m -3 m\n"
    "KVEC  0.5 0.5 0.5  R\n"
    "VMODE AXI\n"
    "ATOM  Fe  FE  0.1 0.2 0.3\n";
// The same position at k = 0.
const std::string cubic_at_gamma =
    "SPGR  P m -3 m\nKVEC  0 0 0  GM\nVMODE AXI\nATOM  Fe  FE  0.1 0.2 0.3\n";
// MnF2, the example of the program.
const std::string mnf2 =
    "SPGR  P 42/m n m\nKVEC  0.0 0.0 0.0  GM\nVMODE AXI\nATOM  Mn  MN  0.00000  0.00000  0.00000\n";

std::size_t directions_of(const velmoria::Magnetic_Candidates& mc) {
  std::size_t n = 0;
  for (const auto& pi : mc.irreps) n += pi.directions.size();
  return n;
}

void candidates_repeatedly(benchmark::State& state, const std::string& text) {
  const velmoria::Run_Output out = velmoria::run_velmoria({"bench", text, ""});
  std::size_t directions = 0;
  for (auto _ : state) {
    directions = directions_of(velmoria::magnetic_candidates(*out.state));
    benchmark::DoNotOptimize(directions);
  }
  state.counters["candidates"] = static_cast<double>(directions);
}

void magnetic_repeatedly(benchmark::State& state, const std::string& text) {
  std::size_t directions = 0;
  for (auto _ : state) {
    const velmoria::Run_Output out = velmoria::run_velmoria({"bench", text, ""});
    const velmoria::Magnetic_Candidates mc = velmoria::magnetic_candidates(*out.state);
    const velmoria::Magnetic_Report report =
        velmoria::magnetic_report(mc, velmoria::parent_of(*out.state), "bench");
    benchmark::DoNotOptimize(velmoria::magnetic_section(report).size());
    directions = directions_of(mc);
  }
  state.counters["candidates"] = static_cast<double>(directions);
}

BENCHMARK_CAPTURE(candidates_repeatedly, OrderParametersCubicAtR, cubic_at_r)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(candidates_repeatedly, OrderParametersCubicAtGamma, cubic_at_gamma)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(candidates_repeatedly, OrderParametersMnF2, mnf2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(magnetic_repeatedly, MagneticCubicAtR, cubic_at_r)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(magnetic_repeatedly, MagneticMnF2, mnf2)->Unit(benchmark::kMillisecond);

}  // namespace

// The whole work of `--magnetic` without writing files: the run, its candidate structures,
// their magnetic space groups, the section of the result file and the magnetic CIF texts.
#include <benchmark/benchmark.h>

#include <string>

#include "magnetic/report.hpp"
#include "run/order_parameters.hpp"
#include "run/run_driver.hpp"
#include "run/run_state.hpp"

namespace {

void magnetic_repeatedly(benchmark::State& state, const std::string& text) {
  std::size_t directions = 0;
  for (auto _ : state) {
    const velmoria::Run_Output out = velmoria::run_velmoria({"bench", text, ""});
    const velmoria::Magnetic_Report report = velmoria::magnetic_report(
        velmoria::magnetic_candidates(*out.state), velmoria::parent_of(*out.state), "bench");
    const std::string section = velmoria::magnetic_section(report);
    directions = 0;
    for (const auto& ir : report.irreps) directions += ir.directions.size();
    benchmark::DoNotOptimize(section.size());
  }
  state.counters["candidates"] = static_cast<double>(directions);
}

// A general position of P m -3 m (48 atoms) at k = (1/2,1/2,1/2), moments.
void BM_MagneticCubicGeneralPosition(benchmark::State& state) {
  magnetic_repeatedly(state,
                      "TITLE  P m -3 m at R, general position\n"
                      "SPGR  P m -3 m\n"
                      "KVEC  0.5 0.5 0.5  R\n"
                      "VMODE AXI\n"
                      "ATOM  Fe  FE  0.1 0.2 0.3\n");
}
BENCHMARK(BM_MagneticCubicGeneralPosition)->Unit(benchmark::kMillisecond);

// MnF2, the example of the program.
void BM_MagneticMnF2(benchmark::State& state) {
  magnetic_repeatedly(state,
                      "SPGR  P 42/m n m\n"
                      "KVEC  0.0 0.0 0.0  GM\n"
                      "VMODE AXI\n"
                      "ATOM  Mn  MN  0.00000  0.00000  0.00000\n");
}
BENCHMARK(BM_MagneticMnF2)->Unit(benchmark::kMillisecond);

}  // namespace

// The cost of the largest inputs a run accepts, or refuses with a message: the largest
// supplied block (48 representations of dimension 48 for 48 operators), a control file of
// 100 000 lines, a line of a million characters, and 250 sites of 48 atoms.
#include <benchmark/benchmark.h>

#include <string>

#include "run/run_driver.hpp"

namespace {

void run_repeatedly(benchmark::State& state, const std::string& text) {
  for (auto _ : state) {
    auto out = velmoria::run_velmoria({"bounds", text, ""});
    benchmark::DoNotOptimize(out.result.data());
    state.counters["result_MB"] = static_cast<double>(out.result.size()) / 1.0e6;
  }
}

// The 48 operators of m-3m as signed permutations of x, y, z.
std::string cubic_operator(int g) {
  static const int perms[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
  std::string text;
  for (int i = 0; i < 3; ++i) {
    if (((g % 8) >> i) & 1) text += '-';
    text += static_cast<char>('x' + perms[g / 8][i]);
    if (i < 2) text += ',';
  }
  return text;
}

void BM_LargestSuppliedBlock(benchmark::State& state) {
  std::string text = "SPGR -P 4 2 3\nKVEC 0 0 0 GM\nLITTLE_GROUP 48 48";
  for (int nu = 0; nu < 48; ++nu) text += " -48";
  text += '\n';
  for (int g = 0; g < 48; ++g) {
    text += "SYMM_K(" + std::to_string(g + 1) + "): " + cubic_operator(g) + '\n';
    for (int nu = 1; nu <= 48; ++nu) {
      text += "  IR(A" + std::to_string(nu) + "): 2304*0.5\n";
      text += "  PH(A" + std::to_string(nu) + "): 2304*0.25\n";
    }
  }
  text += "VMODE AXI\nATOM Fe FE 0.1 0.2 0.3\n";
  run_repeatedly(state, text);
}
BENCHMARK(BM_LargestSuppliedBlock)->Unit(benchmark::kMillisecond);

void BM_HundredThousandLines(benchmark::State& state) {
  std::string text = "SPGR P m -3 m\nKVEC 0.5 0.5 0.5 R\nVMODE AXI\n";
  for (int i = 0; i < 100000; ++i) text += "TITLE line " + std::to_string(i) + '\n';
  text += "ATOM Fe FE 0.1 0.2 0.3\n";
  run_repeatedly(state, text);
}
BENCHMARK(BM_HundredThousandLines)->Unit(benchmark::kMillisecond);

void BM_LineOfAMillionCharacters(benchmark::State& state) {
  run_repeatedly(state, "SPGR P m -3 m\nKVEC 0 0 0 GM\nTITLE " + std::string(1000000, 'x') +
                            "\nATOM Fe FE 0.1 0.2 0.3\n");
}
BENCHMARK(BM_LineOfAMillionCharacters)->Unit(benchmark::kMillisecond);

// 250 general positions of P m -3 m at R: 48 atoms each.
void BM_TwoHundredFiftySitesOf48Atoms(benchmark::State& state) {
  std::string text = "SPGR P m -3 m\nKVEC 0.5 0.5 0.5 R\nVMODE AXI\n";
  for (int s = 0; s < 250; ++s) {
    const double x = 0.01 + 0.0011 * s;
    text += "ATOM F" + std::to_string(s) + " FE " + std::to_string(x) + " " +
            std::to_string(2 * x + 0.05) + " " + std::to_string(3 * x + 0.11) + '\n';
  }
  run_repeatedly(state, text);
}
BENCHMARK(BM_TwoHundredFiftySitesOf48Atoms)->Unit(benchmark::kSecond)->Iterations(1);

}  // namespace

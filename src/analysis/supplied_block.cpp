// The block of representations that a control file reads, written from computed ones.
#include "analysis/supplied_block.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

#include "analysis/irrep_tables.hpp"
#include "lorsk/supplied_irreps.hpp"
#include "support/layout.hpp"
#include "support/numeric.hpp"
#include "support/text.hpp"
#include "symmetry/operator_text.hpp"

namespace velmoria {

namespace {

constexpr std::size_t spgr_width = 20;  // the symbol of a SPGR line

// A number of a block line: whole numbers as integers, others with seven decimals.
std::string block_number(float v) {
  return zbelongn(v) ? trim(adjustl(sput("i4", nint(v)))) : trim(adjustl(sput("f12.7", v)));
}

std::string number_line(std::string_view text, const std::vector<float>& values) {
  std::string line(text);
  for (float v : values) line += " " + block_number(v);
  return line;
}

// Whether every element of representation nu is real: a phase of a whole or half turn.
bool real_representation(const lorsk_proc& store, int nu) {
  const int d = store.idim[nu - 1];
  for (int g = 1; g <= store.ngk; ++g) {
    for (int a = 1; a <= d; ++a) {
      for (int b = 1; b <= d; ++b) {
        if (negligibler(store.repr(a, b, nu, g))) continue;
        const float twice = 2.0f * store.repi(a, b, nu, g);
        if (std::fabs(twice - std::round(twice)) > 1.0e-5f) return false;
      }
    }
  }
  return true;
}

}  // namespace

std::optional<std::string> supplied_block_text(lorsk_proc store, const Vec3& vk,
                                               std::string_view label, std::string& why) {
  const float saved_epss = epss_val();
  set_epsg_sp(0.002f);
  std::string scratch;
  std::vector<std::string> symm_symb;
  std::vector<int> idet;
  write_irreps(scratch, store, vk, false, symm_symb, idet);
  set_epsg_sp(saved_epss);
  const std::string hall = trim(adjustl(store.spg.hall));
  if (is_blank(hall) || hall.size() > spgr_width) {
    why = "the group has no Hall symbol of at most 20 characters for a SPGR line";
    return std::nullopt;
  }
  const std::string name_stem = is_blank(label) ? "k" : trim(adjustl(label));
  std::string text;
  put(text, "a,a", "SPGR ", hall);
  put(text, "a,3f12.7,a", "KVEC ", vk, "  " + name_stem);
  std::vector<bool> real(static_cast<std::size_t>(store.nreps));
  std::string head = sput("a,2i4", "LITTLE_GROUP", store.ngk, store.nreps);
  for (int nu = 1; nu <= store.nreps; ++nu) {
    real[nu - 1] = real_representation(store, nu);
    head += sput("i4", real[nu - 1] ? store.idim[nu - 1] : -store.idim[nu - 1]);
  }
  put(text, "a", head);
  for (int g = 1; g <= store.ngk; ++g) {
    const std::string op = get_symsymbi(store.ir[g - 1], store.t[g - 1]);
    if (op.size() > op_string_width) {
      why = "the operator " + op + " is longer than the 20 characters of an operator of a block";
      return std::nullopt;
    }
    put(text, "a", sput("a,i2,a", "SYMM_K(", g, "): ") + op);
    for (int nu = 1; nu <= store.nreps; ++nu) {
      const int d = store.idim[nu - 1];
      const std::string name = name_stem + std::to_string(nu);
      std::vector<float> modulus, phase;
      for (int a = 1; a <= d; ++a) {
        for (int b = 1; b <= d; ++b) {
          const float m = store.repr(a, b, nu, g);
          const float theta = store.repi(a, b, nu, g);
          const bool negative = !negligibler(m) && std::lround(2.0f * theta) % 2 != 0;
          modulus.push_back(real[nu - 1] && negative ? -m : m);
          phase.push_back(theta);
        }
      }
      put(text, "a", number_line("  IR(" + name + "):", modulus));
      if (real[nu - 1]) continue;
      // A line of phases without a positive value is not recognised as one in the echo of
      // the block: a full turn stands there for the phase 0.
      if (std::none_of(phase.begin(), phase.end(), [](float p) { return p > 0.0f; })) {
        std::replace(phase.begin(), phase.end(), 0.0f, 1.0f);
      }
      put(text, "a", number_line("  PH(" + name + "):", phase));
    }
  }
  return text;
}

}  // namespace velmoria

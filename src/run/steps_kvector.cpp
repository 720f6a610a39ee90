// The star of k, the group of the vector and the expansion of sites.
#include <algorithm>

#include "kvector/group_k.hpp"
#include "run/site_expansion.hpp"
#include "run/steps.hpp"
#include "support/layout.hpp"
#include "symmetry/lattice.hpp"

namespace velmoria {

void compute_group_of_k(Run_State& rs) {
  k_star(rs.sv.vk, rs.store.spg, rs.mv.gk, true);
  write_group_k(rs.mv.gk, rs.out.result);
  rs.sv.bz = rs.mv.gk.k_equiv_mk;
}

int split_into_suborbits(Run_State& rs, const Vec3& xt, bool primitive_cell,
                         std::vector<Vec3>& xeqv, std::vector<int>& ind) {
  // The operators of the group of the vector; the extension by the coset of -k that may stand
  // behind them belongs to the listing only.  An empty list (no group of the vector yet)
  // leaves every position in sub-orbit 0.
  const Group_k_Type& gk = rs.mv.gk;
  const std::size_t n = std::min(gk.ops.size(), static_cast<std::size_t>(std::max(gk.ngk_ops, 0)));
  const std::vector<int> str(gk.ops.begin(), gk.ops.begin() + static_cast<std::ptrdiff_t>(n));
  int m = 0;
  xeqv.clear();
  ind.clear();
  get_suborbits(xt, rs.store.spg, str, m, xeqv, ind, false, primitive_cell);
  if (static_cast<int>(ind.size()) < m) ind.resize(m, 0);
  if (static_cast<int>(xeqv.size()) < m) xeqv.resize(m, Vec3{});
  return m;
}

void expand_site(Run_State& rs, int prim, const std::string& atcod, const Vec3& xt, int ns) {
  genatoms(rs, prim, atcod, xt, ns);
}

void check_listed_site(Run_State& rs, int ns) {
  if (!determ_symmops(rs, ns)) {
    throw Quiet_Stop{sput("a,i2", " Fatal error: analysis for site ", ns)};
  }
}

}  // namespace velmoria

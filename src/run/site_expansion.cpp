// Expansion of a position into the atoms of a site, and the check of a listed site.
#include "run/site_expansion.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "support/fractions.hpp"
#include "support/layout.hpp"
#include "support/text.hpp"
#include "symmetry/lattice.hpp"
#include "symmetry/operator_text.hpp"

namespace velmoria {

namespace {

// Number of operators of the little group that the store really holds.
int little_group_order(const lorsk_proc& store) {
  const int held = static_cast<int>(std::min(store.ir.size(), store.t.size()));
  return std::clamp(std::min(store.ngk, held), 0, max_little_group_ops);
}

// Text of operator g (1-based) of the little group in the form x,y,z, trimmed.
std::string operator_text(const Run_State& rs, int g) {
  const auto& symb = rs.sv.symm_symb;
  return g >= 1 && g <= static_cast<int>(symb.size()) ? trim(symb[g - 1]) : std::string();
}

Vec3 image(const lorsk_proc& store, int g, const Vec3& x) {
  const Mat3i& r = store.ir[g - 1];
  const Vec3& t = store.t[g - 1];
  Vec3 xx{};
  for (int i = 0; i < 3; ++i) {
    xx[i] = static_cast<float>(r[i][0]) * x[0] + static_cast<float>(r[i][1]) * x[1] +
            static_cast<float>(r[i][2]) * x[2] + t[i];
  }
  return xx;
}

Vec3 difference(const Vec3& a, const Vec3& b) {
  return Vec3{a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
Vec3 sum(const Vec3& a, const Vec3& b) {
  return Vec3{a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

// Brings one coordinate into [0,1) by whole steps and counts the steps in shift.  Values too
// large for steps of one (or not finite) take a single step of the same size.
void into_cell(float& c, float& shift) {
  constexpr float step_limit = 1.0e4F;
  if (!std::isfinite(c)) return;
  if (std::fabs(c) > step_limit) {
    const float whole = -std::floor(c);
    c += whole;
    shift += whole;
  }
  while (c < 0.0F) {
    c += 1.0F;
    shift += 1.0F;
  }
  while (c >= 1.0F) {
    c -= 1.0F;
    shift -= 1.0F;
  }
}

std::string atom_label(std::string_view atcod, int j) {
  return fixed(sput(j < 10 ? "a,i1" : "a,i2", trim(atcod) + "_", j), 8);
}

Site* site_of(Run_State& rs, int ns) {
  if (ns < 1 || ns > max_sites) return nullptr;
  if (static_cast<int>(rs.sv.sites.size()) < ns) rs.sv.sites.resize(ns);
  return &rs.sv.sites[ns - 1];
}

}  // namespace

void genatoms(Run_State& rs, int prim, std::string_view atcod, const Vec3& xt, int ns) {
  Site* site = site_of(rs, ns);
  if (site == nullptr) return;
  const lorsk_proc& store = rs.store;
  const int ngk = little_group_order(store);

  std::vector<Vec3> orb;  // distinct images
  std::vector<int> ptr;   // the operator that made each image
  for (int g = 1; g <= ngk; ++g) {
    const Vec3 xx = image(store, g, xt);
    const bool known = std::any_of(orb.begin(), orb.end(), [&](const Vec3& o) {
      return lattice_trans(difference(o, xx), rs.mv.lat_type);
    });
    if (known || static_cast<int>(orb.size()) >= max_site_atoms) continue;
    orb.push_back(xx);
    ptr.push_back(g);
  }

  const int n = static_cast<int>(orb.size());
  site->resize(n);
  for (int j = 1; j <= n; ++j) {
    const int g = ptr[j - 1];
    Vec3& o = orb[j - 1];
    Vec3 tr{0, 0, 0};
    for (int i = 0; i < 3; ++i) into_cell(o[i], tr[i]);
    const std::string transla = frac_trans_1dig(tr);
    const std::string op = "(" + operator_text(rs, g) + ")";
    std::string symms;
    if (prim == 0) {
      site->x[j - 1] = o;
      site->symstr[j - 1] = fixed(op + " + " + trim(transla), 60);
      site->carrier[j - 1] = {store.ir[g - 1], sum(tr, store.t[g - 1])};
      symms = get_symsymbi(store.ir[g - 1], sum(tr, store.t[g - 1]));
    } else {
      site->x[j - 1] = difference(o, tr);
      site->symstr[j - 1] = fixed(op, 60);
      site->carrier[j - 1] = {store.ir[g - 1], store.t[g - 1]};
      symms = get_symsymbi(store.ir[g - 1], store.t[g - 1]);
    }
    site->symms[j - 1] = fixed(pack_string(symms), 60);
    site->atom[j - 1] = atom_label(atcod, j);
  }
  site->mult = n;
}

bool determ_symmops(Run_State& rs, int ns) {
  if (ns < 1 || ns > static_cast<int>(rs.sv.sites.size())) return true;
  Site& site = rs.sv.sites[ns - 1];
  const lorsk_proc& store = rs.store;
  const int ngk = little_group_order(store);
  const int mult =
      std::clamp(std::min(site.mult, static_cast<int>(site.x.size())), 0, max_site_atoms);
  if (mult == 0) return true;
  site.resize(std::max(static_cast<int>(site.x.size()), mult));

  std::array<bool, max_site_atoms> done{};
  int count = 0;
  const Vec3 xt = site.x[0];
  for (int g = 1; g <= ngk && count < mult; ++g) {
    const Vec3 xtrans = image(store, g, xt);
    for (int j = 1; j <= mult; ++j) {
      if (done[j - 1]) continue;
      const Vec3 v = difference(site.x[j - 1], xtrans);
      if (!lattice_trans(v, rs.mv.lat_type)) continue;
      done[j - 1] = true;
      ++count;
      site.symstr[j - 1] =
          fixed("(" + operator_text(rs, g) + ")" + " + " + trim(frac_trans_1dig(v)), 60);
      site.carrier[j - 1] = {store.ir[g - 1], sum(v, store.t[g - 1])};
      site.symms[j - 1] =
          fixed(pack_string(get_symsymbi(store.ir[g - 1], sum(v, store.t[g - 1]))), 60);
      break;
    }
  }
  if (count == mult) return true;

  put(rs.out.result, "/,/,a,i2", " Fatal error: analysis for site ", ns);
  for (int j = 1; j <= mult; ++j) {
    if (done[j - 1]) continue;
    put(rs.out.result, "2(a,3f8.4),a", " => The atom at (", site.x[j - 1],
        ") does not belong to the same sublattice as that of (", site.x[0], ")");
  }
  put(rs.out.console, "a", " => The program has finished with errors!");
  return false;
}

}  // namespace velmoria

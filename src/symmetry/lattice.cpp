// Lattice translations of centred lattices, and the split of an orbit into sub-orbits.
#include "symmetry/lattice.hpp"

#include <algorithm>

#include "symmetry/tables.hpp"

namespace velmoria {

namespace {

Vec3 difference(const Vec3& a, const Vec3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

// Whether v differs from one of the centring vectors (the origin, first, left out) by a whole
// lattice vector.
bool matches_centring(const Vec3& v, std::span<const Vec3> centring) {
  for (std::size_t i = 1; i < centring.size(); ++i) {
    if (zbelongv(difference(centring[i], v))) return true;
  }
  return false;
}

bool matches_global_lattice(const Vec3& v) {
  const int count = std::min(nlat, max_lattice_points);
  for (int i = 1; i < count; ++i) {
    if (zbelongv(difference(ltr[static_cast<std::size_t>(i)], v))) return true;
  }
  return false;
}

Vec3 image(const Sym_Oper_Type& op, const Vec3& x, bool prim) {
  const Vec3 xx = applyso(op, x);
  return prim ? xx : modulo_lat(xx);
}

}  // namespace

bool lattice_trans(const Vec3& v, char lat) {
  if (zbelongv(v)) return true;
  // Z is the lattice of the group set last; the standard letters go in either case.
  if (lat == 'Z') return matches_global_lattice(v);
  const char up = lat >= 'a' && lat <= 'z' ? static_cast<char>(lat - 'a' + 'A') : lat;
  return matches_centring(v, ltr_of(up));
}

bool lattice_trans(const Vec3& v, std::string_view lat) {
  return lattice_trans(v, lat.empty() ? ' ' : lat.front());
}

void get_suborbits(const Vec3& x, const Space_Group_Type& spg, std::span<const int> ptr, int& mult,
                   std::vector<Vec3>& orb, std::vector<int>& ind, bool convl, bool prim) {
  const char lat = convl ? 'P' : spg.spg_lat;
  const int multip = std::max(0, std::min(spg.multip, static_cast<int>(spg.symop.size())));
  const std::size_t room = static_cast<std::size_t>(std::max(multip, 1));
  if (orb.size() < room) orb.resize(room);
  if (ind.size() < room) ind.resize(room);

  // The distinct positions of the orbit, x first.
  mult = 1;
  orb[0] = x;
  for (int j = 2; j <= multip; ++j) {
    const Vec3 xx = image(spg.symop[static_cast<std::size_t>(j - 1)], x, prim);
    bool known = false;
    for (int i = 0; i < mult && !known; ++i) {
      known = lattice_trans(difference(orb[static_cast<std::size_t>(i)], xx), lat);
    }
    if (!known) orb[static_cast<std::size_t>(mult++)] = xx;
  }

  // Each position not yet placed starts a sub-orbit: its images under the subgroup.
  std::fill(ind.begin(), ind.end(), 0);
  int s = 1;
  for (int i = 0; i < mult; ++i) {
    if (ind[static_cast<std::size_t>(i)] != 0) continue;
    const int nk = std::min(multip, static_cast<int>(ptr.size()));
    for (int k = 0; k < nk; ++k) {
      const int op = ptr[static_cast<std::size_t>(k)];
      if (op == 0) break;
      if (op < 1 || op > multip) continue;
      const Vec3 xx = image(spg.symop[static_cast<std::size_t>(op - 1)],
                            orb[static_cast<std::size_t>(i)], prim);
      for (int j = 0; j < mult; ++j) {
        if (ind[static_cast<std::size_t>(j)] == 0 &&
            lattice_trans(difference(orb[static_cast<std::size_t>(j)], xx), lat)) {
          ind[static_cast<std::size_t>(j)] = s;
          break;
        }
      }
    }
    ++s;
  }
}

}  // namespace velmoria

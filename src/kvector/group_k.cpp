// The star of k and the group of the vector.
#include "kvector/group_k.hpp"

#include <algorithm>
#include <cctype>

namespace velmoria {

bool reciprocal_lattice_vector(const std::array<int, 3>& m, char lat) {
  const int m1 = m[0];
  const int m2 = m[1];
  const int m3 = m[2];
  const auto even = [](int n) { return n % 2 == 0; };
  switch (std::toupper(static_cast<unsigned char>(lat))) {
    case 'P':
      return true;
    case 'A':
      return even(m2 + m3);
    case 'B':
      return even(m1 + m3);
    case 'C':
      return even(m1 + m2);
    case 'F':
      return even(m2 + m3) && even(m1 + m3) && even(m1 + m2);
    case 'I':
      return even(m1 + m2 + m3);
    case 'R':  // obverse setting
      return (-m1 + m2 + m3) % 3 == 0;
    default:
      return false;
  }
}

bool k_equiv(const Vec3& h, const Vec3& k, char lat) {
  const Vec3 v{h[0] - k[0], h[1] - k[1], h[2] - k[2]};
  if (!zbelongv(v)) return false;
  return reciprocal_lattice_vector({nint(v[0]), nint(v[1]), nint(v[2])}, lat);
}

bool k_equiv(const Vec3& h, const Vec3& k, std::string_view lat) {
  const std::size_t first = lat.find_first_not_of(' ');
  return k_equiv(h, k, first == std::string_view::npos ? ' ' : lat[first]);
}

Vec3 hr_r(const Vec3& h, const Mat3i& rot) {
  Vec3 r{0, 0, 0};
  for (int j = 0; j < 3; ++j) {
    for (int i = 0; i < 3; ++i) r[j] += h[i] * static_cast<float>(rot[i][j]);
  }
  return r;
}

namespace {

Vec3 minus(const Vec3& k) {
  return Vec3{-k[0], -k[1], -k[2]};
}

// Sorts operator i into the group of the vector or into the coset of its arm, opening a new
// arm when its image of k is on none of the arms found so far.
void place_operator(int i, const Vec3& h, const Vec3& k, char lat, Group_k_Type& gk) {
  if (k_equiv(h, k, lat)) {
    if (gk.ngk_ops >= max_group_k_ops || gk.cosets[0].size() >= max_coset_ops) return;
    ++gk.ngk_ops;
    gk.ops.push_back(i);
    gk.cosets[0].push_back(i);
    return;
  }
  for (int j = 0; j < gk.nk; ++j) {
    if (k_equiv(h, gk.stark[j], lat)) {
      if (gk.cosets[j].size() < max_coset_ops) gk.cosets[j].push_back(i);
      return;
    }
  }
  if (gk.nk >= max_star_arms) return;
  ++gk.nk;
  gk.stark.push_back(h);
  gk.cosets.push_back({i});
}

// Appends to gk.ops, behind ngk_ops, the operators that carry k to the arm of -k.
void extend_by_minus_k(const Vec3& k, char lat, Group_k_Type& gk) {
  const Vec3 mk = minus(k);
  for (int a = 1; a < gk.nk; ++a) {
    if (!k_equiv(gk.stark[a], mk, lat)) continue;
    for (const int op : gk.cosets[a]) {
      if (static_cast<int>(gk.ops.size()) >= max_group_k_ops) break;
      gk.ops.push_back(op);
    }
    return;
  }
}

}  // namespace

void k_star(const Vec3& k, const Space_Group_Type& spg, Group_k_Type& gk, bool ext) {
  gk = Group_k_Type{};
  gk.group = spg;
  gk.ngk_ops = 1;
  gk.ops = {1};
  gk.cosets = {{1}};
  gk.nk = 1;
  gk.stark = {k};
  gk.k_equiv_mk = true;

  const char lat = spg.spg_lat;
  const int n = spg.num_ops;
  const int available = static_cast<int>(spg.symop.size());
  const auto rot = [&spg](int i) -> const Mat3i& { return spg.symop[i - 1].rot; };
  int limit = n;
  if (spg.centred == 1) {
    gk.minus_k_in_star = false;
    for (int i = 2; i <= std::min(n, available); ++i) {
      if (k_equiv(hr_r(k, rot(i)), minus(k), lat)) gk.minus_k_in_star = true;
    }
    if (!k_equiv(minus(k), k, lat)) gk.k_equiv_mk = false;
  } else {
    gk.minus_k_in_star = true;
    // Operator n + 1 is the identity times the centre of symmetry.
    if (n + 1 <= available && !k_equiv(hr_r(k, rot(n + 1)), k, lat)) gk.k_equiv_mk = false;
    limit = 2 * n;
  }
  limit = std::min(limit, available);

  for (int i = 2; i <= limit; ++i) place_operator(i, hr_r(k, rot(i)), k, lat, gk);

  if (ext && !gk.k_equiv_mk && gk.minus_k_in_star) extend_by_minus_k(k, lat, gk);
}

}  // namespace velmoria

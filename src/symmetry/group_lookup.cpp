// The canonical keys of the groups of the tabulated settings, and the look-up by key.
#include "symmetry/group_lookup.hpp"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "support/numeric.hpp"
#include "support/text.hpp"
#include "symmetry/closure.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/hall_symbols.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {

namespace {

constexpr std::uint32_t translation_codes = op_den * op_den * op_den;

// One operator as one number: the nine matrix entries in base 3 above the translation in base
// op_den.  0 flags a matrix entry outside -1..1 (no rotation has all nine entries -1, so no
// operator has the code 0).
std::uint32_t op_code(const Mat3i& rot, const Vec3i& tr) {
  std::uint32_t r = 0;
  for (const auto& row : rot) {
    for (const int e : row) {
      if (e < -1 || e > 1) return 0;
      r = 3 * r + static_cast<std::uint32_t>(e + 1);
    }
  }
  const Vec3i t = reduced(tr);
  return r * translation_codes + static_cast<std::uint32_t>((t[0] * op_den + t[1]) * op_den + t[2]);
}

Group_Key sorted_key(std::vector<std::uint32_t> codes) {
  if (codes.empty() || std::find(codes.begin(), codes.end(), 0u) != codes.end()) return {};
  std::sort(codes.begin(), codes.end());
  return codes;
}

// The whole group of a Hall symbol modulo the cell: the reduced set, its products with the
// inversion when the group is centric, and all of these moved by the centring vectors.
Group_Key key_of_hall(std::string_view hall) {
  const Group_Operators r = get_so_from_hall(hall);
  const int ng = std::clamp(r.ng, 0, static_cast<int>(std::min(r.ss.size(), r.ts.size())));
  const std::vector<Mat3i>& ss = r.ss;
  const std::vector<Vec3>& ts = r.ts;
  const int icentre = r.icentre;
  const Vec3& co = r.co;
  std::vector<Exact_Op> ops;
  for (int i = 0; i < ng; ++i) ops.push_back({ss[i], in_24ths(ts[i])});
  if (icentre != 1) {
    const Vec3i twice = in_24ths(Vec3{2.0f * co[0], 2.0f * co[1], 2.0f * co[2]});
    for (int i = 0; i < ng; ++i) {
      const Vec3i& t = ops[static_cast<std::size_t>(i)].tr;
      ops.push_back({negated(ss[i]), {twice[0] - t[0], twice[1] - t[1], twice[2] - t[2]}});
    }
  }
  const std::size_t m = ops.size();
  const char letter = hall.empty() ? ' ' : hall[hall[0] == '-' ? 1 : 0];
  for (const Vec3i& l : centring_vectors(letter)) {
    for (std::size_t j = 0; j < m; ++j) {
      const Vec3i& t = ops[j].tr;
      ops.push_back({ops[j].rot, {t[0] + l[0], t[1] + l[1], t[2] + l[2]}});
    }
  }
  std::vector<std::uint32_t> codes;
  for (const Exact_Op& o : ops) codes.push_back(op_code(o.rot, o.tr));
  return sorted_key(std::move(codes));
}

// The globals of the symmetry library that making a group from a Hall symbol overwrites.
struct Saved_Globals {
  bool err = err_symm;
  std::string mess = err_symm_mess;
  bool hexa_ = hexa;
  int inlat_ = inlat;
  char lat_ch_ = lat_ch;
  std::array<Vec3, max_lattice_points> ltr_ = ltr;
  int nlat_ = nlat;
  ~Saved_Globals() {
    err_symm = err;
    err_symm_mess = mess;
    hexa = hexa_;
    inlat = inlat_;
    lat_ch = lat_ch_;
    ltr = ltr_;
    nlat = nlat_;
  }
};

struct Setting_Keys {
  std::vector<Group_Key> by_row;                 // key of row i + 1
  std::vector<std::pair<Group_Key, int>> index;  // (key, first row with it), sorted by key
};

Setting_Keys make_setting_keys() {
  const Saved_Globals saved;
  Setting_Keys k;
  for (const Spgr_Info_Type& row : spgr_info()) {
    err_symm = false;
    k.by_row.push_back(key_of_hall(trim(row.hall)));
  }
  for (int i = 0; i < num_spgr_info; ++i) {
    k.index.emplace_back(k.by_row[static_cast<std::size_t>(i)], i + 1);
  }
  // Stable, so that of the rows of one group the first in table order stands first.
  std::stable_sort(k.index.begin(), k.index.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  return k;
}

// Made once per process; the initialisation of a local static is safe among threads.
const Setting_Keys& setting_keys() {
  static const Setting_Keys keys = make_setting_keys();
  return keys;
}

}  // namespace

Group_Key group_key(const Space_Group_Type& spg) {
  const int n = std::clamp(spg.multip, 0, static_cast<int>(spg.symop.size()));
  std::vector<std::uint32_t> codes;
  codes.reserve(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) {
    const Sym_Oper_Type& o = spg.symop[static_cast<std::size_t>(i)];
    codes.push_back(op_code(o.rot, in_24ths(o.tr)));
  }
  return sorted_key(std::move(codes));
}

const Group_Key& setting_key(int row) {
  static const Group_Key none;
  const auto& keys = setting_keys().by_row;
  if (row < 1 || row > static_cast<int>(keys.size())) return none;
  return keys[static_cast<std::size_t>(row - 1)];
}

int setting_of_key(const Group_Key& key) {
  if (key.empty()) return 0;
  const auto& index = setting_keys().index;
  const auto it =
      std::lower_bound(index.begin(), index.end(), key,
                       [](const auto& entry, const Group_Key& k) { return entry.first < k; });
  return (it != index.end() && it->first == key) ? it->second : 0;
}

}  // namespace velmoria

// Records of symmetry operators and space groups: the small operations on operators and the
// globals of the symmetry library.
#include "symmetry/records.hpp"

#include <algorithm>
#include <cmath>

namespace velmoria {

namespace {
constexpr std::size_t err_symm_mess_len = 150;
}  // namespace

const std::array<const char*, 3> centro = {
    "Centric (-1 not at origin)", "Acentric                  ", "Centric (-1 at origin)    "};

VELMORIA_ERROR_PAIR_DEFINITIONS(symm, err_symm_mess_len)
constinit thread_local bool hexa = false;
constinit thread_local int inlat = 0;
constinit thread_local char lat_ch = ' ';
constinit thread_local std::array<Vec3, max_lattice_points> ltr{};
constinit thread_local int nlat = 0;

int ibravl_of(char letter) {
  const auto k = lattice_letters.find(letter);
  return k == std::string_view::npos ? 0 : static_cast<int>(k) + 1;
}

void allocate_lattice_centring(Lattice_Centring_Type& record, int n, bool extended) {
  const int rows = extended ? 4 : 3;
  const int columns = std::max(n, 0);
  record.vectors.assign(static_cast<std::size_t>(columns),
                        std::vector<float>(static_cast<std::size_t>(rows), 0.0f));
  record.num_vec = columns;
  record.set = false;
}

Vec3 applyso(const Sym_Oper_Type& op, const Vec3& v) {
  Vec3 w{};
  for (int i = 0; i < 3; ++i) {
    float s = 0.0f;
    for (int j = 0; j < 3; ++j) s += static_cast<float>(op.rot[i][j]) * v[j];
    w[i] = s + op.tr[i];
  }
  return w;
}

}  // namespace velmoria

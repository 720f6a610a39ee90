// Records of symmetry operators and space groups: the small operations on operators and the
// globals of the symmetry library.
#include "symmetry/records.hpp"

#include <algorithm>
#include <cmath>

namespace velmoria {

namespace {
constexpr std::size_t err_symm_mess_len = 150;
constexpr float op_translation_tolerance = 0.0002f;
}  // namespace

const std::array<const char*, 3> centro = {
    "Centric (-1 not at origin)", "Acentric                  ", "Centric (-1 at origin)    "};

constinit thread_local bool err_symm = false;
thread_local std::string err_symm_mess;
constinit thread_local bool hexa = false;
constinit thread_local int inlat = 0;
constinit thread_local char lat_ch = ' ';
constinit thread_local std::array<Vec3, max_lattice_points> ltr{};
constinit thread_local int nlat = 0;

constinit thread_local int err_symm_depth = 0;

int ibravl_of(char letter) {
  const auto k = lattice_letters.find(letter);
  return k == std::string_view::npos ? 0 : static_cast<int>(k) + 1;
}

void init_err_symm() {
  clear_error_pair(err_symm, err_symm_mess);
}

void reset_symm_state() {
  clear_error_pair(err_symm, err_symm_mess);
  err_symm_depth = 0;
}

void set_err_symm(std::string_view message) {
  raise_error_pair(err_symm, err_symm_mess, message, err_symm_mess_len);
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

bool equal_symop(const Sym_Oper_Type& a, const Sym_Oper_Type& b) {
  for (int i = 0; i < 3; ++i) {
    if (std::fabs(a.tr[i] - b.tr[i]) > op_translation_tolerance) return false;
  }
  return a.rot == b.rot;
}

bool is_new_op(const Sym_Oper_Type& op, int n, const std::vector<Sym_Oper_Type>& list) {
  const int count = std::min(n, static_cast<int>(list.size()));
  for (int i = 0; i < count; ++i) {
    if (equal_symop(op, list[static_cast<std::size_t>(i)])) return false;
  }
  return true;
}

Sym_Oper_Type product_symop(const Sym_Oper_Type& a, const Sym_Oper_Type& b) {
  Sym_Oper_Type c;
  for (int i = 0; i < 3; ++i) {
    float t = 0.0f;
    for (int j = 0; j < 3; ++j) {
      int s = 0;
      for (int k = 0; k < 3; ++k) s += a.rot[i][k] * b.rot[k][j];
      c.rot[i][j] = s;
      t += static_cast<float>(a.rot[i][j]) * b.tr[j];
    }
    c.tr[i] = t + a.tr[i];
  }
  return c;
}

}  // namespace velmoria

// The listing of the group of the vector: the vector, the status of -k, the extended group,
// the star with its cosets and the operators of the group of the vector.
#include <algorithm>
#include <string>

#include "kvector/group_k.hpp"
#include "support/layout.hpp"
#include "support/text.hpp"

namespace velmoria {

namespace {

// Text of operator op of the group (50 characters); blank when op is not in the list.
std::string op_text(const Group_k_Type& gk, int op) {
  const auto& symb = gk.group.symop_symb;
  if (op < 1 || op > static_cast<int>(symb.size())) return std::string(50, ' ');
  return fixed(symb[op - 1], 50);
}

// Rotation of operator op; the zero matrix when op is not in the list.
Mat3i op_rotation(const Group_k_Type& gk, int op) {
  const auto& symop = gk.group.symop;
  if (op < 1 || op > static_cast<int>(symop.size())) return Mat3i{};
  return symop[op - 1].rot;
}

// Entry i (1-based) of the list of operators; 0 behind its end.
int op_number(const Group_k_Type& gk, int i) {
  return i >= 1 && i <= static_cast<int>(gk.ops.size()) ? gk.ops[i - 1] : 0;
}

void write_minus_k_status(const Group_k_Type& gk, std::string& out) {
  if (gk.k_equiv_mk) {
    put(out, "a", " =>  K .. IS .. equivalent to -K, the extended little group is G(k) ");
  } else if (gk.minus_k_in_star) {
    put(out, "a", " =>  K .. IS NOT .. equivalent to -K, the extended little group is G(k,-k) ");
  } else {
    put(out, "a",
        " => -K .. IS NOT .. in the star of k, the extended little group is G(k,-k)=G(k) ");
  }
}

// The numerals of the operators of the extended little group, one record.
void write_extended_numerals(const Group_k_Type& gk, std::string& out) {
  const char* head = " => Numerals of the extended little group operators:  {";
  int m = gk.ngk_ops;
  if (!gk.k_equiv_mk && gk.minus_k_in_star) m *= 2;
  if (m < 2) {
    put(out, "a,i3,a", head, op_number(gk, 1), "}");
    return;
  }
  Items items = make_items(head);
  for (int i = 1; i < m; ++i) {
    add_item(items, op_number(gk, i));
    add_item(items, ",");
  }
  add_item(items, op_number(gk, m));
  add_item(items, " }");
  out += format_layout("a,48(i3,a)", items);
}

// One arm of the star: the arm itself with the first operator of its coset, then the image
// of the input vector under each further operator of the coset.
void write_arm(const Group_k_Type& gk, int a, std::size_t w, std::string& out) {
  const Vec3& h = gk.stark[0];
  const Vec3& arm = gk.stark[a - 1];
  const std::string name = fixed(sput(a < 10 ? "a,i1" : "a,i2", "k_", a), 4);
  const Vec3 mh{-h[0], -h[1], -h[2]};
  const std::string head =
      k_equiv(arm, mh, gk.group.spg_lat) ? "  Eqv. -K: " : std::string(11, ' ');
  const std::vector<int>& coset = gk.cosets[a - 1];
  const int first = coset.empty() ? 0 : coset[0];
  put(out, "/,a,3f8.4,a,i3,a,a", head + name + " = (", arm, " )    Op: (", first, ") ",
      trim(op_text(gk, first)));
  const std::string layout =
      w > 0 ? "a,i3,a,a" + std::to_string(w) + ",a,3f8.4,a" : "a,i3,a,a,a,3f8.4,a";
  const std::size_t last = std::min<std::size_t>(coset.size(), max_coset_ops);
  for (std::size_t j = 1; j < last; ++j) {
    const int op = coset[j];
    if (op == 0) break;
    put(out, layout, "                                                 Op: (", op, ") ",
        w > 0 ? op_text(gk, op) : std::string(), "  -> ( ", hr_r(h, op_rotation(gk, op)), " )");
  }
}

}  // namespace

void write_group_k(const Group_k_Type& gk, std::string& out) {
  put(out, "/,a", "      PROPAGATION VECTOR GROUP INFORMATION");
  put(out, "a,/", "      ====================================");
  const Vec3 h = gk.stark.empty() ? Vec3{0, 0, 0} : gk.stark[0];
  put(out, "a,3f8.4,a", " => The input propagation vector is: K=(", h, " )");
  write_minus_k_status(gk, out);
  put(out, "a",
      " => The operators following the k-vectors constitute the co-set decomposition G[Gk]");
  put(out, "a",
      "    The list of equivalent k-vectors are also given on the right of operators.     ");
  write_extended_numerals(gk, out);
  put(out, "a,i3,a,/", " => The star of K is formed by the following ", gk.nk, " vectors:");

  std::size_t w = 0;
  const int multip = std::min<int>(gk.group.multip, static_cast<int>(gk.group.symop_symb.size()));
  for (int i = 1; i <= multip; ++i) w = std::max(w, len_trim(op_text(gk, i)));
  const int arms = std::min({gk.nk, static_cast<int>(gk.stark.size()),
                             static_cast<int>(gk.cosets.size()), max_star_arms});
  for (int a = 1; a <= arms; ++a) write_arm(gk, a, w, out);

  put(out, "/,a,/", " => G_k has the following symmetry operators: ");
  for (int i = 1; i <= std::min<int>(gk.ngk_ops, static_cast<int>(gk.ops.size())); ++i) {
    const int op = gk.ops[i - 1];
    put(out, "2(a,i3),a,a", "    ", i, " SYMM(", op, ") = ", trim(op_text(gk, op)));
  }

  if (!gk.k_equiv_mk && gk.group.centred == 1) {
    put(out, "/,a",
        " => The original space group is non-centrosymmetric and K is not equivalent to -K");
    put(out, "a",
        "    If the vector k=-K does not appear within the arm of the K-vector, the propagation");
    put(out, "a",
        "    vector k=-K should be included in applications where final vector components have ");
    put(out, "a,/", "    to be real values.   ");
  }
}

}  // namespace velmoria

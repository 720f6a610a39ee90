#include "magnetic/mcif.hpp"

#include <cctype>
#include <cmath>
#include <cstdio>

namespace velmoria {
namespace {

std::string number(double v, int decimals) {
  char buf[48];
  std::snprintf(buf, sizeof buf, "%.*f", decimals, std::abs(v) < 1e-9 ? 0.0 : v);
  return buf;
}

double length(const Vec3d& v) {
  return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

double angle(const Vec3d& u, const Vec3d& v) {
  const double c = (u[0] * v[0] + u[1] * v[1] + u[2] * v[2]) / (length(u) * length(v));
  return std::acos(std::fmax(-1.0, std::fmin(1.0, c))) * 180.0 / std::acos(-1.0);
}

// The element of a label: its leading letters ("Mn_1" -> "Mn").
std::string type_symbol(const std::string& label) {
  std::string s;
  for (char c : label) {
    if (!std::isalpha(static_cast<unsigned char>(c)) || s.size() == 2) break;
    s += static_cast<char>(s.empty() ? std::toupper(static_cast<unsigned char>(c))
                                     : std::tolower(static_cast<unsigned char>(c)));
  }
  return s.empty() ? "X" : s;
}

std::string cif_word(std::string s) {
  for (char& c : s)
    if (std::isspace(static_cast<unsigned char>(c)) || c == '\'' || c == '"') c = '_';
  return s.empty() ? "?" : s;
}

bool is_identity(const Mat3i& r) {
  return r == Mat3i{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
}

bool same(const Magnetic_Operation& a, const Magnetic_Operation& b) {
  if (a.rotation != b.rotation || a.time_reversal != b.time_reversal) return false;
  for (int i = 0; i < 3; ++i) {
    const double d = a.translation[i] - b.translation[i];
    if (std::abs(d - std::round(d)) > 1e-5) return false;
  }
  return true;
}

Magnetic_Operation compose(const Magnetic_Operation& g, const Magnetic_Operation& c) {
  Magnetic_Operation r = g;
  for (int i = 0; i < 3; ++i) {
    r.translation[i] = g.translation[i];
    for (int k = 0; k < 3; ++k) r.translation[i] += g.rotation[i][k] * c.translation[k];
  }
  r.time_reversal = g.time_reversal != c.time_reversal;
  return r;
}

// The operations split into the centring (pure translations, with or without time reversal)
// and one representative of every coset of it.
void split_operations(const std::vector<Magnetic_Operation>& ops,
                      std::vector<Magnetic_Operation>& representatives,
                      std::vector<Magnetic_Operation>& centring) {
  for (const auto& op : ops)
    if (is_identity(op.rotation)) centring.push_back(op);
  for (const auto& op : ops) {
    bool covered = false;
    for (const auto& k : representatives)
      for (const auto& c : centring) covered = covered || same(compose(k, c), op);
    if (!covered) representatives.push_back(op);
  }
}

void operation_loop(std::string& out, const std::string& category,
                    const std::vector<Magnetic_Operation>& ops, bool magnetic) {
  out += "loop_\n" + category + ".id\n" + category + (magnetic ? ".xyz\n" : ".operation_xyz\n");
  for (std::size_t i = 0; i < ops.size(); ++i)
    out += std::to_string(i + 1) + " " + operation_text(ops[i], magnetic) + "\n";
  out += "\n";
}

void cell_lines(std::string& out, const std::array<Vec3d, 3>& l) {
  const char* axes[3] = {"a", "b", "c"};
  for (int j = 0; j < 3; ++j)
    out += std::string("_cell_length_") + axes[j] + "  " + number(length(l[j]), 5) + "\n";
  out += "_cell_angle_alpha  " + number(angle(l[1], l[2]), 4) + "\n";
  out += "_cell_angle_beta   " + number(angle(l[0], l[2]), 4) + "\n";
  out += "_cell_angle_gamma  " + number(angle(l[0], l[1]), 4) + "\n\n";
}

void atom_lines(std::string& out, const Identification& id) {
  out +=
      "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n"
      "_atom_site_fract_y\n_atom_site_fract_z\n";
  for (const auto& a : id.atoms) {
    out += cif_word(a.label) + " " + type_symbol(a.label);
    for (double x : a.position) out += " " + number(x, 5);
    out += "\n";
  }
  out += "\n";
  if (id.polar) return;
  // Starting moments: the arrangement of the candidate, the largest moment 1 Bohr magneton.
  double largest = 0;
  for (const auto& a : id.atoms) {
    Vec3d cart{};
    for (int j = 0; j < 3; ++j)
      for (int r = 0; r < 3; ++r)
        cart[r] += a.moment[j] * id.cell_lattice[j][r] / length(id.cell_lattice[j]);
    largest = std::fmax(largest, length(cart));
  }
  out +=
      "loop_\n_atom_site_moment.label\n_atom_site_moment.crystalaxis_x\n"
      "_atom_site_moment.crystalaxis_y\n_atom_site_moment.crystalaxis_z\n"
      "_atom_site_moment.symmform\n";
  for (const auto& a : id.atoms) {
    out += cif_word(a.label);
    for (double m : a.moment) out += " " + number(largest > 0 ? m / largest : 0.0, 5);
    out += " " + a.symmform + "\n";
  }
  out += "\n";
}

}  // namespace

std::string operation_text(const Magnetic_Operation& op, bool magnetic) {
  const char* names = "xyz";
  std::string s;
  for (int i = 0; i < 3; ++i) {
    std::string row;
    for (int k = 0; k < 3; ++k) {
      const int c = op.rotation[i][k];
      if (c == 0) continue;
      if (c < 0) row += '-';
      if (c > 0 && !row.empty()) row += '+';
      if (std::abs(c) != 1) row += std::to_string(std::abs(c));
      row += names[k];
    }
    const std::string t = fraction_text(op.translation[i]);
    if (t != "0") row += (t[0] == '-' || row.empty() ? "" : "+") + t;
    s += (row.empty() ? "0" : row) + (i < 2 ? "," : "");
  }
  if (magnetic) s += op.time_reversal ? ",-1" : ",+1";
  return s;
}

std::string mcif_text(const Identification& id, const Parent_Info& parent,
                      const std::string& name) {
  std::string out = "# " + std::string(id.polar ? "CIF of a distorted structure" : "Magnetic CIF") +
                    " written by Velmoria 5.00\n";
  if (!parent.title.empty()) out += "# " + parent.title + "\n";
  out += "data_" + cif_word(name) + "\n\n";
  out += "_parent_space_group.name_H-M_alt  '" + parent.space_group + "'\n";
  out += "_parent_space_group.IT_number  " + std::to_string(parent.number) + "\n";
  out += "_parent_space_group.child_transform_Pp_abc  '" + id.cell.text + "'\n\n";
  out += "loop_\n_parent_propagation_vector.id\n_parent_propagation_vector.kxkykz\nk1 '[";
  for (int i = 0; i < 3; ++i) out += fraction_text(parent.k[i]) + (i < 2 ? " " : "]'\n\n");
  std::vector<Magnetic_Operation> representatives, centring;
  split_operations(id.operations, representatives, centring);
  if (id.polar) {
    out += "_space_group.IT_number  " + std::to_string(id.space_group_number) + "\n";
    out += "_space_group.name_H-M_alt  '" + id.space_group_symbol + "'\n\n";
    operation_loop(out, "_space_group_symop", id.operations, false);
  } else {
    out += "_space_group_magn.number_BNS  " + id.bns_number + "\n";
    if (!id.bns_symbol.empty()) out += "_space_group_magn.name_BNS  \"" + id.bns_symbol + "\"\n";
    out += "_space_group_magn.number_OG  " + id.og_number + "\n\n";
    operation_loop(out, "_space_group_symop_magn_operation", representatives, true);
    operation_loop(out, "_space_group_symop_magn_centering", centring, true);
  }
  cell_lines(out, id.cell_lattice);
  atom_lines(out, id);
  return out;
}

}  // namespace velmoria

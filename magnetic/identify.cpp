#include "magnetic/identify.hpp"

extern "C" {
#include <spglib.h>
}

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <sstream>

namespace velmoria {
namespace {

constexpr double symprec = 1e-4;       // Cartesian tolerance of spglib's search
constexpr double displacement = 0.05;  // largest displacement of a distorted structure

double norm(const Vec3d& v) {
  return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

double wrap(double x) {
  double f = x - std::floor(x);
  if (f > 1 - 1e-6) f = 0;
  return std::abs(f) < 1e-6 ? 0.0 : f;
}

Mat3d mul(const Mat3d& a, const Mat3d& b) {
  Mat3d c{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 3; ++k) c[i][j] += a[i][k] * b[k][j];
  return c;
}

Vec3d times(const Mat3d& a, const Vec3d& x) {
  Vec3d y{};
  for (int i = 0; i < 3; ++i)
    for (int k = 0; k < 3; ++k) y[i] += a[i][k] * x[k];
  return y;
}

double det(const Mat3d& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

Mat3d to_double(const Mat3i& m) {
  Mat3d r{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) r[i][j] = m[i][j];
  return r;
}

int idet(const Mat3i& m) {
  return static_cast<int>(std::lround(det(to_double(m))));
}

// One operation of spglib's list carried to the standard setting x_s = P x + p.
bool to_standard(const int rot[3][3], const double tr[3], const Mat3d& P, const Mat3d& Pinv,
                 const Vec3d& p, Magnetic_Operation& out) {
  Mat3d w{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) w[i][j] = rot[i][j];
  const Mat3d ws = mul(mul(P, w), Pinv);
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) {
      const long r = std::lround(ws[i][j]);
      if (std::abs(ws[i][j] - static_cast<double>(r)) > 1e-6) return false;
      out.rotation[i][j] = static_cast<int>(r);
    }
  const Vec3d pt = times(P, Vec3d{tr[0], tr[1], tr[2]});
  const Vec3d wp = times(ws, p);
  for (int i = 0; i < 3; ++i) out.translation[i] = wrap(pt[i] + p[i] - wp[i]);
  return true;
}

bool same_translation(const Vec3d& a, const Vec3d& b) {
  for (int i = 0; i < 3; ++i) {
    const double d = a[i] - b[i];
    if (std::abs(d - std::round(d)) > 1e-5) return false;
  }
  return true;
}

void add_unique(std::vector<Magnetic_Operation>& ops, const Magnetic_Operation& op) {
  for (const auto& o : ops)
    if (o.rotation == op.rotation && o.time_reversal == op.time_reversal &&
        same_translation(o.translation, op.translation))
      return;
  ops.push_back(op);
}

// The lattice of the input cell seen from the standard cell: a vector n of the input lattice is
// P n there, a centring translation when it is not a whole vector.  spglib lists no pure lattice
// translation of the input cell, so each operation is repeated with every such centring.
void add_input_lattice(std::vector<Magnetic_Operation>& ops, const Mat3d& P) {
  std::vector<Vec3d> centring{Vec3d{}};
  for (std::size_t c = 0; c < centring.size(); ++c) {  // closure over the three edges
    for (int e = 0; e < 3; ++e) {
      Vec3d t{};
      for (int i = 0; i < 3; ++i) t[i] = wrap(centring[c][i] + P[i][e]);
      const bool known = std::any_of(centring.begin(), centring.end(),
                                     [&](const Vec3d& u) { return same_translation(u, t); });
      if (!known) centring.push_back(t);
    }
  }
  const std::vector<Magnetic_Operation> listed = ops;
  for (const auto& t : centring) {
    for (auto op : listed) {
      for (int i = 0; i < 3; ++i) op.translation[i] = wrap(op.translation[i] + t[i]);
      add_unique(ops, op);
    }
  }
}

std::string combination_text(const Vec3d& v, const char* names) {
  std::string s;
  for (int i = 0; i < 3; ++i) {
    if (std::abs(v[i]) < 1e-8) continue;
    std::string c = fraction_text(v[i]);
    if (c == "1") c.clear();
    if (c == "-1") c = "-";
    if (!s.empty() && (c.empty() || c.front() != '-')) s += '+';
    s += c + names[i];
  }
  return s.empty() ? "0" : s;
}

std::string cell_text(const Magnetic_Cell& cell) {
  std::string s;
  for (int j = 0; j < 3; ++j) s += combination_text(cell.basis[j], "abc") + (j < 2 ? "," : ";");
  for (int j = 0; j < 3; ++j) s += fraction_text(cell.origin[j]) + (j < 2 ? "," : "");
  return s;
}

// The structure as spglib reads it: lattice vectors as columns, Cartesian vectors.
struct Spglib_Cell {
  double lattice[3][3]{};
  std::vector<std::array<double, 3>> positions;
  std::vector<int> types;
  std::vector<double> vectors;  // Cartesian, three per atom
};

Spglib_Cell spglib_cell(const Candidate_Structure& s, bool polar) {
  Spglib_Cell c;
  for (int r = 0; r < 3; ++r)
    for (int j = 0; j < 3; ++j)
      for (int i = 0; i < 3; ++i) c.lattice[r][j] += s.cell[i][j] * s.lattice[i][r];
  double largest = 0;
  for (std::size_t a = 0; a < s.positions.size(); ++a) {
    Vec3d cart{};
    for (int i = 0; i < 3; ++i) {
      const double len = norm(s.lattice[i]);
      for (int r = 0; r < 3; ++r) cart[r] += s.moments[a][i] * s.lattice[i][r] / len;
    }
    largest = std::max(largest, norm(cart));
    c.positions.push_back({s.positions[a][0], s.positions[a][1], s.positions[a][2]});
    c.types.push_back(s.types[a]);
    c.vectors.insert(c.vectors.end(), cart.begin(), cart.end());
  }
  if (polar && largest > 0) {
    // Displaced atoms: the largest displacement becomes `displacement` long.
    for (std::size_t a = 0; a < c.positions.size(); ++a) {
      const Vec3d cart{c.vectors[3 * a], c.vectors[3 * a + 1], c.vectors[3 * a + 2]};
      Mat3d lat{};
      for (int r = 0; r < 3; ++r)
        for (int j = 0; j < 3; ++j) lat[r][j] = c.lattice[r][j];
      const Vec3d frac = times(inverse(lat), cart);
      for (int i = 0; i < 3; ++i) c.positions[a][i] += frac[i] * displacement / largest;
    }
  }
  return c;
}

std::string check_structure(const Candidate_Structure& s) {
  const std::size_t n = s.positions.size();
  if (n == 0) return "the candidate structure has no atoms";
  if (s.moments.size() != n || s.types.size() != n || s.labels.size() != n)
    return "the candidate structure's lists of atoms differ in length";
  for (const Vec3d& row : s.cell)
    for (double v : row)
      if (!std::isfinite(v)) return "the candidate structure holds a number that is not finite";
  const double volume = std::abs(det(s.cell));
  if (!(volume > 0.1 && volume <= 1728))
    return "the candidate structure's cell is not a small multiple of the parent cell";
  Mat3d lat{};
  for (int i = 0; i < 3; ++i) lat[i] = s.lattice[i];
  if (!(std::abs(det(lat)) > 1e-6)) return "the candidate structure's lattice is degenerate";
  for (std::size_t a = 0; a < n; ++a)
    for (int i = 0; i < 3; ++i)
      if (!std::isfinite(s.positions[a][i]) || !std::isfinite(s.moments[a][i]))
        return "the candidate structure holds a number that is not finite";
  return {};
}

struct Dataset_Free {
  void operator()(SpglibMagneticDataset* d) const { spg_free_magnetic_dataset(d); }
  void operator()(SpglibDataset* d) const { spg_free_dataset(d); }
};

// The standard setting of a dataset: P, its inverse and p.
struct Setting {
  Mat3d P{}, Pinv{};
  Vec3d p{};
};

Setting setting_of(const double tm[3][3], const double os[3]) {
  Setting st;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) st.P[i][j] = tm[i][j];
    st.p[i] = os[i];
  }
  st.Pinv = inverse(st.P);
  return st;
}

// The cell of the standard setting relative to the parent, and its Cartesian rows.
void fill_cell(const Candidate_Structure& s, const Setting& st, Identification& id) {
  Mat3d M{};  // columns: the magnetic cell's vectors in the parent's coordinates
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 3; ++k) M[i][j] += s.cell[i][k] * st.Pinv[k][j];
  const Vec3d o = times(M, st.p);
  for (int j = 0; j < 3; ++j) {
    for (int i = 0; i < 3; ++i) id.cell.basis[j][i] = std::abs(M[i][j]) < 1e-9 ? 0 : M[i][j];
    id.cell.origin[j] = wrap(-o[j]);
    for (int r = 0; r < 3; ++r) {
      id.cell_lattice[j][r] = 0;
      for (int i = 0; i < 3; ++i) id.cell_lattice[j][r] += M[i][j] * s.lattice[i][r];
    }
  }
  id.cell.text = cell_text(id.cell);
}

// The atoms of the run's sites that stand first in their orbits, in the standard setting.
void fill_atoms(const Candidate_Structure& s, const Setting& st, const int* equivalent,
                Identification& id) {
  Mat3d rows{};
  for (int j = 0; j < 3; ++j) rows[j] = id.cell_lattice[j];
  Mat3d cols{};
  for (int r = 0; r < 3; ++r)
    for (int j = 0; j < 3; ++j) cols[r][j] = rows[j][r];
  const Mat3d to_lattice = inverse(cols);
  for (std::size_t a = 0; a < s.positions.size(); ++a) {
    if (s.types[a] <= 0 || equivalent[a] != static_cast<int>(a)) continue;
    Cell_Atom atom;
    atom.label = s.labels[a];
    atom.type = s.types[a];
    const Vec3d x = times(st.P, s.positions[a]);
    for (int i = 0; i < 3; ++i) atom.position[i] = wrap(x[i] + st.p[i]);
    Vec3d cart{};
    for (int i = 0; i < 3; ++i) {
      const double len = norm(s.lattice[i]);
      for (int r = 0; r < 3; ++r) cart[r] += s.moments[a][i] * s.lattice[i][r] / len;
    }
    const Vec3d c = times(to_lattice, cart);
    for (int j = 0; j < 3; ++j) {
      const double u = c[j] * norm(rows[j]);
      atom.moment[j] = std::abs(u) < 1e-9 ? 0 : u;
    }
    std::vector<Magnetic_Operation> site;
    for (const auto& op : id.operations) {
      const Vec3d y = times(to_double(op.rotation), atom.position);
      Vec3d d{};
      for (int i = 0; i < 3; ++i) d[i] = y[i] + op.translation[i] - atom.position[i];
      if (same_translation(d, Vec3d{})) site.push_back(op);
    }
    atom.symmform = moment_symmform(site, id.cell_lattice, !id.polar);
    id.atoms.push_back(atom);
  }
}

// Bases C U of the cell's lattice tried in turn: spglib's magnetic search (version 2.0) fails
// on some structures in one basis and not in another.  The given basis first, then shears.
const std::array<Mat3i, 9> bases = {
    Mat3i{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, Mat3i{{{1, 0, 0}, {0, 1, 0}, {-1, -1, 1}}},
    Mat3i{{{1, 1, 0}, {0, 1, 0}, {0, 0, 1}}}, Mat3i{{{1, 0, 1}, {0, 1, 0}, {0, 0, 1}}},
    Mat3i{{{1, 0, 0}, {0, 1, 1}, {0, 0, 1}}}, Mat3i{{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}},
    Mat3i{{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}}, Mat3i{{{1, 0, 0}, {1, 1, 0}, {0, 0, 1}}},
    Mat3i{{{1, 0, 0}, {0, 1, 0}, {1, 1, 1}}}};

// Atoms of one type whose moments differ in length are never carried onto each other: a type
// of their own for each length lets spglib's search of the operations without moments, which
// it then tests with moments, find fewer of them.  Lengths that differ by less than 1e-3, ten
// times the tolerance on moments, share a class: moments that spglib takes as equal are never
// told apart (a split would lose operations of the group).
void length_classes(Spglib_Cell& c) {
  std::vector<std::pair<std::pair<int, double>, std::size_t>> order;
  for (std::size_t a = 0; a < c.types.size(); ++a) {
    const Vec3d m{c.vectors[3 * a], c.vectors[3 * a + 1], c.vectors[3 * a + 2]};
    order.push_back({{c.types[a], norm(m)}, a});
  }
  std::sort(order.begin(), order.end());
  int cls = 0;
  for (std::size_t i = 0; i < order.size(); ++i) {
    const bool same = i > 0 && order[i].first.first == order[i - 1].first.first &&
                      order[i].first.second - order[i - 1].first.second < 1e-3;
    if (!same) ++cls;
    c.types[order[i].second] = cls;
  }
}

// The structure in the basis C U of its lattice (U unimodular): positions U^-1 x.
Candidate_Structure rebased(const Candidate_Structure& s, const Mat3i& u) {
  Candidate_Structure r = s;
  const Mat3d ud = to_double(u);
  r.cell = mul(s.cell, ud);
  const Mat3d back = inverse(ud);
  for (Vec3d& x : r.positions) {
    x = times(back, x);
    for (double& c : x) c = wrap(c);
  }
  return r;
}

// The n operations that spglib found, in the standard setting, with the centring that the input
// cell's lattice gives there; time_reversals may be null (no time reversal).  False, with the
// error set, when an operation does not carry over.
bool take_operations(int n, const int (*rotations)[3][3], const double (*translations)[3],
                     const int* time_reversals, const Setting& st, Identification& id) {
  for (int k = 0; k < n; ++k) {
    Magnetic_Operation op;
    if (!to_standard(rotations[k], translations[k], st.P, st.Pinv, st.p, op)) {
      id.error = "the operations do not carry over to the standard setting";
      return false;
    }
    op.time_reversal = time_reversals != nullptr && time_reversals[k] != 0;
    add_unique(id.operations, op);
  }
  add_input_lattice(id.operations, st.P);
  return true;
}

Identification identify_moments(const Candidate_Structure& given, Identification id) {
  std::unique_ptr<SpglibMagneticDataset, Dataset_Free> d;
  Candidate_Structure s;
  // First with a type for each length of moment, in every basis, then with the types of the
  // sites, in every basis.
  for (std::size_t attempt = 0; attempt < 2 * bases.size() && !d; ++attempt) {
    s = rebased(given, bases[attempt % bases.size()]);
    Spglib_Cell c = spglib_cell(s, false);
    if (attempt < bases.size()) length_classes(c);
    const int n = static_cast<int>(c.positions.size());
    d.reset(spg_get_magnetic_dataset(c.lattice, reinterpret_cast<double(*)[3]>(c.positions.data()),
                                     c.types.data(), c.vectors.data(), 1, n, 1, symprec));
  }
  if (!d) {
    id.error = std::string("spglib found no magnetic space group: ") +
               spg_get_error_message(spg_get_error_code());
    return id;
  }
  const SpglibMagneticSpacegroupType t = spg_get_magnetic_spacegroup_type(d->uni_number);
  id.uni_number = d->uni_number;
  id.bns_number = t.bns_number;
  id.og_number = t.og_number;
  id.type = d->msg_type;
  const SpglibSpacegroupType family = spg_get_spacegroup_type(d->hall_number);
  id.space_group_number = family.number;
  id.space_group_symbol = family.international_short;
  const Setting st = setting_of(d->transformation_matrix, d->origin_shift);
  if (!take_operations(d->n_operations, d->rotations, d->translations, d->time_reversals, st, id)) {
    return id;
  }
  fill_cell(s, st, id);
  fill_atoms(s, st, d->equivalent_atoms, id);
  id.bns_symbol = bns_symbol_of(id.operations, d->hall_number, id.type);
  return id;
}

Identification identify_displacements(const Candidate_Structure& s, Identification id) {
  Spglib_Cell c = spglib_cell(s, true);
  const int n = static_cast<int>(c.positions.size());
  std::unique_ptr<SpglibDataset, Dataset_Free> d(spg_get_dataset(
      c.lattice, reinterpret_cast<double(*)[3]>(c.positions.data()), c.types.data(), n, symprec));
  if (!d || d->spacegroup_number == 0) {
    id.error =
        std::string("spglib found no space group: ") + spg_get_error_message(spg_get_error_code());
    return id;
  }
  const SpglibSpacegroupType t = spg_get_spacegroup_type(d->hall_number);
  id.space_group_number = d->spacegroup_number;
  id.space_group_symbol = t.international_short;
  const Setting st = setting_of(d->transformation_matrix, d->origin_shift);
  if (!take_operations(d->n_operations, d->rotations, d->translations, nullptr, st, id)) return id;
  fill_cell(s, st, id);
  fill_atoms(s, st, d->equivalent_atoms, id);
  return id;
}

// ---- The BNS symbol ----

using Dir = std::array<int, 3>;

bool fixes(const Mat3i& r, const Dir& d, int sign) {
  for (int i = 0; i < 3; ++i) {
    int y = 0;
    for (int k = 0; k < 3; ++k) y += r[i][k] * d[k];
    if (y != sign * d[i]) return false;
  }
  return true;
}

Mat3i negated(Mat3i r) {
  for (auto& row : r)
    for (int& x : row) x = -x;
  return r;
}

int order(const Mat3i& r) {
  const Mat3i one{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  Mat3i p = r;
  for (int n = 1; n <= 6; ++n) {
    if (p == one) return n;
    Mat3i q{};
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j)
        for (int k = 0; k < 3; ++k) q[i][j] += p[i][k] * r[k][j];
    p = q;
  }
  return 0;
}

// Whether the linear part r is the element `symbol` of a symbol position along d: an axis
// ("2", "4_2", "-4", "-1") or a plane perpendicular to d ("m", "n", "c", ...).
bool is_element(const Mat3i& r, const std::string& symbol, const Dir& d) {
  if (symbol == "-1") return r == negated(Mat3i{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}});
  const int det_r = idet(r);
  if (symbol[0] == '-') {  // rotoinversion -n: -r turns by 2 pi / n about d
    const int n = symbol[1] - '0';
    return det_r == -1 && order(negated(r)) == n && fixes(negated(r), d, 1);
  }
  if (symbol[0] >= '2' && symbol[0] <= '6') {
    const int n = symbol[0] - '0';
    return det_r == 1 && order(r) == n && fixes(r, d, 1);
  }
  // A plane: -r is the two-fold rotation about its normal d.
  return det_r == -1 && order(negated(r)) == 2 && fixes(negated(r), d, 1);
}

// The prime of an element: "'" when its operators carry time reversal, "" when not, "?" when
// no operator is that element or its operators disagree.
std::string prime_of(const std::vector<Magnetic_Operation>& ops, const std::string& symbol,
                     const Dir& d) {
  if (symbol == "1") return "";
  int with = 0, without = 0;
  for (const auto& op : ops)
    if (is_element(op.rotation, symbol, d)) (op.time_reversal ? with : without)++;
  if (with > 0 && without == 0) return "'";
  if (without > 0 && with == 0) return "";
  return "?";
}

std::vector<std::string> split(const std::string& s, char sep) {
  std::vector<std::string> out;
  std::string part;
  std::istringstream in(s);
  while (std::getline(in, part, sep))
    if (!part.empty()) out.push_back(part);
  return out;
}

// The directions of the positions of the short symbol of a group of number `number`.
std::vector<Dir> symbol_directions(int number, const std::vector<std::string>& full) {
  if (number <= 2) return {Dir{0, 0, 1}};
  if (number <= 15) {  // monoclinic: the unique axis is the position of the full symbol that
                       // is not 1
    for (std::size_t i = 1; i < full.size() && i <= 3; ++i)
      if (full[i] != "1") return {i == 1 ? Dir{1, 0, 0} : i == 2 ? Dir{0, 1, 0} : Dir{0, 0, 1}};
    return {};
  }
  if (number <= 74) return {Dir{1, 0, 0}, Dir{0, 1, 0}, Dir{0, 0, 1}};
  if (number <= 194) return {Dir{0, 0, 1}, Dir{1, 0, 0}, Dir{1, -1, 0}};
  return {Dir{1, 0, 0}, Dir{1, 1, 1}, Dir{1, -1, 0}};
}

}  // namespace

std::string fraction_text(double v) {
  for (int den = 1; den <= 48; ++den) {
    const double num = v * den;
    const long r = std::lround(num);
    if (std::abs(num - static_cast<double>(r)) < 1e-5 * den) {
      if (r == 0) return "0";
      return den == 1 ? std::to_string(r) : std::to_string(r) + "/" + std::to_string(den);
    }
  }
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.6f", v);
  return buf;
}

std::string bns_symbol_of(const std::vector<Magnetic_Operation>& operations, int hall_number,
                          int type) {
  if (type < 1 || type > 3 || hall_number < 1 || hall_number > 530) return {};
  const SpglibSpacegroupType t = spg_get_spacegroup_type(hall_number);
  // Only in the standard setting of the type (an origin choice aside): the symbol of another
  // setting would name the group in axes that BNS does not use.
  int first = 1;
  while (first < hall_number && spg_get_spacegroup_type(first).number != t.number) ++first;
  if (std::string(spg_get_spacegroup_type(first).international_short) != t.international_short)
    return {};
  std::string shorter = t.international;
  if (const auto eq = shorter.find(" = "); eq != std::string::npos) shorter.resize(eq);
  const std::vector<std::string> tokens = split(shorter, ' ');
  const std::vector<std::string> full = split(t.international_full, ' ');
  const std::vector<Dir> dirs = symbol_directions(t.number, full);
  if (tokens.size() < 2 || tokens.size() - 1 > dirs.size()) return {};
  std::string symbol = tokens[0];
  for (std::size_t i = 1; i < tokens.size(); ++i) {
    const Dir& d = dirs[i - 1];
    const std::vector<std::string> parts = split(tokens[i], '/');
    for (std::size_t k = 0; k < parts.size(); ++k) {
      if (k > 0) symbol += '/';
      std::string element = parts[k];
      const bool axis = element[0] == '-' || (element[0] >= '1' && element[0] <= '6');
      if (parts.size() == 2 && k == 1 && axis) return {};
      const std::string prime = type == 2 ? "" : prime_of(operations, element.substr(0, 2), d);
      if (prime == "?") return {};
      symbol += element + prime;
    }
  }
  if (type == 2) symbol += "1'";
  return symbol;
}

std::string moment_symmform(const std::vector<Magnetic_Operation>& site_operations,
                            const std::array<Vec3d, 3>& lattice, bool axial) {
  const char* names[3] = {axial ? "mx" : "dx", axial ? "my" : "dy", axial ? "mz" : "dz"};
  // Rows of the constraints s R_u - 1 on the components along the unit vectors.
  std::vector<Vec3d> rows;
  for (const auto& op : site_operations) {
    const Mat3d r = to_double(op.rotation);
    double s = 1;
    if (axial) s = det(r) * (op.time_reversal ? -1 : 1);
    for (int i = 0; i < 3; ++i) {
      Vec3d row{};
      for (int j = 0; j < 3; ++j)
        row[j] = s * r[i][j] * norm(lattice[i]) / norm(lattice[j]) - (i == j ? 1 : 0);
      rows.push_back(row);
    }
  }
  // Reduced row echelon form, pivots taken from the last component backwards so that the
  // free components are the first ones (mx,-mx,0 rather than -my,my,0).
  std::array<int, 3> pivot_row{-1, -1, -1};
  std::size_t r = 0;
  for (int c = 2; c >= 0 && r < rows.size(); --c) {
    std::size_t best = r;
    for (std::size_t k = r; k < rows.size(); ++k)
      if (std::abs(rows[k][c]) > std::abs(rows[best][c])) best = k;
    if (std::abs(rows[best][c]) < 1e-6) continue;
    std::swap(rows[r], rows[best]);
    const double p = rows[r][c];
    for (double& x : rows[r]) x /= p;
    for (std::size_t k = 0; k < rows.size(); ++k) {
      if (k == r) continue;
      const double f = rows[k][c];
      for (int j = 0; j < 3; ++j) rows[k][j] -= f * rows[r][j];
    }
    pivot_row[c] = static_cast<int>(r++);
  }
  std::string out;
  for (int c = 0; c < 3; ++c) {
    if (c > 0) out += ',';
    if (pivot_row[c] < 0) {
      out += names[c];
      continue;
    }
    std::string term;
    for (int f = 0; f < 3; ++f) {
      if (pivot_row[f] >= 0) continue;
      const double coef = -rows[pivot_row[c]][f];
      if (std::abs(coef) < 1e-6) continue;
      std::string k = fraction_text(coef);
      if (k == "1") k.clear();
      if (k == "-1") k = "-";
      if (!term.empty() && (k.empty() || k.front() != '-')) term += '+';
      term += k + names[f];
    }
    out += term.empty() ? "0" : term;
  }
  return out;
}

bool markers_needed(const Candidate_Structure& structure) {
  if (!check_structure(structure).empty()) return true;
  // The operations of the atoms (types only), with the markers or without.
  const auto operations = [&](bool markers) {
    Spglib_Cell c = spglib_cell(structure, false);
    std::vector<std::array<double, 3>> positions;
    std::vector<int> types;
    for (std::size_t a = 0; a < c.positions.size(); ++a) {
      if (c.types[a] <= 0 && !markers) continue;
      positions.push_back(c.positions[a]);
      types.push_back(c.types[a]);
    }
    if (positions.empty()) return 0;
    std::unique_ptr<SpglibDataset, Dataset_Free> d(
        spg_get_dataset(c.lattice, reinterpret_cast<double(*)[3]>(positions.data()), types.data(),
                        static_cast<int>(positions.size()), symprec));
    return d ? d->n_operations : 0;
  };
  const int with = operations(true);
  return with == 0 || operations(false) != with;
}

Candidate_Structure without_markers(const Candidate_Structure& structure) {
  Candidate_Structure s = structure;
  s.positions.clear();
  s.moments.clear();
  s.types.clear();
  s.labels.clear();
  for (std::size_t a = 0; a < structure.types.size(); ++a) {
    if (structure.types[a] == 0) continue;
    s.positions.push_back(structure.positions[a]);
    s.moments.push_back(structure.moments[a]);
    s.types.push_back(structure.types[a]);
    s.labels.push_back(structure.labels[a]);
  }
  return s;
}

Identification identify(const Candidate_Structure& structure, bool polar) {
  Identification id;
  id.polar = polar;
  id.error = check_structure(structure);
  if (!id.error.empty()) return id;
  return polar ? identify_displacements(structure, id) : identify_moments(structure, id);
}

}  // namespace velmoria

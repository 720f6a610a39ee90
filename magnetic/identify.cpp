// The magnetic space group of a candidate, named by spglib from a small structure of exactly its
// symmetry, in the standard setting that spglib gives.
#include "magnetic/identify.hpp"

extern "C" {
#include <spglib.h>
}

#include <algorithm>
#include <cmath>
#include <memory>

#include "magnetic/group_witness.hpp"
#include "magnetic/linear.hpp"

namespace velmoria {

using namespace linear;

namespace {

constexpr double symprec = 1e-4;  // Cartesian tolerance of spglib's search

// The standard setting x_s = P x + p of a group given in the coordinates of a cell.
struct Setting {
  Mat3d P{}, Pinv{};
  Vec3d p{};
};

Setting setting_of(const Mat3d& P, const Vec3d& p) {
  return Setting{P, inverse(P), p};
}

// An operation carried to the standard setting: P R P^-1, P t + p - P R P^-1 p.
bool to_standard(const Magnetic_Operation& op, const Setting& st, Magnetic_Operation& out) {
  const Mat3d ws = mul(mul(st.P, to_double(op.rotation)), st.Pinv);
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) {
      const long r = std::lround(ws[i][j]);
      if (std::abs(ws[i][j] - static_cast<double>(r)) > 1e-6) return false;
      out.rotation[i][j] = static_cast<int>(r);
    }
  const Vec3d pt = times(st.P, op.translation);
  const Vec3d wp = times(ws, st.p);
  for (int i = 0; i < 3; ++i) out.translation[i] = wrap(pt[i] + st.p[i] - wp[i]);
  out.time_reversal = op.time_reversal;
  return true;
}

// The lattice of the input cell seen from the standard cell: a vector n of the input lattice is
// P n there, a centring translation when it is not a whole vector.  Each operation is repeated
// with every such centring.
void add_input_lattice(Group& ops, const Mat3d& P) {
  std::vector<Vec3d> centring{Vec3d{}};
  for (std::size_t c = 0; c < centring.size(); ++c) {  // closure over the three edges
    for (int e = 0; e < 3; ++e) {
      Vec3d t{};
      for (int i = 0; i < 3; ++i) t[i] = wrap(centring[c][i] + P[i][e]);
      const bool known = std::any_of(centring.begin(), centring.end(),
                                     [&](const Vec3d& u) { return same_point(u, t); });
      if (!known) centring.push_back(t);
    }
  }
  const Group listed = ops;
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

// The cell of the standard setting relative to the parent, and its Cartesian rows.
void fill_cell(const Candidate_Structure& s, const Setting& st, Identification& id) {
  Mat3d M{};  // columns: the magnetic cell's vectors in the parent's coordinates
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 3; ++k) M[i][j] += s.cell[i][k] * st.Pinv[k][j];
  // The origin -M p, reduced by the lattice of the magnetic cell only: a vector of the parent's
  // lattice outside it moves the arrangement (the phase of its wave).
  // Of its images the one with the smallest components that are not negative.
  const Vec3d o = times(M, st.p);
  Vec3d in_cell = times(inverse(s.cell), Vec3d{-o[0], -o[1], -o[2]});
  for (double& x : in_cell) x = wrap(x);
  Vec3d origin = times(s.cell, in_cell);
  double best = 1e300;
  for (int n = 0; n < 27; ++n) {
    Vec3d shift{};
    for (int i = 0, v = n; i < 3; ++i, v /= 3) shift[i] = in_cell[i] + v % 3 - 1;
    const Vec3d image = times(s.cell, shift);
    const bool whole = image[0] > -1e-9 && image[1] > -1e-9 && image[2] > -1e-9;
    if (whole && image[0] + image[1] + image[2] < best - 1e-9) {
      best = image[0] + image[1] + image[2];
      origin = image;
    }
  }
  for (int j = 0; j < 3; ++j) {
    for (int i = 0; i < 3; ++i) id.cell.basis[j][i] = std::abs(M[i][j]) < 1e-9 ? 0 : M[i][j];
    id.cell.origin[j] = std::abs(origin[j]) < 1e-9 ? 0 : origin[j];
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
      if (same_point(d, Vec3d{})) site.push_back(op);
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

// A unimodular U whose cell C U has short, nearly orthogonal edges: each edge is shortened by
// whole multiples of the others until none shortens.  spglib's search fails on some long and
// skewed cells (a k of (1/12,1/12,1/12)) that it names once reduced.
Mat3i reducing_basis(const Candidate_Structure& s) {
  Mat3i u{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  std::array<Vec3d, 3> e{};  // Cartesian edges
  for (int j = 0; j < 3; ++j)
    for (int i = 0; i < 3; ++i)
      for (int r = 0; r < 3; ++r) e[j][r] += s.cell[i][j] * s.lattice[i][r];
  const auto dot = [](const Vec3d& a, const Vec3d& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
  };
  for (bool changed = true; changed;) {
    changed = false;
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) {
        if (i == j) continue;
        const long mu = std::lround(dot(e[i], e[j]) / dot(e[j], e[j]));
        Vec3d shorter = e[i];
        for (int r = 0; r < 3; ++r) shorter[r] -= static_cast<double>(mu) * e[j][r];
        if (mu == 0 || dot(shorter, shorter) > dot(e[i], e[i]) * (1 - 1e-9)) continue;
        for (int r = 0; r < 3; ++r) {
          e[i][r] -= static_cast<double>(mu) * e[j][r];
          u[r][i] -= static_cast<int>(mu) * u[r][j];
        }
        changed = true;
      }
  }
  return u;
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

// The cell's edges as Cartesian columns, as spglib reads a lattice.
struct Spglib_Lattice {
  double m[3][3]{};
};

Spglib_Lattice spglib_lattice(const Candidate_Structure& s) {
  Spglib_Lattice l;
  for (int r = 0; r < 3; ++r)
    for (int j = 0; j < 3; ++j)
      for (int i = 0; i < 3; ++i) l.m[r][j] += s.cell[i][j] * s.lattice[i][r];
  return l;
}

// The dataset of a witness, when spglib finds in it exactly `order` operations: the type of the
// group (for displacements its space group, in hall_number) and its standard setting.
bool search(const Witness& w, Spglib_Lattice l, bool polar, int order, Named_Group& out) {
  const int n = static_cast<int>(w.positions.size());
  std::vector<double> positions, vectors;
  for (int a = 0; a < n; ++a) {
    for (int i = 0; i < 3; ++i) {
      positions.push_back(w.positions[a][i]);
      double v = 0;
      for (int j = 0; j < 3; ++j) v += l.m[i][j] * w.moments[a][j];
      vectors.push_back(v);
    }
  }
  std::vector<int> types = w.types;
  auto* xyz = reinterpret_cast<double(*)[3]>(positions.data());
  const auto setting = [&](const double tm[3][3], const double os[3]) {
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) out.P[i][j] = tm[i][j];
      out.p[i] = os[i];
    }
  };
  if (polar) {
    std::unique_ptr<SpglibDataset, Dataset_Free> d(
        spg_get_dataset(l.m, xyz, types.data(), n, symprec));
    if (!d || d->spacegroup_number == 0 || d->n_operations != order) return false;
    out.hall_number = d->hall_number;
    setting(d->transformation_matrix, d->origin_shift);
    return true;
  }
  std::unique_ptr<SpglibMagneticDataset, Dataset_Free> d(
      spg_get_magnetic_dataset(l.m, xyz, types.data(), vectors.data(), 1, n, 1, symprec));
  if (!d || d->n_operations != order) return false;
  out.uni_number = d->uni_number;
  out.type = d->msg_type;
  out.hall_number = d->hall_number;
  setting(d->transformation_matrix, d->origin_shift);
  return true;
}

// spglib's name and setting of the group g of a candidate in the cell of s (coordinates of
// that cell), from the smallest witness that has no other operation with a linear part among
// `rotations`, else from the orbits of two general points (one alone may keep more: the orbit
// of a polar group lies in a plane).
bool name_group(const Candidate_Structure& s, const Group& g, const std::vector<Mat3i>& rotations,
                bool polar, Named_Group& out) {
  const Spglib_Lattice lattice = spglib_lattice(s);
  const int order = static_cast<int>(g.size());
  const Vec3d x0{0.1137, 0.2269, 0.3361}, m0{0.31, 0.53, 0.79};
  // The spatial parts of the operations: spglib's search is cheapest when the witness's
  // positions alone keep no more than these.
  Group parts;
  for (Magnetic_Operation op : g) {
    op.time_reversal = false;
    add_unique(parts, op);
  }
  const int spatial = static_cast<int>(parts.size());
  // Each orbit's moment of its own.
  const auto moment = [&](std::size_t n) {
    return Vec3d{m0[0] + 0.0131 * n, m0[1] + 0.0173 * n, m0[2] - 0.0119 * n};
  };
  Witness w;
  for (const Vec3d& x : special_points(g, x0)) {
    if (std::any_of(w.positions.begin(), w.positions.end(),
                    [&](const Vec3d& p) { return same_point(p, x); }))
      continue;
    Witness next = w;
    add_orbit(next, g, x, moment(w.types.empty() ? 0 : static_cast<std::size_t>(w.types.back())));
    // An orbit without moments tells nothing of time reversal: only orbits with them serve.
    if (!polar && norm(next.moments.back()) < 1e-6) continue;
    if (next.positions.size() >= g.size()) break;
    w = std::move(next);
    const Keeping kept = operations_keeping(w, rotations);
    if (kept.positions == spatial && (polar || kept.moments == order) &&
        search(w, lattice, polar, order, out))
      return true;
  }
  Witness general;
  add_orbit(general, g, x0, m0);
  add_orbit(general, g, Vec3d{x0[2], x0[0] + 0.3, x0[1] + 0.2}, moment(1));
  return search(general, lattice, polar, order, out);
}

// For each atom the first atom of its orbit under the group.
std::vector<int> first_of_orbits(const Candidate_Structure& s, const Group& g) {
  const std::size_t n = s.positions.size();
  std::vector<int> first(n, -1);
  for (std::size_t a = 0; a < n; ++a) {
    if (first[a] >= 0) continue;
    first[a] = static_cast<int>(a);
    for (const auto& op : g) {
      const Vec3d y = image_of(op, s.positions[a]);
      for (std::size_t b = a + 1; b < n; ++b)
        if (first[b] < 0 && s.types[b] == s.types[a] && same_point(y, s.positions[b]))
          first[b] = static_cast<int>(a);
    }
  }
  return first;
}

// The identification of the candidate s with group g (coordinates of its cell) in the setting
// that spglib named.
Identification described(const Candidate_Structure& s, const Group& g, const Named_Group& named,
                         Identification id) {
  const Setting st = setting_of(named.P, named.p);
  if (id.polar) {
    const SpglibSpacegroupType t = spg_get_spacegroup_type(named.hall_number);
    id.space_group_number = t.number;
    id.space_group_symbol = t.international_short;
  } else {
    const SpglibMagneticSpacegroupType t = spg_get_magnetic_spacegroup_type(named.uni_number);
    id.uni_number = named.uni_number;
    id.bns_number = t.bns_number;
    id.og_number = t.og_number;
    id.type = named.type;
    const SpglibSpacegroupType family = spg_get_spacegroup_type(named.hall_number);
    id.space_group_number = family.number;
    id.space_group_symbol = family.international_short;
  }
  for (const auto& op : g) {
    Magnetic_Operation standard;
    if (!to_standard(op, st, standard)) {
      id.error = "the operations do not carry over to the standard setting";
      return id;
    }
    add_unique(id.operations, standard);
  }
  add_input_lattice(id.operations, st.P);
  fill_cell(s, st, id);
  fill_atoms(s, st, first_of_orbits(s, g).data(), id);
  if (!id.polar) id.bns_symbol = bns_symbol_of(id.operations, named.hall_number, id.type);
  return id;
}

// The operations that may carry one isotropy subgroup onto another, in the cell's coordinates:
// the parent's, also moved by half a lattice vector of the parent, which normalise most space
// groups (their origins of equal rights).
Group conjugators(const std::vector<Isotropy_Operation>& parent, const Mat3d& cell) {
  const Mat3i one{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  std::vector<Isotropy_Operation> first, shifts;
  for (const Isotropy_Operation& op : parent) {
    if (op.translation[0] < 1 && op.translation[1] < 1 && op.translation[2] < 1)
      first.push_back(op);
    if (op.rotation != one) continue;
    for (int h = 0; h < 8; ++h) {
      Isotropy_Operation moved = op;
      for (int i = 0; i < 3; ++i) moved.translation[i] += 0.5 * ((h >> i) & 1);
      shifts.push_back(moved);
    }
  }
  Group ops, moves, out;
  group_in_cell(first, cell, false, ops);
  group_in_cell(shifts, cell, false, moves);
  for (Magnetic_Operation op : ops) {
    const Vec3d t = op.translation;
    for (const Magnetic_Operation& m : moves) {
      for (int i = 0; i < 3; ++i) op.translation[i] = wrap(t[i] + m.translation[i]);
      add_unique(out, op);
    }
  }
  return out;
}

// How many operations of the group have each trace (-3 to 3) and determinant of their
// rotation, with time reversal or without: conjugate groups have the same counts.
std::array<int, 28> classes_of(const Group& g) {
  std::array<int, 28> n{};
  for (const Magnetic_Operation& op : g) {
    const int trace = op.rotation[0][0] + op.rotation[1][1] + op.rotation[2][2];
    ++n[static_cast<std::size_t>(((trace + 3) * 2 + (idet(op.rotation) > 0)) * 2 +
                                 op.time_reversal)];
  }
  return n;
}

}  // namespace

Identifier::Identifier(std::vector<Isotropy_Operation> parent, bool polar)
    : parent_(std::move(parent)), polar_(polar) {}

Identification Identifier::identify(const Candidate_Structure& s,
                                    const std::vector<Isotropy_Operation>& group) {
  Identification id;
  id.polar = polar_;
  id.error = check_structure(s);
  if (!id.error.empty()) return id;
  Group g;
  if (group_in_cell(group, s.cell, !polar_, g) > 0 || g.empty()) {
    id.error = "the operations of the group do not keep the cell";
    return id;
  }
  if (conjugators_cell_ != s.cell || conjugators_.empty()) {
    conjugators_cell_ = s.cell;
    conjugators_ = conjugators(parent_, s.cell);
  }
  // A group conjugate to one named before, g = a g1 a^-1, is named in the setting of g1 moved
  // by a: P a^-1.  A proper a keeps the standard cell right-handed; an improper one is made
  // proper by an improper operation h of g1 (a h g1 (a h)^-1 = a g1 a^-1).
  const std::array<int, 28> classes = classes_of(g);
  for (const Known& k : known_) {
    if (k.cell != s.cell || k.classes != classes) continue;
    for (Magnetic_Operation a : conjugators_) {
      if (idet(a.rotation) < 0) {
        const auto h = std::find_if(k.group.begin(), k.group.end(),
                                    [](const auto& op) { return idet(op.rotation) < 0; });
        if (h == k.group.end()) continue;
        a.translation = image_of(a, h->translation);
        a.rotation = mul(a.rotation, h->rotation);
      }
      if (!conjugate(k.group, a, g)) continue;
      Named_Group named = k.named;
      const Mat3d a_inv = inverse(to_double(a.rotation));
      named.P = mul(k.named.P, a_inv);
      const Vec3d shift = times(named.P, a.translation);
      for (int i = 0; i < 3; ++i) named.p[i] = k.named.p[i] - shift[i];
      return described(s, g, named, id);
    }
  }
  std::vector<Mat3i> rotations;
  for (const Group* list : {&conjugators_, &g})
    for (const auto& op : *list)
      if (std::find(rotations.begin(), rotations.end(), op.rotation) == rotations.end())
        rotations.push_back(op.rotation);
  const Mat3i reducing = reducing_basis(s);
  for (const Mat3i& basis : bases) {
    const Mat3i u = mul(reducing, basis);
    const Candidate_Structure r = rebased(s, u);
    Group gr;
    group_in_cell(group, r.cell, !polar_, gr);
    Named_Group named;
    std::vector<Mat3i> rotations_r;
    const Mat3d ud = to_double(u), u_inv = inverse(ud);
    for (const Mat3i& rot : rotations) {
      const Mat3d m = mul(mul(u_inv, to_double(rot)), ud);
      Mat3i mi{};
      for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) mi[i][j] = static_cast<int>(std::lround(m[i][j]));
      rotations_r.push_back(mi);
    }
    if (!name_group(r, gr, rotations_r, polar_, named)) continue;
    // x_s = P x_r + p with x_r = U^-1 x: P U^-1 in the cell's own coordinates.
    named.P = mul(named.P, u_inv);
    known_.push_back({s.cell, g, classes, named});
    return described(s, g, named, id);
  }
  id.error = std::string(polar_ ? "spglib found no space group: "
                                : "spglib found no magnetic space group: ") +
             spg_get_error_message(spg_get_error_code());
  return id;
}

Identification identify(const Candidate_Structure& structure,
                        const std::vector<Isotropy_Operation>& group, bool polar) {
  return Identifier({}, polar).identify(structure, group);
}

}  // namespace velmoria

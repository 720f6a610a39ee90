// The names of a group and of a site's freedom: the BNS symbol written from the group's
// operations, the components of a moment that a site's symmetry lets free, small fractions.
#include <cstdio>
#include <sstream>

#include "magnetic/identify.hpp"
#include "magnetic/linear.hpp"

extern "C" {
#include <spglib.h>
}

namespace velmoria {

using namespace linear;

namespace {

using Dir = std::array<int, 3>;

bool fixes(const Mat3i& r, const Dir& d, int sign) {
  for (int i = 0; i < 3; ++i) {
    int y = 0;
    for (int k = 0; k < 3; ++k) y += r[i][k] * d[k];
    if (y != sign * d[i]) return false;
  }
  return true;
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

}  // namespace velmoria

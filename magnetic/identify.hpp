// The magnetic space group of a candidate structure, found with spglib (its C library holds
// the table of the 1651 magnetic space-group types), and the space group of a distorted
// structure for displacements.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "run/order_parameters.hpp"

namespace velmoria {

using Mat3i = std::array<std::array<int, 3>, 3>;

// An operation x' = R x + t of the group, with time reversal (never for displacements).
struct Magnetic_Operation {
  Mat3i rotation{};
  Vec3d translation{};
  bool time_reversal = false;
};

// The magnetic cell relative to the parent cell: basis[j] holds the components of its j-th
// vector along a, b, c of the parent, origin its origin in the parent's coordinates.  Written
// as text in the form of a parent-to-child transformation, "a,b,2c;0,0,0": the cell's vectors
// as combinations of the parent's, then its origin (the result file puts it in parentheses).
struct Magnetic_Cell {
  std::array<Vec3d, 3> basis{};
  Vec3d origin{};
  std::string text;
};

// A magnetic atom of the asymmetric unit of the magnetic cell.
struct Cell_Atom {
  std::string label;
  int type = 0;
  Vec3d position{};      // fractional in the magnetic cell
  Vec3d moment{};        // along the unit vectors of the magnetic cell's axes
  std::string symmform;  // the components its site symmetry allows: "0,0,mz", "mx,-mx,mz"
};

struct Identification {
  std::string error;  // why the group was not found; empty when it was
  bool polar = false;
  // The magnetic space group (moments).
  int uni_number = 0;
  std::string bns_number;  // "136.499"
  std::string og_number;   // "136.4.1155"
  int type = 0;            // 1 to 4
  std::string bns_symbol;  // "P4_2'/mnm'"; empty where the symbol is not reliable
  // The space group of the distorted structure (displacements); for moments, the family group.
  int space_group_number = 0;
  std::string space_group_symbol;  // Hermann-Mauguin, short: "P4mm"
  Magnetic_Cell cell;
  std::array<Vec3d, 3> cell_lattice{};         // Cartesian rows of the magnetic cell
  std::vector<Magnetic_Operation> operations;  // modulo the magnetic cell, in its setting
  std::vector<Cell_Atom> atoms;                // asymmetric unit, atoms of the run's sites
};

// What spglib names a group by: its type (for displacements only hall_number, the space
// group's setting) and the standard setting x_s = P x + p of the candidate cell's coordinates.
struct Named_Group {
  int uni_number = 0, type = 0, hall_number = 0;
  Mat3d P{};
  Vec3d p{};
};

// Identifies the candidates of one run.  A group conjugate to one named before by an operation
// of the parent takes that one's name, its setting moved by the operation, without spglib.
class Identifier {
 public:
  // parent: every operation of the parent group within the magnetic cell (parent coordinates,
  // without time reversal); empty when not known.
  Identifier(std::vector<Isotropy_Operation> parent, bool polar);
  Identification identify(const Candidate_Structure& structure,
                          const std::vector<Isotropy_Operation>& group);

 private:
  struct Known {
    std::array<Vec3d, 3> cell;
    std::vector<Magnetic_Operation> group;  // in the coordinates of the cell
    std::array<int, 28> classes;            // what conjugation keeps: see classes_of
    Named_Group named;
  };
  std::vector<Isotropy_Operation> parent_;
  bool polar_;
  std::vector<Known> known_;
  std::array<Vec3d, 3> conjugators_cell_{};
  std::vector<Magnetic_Operation> conjugators_;  // in the coordinates of that cell
};

// The magnetic space group of a candidate structure whose symmetry is `group` (its isotropy
// subgroup, in the parent's coordinates): with time reversal for moments; for displacements the
// space group of its operations without time reversal.
Identification identify(const Candidate_Structure& structure,
                        const std::vector<Isotropy_Operation>& group, bool polar);

// The BNS symbol of a group of type I, II or III given in the standard setting of its family
// space group (Hall number hall_number): the family group's short Hermann-Mauguin symbol with a
// prime on every element whose operators come with time reversal, 1' for type II.  Empty when
// an element of the symbol has no operator in the list, when operators with one linear part
// disagree on time reversal, when the setting is not the standard one of its type, and for
// type IV.
std::string bns_symbol_of(const std::vector<Magnetic_Operation>& operations, int hall_number,
                          int type);

// The components of a vector along the unit vectors of the cell's axes that the operations of
// a site allow, as text ("mx,my,0"); lattice holds the Cartesian rows of the cell.  An axial
// vector (moment) turns with det(R) R and changes sign under time reversal; a polar one
// (displacement, named dx, dy, dz) turns with R.
std::string moment_symmform(const std::vector<Magnetic_Operation>& site_operations,
                            const std::array<Vec3d, 3>& lattice, bool axial = true);

// A number as a small fraction: "0", "1/2", "-1/4", "2"; six decimals when it is none.
std::string fraction_text(double v);

}  // namespace velmoria

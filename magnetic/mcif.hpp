// The magnetic CIF of a candidate structure: the parent, the transformation to the magnetic
// cell, the magnetic space group with its operations, the cell and the magnetic atoms of its
// asymmetric unit with their moments.
#pragma once

#include <string>

#include "magnetic/identify.hpp"

namespace velmoria {

// What the file says about the parent structure.
struct Parent_Info {
  std::string space_group;  // Hermann-Mauguin symbol of the run's group
  int number = 0;           // its number in the International Tables
  Vec3d k{};                // the propagation vector
  std::string title;
};

// The text of the file named `name` (without its extension, for the data block).  The
// identification must have succeeded.
std::string mcif_text(const Identification& id, const Parent_Info& parent, const std::string& name);

// An operation in the x,y,z form, with ",+1" or ",-1" for time reversal when magnetic.
std::string operation_text(const Magnetic_Operation& op, bool magnetic);

}  // namespace velmoria

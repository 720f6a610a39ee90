// Seitz symbols {R|t} of symmetry operators, with the translation components named by one
// letter per simple fraction (p = 1/2, q = 1/3, ...).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmoria {

// The Seitz symbol of the operator symb, given in the x,y,z form, e.g. "-x+1/2,y,-z" gives
// "{ 2| p 0 0}".  With symcod (the tabulated geometric symbol with its Kovalev name, e.g.
// "2y          -> h4") the rotation part becomes that symbol, blanks removed, e.g.
// "{2y|p00}".  itsym, when given, receives the international symbol of the operator
// (40 characters, shifted left).
void seitz_symb(std::string_view symb, std::string& seitz,
                std::optional<std::string_view> symcod = std::nullopt,
                std::string* itsym = nullptr);

}  // namespace velmoria

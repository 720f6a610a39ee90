// Seitz symbols of symmetry operators.
#include "symmetry/seitz_symbols.hpp"

#include <array>

#include "support/fractions.hpp"
#include "support/text.hpp"
#include "symmetry/symmetry_symbols.hpp"

namespace velmoria {

namespace {

// The translation field of one component of the x,y,z form: " 0", or the sign (blank for +)
// and the letter of a simple fraction.
std::string translation_field(std::string_view component) {
  const std::size_t slash = component.find('/');
  if (slash == std::string_view::npos) return " 0";
  // Sign, numerator, "/" and denominator: four columns starting two before the slash;
  // columns before the start of the text count as blanks.
  std::string four;
  for (int c = static_cast<int>(slash) - 2; c < static_cast<int>(slash) + 2; ++c) {
    four += c >= 0 && c < static_cast<int>(component.size()) ? component[c] : ' ';
  }
  const std::string_view fraction = std::string_view(four).substr(1, 3);
  for (std::size_t i = 0; i < frs.size(); ++i) {
    if (fraction == frs[i]) {
      const char sign = four[0] == '+' ? ' ' : four[0];
      return std::string{sign, trs[i]};
    }
  }
  return " 0";
}

// The rotation part written by its tabulated symbol: the text of symcod before "->", with a
// direction in brackets turned into a subscript ("2 ( 0, y, 0)" gives "2_0y0").
std::string rotation_code(std::string_view symcod) {
  std::string code = adjustl(symcod.substr(0, std::min(symcod.find("->"), symcod.size())));
  const std::size_t open = code.find('(');
  if (open != std::string::npos) {
    code[open] = '_';
    const std::size_t close = code.find(')', open);
    if (close != std::string::npos) code[close] = ' ';
    std::size_t at = open;
    for (int n = 0; n < 2; ++n) {
      at = code.find(',', at);
      if (at == std::string::npos) break;
      code[at] = ' ';
    }
  }
  return trim(pack_string(code));
}

}  // namespace

void seitz_symb(std::string_view symb, std::string& seitz, std::optional<std::string_view> symcod,
                std::string* itsym) {
  const std::string international = fixed(adjustl(symmetry_symbol_xyz(symb)), 40);
  if (itsym != nullptr) *itsym = international;
  const std::string rt =
      international[0] == '-' ? international.substr(0, 3) : " " + international.substr(0, 2);

  std::array<std::string, 3> fields{" 0", " 0", " 0"};
  const std::size_t first = symb.find(',');
  const std::size_t last = symb.rfind(',');
  if (first != std::string_view::npos) {
    fields[0] = translation_field(symb.substr(0, first));
    if (last > first) fields[1] = translation_field(symb.substr(first + 1, last - first - 1));
    fields[2] = translation_field(symb.substr(last + 1));
  } else {
    // Without a comma the whole text is the first component.
    fields[0] = translation_field(symb);
  }
  seitz = "{" + rt + "|" + fields[0] + fields[1] + fields[2] + "}";

  if (symcod) {
    seitz = trim(pack_string(seitz));
    const std::size_t p = seitz.find('|');
    seitz =
        "{" + rotation_code(*symcod) + (p == std::string::npos ? std::string() : seitz.substr(p));
  }
}

}  // namespace velmoria

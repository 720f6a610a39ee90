// Loading of the space-group tables and the look-up of the generators of a standard group.
#include "symmetry/tables.hpp"

#include "support/list_read.hpp"
#include "support/text.hpp"

namespace velmoria {

VELMORIA_ERROR_PAIR_DEFINITIONS(symtab, std::string::npos)

// The tables are constant data of the program: touching them is all that loading needs.
void set_spgr_info() {
  static_cast<void>(spgr_info());
}
void set_wyckoff_info() {
  static_cast<void>(wyckoff_info());
}
void set_it_gen() {
  static_cast<void>(spg_gen());
}

std::span<const Vec3> ltr_of(char letter) {
  switch (letter) {
    case 'A':
      return ltr_a;
    case 'B':
      return ltr_b;
    case 'C':
      return ltr_c;
    case 'I':
      return ltr_i;
    case 'R':
      return ltr_r;
    case 'F':
      return ltr_f;
    default:
      return {};
  }
}

namespace {

// Columns 12 to 120 of a generator row, blank-padded to their full width.
std::string generator_columns(std::string_view row) {
  return fixed(row.size() > 11 ? row.substr(11) : std::string_view{}, genstr_len);
}

void set_symtab_error() {
  set_err_symtab(" Error in the symbol or number of the space group");
}

}  // namespace

bool get_generators(std::string_view spg, std::string& genstr) {
  const Symtab_Scope symtab_scope;
  set_it_gen();
  const auto& rows = spg_gen();

  int n = 0;
  if (read_list(spg, n)) {
    if (n >= 1 && n <= num_spg_gen) {
      genstr = generator_columns(rows[n - 1]);
      return true;
    }
    genstr = generator_columns(rows[0]);
    set_symtab_error();
    return false;
  }

  // Not a number: the symbol must be the tabulated one, compared in capitals.
  const std::string symbol = u_case(spg);
  for (const auto& row : rows) {
    if (same_text(symbol, u_case(row.substr(0, 10)))) {
      genstr = generator_columns(row);
      return true;
    }
  }
  set_symtab_error();
  return false;
}

}  // namespace velmoria

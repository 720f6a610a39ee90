// The little group of k and its irreducible representations, in the computed mode.
#include "lorsk/group_preparation.hpp"
#include "lorsk/lorsk.hpp"
#include "lorsk/zak.hpp"
#include "run/control_reader.hpp"
#include "run/steps.hpp"
#include "support/layout.hpp"
#include "support/text.hpp"
#include "symmetry/records.hpp"

namespace velmoria {

void compute_little_group_irreps(Run_State& rs, const std::string& ke1) {
  const symmetry_var& sv = rs.sv;
  // The group text by the flags of SPGR and GEN: the symbol alone (read as a Hall symbol
  // where it is tabulated), the list of generators, or the tabulated symbol with the
  // generators of the tables.
  const bool gen_flag = sv.gen_read && !sv.spgr_read;
  const std::string& group_text = gen_flag ? sv.list_gen : sv.spaceg;
  const std::string* symbol = sv.gen_read && sv.spgr_read ? &sv.spaceg : nullptr;
  constexpr int newk = 0;
  constexpr int listing = 0;
  const int status =
      lorsk(rs.out.result, sv.vk, newk, ke1, group_text, listing, gen_flag, symbol, rs.store);
  if (status == status_setup_failed) {
    stop_with(rs, " => " + trim(adjustl(err_symm_mess)) + ": " + trim(group_text));
  }
  if (status == status_not_determined) {
    put(rs.out.console, "3a", " => Generators of the Space group: ", trim(group_text),
        " not determined!");
    put(rs.out.console, "a", " => Please provide the generators in a XX.in file");
    throw Quiet_Stop{" => Generators of the Space group: " + trim(group_text) + " not determined!"};
  }
  if (err_lorsk) rs.warnings.push_back("=> Warning! " + trim(err_lorsk_mess));
}

}  // namespace velmoria

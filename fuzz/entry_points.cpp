// Each entry drives one reader with bytes as a user could type them and checks what the
// program promises for any input: no exception escapes, a failure sets its error pair with a
// message or ends the run with a reason on the console, and what is read stays within the
// limits of the tables that hold it.  Crashes and undefined behaviour are the sanitizers' to see.
#include "fuzz/entry_points.hpp"

#include <cmath>
#include <exception>
#include <sstream>
#include <vector>

#include "cli/queries.hpp"
#include "lorsk/store.hpp"
#include "lorsk/supplied_irreps.hpp"
#include "run/control_reader.hpp"
#include "run/run_driver.hpp"
#include "support/text.hpp"
#include "symmetry/hall_symbols.hpp"
#include "symmetry/hm_symbols.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"

namespace velmoria::fuzz {

namespace {

// Runs `body` with the library in its initial state; an exception is a finding.
template <class F>
std::string guarded(F&& body) {
  try {
    reset_library_state();
    return body();
  } catch (const std::exception& e) {
    return std::string("exception escaped: ") + e.what();
  } catch (...) {
    return "unknown exception escaped";
  }
}

bool translations_in_cell(const std::vector<Vec3>& ts) {
  for (const Vec3& t : ts) {
    for (float c : t) {
      if (!(c >= 0.0f && c < 1.0f)) return false;
    }
  }
  return true;
}

// A reduced set as the symbol readers give it: 1..max operators, one translation each, in the
// cell, the first the identity.
std::string check_reduced_set(int ng, const std::vector<Mat3i>& ss, const std::vector<Vec3>& ts,
                              int max_ops) {
  if (ng < 1 || ng > max_ops) return "operator count out of range: " + std::to_string(ng);
  if (ss.size() != static_cast<std::size_t>(ng) || ts.size() != ss.size()) {
    return "operator tables not of the count's size";
  }
  if (ss[0] != Mat3i{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}) return "first operator not the identity";
  if (!translations_in_cell(ts)) return "translation outside [0,1)";
  return {};
}

std::string error_without_message() {
  return err_symm && is_blank(err_symm_mess) ? "error raised without a message" : std::string();
}

std::vector<std::string> arguments(const char* option, std::string_view input) {
  std::vector<std::string> args{option};
  for (std::string& line : split_lines(input)) args.push_back(std::move(line));
  return args;
}

template <class Query>
std::string check_query(Query query, const char* option, std::string_view input) {
  std::vector<std::string> args = arguments(option, input);
  std::ostringstream out, err;
  const int status = query(std::move(args), out, err);
  if (status == 0 && out.str().empty()) return "success without a listing";
  if (status != 0 && err.str().empty()) return "failure without a message";
  return {};
}

}  // namespace

std::string run_control_file(std::string_view input) {
  return guarded([&]() -> std::string {
    const Run_Output out = run_velmoria({"fuzz", std::string(input), ""});
    if (is_blank(out.console)) return "the run ended without a word on the console";
    // The run's own record of an internal error starts a line; the same words inside an
    // echoed line of the user's are no finding.
    const std::string internal = " => Internal error, the run stops: ";
    if (out.console.starts_with(internal) ||
        out.console.find("\n" + internal) != std::string::npos) {
      return out.console;
    }
    if (out.result.empty()) return "no result file text";
    return {};
  });
}

std::string hall_symbol(std::string_view input) {
  return guarded([&]() -> std::string {
    const Group_Operators r = get_so_from_hall(input);
    if (err_symm) return {};  // a blank message is allowed here for faults of the text
    return check_reduced_set(r.ng, r.ss, r.ts, 24);
  });
}

std::string hm_symbol(std::string_view input) {
  return guarded([&]() -> std::string {
    const Group_Operators r = get_so_from_hms(input);
    if (err_symm) return error_without_message();
    return check_reduced_set(r.ng, r.ss, r.ts, 24);
  });
}

std::string operator_text(std::string_view input) {
  return guarded([&]() -> std::string {
    Mat3i rot{};
    Vec3 tr{};
    read_xsym(input, 1, rot, tr);
    if (!err_symm) {
      if (determ_a_i(rot) == 0) return "singular rotation accepted";
      for (float c : tr) {
        if (!std::isfinite(c)) return "translation not finite";
      }
    }
    reset_symm_state();
    std::string kind;
    check_generator(input, &kind);
    return {};
  });
}

std::string generator_list(std::string_view input) {
  return guarded([&]() -> std::string {
    const std::vector<std::string> gens = split_generators(input);
    Space_Group_Type spg;
    set_spacegroup(" ", spg, &gens, static_cast<int>(gens.size()), "gen");
    if (err_symm) return error_without_message();
    if (spg.multip < 1 || spg.multip > max_setup_ops) return "group order out of range";
    if (spg.symop.size() != static_cast<std::size_t>(spg.multip)) return "operator list size";
    return {};
  });
}

std::string supplied_block(std::string_view input) {
  return guarded([&]() -> std::string {
    std::vector<std::string> lines;
    for (const std::string& line : split_lines(input)) lines.push_back(trim(adjustl(line)));
    for (std::size_t head = 0; head < lines.size(); ++head) {
      const std::string key = u_case(lines[head].substr(0, lines[head].find(' ')));
      if (key != "LITTLE_GROUP" && key != "FULL_GROUP_IR" && key != "EXTENDED_LITTLE_GROUP") {
        continue;
      }
      lorsk_proc store;
      std::vector<std::string> op_strings;
      const auto error = read_supplied_block(store, lines, head, key.size(), op_strings);
      if (error) return is_blank(error->message) ? "block refused without a message" : "";
      if (store.ngk < 1 || store.ngk > max_store_ops || store.nreps < 1 ||
          store.nreps > max_store_irreps ||
          op_strings.size() != static_cast<std::size_t>(store.ngk)) {
        return "block counts out of range";
      }
      for (int d : store.idim) {
        if (d < 1 || d > store.dmax) return "dimension out of range";
      }
      return {};
    }
    return {};
  });
}

std::string group_query(std::string_view input) {
  return guarded([&] {
    return check_query([](std::vector<std::string> a, std::ostream& o,
                          std::ostream& e) { return query_group(a, o, e); },
                       "--group", input);
  });
}

std::string irreps_query(std::string_view input) {
  return guarded([&] { return check_query(query_irreps, "--irreps", input); });
}

}  // namespace velmoria::fuzz

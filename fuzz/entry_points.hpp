// The entry points that the fuzzers and the replay of the regression corpus share: each takes
// raw bytes as a user could give them, drives one reader of the program with them and says
// what, if anything, went against the program's promises for bad input.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace velmoria::fuzz {

// What an entry found wrong with the handling of one input; empty when nothing.
using Entry = std::string (*)(std::string_view input);

struct Target {
  const char* name;  // the folder of its corpus and the suffix of its fuzzer
  Entry entry;
};

// A whole run on the input as control-file text.
std::string run_control_file(std::string_view input);
// The Hall symbol reader.
std::string hall_symbol(std::string_view input);
// The Hermann-Mauguin symbol reader.
std::string hm_symbol(std::string_view input);
// The operator text reader (x,y,z form).
std::string operator_text(std::string_view input);
// A list of generators separated by ";", closed into a group.
std::string generator_list(std::string_view input);
// A supplied block of representations, read and then finished as a run finishes it.
std::string supplied_block(std::string_view input);
// velmoria --group with the input's lines as further arguments.
std::string group_query(std::string_view input);
// velmoria --irreps with the input's lines as further arguments.
std::string irreps_query(std::string_view input);

inline constexpr std::array<Target, 8> targets = {{
    {"run", run_control_file},
    {"hall", hall_symbol},
    {"hm", hm_symbol},
    {"operator", operator_text},
    {"generators", generator_list},
    {"block", supplied_block},
    {"group_query", group_query},
    {"irreps_query", irreps_query},
}};

}  // namespace velmoria::fuzz

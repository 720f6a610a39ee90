// Reading of the control file: the keywords, in file order, with the group work they start.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "run/run_state.hpp"

namespace velmoria {

// Splits control-file text into its lines (line feeds, with or without carriage return).
std::vector<std::string> split_lines(std::string_view text);

// Reads the control file held in `lines` and acts on its keywords.  Writes the head of
// the result file and the echo of every keyword; may end the run by a quiet stop.
void read_sym(Run_State& rs, const std::vector<std::string>& lines);

// Writes a message to the console and the result file and ends the run quietly.
[[noreturn]] void stop_with(Run_State& rs, const std::string& message);

}  // namespace velmoria

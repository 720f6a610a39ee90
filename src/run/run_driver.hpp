// A run as a function: control-file text in; result file, block file and console text out.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace velmoria {

struct Run_Input {
  std::string code;                    // the file code, without extension
  std::optional<std::string> control;  // the control file's text; none when it does not exist
  std::string path_name;               // value of TARNWELD
};

struct Run_State;

struct Run_Output {
  std::string console;
  std::string result;  // <code>.vmr
  std::string block;   // <code>.tw
  // What the run found, as data: the little group and its representations, the sites and
  // the analysis of each (its output units are moved into the three texts above).
  std::shared_ptr<const Run_State> state;
};

Run_Output run_velmoria(const Run_Input& input);

// Puts the library back in the state a run starts from, whatever ran before in this thread:
// tolerances, error pairs, the lattice globals and the axes of the last group set up.
void reset_library_state();

// Runs the steps of a run on rs: a quiet stop ends them where its message was written, and an
// internal error (a malformed layout, more items than a layout can take, no memory) ends them
// with a message on the console and in the result file.  Nothing is thrown past it.
void run_guarded(Run_State& rs, const std::function<void(Run_State&)>& steps);

}  // namespace velmoria

// A run as a function: control-file text in; result file, block file and console text out.
#pragma once

#include <optional>
#include <string>

namespace velmoria {

struct Run_Input {
  std::string code;                    // the file code, without extension
  std::optional<std::string> control;  // the control file's text; none when it does not exist
  std::string path_name;               // value of TARNWELD
};

struct Run_Output {
  std::string console;
  std::string result;  // <code>.vmr
  std::string block;   // <code>.tw
};

Run_Output run_velmoria(const Run_Input& input);

}  // namespace velmoria

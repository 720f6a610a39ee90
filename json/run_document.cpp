#include "json/run_document.hpp"

namespace velmoria {

// Placeholder bodies: the writer is being built.
nlohmann::json run_document(const Run_Output&, std::string_view code) {
  return {{"format", "velmoria"}, {"version", json_format_version}, {"document", "run"},
          {"code", std::string(code)}};
}

nlohmann::json group_document(const Group_Lookup&) {
  return {{"format", "velmoria"}, {"version", json_format_version}, {"document", "group"}};
}

nlohmann::json irreps_document(const Irreps_Lookup&) {
  return {{"format", "velmoria"}, {"version", json_format_version}, {"document", "irreps"}};
}

}  // namespace velmoria

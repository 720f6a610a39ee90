// The extension velmoria._velmoria: runs and look-ups of the library, their JSON documents
// turned into Python objects.  The library works with the interpreter lock released; its state
// is per thread, and every run and look-up starts from a clean state, so that Python threads
// may call it at once.  The public functions, the checks of the arguments and the numpy arrays
// are in velmoria/__init__.py.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "json/run_document.hpp"
#include "run/lookups.hpp"
#include "run/run_driver.hpp"
#include "run/run_state.hpp"

namespace py = pybind11;

namespace {

using nlohmann::json;

// A text of the library as a Python str.  The library cuts texts at fixed widths, byte by byte,
// which can split a character of a UTF-8 input: a broken sequence becomes U+FFFD.
py::str to_str(const std::string& bytes) {
  PyObject* decoded =
      PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "replace");
  if (decoded == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(decoded);
}

// A JSON value as the Python object of the same shape: objects as dicts (keys in the order of
// the document), arrays as lists, and numbers, strings, booleans and null as themselves.
py::object to_python(const json& value) {
  switch (value.type()) {
    case json::value_t::null:
      return py::none();
    case json::value_t::boolean:
      return py::bool_(value.get<bool>());
    case json::value_t::number_integer:
      return py::int_(value.get<std::int64_t>());
    case json::value_t::number_unsigned:
      return py::int_(value.get<std::uint64_t>());
    case json::value_t::number_float:
      return py::float_(value.get<double>());
    case json::value_t::string:
      return to_str(value.get_ref<const std::string&>());
    case json::value_t::array: {
      py::list list(value.size());
      std::size_t i = 0;
      for (const json& item : value) list[i++] = to_python(item);
      return list;
    }
    case json::value_t::object: {
      py::dict dict;
      for (const auto& [key, item] : value.items()) dict[to_str(key)] = to_python(item);
      return dict;
    }
    case json::value_t::binary:
    case json::value_t::discarded:
      break;
  }
  throw py::value_error("a JSON value of an unexpected type");
}

// A run on the text of a control file: its document, with the console, result and block texts,
// and the stop message of the run (None after a normal end).
py::tuple run(const std::string& control, const std::string& code) {
  velmoria::Run_Output output;
  json document;
  {
    py::gil_scoped_release unlocked;
    output = velmoria::run_velmoria(velmoria::Run_Input{code, control, ""});
    document = velmoria::run_document(output, code);
  }
  py::dict result = to_python(document);
  result["console"] = to_str(output.console);
  result["result"] = to_str(output.result);
  result["block"] = to_str(output.block);
  const std::string& stop = output.state->stop_message;
  return py::make_tuple(result, stop.empty() ? py::object(py::none()) : py::object(to_str(stop)));
}

// A space group by symbol, by Hall symbol or by generators: (None, document) or (message, None).
py::tuple group(const std::string& text, const std::string& kind) {
  velmoria::Group_Text how = velmoria::Group_Text::symbol;
  if (kind == "hall") {
    how = velmoria::Group_Text::hall;
  } else if (kind == "generators") {
    how = velmoria::Group_Text::generators;
  } else if (kind != "symbol") {
    throw py::value_error("kind must be 'symbol', 'hall' or 'generators'");
  }
  std::string error;
  json document;
  {
    py::gil_scoped_release unlocked;
    const velmoria::Group_Lookup found = velmoria::look_up_group(text, how);
    error = found.error;
    if (error.empty()) document = velmoria::group_document(found);
  }
  if (!error.empty()) return py::make_tuple(to_str(error), py::none());
  return py::make_tuple(py::none(), to_python(document));
}

// The representations of the little group of k: (None, document) or (message, None).
// k comes as doubles and is refused beyond the range of the command line before it becomes
// float.
py::tuple irreps(const std::string& text, bool by_generators, const std::vector<double>& k,
                 const std::string& label) {
  velmoria::Vec3 vk{};
  if (k.size() != vk.size()) throw py::value_error("k needs three components");
  for (std::size_t i = 0; i < vk.size(); ++i) {
    if (!(std::abs(k[i]) <= 1.0e6)) {
      return py::make_tuple("a component of k lies beyond +/-1000000", py::none());
    }
    vk[i] = static_cast<float>(k[i]);
  }
  std::string error;
  json document;
  {
    py::gil_scoped_release unlocked;
    const velmoria::Irreps_Lookup found = velmoria::look_up_irreps(text, by_generators, vk, label);
    error = found.error;
    if (error.empty()) document = velmoria::irreps_document(found);
  }
  if (!error.empty()) return py::make_tuple(to_str(error), py::none());
  return py::make_tuple(py::none(), to_python(document));
}

// One component of k as the command line reads it (a number or p/q), or None.
py::object k_component(const std::string& token) {
  float value = 0.0F;
  if (!velmoria::read_k_component(token, value)) return py::none();
  return py::float_(static_cast<double>(value));
}

}  // namespace

PYBIND11_MODULE(_velmoria, m) {
  m.doc() = "The library of Velmoria: runs and look-ups as JSON-shaped Python data";
  m.def("run", &run, py::arg("control"), py::arg("code"));
  m.def("group", &group, py::arg("text"), py::arg("kind"));
  m.def("irreps", &irreps, py::arg("text"), py::arg("by_generators"), py::arg("k"),
        py::arg("label"));
  m.def("k_component", &k_component, py::arg("token"));
  m.attr("format_version") = velmoria::json_format_version;
}

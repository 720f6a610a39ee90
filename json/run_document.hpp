// Every result of a run or a look-up as one JSON document, read from the records that the run
// keeps (never from its printed text).  The format is written down in
// schema/velmoria.schema.json; every document carries its version.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "run/lookups.hpp"
#include "run/run_driver.hpp"

namespace velmoria {

// The version of the document format: raised whenever a key changes its meaning or goes away.
constexpr int json_format_version = 1;

// The document of a run ("document": "run"); `code` is the code of its files.
nlohmann::json run_document(const Run_Output& run, std::string_view code);

// The document of a space-group look-up ("document": "group").  The look-up must have succeeded.
nlohmann::json group_document(const Group_Lookup& lookup);

// The document of a little-group look-up ("document": "irreps").  The look-up must have
// succeeded.
nlohmann::json irreps_document(const Irreps_Lookup& lookup);

// The text of a document: pretty-printed with an indent of one blank, doubles to full
// precision, a newline at the end.  Bytes of the user's texts that are no UTF-8 (a title in
// Latin-1) become U+FFFD instead of stopping the writer.
std::string document_text(const nlohmann::json& document);

}  // namespace velmoria

#ifndef MORVANE_TOOLS_MODEL_DOCUMENTREPORT_H_
#define MORVANE_TOOLS_MODEL_DOCUMENTREPORT_H_

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "psd/PsdDocument.h"
#include "tools/model/TileFile.h"

// The facts about a document that every report has.
namespace tools {

std::string colourModeName(std::uint16_t mode);

// Valid UTF-8: the Unicode name where there is one.
std::string layerName(const morvane::PsdLayer& layer);

// As `info --json` prints it; `bytes` is the file's size.
nlohmann::ordered_json documentJson(const std::string& file, std::uintmax_t bytes,
                                    const morvane::PsdDocument& document, const Goblins& goblins);

}  // namespace tools

#endif  // MORVANE_TOOLS_MODEL_DOCUMENTREPORT_H_

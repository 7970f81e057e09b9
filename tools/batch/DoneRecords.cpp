#include "tools/batch/DoneRecords.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/terminal/Text.h"
#include "util/WholeFile.h"

namespace tools {
namespace {

using Json = nlohmann::json;

constexpr std::uint64_t kLargestFile = std::uint64_t{1} << 30;

std::string textOf(const Json& record, const char* key) {
  const auto found = record.find(key);
  return found != record.end() && found->is_string() ? found->get<std::string>() : "";
}

}  // namespace

bool DoneRecords::read(const std::string& file) {
  std::unique_ptr<std::uint8_t[]> bytes;
  std::size_t size = 0;
  const morvane::Status status = morvane::readWholeFile(file.c_str(), kLargestFile, bytes, size);
  if (!status.ok()) {
    complain("--resume: " + printable(file) + ": " + printable(status.text()) +
             "; name the records of the run that was stopped");
    return false;
  }
  const std::string text(reinterpret_cast<const char*>(bytes.get()), size);
  std::size_t number = 1;
  for (std::size_t begin = 0, end; begin < text.size(); begin = end + 1, ++number) {
    end = std::min(text.find('\n', begin), text.size());
    if (add(text.substr(begin, end - begin)) || end == text.size()) continue;
    complain("--resume: " + printable(file) + ":" + std::to_string(number) +
             " is not a record of an export; remove the line, or name another file; nothing was "
             "exported");
    return false;
  }
  return true;
}

bool DoneRecords::add(const std::string& line) {
  const Json record = Json::parse(line, nullptr, false);
  const std::string name = record.is_object() ? textOf(record, "scene") : "";
  if (name.empty() || !record.contains("tile") || !record.contains("status")) return false;
  Scene& scene = scenes_[name];
  const bool isOk = record["status"] == 0;
  const std::string tile = textOf(record, "tile");
  if (tile.empty()) {
    scene.damaged = !isOk;
    return true;
  }
  if (isOk && textOf(record, "action") != "planned")
    scene.done.insert(tile);
  else
    scene.done.erase(tile);
  const auto tiles = record.find("tiles");
  if (tiles != record.end() && tiles->is_number_unsigned())
    scene.tiles = std::max(scene.tiles, tiles->get<std::size_t>());
  return true;
}

bool DoneRecords::isDone(const std::string& scene) const {
  const auto found = scenes_.find(toUtf8(scene));
  return found != scenes_.end() && !found->second.damaged && found->second.tiles > 0 &&
         found->second.done.size() >= found->second.tiles;
}

std::set<std::string> DoneRecords::tilesOf(const std::string& scene) const {
  const auto found = scenes_.find(toUtf8(scene));
  return found == scenes_.end() ? std::set<std::string>() : found->second.done;
}

}  // namespace tools

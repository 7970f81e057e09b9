#include "tools/batch/ExportRecords.h"

#include <cmath>
#include <map>

#include "tile/TileLines.h"
#include "tools/batch/SharedTextures.h"
#include "tools/model/TileFile.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

using Json = nlohmann::ordered_json;

Json emptyRecord(const std::string& scene) {
  return {{"scene", toUtf8(scene)},    {"tile", nullptr},    {"tiles", nullptr},
          {"texture", nullptr},        {"goblins", nullptr}, {"vertices", nullptr},
          {"warnings", Json::array()}, {"error", nullptr},   {"action", nullptr},
          {"status", kDone},           {"milliseconds", 0}};
}

const char* nameOf(TileAction action) {
  return action == TileAction::kWritten     ? "written"
         : action == TileAction::kUnchanged ? "unchanged"
                                            : "planned";
}

// Each text of a file once, with its first line.
Json warningsOf(const host::SceneProblems& problems) {
  Json warnings = Json::array();
  std::map<std::pair<std::string, std::string>, std::size_t> known;
  for (const host::SceneProblem& problem : problems.list) {
    const auto [place, isNew] = known.try_emplace({problem.file, problem.text}, warnings.size());
    if (!isNew) {
      Json& count = warnings[place->second]["count"];
      count = count.get<std::size_t>() + 1;
      continue;
    }
    warnings.push_back(
        {{"text", toUtf8(problem.text)},
         {"count", 1},
         {"kind", problem.kind == host::SceneProblem::Kind::kDamage ? "damage" : "notice"},
         {"file", problem.file.empty() ? Json() : Json(toUtf8(problem.file))},
         {"line", problem.line == 0 ? Json() : Json(problem.line)}});
  }
  return warnings;
}

void addCounts(const std::string& file, Json& record) {
  const auto document = loadDocument(file, file);
  if (!document) return;
  const Goblins goblins = readGoblins(*document);
  record["goblins"] = goblins.goblins.size();
  record["vertices"] = goblins.pool.size();
}

}  // namespace

nlohmann::ordered_json warningsJson(const TileOutcome& tile) {
  Json warnings = Json::array();
  for (const auto& [text, count] : tile.warnings) {
    warnings.push_back({{"text", toUtf8(text)}, {"count", count}});
    if (text == morvane::kGoblinOutside) {
      Json& goblins = warnings.back()["goblins"] = Json::array();
      for (const OutsideGoblin& goblin : tile.outside) {
        goblins.push_back({{"goblin", toUtf8(goblin.path)},
                           {"distance", std::round(goblin.distance * 1e4) / 1e4}});
      }
    }
  }
  return warnings;
}

std::string tileRecord(const std::string& scene, const TileOutcome& tile,
                       const std::string& texture, std::size_t tiles) {
  Json record = emptyRecord(scene);
  if (tiles != 0) record["tiles"] = tiles;
  if (!tile.path.empty()) record["tile"] = toUtf8(tile.path);
  const std::string file = texture.empty() ? "" : writtenFile(texture);
  record["warnings"] = warningsJson(tile);
  record["milliseconds"] = std::round(tile.milliseconds * 1000) / 1000;
  if (!tile.error.empty()) {
    record["error"] = toUtf8(tile.error);
    record["status"] = kFailed;
  } else if (!file.empty()) {
    record["texture"] = toUtf8(file);
    record["action"] = nameOf(tile.action);
    if (tile.action == TileAction::kPlanned) {
      record["goblins"] = tile.goblins;
      record["vertices"] = tile.vertices;
    } else {
      addCounts(file, record);
    }
  }
  return printableJson(record.dump());
}

std::string sceneRecord(const std::string& scene, const host::SceneProblems& problems,
                        const std::string& error, ExitStatus status) {
  Json record = emptyRecord(scene);
  record["warnings"] = warningsOf(problems);
  if (!error.empty()) record["error"] = toUtf8(error);
  record["status"] = status;
  return printableJson(record.dump());
}

}  // namespace tools

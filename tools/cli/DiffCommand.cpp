#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/cli/Commands.h"
#include "tools/model/FilePairs.h"
#include "tools/model/GoblinDiff.h"
#include "tools/model/TileFile.h"
#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

using Json = nlohmann::ordered_json;

struct Options {
  std::string before;
  std::string after;
  bool json = false;
};

// False when something is wrong with the file, which is then on standard error. No file: no goblin.
bool read(const std::string& file, Goblins& goblins) {
  if (file.empty()) return true;
  const auto document = loadDocument(file, file);
  if (!document) return false;
  goblins = readGoblins(*document);
  return reportFaults(file, *document, goblins);
}

Json numberJson(const std::optional<std::size_t>& number) {
  return number ? Json(*number + 1) : Json();
}

Json changeJson(const GoblinChange& change, const GoblinSide& before, const GoblinSide& after) {
  Json json = {{"state", fateName(change.fate)},
               {"name", changedName(change, before, after)},
               {"old", numberJson(change.before)},
               {"new", numberJson(change.after)}};
  if (change.before && change.after) json["by"] = change.by;
  if (change.fate == GoblinFate::kChanged) json["what"] = change.what;
  return json;
}

void printJson(const FilePair& pair, const GoblinDiff& diff, const GoblinSide& before,
               const GoblinSide& after, bool isEqual, bool isSound) {
  Json goblins = Json::array();
  for (const GoblinChange& change : diff.changes)
    goblins.push_back(changeJson(change, before, after));
  const Json json = {{"old", pair.before.empty() ? Json() : Json(toUtf8(pair.before))},
                     {"new", pair.after.empty() ? Json() : Json(toUtf8(pair.after))},
                     {"equal", isEqual},
                     {"sound", isSound},
                     {"same", diff.same},
                     {"goblins", goblins}};
  std::printf("%s\n", printableJson(json.dump()).c_str());
}

std::string counts(const GoblinDiff& diff) {
  std::string text;
  for (const GoblinFate fate :
       {GoblinFate::kAdded, GoblinFate::kGone, GoblinFate::kMoved, GoblinFate::kChanged}) {
    const auto count =
        std::count_if(diff.changes.begin(), diff.changes.end(),
                      [fate](const GoblinChange& change) { return change.fate == fate; });
    if (count > 0) text += std::to_string(count) + ' ' + fateName(fate) + ", ";
  }
  return text + std::to_string(diff.same) + " the same";
}

std::string detail(const GoblinChange& change) {
  std::string text;
  for (const std::string& what : change.what) text += (text.empty() ? "" : ", ") + what;
  if (!change.before || !change.after || change.by == std::array<float, 3>{}) return text;
  char way[96];
  std::snprintf(way, sizeof way, "%sby %.3f %.3f %.3f", text.empty() ? "" : ", ",
                static_cast<double>(change.by[0]), static_cast<double>(change.by[1]),
                static_cast<double>(change.by[2]));
  return text + way;
}

// Nothing for files that are equal.
void printText(const FilePair& pair, const GoblinDiff& diff, const GoblinSide& before,
               const GoblinSide& after) {
  if (pair.before.empty())
    std::printf("%s is new: %s\n", printable(pair.after).c_str(), counts(diff).c_str());
  else if (pair.after.empty())
    std::printf("%s is gone: %s\n", printable(pair.before).c_str(), counts(diff).c_str());
  else
    std::printf("%s, %s: %s\n", printable(pair.before).c_str(), printable(pair.after).c_str(),
                counts(diff).c_str());
  for (const GoblinChange& change : diff.changes) {
    const std::size_t number = change.after ? *change.after : *change.before;
    std::printf("  %-8s %4zu  %-20s %s\n", fateName(change.fate), number + 1,
                printable(changedName(change, before, after)).c_str(), detail(change).c_str());
  }
}

// False when the files differ, or one of them cannot be compared.
bool compare(const FilePair& pair, bool json) {
  Goblins old;
  Goblins now;
  const bool oldIsSound = read(pair.before, old);
  const bool isSound = read(pair.after, now) && oldIsSound;
  const GoblinSide before(old);
  const GoblinSide after(now);
  const GoblinDiff diff = isSound ? diffGoblins(before, after) : GoblinDiff();
  const bool isEqual =
      isSound && diff.changes.empty() && !pair.before.empty() && !pair.after.empty();
  if (json)
    printJson(pair, diff, before, after, isEqual, isSound);
  else if (isSound && !isEqual)
    printText(pair, diff, before, after);
  return isEqual;
}

ExitStatus compareAll(const Options& options) {
  std::vector<FilePair> pairs;
  std::string fault;
  const Pairing pairing = pairFiles(options.before, options.after, pairs, fault);
  if (pairing != Pairing::kPaired) {
    complain(fault);
    return pairing == Pairing::kMixed ? kUsage : kFailed;
  }
  ExitStatus status = kDone;
  for (const FilePair& pair : pairs)
    if (!compare(pair, options.json)) status = kFailed;
  return status;
}

}  // namespace

void addDiff(CLI::App& program, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("diff", "Compare the goblins of two files, or of two folders");
  command->add_option("OLD", options->before, "A PSD file, or a folder of them")
      ->type_name("")
      ->required();
  command->add_option("NEW", options->after, "The same, as it is now")->type_name("")->required();
  command->add_flag("--json", options->json, "One JSON object a line for each file");
  command->footer(
      "The status is 0 when all goblins are the same, else 1; also for a damaged file.\n"
      "Pictures and layers are not compared.\n"
      "Examples:\n"
      "  morvane diff old/pond.psd pond.psd  goblins added, gone, moved and changed\n"
      "  morvane diff released textures      the files in two folders, by their names");
  command->callback([options, &status] { status = compareAll(*options); });
}

}  // namespace tools

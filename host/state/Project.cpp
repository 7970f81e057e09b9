#include "host/state/Project.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

#include "host/mel/Interpreter.h"
#include "host/mel/Parser.h"
#include "host/state/Variables.h"
#include "util/FileFacts.h"
#include "util/Path.h"
#include "util/WholeFile.h"

namespace host {
namespace {

namespace fs = std::filesystem;
using mel::AstNode;
using Kind = AstNode::Kind;

constexpr char kRulesFile[] = "workspace.mel";
constexpr std::uint64_t kMostRulesBytes = std::uint64_t{1} << 20;
constexpr std::size_t kMostRules = 4096;

// The text of a command's word; empty when the word would have to be evaluated.
std::string wordOf(const AstNode& node) {
  if (node.kind == Kind::kWord) return node.text;
  return node.kind == Kind::kLiteral ? node.literal.toString() : std::string();
}

bool isRuleFlag(const AstNode& word) {
  return word.kind == Kind::kWord && (word.text == "-fr" || word.text == "-fileRule");
}

void addRules(const AstNode& statement, Project& project) {
  if (statement.kind != Kind::kCommand || statement.text != "workspace") return;
  const auto& words = statement.children;
  for (std::size_t i = 0; i + 2 < words.size() && project.rules.size() < kMostRules; ++i) {
    const std::string kind = wordOf(*words[i + 1]);
    if (isRuleFlag(*words[i]) && !kind.empty()) project.rules[kind] = wordOf(*words[i + 2]);
  }
}

std::string joined(const std::string& folder, const std::string& name) {
  return mel::resolvedPath(name, folder);
}

bool isAbsolute(const std::string& name) {
  const bool hasDrive =
      name.size() > 1 && std::isalpha(static_cast<unsigned char>(name[0])) != 0 && name[1] == ':';
  return hasDrive || (!name.empty() && name[0] == '/');
}

}  // namespace

std::string Project::folderOf(std::string_view kind) const {
  const auto rule = rules.find(std::string(kind));
  if (rule != rules.end()) return joined(folder, rule->second);
  return joined(folder, kind == "sourceImages" ? "sourceimages" : "scenes");
}

std::string findProjectFolder(const std::string& folder) {
  fs::path path = morvane::pathOf(folder);
  while (!path.empty()) {
    if (morvane::factsOf(morvane::nameOf(path / kRulesFile)).isFile()) return morvane::nameOf(path);
    if (path == path.parent_path()) break;
    path = path.parent_path();
  }
  return std::string();
}

morvane::Status readProject(const std::string& folder, Project& project) {
  project = Project();
  project.folder = folder;
  const std::string file = morvane::nameOf(morvane::pathOf(folder) / kRulesFile);
  if (!morvane::factsOf(file).isFile()) return {};
  std::unique_ptr<std::uint8_t[]> bytes;
  std::size_t size = 0;
  const morvane::Status read = morvane::readWholeFile(file.c_str(), kMostRulesBytes, bytes, size);
  if (!read.ok()) return {read.code(), "cannot read " + file + ": " + read.text()};
  const std::string_view text(reinterpret_cast<const char*>(bytes.get()), size);
  mel::Failure failure;
  const auto script = mel::parseScript(text, file, failure);
  if (script == nullptr) return {morvane::StatusCode::kDamaged, failure.describe()};
  for (const mel::AstPtr& statement : script->root->children) addRules(*statement, project);
  return {};
}

FileSearch searchFile(const std::string& name, const std::string& folder, const Project& project,
                      std::string_view kind) {
  std::string path = withVariables(name);
  std::replace(path.begin(), path.end(), '\\', '/');
  if (path.empty() || path.size() > kLongestExpanded) return {};
  std::vector<std::string> places;
  // Two slashes at the front stand before a machine's name.
  const std::size_t mark = path.find("//", 2);
  const bool hasProject = !project.folder.empty();
  if (mark != path.npos && hasProject)
    places.push_back(joined(project.folder, path.substr(path.find_first_not_of('/', mark))));
  if (isAbsolute(path)) {
    places.push_back(path);
  } else if (mark == path.npos) {
    if (hasProject) places.push_back(joined(project.folder, path));
    places.push_back(joined(folder, path));
    if (hasProject) places.push_back(joined(project.folderOf(kind), path));
  }
  FileSearch search;
  for (const std::string& place : places) {
    if (search.found || std::count(search.places.begin(), search.places.end(), place) != 0)
      continue;
    search.places.push_back(place);
    search.found = morvane::factsOf(place).isFile();
  }
  return search;
}

}  // namespace host

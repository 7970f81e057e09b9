#include "host/mel/Interpreter.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>

#include "host/mel/Evaluator.h"
#include "host/mel/Parser.h"
#include "util/Environment.h"
#include "util/FileFacts.h"
#include "util/Path.h"
#include "util/WholeFile.h"
#include "util/WholeNames.h"

namespace host::mel {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kMostScriptBytes = std::uint64_t{1} << 30;

#ifdef _WIN32
constexpr char kListSeparator = ';';
#else
constexpr char kListSeparator = ':';
#endif

std::optional<std::string> readText(const std::string& path) {
  std::unique_ptr<std::uint8_t[]> bytes;
  std::size_t size = 0;
  if (!morvane::readWholeFile(path.c_str(), kMostScriptBytes, bytes, size).ok())
    return std::nullopt;
  return std::string(reinterpret_cast<const char*>(bytes.get()), size);
}

// The file itself, or with ".mel" behind it.
std::string asScript(const std::string& path) {
  if (morvane::factsOf(path).isFile()) return path;
  const std::string longer = path + ".mel";
  return morvane::factsOf(longer).isFile() ? longer : std::string();
}

}  // namespace

std::vector<std::string> foldersOf(const char* variable) {
  std::vector<std::string> folders;
  const std::string value = morvane::environmentValue(variable).value_or("");
  std::string_view rest = value;
  while (!rest.empty()) {
    const std::size_t end = rest.find(kListSeparator);
    if (end != 0) folders.emplace_back(rest.substr(0, end));
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  }
  return folders;
}

std::string resolvedPath(const std::string& name, const std::string& folder) {
  return morvane::resolvedName(name, folder);
}

std::string Failure::describe() const {
  const std::string place =
      line == 0 ? origin : origin + ":" + std::to_string(line) + ":" + std::to_string(column);
  return place.empty() ? text : place + ": " + text;
}

Interpreter::Interpreter(CommandTable& commands, HostState* host)
    : state_(std::make_unique<State>(commands, host)) {
  std::error_code error;
  state_->callerFolder = morvane::nameOf(fs::current_path(error));
}

Interpreter::~Interpreter() = default;

Outcome Interpreter::execute(std::string_view text, const std::string& origin) {
  Outcome outcome;
  std::shared_ptr<const Script> script = parseScript(text, origin, outcome.failure);
  if (script == nullptr) {
    outcome.ok = false;
    return outcome;
  }
  return Evaluator(*this, std::move(script)).run();
}

Outcome Interpreter::executeFile(const std::string& name) {
  Outcome outcome;
  const std::string path = findScript(name);
  std::optional<std::string> text;
  if (!path.empty()) text = readText(path);
  if (!text) {
    outcome.ok = false;
    outcome.failure.text = path.empty()
                               ? "no script named " + name + "; check the name, or MAYA_SCRIPT_PATH"
                               : "cannot read " + path + "; make it readable";
    return outcome;
  }
  return execute(*text, path);
}

CommandTable& Interpreter::commands() const {
  return state_->commands;
}

HostState& Interpreter::host() const {
  return *state_->host;
}

bool Interpreter::isProcedure(const std::string& name) const {
  return state_->procedures.count(name) != 0;
}

std::string Interpreter::originOfProcedure(const std::string& name) const {
  const auto found = state_->procedures.find(name);
  return found == state_->procedures.end() ? std::string() : found->second.script->origin;
}

void Interpreter::reset(const Limits& limits) {
  state_->globals.clear();
  state_->procedures.clear();
  state_->limits = limits;
  state_->steps = 0;
  state_->random.seed();
}

double Interpreter::nextRandom() {
  return static_cast<double>(state_->random() >> 11) * 0x1.0p-53;
}

void Interpreter::seedRandom(unsigned seed) {
  state_->random.seed(seed);
}

const Limits& Interpreter::limits() const {
  return state_->limits;
}

void Interpreter::setCallerFolder(const std::string& folder) {
  state_->callerFolder = folder;
}
const std::string& Interpreter::callerFolder() const {
  return state_->callerFolder;
}

void Interpreter::addScriptFolder(const std::string& folder) {
  state_->scriptFolders.push_back(folder);
}

std::string Interpreter::findScript(const std::string& name) const {
  std::vector<std::string> folders;
  if (!morvane::pathOf(name).has_parent_path()) {
    folders = state_->scriptFolders;
    for (std::string& folder : foldersOf("MAYA_SCRIPT_PATH")) folders.push_back(std::move(folder));
  }
  // The caller's folder comes last: a file that happens to lie there must not pass for a plug-in's
  // script.
  folders.push_back(state_->callerFolder);
  for (const std::string& folder : folders) {
    std::string found = asScript(resolvedPath(name, folder));
    if (!found.empty()) return found;
  }
  return std::string();
}

}  // namespace host::mel

#include <chrono>
#include <filesystem>
#include <utility>

#include "host/commands/Builtin.h"
#include "host/mel/Command.h"
#include "host/mel/Functions.h"
#include "host/mel/Interpreter.h"
#include "host/state/HostState.h"
#include "host/text/Numbers.h"
#include "util/Environment.h"
#include "util/Path.h"

// Commands about the language and the session, not about the scene.
namespace host::mel {
namespace {

// --- optionVar: values by name that outlive the scene.

constexpr std::size_t kMostOptions = 65536;

NamedValues& options(const CommandContext& context) {
  return context.host().options;
}

// The value that a flag makes of its text.
struct OptionFlag {
  std::string_view flag;
  Value::Type type;  // an array's: the value is added to it
};
constexpr OptionFlag kOptionFlags[] = {
    {"iv", Value::Type::kInt},         {"fv", Value::Type::kFloat},
    {"sv", Value::Type::kString},      {"iva", Value::Type::kIntArray},
    {"fva", Value::Type::kFloatArray}, {"sva", Value::Type::kStringArray}};

bool setOption(const CommandContext& context, const OptionFlag& flag, const std::string& name,
               const std::string& text) {
  NamedValues& all = options(context);
  const std::size_t most = context.interpreter->limits().arraySize;
  if (all.size() >= kMostOptions && all.find(name) == all.end()) return false;
  // A float keeps all its digits.
  const Value given = elementType(flag.type) == Value::Type::kString
                          ? Value(text)
                          : Value(parseNumber(text).value_or(0.0));
  Value& value = all[name];
  const bool appends = elementType(flag.type) != flag.type;
  if (!appends || value.type() != flag.type) value = Value::initial(flag.type);
  if (!appends)
    value = given.convertedTo(flag.type).value_or(Value());
  else if (value.arraySize() < most)
    value.setElement(value.arraySize(), given);
  return true;
}

CommandResult queryOption(const CommandContext& context, const Arguments& arguments) {
  const auto found = arguments.objects().empty()
                         ? options(context).end()
                         : options(context).find(arguments.objects().front());
  return CommandResult::success(found == options(context).end() ? Value(0) : found->second);
}

CommandResult optionVar(const Arguments& arguments, CommandContext& context) {
  if (arguments.query()) return queryOption(context, arguments);
  if (arguments.has("ex"))
    return CommandResult::success(
        Value::ofTruth(options(context).count(arguments.text("ex")) != 0));
  if (arguments.has("l")) {
    Value::Strings names;
    for (const auto& [name, value] : options(context)) names.push_back(name);
    return CommandResult::success(std::move(names));
  }
  if (arguments.has("as")) {
    const auto found = options(context).find(arguments.text("as"));
    const bool isArray = found != options(context).end() && found->second.isArray();
    return CommandResult::success(isArray ? static_cast<int>(found->second.arraySize()) : 0);
  }
  for (const std::string& name : arguments.texts("rm")) options(context).erase(name);
  for (const std::string& name : arguments.texts("ca")) {
    const auto found = options(context).find(name);
    if (found != options(context).end() && found->second.isArray())
      found->second = Value::initial(found->second.type());
  }
  for (const OptionFlag& flag : kOptionFlags) {
    for (const std::vector<std::string>& given : arguments.allTexts(flag.flag))
      if (!setOption(context, flag, given[0], given[1]))
        return CommandResult::failure("optionVar: there are too many variables");
  }
  return CommandResult::success();
}

// --- exists, whatIs

enum class Meaning { kUnknown, kCommand, kProcedure, kScript };

Meaning meaningOf(const CommandContext& context, const std::string& name) {
  const Interpreter& interpreter = *context.interpreter;
  if (interpreter.isProcedure(name)) return Meaning::kProcedure;
  if (interpreter.commands().find(name) != nullptr || findFunction(name) != nullptr)
    return Meaning::kCommand;
  return interpreter.findScript(name).empty() ? Meaning::kUnknown : Meaning::kScript;
}

CommandResult exists(const Arguments& arguments, CommandContext& context) {
  if (arguments.objects().size() != 1) return CommandResult::failure("exists: needs one name");
  return CommandResult::success(
      Value::ofTruth(meaningOf(context, arguments.objects().front()) != Meaning::kUnknown));
}

CommandResult whatIs(const Arguments& arguments, CommandContext& context) {
  if (arguments.objects().size() != 1) return CommandResult::failure("whatIs: needs one name");
  const std::string& name = arguments.objects().front();
  const Interpreter& interpreter = *context.interpreter;
  switch (meaningOf(context, name)) {
    case Meaning::kCommand:
      return CommandResult::success("Command");
    case Meaning::kProcedure: {
      const std::string origin = interpreter.originOfProcedure(name);
      const bool isFile = morvane::pathOf(origin).is_absolute();
      return CommandResult::success(isFile ? "Mel procedure found in: " + origin
                                           : "Mel procedure entered interactively.");
    }
    case Meaning::kScript:
      return CommandResult::success("Script found in: " + interpreter.findScript(name));
    case Meaning::kUnknown:
      break;
  }
  return CommandResult::success("Unknown");
}

// --- format

// "^1s" stands for the first text, and so on; "^" before anything else stands for itself.
CommandResult format(const Arguments& arguments, CommandContext& context) {
  const std::vector<std::string> texts = arguments.texts("s");
  const std::string pattern = arguments.objects().empty() ? "" : arguments.objects().front();
  const std::size_t most = context.interpreter->limits().textSize;
  std::string result;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const std::size_t end = pattern.find('s', at);
    const bool marks = pattern[at] == '^' && end != std::string::npos;
    const auto number =
        marks ? parseInteger(std::string_view(pattern).substr(at + 1, end - at - 1)) : std::nullopt;
    if (!number || *number < 1) {
      result += pattern[at];
    } else if (static_cast<std::size_t>(*number) > texts.size()) {
      return CommandResult::failure("format: there is no text " + std::to_string(*number));
    } else {
      result += texts[static_cast<std::size_t>(*number - 1)];
      at = end;
    }
    if (result.size() > most) return CommandResult::failure("format: a text becomes too long");
  }
  return CommandResult::success(std::move(result));
}

// --- The session

CommandResult environment(const Arguments& arguments, CommandContext&) {
  if (arguments.objects().size() != 1) return CommandResult::failure("getenv: needs one name");
  return CommandResult::success(
      morvane::environmentValue(arguments.objects().front()).value_or(""));
}

CommandResult env(const Arguments&, CommandContext&) {
  return CommandResult::success(morvane::environmentNames());
}

// Seconds since some moment, or since one that it gave before.
CommandResult timer(const Arguments& arguments, CommandContext&) {
  const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
  return CommandResult::success(now.count() - (arguments.has("st") ? arguments.number("st") : 0.0));
}

// Where Maya keeps what is a user's own; here nothing is kept there.
std::string userFolder() {
  const char* const given = std::getenv("MAYA_APP_DIR");
  const char* const home = std::getenv("HOME");
  std::string folder =
      given != nullptr ? given : (home != nullptr ? home : "") + std::string("/maya");
  if (folder.empty() || folder.back() != '/') folder += '/';
  return folder;
}

// Below it, those of one version as `about -version` has it.
constexpr std::pair<std::string_view, const char*> kUserFolders[] = {{"uad", ""},
                                                                     {"usd", "3.0/scripts/"},
                                                                     {"upd", "3.0/prefs/"},
                                                                     {"ups", "3.0/presets/"},
                                                                     {"ush", "3.0/prefs/shelves/"},
                                                                     {"ubd", "3.0/prefs/icons/"},
                                                                     {"uwd", "projects/"}};

CommandResult internalVar(const Arguments& arguments, CommandContext&) {
  for (const auto& [flag, below] : kUserFolders)
    if (arguments.has(flag)) return CommandResult::success(userFolder() + below);
  if (!arguments.has("utd"))
    return CommandResult::failure("internalVar: needs the flag of a folder");
  std::error_code error;
  std::string folder = morvane::nameOf(std::filesystem::temp_directory_path(error));
  if (!folder.empty() && folder.back() != '/') folder += '/';
  return CommandResult::success(std::move(folder));
}

}  // namespace

void addScriptCommands(CommandTable& table) {
  table.add("optionVar",
            {{"q", "query", ""},
             {"iv", "intValue", "si"},
             {"fv", "floatValue", "sn"},
             {"sv", "stringValue", "ss"},
             {"iva", "intValueAppend", "si"},
             {"fva", "floatValueAppend", "sn"},
             {"sva", "stringValueAppend", "ss"},
             {"ex", "exists", "s"},
             {"l", "list", ""},
             {"rm", "remove", "s"},
             {"as", "arraySize", "s"},
             {"ca", "clearArray", "s"}},
            optionVar);
  table.add("exists", {}, exists);
  table.add("whatIs", {}, whatIs);
  table.add("format", {{"s", "stringArg", "s"}}, format);
  table.add("getenv", {}, environment);
  table.add("env", {}, env);
  table.add("timerX", {{"st", "startTime", "n"}, {"e", "elapsedTime", ""}}, timer);
  table.add("internalVar",
            {{"utd", "userTmpDir", ""},
             {"uad", "userAppDir", ""},
             {"usd", "userScriptDir", ""},
             {"upd", "userPrefDir", ""},
             {"ups", "userPresetsDir", ""},
             {"ush", "userShelfDir", ""},
             {"ubd", "userBitmapsDir", ""},
             {"uwd", "userWorkspaceDir", ""}},
            internalVar);
}

}  // namespace host::mel

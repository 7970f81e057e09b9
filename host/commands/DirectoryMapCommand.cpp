#include "host/commands/Builtin.h"

#include "host/mel/Command.h"
#include "host/state/DirectoryMap.h"
#include "host/state/HostState.h"

namespace host::mel {
namespace {

CommandResult query(const Arguments& arguments, const DirectoryMap& map) {
  if (arguments.has("en")) return CommandResult::success(Value::ofTruth(map.enabled));
  return CommandResult::failure("dirmap: -query needs -enable");
}

// One flag says what is to be done.
CommandResult dirmap(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile)
    return CommandResult::failure("a scene file may not say where folders are");
  DirectoryMap& map = context.host().folders;
  if (arguments.query()) return query(arguments, map);
  if (arguments.has("en")) {
    map.enabled = arguments.truth("en");
    return CommandResult::success();
  }
  if (arguments.has("m")) {
    if (map.add(arguments.text("m", 0), arguments.text("m", 1))) return CommandResult::success();
    return CommandResult::failure("dirmap: -mapDirectory needs two folders");
  }
  if (arguments.has("um")) {
    map.remove(arguments.text("um"));
    return CommandResult::success();
  }
  if (arguments.has("gmd"))
    return CommandResult::success(map.mapped(arguments.text("gmd")).value_or(""));
  if (arguments.has("cd")) {
    const std::string name = arguments.text("cd");
    return CommandResult::success(map.convert(name).value_or(name));
  }
  if (arguments.has("gam")) {
    Value::Strings pairs;
    for (const auto& [from, to] : map.all()) {
      pairs.push_back(from);
      pairs.push_back(to);
    }
    return CommandResult::success(pairs);
  }
  return CommandResult::failure(
      "dirmap: needs -enable, -mapDirectory, -unmapDirectory, -getMappedDirectory, "
      "-getAllMappings or -convertDirectory");
}

}  // namespace

void addDirectoryMapCommand(CommandTable& table) {
  table.add("dirmap",
            {{"q", "query", ""},
             {"en", "enable", "b"},
             {"m", "mapDirectory", "ss"},
             {"um", "unmapDirectory", "s"},
             {"gmd", "getMappedDirectory", "s"},
             {"gam", "getAllMappings", ""},
             {"cd", "convertDirectory", "s"}},
            dirmap);
}

}  // namespace host::mel

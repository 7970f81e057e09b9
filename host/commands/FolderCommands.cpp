#include <algorithm>
#include <filesystem>

#include "host/commands/Builtin.h"
#include "host/mel/Command.h"
#include "host/mel/Interpreter.h"
#include "host/mel/Pattern.h"
#include "host/state/HostState.h"
#include "host/state/SceneProject.h"
#include "util/Path.h"

// Commands that tell scripts about folders. None reads or changes a file.
namespace host::mel {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostNames = 1'000'000;

fs::path pathOf(const std::string& name, const CommandContext& context) {
  return morvane::systemPath(resolvedPath(name, context.folder));
}

// Names of what is in a folder, in the order of their bytes.
CommandResult getFileList(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile) return CommandResult::failure("a scene file may not look into folders");
  Value::Strings names;
  std::error_code error;
  const std::string pattern = arguments.has("fs") ? arguments.text("fs") : "*";
  fs::directory_iterator entry(pathOf(arguments.text("fld"), context), error);
  while (!error && entry != fs::directory_iterator() && names.size() < kMostNames) {
    std::string name = morvane::nameOf(entry->path().filename());
    if (matchesGlob(name, pattern)) {
      std::error_code ignored;
      // A folder ends with a slash.
      names.push_back(name + (entry->is_directory(ignored) ? "/" : ""));
    }
    entry.increment(error);
  }
  std::sort(names.begin(), names.end());
  return CommandResult::success(std::move(names));
}

CommandResult filetest(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile || arguments.objects().size() != 1) {
    return CommandResult::failure(context.inSceneFile ? "a scene file may not look into folders"
                                                      : "filetest: needs one file");
  }
  std::error_code error;
  const fs::path path = pathOf(arguments.objects().front(), context);
  const fs::file_status status = fs::status(path, error);
  const bool isFile = fs::is_regular_file(status);
  const bool isFolder = fs::is_directory(status);
  const auto hasAny = [&status](fs::perms wanted) {
    return fs::exists(status) && (status.permissions() & wanted) != fs::perms::none;
  };
  using fs::perms;
  bool holds = true;
  holds = holds && (!arguments.has("f") || isFile);
  holds = holds && (!arguments.has("d") || isFolder);
  holds = holds && (!arguments.has("s") || (isFile && fs::file_size(path, error) > 0 && !error));
  holds = holds && (!arguments.has("L") || fs::is_symlink(fs::symlink_status(path, error)));
  holds = holds && (!arguments.has("r") ||
                    hasAny(perms::owner_read | perms::group_read | perms::others_read));
  holds = holds && (!arguments.has("w") ||
                    hasAny(perms::owner_write | perms::group_write | perms::others_write));
  holds = holds && (!arguments.has("x") ||
                    hasAny(perms::owner_exec | perms::group_exec | perms::others_exec));
  return CommandResult::success(Value::ofTruth(holds));
}

// --- workspace: the project of the open scene

std::string withSlash(std::string folder) {
  if (folder.empty() || folder.back() != '/') folder += '/';
  return folder;
}

// With -query and without: without it the name follows the flag.
std::string nameFor(const Arguments& arguments, std::string_view flag) {
  const std::string name = arguments.text(flag);
  return name.empty() && !arguments.objects().empty() ? arguments.objects().front() : name;
}

CommandResult listRules(const Project& project, bool withFolders) {
  Value::Strings list;
  for (const auto& [kind, folder] : project.rules) {
    list.push_back(kind);
    if (withFolders) list.push_back(folder);
  }
  return CommandResult::success(std::move(list));
}

CommandResult queryProject(const Arguments& arguments, const std::string& folder) {
  if (arguments.has("rd")) return CommandResult::success(withSlash(folder));
  if (arguments.has("fn")) return CommandResult::success(folder);
  if (arguments.has("sn"))
    return CommandResult::success(morvane::nameOf(morvane::pathOf(folder).filename()));
  return CommandResult::failure(
      "workspace: -query gives -rootDirectory, -fullName, -shortName, -fileRule, -fileRuleList or "
      "-fileRuleEntry");
}

CommandResult workspace(const Arguments& arguments, CommandContext& context) {
  // Old scenes hold workspace rules. They are ignored: the scene's folder decides which project
  // counts.
  if (context.inSceneFile) return CommandResult::success();
  Project& project = context.host().project.project();
  const std::string folder =
      project.folder.empty() ? context.interpreter->callerFolder() : project.folder;
  if (arguments.has("fre")) {
    const auto rule = project.rules.find(nameFor(arguments, "fre"));
    return CommandResult::success(rule == project.rules.end() ? "" : rule->second);
  }
  if (arguments.has("frl")) return listRules(project, false);
  if (arguments.has("en"))
    return CommandResult::success(resolvedPath(nameFor(arguments, "en"), folder));
  if (arguments.query())
    return arguments.has("fr") ? listRules(project, true) : queryProject(arguments, folder);
  for (const std::vector<std::string>& rule : arguments.allTexts("fr"))
    project.rules[rule[0]] = rule[1];
  if (!arguments.has("o")) {
    return arguments.has("fr") ? CommandResult::success()
                               : CommandResult::failure(
                                     "workspace: needs -query, -fileRule or "
                                     "-openWorkspace");
  }
  const morvane::Status status =
      context.host().project.open(resolvedPath(arguments.text("o"), context.folder));
  return status.ok() ? CommandResult::success()
                     : CommandResult::failure("workspace: " + status.text());
}

}  // namespace

void addFolderCommands(CommandTable& table) {
  table.add("getFileList", {{"fld", "folder", "s"}, {"fs", "filespec", "s"}}, getFileList);
  table.add("filetest",
            {{"f", "file", ""},
             {"d", "dir", ""},
             {"r", "readable", ""},
             {"w", "writable", ""},
             {"x", "executable", ""},
             {"s", "size", ""},
             {"L", "link", ""}},
            filetest);
  table.add("workspace",
            {{"q", "query", ""},
             {"rd", "rootDirectory", ""},
             {"fn", "fullName", ""},
             {"sn", "shortName", ""},
             {"fr", "fileRule", "ss"},
             {"fre", "fileRuleEntry", "s"},
             {"frl", "fileRuleList", ""},
             {"en", "expandName", "s"},
             {"o", "openWorkspace", "s"}},
            workspace);
}

}  // namespace host::mel

#include <cstdio>

#include "host/commands/Builtin.h"
#include "host/mel/Command.h"
#include "host/mel/Interpreter.h"
#include "host/state/HostState.h"
#include "util/FileFacts.h"

// Files that scripts read line by line, if whoever runs the program allowed it. No command writes
// files.
namespace host::mel {
namespace {

constexpr std::size_t kMostFiles = 64;

// Null, with the reason in `error`, for a number that no open file has.
std::FILE* openFile(const CommandContext& context, const Arguments& arguments, std::string& error) {
  const auto& files = context.host().readFiles.files;
  const bool hasOne = arguments.objects().size() == 1;
  const auto found = hasOne ? files.find(Value(arguments.objects().front()).toInt()) : files.end();
  error = "needs the number of an open file";
  return found == files.end() ? nullptr : found->second.get();
}

CommandResult open(const Arguments& arguments, CommandContext& context) {
  ReadFiles& state = context.host().readFiles;
  if (context.inSceneFile || !state.isAllowed)
    return CommandResult::failure("fopen: files are read only with run --allow-files");
  if (arguments.objects().empty() || arguments.objects().size() > 2)
    return CommandResult::failure("fopen: needs a file's name and a mode");
  const std::string mode = arguments.objects().size() == 2 ? arguments.objects()[1] : "w";
  if (mode != "r" && mode != "rb")
    return CommandResult::failure("fopen: files are only read; the mode must be \"r\"");
  if (state.files.size() >= kMostFiles)
    return CommandResult::failure("fopen: too many files are open; close some with fclose");
  const std::string path = resolvedPath(arguments.objects().front(), context.folder);
  // What is not a file might never end.
  if (!morvane::factsOf(path).isFile()) return CommandResult::success(0);
  std::FILE* const file = morvane::openToRead(path);
  if (file == nullptr) return CommandResult::success(0);
  state.files.emplace(++state.last, ReadFiles::File(file, &std::fclose));
  return CommandResult::success(state.last);
}

CommandResult close(const Arguments& arguments, CommandContext& context) {
  std::string error;
  if (openFile(context, arguments, error) == nullptr)
    return CommandResult::failure("fclose: " + error);
  context.host().readFiles.files.erase(Value(arguments.objects().front()).toInt());
  return CommandResult::success();
}

CommandResult getLine(const Arguments& arguments, CommandContext& context) {
  std::string error;
  std::FILE* const file = openFile(context, arguments, error);
  if (file == nullptr) return CommandResult::failure("fgetline: " + error);
  std::string line;
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
    if (line.size() >= context.interpreter->limits().textSize)
      return CommandResult::failure("fgetline: the line is too long");
    line += static_cast<char>(c);
    if (c == '\n') break;
  }
  return CommandResult::success(std::move(line));
}

CommandResult atEnd(const Arguments& arguments, CommandContext& context) {
  std::string error;
  std::FILE* const file = openFile(context, arguments, error);
  if (file == nullptr) return CommandResult::failure("feof: " + error);
  return CommandResult::success(Value::ofTruth(std::feof(file) != 0));
}

CommandResult rewind(const Arguments& arguments, CommandContext& context) {
  std::string error;
  std::FILE* const file = openFile(context, arguments, error);
  if (file == nullptr) return CommandResult::failure("frewind: " + error);
  std::rewind(file);
  return CommandResult::success();
}

}  // namespace

void addFileReadingCommands(CommandTable& table) {
  table.add("fopen", {}, open);
  table.add("fclose", {}, close);
  table.add("fgetline", {}, getLine);
  table.add("feof", {}, atEnd);
  table.add("frewind", {}, rewind);
}

}  // namespace host::mel

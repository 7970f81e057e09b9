#include "host/commands/Builtin.h"

#include "host/mel/Command.h"
#include "host/mel/Interpreter.h"
#include "host/text/Messages.h"

namespace host::mel {
namespace {

std::string message(const Arguments& arguments) {
  std::string text;
  for (const std::string& object : arguments.objects()) text += (text.empty() ? "" : " ") + object;
  return text;
}

// Stops the script, as any failure does.
CommandResult error(const Arguments& arguments, CommandContext&) {
  return CommandResult::failure(message(arguments));
}

CommandResult warning(const Arguments& arguments, CommandContext& context) {
  context.warn(message(arguments));
  return CommandResult::success();
}

CommandResult source(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile) return CommandResult::failure("a scene file may not run scripts");
  if (arguments.objects().size() != 1) return CommandResult::failure("source: needs one file");
  Outcome outcome = context.interpreter->executeFile(arguments.objects().front());
  CommandResult result = CommandResult::success(std::move(outcome.value));
  result.ok = outcome.ok;
  if (!outcome.ok) result.inner = std::move(outcome.failure);
  return result;
}

CommandResult about(const Arguments& arguments, CommandContext&) {
  if (arguments.has("b")) return CommandResult::success(1);
  return CommandResult::success(arguments.has("api") ? Value(300) : Value("3.0"));
}

}  // namespace

void addOutputCommands(CommandTable& table) {
  table.add("error", {{"sl", "showLineNumber", "b"}}, error);
  table.add("warning", {{"sl", "showLineNumber", "b"}}, warning);
  table.add("source", {}, source);
  table.add("about", {{"b", "batch", ""}, {"v", "version", ""}, {"api", "apiVersion", ""}}, about);
}

}  // namespace host::mel

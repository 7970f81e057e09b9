#include "fuzz/HostFuzz.h"

#include <string>

#include "fuzz/FuzzTools.h"
#include "host/Host.h"
#include "host/mel/Command.h"
#include "host/state/DirectoryMap.h"

namespace morvane::fuzz {

namespace {

using host::mel::Arguments;
using host::mel::Command;
using host::mel::CommandContext;
using host::mel::CommandResult;
using host::mel::CommandTable;
using host::mel::Interpreter;
using host::mel::Words;

// The command, for words without a folder in them only.
void confine(const std::string& name) {
  CommandTable& table = Interpreter::current().commands();
  const Command* const found = table.find(name);
  if (found == nullptr) return;
  const Command command = *found;
  table.remove(name);
  table.addFromPlugin(name, [name, command](const Words& words) {
    for (const auto& word : words)
      if (word.text.find('/') != word.text.npos || word.text == "..")
        return CommandResult::failure(name + ": not while fuzzing");
    CommandContext context(Interpreter::current());
    context.folder = scratchFolder();
    Arguments arguments;
    std::string error;
    return parseArguments(name, command.flags, words, arguments, error)
               ? command.function(arguments, context)
               : CommandResult::failure(error);
  });
}

void startHost() {
  host::start(scratchFolder());
  for (const char* name : {"file", "source"}) confine(name);
  Interpreter::current().commands().remove("loadPlugin");
}

}  // namespace

void freshHost() {
  static const bool started = (startHost(), true);
  require(started, "no host");
  Interpreter::current().reset(scriptLimits());
  host::DirectoryMap::current() = host::DirectoryMap();
  host::newScene();
}

}  // namespace morvane::fuzz

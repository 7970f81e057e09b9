#include "fuzz/HostFuzz.h"

#include <string>

#include "fuzz/FuzzTools.h"
#include "host/Host.h"
#include "host/mel/Command.h"
#include "host/state/DirectoryMap.h"
#include "host/state/HostState.h"

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

// Host.h, openScene().
constexpr std::size_t kOpenMultiple = 400;
constexpr std::size_t kOpenConstant = std::size_t{1} << 30;

void saveScene(const std::string& name) {
  require(host::saveScene(scratchPath(name)).ok(), "a scene cannot be saved");
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
  host::HostState::current().folders = host::DirectoryMap();
  host::newScene();
}

void openAndSave(const std::string& name, const std::string& bytes) {
  freshHost();
  const std::string path = writeScratch(name, bytes);
  const MemoryWatch watch;
  require(host::openScene(path).ok(), "a scene file is refused as a whole");
  watch.requireAtMost(kOpenMultiple, bytes.size(), kOpenConstant);
  saveScene("first.ma");
  require(host::openScene(scratchPath("first.ma")).ok(), "a scene that was saved cannot be opened");
  saveScene("second.ma");
  require(readScratch("first.ma") == readScratch("second.ma"),
          "a scene that was saved and opened saves as another");
}

}  // namespace morvane::fuzz

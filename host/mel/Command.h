#ifndef MORVANE_HOST_MEL_COMMAND_H_
#define MORVANE_HOST_MEL_COMMAND_H_

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/mel/Interpreter.h"
#include "host/mel/Value.h"
#include "host/scene/Node.h"

namespace host::mel {

// A word of a command after evaluation. Only an unquoted one can be a flag.
struct Word {
  std::string text;
  bool quoted = false;
};
using Words = std::vector<Word>;

// Whether the word is a flag, such as "-n": not quoted, and not the beginning of a number.
bool isFlag(const Word& word);

// A command as a scene file would have it, without the semicolon.
std::string asStatement(std::string name, const Words& words);

struct CommandResult {
  bool ok = true;
  Value value;
  std::string error;             // why it failed, without a position
  bool isMalformed = false;      // no sound scene file has such a statement
  std::optional<Failure> inner;  // set instead of `error` when a text that the command ran failed

  static CommandResult success(Value value = Value());
  static CommandResult failure(std::string error);
  static CommandResult malformed(std::string error);
};

// Who runs a command, and what stands around it.
struct CommandContext {
  explicit CommandContext(Interpreter& runs) : interpreter(&runs) {}

  // The host that the command acts on.
  HostState& host() const { return interpreter->host(); }

  Interpreter* interpreter;  // whose commands they are; never null
  // A scene file that is being read: nothing may write files, start plug-ins' commands or leave the
  // scene.
  bool inSceneFile = false;
  std::string folder;        // absolute; relative file names resolve against it
  NodePtr currentNode;       // in a scene file: what ".attribute" belongs to
  std::string nameSpace;     // in a referenced file: the prefix of its names, such as "rock:"
  bool isReference = false;  // the scene file is one that the scene refers to
  bool keepsInfo = false;    // the scene file becomes the scene: what it says of itself is kept
  // In a scene file: the nodes that it made, by their names in the file (null for a name given
  // twice), and what the nodes that could not get their names are called.
  std::unordered_map<std::string, NodePtr> ownNodes;
  std::map<std::string, std::string, std::less<>> renames;
  std::function<void(const std::string&)> onWarning;  // shows what `warn` is given, with its place
  void warn(const std::string& text) const;
};

// One flag: its names without dashes and its arguments, one letter each: 's' text, 'n' number, 'i'
// whole number, 'b' truth value. In query mode a flag takes no arguments.
struct FlagSpec {
  std::string_view shortName;
  std::string_view longName;
  std::string_view arguments;
};

// A command's words, sorted into flags with their arguments and the rest.
class Arguments {
 public:
  bool has(std::string_view shortName) const;
  // Arguments of the last occurrence; empty, 0 and `fallback` when the flag does not occur.
  std::string text(std::string_view shortName, std::size_t index = 0) const;
  double number(std::string_view shortName, std::size_t index = 0) const;
  bool truth(std::string_view shortName, bool fallback = false) const;
  // First arguments of all occurrences.
  std::vector<std::string> texts(std::string_view shortName) const;

  // The arguments of every occurrence of a flag.
  std::vector<std::vector<std::string>> allTexts(std::string_view shortName) const;

  bool query() const { return has("q"); }
  bool edit() const { return has("e"); }
  const std::vector<std::string>& objects() const { return objects_; }
  // All words as they were given; good for as long as the command runs.
  const Words& words() const { return *words_; }
  // The flags with their arguments as a scene file would have them, texts in quotes.
  std::vector<std::string> flagsAsWritten() const;
  // The numbers of every occurrence of a flag.
  std::vector<std::vector<double>> allNumbers(std::string_view shortName) const;

 private:
  friend class ArgumentParser;
  struct Use {
    std::string_view shortName;
    std::string_view kinds;
    std::vector<std::string> arguments;
  };
  const Use* lastUse(std::string_view shortName) const;

  std::vector<Use> uses_;
  std::vector<std::string> objects_;
  const Words* words_ = nullptr;
};

// False, with the reason in `error`, for a missing argument, one of another kind, or an unknown
// flag. An unknown flag sets `isUnknown`: another version of the host may have written it without
// fault.
bool parseArguments(std::string_view command, const std::vector<FlagSpec>& flags,
                    const Words& words, Arguments& arguments, std::string& error,
                    bool* isUnknown = nullptr);

using CommandFunction = CommandResult (*)(const Arguments&, CommandContext&);
// A command that a plug-in registered: it sees its words as they are.
using WordsFunction = std::function<CommandResult(const Words&)>;

struct Command {
  std::vector<FlagSpec> flags;
  CommandFunction function = nullptr;
  WordsFunction words;
};

// All commands by name.
class CommandTable {
 public:
  void add(std::string_view name, std::vector<FlagSpec> flags, CommandFunction function);
  bool addFromPlugin(const std::string& name, WordsFunction function);  // false: the name is taken
  void remove(const std::string& name);
  const Command* find(std::string_view name) const;

  // Runs after every command outside of scene files, so that what follows from the scene keeps up
  // with it; null for nothing.
  using AfterCommand = void (*)(HostState&);
  void setAfterCommand(AfterCommand action) { afterCommand_ = action; }
  AfterCommand afterCommand() const { return afterCommand_; }

 private:
  std::map<std::string, Command, std::less<>> commands_;
  AfterCommand afterCommand_ = nullptr;
};

// In a scene file, `isMalformed` is set for a statement that no sound file has: see `SceneProblem`.
CommandResult runCommand(std::string_view name, const Words& words, CommandContext& context);

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_COMMAND_H_

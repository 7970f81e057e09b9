#ifndef MORVANE_HOST_MEL_INTERPRETER_H_
#define MORVANE_HOST_MEL_INTERPRETER_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/mel/Value.h"

namespace host {
struct HostState;
}  // namespace host

namespace host::mel {

// Where in which text something went wrong. Lines and columns count from 1; line 0 is "nowhere in
// particular".
struct Failure {
  std::string origin;
  int line = 0;
  int column = 0;
  std::string text;

  std::string describe() const;  // "scene.ma:3:14: no object named 'x'"
};

// The result of running a text: the value of its last command, or why it stopped.
struct Outcome {
  bool ok = true;
  Value value;
  Failure failure;
};

// The most that a script may take. To go over a limit is an error of the script; the process goes
// on.
struct Limits {
  std::uint64_t steps = UINT64_MAX;  // statements and expressions evaluated, until the next reset
  std::size_t textSize = std::size_t{256} << 20;  // bytes of one text
  std::size_t arraySize = std::size_t{16} << 20;  // elements of one array
};

class CommandTable;

// Runs command-language text. Variables declared outside procedures and the procedures themselves
// live as long as the interpreter; everything else lives for one call. Calls nest: a plug-in's
// command may run text.
class Interpreter {
 public:
  static Interpreter& current();  // of the host that runs

  // `commands` must live as long, and so must `host`, which the commands act on; null for a table
  // of none. The caller's folder is the working folder.
  explicit Interpreter(CommandTable& commands, HostState* host = nullptr);
  ~Interpreter();

  // Nothing is reported: the caller shows the failure, or does not. `origin` names the text in
  // failures.
  Outcome execute(std::string_view text, const std::string& origin);

  // Finds a script (see `findScript`) and runs it.
  Outcome executeFile(const std::string& name);

  CommandTable& commands() const;
  HostState& host() const;
  bool isProcedure(const std::string& name) const;
  // The path of the script that holds a procedure, or what names its text in failures.
  std::string originOfProcedure(const std::string& name) const;

  // Forgets all variables and procedures; no text may be running.
  void reset(const Limits& limits = Limits());
  const Limits& limits() const;

  // Numbers from 0 up to 1 that look random; the same ones after the same seed, and after `reset`.
  double nextRandom();
  void seedRandom(unsigned seed);

  // Folder against which relative names in scripts resolve: absolute, the caller's.
  void setCallerFolder(const std::string& folder);
  const std::string& callerFolder() const;

  // Searched for scripts before MAYA_SCRIPT_PATH, and that before the caller's folder.
  void addScriptFolder(const std::string& folder);

  // The path of a script; empty when there is none. ".mel" is appended when it is missing. A name
  // with a folder in it is relative to the caller's folder. Any other name is looked for in the
  // script folders, and last in the caller's folder.
  std::string findScript(const std::string& name) const;

 private:
  friend class Evaluator;
  struct State;
  std::unique_ptr<State> state_;
};

// The folders that an environment variable lists, as the platform separates them.
std::vector<std::string> foldersOf(const char* variable);

// `name` against `folder`, without "." and ".." where they can go.
std::string resolvedPath(const std::string& name, const std::string& folder);

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_INTERPRETER_H_

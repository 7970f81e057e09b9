#ifndef MORVANE_HOST_MEL_FUNCTIONS_H_
#define MORVANE_HOST_MEL_FUNCTIONS_H_

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/mel/Command.h"
#include "host/mel/Value.h"

namespace host::mel {

// A variable's value; its type is the value's and never changes.
using Variable = std::shared_ptr<Value>;

// An argument after evaluation.
struct Argument {
  Value value;
  Variable variable;    // set when the argument is an array variable: functions may change it
  bool isWord = false;  // written without quotes
};

// What a function is called with.
struct FunctionArguments {
  Interpreter& interpreter;  // that calls it
  std::vector<Argument>& values;

  std::size_t size() const { return values.size(); }
  Argument& operator[](std::size_t index) const { return values[index]; }
};

// Functions on values (texts, arrays, mathematics), as opposed to commands, which act on the scene.
using Function = CommandResult (*)(const FunctionArguments&);

struct FunctionSpec {
  std::string_view name;
  std::size_t fewest;  // arguments
  std::size_t most;
  Function function;
};

// Null when there is none of that name.
const FunctionSpec* findFunction(std::string_view name);

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_FUNCTIONS_H_

#ifndef MORVANE_HOST_MEL_FUNCTIONARGUMENTS_H_
#define MORVANE_HOST_MEL_FUNCTIONARGUMENTS_H_

#include <string>
#include <utility>
#include <vector>

#include "host/mel/Functions.h"
#include "host/mel/Interpreter.h"

// What the functions of the language share: see Functions.h.
namespace host::mel {

inline const Value& valueOf(const Argument& argument) {
  return argument.variable != nullptr ? *argument.variable : argument.value;
}
inline std::string textOf(const FunctionArguments& arguments, std::size_t index) {
  return index < arguments.size() ? valueOf(arguments[index]).toString() : std::string();
}
inline double numberOf(const FunctionArguments& arguments, std::size_t index) {
  return valueOf(arguments[index]).toFloat();
}
inline CommandResult give(Value value) {
  return CommandResult::success(std::move(value));
}
inline bool fitsArray(const FunctionArguments& arguments, std::size_t size) {
  return size <= arguments.interpreter.limits().arraySize;
}
inline bool fitsText(const FunctionArguments& arguments, std::size_t size) {
  return size <= arguments.interpreter.limits().textSize;
}

// One family of functions, in the order of their names.
struct FunctionTable {
  const FunctionSpec* first;
  const FunctionSpec* end;
};
FunctionTable arrayFunctions();
FunctionTable mathFunctions();
FunctionTable pathFunctions();
FunctionTable patternFunctions();

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_FUNCTIONARGUMENTS_H_

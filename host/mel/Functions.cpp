#include "host/mel/Functions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

#include "host/mel/FunctionArguments.h"
#include "host/mel/Interpreter.h"
#include "host/text/Messages.h"
#include "host/text/Numbers.h"

namespace host::mel {
namespace {

using Arguments = FunctionArguments;

// --- Texts and arrays

CommandResult size(const Arguments& arguments) {
  const Value& value = valueOf(arguments[0]);
  const std::size_t count = value.isArray()                        ? value.arraySize()
                            : value.type() == Value::Type::kString ? value.toString().size()
                                                                   : 1;
  return give(static_cast<int>(count));
}

CommandResult clear(const Arguments& arguments) {
  if (arguments[0].variable == nullptr) return CommandResult::failure("needs an array variable");
  *arguments[0].variable = Value::initial(arguments[0].variable->type());
  return give(Value());
}

std::string mapText(std::string text, int (*change)(int)) {
  for (char& c : text)
    if (static_cast<unsigned char>(c) < 0x80)
      c = static_cast<char>(change(static_cast<unsigned char>(c)));
  return text;
}
int lower(int c) {
  return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c;
}
int upper(int c) {
  return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c;
}

CommandResult toLower(const Arguments& arguments) {
  return give(mapText(textOf(arguments, 0), lower));
}
CommandResult toUpper(const Arguments& arguments) {
  return give(mapText(textOf(arguments, 0), upper));
}

// Positions count from 1, both ends included. A range that does not lie inside gives the empty
// text.
CommandResult substring(const Arguments& arguments) {
  const std::string text = textOf(arguments, 0);
  const int first = valueOf(arguments[1]).toInt();
  const int last = valueOf(arguments[2]).toInt();
  if (first < 1 || last < first || static_cast<std::size_t>(last) > text.size()) return give("");
  return give(
      text.substr(static_cast<std::size_t>(first - 1), static_cast<std::size_t>(last - first + 1)));
}

CommandResult startsWith(const Arguments& arguments) {
  const std::string prefix = textOf(arguments, 1);
  return give(Value::ofTruth(textOf(arguments, 0).compare(0, prefix.size(), prefix) == 0));
}

CommandResult endsWith(const Arguments& arguments) {
  const std::string text = textOf(arguments, 0);
  const std::string suffix = textOf(arguments, 1);
  return give(
      Value::ofTruth(text.size() >= suffix.size() &&
                     text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0));
}

CommandResult sortArray(const Arguments& arguments) {
  Value value = valueOf(arguments[0]);
  const auto sorted = [](auto* array) {
    if (array != nullptr) std::sort(array->begin(), array->end());
  };
  sorted(value.strings());
  sorted(value.ints());
  if (value.floats() != nullptr) {
    // NaN has no place in an order; all of them go last.
    std::sort(value.floats()->begin(), value.floats()->end(),
              [](double a, double b) { return std::isnan(b) ? !std::isnan(a) : a < b; });
  }
  return give(std::move(value));
}

// A number that stands there as a word ("print 0x10") is a number.
Value literalOf(const Argument& argument) {
  const std::string word = argument.isWord ? valueOf(argument).toString() : "";
  const bool isHexadecimal =
      word.size() > 2 && word[0] == '0' && (word[1] == 'x' || word[1] == 'X');
  unsigned bits = 0;
  const char* const end = word.data() + word.size();
  if (isHexadecimal && std::from_chars(word.data() + 2, end, bits, 16).ptr == end)
    return Value(static_cast<int>(bits));
  if (const auto whole = parseInteger(word)) return Value(*whole);
  const auto number = parseNumber(word);
  return number ? Value(*number) : valueOf(argument);
}

CommandResult print(const Arguments& arguments) {
  printText(literalOf(arguments[0]).toPrinted());
  return give(Value());
}

CommandResult toIntNumber(const Arguments& arguments) {
  return give(valueOf(arguments[0]).toInt());
}
CommandResult toFloatNumber(const Arguments& arguments) {
  return give(numberOf(arguments, 0));
}
CommandResult toText(const Arguments& arguments) {
  return give(textOf(arguments, 0));
}

// --- Text as a script

CommandResult eval(const Arguments& arguments) {
  std::string text;
  for (const Argument& argument : arguments.values)
    text += (text.empty() ? "" : " ") + valueOf(argument).toString();
  Outcome outcome = arguments.interpreter.execute(text, "eval");
  CommandResult result = CommandResult::success(std::move(outcome.value));
  result.ok = outcome.ok;
  if (!outcome.ok) result.inner = std::move(outcome.failure);
  return result;
}

constexpr std::size_t kAny = 1000000;

constexpr FunctionSpec kFunctions[] = {
    {"clear", 1, 1, clear},
    {"endsWith", 2, 2, endsWith},
    {"eval", 1, kAny, eval},
    {"float", 1, 1, toFloatNumber},
    {"int", 1, 1, toIntNumber},
    {"print", 1, 1, print},
    {"size", 1, 1, size},
    {"sort", 1, 1, sortArray},
    {"startsWith", 2, 2, startsWith},
    {"string", 1, 1, toText},
    {"substring", 3, 3, substring},
    {"tolower", 1, 1, toLower},
    {"toupper", 1, 1, toUpper},
};

}  // namespace

const FunctionSpec* findFunction(std::string_view name) {
  const FunctionTable tables[] = {{std::begin(kFunctions), std::end(kFunctions)},
                                  arrayFunctions(),
                                  mathFunctions(),
                                  pathFunctions(),
                                  patternFunctions()};
  for (const FunctionTable& table : tables) {
    const FunctionSpec* found = std::lower_bound(
        table.first, table.end, name, [](const FunctionSpec& function, std::string_view wanted) {
          return function.name < wanted;
        });
    if (found != table.end && found->name == name) return found;
  }
  return nullptr;
}

}  // namespace host::mel

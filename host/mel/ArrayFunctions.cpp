#include <algorithm>
#include <iterator>
#include <unordered_set>

#include "host/mel/FunctionArguments.h"

namespace host::mel {
namespace {

using Arguments = FunctionArguments;
using Strings = Value::Strings;

std::vector<double> numbersOf(const Value& value) {
  std::vector<double> numbers;
  for (std::size_t i = 0; i < value.arraySize(); ++i) numbers.push_back(value.element(i).toFloat());
  return numbers;
}

CommandResult tooLarge() {
  return CommandResult::failure("the array becomes too large");
}

// The function's name says whether texts or numbers are compared.
template <class Element>
struct Kind;
template <>
struct Kind<std::string> {
  static std::string one(const Value& value) { return value.toString(); }
  static Strings all(const Value& value) { return value.toWords(); }
};
template <>
struct Kind<double> {
  static double one(const Value& value) { return value.toFloat(); }
  static std::vector<double> all(const Value& value) { return numbersOf(value); }
};

template <class Element>
CommandResult contains(const Arguments& arguments) {
  const auto list = Kind<Element>::all(valueOf(arguments[1]));
  const Element sought = Kind<Element>::one(valueOf(arguments[0]));
  return give(Value::ofTruth(std::find(list.begin(), list.end(), sought) != list.end()));
}

template <class Element>
CommandResult count(const Arguments& arguments) {
  const auto list = Kind<Element>::all(valueOf(arguments[1]));
  const Element sought = Kind<Element>::one(valueOf(arguments[0]));
  return give(static_cast<int>(std::count(list.begin(), list.end(), sought)));
}

// find(item, from, list): a position, or -1.
template <class Element>
CommandResult find(const Arguments& arguments) {
  const auto list = Kind<Element>::all(valueOf(arguments[2]));
  const Element sought = Kind<Element>::one(valueOf(arguments[0]));
  const int from = std::max(0, valueOf(arguments[1]).toInt());
  const auto start =
      list.begin() + std::min<std::ptrdiff_t>(from, static_cast<std::ptrdiff_t>(list.size()));
  const auto found = std::find(start, list.end(), sought);
  return give(found == list.end() ? -1 : static_cast<int>(found - list.begin()));
}

CommandResult join(const Arguments& arguments) {
  const std::string separator = textOf(arguments, 1);
  const Value& list = valueOf(arguments[0]);
  std::string text;
  for (std::size_t i = 0; i < list.arraySize(); ++i) {
    text += (i == 0 ? "" : separator) + list.element(i).toString();
    if (!fitsText(arguments, text.size())) return CommandResult::failure("a text becomes too long");
  }
  return give(std::move(text));
}

// Pieces between any of the separator characters, without empty ones.
Strings pieces(const std::string& text, const std::string& separators) {
  Strings parts;
  std::size_t at = 0;
  while ((at = text.find_first_not_of(separators, at)) != std::string::npos) {
    const std::size_t end = std::min(text.find_first_of(separators, at), text.size());
    parts.push_back(text.substr(at, end - at));
    at = end;
  }
  return parts;
}

CommandResult tokenize(const Arguments& arguments) {
  const std::string separators = arguments.size() == 3 ? textOf(arguments, 1) : " \t\n\r";
  const Variable& out = arguments.values.back().variable;
  if (out == nullptr || out->type() != Value::Type::kStringArray)
    return CommandResult::failure("the last argument must be a string array variable");
  Strings parts = pieces(textOf(arguments, 0), separators);
  if (!fitsArray(arguments, parts.size())) return tooLarge();
  const int count = static_cast<int>(parts.size());
  *out = Value(std::move(parts));
  return give(count);
}

CommandResult split(const Arguments& arguments) {
  return give(pieces(textOf(arguments, 0), textOf(arguments, 1)));
}

CommandResult countPieces(const Arguments& arguments) {
  const std::string separators = arguments.size() == 2 ? textOf(arguments, 1) : " \t\n\r";
  return give(static_cast<int>(pieces(textOf(arguments, 0), separators).size()));
}

CommandResult append(const Arguments& arguments) {
  const Variable& out = arguments[0].variable;
  if (out == nullptr || out->strings() == nullptr)
    return CommandResult::failure("the first argument must be a string array variable");
  Strings more = valueOf(arguments[1]).toWords();
  if (arguments.size() == 3) {
    const int count = valueOf(arguments[2]).toInt();
    more.resize(std::min(more.size(), static_cast<std::size_t>(std::max(count, 0))));
  }
  if (!fitsArray(arguments, out->arraySize() + more.size())) return tooLarge();
  out->strings()->insert(out->strings()->end(), more.begin(), more.end());
  return give(Value());
}

// remove(items, list): the list without any of the items.
CommandResult remove(const Arguments& arguments) {
  const Strings items = valueOf(arguments[0]).toWords();
  const std::unordered_set<std::string> unwanted(items.begin(), items.end());
  Strings left;
  for (std::string& text : valueOf(arguments[1]).toWords())
    if (unwanted.count(text) == 0) left.push_back(std::move(text));
  return give(std::move(left));
}

CommandResult removeDuplicates(const Arguments& arguments) {
  std::unordered_set<std::string> met;
  Strings left;
  for (std::string& text : valueOf(arguments[0]).toWords())
    if (met.insert(text).second) left.push_back(std::move(text));
  return give(std::move(left));
}

// The list of one argument, and a position in it from another; null when the position is outside.
Strings* placeIn(const Argument& list, const Argument& position, std::size_t most) {
  const int index = valueOf(position).toInt();
  Strings* texts = list.variable == nullptr ? nullptr : list.variable->strings();
  const bool inside =
      texts != nullptr && index >= 0 && static_cast<std::size_t>(index) < texts->size() + most;
  return inside ? texts : nullptr;
}

// removeAtIndex(index, list) and insertAtIndex(index, list, item) change the list, and say whether.
CommandResult removeAt(const Arguments& arguments) {
  Strings* list = placeIn(arguments[1], arguments[0], 0);
  if (list != nullptr) list->erase(list->begin() + valueOf(arguments[0]).toInt());
  return give(Value::ofTruth(list != nullptr));
}
CommandResult insertAt(const Arguments& arguments) {
  Strings* list = placeIn(arguments[1], arguments[0], 1);
  if (list != nullptr && !fitsArray(arguments, list->size() + 1)) return tooLarge();
  if (list != nullptr)
    list->insert(list->begin() + valueOf(arguments[0]).toInt(), textOf(arguments, 2));
  return give(Value::ofTruth(list != nullptr));
}

CommandResult addPrefix(const Arguments& arguments) {
  Strings list = valueOf(arguments[0]).toWords();
  const std::string prefix = textOf(arguments, 1);
  std::size_t size = 0;
  for (std::string& text : list) {
    text.insert(0, prefix);
    size += text.size();
    if (!fitsText(arguments, size)) return CommandResult::failure("the texts become too long");
  }
  return give(std::move(list));
}

constexpr FunctionSpec kFunctions[] = {
    {"appendStringArray", 2, 3, append},
    {"floatArrayContains", 2, 2, contains<double>},
    {"floatArrayCount", 2, 2, count<double>},
    {"floatArrayFind", 3, 3, find<double>},
    {"floatArrayToString", 2, 2, join},
    {"intArrayContains", 2, 2, contains<double>},
    {"intArrayCount", 2, 2, count<double>},
    {"intArrayFind", 3, 3, find<double>},
    {"intArrayToString", 2, 2, join},
    {"numTokens", 1, 2, countPieces},
    {"stringArrayAddPrefix", 2, 2, addPrefix},
    {"stringArrayContains", 2, 2, contains<std::string>},
    {"stringArrayCount", 2, 2, count<std::string>},
    {"stringArrayFind", 3, 3, find<std::string>},
    {"stringArrayInsertAtIndex", 3, 3, insertAt},
    {"stringArrayRemove", 2, 2, remove},
    {"stringArrayRemoveAtIndex", 2, 2, removeAt},
    {"stringArrayRemoveDuplicates", 1, 1, removeDuplicates},
    {"stringArrayToString", 2, 2, join},
    {"stringToStringArray", 2, 2, split},
    {"tokenize", 2, 3, tokenize},
};

}  // namespace

FunctionTable arrayFunctions() {
  return {std::begin(kFunctions), std::end(kFunctions)};
}

}  // namespace host::mel

#include <algorithm>
#include <iterator>

#include "host/mel/FunctionArguments.h"
#include "host/mel/Pattern.h"

namespace host::mel {
namespace {

using Arguments = FunctionArguments;

constexpr std::string_view kBlanks = " \t\r\n\f\v";

// The first match of the expression `arguments[0]` in the text; false with a failure in `problem`.
bool search(const Arguments& arguments, const std::string& text,
            std::optional<Pattern::Match>& match, CommandResult& problem) {
  std::string error;
  const auto pattern = Pattern::parse(textOf(arguments, 0), error);
  if (pattern) {
    match = pattern->find(text);
    error = match && match->gaveUp ? "the search takes too long" : "";
  }
  if (!error.empty()) problem = CommandResult::failure(error);
  return error.empty();
}

CommandResult match(const Arguments& arguments) {
  const std::string text = textOf(arguments, 1);
  std::optional<Pattern::Match> found;
  CommandResult problem;
  if (!search(arguments, text, found, problem)) return problem;
  return give(found ? text.substr(found->begin, found->end - found->begin) : std::string());
}

// Replaces the first match.
CommandResult substitute(const Arguments& arguments) {
  std::string text = textOf(arguments, 1);
  std::optional<Pattern::Match> found;
  CommandResult problem;
  if (!search(arguments, text, found, problem)) return problem;
  if (found) text.replace(found->begin, found->end - found->begin, textOf(arguments, 2));
  return give(std::move(text));
}

// Replaces a text, no expression, everywhere.
CommandResult substituteAll(const Arguments& arguments) {
  const std::string text = textOf(arguments, 0);
  const std::string sought = textOf(arguments, 1);
  const std::string other = textOf(arguments, 2);
  std::string result;
  std::size_t at = 0;
  for (std::size_t found = text.find(sought); !sought.empty() && found != std::string::npos;
       found = text.find(sought, at)) {
    result.append(text, at, found - at);
    result += other;
    at = found + sought.size();
    if (!fitsText(arguments, result.size()))
      return CommandResult::failure("a text becomes too long");
  }
  return give(result.append(text, at, std::string::npos));
}

CommandResult glob(const Arguments& arguments) {
  const std::string pattern = textOf(arguments, 1);
  return give(Value::ofTruth(matchesGlob(textOf(arguments, 0), pattern)));
}

CommandResult strip(const Arguments& arguments) {
  const std::string text = textOf(arguments, 0);
  const std::size_t first = text.find_first_not_of(kBlanks);
  return give(first == std::string::npos
                  ? std::string()
                  : text.substr(first, text.find_last_not_of(kBlanks) - first + 1));
}

CommandResult capitalize(const Arguments& arguments) {
  std::string text = textOf(arguments, 0);
  if (!text.empty() && text[0] >= 'a' && text[0] <= 'z')
    text[0] = static_cast<char>(text[0] - 'a' + 'A');
  return give(std::move(text));
}

CommandResult compareTexts(const Arguments& arguments) {
  const int order = textOf(arguments, 0).compare(textOf(arguments, 1));
  return give(order < 0 ? -1 : order > 0 ? 1 : 0);
}

// The first (last) characters: as many as asked for, or all when there are fewer.
CommandResult startOf(const Arguments& arguments) {
  const std::string text = textOf(arguments, 0);
  const int count = std::max(0, valueOf(arguments[1]).toInt());
  return give(text.substr(0, static_cast<std::size_t>(count)));
}
CommandResult endOf(const Arguments& arguments) {
  const std::string text = textOf(arguments, 0);
  const auto count = static_cast<std::size_t>(std::max(0, valueOf(arguments[1]).toInt()));
  return give(count >= text.size() ? text : text.substr(text.size() - count));
}

constexpr FunctionSpec kFunctions[] = {
    {"capitalizeString", 1, 1, capitalize},
    {"endString", 2, 2, endOf},
    {"gmatch", 2, 2, glob},
    {"match", 2, 2, match},
    {"startString", 2, 2, startOf},
    {"strcmp", 2, 2, compareTexts},
    {"strip", 1, 1, strip},
    {"substitute", 3, 3, substitute},
    {"substituteAllString", 3, 3, substituteAll},
};

}  // namespace

FunctionTable patternFunctions() {
  return {std::begin(kFunctions), std::end(kFunctions)};
}

}  // namespace host::mel

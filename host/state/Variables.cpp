#include "host/state/Variables.h"

#include <cctype>
#include <optional>

#include "util/Environment.h"

namespace host {
namespace {

// The variable that begins behind the '$' at `at`; moves `at` behind it.
std::string variableAt(const std::string& text, std::size_t& at) {
  std::size_t begin = at + 1;
  const bool isBraced = begin < text.size() && text[begin] == '{';
  if (isBraced) ++begin;
  std::size_t end = begin;
  while (end < text.size() &&
         (std::isalnum(static_cast<unsigned char>(text[end])) != 0 || text[end] == '_'))
    ++end;
  const bool isClosed = !isBraced || (end < text.size() && text[end] == '}');
  at = end + (isBraced && isClosed ? 1 : 0);
  return isClosed ? text.substr(begin, end - begin) : std::string();
}

}  // namespace

std::string withVariables(const std::string& text) {
  std::string result;
  for (std::size_t at = 0; at < text.size() && result.size() < kLongestExpanded;) {
    if (text[at] != '$') {
      result += text[at++];
      continue;
    }
    const std::size_t from = at;
    const std::string variable = variableAt(text, at);
    const auto value = variable.empty() ? std::nullopt : morvane::environmentValue(variable);
    result += value.value_or(text.substr(from, at - from));
  }
  return result;
}

}  // namespace host

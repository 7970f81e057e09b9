#include "host/file/KeptNumbers.h"

#include <string>

#include "host/scene/Plug.h"
#include "host/scene/Values.h"
#include "host/state/KeptLengths.h"
#include "host/state/SceneUnits.h"
#include "host/text/Blank.h"

namespace host {
namespace {

constexpr std::string_view kSetAttr = "setAttr";
constexpr std::size_t kLong = 256;

// The characters of number words. An infinite number, a truth value or a flag has others.
bool isOfNumber(char c) {
  return (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
}

// False when there is anything else among the numbers.
bool copyNumbers(std::string_view text, std::string& numbers) {
  numbers.resize(text.size());
  char* out = numbers.data();
  for (std::size_t at = 0; at < text.size();) {
    if (isBlank(text[at])) {
      ++at;
      continue;
    }
    if (out != numbers.data()) *out++ = ' ';
    while (at < text.size() && !isBlank(text[at])) {
      if (!isOfNumber(text[at])) return false;
      *out++ = text[at++];
    }
  }
  numbers.resize(static_cast<std::size_t>(out - numbers.data()));
  return !numbers.empty();
}

}  // namespace

bool keepNumbers(const NodePtr& node, std::string_view statement, const SceneUnits& units) {
  if (node == nullptr || node->mesh != nullptr || statement.size() < kLong) return false;
  const std::size_t open = statement.find_first_not_of(" \t\r\n", kSetAttr.size());
  if (open == statement.npos || statement.substr(open, 2) != "\".") return false;
  const std::size_t close = statement.find('"', open + 1);
  if (close == statement.npos) return false;
  const std::string_view path = statement.substr(open + 2, close - open - 2);
  if (path.find('\\') != path.npos) return false;  // an escape, which the command reads
  const auto plug = Plug::find(node, path.substr(0, path.find_first_of(".[")));
  if (path.empty() || (plug && plug->attribute()->kind() != Attribute::Kind::kLoose)) return false;
  KeptWords kept;
  kept.words.emplace_back();
  if (!copyNumbers(statement.substr(close + 1), kept.words.front())) return false;
  if (isKeptLength(*node, path)) turnIntoCentimetres(kept, units.length);
  keepAsWritten(node, path, std::move(kept));
  return true;
}

}  // namespace host

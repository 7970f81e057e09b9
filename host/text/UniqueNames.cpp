#include "host/text/UniqueNames.h"

#include <algorithm>
#include <charconv>

namespace host {
namespace {

constexpr std::size_t kMaxDigits = 9;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

}  // namespace

NumberedName NumberedName::split(std::string_view name) {
  std::size_t start = name.size();
  while (start > 0 && isDigit(name[start - 1])) --start;
  const std::size_t digits = name.size() - start;
  if (digits == 0 || digits > kMaxDigits) return {std::string(name), -1};
  NumberedName result{std::string(name.substr(0, start)), 0};
  std::from_chars(name.data() + start, name.data() + name.size(), result.number);
  return result;
}

std::string shapeNameFor(std::string_view transformName) {
  const NumberedName parts = NumberedName::split(transformName);
  return parts.stem + "Shape" + std::string(transformName.substr(parts.stem.size()));
}

std::string UniqueNames::next(const std::string& stem, long first,
                              const std::function<bool(const std::string&)>& isFree) {
  long& number = known_[stem].emplace(first, first).first->second;
  while (!isFree(stem + std::to_string(number))) ++number;
  return stem + std::to_string(number++);
}

void UniqueNames::release(std::string_view name) {
  const NumberedName freed = NumberedName::split(name);
  const auto found = known_.find(freed.stem);
  if (found == known_.end()) return;
  for (auto& [first, next] : found->second)
    if (freed.number >= first) next = std::min(next, freed.number);
}

std::string legalName(std::string_view text) {
  while (!text.empty() && text.front() == ':') text.remove_prefix(1);
  std::string name(text);
  for (char& c : name)
    if (!isLetter(c) && !isDigit(c) && c != ':') c = '_';
  if (!name.empty() && isDigit(name.front())) name.insert(name.begin(), '_');
  return name;
}

bool isLegalName(std::string_view text) {
  return !text.empty() && text.find(':') == std::string_view::npos && legalName(text) == text;
}

}  // namespace host

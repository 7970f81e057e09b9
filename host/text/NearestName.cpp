#include "host/text/NearestName.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

constexpr std::size_t kLongest = 200;
constexpr std::size_t kMostNames = 10000;

std::string lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  return text;
}

// How many letters must be added, left out, changed, or exchanged with the next one.
std::size_t difference(const std::string& a, const std::string& b) {
  std::vector<std::size_t> beforeLast, last, row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    beforeLast = std::exchange(last, row);
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool same = a[i - 1] == b[j - 1];
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
      const bool exchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (exchanged) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
  }
  return row[b.size()];
}

}  // namespace

std::string nearestName(const std::string& name, const std::vector<std::string>& names) {
  std::string nearest;
  if (name.empty() || name.size() > kLongest) return nearest;
  std::size_t least = std::min<std::size_t>(3, (name.size() + 1) / 2);
  for (std::size_t i = 0; i < std::min(names.size(), kMostNames) && least > 0; ++i) {
    if (names[i].size() > name.size() + 2 || names[i].size() + 2 < name.size()) continue;
    const std::size_t found = difference(lowered(name), lowered(names[i]));
    if (found < least) {
      least = found;
      nearest = names[i];
    }
  }
  return nearest;
}

}  // namespace host

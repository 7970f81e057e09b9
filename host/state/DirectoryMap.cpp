#include "host/state/DirectoryMap.h"

#include <algorithm>
#include <cctype>

namespace host {
namespace {

// Backslashes are slashes, and several in a row are one, but not at the front, where two stand
// before a machine's name.
std::string portable(std::string_view name) {
  std::string text;
  for (const char c : name) {
    const char character = c == '\\' ? '/' : c;
    if (character != '/' || text.size() < 2 || text.back() != '/') text += character;
  }
  return text;
}

// "/" alone stays what it is.
std::string folderName(std::string_view name) {
  std::string text = portable(name);
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return text;
}

bool isSameDrive(char a, char b) {
  const auto upper = [](char c) { return std::toupper(static_cast<unsigned char>(c)); };
  return std::isalpha(static_cast<unsigned char>(a)) != 0 && upper(a) == upper(b);
}

bool isIn(const std::string& name, const std::string& folder) {
  const bool areOnDrives = folder.compare(1, 1, ":") == 0 && !name.empty();
  const std::size_t same = areOnDrives && isSameDrive(name[0], folder[0]) ? 1 : 0;
  if (name.compare(same, folder.size() - same, folder, same, folder.npos) != 0) return false;
  return name.size() == folder.size() || folder == "/" || name[folder.size()] == '/';
}

}  // namespace

bool DirectoryMap::add(std::string_view from, std::string_view to) {
  if (from.empty() || to.empty()) return false;
  folders_[folderName(from)] = folderName(to);
  return true;
}

void DirectoryMap::remove(std::string_view from) {
  folders_.erase(folderName(from));
}

std::optional<std::string> DirectoryMap::mapped(std::string_view from) const {
  const auto found = folders_.find(folderName(from));
  return found == folders_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> DirectoryMap::convert(std::string_view name) const {
  if (!enabled) return std::nullopt;
  const std::string asked = portable(name);
  const std::pair<const std::string, std::string>* best = nullptr;
  for (const auto& entry : folders_) {
    if (!isIn(asked, entry.first)) continue;
    used_.insert(entry.first);
    if (!best || entry.first.size() > best->first.size()) best = &entry;
  }
  if (!best) return std::nullopt;
  std::string rest = asked.substr(best->first.size());
  if (!rest.empty() && rest.front() != '/') rest.insert(0, 1, '/');  // mapped from "/"
  return best->second == "/" && !rest.empty() ? rest : best->second + rest;
}

std::vector<std::string> DirectoryMap::unused() const {
  std::vector<std::string> names;
  for (const auto& entry : folders_)
    if (used_.count(entry.first) == 0) names.push_back(entry.first);
  return names;
}

bool DirectoryMap::hasGiven(std::string_view name) const {
  return std::any_of(folders_.begin(), folders_.end(), [&](const auto& entry) {
    return used_.count(entry.first) != 0 && isIn(std::string(name), entry.second);
  });
}

}  // namespace host

#include "util/WindowsNames.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace morvane {

namespace {

constexpr char kLong[] = "\\\\?\\";
constexpr char kLongShare[] = "\\\\?\\UNC\\";
constexpr std::size_t kLongLength = sizeof kLong - 1;
constexpr std::size_t kLongShareLength = sizeof kLongShare - 1;

// Between names of devices that have no number.
constexpr const char* kDevices[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
// The digits, and those that Latin-1 has above the line.
constexpr const char* kNumbers[] = {"0", "1", "2", "3",      "4",      "5",     "6",
                                    "7", "8", "9", "\u00B9", "\u00B2", "\u00B3"};

bool isSeparator(char c) {
  return c == '/' || c == '\\';
}

bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool hasDrive(const std::string& path) {
  return path.size() > 1 && isLetter(path[0]) && path[1] == ':';
}

bool begins(const std::string& path, const char* with) {
  return path.compare(0, std::strlen(with), with) == 0;
}

// A device's name is one with any extension, and with blanks before that.
bool isDevice(const std::string& part) {
  std::string name = part.substr(0, part.find('.'));
  name.erase(name.find_last_not_of(' ') + 1);
  for (char& c : name) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  if (std::find(std::begin(kDevices), std::end(kDevices), name) != std::end(kDevices)) return true;
  const bool mayBePort = begins(name, "COM") || begins(name, "LPT");
  return mayBePort &&
         std::find(std::begin(kNumbers), std::end(kNumbers), name.substr(3)) != std::end(kNumbers);
}

// Of what stands between two separators.
std::string whyNoWindowsName(const std::string& part) {
  if (part == "." || part == "..") return {};
  for (const char c : part) {
    if (c == ':') return "'" + part + "' has a colon, which Windows takes for a stream of a file";
    if (static_cast<unsigned char>(c) < ' ' || std::strchr("<>\"|?*", c) != nullptr)
      return "'" + part + "' has a character that no file's name has on Windows";
  }
  if (part.back() == '.' || part.back() == ' ')
    return "'" + part + "' ends in a dot or a blank, which Windows leaves out";
  return isDevice(part) ? "'" + part + "' is the name of a device on Windows" : std::string();
}

std::string withForwardSlashes(const std::string& path) {
  std::string name = shortWindowsPath(path);
  std::replace(name.begin(), name.end(), '\\', '/');
  return name;
}

// Of a path with forward slashes: of "C:" or "//machine/share", 0 where there is neither.
std::size_t rootLength(const std::string& path) {
  if (hasDrive(path)) return 2;
  if (path.size() < 3 || !begins(path, "//") || path[2] == '/') return 0;
  const std::size_t share = path.find('/', 2);
  return share == std::string::npos ? path.size()
                                    : std::min(path.find('/', share + 1), path.size());
}

bool isSameDrive(const std::string& a, const std::string& b) {
  return hasDrive(a) && hasDrive(b) && (a[0] | 0x20) == (b[0] | 0x20);
}

}  // namespace

std::string whyNoWindowsFile(const std::string& path) {
  const std::string names = withForwardSlashes(path);
  if (begins(names, "//./") || begins(names, "//?/")) return "it is the path of a device";
  for (std::size_t begin = hasDrive(names) ? 2 : 0; begin < names.size();) {
    const std::size_t end = std::min(names.find('/', begin), names.size());
    const std::string why =
        end > begin ? whyNoWindowsName(names.substr(begin, end - begin)) : std::string();
    if (!why.empty()) return why;
    begin = end + 1;
  }
  return {};
}

std::string longWindowsPath(const std::string& path) {
  if (begins(path, kLong) || begins(path, "\\\\.\\")) return path;
  if (begins(path, "\\\\")) return kLongShare + path.substr(2);
  const bool isWhole = hasDrive(path) && path.size() > 2 && isSeparator(path[2]);
  return isWhole ? kLong + path : path;
}

std::string shortWindowsPath(const std::string& path) {
  if (begins(path, kLongShare)) return "\\\\" + path.substr(kLongShareLength);
  const std::string rest = begins(path, kLong) ? path.substr(kLongLength) : std::string();
  return hasDrive(rest) ? rest : path;
}

std::string joinedWindowsPath(const std::string& folder, const std::string& path) {
  const std::string name = withForwardSlashes(path);
  const std::string base = withForwardSlashes(folder);
  const std::size_t root = rootLength(name);
  const bool isInFolder = root == 0 || (isSameDrive(base, name) && name.compare(2, 1, "/") != 0);
  if (!isInFolder || base.empty()) return name;
  const std::string rest = name.substr(root);
  if (!rest.empty() && rest[0] == '/') return base.substr(0, rootLength(base)) + rest;
  return rest.empty() || base.back() == '/' ? base + rest : base + '/' + rest;
}

std::string normalWindowsPath(const std::string& path) {
  const std::string name = withForwardSlashes(path);
  const std::size_t root = rootLength(name);
  const bool isWhole = root < name.size() ? name[root] == '/' : root > 2;
  std::string normal = name.substr(0, root) + (isWhole && root < name.size() ? "/" : "");
  const std::size_t first = normal.size();
  for (std::size_t begin = root; begin < name.size();) {
    const std::size_t end = std::min(name.find('/', begin), name.size());
    const std::string part = name.substr(begin, end - begin);
    begin = end + 1;
    const std::size_t last = std::max(normal.rfind('/') + 1, first);
    const bool goesUp = part == ".." && normal.size() > first && normal.substr(last) != "..";
    if (goesUp)
      normal.resize(last == first ? first : last - 1);
    else if (!part.empty() && part != "." && (part != ".." || !isWhole))
      normal += (normal.size() == first ? "" : "/") + part;
  }
  return normal.empty() && !name.empty() ? "." : normal;
}

}  // namespace morvane

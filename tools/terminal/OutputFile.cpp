#include "tools/terminal/OutputFile.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "host/Host.h"
#include "tools/terminal/Text.h"
#include "util/FileExtension.h"
#include "util/ReplaceFile.h"

namespace tools {
namespace {

bool isSame(const std::string& one, const std::string& other) {
  std::error_code missing;
  return std::filesystem::equivalent(one, other, missing);
}

// Empty when `name` is one of that kind.
std::string whyNoOutput(const std::string& name, const OutputKind& kind) {
  const auto& allowed = kind.extensions;
  std::string needed = allowed.front();
  for (std::size_t i = 1; i < allowed.size(); ++i) needed += " or " + allowed[i];
  const std::string rule = kind.written + " is written, so that the name must end in " + needed;
  if (name.empty()) return "the name is empty (a variable that is not set?); " + rule;
  const std::string extension = morvane::lowerExtension(name);
  if (std::find(allowed.begin(), allowed.end(), extension) != allowed.end()) return "";
  return printable(name) + ": " + rule + (extension.empty() ? ", with something before it" : "");
}

constexpr const char* kFreeSpace = "free some space there";
constexpr const char* kOtherFolder = "use a folder that can be written";
constexpr const char* kReadOnly = "the file is read-only: make it writable (check it out)";
constexpr const char* kNoPermission = "make its folder writable, or use another";

struct Advice {
  int error;
  const char* text;
};
constexpr Advice kAdvice[] = {
    {ENOSPC, kFreeSpace},
#ifdef EDQUOT
    {EDQUOT, kFreeSpace},
#endif
    {EROFS, kOtherFolder}, {EACCES, kNoPermission}, {EPERM, kNoPermission},
};

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Opening to append changes nothing in the file.
bool isReadOnly(const std::string& file) {
  std::error_code missing;
  const auto status = std::filesystem::status(file, missing);
  if (!std::filesystem::is_regular_file(status)) return false;
  using Perms = std::filesystem::perms;
  constexpr Perms kWrite = Perms::owner_write | Perms::group_write | Perms::others_write;
  return (status.permissions() & kWrite) == Perms::none || !std::ofstream(file, std::ios::app);
}

}  // namespace

const OutputKind kSceneOutput = {"only Maya ASCII", {".ma"}};

void checkOutput(CLI::Option& option, const OutputKind& kind) {
  option.check([kind](const std::string& name) { return whyNoOutput(name, kind); }, "");
}

std::string writingAdvice(const std::string& reason, const std::string& otherwise) {
  if (endsWith(reason, ": changed since it was read; try again"))
    return "the file is as somebody else left it meanwhile: run this again";
  static const std::string kBegin = "cannot write ";
  for (const Advice& known : kAdvice) {
    const std::string why = ": " + std::generic_category().message(known.error);
    if (reason.compare(0, kBegin.size(), kBegin) != 0 || !endsWith(reason, why)) continue;
    const std::size_t length = reason.size() - why.size() - kBegin.size();
    const bool isFile = known.text == kNoPermission;
    return isFile && isReadOnly(reason.substr(kBegin.size(), length)) ? kReadOnly : known.text;
  }
  return otherwise;
}

bool writeOutput(const std::string& path, const std::string& text) {
  morvane::FileReplacer out;
  if (out.open(path.c_str()) && out.append(text.data(), text.size()) && out.commit()) return true;
  complain(printable(out.error()) + "; " +
           writingAdvice(out.error(), "name a file in a folder that can be written"));
  return false;
}

void tellWritten(const std::string& path, const std::string& what) {
  complain("wrote " + printable(path) + (what.empty() ? "" : ": " + what));
}

bool wouldReplaceInput(const std::string& output, const std::vector<std::string>& inputs) {
  for (const std::string& input : inputs) {
    if (!isSame(output, input)) continue;
    complain(printable(output) + " is a file to be read; give the output another name");
    return true;
  }
  return false;
}

bool wouldReplaceTexture(const std::string& output) {
  for (const std::string& texture : host::textureNames()) {
    if (!isSame(output, texture)) continue;
    complain(printable(output) + " is a texture of the scene; give the output another name");
    return true;
  }
  return false;
}

}  // namespace tools

#include "tools/terminal/OutputFile.h"

#include <filesystem>
#include <system_error>

#include "host/Host.h"
#include "tools/terminal/Activity.h"
#include "tools/terminal/Text.h"
#include "util/Path.h"
#include "util/ReplaceFile.h"

namespace tools {
namespace {

bool isSame(const std::string& one, const std::string& other) {
  std::error_code missing;
  return std::filesystem::equivalent(morvane::systemPath(one), morvane::systemPath(other), missing);
}

}  // namespace

std::string writingAdvice(morvane::StatusCode code, const std::string& otherwise) {
  using Code = morvane::StatusCode;
  switch (code) {
    case Code::kChanged:
      return "the file is as somebody else left it meanwhile: run this again";
    case Code::kNoSpace:
      return "free some space there";
    case Code::kBadArgument:
      return "give the file another name";
    case Code::kReadOnly:
      return "make the file writable (check it out)";
    case Code::kNotAllowed:
      return "make its folder writable, or use another";
    default:
      return otherwise;
  }
}

bool writeOutput(const std::string& path, const std::string& text) {
  nowDoing("writing", path);
  morvane::FileReplacer out;
  if (out.open(path.c_str()) && out.append(text.data(), text.size()) && out.commit()) return true;
  complain(printable(out.status().text()) + "; " +
           writingAdvice(out.status().code(), "name a file in a folder that can be written"));
  return false;
}

void reportWritten(const std::string& path, const std::string& what) {
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

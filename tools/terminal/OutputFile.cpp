#include "tools/terminal/OutputFile.h"

#include <algorithm>
#include <filesystem>
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

}  // namespace

const OutputKind kSceneOutput = {"only Maya ASCII", {".ma"}};

void checkOutput(CLI::Option& option, const OutputKind& kind) {
  option.check([kind](const std::string& name) { return whyNoOutput(name, kind); }, "");
}

std::string writingAdvice(morvane::StatusCode code, const std::string& otherwise) {
  using Code = morvane::StatusCode;
  switch (code) {
    case Code::kChanged:
      return "the file is as somebody else left it meanwhile: run this again";
    case Code::kNoSpace:
      return "free some space there";
    case Code::kReadOnly:
      return "make the file writable (check it out)";
    case Code::kNotAllowed:
      return "make its folder writable, or use another";
    default:
      return otherwise;
  }
}

bool writeOutput(const std::string& path, const std::string& text) {
  morvane::FileReplacer out;
  if (out.open(path.c_str()) && out.append(text.data(), text.size()) && out.commit()) return true;
  complain(printable(out.status().text()) + "; " +
           writingAdvice(out.status().code(), "name a file in a folder that can be written"));
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
